#include "control/text_bytes.h"

#include <utility>

#include "base/byte_order.h"

namespace marklet {

ByteArray BytesOf(std::u16string_view text) {
  std::vector<std::uint8_t> bytes(text.size() * 2);
  for (std::size_t i = 0; i < text.size(); ++i)
    StoreLittleEndian(&bytes[2 * i], static_cast<std::uint16_t>(text[i]));
  return OneDimension(std::move(bytes));
}

std::u16string TextOf(std::span<const std::uint8_t> bytes) {
  std::u16string text(bytes.size() / 2, u'\0');
  for (std::size_t i = 0; i < text.size(); ++i) text[i] = LoadLittleEndian<std::uint16_t>(&bytes[2 * i]);
  return text;
}

}  // namespace marklet
