// Mixes of colours as BilinearInto defines them: each channel (1 - t) * from + t * to, rounded to the nearest
// integer, ties to even. Two pixels that lie side by side are mixed at once where the processor has SSE2.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "platform/types.h"
#if defined(__SSE2__)
#include <immintrin.h>
#endif

namespace marklet {

// Two neighbouring pixels as they stand in memory: blue, green, red of the left one in the low bytes.
using PixelPair = std::uint64_t;

inline PixelPair ReadPair(const std::uint8_t* left) {
  std::uint32_t low;
  std::uint16_t high;
  std::memcpy(&low, left, sizeof low);
  std::memcpy(&high, left + sizeof low, sizeof high);
  return low | PixelPair{high} << 32;
}

// The same where two bytes more may be read. What they hold is of no account.
constexpr Long kWidePairBytes = 8;
inline PixelPair ReadWidePair(const std::uint8_t* left) {
  PixelPair pair;
  std::memcpy(&pair, left, sizeof pair);
  return pair;
}

// For a row of one pixel, which counts as its own neighbour.
inline PixelPair ReadTwice(const std::uint8_t* pixel) {
  const PixelPair single = pixel[0] | PixelPair{pixel[1]} << 8 | PixelPair{pixel[2]} << 16;
  return single | single << 24;
}

// The definition is exact in a double, and so is this form of it with a single rounding at the end: where a
// position is 2^-21 or more, `t` is a multiple of 2^-44, and a smaller one can't come near a half. Adding and
// taking away 1.5 * 2^52 rounds, since a double of that size has no fraction bits.
inline float MixedChannel(double t, double from, double to) {
  constexpr double kRounder = 0x1.8p52;
  return static_cast<float>(from + t * (to - from) + kRounder - kRounder);
}

#if defined(__SSE2__)

// How far of the way from one colour to another.
class MixRatio {
 public:
  MixRatio() = default;
  explicit MixRatio(float t) : t_(_mm_set1_ps(t)), sure_(_mm_set1_ps(IsShort(t) ? 1.0f : kSure * kSure)) {}

  // In 32-bit floats, unrounded.
  __m128 MixRoughly(__m128 from, __m128 to) const {
    return _mm_add_ps(from, _mm_mul_ps(t_, _mm_sub_ps(to, from)));
  }
  // Which of four rough mixes could round otherwise than the exact one, by the square of their distance from
  // the nearest integer.
  int Unsure(__m128 distance_squared) const { return _mm_movemask_ps(_mm_cmpgt_ps(distance_squared, sure_)); }
  __m128 T() const { return t_; }
  __m128 Sure() const { return sure_; }
  // Rounded.
  __m128 MixExactly(__m128 from, __m128 to) const {
    alignas(16) float a[4], b[4];
    _mm_store_ps(a, from);
    _mm_store_ps(b, to);
    const double t = _mm_cvtss_f32(t_);
    return _mm_setr_ps(MixedChannel(t, a[0], b[0]), MixedChannel(t, a[1], b[1]), MixedChannel(t, a[2], b[2]),
                       MixedChannel(t, a[3], b[3]));
  }

 private:
  // Product and sum are each off by 2^-17 at most. A mix this close to an integer rounds to it all the same.
  static constexpr float kSure = 0.5f - 0x1p-15f;

  // Of at most 15 fraction bits, so that product and sum are exact. Sizes that divide well make many halves.
  static bool IsShort(float t) {
    const float shifted = t * 0x1p15f;
    return shifted == static_cast<float>(static_cast<std::int32_t>(shifted));
  }

  __m128 t_, sure_;
};

struct MixedColour {
  __m128 channels;  // blue, green, red, whole numbers; the fourth is of no account
};

struct MixedPair {
  MixedColour left, right;
  std::int32_t left_keyed, right_keyed;  // not 0 when one of the two pixels, or their mix, is the key
};

class KeyPair {
 public:
  explicit KeyPair(COLORREF key) : lefts_(key <= 0xFFFFFF ? 0x010101 : 0) {
    const auto blue = static_cast<char>(BlueOf(key)), green = static_cast<char>(GreenOf(key)),
               red = static_cast<char>(RedOf(key));
    bytes_ =
        _mm_setr_epi8(blue, green, red, blue, green, red, 0, 0, blue, green, red, blue, green, red, 0, 0);
  }

  // Which of the pairs hold the key: `sources` are two of them, `mixed` is one. Bit 0 of a byte stands for
  // its left pixel, bit 3 for its right one.
  std::int32_t Find(__m128i sources, __m128i mixed) const {
    const int equal = _mm_movemask_epi8(_mm_cmpeq_epi8(sources, bytes_)) |
                      _mm_movemask_epi8(_mm_cmpeq_epi8(mixed, bytes_)) << 16;
    return equal & equal >> 1 & equal >> 2 & (lefts_ | lefts_ << 3);
  }
  static constexpr std::int32_t kLeft = 0x010101, kRight = kLeft << 3;

 private:
  __m128i bytes_;
  std::int32_t lefts_;  // 0 for a key that is no colour, which no pixel has
};

inline __m128 DistanceSquared(__m128 a, __m128 b) {
  const __m128 distance = _mm_sub_ps(a, b);
  return _mm_mul_ps(distance, distance);
}

// Mixes the pixels of two rows.
inline MixedPair Mix(PixelPair from, PixelPair to, const MixRatio& ratio, const KeyPair& key) {
  const __m128i zero = _mm_setzero_si128();
  const __m128i from_bytes = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(&from));
  const __m128i to_bytes = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(&to));
  const __m128i from_words = _mm_unpacklo_epi8(from_bytes, zero);
  const __m128i to_words = _mm_unpacklo_epi8(to_bytes, zero);
  const __m128 from_low = _mm_cvtepi32_ps(_mm_unpacklo_epi16(from_words, zero));
  const __m128 from_high = _mm_cvtepi32_ps(_mm_unpackhi_epi16(from_words, zero));
  const __m128 to_low = _mm_cvtepi32_ps(_mm_unpacklo_epi16(to_words, zero));
  const __m128 to_high = _mm_cvtepi32_ps(_mm_unpackhi_epi16(to_words, zero));

  const __m128 rough_low = ratio.MixRoughly(from_low, to_low);
  const __m128 rough_high = ratio.MixRoughly(from_high, to_high);
  __m128i low = _mm_cvtps_epi32(rough_low), high = _mm_cvtps_epi32(rough_high);
  __m128 mixed_low = _mm_cvtepi32_ps(low), mixed_high = _mm_cvtepi32_ps(high);
  const __m128 distance =
      _mm_max_ps(DistanceSquared(rough_low, mixed_low), DistanceSquared(rough_high, mixed_high));
  if (ratio.Unsure(distance) != 0) [[unlikely]] {
    mixed_low = ratio.MixExactly(from_low, to_low);
    mixed_high = ratio.MixExactly(from_high, to_high);
    low = _mm_cvtps_epi32(mixed_low);
    high = _mm_cvtps_epi32(mixed_high);
  }

  const std::int32_t keyed =
      key.Find(_mm_unpacklo_epi64(from_bytes, to_bytes), _mm_packus_epi16(_mm_packs_epi32(low, high), zero));
  // The right pixel starts in the last place of the low four channels.
  const __m128 right = _mm_shuffle_ps(mixed_low, mixed_high, _MM_SHUFFLE(1, 0, 3, 3));
  return {{mixed_low},
          {_mm_shuffle_ps(right, right, _MM_SHUFFLE(3, 3, 2, 0))},
          keyed & KeyPair::kLeft,
          keyed & KeyPair::kRight};
}

// Mixes two columns, held to 0 to 255, and writes the three bytes.
inline void Mix(const MixedColour& left, const MixedColour& right, const MixRatio& ratio, std::uint8_t* out) {
  constexpr int kChannels = 7;
  const __m128 rough = ratio.MixRoughly(left.channels, right.channels);
  __m128i mixed = _mm_cvtps_epi32(rough);
  if ((ratio.Unsure(DistanceSquared(rough, _mm_cvtepi32_ps(mixed))) & kChannels) != 0) [[unlikely]]
    mixed = _mm_cvtps_epi32(ratio.MixExactly(left.channels, right.channels));
  const __m128i words = _mm_packs_epi32(mixed, mixed);
  const int bytes = _mm_cvtsi128_si32(_mm_packus_epi16(words, words));
  std::memcpy(out, &bytes, 3);
}

#else

struct MixRatio {
  float t = 0;
  MixRatio() = default;
  explicit MixRatio(float ratio) : t(ratio) {}
};

struct MixedColour {
  float blue, green, red;  // whole numbers
};

struct MixedPair {
  MixedColour left, right;
  std::int32_t left_keyed, right_keyed;  // not 0 when one of the two pixels, or their mix, is the key
};

struct KeyPair {
  COLORREF key;
  explicit KeyPair(COLORREF colour) : key(colour) {}
  bool Is(const MixedColour& colour) const {
    return key <= 0xFFFFFF && colour.blue == static_cast<float>(BlueOf(key)) &&
           colour.green == static_cast<float>(GreenOf(key)) && colour.red == static_cast<float>(RedOf(key));
  }
};

inline MixedColour ColourOf(PixelPair pixel) {
  const auto byte = [pixel](int i) { return static_cast<float>(pixel >> 8 * i & 0xFF); };
  return {byte(0), byte(1), byte(2)};
}

inline MixedColour Mix(const MixedColour& from, const MixedColour& to, const MixRatio& ratio) {
  return {MixedChannel(ratio.t, from.blue, to.blue), MixedChannel(ratio.t, from.green, to.green),
          MixedChannel(ratio.t, from.red, to.red)};
}

inline MixedPair Mix(PixelPair from, PixelPair to, const MixRatio& ratio, const KeyPair& key) {
  const MixedColour from_left = ColourOf(from), from_right = ColourOf(from >> 24);
  const MixedColour to_left = ColourOf(to), to_right = ColourOf(to >> 24);
  const MixedColour left = Mix(from_left, to_left, ratio), right = Mix(from_right, to_right, ratio);
  return {left, right, key.Is(from_left) || key.Is(to_left) || key.Is(left),
          key.Is(from_right) || key.Is(to_right) || key.Is(right)};
}

inline void Mix(const MixedColour& left, const MixedColour& right, const MixRatio& ratio, std::uint8_t* out) {
  const MixedColour mixed = Mix(left, right, ratio);
  const auto byte = [](float value) { return static_cast<std::uint8_t>(std::clamp(value, 0.0f, 255.0f)); };
  out[0] = byte(mixed.blue), out[1] = byte(mixed.green), out[2] = byte(mixed.red);
}

#endif

}  // namespace marklet
