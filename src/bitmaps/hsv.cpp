#include "bitmaps/hsv.h"

#include <algorithm>
#include <array>

#include "base/rounding.h"

namespace marklet {
namespace {

struct Tables {
  std::array<Long, 256> value{};      // entries 0 and 1 stay 0: RGB(1, 1, 1) counts as black
  std::array<float, 256> hue_step{};  // degrees for one step of a channel, at each spread of the channels
  Tables() {
    for (int i = 2; i < 256; ++i) value[static_cast<std::size_t>(i)] = RoundHalfEven(i * 100 / 255.0);
    for (int i = 1; i < 256; ++i) hue_step[static_cast<std::size_t>(i)] = static_cast<float>(60.0 / i);
  }
};

const Tables& SharedTables() {
  static const Tables tables;
  return tables;
}

Long HueOf(int red, int green, int blue, int largest, float step) {
  if (largest == red) {
    return RoundHalfEven(static_cast<double>(green - blue) * step + (blue > green ? 360 : 0));
  }
  if (largest == green) return RoundHalfEven(static_cast<double>(blue - red) * step + 120);
  return RoundHalfEven(static_cast<double>(red - green) * step + 240);
}

// One of the six sixths of the colour circle: where each channel comes from, and the hue that the ramp is
// counted from, upwards or downwards.
enum class Channel { kLargest, kSmallest, kRamp };
struct Sextant {
  Long last_hue;
  Long ramp_from;
  Long direction;
  Channel red, green, blue;
};

constexpr Sextant kSextants[] = {
    {60, 0, 1, Channel::kLargest, Channel::kRamp, Channel::kSmallest},
    {120, 120, -1, Channel::kRamp, Channel::kLargest, Channel::kSmallest},
    {180, 120, 1, Channel::kSmallest, Channel::kLargest, Channel::kRamp},
    {240, 240, -1, Channel::kSmallest, Channel::kRamp, Channel::kLargest},
    {300, 240, 1, Channel::kRamp, Channel::kSmallest, Channel::kLargest},
    {360, 360, -1, Channel::kLargest, Channel::kSmallest, Channel::kRamp},
};

COLORREF ColourIn(const Sextant& sextant, const Hsv& hsv) {
  const Long largest = RoundHalfEven(hsv.value * 255.0 / 100.0);
  const Long smallest = RoundHalfEven((100.0 - hsv.saturation) * largest / 100.0);
  const float slope = static_cast<float>((static_cast<double>(largest) - smallest) / 60.0);
  const double degrees = static_cast<double>(hsv.hue - sextant.ramp_from) * sextant.direction;
  const Long ramp = RoundHalfEven(slope * degrees + smallest);
  const std::array<Long, 3> channels = {largest, smallest, ramp};
  const auto pick = [&](Channel channel) {
    return static_cast<unsigned>(channels[static_cast<std::size_t>(channel)]);
  };
  return MakeRgb(pick(sextant.red), pick(sextant.green), pick(sextant.blue));
}

}  // namespace

Hsv RGBToHSV(COLORREF colour) {
  const int red = static_cast<int>(RedOf(colour));
  const int green = static_cast<int>(GreenOf(colour));
  const int blue = static_cast<int>(BlueOf(colour));
  const int largest = std::max({red, green, blue});
  const int spread = largest - std::min({red, green, blue});
  const Tables& tables = SharedTables();
  const Long value = tables.value[static_cast<std::size_t>(largest)];
  if (spread == 0) return {0, 0, value};
  const float step = tables.hue_step[static_cast<std::size_t>(spread)];
  return {HueOf(red, green, blue, largest, step), RoundHalfEven(spread * 100.0 / largest), value};
}

COLORREF HSVToRGB(Hsv hsv, bool normalise) {
  if (normalise) hsv = NormaliseHSV(hsv);
  if (hsv.hue < 0) return 0;
  for (const Sextant& sextant : kSextants) {
    if (hsv.hue <= sextant.last_hue) return ColourIn(sextant, hsv);
  }
  return 0;
}

Hsv NormaliseHSV(Hsv hsv) {
  // Both multiples of 360 keep the sum inside 32 bits.
  constexpr Long kTurns = 2147483520;
  if (hsv.hue < -kTurns) {
    hsv.hue = static_cast<Long>(hsv.hue + std::int64_t{kTurns} + 360);
  } else if (hsv.hue < 0) {
    hsv.hue += kTurns;
  }
  return {hsv.hue % 360, std::clamp(hsv.saturation, 0, 100), std::clamp(hsv.value, 0, 100)};
}

}  // namespace marklet
