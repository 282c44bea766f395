// Scanlines of colour pictures, made into rows of blue, green, red, alpha: each is put into that order and
// unfiltered in one go. Each byte of a pixel depends on the same byte of its neighbours alone, so their order
// doesn't matter, and the low bytes of 16-bit samples can go first.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/types.h"

namespace marklet::png {

constexpr std::size_t kPixelBytes = 4;

// Pixels of one row of the picture that a scanline gives: all of them, or with Adam7 every second, fourth or
// eighth.
struct PixelRun {
  std::uint8_t* to;
  const std::uint8_t* above;  // the same pixels of the scanline before, finished; null for the first one
  std::size_t count;
  std::size_t step;  // bytes from one pixel to the next
};

struct RowMakers;

// How the pixels of a scanline lie.
struct PixelFormat {
  Long color_type, depth;
  std::size_t bytes;  // of a pixel
  bool has_alpha;
  const RowMakers& makers;
};

// Null for pictures that are neither colour nor gray with alpha, or not of 8 or 16 bits.
const PixelFormat* FindPixelFormat(Long color_type, Long depth);

constexpr std::uint8_t kPaethFilter = 4;

// Makes the pixels of a scanline. An unknown filter counts as none. The byte after the scanline is read too.
void UnfilterToBgra(const PixelFormat& format, std::uint8_t filter, const std::uint8_t* scanline,
                    const PixelRun& run);

// The same for two scanlines in a row whose filter is Paeth, `run` being that of the first, which isn't the
// picture's. Half the time of one after the other: each pixel waits for its left neighbour, so two rows can
// be done side by side, the lower one a pixel behind.
void UnfilterPaethPairToBgra(const PixelFormat& format, const std::uint8_t* upper_scanline,
                             const std::uint8_t* lower_scanline, const PixelRun& upper,
                             std::uint8_t* lower_to);

}  // namespace marklet::png
