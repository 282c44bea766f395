// A finished picture as plain bytes.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "bitmaps/cdib24.h"
#include "platform/types.h"

namespace marklet {

// Rows from the top, each pixel red, green and blue.
struct Picture {
  Long width = 0, height = 0;
  std::vector<std::uint8_t> rgb;
  std::vector<std::uint8_t> alpha = {};  // a byte each pixel, the colours not multiplied by it; empty: opaque

  std::span<const std::uint8_t> Row(Long y) const;
  friend bool operator==(const Picture&, const Picture&) = default;
};

// Empty for an empty surface.
Picture PictureOf(const CDib24& surface);

// The picture with alpha that shows as the first in front of black and as the second in front of white. Both
// have the same size.
Picture WithAlpha(const Picture& on_black, const Picture& on_white);

}  // namespace marklet
