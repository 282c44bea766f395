#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

#include "bitmaps/cdib24.h"
#include "bitmaps/colour_mix.h"
#include "bitmaps/pixel_rows.h"

namespace marklet {
namespace {

// Where a destination row or column falls in the source: between two neighbours.
struct Tap {
  Long first, second;
  MixRatio ratio;
};

// The way from one destination row or column to the next, in source pixels.
float StepOf(Long source_size, Long destination_size) {
  return static_cast<float>((source_size - 1.0) / destination_size);
}

Tap TapAt(Long position, float step, Long source_size) {
  const double product = static_cast<double>(position) * step;
  const auto held = static_cast<float>(product);
  // The floor is that of the product before it was held as a 32-bit float, which may have rounded it up.
  const double whole = std::floor(product);
  const Long first = std::min(static_cast<Long>(whole), source_size - 1);
  return {first, std::min(first + 1, source_size - 1), MixRatio(static_cast<float>(held - whole))};
}

std::size_t Index(Long i) { return static_cast<std::size_t>(i); }

// The part of BilinearInto that lies in neighbouring destination columns. For each row, first the source
// columns that it needs are mixed between two rows, each once; then neighbours among these are mixed.
class BilinearStrip {
 public:
  BilinearStrip(const PixelRows& source, const PixelRows& destination, Long begin, COLORREF key)
      : source_(source),
        destination_(destination),
        begin_(begin),
        count_(std::min(kStripColumns, destination.width - begin)),
        key_(key) {
    const float step = StepOf(source.width, destination.width);
    for (Long i = 0; i < count_; ++i) {
      const Tap tap = TapAt(begin + i, step, source.width);
      const Long first = SlotOf(tap.first);
      targets_[Index(i)] = {first, SlotOf(tap.second), tap.ratio};
    }
  }

  void Row(Long y, float step) {
    const Tap tap = TapAt(y, step, source_.height);
    if (source_.width > 1) {
      MixRows<ReadWidePair>(tap, 0, wide_pairs_);
      MixRows<ReadPair>(tap, wide_pairs_, pairs_);
    } else {
      MixRows<ReadTwice>(tap, 0, pairs_);
    }
    std::uint8_t* out = destination_.At(begin_, y);
    for (Long i = 0; i < count_; ++i, out += kBytesPerPixel) MixColumns(targets_[Index(i)], out);
  }

 private:
  // Columns are mixed in pairs; a slot is the place of one in them. Those asked for here rise, by one at most
  // within a target, so one that was met before is in the last two pairs.
  Long SlotOf(Long column) {
    for (Long pair = pairs_ - 1; pair >= std::max(pairs_ - 2, 0); --pair) {
      const Long within = column - pair_columns_[Index(pair)];
      if (within == 0 || within == 1) return 2 * pair + within;
    }
    // The pair of the last column begins before it.
    const Long left = std::clamp(column, 0, std::max(source_.width - 2, 0));
    pair_columns_[Index(pairs_)] = left;
    if (left <= (source_.stride - kWidePairBytes) / kBytesPerPixel) wide_pairs_ = pairs_ + 1;
    return 2 * pairs_++ + column - left;
  }

  template <PixelPair (*kRead)(const std::uint8_t*)>
  void MixRows(const Tap& tap, Long first, Long end) {
    const std::uint8_t* lower = source_.Row(tap.first);
    const std::uint8_t* upper = source_.Row(tap.second);
    for (std::size_t pair = Index(first); pair < Index(end); ++pair) {
      const auto offset = static_cast<std::ptrdiff_t>(pair_columns_[pair]) * kBytesPerPixel;
      const MixedPair mixed = Mix(kRead(lower + offset), kRead(upper + offset), tap.ratio, key_);
      mixed_[2 * pair] = mixed.left;
      mixed_[2 * pair + 1] = mixed.right;
      keyed_[2 * pair] = mixed.left_keyed;
      keyed_[2 * pair + 1] = mixed.right_keyed;
    }
  }

  void MixColumns(const Tap& target, std::uint8_t* out) const {
    const std::size_t left = Index(target.first), right = Index(target.second);
    if ((keyed_[left] | keyed_[right]) != 0) {
      std::memcpy(out, kKeyBytes, kBytesPerPixel);
    } else {
      Mix(mixed_[left], mixed_[right], target.ratio, out);
    }
  }

  // A strip begins a pair for each of its columns at most twice.
  static constexpr std::size_t kSlots = std::size_t{4} * kStripColumns;

  PixelRows source_, destination_;
  Long begin_, count_;
  KeyPair key_;
  std::array<Tap, kStripColumns> targets_;  // between slots
  Long pairs_ = 0;
  Long wide_pairs_ = 0;  // the first of them, those that end well before their row does
  std::array<Long, kSlots / 2> pair_columns_;
  std::array<MixedColour, kSlots> mixed_;
  std::array<std::int32_t, kSlots> keyed_;
};

}  // namespace

bool CDib24::BilinearInto(CDib24& destination, COLORREF key) const {
  if (Bits() == nullptr || destination.Bits() == nullptr || &destination == this) return false;
  GdiFlush();
  const PixelRows from{Bits(), Width(), Height(), BytesPerScanLine()};
  const PixelRows to{destination.Bits(), destination.Width(), destination.Height(),
                     destination.BytesPerScanLine()};
  const float row_step = StepOf(from.height, to.height);
  for (Long begin = 0; begin < to.width; begin += kStripColumns) {
    BilinearStrip strip(from, to, begin, key);
    for (Long y = 0; y < to.height; ++y) strip.Row(y, row_step);
  }
  return false;
}

}  // namespace marklet
