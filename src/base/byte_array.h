// A saved array of bytes with its dimensions, as property bags hold it.
#pragma once

#include <cstdint>
#include <vector>

#include "base/rounding.h"

namespace marklet {

struct ByteArray {
  struct Bound {
    Long lower = 0;
    Long count = 0;
    friend bool operator==(const Bound&, const Bound&) = default;
  };
  std::vector<Bound> bounds;        // the first dimension runs fastest in memory; none for no array at all
  std::vector<std::uint8_t> bytes;  // as many as the counts multiply to

  // Of the first dimension; -1 when there is no array.
  Long UpperBound() const {
    return bounds.empty() ? -1 : WrapAdd(bounds.front().lower, WrapSub(bounds.front().count, 1));
  }
  friend bool operator==(const ByteArray&, const ByteArray&) = default;
};

// One dimension from 0; an empty one has the dimension and no element.
inline ByteArray OneDimension(std::vector<std::uint8_t> bytes) {
  const Long count = static_cast<Long>(bytes.size());
  return {{{0, count}}, std::move(bytes)};
}

}  // namespace marklet
