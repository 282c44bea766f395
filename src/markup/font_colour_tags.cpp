#include "markup/font_colour_tags.h"

#include <algorithm>
#include <array>
#include <string>

#include "base/ascii.h"
#include "markup/caption_pen.h"

namespace marklet {
namespace {

// The number that up to two hexadecimal digits at the front give.
unsigned ReadPair(std::u16string_view pair) {
  unsigned value = 0;
  for (const char16_t ch : pair) {
    const int digit = HexDigit(ch);
    if (digit < 0) break;
    value = value * 16 + static_cast<unsigned>(digit);
  }
  return value;
}

// The token without each "<f=", found from left to right, and then without each ">".
std::u16string FontNameOf(std::u16string_view token) {
  constexpr std::u16string_view kOpener = u"<f=";
  std::u16string name;
  for (std::size_t at = 0; at < token.size();) {
    const bool opener = token.substr(at, kOpener.size()) == kOpener;
    if (!opener && token[at] != u'>') name += token[at];
    at += opener ? kOpener.size() : 1;
  }
  return name;
}

void OpenFont(CaptionPen& pen, std::u16string_view token) {
  if (!pen.RunFont) return;
  pen.SavedFontName = pen.RunFont->Name();
  pen.SetFontName(FontNameOf(token));
}

// A colour tag as the very last thing in a caption is text to the tokenizer, and is drawn as that.
bool EndsCaptionAsText(const CaptionPen& pen, std::u16string_view token) {
  return pen.index + 1 == pen.tokens.size() && token.size() == std::u16string_view(u"<c=RRGGBB>").size();
}

}  // namespace

FontRef CloneFont(const FontRef& source) { return source ? std::make_shared<StdFont>(*source) : nullptr; }

COLORREF ParseColorTag(std::u16string_view value) {
  // Only the first six characters that are no "#" count.
  std::array<char16_t, 6> kept{};
  std::size_t count = 0;
  for (std::size_t at = 0; at < value.size() && count < kept.size(); ++at) {
    if (value[at] != u'#') kept[count++] = value[at];
  }
  const std::u16string_view digits(kept.data(), count);
  const auto pair = [&](std::size_t at) { return ReadPair(digits.substr(std::min(at, count), 2)); };
  return MakeRgb(pair(0), pair(2), pair(4));
}

bool ObeyValueTag(CaptionPen& pen, std::u16string_view token) {
  if (token.find(u"<f=") != token.npos) {
    OpenFont(pen, token);
    return true;
  }
  if (!token.starts_with(u"<c=") || EndsCaptionAsText(pen, token)) return false;
  pen.OpenColour(ParseColorTag(token.substr(3, 6)));
  return true;
}

}  // namespace marklet
