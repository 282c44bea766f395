#include "bitmaps/alpha_rows_avx2.h"

#include <cstring>

#include "bitmaps/alpha_rows.h"
#include "bitmaps/pixels_avx2.h"

#if MARKLET_HAS_AVX2_PATH

namespace marklet {
namespace {

// x / 255 in 16 bits: (x + 128) * 257 >> 16 rounds to nearest and (x + 1) * 257 >> 16 truncates, exact for
// all products of two bytes.
MARKLET_AVX2 MARKLET_INLINE __m256i By257(__m256i x) { return _mm256_mulhi_epu16(x, _mm256_set1_epi16(257)); }

// Half of a blend: d * (255 - a) + s * a, rounded. The multiplication takes signed pixels, so both have 128
// taken off, which is 128 * 255 off the sum.
MARKLET_AVX2 MARKLET_INLINE __m256i BlendHalf(__m256i signed_pixels, __m256i weights) {
  const __m256i sum = _mm256_maddubs_epi16(weights, signed_pixels);
  return By257(_mm256_add_epi16(sum, _mm256_set1_epi16(static_cast<short>(128 * 255 + 128))));
}

MARKLET_AVX2 MARKLET_INLINE __m256i Blend(__m256i s, __m256i d, __m256i weights) {
  const __m256i rest = _mm256_xor_si256(weights, _mm256_set1_epi8(-1));
  const __m256i sign = _mm256_set1_epi8(-128);
  const __m256i signed_s = _mm256_xor_si256(s, sign), signed_d = _mm256_xor_si256(d, sign);
  return _mm256_packus_epi16(
      BlendHalf(_mm256_unpacklo_epi8(signed_d, signed_s), _mm256_unpacklo_epi8(rest, weights)),
      BlendHalf(_mm256_unpackhi_epi8(signed_d, signed_s), _mm256_unpackhi_epi8(rest, weights)));
}

// Alphas times the share, in the colours' places.
MARKLET_AVX2 MARKLET_INLINE __m256i FadedWeights(__m256i s, __m256d share) {
  const __m256i alphas = _mm256_srli_epi32(s, 24);
  const __m256d low = _mm256_cvtepi32_pd(_mm256_castsi256_si128(alphas));
  const __m256d high = _mm256_cvtepi32_pd(_mm256_extracti128_si256(alphas, 1));
  const __m128i faded_low = _mm256_cvtpd_epi32(_mm256_mul_pd(low, share));
  const __m128i faded_high = _mm256_cvtpd_epi32(_mm256_mul_pd(high, share));
  return SpreadToColours<0>(_mm256_inserti128_si256(_mm256_castsi128_si256(faded_low), faded_high, 1));
}

struct Pixels32 {
  static constexpr std::ptrdiff_t kBytes = 4;
  MARKLET_AVX2 MARKLET_INLINE static __m256i Load(const std::uint8_t* bytes) { return LoadWide(bytes); }
  MARKLET_AVX2 MARKLET_INLINE static void Store(std::uint8_t* bytes, __m256i pixels) {
    StoreWide(bytes, pixels);
  }
  // Alpha stays as it was.
  MARKLET_AVX2 MARKLET_INLINE static void Overwrite(std::uint8_t* bytes, __m256i pixels) {
    StoreWide(bytes, _mm256_blendv_epi8(pixels, LoadWide(bytes), AlphaMask()));
  }
};

struct Pixels24 {
  static constexpr std::ptrdiff_t kBytes = 3;
  MARKLET_AVX2 MARKLET_INLINE static __m256i Load(const std::uint8_t* bytes) { return LoadWide24(bytes); }
  MARKLET_AVX2 MARKLET_INLINE static void Store(std::uint8_t* bytes, __m256i pixels) {
    StoreWide24(bytes, pixels);
  }
  MARKLET_AVX2 MARKLET_INLINE static void Overwrite(std::uint8_t* bytes, __m256i pixels) {
    StoreWide24(bytes, pixels);
  }
};

// The weight of the destination's alpha is 0, so that it stays.
template <typename Target, bool kFaded>
MARKLET_AVX2 MARKLET_INLINE void BlendEight(__m256i s, std::uint8_t* destination, __m256d share) {
  const __m256i weights = kFaded ? FadedWeights(s, share) : SpreadToColours<3>(s);
  Target::Store(destination, Blend(s, Target::Load(destination), weights));
}

// Clear and opaque pixels come in runs. A row of a small icon is one that is soft at both ends.
constexpr int kRun = 4;  // registers
template <typename Target, bool kFaded>
MARKLET_AVX2 MARKLET_INLINE void BlendRun(const std::uint8_t* source, std::uint8_t* destination,
                                          __m256d share) {
  constexpr std::ptrdiff_t kFrom = kWidePixels * kBytesPerAlphaPixel, kTo = kWidePixels * Target::kBytes;
  const __m256i s[kRun] = {LoadWide(source), LoadWide(source + kFrom), LoadWide(source + 2 * kFrom),
                           LoadWide(source + 3 * kFrom)};
  const __m256i any = _mm256_or_si256(_mm256_or_si256(s[0], s[1]), _mm256_or_si256(s[2], s[3]));
  if (_mm256_testz_si256(any, AlphaMask()) != 0) return;
  const __m256i all = _mm256_and_si256(_mm256_and_si256(s[0], s[1]), _mm256_and_si256(s[2], s[3]));
  if (!kFaded && _mm256_testc_si256(all, AlphaMask()) != 0) {
    for (int i = 0; i < kRun; ++i) Target::Overwrite(destination + i * kTo, s[i]);
  } else if (!kFaded && _mm256_testc_si256(_mm256_and_si256(s[1], s[2]), AlphaMask()) != 0) {
    BlendEight<Target, kFaded>(s[0], destination, share);
    Target::Overwrite(destination + kTo, s[1]);
    Target::Overwrite(destination + 2 * kTo, s[2]);
    BlendEight<Target, kFaded>(s[3], destination + 3 * kTo, share);
  } else {
    for (int i = 0; i < kRun; ++i) BlendEight<Target, kFaded>(s[i], destination + i * kTo, share);
  }
}

template <typename Target, bool kFaded>
MARKLET_AVX2 MARKLET_INLINE void BlendRow(const std::uint8_t* source, std::uint8_t* destination,
                                          std::ptrdiff_t count, __m256d share) {
  const auto step = [&](std::ptrdiff_t pixels) {
    source += pixels * kBytesPerAlphaPixel;
    destination += pixels * Target::kBytes;
    count -= pixels;
  };
  for (; count >= kRun * kWidePixels; step(kRun * kWidePixels)) {
    BlendRun<Target, kFaded>(source, destination, share);
  }
  for (; count >= kWidePixels; step(kWidePixels)) {
    BlendEight<Target, kFaded>(LoadWide(source), destination, share);
  }
  if (count == 0) return;
  // The last pixels are made up to eight.
  std::uint8_t from[kWidePixels * kBytesPerAlphaPixel] = {}, to[kWidePixels * Target::kBytes] = {};
  const auto to_bytes = static_cast<std::size_t>(count * Target::kBytes);
  std::memcpy(from, source, static_cast<std::size_t>(count * kBytesPerAlphaPixel));
  std::memcpy(to, destination, to_bytes);
  BlendEight<Target, kFaded>(LoadWide(from), to, share);
  std::memcpy(destination, to, to_bytes);
}

template <typename Target, bool kFaded>
MARKLET_AVX2 void BlendEachRow(const AlphaRows& rows) {
  const __m256d share = _mm256_set1_pd(double{rows.share});
  const std::uint8_t* source = rows.source;
  std::uint8_t* destination = rows.destination;
  for (std::ptrdiff_t y = 0; y < rows.height; ++y) {
    BlendRow<Target, kFaded>(source, destination, rows.width, share);
    source += rows.source_stride;
    destination += rows.destination_stride;
  }
}

MARKLET_AVX2 MARKLET_INLINE __m256i PremultipliedHalf(__m256i colours, __m256i weights) {
  return By257(_mm256_add_epi16(_mm256_mullo_epi16(colours, weights), _mm256_set1_epi16(1)));
}

// Calls `change` for eight pixels at a time; those at the end are made up to eight.
template <typename Change>
MARKLET_AVX2 MARKLET_INLINE void ForEachWide(std::uint8_t* pixels, std::ptrdiff_t count,
                                             const Change& change) {
  for (; count >= kWidePixels; count -= kWidePixels, pixels += kWidePixels * kBytesPerAlphaPixel)
    change(pixels);
  if (count == 0) return;
  std::uint8_t last[kWidePixels * kBytesPerAlphaPixel] = {};
  const auto bytes = static_cast<std::size_t>(count * kBytesPerAlphaPixel);
  std::memcpy(last, pixels, bytes);
  change(last);
  std::memcpy(pixels, last, bytes);
}

struct PremultiplyWide {
  MARKLET_AVX2 MARKLET_INLINE void operator()(std::uint8_t* pixels) const {
    const __m256i s = LoadWide(pixels);
    if (_mm256_testc_si256(s, AlphaMask()) != 0) return;
    if (_mm256_testz_si256(s, AlphaMask()) != 0) return StoreWide(pixels, _mm256_setzero_si256());
    // 255 in the place of alpha, which so stays.
    const __m256i weights = _mm256_or_si256(SpreadToColours<3>(s), AlphaMask());
    const __m256i zero = _mm256_setzero_si256();
    StoreWide(pixels,
              _mm256_packus_epi16(
                  PremultipliedHalf(_mm256_unpacklo_epi8(s, zero), _mm256_unpacklo_epi8(weights, zero)),
                  PremultipliedHalf(_mm256_unpackhi_epi8(s, zero), _mm256_unpackhi_epi8(weights, zero))));
  }
};

struct GreyWide {
  bool spare_key;

  MARKLET_AVX2 MARKLET_INLINE void operator()(std::uint8_t* pixels) const {
    const __m256i s = LoadWide(pixels);
    const __m256i pairs = _mm256_maddubs_epi16(s, _mm256_set1_epi32(0x00010101));
    const __m256i sums = _mm256_madd_epi16(pairs, _mm256_set1_epi16(1));
    // n / 3 to nearest, for all sums of three bytes: n * 10923 / 32768, rounded.
    const __m256i means = _mm256_mulhrs_epi16(sums, _mm256_set1_epi32(10923));
    const __m256i grey = _mm256_or_si256(SpreadToColours<0>(means), _mm256_and_si256(s, AlphaMask()));
    StoreWide(pixels, spare_key ? _mm256_blendv_epi8(grey, s, IsKey(s)) : grey);
  }

  MARKLET_AVX2 MARKLET_INLINE static __m256i IsKey(__m256i s) {
    constexpr int kKey =
        static_cast<int>(BlueOf(KeyColour) | GreenOf(KeyColour) << 8 | RedOf(KeyColour) << 16);
    return _mm256_cmpeq_epi32(_mm256_andnot_si256(AlphaMask(), s), _mm256_set1_epi32(kKey));
  }
};

// Where an icon is clear it is black too, and stays so.
MARKLET_AVX2 MARKLET_INLINE void GreyEach(std::uint8_t* pixels, std::ptrdiff_t count, const GreyWide& grey) {
  constexpr std::ptrdiff_t kBytes = kWidePixels * kBytesPerAlphaPixel;
  for (; count >= kRun * kWidePixels; count -= kRun * kWidePixels, pixels += kRun * kBytes) {
    const __m256i any =
        _mm256_or_si256(_mm256_or_si256(LoadWide(pixels), LoadWide(pixels + kBytes)),
                        _mm256_or_si256(LoadWide(pixels + 2 * kBytes), LoadWide(pixels + 3 * kBytes)));
    if (_mm256_testz_si256(any, any) != 0) continue;
    for (int i = 0; i < kRun; ++i) grey(pixels + i * kBytes);
  }
  ForEachWide(pixels, count, grey);
}

}  // namespace

void BlendRowsAvx2(const AlphaRows& rows, int destination_bits) {
  const bool whole = rows.share == 1.0f;
  if (destination_bits == 24) {
    (whole ? BlendEachRow<Pixels24, false> : BlendEachRow<Pixels24, true>)(rows);
  } else {
    (whole ? BlendEachRow<Pixels32, false> : BlendEachRow<Pixels32, true>)(rows);
  }
}
MARKLET_AVX2 void PremultiplyPixelsAvx2(std::uint8_t* pixels, std::ptrdiff_t count) {
  ForEachWide(pixels, count, PremultiplyWide{});
}
MARKLET_AVX2 void GreyPixelsAvx2(std::uint8_t* pixels, std::ptrdiff_t count, bool spare_key) {
  if (spare_key) {
    GreyEach(pixels, count, GreyWide{true});
  } else {
    GreyEach(pixels, count, GreyWide{false});
  }
}

}  // namespace marklet

#endif
