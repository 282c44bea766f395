// Hue, lightness and saturation on both scales.
#include "theme/hsl.h"

#include <gtest/gtest.h>

#include <cmath>

namespace marklet {
namespace {

struct Case {
  double red, green, blue, hue, lightness, saturation;
};

TEST(ToHsl, IsTheUsualOneForLevelsUpTo1) {
  for (const Case& c : {Case{1, 0, 0, 0, 0.5, 1}, Case{0, 1, 0, 120, 0.5, 1}, Case{0, 0, 1, 240, 0.5, 1},
                        Case{1, 1, 0, 60, 0.5, 1}, Case{0, 0.5, 0.5, 180, 0.25, 1},
                        Case{0.75, 0.25, 0.5, 330, 0.5, 0.5}, Case{1, 0.5, 0.5, 0, 0.75, 1}}) {
    const Hsl hsl = ToHSL(c.red, c.green, c.blue);
    EXPECT_DOUBLE_EQ(hsl.hue, c.hue);
    EXPECT_DOUBLE_EQ(hsl.lightness, c.lightness);
    EXPECT_DOUBLE_EQ(hsl.saturation, c.saturation);
  }
}

TEST(ToHsl, HasNegativeSaturationForLevelsUpTo255) {
  const Hsl hsl = ToHSL(236, 233, 216);
  EXPECT_DOUBLE_EQ(hsl.lightness, 226);
  EXPECT_DOUBLE_EQ(hsl.saturation, 20.0 / (2 - 452));
  EXPECT_DOUBLE_EQ(hsl.hue, 60 * (1 - 0.15));
}

TEST(ToHsl, HasNoHueForGrey) {
  for (const double level : {0.0, 0.3, 1.0, 255.0}) {
    const Hsl hsl = ToHSL(level, level, level + 0.000009);
    EXPECT_EQ(hsl.hue, 0);
    EXPECT_EQ(hsl.saturation, 0);
    EXPECT_DOUBLE_EQ(hsl.lightness, level + 0.0000045);
  }
}

TEST(ToHsl, SkipsADivisionByZero) {
  const Hsl hsl = ToHSL(2, 0, 0);
  EXPECT_EQ(hsl.saturation, 0);
  EXPECT_EQ(hsl.lightness, 1);
}

void ExpectLevels(const RgbLevels& levels, double red, double green, double blue) {
  EXPECT_DOUBLE_EQ(levels.red, red);
  EXPECT_DOUBLE_EQ(levels.green, green);
  EXPECT_DOUBLE_EQ(levels.blue, blue);
}

TEST(FromHsl, IsTheUsualOneForLevelsUpTo1) {
  ExpectLevels(FromHSL(0, 0.5, 1), 1, 0, 0);
  ExpectLevels(FromHSL(240, 0.75, 1), 0.5, 0.5, 1);  // a light blue
  ExpectLevels(FromHSL(180, 0.25, 1), 0, 0.5, 0.5);  // a dark cyan
}

TEST(FromHsl, IsGreyWithoutSaturation) { ExpectLevels(FromHSL(29, 123.5, 0), 123.5, 123.5, 123.5); }

TEST(FromHsl, UndoesToHsl) {
  for (int red = 0; red < 256; red += 15)
    for (int green = 0; green < 256; green += 17)
      for (int blue = 3; blue < 256; blue += 28) {
        const Hsl hsl = ToHSL(red, green, blue);
        const RgbLevels levels = FromHSL(hsl.hue, hsl.lightness, hsl.saturation);
        ASSERT_NEAR(levels.red, red, 1e-9);
        ASSERT_NEAR(levels.green, green, 1e-9);
        ASSERT_NEAR(levels.blue, blue, 1e-9);
      }
}

TEST(HueLevels, RiseStandAndFallAroundTheCircle) {
  EXPECT_EQ(HueChannel(10, 70, 0), 10);
  EXPECT_EQ(HueChannel(10, 70, 30), 40);
  EXPECT_EQ(HueChannel(10, 70, 60), 70);
  EXPECT_EQ(HueChannel(10, 70, 179), 70);
  EXPECT_EQ(HueChannel(10, 70, 180), 70);
  EXPECT_EQ(HueChannel(10, 70, 210), 40);
  EXPECT_EQ(HueChannel(10, 70, 240), 10);
  EXPECT_EQ(HueChannel(10, 70, 360), 10);
  EXPECT_EQ(HueChannel(10, 70, 390), 40) << "a turn is taken off";
  EXPECT_EQ(HueChannel(10, 70, -150), 40) << "or added";
}

}  // namespace
}  // namespace marklet
