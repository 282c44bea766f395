// Arithmetic on runs of pixels with alpha, in integers that give to the byte what the definitions give.
#pragma once

#include <cstddef>
#include <cstdint>

#include "bitmaps/pixel_loops.h"

namespace marklet {

// The part of its alpha that a pixel keeps: `constant` / 255.
float ShareOf(std::uint8_t constant);

// Lays rows of a source over rows of 24 or 32 bits by the source's alpha times `share`, rounded half to even.
// With that as `a` each colour byte becomes (d * (255 - a) + s * a + 127) / 255; the destination's alpha
// stays.
struct AlphaRows {
  const std::uint8_t* source;
  std::ptrdiff_t source_stride;
  std::uint8_t* destination;
  std::ptrdiff_t destination_stride;
  std::ptrdiff_t width, height;
  float share;
};
void BlendRows(const AlphaRows& rows, int destination_bits);

// Each colour byte becomes c * alpha / 255, truncated.
void PremultiplyPixels(std::uint8_t* pixels, std::ptrdiff_t count);
// The same with one alpha for all, which becomes theirs.
void SetAlphaOfPixels(std::uint8_t* pixels, std::ptrdiff_t count, std::uint8_t alpha);

// The three colour bytes become their mean, rounded half to even; `spare_key` leaves out those of KeyColour.
void GreyPixels(std::uint8_t* pixels, std::ptrdiff_t count, bool spare_key);

}  // namespace marklet
