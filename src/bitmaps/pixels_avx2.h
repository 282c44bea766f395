// Eight pixels in a register of AVX2, each in a 32-bit lane: blue, green, red, and alpha or nothing.
#pragma once

#include <cstddef>
#include <cstdint>

#include "base/processor.h"
#if MARKLET_HAS_AVX2_PATH
#include <immintrin.h>
#endif

namespace marklet {

constexpr std::ptrdiff_t kWidePixels = 8;

#if MARKLET_HAS_AVX2_PATH

MARKLET_AVX2 MARKLET_INLINE __m256i LoadWide(const std::uint8_t* bytes) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes));
}
MARKLET_AVX2 MARKLET_INLINE void StoreWide(std::uint8_t* bytes, __m256i value) {
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(bytes), value);
}

// The same for pixels of 24 bits, with 0 for alpha.
MARKLET_AVX2 MARKLET_INLINE __m256i LoadWide24(const std::uint8_t* bytes) {
  const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
  const __m128i high = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(bytes + 16));
  const __m256i packed = _mm256_inserti128_si256(_mm256_castsi128_si256(low), high, 1);
  const __m256i halves = _mm256_permutevar8x32_epi32(packed, _mm256_setr_epi32(0, 1, 2, 2, 3, 4, 5, 5));
  return _mm256_shuffle_epi8(halves,
                             _mm256_setr_epi8(0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1,  //
                                              0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1));
}
MARKLET_AVX2 MARKLET_INLINE void StoreWide24(std::uint8_t* bytes, __m256i pixels) {
  const __m256i halves =
      _mm256_shuffle_epi8(pixels, _mm256_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1,  //
                                                   0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1));
  const __m256i packed = _mm256_permutevar8x32_epi32(halves, _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 7, 7));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes), _mm256_castsi256_si128(packed));
  _mm_storel_epi64(reinterpret_cast<__m128i*>(bytes + 16), _mm256_extracti128_si256(packed, 1));
}

MARKLET_AVX2 MARKLET_INLINE __m256i AlphaMask() { return _mm256_set1_epi32(static_cast<int>(0xFF000000)); }

// 0 in the fourth byte of each lane; `kFrom` of the same lane in the others.
template <int kFrom>
MARKLET_AVX2 MARKLET_INLINE __m256i SpreadToColours(__m256i pixels) {
  constexpr char a = kFrom, b = 4 + kFrom, c = 8 + kFrom, d = 12 + kFrom;
  return _mm256_shuffle_epi8(pixels, _mm256_setr_epi8(a, a, a, -1, b, b, b, -1, c, c, c, -1, d, d, d, -1,  //
                                                      a, a, a, -1, b, b, b, -1, c, c, c, -1, d, d, d, -1));
}

#endif

}  // namespace marklet
