// Sums that have outgrown their type.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

#include "platform/types.h"

namespace marklet {

// The nearest number that a Long holds.
constexpr Long Saturated(std::int64_t value) {
  return static_cast<Long>(
      std::clamp<std::int64_t>(value, std::numeric_limits<Long>::min(), std::numeric_limits<Long>::max()));
}

}  // namespace marklet
