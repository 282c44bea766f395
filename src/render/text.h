// Small text helpers of the program.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/types.h"

namespace marklet {

// The text in quotes for a message, control characters shown as \xNN and a long one cut.
std::string Quoted(std::string_view text);

// A whole number in decimal or, after 0x, hexadecimal, with an optional minus. None when anything else
// stands there or it exceeds 64 bits.
std::optional<std::int64_t> ParseNumber(std::string_view text);

// 1 to 4 digits each, as in 300x60; none otherwise.
std::optional<SIZE> ParseSize(std::string_view text);

// UTF-8, a byte order mark in front left out.
std::u16string FromUtf8(std::string_view bytes);

}  // namespace marklet
