// The drawing loops over pixel memory. Every box is clipped to the surface here or by the caller, as each
// says.
#pragma once

#include <cstdint>

#include "platform/headless/surface.h"
#include "platform/types.h"

namespace marklet::headless {

// Fills what of the box lies on the surface. The alpha byte of a four-byte pixel becomes 0, as GDI has it.
void FillBox(const Surface& surface, const Box& box, COLORREF colour);

// The same with a coverage mask, 0 to 255 a pixel, whose top left pixel lies at (x, y): each channel moves
// towards the colour by coverage / 255, rounded to nearest. Only what lies in `clip` and on the surface.
struct Coverage {
  const std::uint8_t* rows = nullptr;  // top row first
  Long width = 0, height = 0;
  std::ptrdiff_t stride = 0;
};
void BlendCoverage(const Surface& surface, const Box& clip, std::int64_t x, std::int64_t y,
                   const Coverage& coverage, COLORREF colour);

}  // namespace marklet::headless
