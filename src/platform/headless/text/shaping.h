// Text of complex script, shaped and put in visual order.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/headless/text/face.h"
#include "platform/headless/text/measured_line.h"

namespace marklet::headless {

struct ShapedText {
  struct Place {
    Glyph* glyph;  // of the face that the text was shaped for
    std::int64_t x, y;
  };
  std::vector<Place> places;             // from the line's left end and baseline
  std::vector<Long> unit_widths;         // by code unit, in the order of the text
  std::vector<std::int64_t> unit_lefts;  // where each begins, from the line's left end
  std::int64_t width = 0;
};

// Face::Shaped keeps what this makes.
std::shared_ptr<const ShapedText> Shape(Face& face, const TextLine& line);

}  // namespace marklet::headless
