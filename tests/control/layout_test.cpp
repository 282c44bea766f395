#include "control/layout.h"

#include <gtest/gtest.h>

#include <limits>

namespace marklet {
namespace {

constexpr RECT kClient = {0, 0, 100, 50};
constexpr Long kMost = std::numeric_limits<Long>::max(), kLeast = std::numeric_limits<Long>::min();

TEST(Layout, TheImagesSideMirrorsWithTheReadingDirection) {
  EXPECT_EQ(SideOfImage(0, false), ImageSide::Left);
  EXPECT_EQ(SideOfImage(1, true), ImageSide::Left);
  EXPECT_EQ(SideOfImage(0, true), ImageSide::Right);
  EXPECT_EQ(SideOfImage(1, false), ImageSide::Right);
  for (const Long other : {2, 3, -1, 99})
    for (const bool rtl : {false, true}) EXPECT_EQ(SideOfImage(other, rtl), ImageSide::Centred) << other;
}

TEST(Layout, ImagePlaces) {
  EXPECT_EQ(PlaceImage(kClient, ImageSide::Left, 32, 0), (ImagePlace{0, 0}));
  EXPECT_EQ(PlaceImage(kClient, ImageSide::Left, 32, 2), (ImagePlace{2, 2}));
  EXPECT_EQ(PlaceImage(kClient, ImageSide::Right, 32, 0), (ImagePlace{67, 0}));  // 100 - 32 - 1
  EXPECT_EQ(PlaceImage(kClient, ImageSide::Right, 32, 2), (ImagePlace{65, 2}));
  EXPECT_EQ(PlaceImage(kClient, ImageSide::Centred, 32, 0), (ImagePlace{34, 0}));
  EXPECT_EQ(PlaceImage(kClient, ImageSide::Centred, 32, 2), (ImagePlace{34, 2})) << "x knows no inset";
}

TEST(Layout, ACentredImageIsRoundedHalfToEven) {
  EXPECT_EQ(PlaceImage({0, 0, 101, 50}, ImageSide::Centred, 16, 0).x, 42);  // 42.5
  EXPECT_EQ(PlaceImage({0, 0, 103, 50}, ImageSide::Centred, 16, 0).x, 44);  // 43.5
  EXPECT_EQ(PlaceImage({0, 0, 7, 50}, ImageSide::Centred, 16, 0).x, -4);    // -4.5
}

TEST(Layout, TheTextLosesTheImagesWidthAndOnePixel) {
  EXPECT_EQ(AdjustTextRect(kClient, ImageSide::Left, 16), (RECT{17, 0, 100, 50}));
  EXPECT_EQ(AdjustTextRect(kClient, ImageSide::Right, 16), (RECT{0, 0, 83, 50}));
}

TEST(Layout, ACentredImageDoesNotMoveTheText) {
  EXPECT_EQ(AdjustTextRect(kClient, ImageSide::Centred, 16), kClient);
}

TEST(Layout, PaddingTenOfAHundredByFifty) { EXPECT_EQ(InsetByPadding(kClient, 10), (RECT{10, 10, 80, 30})); }

TEST(Layout, NoPaddingAndNegativePaddingChangeNothing) {
  EXPECT_EQ(InsetByPadding(kClient, 0), kClient);
  EXPECT_EQ(InsetByPadding(kClient, -4), kClient);
}

TEST(Layout, OnlyBorderOneInsets) {
  EXPECT_EQ(InsetByBorder(kClient, 1), (RECT{2, 2, 98, 48}));
  EXPECT_EQ(InsetByBorder(kClient, 0), kClient);
  EXPECT_EQ(InsetByBorder(kClient, 2), kClient);
}

TEST(Layout, NoNumberOverflows) {
  for (const Long extreme : {kMost, kLeast}) {
    InsetByPadding({extreme, extreme, extreme, extreme}, kMost);
    InsetByBorder({extreme, extreme, extreme, extreme}, 1);
    for (const ImageSide side : {ImageSide::Left, ImageSide::Right, ImageSide::Centred}) {
      PlaceImage({extreme, 0, extreme, 0}, side, extreme, 2);
      AdjustTextRect({extreme, 0, extreme, 0}, side, extreme);
    }
  }
  EXPECT_EQ(PixelsOfImageSize(kMost), 16);
  EXPECT_EQ(PixelsOfImageSize(kLeast), 16);
}

}  // namespace
}  // namespace marklet
