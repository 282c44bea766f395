// Pictures as PNG.
#pragma once

#include <cstdint>
#include <vector>

#include "render/picture.h"

namespace marklet {

// A whole PNG file of 8-bit RGB, or RGBA for a picture with alpha. `pixels_per_metre` goes into the file so
// that viewers know the intended size.
std::vector<std::uint8_t> EncodePng(const Picture& picture, std::uint32_t pixels_per_metre);

}  // namespace marklet
