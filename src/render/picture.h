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

  std::span<const std::uint8_t> Row(Long y) const;
  friend bool operator==(const Picture&, const Picture&) = default;
};

// Empty for an empty surface.
Picture PictureOf(const CDib24& surface);

}  // namespace marklet
