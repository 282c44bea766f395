#include "captions.h"

#include <array>
#include <string_view>

namespace marklet::bench {
namespace {

constexpr std::array<std::string_view, 23> kWords = {
    "Total", "of",     "all",    "open",    "orders", "in",   "this",    "quarter",
    "is",    "higher", "than",   "planned", "though", "some", "regions", "report",
    "late",  "please", "review", "figures", "and",    "sign", "off"};

// A word of two to four syllables for each number; the first forty thousand are nearly all different.
std::string FreshWord(unsigned number) {
  constexpr std::string_view consonants = "bcdfghklmnprstvz", vowels = "aeiou";
  unsigned bits = number * 2654435761u;  // spreads neighbours over the whole range
  std::string word;
  for (unsigned syllable = 0; syllable < 2 + number % 3; ++syllable) {
    word += consonants[bits % 16];
    word += vowels[bits / 16 % 5];
    bits = bits / 80 + 0x9E3779B9u;
  }
  return word;
}

std::string WordAt(Vocabulary vocabulary, int place) {
  return vocabulary == Vocabulary::Fresh
             ? FreshWord(static_cast<unsigned>(place))
             : std::string(kWords[static_cast<std::size_t>(place) % kWords.size()]);
}

struct Tongue {
  std::string_view bold, bold_end, italic, italic_end, colour, colour_end;
};

constexpr Tongue kMarklet = {"<b>", "</b>", "<i>", "</i>", "<c=C00000>", "</c>"};
constexpr Tongue kPango = {"<b>", "</b>", "<i>", "</i>", "<span foreground=\"#C00000\">", "</span>"};
constexpr Tongue kHtml = {"<b>", "</b>", "<i>", "</i>", "<span style=\"color:#C00000\">", "</span>"};

void Append(std::string& text, std::string_view open, std::string_view word, std::string_view close) {
  text.append(open).append(word).append(close);
}

std::string Compose(const Tongue& tongue, const CaptionShape& shape, int number) {
  const int first = shape.vocabulary == Vocabulary::Fresh ? number * shape.words : number;
  std::string text;
  for (int i = 0; i < shape.words; ++i) {
    if (i > 0) text += ' ';
    const std::string word = WordAt(shape.vocabulary, first + i);
    switch (shape.kind == Kind::Rich ? i % 10 : 0) {
      case 1:
        Append(text, tongue.bold, word, tongue.bold_end);
        break;
      case 3:
        Append(text, tongue.italic, word, tongue.italic_end);
        break;
      case 7:
        Append(text, tongue.colour, word, tongue.colour_end);
        break;
      default:
        text += word;
    }
  }
  return text;
}

}  // namespace

std::string MarkletCaption(const CaptionShape& shape, int number) { return Compose(kMarklet, shape, number); }
std::string PangoMarkup(const CaptionShape& shape, int number) { return Compose(kPango, shape, number); }
std::string Html(const CaptionShape& shape, int number) { return Compose(kHtml, shape, number); }

std::u16string Utf16(const std::string& ascii) { return {ascii.begin(), ascii.end()}; }

}  // namespace marklet::bench
