// The captions that the benchmarks draw, in the tongue of each peer.
#pragma once

#include <string>
#include <vector>

namespace marklet::bench {

enum class Kind { Plain, Rich };
// Bold, italic and coloured are the second, fourth and eighth word of each ten of a rich caption.

// A caption of `words` words that begins with word `first` of the word list.
std::string MarkletCaption(Kind kind, int words, int first);
std::string PangoMarkup(Kind kind, int words, int first);
std::string Html(Kind kind, int words, int first);

// Several captions of one length, so that no peer draws the same text twice in a row.
constexpr int kVariants = 16;

constexpr int kWidth = 300, kHeight = 60;  // of a label, in pixels
constexpr int kFontPixels = 11;
constexpr double kFontPoints = 8.25;  // the same at 96 dots per inch
constexpr const char* kFamily = "DejaVu Sans";

// Writes what each peer makes of the same caption, one below the other: the engine, Pango, QTextDocument,
// QStaticText.
bool SavePicture(const char* file);

std::u16string Utf16(const std::string& ascii);

}  // namespace marklet::bench
