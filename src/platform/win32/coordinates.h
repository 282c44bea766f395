// GDI adds coordinates without looking for overflow. What goes to it is cut to a range that is far outside
// any surface and small enough to add.
#pragma once

#include <algorithm>
#include <cstdint>

#include "platform/types.h"

namespace marklet::win32 {

constexpr std::int64_t kFar = 1 << 26;

constexpr Long Near(std::int64_t coordinate) {
  return static_cast<Long>(std::clamp(coordinate, -kFar, kFar));
}
constexpr RECT Near(const RECT& rect) {
  return {Near(rect.left), Near(rect.top), Near(rect.right), Near(rect.bottom)};
}

}  // namespace marklet::win32
