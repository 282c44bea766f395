// GDI adds coordinates without looking for overflow. What goes to it is cut to a range that is far outside
// any surface and small enough to add.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

#include "platform/types.h"

namespace marklet::win32 {

constexpr std::int64_t kFar = 1 << 26;

constexpr Long Near(std::int64_t coordinate) {
  return static_cast<Long>(std::clamp(coordinate, -kFar, kFar));
}
constexpr RECT Near(const RECT& rect) {
  return {Near(rect.left), Near(rect.top), Near(rect.right), Near(rect.bottom)};
}

// A sum that has outgrown its type, as what comes next to it.
constexpr Long Saturated(std::int64_t value) {
  constexpr std::int64_t kMost = std::numeric_limits<Long>::max();
  return static_cast<Long>(std::clamp(value, -kMost, kMost));
}

}  // namespace marklet::win32
