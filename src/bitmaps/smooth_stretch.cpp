#include "bitmaps/smooth_stretch.h"

#include <algorithm>
#include <vector>

#include "bitmaps/pixel_loops.h"

namespace marklet {
namespace {

// A weight of one. A channel times this fits into 32 bits, and times its square into 64.
constexpr int kWeightBits = 24;
constexpr std::int64_t kOne = std::int64_t{1} << kWeightBits;

// The source pixels that a pixel is made of. The weights add up to one exactly, so that an even colour stays.
struct Taps {
  Long first;
  std::vector<std::uint32_t> weights;
};

// `part` of `whole` as a weight, to the nearest.
std::int64_t Weight(std::int64_t part, std::int64_t whole) { return (2 * part * kOne + whole) / (2 * whole); }

// The pixels that lie in a cell, each by how much of the cell it fills. Lengths are in source pixels times
// `cells`, where a cell is `size` long.
Taps Covered(Long size, Long cells, Long cell) {
  const std::int64_t start = std::int64_t{cell} * size, end = start + size;
  Taps taps{static_cast<Long>(start / cells), {}};
  std::int64_t before = 0;
  for (std::int64_t pixel = taps.first; pixel * cells < end; ++pixel) {
    const std::int64_t so_far = Weight(std::min((pixel + 1) * cells, end) - start, size);
    taps.weights.push_back(static_cast<std::uint32_t>(so_far - before));
    before = so_far;
  }
  return taps;
}

// The two pixels between whose centres the cell's own lies. Lengths are in source pixels times twice `cells`.
Taps Between(Long size, Long cells, Long cell) {
  const std::int64_t pixel = 2 * std::int64_t{cells};
  const std::int64_t from_first_centre = (2 * std::int64_t{cell} + 1) * size - cells;
  if (from_first_centre <= 0) return {0, {static_cast<std::uint32_t>(kOne)}};
  const auto first = static_cast<Long>(from_first_centre / pixel);
  if (first + 1 >= size) return {size - 1, {static_cast<std::uint32_t>(kOne)}};
  const std::int64_t second = Weight(from_first_centre % pixel, pixel);
  return {first, {static_cast<std::uint32_t>(kOne - second), static_cast<std::uint32_t>(second)}};
}

// One axis of a stretch: `size` pixels become `cells`.
struct Axis {
  Long size, cells;
  bool turned;

  Taps At(Long cell) const {
    const Long own = turned ? cells - 1 - cell : cell;
    return cells < size ? Covered(size, cells, own) : Between(size, cells, own);
  }
};

// The rows of the picture, counted from its top, brought together into one.
void BlendRows(const PixelView& picture, const Taps& taps, std::vector<std::uint32_t>& row) {
  std::fill(row.begin(), row.end(), 0u);
  Long y = picture.height - 1 - taps.first;
  for (const std::uint32_t weight : taps.weights) {
    const std::uint8_t* bytes = picture.Row(y--);
    for (std::uint32_t& sum : row) sum += *bytes++ * weight;
  }
}

void WritePixel(const std::uint32_t* row, const Taps& taps, std::uint8_t* pixel) {
  std::uint64_t sums[kBytesPerPixel] = {};
  row += std::ptrdiff_t{taps.first} * kBytesPerPixel;
  for (const std::uint32_t weight : taps.weights)
    for (std::uint64_t& sum : sums) sum += std::uint64_t{*row++} * weight;
  constexpr int kBits = 2 * kWeightBits;
  for (const std::uint64_t sum : sums)
    *pixel++ = static_cast<std::uint8_t>((sum + (std::uint64_t{1} << (kBits - 1))) >> kBits);
}

}  // namespace

void StretchSmooth(const CDib24& picture, const StretchSize& size, Long left, Long top, const CDib24& part) {
  const PixelView from = picture.View(), to = part.View();
  const Axis across{from.width, size.width, size.mirrored}, down{from.height, size.height, size.upside_down};
  std::vector<Taps> columns;
  columns.reserve(static_cast<std::size_t>(to.width));
  for (Long x = 0; x < to.width; ++x) columns.push_back(across.At(left + x));
  std::vector<std::uint32_t> row(static_cast<std::size_t>(from.width) * kBytesPerPixel);
  for (Long y = 0; y < to.height; ++y) {
    BlendRows(from, down.At(top + y), row);
    std::uint8_t* pixel = to.Row(to.height - 1 - y);
    for (const Taps& column : columns) {
      WritePixel(row.data(), column, pixel);
      pixel += kBytesPerPixel;
    }
  }
}

}  // namespace marklet
