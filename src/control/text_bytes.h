// Texts as saved forms hold them: their code units, low byte first, so that no code page can touch them.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "base/byte_array.h"

namespace marklet {

ByteArray BytesOf(std::u16string_view text);
// An odd byte at the end is half a character and is dropped.
std::u16string TextOf(std::span<const std::uint8_t> bytes);

}  // namespace marklet
