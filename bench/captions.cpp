#include "captions.h"

#include <array>
#include <string_view>

namespace marklet::bench {
namespace {

constexpr std::array<std::string_view, 23> kWords = {
    "Total", "of",     "all",    "open",    "orders", "in",   "this",    "quarter",
    "is",    "higher", "than",   "planned", "though", "some", "regions", "report",
    "late",  "please", "review", "figures", "and",    "sign", "off"};

struct Tongue {
  std::string_view bold, bold_end, italic, italic_end, colour, colour_end;
};

constexpr Tongue kMarklet = {"<b>", "</b>", "<i>", "</i>", "<c=C00000>", "</c>"};
constexpr Tongue kPango = {"<b>", "</b>", "<i>", "</i>", "<span foreground=\"#C00000\">", "</span>"};
constexpr Tongue kHtml = {"<b>", "</b>", "<i>", "</i>", "<span style=\"color:#C00000\">", "</span>"};

void Append(std::string& text, std::string_view open, std::string_view word, std::string_view close) {
  text.append(open).append(word).append(close);
}

std::string Compose(const Tongue& tongue, Kind kind, int words, int first) {
  std::string text;
  for (int i = 0; i < words; ++i) {
    if (i > 0) text += ' ';
    const std::string_view word = kWords[static_cast<std::size_t>(first + i) % kWords.size()];
    switch (kind == Kind::Rich ? i % 10 : 0) {
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

std::string MarkletCaption(Kind kind, int words, int first) { return Compose(kMarklet, kind, words, first); }
std::string PangoMarkup(Kind kind, int words, int first) { return Compose(kPango, kind, words, first); }
std::string Html(Kind kind, int words, int first) { return Compose(kHtml, kind, words, first); }

std::u16string Utf16(const std::string& ascii) { return {ascii.begin(), ascii.end()}; }

}  // namespace marklet::bench
