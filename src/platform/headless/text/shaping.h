// Text of complex script, shaped and put in visual order.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/headless/text/face.h"
#include "platform/headless/text/measured_line.h"

namespace marklet::headless {

// A text as the shaping engine reads it, and the code unit that each byte comes from.
struct EncodedText {
  std::string bytes;
  std::vector<std::size_t> units;
};

// One glyph on its way to a place.
struct Piece {
  Glyph* glyph;      // of the face that the text is shaped for; null for what only takes room
  std::size_t unit;  // the first code unit of its cluster
  double advance;    // pixels
  double x, y;       // off its place
};

// Pieces that stand one after the other from left to right.
struct PieceRun {
  std::size_t first, past;  // of the pieces
  int level;                // odd: from right to left
  bool joins;               // in a script whose letters join
};

struct ShapedRuns {
  std::vector<Piece> pieces;
  std::vector<PieceRun> runs;  // in the order of the text
};

struct ShapedText {
  struct Place {
    Glyph* glyph;
    std::int64_t x, y;
  };
  std::vector<Place> places;             // from the line's left end and baseline
  std::vector<Long> unit_widths;         // by code unit, in the order of the text
  std::vector<std::int64_t> unit_lefts;  // where each begins, from the line's left end
  std::int64_t width = 0;
};

ShapedRuns ShapeRuns(Face& face, const EncodedText& text, bool rtl);

// The runs from left to right.
std::vector<PieceRun> InVisualOrder(std::vector<PieceRun> runs);

// Where the pieces of a text of so many code units stand.
ShapedText Placed(const ShapedRuns& shaped, std::size_t units);

// A line of plain text. Face::Shaped keeps what this makes.
std::shared_ptr<const ShapedText> Shape(Face& face, const TextLine& line);

// What stands for a character in plain text, where controls are blanks and what can't be drawn is missing.
char32_t ShapeableAs(char32_t character);

}  // namespace marklet::headless
