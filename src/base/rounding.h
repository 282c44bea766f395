// The number rules that results depend on. Everything that turns a floating-point value into an integer goes
// through here.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

namespace marklet {

using Long = std::int32_t;  // signed, 32 bits on every platform

// Nearest integer, ties to even, saturating at the range of a 32-bit integer. Not a number gives 0.
inline std::int32_t RoundHalfEven(double value) {
  constexpr double low = std::numeric_limits<std::int32_t>::min();
  constexpr double high = std::numeric_limits<std::int32_t>::max();
  if (std::isnan(value)) return 0;
  const double rounded = std::nearbyint(value);  // the default rounding mode is to nearest, ties to even
  return static_cast<std::int32_t>(rounded < low ? low : rounded > high ? high : rounded);
}

// Sums and differences of 32-bit coordinates that callers may set to anything: wrap instead of overflowing.
constexpr std::int32_t WrapAdd(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}
constexpr std::int32_t WrapSub(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}

}  // namespace marklet
