// Which source columns, or rows, lie in which cells of ResampleArea's coverage route, and how far.
#pragma once

#include <cmath>
#include <cstddef>
#include <vector>

#include "platform/types.h"

namespace marklet {

// How far a source column, or row, lies in a cell. Not held as a 32-bit float where it is the rest of one
// that lies in the cell before: only the weight of a pixel, the product of two of these, is.
struct AreaShare {
  Long source;
  double part;
};

// The cells of one axis, each with its shares in the order of the source.
class AreaAxis {
 public:
  // `width` and `new_width` are those of the whole surfaces: their ratio serves both axes.
  AreaAxis(Long source_size, Long cells, Long width, Long new_width) : starts_(Index(cells) + 1) {
    struct Fall {
      Long cell;
      AreaShare share;
    };
    std::vector<Fall> falls;
    falls.reserve(2 * Index(source_size));
    const auto k = static_cast<float>(static_cast<double>(new_width) / width);
    for (Long source = 0; source < source_size; ++source) {
      const double quotient = static_cast<double>(std::int64_t{source} * new_width) / width;
      const auto held = static_cast<float>(quotient);
      const double next = std::floor(quotient) + 1;  // of the quotient before it was held
      const double end = double{held} + double{k};
      const auto cell = static_cast<Long>(next) - 1;
      if (next < end) {
        const auto part = static_cast<float>(1 - (end - next) / double{k});
        falls.push_back({cell, {source, double{part}}});
        falls.push_back({cell + 1, {source, 1 - double{part}}});
      } else {
        falls.push_back({cell, {source, 1.0}});
      }
    }
    Sort(falls, cells);
  }

  const AreaShare* begin(Long cell) const { return shares_.data() + starts_[Index(cell)]; }
  const AreaShare* end(Long cell) const { return shares_.data() + starts_[Index(cell) + 1]; }

 private:
  static std::size_t Index(Long i) { return static_cast<std::size_t>(i); }

  // What falls past the last cell is lost.
  template <typename Falls>
  void Sort(const Falls& falls, Long cells) {
    for (const auto& fall : falls) {
      if (fall.cell < cells) ++starts_[Index(fall.cell) + 1];
    }
    for (std::size_t cell = 1; cell < starts_.size(); ++cell) starts_[cell] += starts_[cell - 1];
    shares_.resize(starts_.back());
    std::vector<std::size_t> places(starts_.begin(), starts_.end() - 1);
    for (const auto& fall : falls) {
      if (fall.cell < cells) shares_[places[Index(fall.cell)]++] = fall.share;
    }
  }

  std::vector<std::size_t> starts_;  // of each cell's shares
  std::vector<AreaShare> shares_;
};

}  // namespace marklet
