// What the loops over pixels share: the bytes of a pixel, and those that mark it as transparent. Each loop
// gives, to the byte, what its definition in plain floating point gives.
#pragma once

#include <cstdint>
#include <cstring>

#include "platform/types.h"

namespace marklet {

constexpr Long kBytesPerPixel = 3;       // blue, green, red
constexpr Long kBytesPerAlphaPixel = 4;  // blue, green, red, alpha
constexpr std::uint8_t kKeyBytes[kBytesPerPixel] = {BlueOf(KeyColour), GreenOf(KeyColour), RedOf(KeyColour)};

// Whether a pixel's colour is KeyColour.
inline bool IsKeyPixel(const std::uint8_t* pixel) {
  return pixel[0] == kKeyBytes[0] && pixel[1] == kKeyBytes[1] && pixel[2] == kKeyBytes[2];
}
inline void PutKeyPixel(std::uint8_t* pixel) { std::memcpy(pixel, kKeyBytes, kBytesPerPixel); }

// Loops that change a size go by strips of so many columns: what depends on the column alone is worked out
// once a strip and needs no memory of its own.
constexpr Long kStripColumns = 256;

}  // namespace marklet
