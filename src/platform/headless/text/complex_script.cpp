#include "platform/headless/text/complex_script.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "platform/headless/text/utf.h"

namespace marklet::headless {
namespace {

struct Range {
  char32_t first, last;
};

// In order, without overlap.
constexpr Range kComplexRanges[] = {
    {0x0300, 0x036F},    // combining marks
    {0x0483, 0x0489},    // combining marks of Cyrillic
    {0x0590, 0x1CFF},    // Hebrew and Arabic to the scripts of South and South-East Asia; gaps below
    {0x1DC0, 0x1DFF},    // combining marks
    {0x200C, 0x200F},    // joiners and direction marks
    {0x202A, 0x202E},    // direction embeddings
    {0x2066, 0x2069},    // direction isolates
    {0x20D0, 0x20FF},    // combining marks for symbols
    {0x2D7F, 0x2D7F},    // joiner of Tifinagh
    {0x2DE0, 0x2DFF},    // combining letters of Cyrillic
    {0x302A, 0x302F},    // tone marks
    {0x3099, 0x309A},    // combining voice marks of Kana
    {0xA66F, 0xA67D},    // combining marks of Cyrillic
    {0xA69E, 0xA69F},    // the same
    {0xA6F0, 0xA6F1},    // combining marks of Bamum
    {0xA800, 0xABFF},    // Syloti Nagri to Meetei Mayek
    {0xD7B0, 0xD7FF},    // Hangul letters that join
    {0xFB1D, 0xFDFF},    // presentation forms of Hebrew and Arabic
    {0xFE00, 0xFE0F},    // variation selectors
    {0xFE20, 0xFE2F},    // combining half marks
    {0xFE70, 0xFEFC},    // presentation forms of Arabic
    {0x10800, 0x10FFF},  // scripts from right to left
    {0x11000, 0x11FFF},  // scripts of India and around
    {0x1D165, 0x1D1AD},  // combining marks of music
    {0x1E800, 0x1EFFF},  // scripts from right to left
    {0xE0100, 0xE01EF},  // variation selectors
};

// Plain scripts inside the long range above.
constexpr Range kPlainRanges[] = {
    {0x10A0, 0x10FF},  // Georgian
    {0x1200, 0x135C},  // Ethiopic
    {0x1360, 0x16FF},  // Ethiopic, Cherokee, Canadian syllables, Ogham, runes
    {0x1C80, 0x1CBF},  // Cyrillic, Georgian
};

template <std::size_t kCount>
constexpr bool IsIn(const Range (&ranges)[kCount], char32_t c) {
  const auto found =
      std::lower_bound(std::begin(ranges), std::end(ranges), c,
                       [](const Range& range, char32_t wanted) { return range.last < wanted; });
  return found != std::end(ranges) && found->first <= c;
}

constexpr bool IsComplexCharacter(char32_t c) { return IsIn(kComplexRanges, c) && !IsIn(kPlainRanges, c); }

// Which blocks of 64 characters below the surrogate pairs have none that is complex: most text is of these.
constexpr int kBlockBits = 6;
constexpr std::size_t kBlocks = 0x10000 >> kBlockBits;

constexpr std::array<bool, kBlocks> PlainBlocks() {
  std::array<bool, kBlocks> plain{};
  for (std::size_t block = 0; block < kBlocks; ++block) {
    const auto first = static_cast<char32_t>(block << kBlockBits);
    const char32_t last = first + (1 << kBlockBits) - 1;
    plain[block] = first < 0xD800 || first > 0xDFFF;
    for (const Range& range : kComplexRanges)
      if (range.first <= last && first <= range.last) plain[block] = false;
  }
  return plain;
}
constexpr std::array<bool, kBlocks> kPlainBlocks = PlainBlocks();

}  // namespace

bool IsComplex(std::u16string_view text) {
  for (std::size_t i = 0; i < text.size();) {
    if (kPlainBlocks[text[i] >> kBlockBits])
      ++i;
    else if (IsComplexCharacter(NextCodePoint(text, i)))
      return true;
  }
  return false;
}

}  // namespace marklet::headless
