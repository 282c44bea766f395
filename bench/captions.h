// The captions that the benchmarks draw, in the tongue of each peer.
#pragma once

#include <string>
#include <vector>

namespace marklet::bench {

// Bold, italic and coloured are the second, fourth and eighth word of each ten of a rich caption.
enum class Kind { Plain, Rich };
// The words of a few lines, as a form shows them again and again; or of so many that hardly one comes twice,
// so that no cache of words helps.
enum class Vocabulary { Common, Fresh };

struct CaptionShape {
  Kind kind;
  int words;
  Vocabulary vocabulary = Vocabulary::Common;
};

// Captions of one shape differ by their number, so that no peer draws the same text twice in a row.
std::string MarkletCaption(const CaptionShape& shape, int number);
std::string PangoMarkup(const CaptionShape& shape, int number);
std::string Html(const CaptionShape& shape, int number);
// How many different ones a benchmark draws in turn.
constexpr int NumberOf(Vocabulary vocabulary) { return vocabulary == Vocabulary::Fresh ? 5000 : 16; }

constexpr int kWidth = 300, kHeight = 60;  // of a label, in pixels
constexpr int kFontPixels = 11;
constexpr double kFontPoints = 8.25;  // the same at 96 dots per inch
constexpr const char* kFamily = "DejaVu Sans";

// Writes what each peer makes of the same caption, one below the other: the engine, Pango, QTextDocument,
// QStaticText.
bool SavePicture(const char* file);

std::u16string Utf16(const std::string& ascii);

}  // namespace marklet::bench
