// Hue, lightness and saturation, in formulas made for channels from 0 to 1 that are used with channels from 0
// to 255. Saturation then comes out small and negative; what results is how colours of schemes have always
// been lightened.
#pragma once

namespace marklet {

struct Hsl {
  double hue = 0;  // degrees, from 0 to 360
  double lightness = 0, saturation = 0;
};
struct RgbLevels {
  double red = 0, green = 0, blue = 0;
};

Hsl ToHSL(double red, double green, double blue);
RgbLevels FromHSL(double hue, double lightness, double saturation);
// A level between two, at a hue at most one turn outside of 0 to 360.
double HueChannel(double low, double high, double hue);

}  // namespace marklet
