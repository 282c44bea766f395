// The pixel operations of CDib24 against plain loops that follow their definitions step by step.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "bitmaps/cdib24.h"
#include "bitmaps/pixels.h"
#include "support/processor_forms.h"

namespace marklet {
namespace {

constexpr COLORREF kMagenta = MakeRgb(255, 0, 255);

// Nearest integer, ties to even, written without the platform's rounding.
Long NaiveRound(double value) {
  const double below = std::floor(value);
  const double above_it = value - below;
  const auto whole = static_cast<Long>(below);
  if (above_it < 0.5) return whole;
  if (above_it > 0.5) return whole + 1;
  return whole % 2 == 0 ? whole : whole + 1;
}

// ---- Grayscale ----

std::vector<COLORREF> NaiveGrayscale(std::vector<COLORREF> colours) {
  for (COLORREF& colour : colours) {
    if (colour == MakeRgb(254, 3, 253)) continue;
    const double sum = RedOf(colour) + GreenOf(colour) + BlueOf(colour);
    const auto grey = static_cast<unsigned>(NaiveRound(sum / 3.0));
    colour = MakeRgb(grey, grey, grey);
  }
  return colours;
}

TEST(Grayscale, IsTheMeanOfTheBytesOnAnyNoise) {
  Random random(24);
  for (int i = 0; i < 300; ++i) {
    const auto surface = Surface(Between(random, 1, 40), Between(random, 1, 12));
    FillWithNoise(*surface, random, KeyColour);
    const auto expected = NaiveGrayscale(Colours(*surface));
    COLORREF key = KeyColour;
    surface->Grayscale(key);
    ASSERT_EQ(Colours(*surface), expected);
  }
}

TEST(Grayscale, EverySumHasItsMean) {
  for (unsigned sum = 0; sum <= 3 * 255; ++sum) {
    const unsigned blue = std::min(sum, 255u), green = std::min(sum - blue, 255u), red = sum - blue - green;
    const auto surface = Surface(1, 1, MakeRgb(red, green, blue));
    COLORREF key = KeyColour;
    surface->Grayscale(key);
    const unsigned mean = (sum + 1) / 3;  // a third is never a tie
    ASSERT_EQ(Colours(*surface)[0], MakeRgb(mean, mean, mean)) << sum;
  }
}

TEST(Grayscale, LeavesKeyColourEvenWhenCalledWithAnotherKey) {
  const auto surface = Surface(2, 1, MakeRgb(10, 20, 60));
  PutColour(*surface, 1, 0, MakeRgb(254, 3, 253));
  COLORREF key = MakeRgb(10, 20, 60);
  surface->Grayscale(key);
  EXPECT_EQ(Colours(*surface), (std::vector<COLORREF>{MakeRgb(30, 30, 30), MakeRgb(254, 3, 253)}));
  EXPECT_EQ(key, MakeRgb(10, 20, 60));
}

TEST(Grayscale, WritesKeyColourBackForAKeyOfMinusOne) {
  const auto surface = Surface(1, 1, MakeRgb(254, 3, 253));
  auto key = static_cast<COLORREF>(-1);
  surface->Grayscale(key);
  EXPECT_EQ(key, MakeRgb(254, 3, 253));
  EXPECT_EQ(Colours(*surface)[0], MakeRgb(254, 3, 253));
}

TEST(Grayscale, LeavesThePaddingAlone) {
  const auto surface = Surface(1, 2, MakeRgb(10, 20, 60));
  surface->Bits()[3] = 77;
  COLORREF key = KeyColour;
  surface->Grayscale(key);
  EXPECT_EQ(surface->Bits()[3], 77);
}

// ---- BilinearInto and ResizeKeyed ----

using Channels = std::array<Long, 3>;

Channels ChannelsAt(const CDib24& source, Long x, Long row) {
  // There is no pixel beyond the last row and column.
  const std::uint8_t* pixel =
      PixelAt(source, std::min(x, source.Width() - 1), std::min(row, source.Height() - 1));
  return {pixel[0], pixel[1], pixel[2]};
}

bool Is(const Channels& channels, COLORREF key) {
  return channels[0] == static_cast<Long>(BlueOf(key)) && channels[1] == static_cast<Long>(GreenOf(key)) &&
         channels[2] == static_cast<Long>(RedOf(key));
}

void NaiveBilinear(const CDib24& source, CDib24& destination, COLORREF key) {
  const Long sw = source.Width(), sh = source.Height(), dw = destination.Width(), dh = destination.Height();
  const auto xs = static_cast<float>(static_cast<double>(sw - 1) / dw);
  const auto ys = static_cast<float>(static_cast<double>(sh - 1) / dh);
  for (Long y = 0; y < dh; ++y) {
    const double product_y = static_cast<double>(y) * static_cast<double>(ys);
    const auto fy = static_cast<float>(product_y);
    const auto iy = static_cast<Long>(std::floor(product_y));
    const auto ty = static_cast<float>(static_cast<double>(fy) - iy);
    for (Long x = 0; x < dw; ++x) {
      const double product_x = static_cast<double>(x) * static_cast<double>(xs);
      const auto fx = static_cast<float>(product_x);
      const auto ix = static_cast<Long>(std::floor(product_x));
      const auto tx = static_cast<float>(static_cast<double>(fx) - ix);
      const Channels p0 = ChannelsAt(source, ix, iy), p1 = ChannelsAt(source, ix + 1, iy);
      const Channels p2 = ChannelsAt(source, ix, iy + 1), p3 = ChannelsAt(source, ix + 1, iy + 1);
      bool flag = Is(p0, key) || Is(p1, key) || Is(p2, key) || Is(p3, key);
      Channels a, b, c;
      for (std::size_t i = 0; i < 3; ++i) {
        a[i] = NaiveRound((1.0 - ty) * p0[i] + static_cast<double>(ty) * p2[i]);
        b[i] = NaiveRound((1.0 - ty) * p1[i] + static_cast<double>(ty) * p3[i]);
      }
      flag = flag || Is(a, key) || Is(b, key);
      for (std::size_t i = 0; i < 3; ++i) {
        c[i] = std::clamp(NaiveRound((1.0 - tx) * a[i] + static_cast<double>(tx) * b[i]), 0, 255);
      }
      if (flag) c = {253, 3, 254};
      PutColour(
          destination, x, y,
          MakeRgb(static_cast<unsigned>(c[2]), static_cast<unsigned>(c[1]), static_cast<unsigned>(c[0])));
    }
  }
}

void ExpectBilinear(const CDib24& source, Long width, Long height, COLORREF key) {
  const auto expected = Surface(width, height), actual = Surface(width, height);
  NaiveBilinear(source, *expected, key);
  EXPECT_FALSE(source.BilinearInto(*actual, key));
  ASSERT_EQ(Colours(*actual), Colours(*expected))
      << source.Width() << " by " << source.Height() << " to " << width << " by " << height;
}

class BilinearIntoBy : public ProcessorFormTest {};
using SlowBilinearIntoBy = BilinearIntoBy;
MARKLET_FOR_PROCESSOR_FORMS(BilinearIntoBy);
MARKLET_FOR_PROCESSOR_FORMS(SlowBilinearIntoBy);

TEST_P(SlowBilinearIntoBy, FollowsItsDefinitionOnAnyNoiseAtAnySize) {
  Random random(2);
  for (int i = 0; i < 1500; ++i) {
    const COLORREF key = i % 2 == 0 ? KeyColour : kMagenta;
    const auto source = Surface(Between(random, 1, 30), Between(random, 1, 30));
    FillWithNoise(*source, random, key);
    ASSERT_NO_FATAL_FAILURE(ExpectBilinear(*source, Between(random, 1, 60), Between(random, 1, 60), key));
  }
}

// Without the key, every pixel shows its arithmetic.
TEST_P(SlowBilinearIntoBy, FollowsItsDefinitionOnColoursWithoutTheKey) {
  Random random(3);
  for (int i = 0; i < 300; ++i) {
    const auto source = Surface(Between(random, 1, 70), Between(random, 1, 40));
    for (Long n = 0; n < source->Width() * source->Height(); ++n) {
      PutColour(
          *source, n % source->Width(), n / source->Width(),
          MakeRgb(static_cast<unsigned>(Between(random, 0, 200)), 200u, static_cast<unsigned>(random())));
    }
    ASSERT_NO_FATAL_FAILURE(
        ExpectBilinear(*source, Between(random, 1, 90), Between(random, 1, 90), KeyColour));
  }
}

TEST_P(BilinearIntoBy, FollowsItsDefinitionAcrossManyColumns) {
  Random random(4);
  constexpr Long kSizes[][4] = {{1300, 3, 2050, 2}, {2050, 2, 1030, 5}, {1, 1, 1500, 2},  {5, 2, 1025, 3},
                                {3000, 1, 7, 1},    {512, 2, 513, 2},   {2, 700, 3, 1100}};
  for (const auto& [sw, sh, dw, dh] : kSizes) {
    const auto source = Surface(sw, sh);
    FillWithNoise(*source, random, 0x123456);
    ASSERT_NO_FATAL_FAILURE(ExpectBilinear(*source, dw, dh, 0x123456));
    ASSERT_NO_FATAL_FAILURE(ExpectBilinear(*source, dw, dh, CLR_INVALID));
  }
}

TEST_P(SlowBilinearIntoBy, IsExactForEveryPairOfSizesOfImages) {
  constexpr Long kSizes[] = {1, 2, 3, 16, 20, 22, 24, 32, 40, 48, 64, 128, 256};
  Random random(5);
  for (const Long from : kSizes) {
    const auto source = Surface(from, from);
    FillWithNoise(*source, random, KeyColour);
    for (const Long to : kSizes) ASSERT_NO_FATAL_FAILURE(ExpectBilinear(*source, to, to, KeyColour));
  }
}

TEST(BilinearInto, NeverReachesTheLastRowAndColumnExactly) {
  const auto source = Surface(2, 1);
  PutColour(*source, 1, 0, MakeRgb(200, 200, 200));
  const auto wide = Surface(4, 1);
  source->BilinearInto(*wide, KeyColour);
  EXPECT_EQ(Colours(*wide),
            (std::vector<COLORREF>{0, MakeRgb(50, 50, 50), MakeRgb(100, 100, 100), MakeRgb(150, 150, 150)}));
}

TEST(BilinearInto, WithMagentaAsKeyStillWritesKeyColour) {
  const auto source = Surface(3, 3, MakeRgb(10, 10, 10));
  PutColour(*source, 2, 2, kMagenta);
  const auto target = Surface(6, 6);
  EXPECT_FALSE(source->BilinearInto(*target, kMagenta));
  EXPECT_EQ(ColourAt(*target, 5, 5), MakeRgb(254, 3, 253)) << "next to the magenta pixel";
  EXPECT_EQ(ColourAt(*target, 0, 0), MakeRgb(10, 10, 10));
  for (const COLORREF colour : Colours(*target)) EXPECT_NE(colour, kMagenta);
}

TEST(BilinearInto, AMixThatHappensToGiveTheKeyBecomesKeyColour) {
  // Halfway between the two rows lies the key.
  const auto source = Surface(1, 2);
  PutColour(*source, 0, 0, MakeRgb(100, 40, 60));
  PutColour(*source, 0, 1, MakeRgb(120, 60, 80));
  const COLORREF key = MakeRgb(110, 50, 70);
  const auto target = Surface(1, 2);
  source->BilinearInto(*target, key);
  EXPECT_EQ(ColourAt(*target, 0, 0), MakeRgb(100, 40, 60));
  EXPECT_EQ(ColourAt(*target, 0, 1), MakeRgb(254, 3, 253));
}

TEST(BilinearInto, AMixAcrossColumnsThatGivesTheKeyStays) {
  const auto source = Surface(2, 1);
  PutColour(*source, 0, 0, MakeRgb(100, 40, 60));
  PutColour(*source, 1, 0, MakeRgb(120, 60, 80));
  const COLORREF key = MakeRgb(110, 50, 70);
  const auto target = Surface(2, 1);
  source->BilinearInto(*target, key);
  EXPECT_EQ(ColourAt(*target, 1, 0), key);
}

TEST(BilinearInto, ASourceOnePixelWideOrHighRepeatsIt) {
  const auto source = Surface(1, 1, MakeRgb(1, 2, 3));
  const auto target = Surface(5, 4);
  source->BilinearInto(*target, KeyColour);
  EXPECT_EQ(Colours(*target), std::vector<COLORREF>(20, MakeRgb(1, 2, 3)));
}

TEST(BilinearInto, OntoItselfDoesNothing) {
  const auto surface = Surface(4, 4);
  Random random(6);
  FillWithNoise(*surface, random, KeyColour);
  const auto before = Colours(*surface);
  EXPECT_FALSE(surface->BilinearInto(*surface, KeyColour));
  EXPECT_EQ(Colours(*surface), before);
}

TEST(ResizeKeyed, WithTheSameSizeIsACopyNotTheSameObject) {
  const auto source = Surface(6, 4);
  Random random(7);
  FillWithNoise(*source, random, KeyColour);
  const auto copy = source->ResizeKeyed(4, 6, KeyColour);
  ASSERT_NE(copy, nullptr);
  EXPECT_NE(copy.get(), source.get());
  EXPECT_NE(copy->Bits(), source->Bits());
  EXPECT_EQ(Colours(*copy), Colours(*source));
}

TEST(ResizeKeyed, TakesTheHeightFirst) {
  const auto source = Surface(6, 4);
  const auto resized = source->ResizeKeyed(3, 9, KeyColour);
  ASSERT_NE(resized, nullptr);
  EXPECT_EQ(resized->Width(), 9);
  EXPECT_EQ(resized->Height(), 3);
}

TEST(ResizeKeyed, InterpolatesToAnotherSize) {
  const auto source = Surface(6, 4);
  Random random(8);
  FillWithNoise(*source, random, kMagenta);
  const auto expected = Surface(9, 3);
  NaiveBilinear(*source, *expected, kMagenta);
  EXPECT_EQ(Colours(*source->ResizeKeyed(3, 9, kMagenta)), Colours(*expected));
}

TEST(ResizeKeyed, IsNothingWhenTheNewSurfaceCannotBeMade) {
  const auto source = Surface(6, 4);
  EXPECT_EQ(source->ResizeKeyed(0, 5, KeyColour), nullptr);
  EXPECT_EQ(source->ResizeKeyed(5, -1, KeyColour), nullptr);
}

// ---- ResampleNearest ----

std::vector<COLORREF> NaiveNearest(const CDib24& source, Long dw, Long dh) {
  std::vector<COLORREF> colours;
  for (Long y = 0; y < dh; ++y) {
    for (Long x = 0; x < dw; ++x) {
      const double rx = static_cast<double>(source.Width() - 1) / (dw - 1);
      const double ry = static_cast<double>(source.Height() - 1) / (dh - 1);
      colours.push_back(ColourAt(source, dw == 1 ? 0 : NaiveRound(x * rx), dh == 1 ? 0 : NaiveRound(y * ry)));
    }
  }
  return colours;
}

void ExpectNearest(const CDib24& source, Long width, Long height) {
  const auto resampled = source.ResampleNearest(width, height);
  ASSERT_NE(resampled, nullptr);
  ASSERT_EQ(resampled->Width(), width);
  ASSERT_EQ(Colours(*resampled), NaiveNearest(source, width, height))
      << source.Width() << " by " << source.Height() << " to " << width << " by " << height;
}

TEST(SlowResampleNearest, FollowsItsDefinitionOnAnyNoiseAtAnySize) {
  Random random(9);
  for (int i = 0; i < 1500; ++i) {
    const auto source = Surface(Between(random, 1, 40), Between(random, 1, 40));
    FillWithNoise(*source, random, KeyColour);
    ASSERT_NO_FATAL_FAILURE(ExpectNearest(*source, Between(random, 1, 80), Between(random, 1, 80)));
  }
}

TEST(ResampleNearest, FollowsItsDefinitionAcrossManyColumns) {
  Random random(10);
  constexpr Long kSizes[][4] = {{1300, 3, 2050, 2}, {2050, 2, 1030, 5}, {1, 1, 1500, 2},
                                {3000, 1, 7, 1},    {513, 2, 512, 2},   {2, 700, 3, 1100}};
  for (const auto& [sw, sh, dw, dh] : kSizes) {
    const auto source = Surface(sw, sh);
    FillWithNoise(*source, random, KeyColour);
    ASSERT_NO_FATAL_FAILURE(ExpectNearest(*source, dw, dh));
  }
}

TEST(ResampleNearest, SamplesCornersFromCorners) {
  const auto source = Surface(5, 7);
  PutColour(*source, 0, 0, 1);
  PutColour(*source, 4, 0, 2);
  PutColour(*source, 0, 6, 3);
  PutColour(*source, 4, 6, 4);
  const auto resampled = source->ResampleNearest(3, 2);
  EXPECT_EQ(ColourAt(*resampled, 0, 0), 1u);
  EXPECT_EQ(ColourAt(*resampled, 2, 0), 2u);
  EXPECT_EQ(ColourAt(*resampled, 0, 1), 3u);
  EXPECT_EQ(ColourAt(*resampled, 2, 1), 4u);
}

TEST(ResampleNearest, RoundsHalvesToEvenIndices) {
  // From 4 columns to 7 each odd column falls halfway: 0.5, 1.5 and 2.5 read 0, 2 and 2.
  const auto source = Surface(4, 1);
  for (Long x = 0; x < 4; ++x) PutColour(*source, x, 0, static_cast<COLORREF>(x + 1));
  EXPECT_EQ(Colours(*source->ResampleNearest(7, 1)), (std::vector<COLORREF>{1, 1, 2, 3, 3, 3, 4}));
}

TEST(ResampleNearest, ASingleColumnOrRowReadsTheFirstOfTheSource) {
  const auto source = Surface(5, 3);
  PutColour(*source, 0, 0, kMagenta);
  EXPECT_EQ(Colours(*source->ResampleNearest(1, 1)), std::vector<COLORREF>{kMagenta});
}

TEST(ResampleNearest, KeepsTheKeyExact) {
  const auto source = Surface(9, 9, KeyColour);
  PutColour(*source, 4, 4, MakeRgb(1, 2, 3));
  for (const COLORREF colour : Colours(*source->ResampleNearest(23, 17))) {
    EXPECT_TRUE(colour == KeyColour || colour == MakeRgb(1, 2, 3));
  }
}

TEST(ResampleNearest, IsASurfaceWithoutPixelsWhenTheyCannotBeMade) {
  const auto source = Surface(5, 3, kMagenta);
  const auto target = Surface(2, 1);
  constexpr Long kSizes[][2] = {{0, 4}, {4, 0}, {0, 0}, {4, -1}, {-4, 4}};
  for (const auto& [width, height] : kSizes) {
    const auto resampled = source->ResampleNearest(width, height);
    ASSERT_NE(resampled, nullptr) << width << " by " << height;
    EXPECT_EQ(resampled->Bits(), nullptr) << width << " by " << height;
    resampled->PaintTransparent(target->hDC(), 0, 0, -1, -1, 0, 0, KeyColour);
  }
  EXPECT_EQ(Colours(*target), std::vector<COLORREF>(2, 0)) << "it paints nothing";
}

}  // namespace
}  // namespace marklet
