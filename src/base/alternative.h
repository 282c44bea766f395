// The place of a type among the alternatives of a variant.
#pragma once

#include <array>
#include <cstddef>
#include <type_traits>
#include <variant>

namespace marklet {

namespace alternative {
template <class Held, class... Alternatives>
consteval std::size_t PlaceOf(const std::variant<Alternatives...>*) {
  static_assert((std::size_t{std::is_same_v<Held, Alternatives>} + ...) == 1, "not an alternative");
  constexpr std::array kSame = {std::is_same_v<Held, Alternatives>...};
  std::size_t place = 0;
  while (!kSame[place]) ++place;
  return place;
}
}  // namespace alternative

// What Variant::index() answers for a value held as `Held`.
template <class Held, class Variant>
inline constexpr std::size_t kPlaceIn = alternative::PlaceOf<Held>(static_cast<const Variant*>(nullptr));

}  // namespace marklet
