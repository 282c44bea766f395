// Code points in and out of UTF-16 and UTF-8.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace marklet::headless {

constexpr char32_t kReplacementCharacter = 0xFFFD;

constexpr bool IsSurrogate(char32_t c) { return (c & 0xFFFFF800u) == 0xD800; }
constexpr bool IsHighSurrogate(char32_t c) { return (c & 0xFFFFFC00u) == 0xD800; }
constexpr bool IsLowSurrogate(char32_t c) { return (c & 0xFFFFFC00u) == 0xDC00; }

// The code point at `position`, which moves past it. A lone surrogate comes out as itself.
inline char32_t NextCodePoint(std::u16string_view text, std::size_t& position) {
  const char32_t first = text[position++];
  if (!IsHighSurrogate(first) || position == text.size() || !IsLowSurrogate(text[position])) return first;
  return 0x10000 + ((first - 0xD800) << 10) + (text[position++] - 0xDC00u);
}

// Any code point up to 0x10FFFF that isn't a surrogate.
void AppendUtf8(std::string& bytes, char32_t code_point);
void AppendUtf16(std::u16string& text, char32_t code_point);

// Lone surrogates become U+FFFD.
std::string ToUtf8(std::u16string_view text);
// Each longest piece that starts like a character and isn't one becomes one U+FFFD.
std::u16string FromUtf8(std::string_view bytes);

}  // namespace marklet::headless
