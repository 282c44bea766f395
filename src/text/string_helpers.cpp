#include "text/string_helpers.h"

#include <algorithm>

#include "platform/system.h"
#include "platform/types.h"

namespace marklet {
namespace {

constexpr std::int16_t kFirstBeyondAscii = 128;
constexpr std::int16_t kFirstBeyondLatin = 591;

bool AnyUnitFrom(std::u16string_view text, std::int16_t first) {
  return std::any_of(text.begin(), text.end(),
                     [first](char16_t unit) { return static_cast<std::int16_t>(unit) >= first; });
}

// Meant as a test for letters and digits, but the code is compared with a mask, not with the outcome of the
// mask's test: only -1 fails.
bool IsKeyCharacter(std::int16_t code) {
  const std::int16_t mask = code >= 123 || code <= 47 ? -1 : 0;
  return mask != code;
}

}  // namespace

std::u16string DecodeUtf8IfEncoded(std::u16string_view text) {
  std::u16string decoded = Utf8Decode(text);
  if (Utf8Encode(decoded) == text) return decoded;
  return std::u16string(text);
}

bool IsUtf8Encoded(std::u16string_view text) { return Utf8Encode(Utf8Decode(text)) == text; }

std::u16string Utf8Decode(std::u16string_view text) {
  return MultiByteToWideChar(CP_UTF8, WideCharToMultiByte(CP_ACP, text));
}

std::u16string Utf8Encode(std::u16string_view text) {
  return MultiByteToWideChar(CP_ACP, WideCharToMultiByte(CP_UTF8, text));
}

bool IsUnicodeText(std::u16string_view text) {
  return AnyUnitFrom(text, kFirstBeyondAscii) || !IsBasicLatinRange(text);
}

bool IsBasicLatinRange(std::u16string_view text) { return !AnyUnitFrom(text, kFirstBeyondLatin); }

std::optional<unsigned> AnsiCode(char16_t ch) {
  if (ch < 0x80) return ch;
  const std::string bytes = WideCharToMultiByte(CP_ACP, {&ch, 1});
  if (bytes.empty()) return std::nullopt;
  const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(bytes[at]); };
  return bytes.size() == 2 ? byte(0) << 8 | byte(1) : byte(0);
}

std::u16string FindAccessKey(std::u16string_view text) {
  const std::size_t mark = text.find(u'&');
  if (mark == text.npos || mark + 1 == text.size()) return {};
  const char16_t key = text[mark + 1];
  // A character that can't be a key (U+FFFF alone) would be found again and again, since the scan doesn't
  // step over it: no key is the only answer with which it can end.
  if (!IsKeyCharacter(static_cast<std::int16_t>(key))) return {};
  return std::u16string(1, key);
}

std::u16string_view TrimAtNull(std::u16string_view text) { return text.substr(0, text.find(u'\0')); }

}  // namespace marklet
