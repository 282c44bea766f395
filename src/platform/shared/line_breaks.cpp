#include "platform/shared/line_breaks.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>

namespace marklet {
namespace {

// What is alike at the ends of lines, in the order of the table below.
enum Kind : std::uint8_t {
  kLetter,  // and all that has no other kind
  kDigit,
  kBeforeNumber,
  kAfterNumber,
  kStop,
  kQuote,
  kOpening,
  kBracket,  // a closing one that may stand inside a word
  kClosing,
  kIdeograph,
  kNeverFirst,  // small Kana, signs of repetition
  kSlash,
  kHyphen,
  kDash,
  kDots,
  kExclamation,
  kBreakAfter,
  kBlank,
  kGlue,
  kJoiner,
  kWidthless,
  kCombining,
  kLineEnd,  // those that DrawTextW draws like any character
  kKinds
};

// A row is the kind before the place, a column the one after it; "+" where a line may end.
constexpr std::string_view kTable[] = {
    "..++.....+...+.........",  // kLetter
    ".........+...+.........",  // kDigit
    "..++.........++........",  // kBeforeNumber
    "..++.....+...++........",  // kAfterNumber
    "..++..+..+...++........",  // kStop
    ".......................",  // kQuote
    ".......................",  // kOpening
    "......+..+...++........",  // kBracket
    "++....+..+...++........",  // kClosing
    "+++...+..+...+.........",  // kIdeograph
    "++++..+..+...++........",  // kNeverFirst
    "+.++..+..+...++........",  // kSlash
    "+.++..+..+...++...+....",  // kHyphen
    "++++..+..+....+........",  // kDash
    "++++..+..+...+.........",  // kDots
    "++++..+..+...++........",  // kExclamation
    "++++..+..+...++...+....",  // kBreakAfter
    "++++.++..++.+++.+.+..+.",  // kBlank
    ".......................",  // kGlue
    ".......................",  // kJoiner
    "++++..+..+...++..+...+.",  // kWidthless
    "..++.....+...+.........",  // kCombining
    "+++++++++++++++++++++++",  // kLineEnd
};
static_assert(std::size(kTable) == kKinds);

struct Set {
  Kind kind;
  std::u16string_view characters;
};
constexpr Set kAsciiSets[] = {
    {kDigit, u"0123456789"}, {kBeforeNumber, u"$+\\"}, {kAfterNumber, u"%"},  {kStop, u",.:;"},
    {kQuote, u"\"'"},        {kOpening, u"([{"},       {kBracket, u")]"},     {kClosing, u"}"},
    {kSlash, u"/"},          {kHyphen, u"-"},          {kExclamation, u"!?"}, {kBreakAfter, u"|\t"},
    {kBlank, u" "},          {kLineEnd, u"\n\v\f\r"},
};
constexpr Set kOtherSets[] = {
    {kBeforeNumber, u"\u00A3\u00A5\u00B1\u20AC\u2116\u2212"},
    {kAfterNumber, u"\u00B0\u2030\u2032\uFFE0"},
    {kQuote, u"\u00AB\u00BB\u2018\u2019\u201C\u201D"},
    {kOpening, u"\u00A1\u00BF\u3008\u300A\u300C\u300E\u3010\u3014\u3016\uFF08\uFF3B\uFF5B\uFF62"},
    {kClosing,
     u"\u3001\u3002\u3009\u300B\u300D\u300F\u3011\u3015\u3017\uFF09\uFF0C\uFF0E\uFF3D\uFF5D\uFF61\uFF63"
     u"\uFF64"},
    {kNeverFirst,
     u"\u3005\u303B\u3041\u3043\u3045\u3047\u3049\u3063\u3083\u3085\u3087\u308E\u309D\u309E"
     u"\u30A1\u30A3\u30A5\u30A7\u30A9\u30C3\u30E3\u30E5\u30E7\u30EE\u30F5\u30F6\u30FB\u30FC\u30FD\u30FE"
     u"\uFF1A\uFF1B\uFF65\uFF67\uFF68\uFF69\uFF6A\uFF6B\uFF6C\uFF6D\uFF6E\uFF6F\uFF70\uFF9E\uFF9F"},
    {kDash, u"\u2014"},
    {kDots, u"\u2024\u2025\u2026"},
    {kExclamation, u"\uFF01\uFF1F"},
    {kBreakAfter, u"\u00AD\u2002\u2003\u2009\u200A\u2010\u2012\u2013\u3000"},
    {kGlue, u"\u00A0\u2007\u2011\u202F"},
    {kJoiner, u"\u2060\uFEFF"},
    {kWidthless, u"\u200B"},
    {kLineEnd, u"\u0085\u2028\u2029"},
};

constexpr std::size_t kAscii = 0x80;
constexpr auto kAsciiKinds = [] {
  std::array<Kind, kAscii> kinds{};
  for (const Set& set : kAsciiSets)
    for (const char16_t c : set.characters) kinds[c] = set.kind;
  return kinds;
}();

bool IsIdeograph(char16_t c) {
  return (c >= 0x2E80 && c <= 0x9FFF) || (c >= 0xAC00 && c <= 0xD7A3) || (c >= 0xF900 && c <= 0xFAFF) ||
         (c >= 0xFF01 && c <= 0xFF9D);
}

Kind KindOf(char16_t c) {
  if (c < kAscii) return kAsciiKinds[c];
  for (const Set& set : kOtherSets)
    if (set.characters.find(c) != std::u16string_view::npos) return set.kind;
  if (c >= 0x300 && c <= 0x36F) return kCombining;
  return IsIdeograph(c) ? kIdeograph : kLetter;
}

}  // namespace

bool MayBreakBetween(char16_t before, char16_t after) { return kTable[KindOf(before)][KindOf(after)] == '+'; }

}  // namespace marklet
