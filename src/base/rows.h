// Rows of pixels as they stand in bitmaps.
#pragma once

#include <concepts>
#include <cstdint>
#include <type_traits>

namespace marklet {

// Bytes of a row, which ends on a boundary of four bytes.
constexpr std::int64_t DibStride(std::int64_t pixels, std::int64_t bits_per_pixel) {
  return (pixels * bits_per_pixel + 31) / 32 * 4;
}

// Where the line of a picture begins that is number `line` from its top, of rows that stand bottom up.
// `stride` is the bytes from one row to the next.
template <typename Byte, std::integral Offset>
constexpr Byte* LineFromTop(Byte* bits, std::type_identity_t<Offset> height,
                            std::type_identity_t<Offset> stride, Offset line) {
  return bits + (height - 1 - line) * stride;
}

}  // namespace marklet
