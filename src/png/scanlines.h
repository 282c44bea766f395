// Scanlines of any depth: their sizes, their filters and the Adam7 interlace, byte by byte.
//
// Gray, palette and odd pictures come this way. Those that reach a caller come through true_colour.h, which
// gives the same samples at once as blue, green, red, alpha.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/types.h"

namespace marklet::png {

// How the scanlines of a picture lie.
struct ScanlineLayout {
  Long width = 0, height = 0;
  Long color_type = 0, depth = 0;  // bits of a sample

  std::int64_t BitsPerPixel() const;   // 0 for a colour type that doesn't exist
  std::int64_t BytesPerPixel() const;  // at least 1
  std::int64_t RowBytes() const;       // of a row and the filter byte before it
};

// One pass of the Adam7 interlace: every `x_step`-th pixel from `x_start` on of every `y_step`-th row from
// `y_start` on.
struct Adam7Pass {
  Long x_start, y_start, x_step, y_step;
  std::int64_t Width(Long picture_width) const;
  std::int64_t Height(Long picture_height) const;
};
extern const std::array<Adam7Pass, 7> kAdam7Passes;

// Undoes a scanline's filter in place. `previous` is the row above, unfiltered; zeros above the first.
// Unknown filters leave the row as it is.
void UnfilterRow(std::span<std::uint8_t> row, std::span<const std::uint8_t> previous, std::uint8_t filter,
                 std::size_t distance);

// Keeps the high byte of each 16-bit sample, and all filter bytes. A filter treats each byte by itself, so
// the low ones can go before it is undone. With too little data there are none left.
std::vector<std::uint8_t> WithoutLowBytes(std::vector<std::uint8_t> data, const ScanlineLayout& layout,
                                          bool interlaced);

// These turn inflated data into bare rows, top row first; with too little data they give none. The picture
// has at least one pixel, and pixels of 1, 2 or 4 bits or of whole bytes. A row of the first result has
// RowBytes() - 1 bytes. Deinterlace gives each pixel BytesPerPixel(): samples below 8 bits are spread.
std::vector<std::uint8_t> UnfilterImage(std::vector<std::uint8_t> data, const ScanlineLayout& layout);
std::vector<std::uint8_t> Deinterlace(std::vector<std::uint8_t> data, const ScanlineLayout& layout);

}  // namespace marklet::png
