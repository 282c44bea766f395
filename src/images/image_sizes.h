// The sizes and depths under which an image's pixels are kept.
#pragma once

#include <cstddef>

#include "platform/types.h"

namespace marklet {

constexpr Long kImageSizes = 8, kImageDepths = 5;
constexpr Long kAlphaDepthIndex = 4;  // pixels with alpha

// Entries of an image stand depth by depth.
constexpr std::size_t kImageEntries = std::size_t{kImageSizes} * kImageDepths;
constexpr std::size_t EntryIndex(Long size_index, Long depth_index) {
  return static_cast<std::size_t>(depth_index) * kImageSizes + static_cast<std::size_t>(size_index);
}

// Edge lengths: 16, 24, 32, 48, 72, 96, 128, 256 pixels for the indices from 0; 0 for any other index.
Long SizeFromIndex(Long size_index);
// And back: 0 for a length that isn't among them.
Long SizeIndex(Long pixels);
// 4 for 32 bits a pixel or more, 3 down to 16, 2 down to 8, 1 down to 4, else 0.
Long DepthIndex(Long bit_count);

// The edge length that a square of `pixels` is kept at.
Long NormalisedSize(Long pixels);
// Rounded up to a multiple of four, so that rows of three bytes a pixel need no padding.
constexpr Long PaddedWidth(Long width) { return (width + 3) / 4 * 4; }

// The sizes to turn to for one that isn't there, nearest in kind first.
struct SizeFallback {
  Long order[kImageSizes - 1];  // size indices
};
const SizeFallback& FallbackOf(Long size_index);

}  // namespace marklet
