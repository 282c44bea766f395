// Rows of pixels that stand bottom up in memory.
#pragma once

#include <concepts>
#include <type_traits>

namespace marklet {

// Where the line of a picture begins that is number `line` from its top. `stride` is the bytes from one row
// to the next.
template <typename Byte, std::integral Offset>
constexpr Byte* LineFromTop(Byte* bits, std::type_identity_t<Offset> height,
                            std::type_identity_t<Offset> stride, Offset line) {
  return bits + (height - 1 - line) * stride;
}

}  // namespace marklet
