// Functions that are equal but for a number, as an array.
#pragma once

#include <array>
#include <cstddef>
#include <utility>

namespace marklet::plumbing {

// `give` has the function for each number, which it gets as a type whose `value` is the number.
template <typename Function, std::size_t count, typename Give>
constexpr std::array<Function, count> Numbered(Give give) {
  return [&]<std::size_t... number>(std::index_sequence<number...>) {
    return std::array<Function, count>{give(std::integral_constant<std::size_t, number>())...};
  }
  (std::make_index_sequence<count>());
}

}  // namespace marklet::plumbing
