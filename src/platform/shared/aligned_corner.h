// Where SetTextAlign puts a line that is drawn at a point.
#pragma once

#include <cstdint>

#include "platform/types.h"

namespace marklet {

struct LineSize {
  std::int64_t width;
  Long height, ascent;
};

struct LineCorner {
  std::int64_t x, y;
};

// The upper left corner of a line whose reference point is (x, y).
constexpr LineCorner AlignedCorner(std::uint32_t align, Long x, Long y, const LineSize& line) {
  constexpr std::uint32_t kBottom = 8;
  LineCorner corner{x, y};
  if ((align & TA_CENTER) == TA_CENTER)
    corner.x -= line.width / 2;
  else if ((align & TA_RIGHT) != 0)
    corner.x -= line.width;
  if ((align & TA_BASELINE) == TA_BASELINE)
    corner.y -= line.ascent;
  else if ((align & kBottom) != 0)
    corner.y -= line.height;
  return corner;
}

}  // namespace marklet
