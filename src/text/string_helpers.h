// Repair of UTF-8 that arrives as one byte a character, the script tests, the access-key scan and the NUL
// trim.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace marklet {

// Utf8Decode(text) when IsUtf8Encoded(text) holds, else the text as it is.
std::u16string DecodeUtf8IfEncoded(std::u16string_view text);
// Whether decoding and encoding again gives the same text.
bool IsUtf8Encoded(std::u16string_view text);
// Makes bytes in the system code page and reads them as UTF-8. Empty for an empty text or on failure.
std::u16string Utf8Decode(std::u16string_view text);
// Makes UTF-8 bytes and turns each into a character through the system code page.
std::u16string Utf8Encode(std::u16string_view text);

// Whether the text needs Unicode output. Code units are read as signed, so those of 0x8000 and above count as
// negative.
bool IsUnicodeText(std::u16string_view text);
bool IsBasicLatinRange(std::u16string_view text);

// A character's code in the system code page; two bytes make one code. Nothing when it has none.
std::optional<unsigned> AnsiCode(char16_t ch);

// The character after the first "&" that has one, as a string; empty without one.
std::u16string FindAccessKey(std::u16string_view text);

// The text up to its first NUL.
std::u16string_view TrimAtNull(std::u16string_view text);

}  // namespace marklet
