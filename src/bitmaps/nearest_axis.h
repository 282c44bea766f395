// Source positions of ResampleNearest along one axis: the corners of the new surface sample the corners of
// the source.
#pragma once

#include <algorithm>

#include "base/rounding.h"
#include "platform/types.h"

namespace marklet {

class NearestAxis {
 public:
  // With a destination of one pixel the ratio isn't finite, and the only position stays 0.
  NearestAxis(Long source_size, Long destination_size)
      : last_(source_size - 1), ratio_(destination_size > 1 ? last_ / (destination_size - 1.0) : 0.0) {}
  Long Last() const { return last_; }
  double Ratio() const { return ratio_; }
  Long At(Long position) const { return std::min(RoundHalfEven(position * ratio_), last_); }

 private:
  Long last_;
  double ratio_;
};

}  // namespace marklet
