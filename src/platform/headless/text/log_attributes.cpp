#include "platform/headless/text/log_attributes.h"

#include <pango/pango.h>

#include <algorithm>
#include <string>

#include "platform/headless/text/utf.h"

namespace marklet::headless {
namespace {

constexpr std::uint8_t kSoftBreak = 1, kWhiteSpace = 2, kCharStop = 4, kWordStop = 8;

// Words of scripts without blanks are told apart with a look at what follows.
constexpr std::size_t kLookAhead = 32;

// Those are blanks for Pango too.
bool IsNoBreakSpace(char32_t c) { return c == 0x00A0 || c == 0x2007 || c == 0x202F; }

std::uint8_t ByteOf(const PangoLogAttr& attribute, char32_t c) {
  std::uint8_t byte = 0;
  if (attribute.is_line_break) byte |= kSoftBreak;
  if (attribute.is_white && !IsNoBreakSpace(c)) byte |= kWhiteSpace;
  if (attribute.is_cursor_position) byte |= kCharStop;
  if (attribute.is_word_start) byte |= kWordStop;
  return byte;
}

void KeepMarksWithMarked(std::u16string_view text, std::vector<std::uint8_t>& bytes) {
  for (std::size_t i = 0; i + 1 < bytes.size(); ++i)
    if (text[i] == u'&') bytes[++i] &= static_cast<std::uint8_t>(~kSoftBreak);
}

}  // namespace

std::vector<std::uint8_t> LogAttributes(std::u16string_view text, std::size_t count, bool marks) {
  text = text.substr(0, std::min(text.size(), count + kLookAhead));
  std::string utf8;
  utf8.reserve(text.size() * 2);
  std::vector<std::size_t> units;  // where each character begins
  for (std::size_t i = 0; i < text.size();) {
    units.push_back(i);
    const char32_t c = NextCodePoint(text, i);
    AppendUtf8(utf8, c == 0 || IsSurrogate(c) ? kReplacementCharacter : c);
  }
  std::vector<PangoLogAttr> attributes(units.size() + 1);
  pango_get_log_attrs(utf8.data(), static_cast<int>(utf8.size()), -1, pango_language_from_string("en"),
                      attributes.data(), static_cast<int>(attributes.size()));
  std::vector<std::uint8_t> bytes(text.size());
  for (std::size_t i = 0; i < units.size(); ++i) bytes[units[i]] = ByteOf(attributes[i], text[units[i]]);
  bytes.resize(count);
  if (marks) KeepMarksWithMarked(text, bytes);
  return bytes;
}

}  // namespace marklet::headless
