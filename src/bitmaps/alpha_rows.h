// Arithmetic on runs of pixels with alpha, in integers that give to the byte what the definitions give.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/types.h"

namespace marklet {

constexpr Long kBytesPerAlphaPixel = 4;  // blue, green, red, alpha

// Lays `source` over `destination` by its alpha, weighted with `constant` / 255 and rounded half to even.
// Each colour byte becomes (d * (255 - a) + s * a + 127) / 255; the destination's alpha stays.
void BlendPixels(const std::uint8_t* source, std::uint8_t* destination, std::ptrdiff_t count,
                 std::uint8_t constant);

// Each colour byte becomes c * alpha / 255, truncated.
void PremultiplyPixels(std::uint8_t* pixels, std::ptrdiff_t count);
// The same with one alpha for all, which becomes theirs.
void SetAlphaOfPixels(std::uint8_t* pixels, std::ptrdiff_t count, std::uint8_t alpha);

// The three colour bytes become their mean, rounded half to even; `spare_key` leaves out those of KeyColour.
void GreyPixels(std::uint8_t* pixels, std::ptrdiff_t count, bool spare_key);

}  // namespace marklet
