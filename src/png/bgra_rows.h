// Scanlines of colour pictures, made into rows of blue, green, red, alpha.
//
// A scanline is first spread to four bytes a pixel and then unfiltered. Each byte of a pixel depends on the
// same byte of its neighbours alone, so their order doesn't matter, and the low bytes of 16-bit samples can
// go first.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/types.h"

namespace marklet::png {

// Pixels of one row of the picture that a scanline gives: all of them, or with Adam7 every second, fourth or
// eighth.
struct PixelRun {
  std::uint8_t* to;
  const std::uint8_t* above;  // the same pixels of the scanline before, finished; null for the first one
  std::size_t count;
  std::size_t step;  // bytes from one pixel to the next
};

// How the pixels of a scanline lie.
struct PixelFormat {
  Long color_type, depth;
  std::size_t bytes;  // of a pixel
  // What pixels outside the picture count as: 0, or just opaque where the file holds no alpha. Then every
  // neighbour has alpha 255, every filter predicts 255, and pixels without alpha come out opaque by
  // themselves.
  std::uint32_t border;
  // Spreads the pixels at `from`, and puts `alpha` into those without one of their own.
  void (*spread)(const std::uint8_t* from, std::uint32_t alpha, const PixelRun& run);
};

// Null for pictures that are neither colour nor gray with alpha, or not of 8 or 16 bits.
const PixelFormat* FindPixelFormat(Long color_type, Long depth);

// Makes the pixels of a scanline. An unknown filter counts as none.
void UnfilterToBgra(const PixelFormat& format, std::uint8_t filter, const std::uint8_t* scanline,
                    const PixelRun& run);

}  // namespace marklet::png
