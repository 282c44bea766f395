// Gray and palette pictures: from bare rows to the pending bitmap.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "platform/types.h"
#include "png/scanlines.h"

namespace marklet::png {

// Spreads rows over `stride` bytes each where they are `row_bytes` long, which is no more.
void AlignRows(std::vector<std::uint8_t>& data, Long height, std::size_t row_bytes, std::size_t stride);
// Keeps the high byte of each 16-bit sample.
void ReduceTo8Bits(std::vector<std::uint8_t>& data);
// Spreads 2-bit samples over a byte each, on four-byte strides.
void Unpack2BitRows(std::vector<std::uint8_t>& data, Long width, Long height, std::size_t row_bytes);

// True for the colour types 0 and 3 at the depths that the format has.
bool IsIndexed(Long color_type, Long depth);
// Converts the rows of such a picture, as UnfilterImage or Deinterlace gave them, with the high bytes alone
// of 16-bit samples, and leaves the bitmap pending.
void BuildIndexed(std::vector<std::uint8_t> rows, const ScanlineLayout& layout, bool interlaced,
                  std::span<const std::uint8_t> palette_bytes);

}  // namespace marklet::png
