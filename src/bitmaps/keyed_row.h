// The inner loop of a keyed copy: one row, all pixels but those of the key.
#pragma once

#include <cstdint>

#include "platform/types.h"

namespace marklet {

constexpr std::int64_t kBlockPixels = 16, kBlockBytes = 3 * kBlockPixels;

struct KeyBytes {
  std::uint8_t blue, green, red;
  std::uint8_t block[kBlockBytes];  // the key in each place of sixteen pixels

  explicit KeyBytes(COLORREF key)
      : blue(static_cast<std::uint8_t>(BlueOf(key))),
        green(static_cast<std::uint8_t>(GreenOf(key))),
        red(static_cast<std::uint8_t>(RedOf(key))) {
    for (std::int64_t i = 0; i < kBlockBytes; i += 3) {
      block[i] = blue, block[i + 1] = green, block[i + 2] = red;
    }
  }
};

// Copies `count` pixels. The rows may overlap: `backwards` starts with the last pixel, for a copy to the
// right. An alpha byte is taken along where both sides have one, and becomes 0 where only the destination
// has.
using KeyedRowCopier = void (*)(const std::uint8_t* in, std::uint8_t* out, std::int64_t count, bool backwards,
                                const KeyBytes& key);

// For pixels of 24 or 32 bits on either side.
KeyedRowCopier KeyedRowCopierFor(int from_bits, int to_bits);

}  // namespace marklet
