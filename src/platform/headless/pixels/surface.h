// Pixel memory and the clipped rectangles that every drawing loop works on.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "base/rows.h"
#include "platform/types.h"

namespace marklet::headless {

// A rectangle that can't overflow: callers may hand in any 32-bit coordinates.
struct Box {
  std::int64_t left = 0, top = 0, right = 0, bottom = 0;

  bool Empty() const { return left >= right || top >= bottom; }
  std::int64_t Width() const { return right - left; }
  std::int64_t Height() const { return bottom - top; }
};

inline Box BoxOf(const RECT& rect) { return {rect.left, rect.top, rect.right, rect.bottom}; }

inline Box Intersect(const Box& a, const Box& b) {
  return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
          std::min(a.bottom, b.bottom)};
}

// Bottom-up pixels of three (blue, green, red) or four (blue, green, red, alpha) bytes. No pixels when empty.
// The memory goes on for kSlack bytes, which loops that take several bytes at once may read and write back.
constexpr std::size_t kSlack = 8;
struct Surface {
  std::uint8_t* bits = nullptr;  // the bottom row
  Long width = 0, height = 0;
  std::ptrdiff_t stride = 0;
  int bytes_per_pixel = 0;

  Box Bounds() const { return {0, 0, width, height}; }
  // The pixel at picture coordinates, which count rows from the top. It must lie inside.
  std::uint8_t* At(std::int64_t x, std::int64_t y) const {
    return LineFromTop(bits, height, stride, y) + x * bytes_per_pixel;
  }
};

}  // namespace marklet::headless
