// One line of text in one font: its width, and its drawing.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/headless/text/face.h"
#include "platform/headless/text/font.h"
#include "platform/shared/text_layout.h"

namespace marklet::headless {

// A line as it is to be laid out. `rtl` makes the line run from right to left, which matters for the order of
// its parts, not for where it is put.
struct TextLine {
  std::u16string_view text;
  bool rtl = false;
};

// Whether a line goes to the shaping engine: in one from right to left even plain text changes its order,
// unless it is one word.
bool NeedsShaping(const TextLine& line);

// In pixels; the sum of the characters' advances.
std::int64_t WidthOf(Font& font, const TextLine& line);

// The same for each code unit. The width of what is shaped as one lies on its first unit.
void UnitWidths(Font& font, const TextLine& line, std::vector<Long>& widths);

// The stretch of the line that a code unit takes.
LineStretch StretchOf(Font& font, const TextLine& line, std::size_t unit);

// The parts that lines are drawn from, with the left end of the line at `x`.
void DrawPlaces(const Canvas& canvas, Face& face, const ShapedText& shaped, std::int64_t x,
                std::int64_t baseline);
void FillBar(const Canvas& canvas, const Face::Bar& bar, std::int64_t x, std::int64_t baseline,
             std::int64_t width);

// With underline and strikeout when the font has them. `x` is the left end, `width` the line's.
void DrawLine(const Canvas& canvas, Font& font, const TextLine& line, std::int64_t x, std::int64_t baseline,
              std::int64_t width);

}  // namespace marklet::headless
