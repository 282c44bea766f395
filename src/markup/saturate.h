// Sums of pen positions. Rectangles and heights may be anything; a sum beyond the range of a coordinate stays
// at its end, so that the pen never comes back into the picture from the other side.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

#include "platform/types.h"

namespace marklet {

constexpr Long SaturatingAdd(Long a, std::int64_t b) {
  const std::int64_t sum = a + b;
  return static_cast<Long>(
      std::clamp<std::int64_t>(sum, std::numeric_limits<Long>::min(), std::numeric_limits<Long>::max()));
}

}  // namespace marklet
