#include "theme/hsl.h"

#include <algorithm>
#include <cmath>

namespace marklet {
namespace {

double HueOf(double red, double green, double blue, double largest, double spread) {
  const double r = (largest - red) / spread, g = (largest - green) / spread, b = (largest - blue) / spread;
  double hue;
  if (red == largest) {
    hue = 60 * (b - g);
  } else if (green == largest) {
    hue = 60 * (2 + r - b);
  } else {
    hue = 60 * (4 + g - r);
  }
  return hue < 0 ? hue + 360 : hue;
}

}  // namespace

Hsl ToHSL(double red, double green, double blue) {
  const double largest = std::max({red, green, blue}), smallest = std::min({red, green, blue});
  const double sum = largest + smallest, spread = largest - smallest;
  Hsl result{.lightness = sum / 2};
  if (std::abs(spread) < 0.00001) return result;
  const double divisor = result.lightness <= 0.5 ? sum : 2 - sum;
  // Levels 2 and 0 have no saturation: the division fails, and is skipped.
  if (divisor != 0) result.saturation = spread / divisor;
  result.hue = HueOf(red, green, blue, largest, spread);
  return result;
}

RgbLevels FromHSL(double hue, double lightness, double saturation) {
  if (saturation == 0) return {lightness, lightness, lightness};
  const double high =
      lightness <= 0.5 ? (saturation + 1) * lightness : lightness + saturation - lightness * saturation;
  const double low = 2 * lightness - high;
  return {HueChannel(low, high, hue + 120), HueChannel(low, high, hue), HueChannel(low, high, hue - 120)};
}

double HueChannel(double low, double high, double hue) {
  if (hue > 360) hue -= 360;
  if (hue < 0) hue += 360;
  if (hue < 60) return low + (high - low) * hue / 60;
  if (hue < 180) return high;
  if (hue < 240) return low + (high - low) * (240 - hue) / 60;
  return low;
}

}  // namespace marklet
