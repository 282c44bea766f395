// Blanks around texts.
#pragma once

#include <string_view>

namespace marklet {

// Without the blanks at both ends; other white space stays.
constexpr std::u16string_view TrimBlanks(std::u16string_view text) {
  const std::size_t first = text.find_first_not_of(u' ');
  if (first == std::u16string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(u' ') - first + 1);
}

}  // namespace marklet
