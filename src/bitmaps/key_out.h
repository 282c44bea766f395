// The loop that makes the background of a picture transparent.
#pragma once

#include <cstddef>
#include <cstdint>

#include "bitmaps/pixel_loops.h"
#include "platform/gdi.h"
#include "platform/types.h"

namespace marklet {

// Turns each pixel whose channels are all `kSame` as the top left corner's into KeyColour, and its alpha
// byte, where there is one, into 0.
template <bool (*kSame)(Long value, Long reference)>
void KeyOut(const PixelView& pixels) {
  GdiFlush();
  const std::uint8_t* const corner = pixels.At(0, 0);
  const Long blue = corner[0], green = corner[1], red = corner[2];
  const std::ptrdiff_t bytes = pixels.bits_per_pixel / 8;
  for (Long y = 0; y < pixels.height; ++y) {
    std::uint8_t* pixel = pixels.Row(y);
    const std::uint8_t* const end = pixel + pixels.width * bytes;
    for (; pixel != end; pixel += bytes) {
      if (!kSame(pixel[0], blue) || !kSame(pixel[1], green) || !kSame(pixel[2], red)) continue;
      PutKeyPixel(pixel);
      if (bytes == kBytesPerAlphaPixel) pixel[3] = 0;
    }
  }
}

}  // namespace marklet
