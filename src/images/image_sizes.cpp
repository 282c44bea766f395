#include "images/image_sizes.h"

#include <cstddef>

namespace marklet {
namespace {

constexpr Long kPixels[kImageSizes] = {16, 24, 32, 48, 72, 96, 128, 256};

// A step that a number reaches or not.
struct Step {
  Long from, result;
};

template <std::size_t n>
Long LastReached(const Step (&steps)[n], Long number, Long below) {
  Long result = below;
  for (const Step& step : steps)
    if (number >= step.from) result = step.result;
  return result;
}

constexpr Step kDepthSteps[] = {{4, 1}, {8, 2}, {16, 3}, {32, 4}};

// Not halfway between the sizes: saved forms hold what these gave.
constexpr Step kSizeSteps[] = {{23, 24}, {28, 32}, {42, 48}, {68, 72}, {92, 96}, {127, 128}, {250, 256}};

constexpr SizeFallback kFallbacks[kImageSizes] = {
    {{1, 2, 3, 4, 5, 6, 7}}, {{2, 3, 0, 4, 5, 6, 7}}, {{3, 1, 4, 0, 5, 6, 7}}, {{4, 2, 1, 5, 6, 7, 0}},
    {{5, 6, 7, 3, 2, 1, 0}}, {{6, 7, 4, 3, 2, 1, 0}}, {{7, 5, 4, 3, 2, 1, 0}}, {{6, 5, 4, 3, 2, 1, 0}},
};

}  // namespace

Long SizeFromIndex(Long size_index) {
  return size_index >= 0 && size_index < kImageSizes ? kPixels[size_index] : 0;
}

Long SizeIndex(Long pixels) {
  for (Long index = 0; index < kImageSizes; ++index)
    if (kPixels[index] == pixels) return index;
  return 0;
}

Long DepthIndex(Long bit_count) { return LastReached(kDepthSteps, bit_count, 0); }
Long NormalisedSize(Long pixels) { return LastReached(kSizeSteps, pixels, 16); }

const SizeFallback& FallbackOf(Long size_index) { return kFallbacks[size_index]; }

}  // namespace marklet
