#include "render/text.h"

#include <algorithm>
#include <charconv>
#include <cstdio>

#include "platform/system.h"

namespace marklet {
namespace {

template <class Number>
std::optional<Number> ParseWhole(std::string_view text, int base) {
  Number value{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

}  // namespace

std::string Quoted(std::string_view text) {
  constexpr std::size_t kMost = 60;
  std::size_t shown = std::min(text.size(), kMost);
  const auto inside_character = [text](std::size_t at) {
    return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80;
  };
  while (shown > 0 && inside_character(shown)) --shown;
  std::string result = "\"";
  for (const char ch : text.substr(0, shown)) {
    char code[8];
    std::snprintf(code, sizeof code, "\\x%02X", static_cast<unsigned>(static_cast<unsigned char>(ch)));
    const bool control = static_cast<unsigned char>(ch) < 32 || ch == 127;
    result += control ? std::string(code) : std::string(1, ch);
  }
  return result + (text.size() > kMost ? "...\"" : "\"");
}

std::optional<std::int64_t> ParseNumber(std::string_view text) {
  const bool negative = text.starts_with('-');
  if (negative) text.remove_prefix(1);
  const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
  if (hexadecimal) text.remove_prefix(2);
  if (text.starts_with('-')) return std::nullopt;
  const auto value = ParseWhole<std::int64_t>(text, hexadecimal ? 16 : 10);
  return value && negative ? -*value : value;
}

std::optional<SIZE> ParseSize(std::string_view text) {
  const std::size_t cross = text.find_first_of("xX");
  if (cross == std::string_view::npos) return std::nullopt;
  const std::string_view width = text.substr(0, cross), height = text.substr(cross + 1);
  if (width.size() > 4 || height.size() > 4) return std::nullopt;
  const auto w = ParseWhole<unsigned>(width, 10), h = ParseWhole<unsigned>(height, 10);
  if (!w || !h) return std::nullopt;
  return SIZE{static_cast<Long>(*w), static_cast<Long>(*h)};
}

std::u16string FromUtf8(std::string_view bytes) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (bytes.starts_with(kByteOrderMark)) bytes.remove_prefix(kByteOrderMark.size());
  return MultiByteToWideChar(CP_UTF8, bytes);
}

}  // namespace marklet
