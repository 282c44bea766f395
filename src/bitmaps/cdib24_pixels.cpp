// The pixel loops of CDib24. Each gives, to the byte, what its definition in plain floating point gives; the
// loops go by strips of columns, so that what depends on the column alone is worked out once.
#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>

#include "bitmaps/cdib24.h"
#include "platform/rounding.h"

namespace marklet {
namespace {

constexpr Long kBytesPerPixel = 3;
constexpr std::uint8_t kKeyBytes[kBytesPerPixel] = {BlueOf(KeyColour), GreenOf(KeyColour), RedOf(KeyColour)};
constexpr Long kStripColumns = 512;

struct Pixels {
  std::uint8_t* bits;  // the bottom row
  Long width, height;
  Long stride;

  std::uint8_t* Row(Long y) const { return bits + static_cast<std::ptrdiff_t>(y) * stride; }
};

// The mean of three bytes by their sum.
const std::array<std::uint8_t, 3 * 255 + 1>& Means() {
  static const auto means = [] {
    std::array<std::uint8_t, 3 * 255 + 1> table{};
    for (std::size_t sum = 0; sum < table.size(); ++sum) {
      table[sum] = static_cast<std::uint8_t>(RoundHalfEven(static_cast<double>(sum) / 3.0));
    }
    return table;
  }();
  return means;
}

bool IsKeyPixel(const std::uint8_t* pixel) {
  return pixel[0] == kKeyBytes[0] && pixel[1] == kKeyBytes[1] && pixel[2] == kKeyBytes[2];
}

// RoundHalfEven for values whose size is below 2^31, without a branch: at this magnitude a double has no
// fraction bits, so that the addition rounds.
Long RoundSmall(double value) {
  constexpr double kShift = 0x1.8p52;
  return static_cast<Long>(static_cast<std::uint32_t>(std::bit_cast<std::uint64_t>(value + kShift)));
}

Long Mix(double t, Long from, Long to) { return RoundSmall((1.0 - t) * from + t * to); }

COLORREF Packed(Long blue, Long green, Long red) {
  return static_cast<COLORREF>(red) | static_cast<COLORREF>(green) << 8 | static_cast<COLORREF>(blue) << 16;
}

// Where a destination row or column falls in the source: between two neighbours, `t` of the way.
struct Tap {
  Long first, second;
  float t;
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
  return {first, std::min(first + 1, source_size - 1), static_cast<float>(held - whole)};
}

// A source column mixed between two rows.
struct MixedColumn {
  Long blue, green, red;
  bool keyed;  // one of its two pixels, or their mix, is the key
};

MixedColumn MixRows(const std::uint8_t* lower, const std::uint8_t* upper, double t, COLORREF key) {
  const Long blue = Mix(t, lower[0], upper[0]);
  const Long green = Mix(t, lower[1], upper[1]);
  const Long red = Mix(t, lower[2], upper[2]);
  const bool keyed = Packed(lower[0], lower[1], lower[2]) == key ||
                     Packed(upper[0], upper[1], upper[2]) == key || Packed(blue, green, red) == key;
  return {blue, green, red, keyed};
}

std::uint8_t ClampedMix(double t, Long from, Long to) {
  return static_cast<std::uint8_t>(std::clamp(Mix(t, from, to), 0, 255));
}

void MixColumns(const MixedColumn& left, const MixedColumn& right, double t, std::uint8_t* out) {
  if (left.keyed || right.keyed) {
    std::copy_n(kKeyBytes, kBytesPerPixel, out);
    return;
  }
  out[0] = ClampedMix(t, left.blue, right.blue);
  out[1] = ClampedMix(t, left.green, right.green);
  out[2] = ClampedMix(t, left.red, right.red);
}

// The part of BilinearInto that lies in neighbouring destination columns.
class BilinearStrip {
 public:
  BilinearStrip(const Pixels& source, const Pixels& destination, Long begin, COLORREF key)
      : source_(source),
        destination_(destination),
        begin_(begin),
        count_(std::min(kStripColumns, destination.width - begin)),
        key_(key) {
    const float step = StepOf(source.width, destination.width);
    for (Long i = 0; i < count_; ++i) {
      const Tap tap = TapAt(begin + i, step, source.width);
      targets_[Index(i)] = {SlotOf(tap.first), SlotOf(tap.second), tap.t};
    }
  }

  void Row(Long y, float step) {
    const Tap tap = TapAt(y, step, source_.height);
    const std::uint8_t* lower = source_.Row(tap.first);
    const std::uint8_t* upper = source_.Row(tap.second);
    for (Long slot = 0; slot < slots_; ++slot) {
      const Long offset = offsets_[Index(slot)];
      mixed_[Index(slot)] = MixRows(lower + offset, upper + offset, tap.t, key_);
    }
    std::uint8_t* out = destination_.Row(y) + static_cast<std::ptrdiff_t>(begin_) * kBytesPerPixel;
    for (Long i = 0; i < count_; ++i, out += kBytesPerPixel) {
      const Tap& target = targets_[Index(i)];
      MixColumns(mixed_[Index(target.first)], mixed_[Index(target.second)], target.t, out);
    }
  }

 private:
  static std::size_t Index(Long i) { return static_cast<std::size_t>(i); }

  // Columns come in rising order, so one that was met before is the last or the one before it.
  Long SlotOf(Long column) {
    const Long offset = column * kBytesPerPixel;
    for (Long slot = slots_ - 1; slot >= std::max(slots_ - 2, 0); --slot) {
      if (offsets_[Index(slot)] == offset) return slot;
    }
    offsets_[Index(slots_)] = offset;
    return slots_++;
  }

  Pixels source_, destination_;
  Long begin_, count_;
  COLORREF key_;
  std::array<Tap, kStripColumns> targets_;  // its neighbours are slots
  Long slots_ = 0;                          // source columns that the strip needs
  std::array<Long, 2 * kStripColumns> offsets_;
  std::array<MixedColumn, 2 * kStripColumns> mixed_;
};

// Source positions of ResampleNearest.
class NearestAxis {
 public:
  NearestAxis(Long source_size, Long destination_size)
      : last_(source_size - 1), ratio_(destination_size > 1 ? last_ / (destination_size - 1.0) : 0.0) {}
  Long At(Long position) const { return std::min(RoundHalfEven(position * ratio_), last_); }

 private:
  Long last_;
  double ratio_;
};

void NearestStrip(const Pixels& source, const Pixels& destination, Long begin) {
  const Long count = std::min(kStripColumns, destination.width - begin);
  std::array<Long, kStripColumns> offsets;
  const NearestAxis columns(source.width, destination.width);
  for (Long i = 0; i < count; ++i) {
    offsets[static_cast<std::size_t>(i)] = columns.At(begin + i) * kBytesPerPixel;
  }
  const NearestAxis rows(source.height, destination.height);
  const std::uint8_t* former_in = nullptr;
  const std::uint8_t* former_out = nullptr;
  for (Long y = 0; y < destination.height; ++y) {
    const std::uint8_t* in = source.Row(rows.At(y));
    std::uint8_t* out = destination.Row(y) + static_cast<std::ptrdiff_t>(begin) * kBytesPerPixel;
    if (in == former_in) {
      std::memcpy(out, former_out, static_cast<std::size_t>(count * kBytesPerPixel));
    } else {
      std::uint8_t* pixel = out;
      for (Long i = 0; i < count; ++i, pixel += kBytesPerPixel) {
        std::memcpy(pixel, in + offsets[static_cast<std::size_t>(i)], kBytesPerPixel);
      }
    }
    former_in = in;
    former_out = out;
  }
}

}  // namespace

void CDib24::Grayscale(COLORREF& key) {
  if (key == CLR_INVALID) key = KeyColour;
  if (bits_ == nullptr) return;
  GdiFlush();
  const auto& means = Means();
  const Pixels pixels{bits_, width_, height_, bytes_per_scan_line_};
  for (Long y = 0; y < height_; ++y) {
    std::uint8_t* pixel = pixels.Row(y);
    const std::uint8_t* end = pixel + static_cast<std::ptrdiff_t>(width_) * kBytesPerPixel;
    for (; pixel != end; pixel += kBytesPerPixel) {
      // Always KeyColour's own bytes, never the argument's: images mark their transparent pixels with these.
      if (IsKeyPixel(pixel)) continue;
      const std::uint8_t grey = means[static_cast<std::size_t>(pixel[0] + pixel[1] + pixel[2])];
      pixel[0] = pixel[1] = pixel[2] = grey;
    }
  }
}

bool CDib24::BilinearInto(CDib24& destination, COLORREF key) const {
  if (bits_ == nullptr || destination.bits_ == nullptr || &destination == this) return false;
  GdiFlush();
  const Pixels from{bits_, width_, height_, bytes_per_scan_line_};
  const Pixels to{destination.bits_, destination.width_, destination.height_,
                  destination.bytes_per_scan_line_};
  const float row_step = StepOf(from.height, to.height);
  for (Long begin = 0; begin < to.width; begin += kStripColumns) {
    BilinearStrip strip(from, to, begin, key);
    for (Long y = 0; y < to.height; ++y) strip.Row(y, row_step);
  }
  return false;
}

std::unique_ptr<CDib24> CDib24::ResampleNearest(Long new_width, Long new_height) const {
  auto resampled = std::make_unique<CDib24>();
  if (!resampled->Create(new_width, new_height)) return nullptr;
  if (bits_ == nullptr) return resampled;
  GdiFlush();
  const Pixels from{bits_, width_, height_, bytes_per_scan_line_};
  const Pixels to{resampled->bits_, new_width, new_height, resampled->bytes_per_scan_line_};
  for (Long begin = 0; begin < new_width; begin += kStripColumns) NearestStrip(from, to, begin);
  return resampled;
}

}  // namespace marklet
