// The rule by which pictures are stretched, in plain floating point, for tests to compare with.
#pragma once

#include <algorithm>
#include <cmath>

namespace marklet {

// How much of a source pixel goes into one of `cells` that `size` pixels become, along one axis: what the
// cell covers of it where the picture shrinks, and where it grows how near their centres are.
inline double StretchShare(int size, int cells, int cell, int pixel) {
  const double scale = static_cast<double>(size) / cells;
  if (cells < size) {
    const double common =
        std::min<double>(pixel + 1, (cell + 1) * scale) - std::max<double>(pixel, cell * scale);
    return std::max(0.0, common) / scale;
  }
  const double centre = std::clamp((cell + 0.5) * scale - 0.5, 0.0, size - 1.0);
  return std::max(0.0, 1 - std::abs(centre - pixel));
}

}  // namespace marklet
