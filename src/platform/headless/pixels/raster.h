// The drawing loops over pixel memory. Every box is clipped to the surface here or by the caller, as each
// says.
#pragma once

#include <cstdint>

#include "platform/headless/pixels/surface.h"
#include "platform/types.h"

namespace marklet::headless {

// Fills what of the box lies on the surface. The alpha byte of a four-byte pixel becomes 0, as GDI has it.
void FillBox(const Surface& surface, const Box& box, COLORREF colour);

// How much of each pixel a shape covers, 0 to 255.
struct Coverage {
  const std::uint8_t* rows = nullptr;  // top row first
  Long width = 0, height = 0;          // pixels
  std::ptrdiff_t stride = 0;           // bytes from one row to the next
  int step = 1;                        // bytes from one pixel to the next
};

// Lays a colour through a mask whose top left pixel lies at (x, y): each channel moves towards the colour by
// coverage / 255, rounded to nearest. Alpha stays. Only what lies in `clip` and on the surface.
void BlendCoverage(const Surface& surface, const Box& clip, std::int64_t x, std::int64_t y,
                   const Coverage& coverage, COLORREF colour);

// A colour as the bytes of a row of pixels, ready for BlendSpread.
struct ColourBytes {
  ColourBytes(COLORREF colour, int bytes_per_pixel);
  // Eight bytes at a time, each in 16 bits; after three such groups the channels begin anew.
  alignas(16) std::uint16_t groups[3][8];
};

// How wide a row of a mask for BlendSpread is: `width` pixels in bytes, rounded up to a whole group of eight.
std::ptrdiff_t SpreadStride(Long width, int bytes_per_pixel);

// BlendCoverage, faster, for a mask that lies wholly on the surface. The mask has the coverage of a pixel
// once for each of its bytes, 0 for alpha (its step is the surface's bytes per pixel), and 0 up to the end of
// a row, SpreadStride.
void BlendSpread(const Surface& surface, std::int64_t x, std::int64_t y, const Coverage& coverage,
                 const ColourBytes& colour);

}  // namespace marklet::headless
