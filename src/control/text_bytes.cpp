#include "control/text_bytes.h"

#include <utility>

namespace marklet {

ByteArray BytesOf(std::u16string_view text) {
  std::vector<std::uint8_t> bytes;
  bytes.reserve(text.size() * 2);
  for (const char16_t unit : text) {
    bytes.push_back(static_cast<std::uint8_t>(unit & 0xFF));
    bytes.push_back(static_cast<std::uint8_t>(unit >> 8));
  }
  return OneDimension(std::move(bytes));
}

std::u16string TextOf(std::span<const std::uint8_t> bytes) {
  std::u16string text(bytes.size() / 2, u'\0');
  for (std::size_t i = 0; i < text.size(); ++i)
    text[i] = static_cast<char16_t>(bytes[2 * i] | bytes[2 * i + 1] << 8);
  return text;
}

}  // namespace marklet
