// The changes of size of surfaces with alpha, against plain loops over their definitions.
#include <gtest/gtest.h>

#include <cmath>

#include "bitmaps/alpha_pixels.h"
#include "support/processor_forms.h"

namespace marklet {
namespace {

class AlphaResample : public ProcessorFormTest {};
using SlowAlphaResample = AlphaResample;
MARKLET_FOR_PROCESSOR_FORMS(AlphaResample);
MARKLET_FOR_PROCESSOR_FORMS(SlowAlphaResample);

int Rounded(double value) { return static_cast<int>(std::nearbyint(value)); }

Pixels NearestByDefinition(const CDib32& source, Long dw, Long dh) {
  const double rx = (source.Width() - 1) / static_cast<double>(dw - 1);
  const double ry = (source.Height() - 1) / static_cast<double>(dh - 1);
  Pixels pixels;
  for (Long y = 0; y < dh; ++y) {
    for (Long x = 0; x < dw; ++x) {
      const int sx = dw == 1 ? 0 : Rounded(x * rx), sy = dh == 1 ? 0 : Rounded(y * ry);
      pixels.push_back(PixelOf(source, sx, sy));
    }
  }
  return pixels;
}

// The accumulator of the coverage route, as it is defined.
class Accumulator {
 public:
  Accumulator(Long width, Long height)
      : across_(static_cast<std::size_t>(width) * 4 + 5),
        entries_(across_ * (static_cast<std::size_t>(height) + 1)) {}

  std::int32_t* At(Long x, Long y) {
    return &entries_.at(static_cast<std::size_t>(y) * across_ + static_cast<std::size_t>(x) * 4);
  }
  void Add(Long x, Long y, const Pixel& pixel, double weight) {
    const auto held = static_cast<float>(weight);
    std::int32_t* entry = At(x, y);
    for (std::size_t c = 0; c < 4; ++c) {
      if (c < 3 && pixel[3] == 0) continue;
      entry[c] = Rounded(entry[c] + pixel[c] * static_cast<double>(held));
    }
  }
  void AddWhole(Long x, Long y, const Pixel& pixel) {
    std::int32_t* entry = At(x, y);
    for (std::size_t c = 0; c < 4; ++c) {
      if (c == 3 || pixel[3] != 0) entry[c] += pixel[c];
    }
  }

 private:
  std::size_t across_;
  std::vector<std::int32_t> entries_;
};

Pixels CoverageByDefinition(const CDib32& source, Long n, Long d) {
  const Long w = source.Width(), h = source.Height();
  Accumulator sums(n, d);
  const auto k = static_cast<float>(static_cast<double>(n) / w);
  for (Long sx = 0; sx < w; ++sx) {
    const double qx = static_cast<double>(sx * n) / w;
    const auto fx = static_cast<float>(qx);
    const auto ix = static_cast<Long>(std::floor(qx));
    for (Long sy = 0; sy < h; ++sy) {
      const double qy = static_cast<double>(sy * n) / w;
      const auto fy = static_cast<float>(qy);
      const auto iy = static_cast<Long>(std::floor(qy));
      const bool across = ix + 1 < static_cast<double>(fx) + k, down = iy + 1 < static_cast<double>(fy) + k;
      const auto wx = static_cast<float>(1 - (static_cast<double>(fx) + k - (ix + 1)) / k);
      const auto wy = static_cast<float>(1 - (static_cast<double>(k) + fy - (iy + 1)) / k);
      const double dx = wx, dy = wy;
      const Pixel pixel = PixelOf(source, sx, sy);
      if (across && down) {
        sums.Add(ix, iy, pixel, dx * dy);
        sums.Add(ix + 1, iy, pixel, (1 - dx) * dy);
        sums.Add(ix, iy + 1, pixel, (1 - dy) * dx);
        sums.Add(ix + 1, iy + 1, pixel, (1 - dx) * (1 - dy));
      } else if (across) {
        sums.Add(ix, iy, pixel, dx);
        sums.Add(ix + 1, iy, pixel, 1 - dx);
      } else if (down) {
        sums.Add(ix, iy, pixel, dy);
        sums.Add(ix, iy + 1, pixel, 1 - dy);
      } else {
        sums.AddWhole(ix, iy, pixel);
      }
    }
  }
  Pixels pixels;
  for (Long y = 0; y < d; ++y) {
    for (Long x = 0; x < n; ++x) {
      Pixel pixel;
      for (std::size_t c = 0; c < 4; ++c) {
        std::int64_t v = sums.At(x, y)[c];
        v = v * n / w;
        v = v * n / w;
        pixel[c] = static_cast<std::uint8_t>(std::min<std::int64_t>(v, 255));
      }
      pixels.push_back(pixel);
    }
  }
  return pixels;
}

Pixels BlocksByDefinition(const CDib32& source, Long n, Long d) {
  const Long bx = source.Width() / n, by = source.Height() / d;
  Pixels pixels;
  for (Long y = 0; y < d; ++y) {
    for (Long x = 0; x < n; ++x) {
      int sums[3] = {}, alphas = 0, visible = 0;
      for (Long row = y * by; row < (y + 1) * by; ++row) {
        for (Long column = x * bx; column < (x + 1) * bx; ++column) {
          const Pixel pixel = PixelOf(source, column, row);
          alphas += pixel[3];
          if (pixel[3] == 0) continue;
          for (std::size_t c = 0; c < 3; ++c) sums[c] += pixel[c] * pixel[3] / 255;
          ++visible;
        }
      }
      Pixel pixel{};
      for (std::size_t c = 0; c < 3 && visible > 0; ++c)
        pixel[c] = static_cast<std::uint8_t>(sums[c] / visible);
      pixel[3] = static_cast<std::uint8_t>(alphas / (bx * by));
      pixels.push_back(pixel);
    }
  }
  return pixels;
}

Pixels AreaByDefinition(const CDib32& source, Long n) {
  const Long w = source.Width(), h = source.Height();
  const Long d = h * n / w + (h * n % w != 0 ? 1 : 0);
  return h % d == 0 && w % n == 0 ? BlocksByDefinition(source, n, d) : CoverageByDefinition(source, n, d);
}

TEST_P(AlphaResample, NearestFollowsItsDefinition) {
  Random random(71);
  for (int round = 0; round < 300; ++round) {
    const auto source = AlphaNoise(Between(random, 1, 70), Between(random, 1, 70), random);
    const Long width = Between(random, 1, 150), height = Between(random, 1, 70);
    const auto resampled = source->ResampleNearest(width, height);
    ASSERT_EQ(resampled->Width(), width);
    ASSERT_EQ(PixelsOf(*resampled), NearestByDefinition(*source, width, height))
        << source->Width() << 'x' << source->Height() << " to " << width << 'x' << height;
  }
}

TEST_P(SlowAlphaResample, AreaFollowsItsDefinition) {
  Random random(72);
  for (int round = 0; round < 400; ++round) {
    const auto source = AlphaNoise(Between(random, 1, 70), Between(random, 1, 70), random);
    const Long width = Between(random, 1, round % 4 == 0 ? 200 : source->Width());
    const auto resampled = source->ResampleArea(width);
    ASSERT_EQ(PixelsOf(*resampled), AreaByDefinition(*source, width))
        << source->Width() << 'x' << source->Height() << " to " << width;
  }
}

TEST_P(SlowAlphaResample, AreaOfTheSizesThatIconsHave) {
  Random random(73);
  constexpr Long kIconSizes[] = {16, 24, 32, 48, 72, 96, 128, 256};
  for (const Long from : {17, 23, 40, 48, 64, 100, 128, 200, 256, 300, 512}) {
    const auto source = AlphaNoise(from, from, random);
    for (const Long to : kIconSizes) {
      ASSERT_EQ(PixelsOf(*source->ResampleArea(to)), AreaByDefinition(*source, to)) << from << " to " << to;
    }
  }
}

TEST_P(AlphaResample, AreaOfManyPixelsACellRoundsAtEveryAddition) {
  Random random(74);
  for (const Long width : {1, 3, 7, 15}) {
    const auto source = AlphaNoise(701, 90, random);
    ASSERT_EQ(PixelsOf(*source->ResampleArea(width)), AreaByDefinition(*source, width)) << width;
  }
}

// In the middle column a pixel weighs 2^-25 less than a half. Added to a sum as large as that of a million
// pixels it is held as a half, and so rounds up, which a sum without that step in between would not do.
TEST_P(AlphaResample, AreaOfAMillionPixelsACellHoldsEachSumBeforeItIsRounded) {
  constexpr Long kWidth = 2169, kCell = 1084;  // whole pixels across and down; the cell holds half a one more
  constexpr double kWeight = 0.5 - 0x1p-25;
  constexpr Long kSum = 298739623, kMissing = kCell * kCell * 255 - kSum;
  const double sum = kSum + kWeight;
  ASSERT_EQ(sum, kSum + 0.5) << "held";
  ASSERT_EQ(Rounded(sum), kSum + 1) << "even";
  // Times the square of 2 / 2169, truncated twice, this is the least that makes 254.
  ASSERT_EQ((std::int64_t{kSum} + 1) * 2 / kWidth * 2 / kWidth, 254);
  ASSERT_EQ(std::int64_t{kSum} * 2 / kWidth * 2 / kWidth, 253);

  const auto source = AlphaSurface(kWidth, kCell + 2);
  GdiFlush();
  for (Long row = 0; row < kCell; ++row)
    for (Long x = 0; x < kCell; ++x) PutPixel(*source, x, row, {255, 0, 0, 1});
  for (Long i = 0; i < kMissing / 255; ++i) PutPixel(*source, i % kCell, i / kCell, {0, 0, 0, 1});
  PutPixel(*source, 500, 500, {255 - kMissing % 255, 0, 0, 1});
  PutPixel(*source, kCell, kCell - 1, {1, 0, 0, 1});
  EXPECT_EQ(PixelOf(*source->ResampleArea(2), 0, 0)[0], 254);
}

// Weights of a half and a quarter meet ties at every second pixel.
TEST_P(AlphaResample, AreaSettlesTiesInTheOrderOfTheDefinition) {
  Random random(75);
  for (const Long from : {3, 6, 12, 24, 48}) {
    for (int round = 0; round < 40; ++round) {
      const auto source = AlphaNoise(from, from, random);
      for (const Long to : {from / 3 * 2, from * 4 / 3, from * 2}) {
        ASSERT_EQ(PixelsOf(*source->ResampleArea(to)), AreaByDefinition(*source, to)) << from << " to " << to;
      }
    }
  }
}

TEST(ResampleNearest, WithBothSizes0IsNothing) {
  EXPECT_EQ(AlphaSurface(3, 3)->ResampleNearest(0, 0), nullptr);
}

TEST(ResampleNearest, ASizeOf0MeansTheSources) {
  const auto source = AlphaSurface(5, 3);
  EXPECT_EQ(source->ResampleNearest(0, 7)->Width(), 5);
  EXPECT_EQ(source->ResampleNearest(7, 0)->Height(), 3);
}

TEST(ResampleNearest, ThatCantBeMadeIsASurfaceWithoutPixels) {
  const auto source = AlphaSurface(5, 3);
  const auto resampled = source->ResampleNearest(-1, 5);
  ASSERT_NE(resampled, nullptr);
  EXPECT_EQ(resampled->Bits(), nullptr);
}

TEST(ResampleNearest, OfASingleNewColumnOrRowReadsTheFirst) {
  const auto source = AlphaSurface(3, 3);
  PutPixel(*source, 0, 0, {1, 2, 3, 4});
  EXPECT_EQ(PixelsOf(*source->ResampleNearest(1, 1)), (Pixels{{1, 2, 3, 4}}));
}

TEST(ResampleNearest, SamplesCornersAtCorners) {
  Random random(76);
  const auto source = AlphaNoise(13, 9, random);
  const auto resampled = source->ResampleNearest(31, 5);
  EXPECT_EQ(PixelOf(*resampled, 0, 0), PixelOf(*source, 0, 0));
  EXPECT_EQ(PixelOf(*resampled, 30, 0), PixelOf(*source, 12, 0));
  EXPECT_EQ(PixelOf(*resampled, 0, 4), PixelOf(*source, 0, 8));
  EXPECT_EQ(PixelOf(*resampled, 30, 4), PixelOf(*source, 12, 8));
}

TEST(ResampleArea, HeightFollowsFromTheWidthRoundedUp) {
  EXPECT_EQ(AlphaSurface(40, 40)->ResampleArea(32)->Height(), 32);
  EXPECT_EQ(AlphaSurface(3, 2)->ResampleArea(2)->Height(), 2);
  EXPECT_EQ(AlphaSurface(100, 1)->ResampleArea(3)->Height(), 1);
}

TEST(ResampleArea, WithoutAWidthIsNothingAndToNoWidthIsASurfaceWithoutPixels) {
  EXPECT_EQ(CDib32().ResampleArea(5), nullptr);
  for (const Long width : {0, -1, 0x7FFFFFFF, -0x7FFFFFFF}) {
    const auto resampled = AlphaSurface(4, 4)->ResampleArea(width);
    ASSERT_NE(resampled, nullptr);
    EXPECT_EQ(resampled->Bits(), nullptr) << width;
  }
}

TEST(ResampleArea, OfOneOpaquePixelAmongClearOnesGivesItsColourInFullAndAlpha63) {
  const auto source = AlphaSurface(2, 2);
  PutPixel(*source, 1, 0, {10, 20, 200, 255});
  PutPixel(*source, 0, 0, {99, 99, 99, 0});
  EXPECT_EQ(PixelsOf(*source->ResampleArea(1)), (Pixels{{10, 20, 200, 63}}));
}

TEST(ResampleArea, OfABlockOfColour200AndAlpha128GivesColour100AndAlpha128) {
  EXPECT_EQ(PixelsOf(*AlphaSurface(2, 2, {200, 200, 200, 128})->ResampleArea(1)),
            (Pixels{{100, 100, 100, 128}}));
}

// By whole blocks, which weigh colours by alpha; by coverage they would keep their 200.
TEST(ResampleArea, From32To16TakesBlocksOfFour) {
  const auto source = AlphaSurface(32, 32, {200, 100, 50, 128});
  PutPixel(*source, 0, 0, {90, 90, 90, 255});
  const auto resampled = source->ResampleArea(16);
  ASSERT_EQ(resampled->Width(), 16);
  ASSERT_EQ(resampled->Height(), 16);
  Pixels expected(256, Pixel{100, 50, 25, 128});
  expected[0] = {(90 + 3 * 100) / 4, (90 + 3 * 50) / 4, (90 + 3 * 25) / 4, (255 + 3 * 128) / 4};
  EXPECT_EQ(PixelsOf(*resampled), expected);
}

TEST(ResampleArea, OfAClearBlockIsAllZero) {
  EXPECT_EQ(PixelsOf(*AlphaSurface(4, 4, {9, 9, 9, 0})->ResampleArea(2)), Pixels(4, Pixel{}));
}

TEST(ResampleArea, BetweenUnevenSizesDoesntWeighColoursByAlpha) {
  const Pixels pixels = PixelsOf(*AlphaSurface(40, 40, {200, 200, 200, 128})->ResampleArea(32));
  ASSERT_EQ(pixels.size(), 32u * 32u);
  for (const Pixel& pixel : pixels) {
    EXPECT_NEAR(pixel[0], 200, 2);
    EXPECT_NEAR(pixel[3], 128, 2);
  }
}

TEST(ResampleArea, BetweenUnevenSizesOfAClearSourceIsAllZero) {
  EXPECT_EQ(PixelsOf(*AlphaSurface(40, 40, {9, 9, 9, 0})->ResampleArea(32)), Pixels(1024, Pixel{}));
}

TEST(ResampleArea, BesideTransparencyDarkensTowardsBlack) {
  const auto source = AlphaSurface(3, 3);
  for (Long row = 0; row < 3; ++row) PutPixel(*source, 0, row, {255, 255, 255, 255});
  const Pixel beside = PixelOf(*source->ResampleArea(2), 0, 0);
  EXPECT_NEAR(beside[0], 170, 2) << "two thirds of the cell are white, the rest clear";
  EXPECT_EQ(beside[0], beside[3]);
}

TEST(ResampleArea, From23To24LeavesNoHolesAndBeyondTwiceTheSizeDoes) {
  const Pixels slight = PixelsOf(*AlphaSurface(23, 23, {255, 255, 255, 255})->ResampleArea(24));
  for (const Pixel& pixel : slight) EXPECT_GT(pixel[3], 0);
  const Pixels large = PixelsOf(*AlphaSurface(4, 4, {255, 255, 255, 255})->ResampleArea(16));
  EXPECT_NE(std::count(large.begin(), large.end(), Pixel{}), 0);
}

TEST(ResampledSurfaces, HoldStraightAlphaByTheirFlagWhateverTheSourceSays) {
  Random random(77);
  const auto source = AlphaNoise(8, 8, random);
  source->Premultiply();
  for (const auto& resampled : {source->ResampleNearest(4, 4), source->ResampleArea(4),
                                source->ResampleArea(5), source->FlipVertical()}) {
    EXPECT_TRUE(resampled->NotPremultiplied());
  }
  const auto halved = AlphaSurface(2, 2, {200, 200, 200, 128})->ResampleArea(1);
  halved->Premultiply();
  EXPECT_EQ(PixelsOf(*halved), (Pixels{{50, 50, 50, 128}})) << "a block's colours are weighed again";
}

TEST(ResampledSurfaces, LeaveTheSourceAlone) {
  Random random(78);
  const auto source = AlphaNoise(9, 7, random);
  const Pixels before = PixelsOf(*source);
  source->ResampleNearest(5, 5);
  source->ResampleArea(5);
  source->FlipVertical();
  EXPECT_EQ(PixelsOf(*source), before);
}

TEST(ResampledSurfaces, OfAnEmptySurfaceHaveNothingInThem) {
  const auto source = AlphaSurface(6, 4);
  source->ClearUp();
  EXPECT_EQ(PixelsOf(*source->ResampleNearest(3, 3)), Pixels(9, Pixel{}));
  EXPECT_EQ(PixelsOf(*source->ResampleArea(3)), Pixels(6, Pixel{}));
  EXPECT_EQ(CDib32().FlipVertical()->Bits(), nullptr);
}

TEST(ResampledSurfaces, OfASurfaceOf24BitsHaveNothingInThem) {
  CDib32 source;
  ASSERT_TRUE(source.Create(6, 4, true));
  source.Clear(MakeRgb(255, 255, 255));
  EXPECT_EQ(PixelsOf(*source.ResampleNearest(3, 3)), Pixels(9, Pixel{}));
  EXPECT_EQ(PixelsOf(*source.ResampleArea(5)), Pixels(20, Pixel{}));
  EXPECT_EQ(PixelsOf(*source.FlipVertical()), Pixels(24, Pixel{}));
}

TEST(FlipVertical, TurnsRowsOverAndLosesBlueToAlpha) {
  Random random(79);
  const auto source = AlphaNoise(7, 5, random);
  const auto flipped = source->FlipVertical();
  for (Long row = 0; row < 5; ++row) {
    for (Long x = 0; x < 7; ++x) {
      const Pixel from = PixelOf(*source, x, row);
      EXPECT_EQ(PixelOf(*flipped, x, 4 - row), (Pixel{from[3], from[1], from[2], from[3]}));
    }
  }
}

}  // namespace
}  // namespace marklet
