#include "bitmaps/colour.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>

#include "bitmaps/pixels.h"
#include "platform/system.h"
#include "support/processor_time.h"

namespace marklet {
namespace {

constexpr COLORREF kWhite = MakeRgb(255, 255, 255), kBlack = 0, kGrey = MakeRgb(9, 10, 11);
constexpr COLORREF kRed = MakeRgb(255, 0, 0), kBlue = MakeRgb(0, 0, 255);
constexpr Long kMax = std::numeric_limits<Long>::max(), kMin = std::numeric_limits<Long>::min();

class ColourTest : public testing::Test {
 protected:
  ~ColourTest() override { Configuration() = {}; }
};
using BlendColoursTest = ColourTest;
using GradientTest = ColourTest;
using SystemColoursChangedTest = ColourTest;

TEST_F(BlendColoursTest, OfWhiteAndBlackAtWeight128Is128) {
  EXPECT_EQ(BlendColours(kWhite, kBlack, 128), MakeRgb(128, 128, 128));
}

TEST_F(BlendColoursTest, TruncatesBothSharesSoThatAMixCanLoseOne) {
  const COLORREF grey = MakeRgb(100, 100, 100);
  EXPECT_EQ(BlendColours(grey, grey, 100), MakeRgb(99, 99, 99));
}

TEST_F(BlendColoursTest, AtFullWeightIsTheFirstColourAndAtNoneTheSecond) {
  EXPECT_EQ(BlendColours(kRed, kBlue, 255), kRed);
  EXPECT_EQ(BlendColours(kRed, kBlue, 0), kBlue);
}

TEST_F(BlendColoursTest, SwapExchangesTheColours) {
  EXPECT_EQ(BlendColours(kRed, kBlue, 255, true), kBlue);
  EXPECT_EQ(BlendColours(kRed, kBlue, 100, true), BlendColours(kBlue, kRed, 100, false));
}

TEST_F(BlendColoursTest, TruncatesEachShareForEveryPairAndWeight) {
  for (unsigned a = 0; a < 256; a += 5) {
    for (unsigned b = 0; b < 256; b += 3) {
      for (int weight = 0; weight < 256; ++weight) {
        const double share_b = std::floor(b * (255.0 - weight) / 255.0);
        const double share_a = std::floor(a * static_cast<double>(weight) / 255.0);
        const auto mixed = static_cast<unsigned>(share_a + share_b);
        ASSERT_EQ(BlendColours(MakeRgb(a, b, 0), MakeRgb(b, a, 0), weight) & 0xFFu, mixed);
      }
    }
  }
}

TEST_F(BlendColoursTest, TakesSystemColoursByTheirIndex) {
  Configuration().system_colours = {{15, MakeRgb(1, 2, 3)}, {255, MakeRgb(7, 8, 9)}};
  EXPECT_EQ(BlendColours(0x8000000F, kBlue, 255), MakeRgb(1, 2, 3));
  EXPECT_EQ(BlendColours(kBlue, 0x8000000F, 0), MakeRgb(1, 2, 3));
  EXPECT_EQ(BlendColours(0x800000FF, kBlue, 255), MakeRgb(7, 8, 9));
  EXPECT_EQ(BlendColours(0x8001000F, kBlue, 255), MakeRgb(0x0F, 0, 1)) << "names no system colour";
}

// One column, from the top of the picture.
std::vector<COLORREF> ColumnColours(const CDib24& surface, Long x) {
  GdiFlush();
  std::vector<COLORREF> colours;
  for (Long row = surface.Height() - 1; row >= 0; --row) colours.push_back(ColourAt(surface, x, row));
  return colours;
}

TEST_F(GradientTest, OfEqualColoursFillsTheRectangleSolidly) {
  const auto surface = Surface(4, 4, kGrey);
  GradientRect(surface->hDC(), kRed, kRed, 1, 1, 2, 2, false);
  EXPECT_EQ(ColumnColours(*surface, 1), (std::vector<COLORREF>{kGrey, kRed, kRed, kGrey}));
  EXPECT_EQ(ColumnColours(*surface, 0), std::vector<COLORREF>(4, kGrey));
  EXPECT_EQ(ColumnColours(*surface, 3), std::vector<COLORREF>(4, kGrey));
}

TEST_F(GradientTest, ComparesTheColoursAfterResolvingThem) {
  Configuration().system_colours = {{15, kRed}};
  const auto surface = Surface(1, 3, kGrey);
  GradientRect(surface->hDC(), 0x8000000F, kRed, 0, 0, 1, 2, false);
  EXPECT_EQ(ColumnColours(*surface, 0), (std::vector<COLORREF>{kRed, kRed, kGrey})) << "no band below";
}

TEST_F(GradientTest, OfHeightTenPaintsElevenBands) {
  const auto surface = Surface(2, 14, kGrey);
  GradientRect(surface->hDC(), kWhite, kBlack, 0, 2, 1, 10, false);
  // (1 - t) * 255 to the nearest. With t held in 32 bits the halves at 0.1, 0.3, 0.7 and 0.9 are none: 0.1
  // and 0.3 are held a little too large, 0.7 and 0.9 too small. Only that at 0.5 is a tie, and goes to 128.
  constexpr unsigned kLevels[] = {255, 229, 204, 178, 153, 128, 102, 77, 51, 26, 0};
  const auto column = ColumnColours(*surface, 0);
  EXPECT_EQ(column[1], kGrey);
  for (std::size_t i = 0; i < 11; ++i) {
    EXPECT_EQ(column[i + 2], MakeRgb(kLevels[i], kLevels[i], kLevels[i])) << "band " << i;
  }
  EXPECT_EQ(column[12], kBlack) << "the eleventh band, below the rectangle";
  EXPECT_EQ(column[13], kGrey);
  EXPECT_EQ(ColumnColours(*surface, 1), std::vector<COLORREF>(14, kGrey));
}

TEST_F(GradientTest, GoesAcrossWhenHorizontal) {
  const auto surface = Surface(6, 2, kGrey);
  GradientRect(surface->hDC(), kWhite, kBlack, 1, 0, 3, 1, true);
  const std::vector<COLORREF> row = {ColourAt(*surface, 0, 1), ColourAt(*surface, 1, 1),
                                     ColourAt(*surface, 2, 1), ColourAt(*surface, 3, 1),
                                     ColourAt(*surface, 4, 1), ColourAt(*surface, 5, 1)};
  EXPECT_EQ(row, (std::vector<COLORREF>{kGrey, kWhite, MakeRgb(170, 170, 170), MakeRgb(85, 85, 85), kBlack,
                                        kGrey}));
  EXPECT_EQ(ColourAt(*surface, 1, 0), kGrey);
}

TEST_F(GradientTest, ModesAreThePlatforms) {
  const auto surface = Surface(4, 4, kGrey);
  GradientFillRect(surface->hDC(), {0, 0, 2, 2}, kWhite, kBlack, static_cast<GradientMode>(1));
  GdiFlush();
  EXPECT_EQ(ColourAt(*surface, 0, 3), kWhite);
  EXPECT_EQ(ColourAt(*surface, 1, 3), kWhite);
  EXPECT_EQ(ColourAt(*surface, 1, 1), kBlack);
  GradientFillRect(surface->hDC(), {0, 0, 2, 2}, kWhite, kBlack, static_cast<GradientMode>(0));
  GdiFlush();
  EXPECT_EQ(ColourAt(*surface, 0, 2), kWhite);
  EXPECT_EQ(ColourAt(*surface, 2, 3), kBlack);
}

TEST_F(GradientTest, ARectangleOfNoSizeHasOneBandOneWide) {
  const auto surface = Surface(3, 3, kGrey);
  GradientBands(surface->hDC(), {1, 1, 1, 1}, kRed, kBlue, true);
  EXPECT_EQ(Colours(*surface),
            (std::vector<COLORREF>{kGrey, kGrey, kGrey, kGrey, kRed, kGrey, kGrey, kGrey, kGrey}));
}

TEST_F(GradientTest, AnInvertedRectangleHasNoBand) {
  const auto surface = Surface(3, 3, kGrey);
  GradientBands(surface->hDC(), {0, 2, 3, 1}, kRed, kBlue, true);
  GradientBands(surface->hDC(), {2, 0, 1, 3}, kRed, kBlue, false);
  EXPECT_EQ(Colours(*surface), std::vector<COLORREF>(9, kGrey));
}

TEST_F(GradientTest, HugeRectanglesTakeNoTime) {
  const auto surface = Surface(3, 3, kGrey);
  const double start = ProcessorSeconds();
  GradientBands(surface->hDC(), {kMin, kMin, kMax, kMax}, kRed, kBlue, true);
  GradientBands(surface->hDC(), {0, 0, kMax, kMax}, kRed, kBlue, false);
  GradientRect(surface->hDC(), kRed, kBlue, kMin, kMin, kMin, kMax, true);
  GradientRect(surface->hDC(), kRed, kBlue, kMax, kMax, kMax, kMax, false);
  EXPECT_LT(ProcessorSeconds() - start, 1);
}

TEST(FillBand, FillsItsRectangle) {
  const auto surface = Surface(3, 3, kGrey);
  const HBRUSH brush = CreateSolidBrush(kRed);
  FillBand(surface->hDC(), 1, 2, 2, 1, brush);
  DeleteObject(brush);
  EXPECT_EQ(Colours(*surface),
            (std::vector<COLORREF>{kGrey, kRed, kRed, kGrey, kGrey, kGrey, kGrey, kGrey, kGrey}));
}

// Every pixel of the frame's edge has the colour and no other pixel has.
void ExpectFrame(Long width, Long height) {
  const auto surface = Surface(8, 8, kGrey);
  FrameRectangle(surface->hDC(), kRed, 2, 1, width, height);
  GdiFlush();
  for (Long y = 0; y < 8; ++y) {
    for (Long x = 0; x < 8; ++x) {
      const bool inside = x >= 2 && x < 2 + width && y >= 1 && y < 1 + height;
      const bool edge = inside && (x == 2 || x == 1 + width || y == 1 || y == height);
      EXPECT_EQ(ColourAt(*surface, x, 7 - y), edge ? kRed : kGrey)
          << width << " by " << height << " at " << x << ", " << y;
    }
  }
}

TEST(FrameRectangle, IsOnePixelWideAlongTheInnerEdge) {
  for (Long width = 1; width <= 5; ++width) {
    for (Long height = 1; height <= 5; ++height) ExpectFrame(width, height);
  }
}

TEST(FrameRectangle, OfWidthOneAndHeightOneSetsOnePixel) { ExpectFrame(1, 1); }

TEST(FrameRectangle, TakesTheColourAsItIs) {
  const auto surface = Surface(3, 3, kGrey);
  FrameRectangle(surface->hDC(), MakeRgb(1, 2, 3), 0, 0, 3, 3);
  EXPECT_EQ(Colours(*surface)[0], MakeRgb(1, 2, 3));
}

TEST(FrameRectangle, RunsOffTheSurfaceUnharmed) {
  const auto surface = Surface(3, 3, kGrey);
  FrameRectangle(surface->hDC(), kRed, -2, -2, 4, 4);
  EXPECT_EQ(Colours(*surface),
            (std::vector<COLORREF>{kGrey, kGrey, kGrey, kRed, kRed, kGrey, kGrey, kRed, kGrey}));
  FrameRectangle(surface->hDC(), kRed, kMin, kMin, kMax, kMax);
  FrameRectangle(surface->hDC(), kRed, kMax, kMax, kMax, kMax);
  FrameRectangle(nullptr, kRed, 0, 0, 3, 3);
}

TEST_F(SystemColoursChangedTest, ComparesTheSixInOrder) {
  constexpr int kIndices[] = {15, 13, 5, 8, 15, 18};
  std::array<COLORREF, 6> snapshot{};
  for (std::size_t i = 0; i < 6; ++i) {
    Configuration().system_colours[kIndices[i]] = static_cast<COLORREF>(0x10101 * kIndices[i]);
    snapshot[i] = static_cast<COLORREF>(0x10101 * kIndices[i]);
  }
  EXPECT_FALSE(SystemColoursChanged(snapshot));
  for (std::size_t i = 0; i < 6; ++i) {
    auto other = snapshot;
    other[i] ^= 1;
    EXPECT_TRUE(SystemColoursChanged(other)) << i;
  }
  for (const int index : {15, 13, 5, 8, 18}) {
    const COLORREF before = Configuration().system_colours[index];
    Configuration().system_colours[index] = before + 1;
    EXPECT_TRUE(SystemColoursChanged(snapshot)) << index;
    Configuration().system_colours[index] = before;
  }
  Configuration().system_colours[16] = 0x123456;
  EXPECT_FALSE(SystemColoursChanged(snapshot)) << "not one of the six";
}

}  // namespace
}  // namespace marklet
