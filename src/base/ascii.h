// Letters and digits of ASCII, in texts of any kind of character.
#pragma once

#include <algorithm>
#include <string_view>

namespace marklet {

// Lower case of an ASCII capital; every other character as it is.
template <typename Char>
constexpr Char AsciiLower(Char ch) {
  return ch >= Char{'A'} && ch <= Char{'Z'} ? static_cast<Char>(ch + ('a' - 'A')) : ch;
}

// Whether two texts are the same but for the case of ASCII letters.
template <typename Char>
constexpr bool SameWithoutCase(std::basic_string_view<Char> a, std::basic_string_view<Char> b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](Char x, Char y) { return AsciiLower(x) == AsciiLower(y); });
}
constexpr bool SameWithoutCase(std::string_view a, std::string_view b) { return SameWithoutCase<char>(a, b); }
constexpr bool SameWithoutCase(std::u16string_view a, std::u16string_view b) {
  return SameWithoutCase<char16_t>(a, b);
}

// What a hexadecimal digit of either case stands for; negative for any other character.
template <typename Char>
constexpr int HexDigit(Char ch) {
  if (ch >= Char{'0'} && ch <= Char{'9'}) return static_cast<int>(ch - Char{'0'});
  const Char lower = AsciiLower(ch);
  return lower >= Char{'a'} && lower <= Char{'f'} ? static_cast<int>(lower - Char{'a'}) + 10 : -1;
}

}  // namespace marklet
