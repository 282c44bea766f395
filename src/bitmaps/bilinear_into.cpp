#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

#include "bitmaps/cdib24.h"
#include "bitmaps/colour_mix.h"
#include "bitmaps/colour_mix_avx2.h"
#include "bitmaps/pixel_loops.h"

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

// What a strip mixes between two rows: pairs of neighbouring columns. Each has two slots for the results.
struct RowPairs {
  const std::uint8_t *lower, *upper;
  const Long* columns;
  std::size_t first, end;  // of the pairs
  const MixRatio& ratio;
  COLORREF key;
};
struct Slots {
  MixedColour* mixed;
  std::int32_t* keyed;  // not 0 where the key has part in it
};

template <PixelPair (*kRead)(const std::uint8_t*)>
void MixRowsPlain(const RowPairs& pairs, const Slots& slots) {
  const KeyPair key(pairs.key);
  for (std::size_t pair = pairs.first; pair < pairs.end; ++pair) {
    const auto offset = static_cast<std::ptrdiff_t>(pairs.columns[pair]) * kBytesPerPixel;
    const MixedPair mixed = Mix(kRead(pairs.lower + offset), kRead(pairs.upper + offset), pairs.ratio, key);
    slots.mixed[2 * pair] = mixed.left;
    slots.mixed[2 * pair + 1] = mixed.right;
    slots.keyed[2 * pair] = mixed.left_keyed;
    slots.keyed[2 * pair + 1] = mixed.right_keyed;
  }
}

void MixColumnsPlain(const Tap* targets, Long count, const Slots& slots, COLORREF, std::uint8_t* out) {
  for (const Tap* target = targets; target != targets + count; ++target, out += kBytesPerPixel) {
    const std::size_t left = Index(target->first), right = Index(target->second);
    if ((slots.keyed[left] | slots.keyed[right]) != 0) {
      PutKeyPixel(out);
    } else {
      Mix(slots.mixed[left], slots.mixed[right], target->ratio, out);
    }
  }
}

#if MARKLET_HAS_AVX2_PATH

// A colour as its bytes stand in memory; no pixel has that of a key which is no colour.
int PixelOf(COLORREF colour) {
  if (colour > 0xFFFFFF) return -1;
  return static_cast<int>(BlueOf(colour) | GreenOf(colour) << 8 | RedOf(colour) << 16);
}

template <PixelPair (*kRead)(const std::uint8_t*)>
MARKLET_AVX2 void MixRowsAvx2(const RowPairs& pairs, const Slots& slots) {
  const __m128i key = _mm_set1_epi32(PixelOf(pairs.key));
  const WideRatio ratio{Doubled(pairs.ratio.T()), Doubled(pairs.ratio.Sure())};
  for (std::size_t pair = pairs.first; pair < pairs.end; ++pair) {
    const auto offset = static_cast<std::ptrdiff_t>(pairs.columns[pair]) * kBytesPerPixel;
    const __m128i from = Spread(kRead(pairs.lower + offset)), to = Spread(kRead(pairs.upper + offset));
    const __m256i mixed = ratio.Mix(ChannelsOf(from), ChannelsOf(to), pairs.ratio, pairs.ratio);
    const __m128i pixels = _mm_and_si128(PixelsOf(mixed), _mm_set1_epi32(0xFFFFFF));
    const __m128i keyed = _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi32(from, key), _mm_cmpeq_epi32(to, key)),
                                       _mm_cmpeq_epi32(pixels, key));
    _mm256_storeu_ps(reinterpret_cast<float*>(slots.mixed + 2 * pair), _mm256_cvtepi32_ps(mixed));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(slots.keyed + 2 * pair), keyed);
  }
}

// Two targets at a time. All but the last store of a row take the next pixel's first byte along.
MARKLET_AVX2 void MixColumnsAvx2(const Tap* targets, Long count, const Slots& slots, COLORREF key,
                                 std::uint8_t* out) {
  const int key_pixel = PixelOf(KeyColour);
  const auto keyed = [&](const Tap& target) {
    return (slots.keyed[Index(target.first)] | slots.keyed[Index(target.second)]) != 0;
  };
  const auto mixed = [&](Long slot) { return slots.mixed[Index(slot)].channels; };
  Long i = 0;
  for (; i + 2 < count; i += 2, out += std::ptrdiff_t{2} * kBytesPerPixel) {
    const Tap &a = targets[i], &b = targets[i + 1];
    const WideRatio ratio{_mm256_set_m128(b.ratio.T(), a.ratio.T()),
                          _mm256_set_m128(b.ratio.Sure(), a.ratio.Sure())};
    const __m128i pixels =
        PixelsOf(ratio.Mix(_mm256_set_m128(mixed(b.first), mixed(a.first)),
                           _mm256_set_m128(mixed(b.second), mixed(a.second)), a.ratio, b.ratio));
    const int low = keyed(a) ? key_pixel : _mm_cvtsi128_si32(pixels);
    const int high = keyed(b) ? key_pixel : _mm_extract_epi32(pixels, 1);
    std::memcpy(out, &low, sizeof low);
    std::memcpy(out + kBytesPerPixel, &high, sizeof high);
  }
  MixColumnsPlain(targets + i, count - i, slots, key, out);
}

#endif

// The forms of the two loops that a strip takes.
struct Mixers {
  void (*wide)(const RowPairs& pairs, const Slots& slots);    // where bytes past a pair may be read
  void (*narrow)(const RowPairs& pairs, const Slots& slots);  // where they may not
  void (*single)(const RowPairs& pairs, const Slots& slots);  // of rows of one pixel
  void (*columns)(const Tap* targets, Long count, const Slots& slots, COLORREF key, std::uint8_t* out);
};

Mixers ChosenMixers() {
#if MARKLET_HAS_AVX2_PATH
  if (TakesAvx2())
    return {MixRowsAvx2<ReadWidePair>, MixRowsAvx2<ReadPair>, MixRowsAvx2<ReadTwice>, MixColumnsAvx2};
#endif
  return {MixRowsPlain<ReadWidePair>, MixRowsPlain<ReadPair>, MixRowsPlain<ReadTwice>, MixColumnsPlain};
}

// The part of BilinearInto that lies in neighbouring destination columns. For each row, first the source
// columns that it needs are mixed between two rows, each once; then neighbours among these are mixed.
class BilinearStrip {
 public:
  BilinearStrip(const PixelView& source, const PixelView& destination, Long begin, COLORREF key)
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
    const auto pairs = [&](Long first, Long end) {
      return RowPairs{source_.Row(tap.first),
                      source_.Row(tap.second),
                      pair_columns_.data(),
                      Index(first),
                      Index(end),
                      tap.ratio,
                      key_};
    };
    const Slots slots{mixed_.data(), keyed_.data()};
    if (source_.width > 1) {
      mixers_.wide(pairs(0, wide_pairs_), slots);
      mixers_.narrow(pairs(wide_pairs_, pairs_), slots);
    } else {
      mixers_.single(pairs(0, pairs_), slots);
    }
    mixers_.columns(targets_.data(), count_, slots, key_,
                    destination_.Row(y) + std::ptrdiff_t{begin_} * kBytesPerPixel);
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

  // A strip begins a pair for each of its columns at most twice.
  static constexpr std::size_t kSlots = std::size_t{4} * kStripColumns;

  PixelView source_, destination_;
  Long begin_, count_;
  COLORREF key_;
  Mixers mixers_ = ChosenMixers();
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
  const PixelView from = View(), to = destination.View();
  const float row_step = StepOf(from.height, to.height);
  for (Long begin = 0; begin < to.width; begin += kStripColumns) {
    BilinearStrip strip(from, to, begin, key);
    for (Long y = 0; y < to.height; ++y) strip.Row(y, row_step);
  }
  return false;
}

}  // namespace marklet
