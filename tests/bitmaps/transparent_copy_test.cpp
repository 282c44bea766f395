#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <tuple>

#include "bitmaps/cdib24.h"
#include "bitmaps/pixel_context.h"
#include "bitmaps/pixels.h"
#include "support/processor_forms.h"

namespace marklet {
namespace {

constexpr COLORREF kKey = MakeRgb(255, 0, 255), kRed = MakeRgb(255, 0, 0), kGrey = MakeRgb(9, 10, 11);
constexpr Long kMax = std::numeric_limits<Long>::max(), kMin = std::numeric_limits<Long>::min();

using Bytes = std::array<std::uint8_t, 4>;  // blue, green, red, alpha; no alpha reads 0

// A picture from the top left, free of any surface.
struct Picture {
  Long width, height;
  bool has_alpha;
  std::vector<Bytes> pixels;

  explicit Picture(const PixelContext& context)
      : width(context.Width()), height(context.Height()), has_alpha(context.Bytes() == 4) {
    GdiFlush();
    for (Long y = 0; y < height; ++y) {
      for (Long x = 0; x < width; ++x) {
        Bytes bytes{};
        std::copy_n(context.At(x, y), context.Bytes(), bytes.begin());
        pixels.push_back(bytes);
      }
    }
  }
  Bytes* At(std::int64_t x, std::int64_t y) {
    const bool inside = x >= 0 && x < width && y >= 0 && y < height;
    return inside ? &pixels[static_cast<std::size_t>(y * width + x)] : nullptr;
  }
  friend bool operator==(const Picture&, const Picture&) = default;
};

struct Copy {
  Long x, y, width, height, source_x, source_y;
};

void NaiveCopy(Picture& to, Picture from, const Copy& copy, COLORREF key) {
  for (Long row = 0; row < copy.height; ++row) {
    for (Long column = 0; column < copy.width; ++column) {
      const Bytes* in = from.At(std::int64_t{copy.source_x} + column, std::int64_t{copy.source_y} + row);
      Bytes* out = to.At(std::int64_t{copy.x} + column, std::int64_t{copy.y} + row);
      if (in == nullptr || out == nullptr || MakeRgb((*in)[2], (*in)[1], (*in)[0]) == key) continue;
      *out = *in;
      if (!to.has_alpha) (*out)[3] = 0;
    }
  }
}

void FillWithNoise(const PixelContext& context, Random& random) {
  GdiFlush();
  for (Long y = 0; y < context.Height(); ++y) {
    for (Long x = 0; x < context.Width(); ++x) {
      const COLORREF colour = RandomColour(random, kKey);
      std::uint8_t* pixel = context.At(x, y);
      pixel[0] = static_cast<std::uint8_t>(BlueOf(colour));
      pixel[1] = static_cast<std::uint8_t>(GreenOf(colour));
      pixel[2] = static_cast<std::uint8_t>(RedOf(colour));
      if (context.Bytes() == 4) pixel[3] = static_cast<std::uint8_t>(random());
    }
  }
}

Copy RandomCopy(Random& random) {
  const auto near = [&random] { return Between(random, -12, 40); };
  return {near(), near(), near(), near(), near(), near()};
}

// Copies, and holds what has become of `to` against a copy pixel by pixel. The two may be one.
void ExpectNaiveCopy(const PixelContext& from, const PixelContext& to, const Copy& copy) {
  Picture expected(to);
  NaiveCopy(expected, Picture(from), copy, kKey);
  EXPECT_EQ(TransparentCopy(to.Get(), copy.x, copy.y, copy.width, copy.height, from.Get(), copy.source_x,
                            copy.source_y, kKey),
            0);
  ASSERT_EQ(Picture(to), expected);
}

class TransparentCopyBetween : public testing::TestWithParam<std::tuple<std::array<int, 2>, ProcessorForm>> {
 protected:
  std::array<int, 2> Depths() const { return std::get<0>(GetParam()); }

 private:
  ProcessorFormOverride form_{std::get<1>(GetParam())};
};

TEST_P(TransparentCopyBetween, TakesEveryPixelButTheKeyWithinBothSurfaces) {
  const auto [from_bits, to_bits] = Depths();
  Random random(11);
  for (int i = 0; i < 800; ++i) {
    const PixelContext from(Between(random, 1, 40), Between(random, 1, 20), from_bits);
    const PixelContext to(Between(random, 1, 40), Between(random, 1, 20), to_bits);
    FillWithNoise(from, random);
    FillWithNoise(to, random);
    const Copy copy = RandomCopy(random);
    SCOPED_TRACE(i);
    ASSERT_NO_FATAL_FAILURE(ExpectNaiveCopy(from, to, copy));
  }
}

TEST_P(TransparentCopyBetween, LongRowsAreCopiedAsShortOnes) {
  const auto [from_bits, to_bits] = Depths();
  Random random(12);
  for (int i = 0; i < 60; ++i) {
    const PixelContext from(500, 3, from_bits), to(500, 3, to_bits);
    FillWithNoise(from, random);
    // Runs of key and of colour, as pictures have them.
    for (Long x = Between(random, 0, 60); x < 500; x += Between(random, 1, 90)) {
      for (const Long end = std::min(x + Between(random, 1, 70), 500); x < end; ++x) {
        std::copy_n(Bytes{255, 0, 255, 0}.begin(), 3, from.At(x, 1));
      }
    }
    FillWithNoise(to, random);
    const Copy copy{Between(random, 0, 50), 0, 500, 3, Between(random, 0, 50), 0};
    SCOPED_TRACE(i);
    ASSERT_NO_FATAL_FAILURE(ExpectNaiveCopy(from, to, copy));
  }
}

INSTANTIATE_TEST_SUITE_P(DepthsAndForms, TransparentCopyBetween,
                         testing::Combine(testing::Values(std::array{24, 24}, std::array{24, 32},
                                                          std::array{32, 24}, std::array{32, 32}),
                                          testing::ValuesIn(kProcessorForms)));

class TransparentCopyWithin : public testing::TestWithParam<std::tuple<int, ProcessorForm>> {
 private:
  ProcessorFormOverride form_{std::get<1>(GetParam())};
};

TEST_P(TransparentCopyWithin, ReadsEachPixelBeforeOverwritingIt) {
  Random random(13);
  for (int i = 0; i < 800; ++i) {
    const PixelContext surface(Between(random, 1, 60), Between(random, 1, 20), std::get<0>(GetParam()));
    FillWithNoise(surface, random);
    const Copy copy = RandomCopy(random);
    SCOPED_TRACE(i);
    ASSERT_NO_FATAL_FAILURE(ExpectNaiveCopy(surface, surface, copy));
  }
}

// Long enough for many pixels at a time, and near enough that what is read was just written otherwise.
TEST_P(TransparentCopyWithin, ReadsBeforeItWritesAlongARow) {
  Random random(16);
  for (const Long shift : {1, 2, 3, 5, 15, 16, 17, 40, -1, -3, -16, -40}) {
    const PixelContext surface(200, 2, std::get<0>(GetParam()));
    FillWithNoise(surface, random);
    const Copy copy{50 + shift, 0, 100, 2, 50, 0};
    SCOPED_TRACE(shift);
    ASSERT_NO_FATAL_FAILURE(ExpectNaiveCopy(surface, surface, copy));
  }
}

INSTANTIATE_TEST_SUITE_P(DepthsAndForms, TransparentCopyWithin,
                         testing::Combine(testing::Values(24, 32), testing::ValuesIn(kProcessorForms)));

TEST(TransparentCopy, LeavesTheDestinationWhereTheSourceIsTheKey) {
  const auto source = Surface(3, 1, kRed), target = Surface(3, 1, kGrey);
  PutColour(*source, 1, 0, kKey);
  TransparentCopy(target->hDC(), 0, 0, 3, 1, source->hDC(), 0, 0, kKey);
  EXPECT_EQ(Colours(*target), (std::vector<COLORREF>{kRed, kGrey, kRed}));
}

TEST(TransparentCopy, WithAKeyAbsentFromTheSourceOverwritesTheWholeRectangle) {
  const auto source = Surface(4, 4), target = Surface(6, 6, kGrey);
  Random random(14);
  FillWithNoise(*source, random, kRed);
  TransparentCopy(target->hDC(), 1, 1, 4, 4, source->hDC(), 0, 0, MakeRgb(1, 2, 3));
  for (Long row = 0; row < 6; ++row) {
    for (Long x = 0; x < 6; ++x) {
      const bool inside = x >= 1 && x < 5 && row >= 1 && row < 5;
      EXPECT_EQ(ColourAt(*target, x, row), inside ? ColourAt(*source, x - 1, row - 1) : kGrey);
    }
  }
}

TEST(TransparentCopy, WithAKeyThatIsNoColourCopiesEverything) {
  const auto source = Surface(4, 4), target = Surface(4, 4, kGrey);
  Random random(15);
  FillWithNoise(*source, random, KeyColour);
  TransparentCopy(target->hDC(), 0, 0, 4, 4, source->hDC(), 0, 0, CLR_INVALID);
  EXPECT_EQ(Colours(*target), Colours(*source));
}

TEST(TransparentCopy, WhiteIsAKeyLikeAnyOther) {
  constexpr COLORREF kWhite = MakeRgb(255, 255, 255);
  const auto source = Surface(3, 1, kRed), target = Surface(3, 1, kGrey);
  PutColour(*source, 1, 0, kWhite);
  TransparentCopy(target->hDC(), 0, 0, 3, 1, source->hDC(), 0, 0, kWhite);
  EXPECT_EQ(Colours(*target), (std::vector<COLORREF>{kRed, kGrey, kRed}));
}

TEST(TransparentCopy, OnlyTheExactKeyIsTransparent) {
  const auto source = Surface(3, 1), target = Surface(3, 1, kGrey);
  PutColour(*source, 0, 0, MakeRgb(254, 3, 253));
  PutColour(*source, 1, 0, MakeRgb(254, 3, 252));
  PutColour(*source, 2, 0, MakeRgb(253, 3, 254));
  TransparentCopy(target->hDC(), 0, 0, 3, 1, source->hDC(), 0, 0, KeyColour);
  EXPECT_EQ(Colours(*target), (std::vector<COLORREF>{kGrey, MakeRgb(254, 3, 252), MakeRgb(253, 3, 254)}));
}

TEST(TransparentCopy, AlphaOfTheSourceIsNotPartOfTheKey) {
  const PixelContext source(1, 1, 32), target(1, 1, 32);
  std::copy_n(Bytes{255, 0, 255, 200}.begin(), 4, source.At(0, 0));
  std::copy_n(Bytes{1, 2, 3, 4}.begin(), 4, target.At(0, 0));
  TransparentCopy(target.Get(), 0, 0, 1, 1, source.Get(), 0, 0, kKey);
  EXPECT_EQ(Picture(target).pixels[0], (Bytes{1, 2, 3, 4}));
}

TEST(TransparentCopy, TakesRectanglesAtTheEndsOfTheNumberRange) {
  const auto source = Surface(3, 3, kRed), target = Surface(3, 3, kGrey);
  const auto copy = [&](Long x, Long y, Long width, Long height, Long source_x, Long source_y) {
    return TransparentCopy(target->hDC(), x, y, width, height, source->hDC(), source_x, source_y, kKey);
  };
  EXPECT_EQ(copy(kMin, kMin, kMax, kMax, kMin, kMin), 0);
  EXPECT_EQ(copy(kMax, kMax, kMax, kMax, kMax, kMax), 0);
  EXPECT_EQ(copy(0, 0, kMin, kMin, 0, 0), 0);
  EXPECT_EQ(copy(kMin, 0, kMax, 3, kMax, 0), 0);
  EXPECT_EQ(Colours(*target), std::vector<COLORREF>(9, kGrey));
  EXPECT_EQ(copy(0, 0, kMax, kMax, 0, 0), 0);
  EXPECT_EQ(Colours(*target), std::vector<COLORREF>(9, kRed));
}

TEST(TransparentCopy, WithoutAContextDoesNothing) {
  const auto surface = Surface(3, 3, kRed);
  EXPECT_EQ(TransparentCopy(nullptr, 0, 0, 3, 3, surface->hDC(), 0, 0, kKey), 0);
  EXPECT_EQ(TransparentCopy(surface->hDC(), 0, 0, 3, 3, nullptr, 0, 0, kKey), 0);
  EXPECT_EQ(Colours(*surface), std::vector<COLORREF>(9, kRed));
}

TEST(PaintTransparent, CopiesThisSurfaceWithItsKeyLeftOut) {
  const auto source = Surface(4, 2, kRed), target = Surface(4, 2, kGrey);
  PutColour(*source, 3, 0, kKey);
  source->PaintTransparent(target->hDC(), 1, 0, 2, 2, 2, 0, kKey);
  EXPECT_EQ(Colours(*target), (std::vector<COLORREF>{kGrey, kRed, kGrey, kGrey, kGrey, kRed, kRed, kGrey}));
}

}  // namespace
}  // namespace marklet
