#include "markup/break_characters.h"

#include <span>

namespace marklet {
namespace {

struct Range {
  char16_t first, last;
};

// U+2007 and U+2011, the non-breaking space and hyphen among their neighbours, and the joiners U+200C to
// U+200F are left out on purpose. Breaks above U+FFFF have no row: a caption is read by code units, and a
// half of a pair matches nothing.
constexpr Range kAlways[] = {
    {0x0020, 0x0020}, {0x002D, 0x002D}, {0x0009, 0x000A}, {0x000C, 0x000D}, {0x007C, 0x007C},
    {0x0085, 0x0085}, {0x00AD, 0x00AD}, {0x00B4, 0x00B4}, {0x02C8, 0x02C8}, {0x02CC, 0x02CC},
    {0x058A, 0x058A}, {0x0F0B, 0x0F0B}, {0x1361, 0x1361}, {0x1680, 0x1680}, {0x17D5, 0x17D5},
    {0x2000, 0x2006}, {0x2008, 0x200B}, {0x2010, 0x2010}, {0x2012, 0x2014}, {0x2027, 0x2029},
    {0x205F, 0x205F},
};

// Scripts without spaces. Hangul syllables (U+AC00 to U+D7AF) and fullwidth digits (U+FF10 to U+FF19) don't
// break: captions have always been laid out without them. The overlap at U+4300 comes from the same list.
constexpr Range kWithoutShaping[] = {
    {0x0E00, 0x0EFF}, {0x1000, 0x109F}, {0x1100, 0x11FF}, {0x1780, 0x17FF},
    {0x2E80, 0x2FFF}, {0x3000, 0x3000}, {0x3130, 0x318F}, {0x3400, 0x4DBF},
    {0x4300, 0x9FAF}, {0xA000, 0xA48F}, {0xA490, 0xA4CF}, {0xF900, 0xFAFF},
};

void Add(BreakCharacterSet& set, std::span<const Range> ranges) {
  for (const Range& range : ranges) set.Add(range.first, range.last);
}

struct Sets {
  BreakCharacterSet with_shaping, without_shaping;
  Sets() {
    Add(with_shaping, kAlways);
    without_shaping = with_shaping;
    Add(without_shaping, kWithoutShaping);
  }
};

}  // namespace

const BreakCharacterSet& BreakCharacters(bool shaping) {
  static const Sets sets;
  return shaping ? sets.with_shaping : sets.without_shaping;
}

}  // namespace marklet
