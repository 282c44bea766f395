// What the pixel loops of CDib24 share. Each loop gives, to the byte, what its definition in plain floating
// point gives; the resizing loops go by strips of columns, so that what depends on the column alone is worked
// out once and needs no memory.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/types.h"

namespace marklet {

constexpr Long kBytesPerPixel = 3;  // blue, green, red
constexpr std::uint8_t kKeyBytes[kBytesPerPixel] = {BlueOf(KeyColour), GreenOf(KeyColour), RedOf(KeyColour)};
constexpr Long kStripColumns = 256;

struct PixelRows {
  std::uint8_t* bits;  // the bottom row
  Long width, height;
  Long stride;

  std::uint8_t* Row(Long y) const { return bits + static_cast<std::ptrdiff_t>(y) * stride; }
  std::uint8_t* At(Long x, Long y) const { return Row(y) + static_cast<std::ptrdiff_t>(x) * kBytesPerPixel; }
};

}  // namespace marklet
