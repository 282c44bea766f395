// DrawTextW's layout of a text, written once for every platform: lines, line breaks, dots, marks, places.
//
// A platform gives the measures of its font and draws line by line. Time is linear in the text; without
// DT_CALCRECT and DT_NOCLIP the layout ends with the first line that begins below the rectangle.
//
// Lines: a CR, an LF or a pair of both ends one. At the end of the text it opens no further line; empty lines
// are as high as others. With DT_SINGLELINE these are characters like others.
//
// Marks: "&" marks the character after it and isn't drawn, "&&" is drawn as one "&", and at the end of the
// text it stands for itself. Only the last mark of a line shows. DT_NOPREFIX turns all of it off.
//
// Breaks: where DT_WORDBREAK may end a line is told in line_breaks.h. A word that is wider than the rectangle
// runs on to the next blank, however narrow the rectangle is.
//
// Blanks (U+0020) at a break hang over the edge: those that don't fit are on no line. The last of them never
// counts in a line that is centred or flushed right. Blanks elsewhere, at the end of the text too, count.
//
// Tabs and soft hyphens are characters with whatever width the font gives them; a line may end after them.
//
// Dots: DT_WORD_ELLIPSIS shortens a line that is too wide until "..." fits after it; "..." itself always
// stays.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/types.h"

namespace marklet {

// A stretch of a line, in pixels from the line's left end.
struct LineStretch {
  std::int64_t left, right;
};

// The font and the surface that a text is laid out for. Asked by line and by paragraph, never by character.
class LineDevice {
 public:
  virtual Long LineHeight() = 0;  // pixels, of any line
  virtual Long Ascent() = 0;      // pixels from a line's top to its baseline
  virtual std::int64_t WidthOf(std::u16string_view line) = 0;
  // The advance of each code unit of a line.
  virtual void UnitWidths(std::u16string_view line, std::vector<Long>& widths) = 0;
  virtual LineStretch StretchOf(std::u16string_view line, std::size_t unit) = 0;

  // Both clip to the rectangle, unless DT_NOCLIP is among the flags. A line's (x, y) is its upper left
  // corner.
  virtual void DrawLine(std::u16string_view line, std::int64_t x, std::int64_t y, std::int64_t width) = 0;
  // One pixel thick, in the text colour.
  virtual void DrawBar(std::int64_t left, std::int64_t right, std::int64_t y) = 0;

 protected:
  ~LineDevice() = default;
};

// The contract of DrawTextW in platform/text.h, for a context that the device stands for.
int DrawTextOn(LineDevice& device, std::u16string_view text, RECT& rect, std::uint32_t flags);

}  // namespace marklet
