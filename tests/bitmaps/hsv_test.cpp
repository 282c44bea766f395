// Hue, saturation and value against worked examples.
#include "bitmaps/hsv.h"

#include <gtest/gtest.h>

#include <limits>
#include <ostream>

namespace marklet {

void PrintTo(const Hsv& hsv, std::ostream* out) {
  *out << hsv.hue << ' ' << hsv.saturation << ' ' << hsv.value;
}

namespace {

TEST(Hsv, OfThePureColours) {
  EXPECT_EQ(RGBToHSV(MakeRgb(0, 0, 0)), (Hsv{0, 0, 0}));
  EXPECT_EQ(RGBToHSV(MakeRgb(255, 255, 255)), (Hsv{0, 0, 100}));
  EXPECT_EQ(RGBToHSV(MakeRgb(255, 0, 0)), (Hsv{0, 100, 100}));
  EXPECT_EQ(RGBToHSV(MakeRgb(255, 255, 0)), (Hsv{60, 100, 100}));
  EXPECT_EQ(RGBToHSV(MakeRgb(0, 255, 0)), (Hsv{120, 100, 100}));
  EXPECT_EQ(RGBToHSV(MakeRgb(0, 255, 255)), (Hsv{180, 100, 100}));
  EXPECT_EQ(RGBToHSV(MakeRgb(0, 0, 255)), (Hsv{240, 100, 100}));
  EXPECT_EQ(RGBToHSV(MakeRgb(255, 0, 255)), (Hsv{300, 100, 100}));
}

TEST(Hsv, OfTheDarkestGreyHasNoValue) {
  EXPECT_EQ(RGBToHSV(MakeRgb(1, 1, 1)), (Hsv{0, 0, 0}));
  EXPECT_EQ(RGBToHSV(MakeRgb(2, 2, 2)), (Hsv{0, 0, 1}));
  EXPECT_EQ(RGBToHSV(MakeRgb(1, 0, 0)), (Hsv{0, 100, 0}));
}

TEST(Hsv, OfMixedColours) {
  EXPECT_EQ(RGBToHSV(MakeRgb(204, 153, 102)), (Hsv{30, 50, 80}));
  EXPECT_EQ(RGBToHSV(MakeRgb(255, 0, 64)), (Hsv{345, 100, 100}));   // -15.06, and 360 for a blue above green
  EXPECT_EQ(RGBToHSV(MakeRgb(8, 1, 0)), (Hsv{8, 100, 3}));          // 7.5 to the even 8
  EXPECT_EQ(RGBToHSV(MakeRgb(8, 3, 0)), (Hsv{22, 100, 3}));         // 22.5 to the even 22
  EXPECT_EQ(RGBToHSV(MakeRgb(200, 175, 200)), (Hsv{300, 12, 78}));  // 12.5 percent to the even 12
}

TEST(Hsv, OfTwoEqualLargestChannelsGoesByRedThenGreen) {
  EXPECT_EQ(RGBToHSV(MakeRgb(100, 100, 0)).hue, 60);   // red's rule, not green's
  EXPECT_EQ(RGBToHSV(MakeRgb(100, 0, 100)).hue, 300);  // red's rule
  EXPECT_EQ(RGBToHSV(MakeRgb(0, 100, 100)).hue, 180);  // green's rule
}

TEST(Hsv, MakesTheColourOfEachSixth) {
  EXPECT_EQ(HSVToRGB({0, 100, 100}, false), MakeRgb(255, 0, 0));
  EXPECT_EQ(HSVToRGB({30, 50, 80}, false), MakeRgb(204, 153, 102));
  EXPECT_EQ(HSVToRGB({60, 100, 100}, false), MakeRgb(255, 255, 0));
  EXPECT_EQ(HSVToRGB({90, 50, 80}, false), MakeRgb(153, 204, 102));
  EXPECT_EQ(HSVToRGB({120, 100, 100}, false), MakeRgb(0, 255, 0));
  EXPECT_EQ(HSVToRGB({150, 50, 80}, false), MakeRgb(102, 204, 153));
  EXPECT_EQ(HSVToRGB({180, 100, 100}, false), MakeRgb(0, 255, 255));
  EXPECT_EQ(HSVToRGB({210, 50, 80}, false), MakeRgb(102, 153, 204));
  EXPECT_EQ(HSVToRGB({240, 100, 100}, false), MakeRgb(0, 0, 255));
  EXPECT_EQ(HSVToRGB({270, 50, 80}, false), MakeRgb(153, 102, 204));
  EXPECT_EQ(HSVToRGB({300, 100, 100}, false), MakeRgb(255, 0, 255));
  EXPECT_EQ(HSVToRGB({330, 50, 80}, false), MakeRgb(204, 102, 153));
  EXPECT_EQ(HSVToRGB({360, 100, 100}, false), MakeRgb(255, 0, 0));
}

TEST(Hsv, OutsideTheCircleIsBlackUnlessNormalised) {
  EXPECT_EQ(HSVToRGB({400, 100, 100}, false), 0u);
  EXPECT_EQ(HSVToRGB({-1, 100, 100}, false), 0u);
  EXPECT_EQ(HSVToRGB({400, 100, 100}, true), HSVToRGB({40, 100, 100}, false));
  EXPECT_EQ(HSVToRGB({40, 100, 100}, false), MakeRgb(255, 170, 0));
  EXPECT_EQ(HSVToRGB({0, 200, 200}, true), MakeRgb(255, 0, 0));
}

TEST(Hsv, IsNormalisedIntoItsRanges) {
  constexpr Long kLowest = std::numeric_limits<Long>::min();
  EXPECT_EQ(NormaliseHSV({-1, -5, 105}), (Hsv{359, 0, 100}));
  EXPECT_EQ(NormaliseHSV({360, 101, -1}), (Hsv{0, 100, 0}));
  EXPECT_EQ(NormaliseHSV({-360, 50, 50}), (Hsv{0, 50, 50}));
  EXPECT_EQ(NormaliseHSV({-2147483520, 0, 0}), (Hsv{0, 0, 0}));
  EXPECT_EQ(NormaliseHSV({-2147483521, 0, 0}), (Hsv{359, 0, 0}));
  EXPECT_EQ(NormaliseHSV({kLowest, 0, 0}), (Hsv{232, 0, 0}));
}

TEST(Hsv, TakesAnyNumbers) {
  constexpr Long kEnds[] = {std::numeric_limits<Long>::min(), -1, 0, 359, std::numeric_limits<Long>::max()};
  for (const Long hue : kEnds)
    for (const Long saturation : kEnds)
      for (const Long value : kEnds) {
        HSVToRGB({hue, saturation, value}, false);
        HSVToRGB({hue, saturation, value}, true);
      }
}

}  // namespace
}  // namespace marklet
