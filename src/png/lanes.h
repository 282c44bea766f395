// Sixteen bytes at a time: the compiler's own vectors, which become SSE2 here and plain code where there is
// none.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#if defined(__SSE2__)
#include <immintrin.h>
#endif

namespace marklet::png {

using Bytes16 = std::uint8_t __attribute__((vector_size(16)));  // four pixels, the first one lowest
using Words8 = std::int16_t __attribute__((vector_size(16)));   // the channels of two pixels
using Pixels4 = std::uint32_t __attribute__((vector_size(16)));

inline Bytes16 LoadBytes16(const std::uint8_t* from) {
  Bytes16 bytes;
  std::memcpy(&bytes, from, sizeof bytes);
  return bytes;
}
inline void StoreBytes16(std::uint8_t* to, Bytes16 bytes) { std::memcpy(to, &bytes, sizeof bytes); }

// One pixel alone: the other three are 0.
inline Bytes16 FromPixel(std::uint32_t pixel) { return Bytes16(Pixels4{pixel, 0, 0, 0}); }
inline std::uint32_t FirstPixel(Bytes16 bytes) { return Pixels4(bytes)[0]; }
inline Bytes16 FourTimes(std::uint32_t pixel) { return Bytes16(Pixels4{pixel, pixel, pixel, pixel}); }

inline Bytes16 LastPixelFourTimes(Bytes16 bytes) {
  return Bytes16(__builtin_shufflevector(Pixels4(bytes), Pixels4(bytes), 3, 3, 3, 3));
}
// `kPixels` places up, zeros below.
template <int kPixels>
Bytes16 MovedUp(Bytes16 bytes) {
  return Bytes16(
      __builtin_shufflevector(Pixels4{}, Pixels4(bytes), 4 - kPixels, 5 - kPixels, 6 - kPixels, 7 - kPixels));
}

// (a + b + 1) / 2.
inline Bytes16 AverageUp(Bytes16 a, Bytes16 b) {
#if defined(__SSE2__)
  return Bytes16(_mm_avg_epu8(__m128i(a), __m128i(b)));
#else
  return (a | b) - ((a ^ b) >> 1);
#endif
}

// A bit for each byte of this value, the first one lowest.
inline std::uint32_t EqualBytes(Bytes16 bytes, std::uint8_t value) {
#if defined(__SSE2__)
  return static_cast<std::uint32_t>(_mm_movemask_epi8(__m128i(bytes == value)));
#else
  std::uint32_t mask = 0;
  for (int i = 0; i < 16; ++i) mask |= std::uint32_t{bytes[i] == value} << i;
  return mask;
#endif
}

// Ones in this many bytes from the lowest on, at least one, and zeros above.
inline Bytes16 FirstBytes(std::size_t count) {
  static constexpr std::uint8_t kOnesThenZeros[32] = {255, 255, 255, 255, 255, 255, 255, 255,
                                                      255, 255, 255, 255, 255, 255, 255, 255};
  return LoadBytes16(kOnesThenZeros + 16 - std::min<std::size_t>(count, 16));
}

inline Bytes16 Greater(Bytes16 a, Bytes16 b) {
#if defined(__SSE2__)
  return Bytes16(_mm_max_epu8(__m128i(a), __m128i(b)));
#else
  return a > b ? a : b;
#endif
}
inline std::uint8_t GreatestByte(Bytes16 bytes) {
  std::uint8_t greatest = 0;
  for (int i = 0; i < 16; ++i) greatest = std::max(greatest, bytes[i]);
  return greatest;
}
inline std::uint16_t SumOfBytes(Bytes16 bytes) {
#if defined(__SSE2__)
  const __m128i sums = _mm_sad_epu8(__m128i(bytes), _mm_setzero_si128());
  return static_cast<std::uint16_t>(_mm_cvtsi128_si32(sums) + _mm_extract_epi16(sums, 4));
#else
  unsigned sum = 0;
  for (int i = 0; i < 16; ++i) sum += bytes[i];
  return static_cast<std::uint16_t>(sum);
#endif
}

// The first two pixels with each byte in a word of its own, and back.
inline Words8 Widened(Bytes16 bytes) {
  return Words8(
      __builtin_shufflevector(bytes, Bytes16{}, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23));
}
inline Bytes16 Narrowed(Words8 words) {
#if defined(__SSE2__)
  return Bytes16(_mm_packus_epi16(__m128i(words), __m128i(words)));
#else
  return __builtin_shufflevector(Bytes16(words), Bytes16(words), 0, 2, 4, 6, 8, 10, 12, 14, 0, 2, 4, 6, 8, 10,
                                 12, 14);
#endif
}

// The first pixel of each.
inline Words8 Together(Words8 first, Words8 second) {
  return __builtin_shufflevector(first, second, 0, 1, 2, 3, 8, 9, 10, 11);
}
inline Bytes16 Together(Bytes16 first, Bytes16 second) {
  return Bytes16(__builtin_shufflevector(Pixels4(first), Pixels4(second), 0, 4, 2, 6));
}

inline Words8 Lesser(Words8 a, Words8 b) { return a < b ? a : b; }
inline Words8 Greater(Words8 a, Words8 b) { return a > b ? a : b; }

}  // namespace marklet::png
