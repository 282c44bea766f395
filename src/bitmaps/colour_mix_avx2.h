// The mixes of colour_mix.h with two pixels in one register of AVX2.
#pragma once

#include "base/processor.h"
#include "bitmaps/colour_mix.h"

#if MARKLET_HAS_AVX2_PATH

namespace marklet {

// Blue, green and red of the left pixel in the low half, of the right one in the high half, the rest of no
// account.
MARKLET_AVX2 MARKLET_INLINE __m256 Doubled(__m128 half) { return _mm256_set_m128(half, half); }

// The left pixel and the right one, in the low two of four 32-bit lanes; the fourth byte of each is 0.
MARKLET_AVX2 MARKLET_INLINE __m128i Spread(const PixelPair& pair) {
  const __m128i bytes = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(&pair));
  return _mm_shuffle_epi8(bytes, _mm_setr_epi8(0, 1, 2, -1, 3, 4, 5, -1, -1, -1, -1, -1, -1, -1, -1, -1));
}
MARKLET_AVX2 MARKLET_INLINE __m256 ChannelsOf(__m128i spread) {
  return _mm256_cvtepi32_ps(_mm256_cvtepu8_epi32(spread));
}
MARKLET_AVX2 MARKLET_INLINE __m128i PixelsOf(__m256i channels) {
  const __m128i words =
      _mm_packs_epi32(_mm256_castsi256_si128(channels), _mm256_extracti128_si256(channels, 1));
  return _mm_packus_epi16(words, words);
}

// One ratio for each half.
struct WideRatio {
  __m256 t, sure;

  // Rounded; which of the channels count is told by a bit each.
  MARKLET_AVX2 MARKLET_INLINE __m256i Mix(__m256 from, __m256 to, const MixRatio& low,
                                          const MixRatio& high) const {
    constexpr int kChannels = 0x77;
    const __m256 rough = _mm256_add_ps(from, _mm256_mul_ps(t, _mm256_sub_ps(to, from)));
    const __m256i mixed = _mm256_cvtps_epi32(rough);
    const __m256 off = _mm256_sub_ps(rough, _mm256_cvtepi32_ps(mixed));
    const __m256 unsure = _mm256_cmp_ps(_mm256_mul_ps(off, off), sure, _CMP_GT_OQ);
    if ((_mm256_movemask_ps(unsure) & kChannels) == 0) [[likely]]
      return mixed;
    return _mm256_cvtps_epi32(
        _mm256_set_m128(high.MixExactly(_mm256_extractf128_ps(from, 1), _mm256_extractf128_ps(to, 1)),
                        low.MixExactly(_mm256_castps256_ps128(from), _mm256_castps256_ps128(to))));
  }
};

}  // namespace marklet

#endif
