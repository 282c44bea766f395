#include "bitmaps/keyed_row.h"

#include "bitmaps/pixels_avx2.h"

#include <array>
#include <cstddef>
#if defined(__SSE2__)
#include <immintrin.h>
#endif

namespace marklet {
namespace {

template <int FromBytes, int ToBytes>
void CopyPixel(const std::uint8_t* in, std::uint8_t* out, const KeyBytes& key) {
  const std::uint8_t blue = in[0], green = in[1], red = in[2];
  if (blue == key.blue && green == key.green && red == key.red) return;
  if constexpr (ToBytes == 4) out[3] = FromBytes == 4 ? in[3] : 0;
  out[0] = blue, out[1] = green, out[2] = red;
}

// Copies what it can of a row faster than pixel by pixel and returns how many pixels that was.
template <int FromBytes, int ToBytes>
std::int64_t CopyBlocks(const std::uint8_t*, std::uint8_t*, std::int64_t, const KeyBytes&) {
  return 0;
}

#if defined(__SSE2__)

__m128i Load(const std::uint8_t* bytes) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes)); }
void Store(std::uint8_t* bytes, __m128i value) { _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes), value); }

// The bytes that stand `kBytes` later, or earlier, among those of neighbouring parts.
template <int kBytes>
__m128i Later(__m128i part, __m128i next) {
  return _mm_or_si128(_mm_srli_si128(part, kBytes), _mm_slli_si128(next, 16 - kBytes));
}
template <int kBytes>
__m128i Earlier(__m128i before, __m128i part) {
  return _mm_or_si128(_mm_slli_si128(part, kBytes), _mm_srli_si128(before, 16 - kBytes));
}

// Sixteen pixels of three bytes, or a mask for them.
struct Block24 {
  __m128i a, b, c;

  static Block24 At(const std::uint8_t* bytes) { return {Load(bytes), Load(bytes + 16), Load(bytes + 32)}; }
  void StoreTo(std::uint8_t* bytes) const { Store(bytes, a), Store(bytes + 16, b), Store(bytes + 32, c); }
};

Block24 operator&(const Block24& x, const Block24& y) {
  return {_mm_and_si128(x.a, y.a), _mm_and_si128(x.b, y.b), _mm_and_si128(x.c, y.c)};
}
Block24 operator|(const Block24& x, const Block24& y) {
  return {_mm_or_si128(x.a, y.a), _mm_or_si128(x.b, y.b), _mm_or_si128(x.c, y.c)};
}
Block24 AndNot(const Block24& mask, const Block24& x) {
  return {_mm_andnot_si128(mask.a, x.a), _mm_andnot_si128(mask.b, x.b), _mm_andnot_si128(mask.c, x.c)};
}
Block24 EqualBytes(const Block24& x, const Block24& y) {
  return {_mm_cmpeq_epi8(x.a, y.a), _mm_cmpeq_epi8(x.b, y.b), _mm_cmpeq_epi8(x.c, y.c)};
}
template <int kBytes>
Block24 Later(const Block24& x) {
  return {Later<kBytes>(x.a, x.b), Later<kBytes>(x.b, x.c), _mm_srli_si128(x.c, kBytes)};
}
template <int kBytes>
Block24 Earlier(const Block24& x) {
  return {_mm_slli_si128(x.a, kBytes), Earlier<kBytes>(x.a, x.b), Earlier<kBytes>(x.b, x.c)};
}
bool IsEmpty(const Block24& mask) {
  return _mm_movemask_epi8(_mm_or_si128(_mm_or_si128(mask.a, mask.b), mask.c)) == 0;
}

// All ones where a pixel starts.
constexpr auto kFirstBytes = [] {
  std::array<std::uint8_t, kBlockBytes> bytes{};
  for (std::size_t i = 0; i < bytes.size(); i += 3) bytes[i] = 0xFF;
  return bytes;
}();

template <>
std::int64_t CopyBlocks<3, 3>(const std::uint8_t* in, std::uint8_t* out, std::int64_t count,
                              const KeyBytes& key) {
  const Block24 keys = Block24::At(key.block), first_bytes = Block24::At(kFirstBytes.data());
  std::int64_t done = 0;
  for (; done + kBlockPixels <= count; done += kBlockPixels, in += kBlockBytes, out += kBlockBytes) {
    const Block24 block = Block24::At(in);
    const Block24 equal = EqualBytes(block, keys);
    const Block24 starts = equal & Later<1>(equal) & Later<2>(equal) & first_bytes;
    if (IsEmpty(starts)) {
      block.StoreTo(out);
    } else {
      const Block24 keyed = starts | Earlier<1>(starts) | Earlier<2>(starts);
      (AndNot(keyed, block) | (keyed & Block24::At(out))).StoreTo(out);
    }
  }
  return done;
}

// Four pixels of four bytes.
template <>
std::int64_t CopyBlocks<4, 4>(const std::uint8_t* in, std::uint8_t* out, std::int64_t count,
                              const KeyBytes& key) {
  const __m128i colour = _mm_set1_epi32(0xFFFFFF);
  const __m128i keys = _mm_set1_epi32(key.blue | key.green << 8 | key.red << 16);
  std::int64_t done = 0;
  for (; done + 4 <= count; done += 4) {
    const __m128i pixels = Load(in + 4 * done);
    const __m128i keyed = _mm_cmpeq_epi32(_mm_and_si128(pixels, colour), keys);
    const __m128i kept = _mm_and_si128(keyed, Load(out + 4 * done));
    Store(out + 4 * done, _mm_or_si128(kept, _mm_andnot_si128(keyed, pixels)));
  }
  return done;
}

#endif

#if MARKLET_HAS_AVX2_PATH

template <int Bytes>
MARKLET_AVX2 MARKLET_INLINE __m256i LoadPixels(const std::uint8_t* bytes) {
  if constexpr (Bytes == 4) return LoadWide(bytes);
  return LoadWide24(bytes);
}
template <int Bytes>
MARKLET_AVX2 MARKLET_INLINE void StorePixels(std::uint8_t* bytes, __m256i pixels) {
  if constexpr (Bytes == 4) {
    StoreWide(bytes, pixels);
  } else {
    StoreWide24(bytes, pixels);
  }
}

template <int FromBytes, int ToBytes>
MARKLET_AVX2 MARKLET_INLINE void CopyEight(std::uint8_t* out, __m256i pixels, __m256i keyed) {
  StorePixels<ToBytes>(out, _mm256_blendv_epi8(pixels, LoadPixels<ToBytes>(out), keyed));
}

// Pixels with the key and pixels without come in runs.
constexpr int kRun = 4;  // registers
template <int FromBytes, int ToBytes>
MARKLET_AVX2 MARKLET_INLINE void CopyRun(const std::uint8_t* in, std::uint8_t* out, __m256i keys) {
  __m256i pixels[kRun], keyed[kRun];
  for (int i = 0; i < kRun; ++i) {
    pixels[i] = LoadPixels<FromBytes>(in + i * kWidePixels * FromBytes);
    keyed[i] = _mm256_cmpeq_epi32(_mm256_andnot_si256(AlphaMask(), pixels[i]), keys);
  }
  const __m256i any =
      _mm256_or_si256(_mm256_or_si256(keyed[0], keyed[1]), _mm256_or_si256(keyed[2], keyed[3]));
  const __m256i all =
      _mm256_and_si256(_mm256_and_si256(keyed[0], keyed[1]), _mm256_and_si256(keyed[2], keyed[3]));
  if (_mm256_testz_si256(any, any) != 0) {
    for (int i = 0; i < kRun; ++i) StorePixels<ToBytes>(out + i * kWidePixels * ToBytes, pixels[i]);
  } else if (_mm256_testc_si256(all, _mm256_set1_epi32(-1)) == 0) {
    for (int i = 0; i < kRun; ++i) {
      CopyEight<FromBytes, ToBytes>(out + i * kWidePixels * ToBytes, pixels[i], keyed[i]);
    }
  }
}

template <int FromBytes, int ToBytes>
MARKLET_AVX2 std::int64_t CopyWide(const std::uint8_t* in, std::uint8_t* out, std::int64_t count,
                                   const KeyBytes& key) {
  const __m256i keys = _mm256_set1_epi32(key.blue | key.green << 8 | key.red << 16);
  std::int64_t done = 0;
  for (; done + kRun * kWidePixels <= count; done += kRun * kWidePixels) {
    CopyRun<FromBytes, ToBytes>(in + done * FromBytes, out + done * ToBytes, keys);
  }
  for (; done + kWidePixels <= count; done += kWidePixels) {
    const __m256i pixels = LoadPixels<FromBytes>(in + done * FromBytes);
    CopyEight<FromBytes, ToBytes>(out + done * ToBytes, pixels,
                                  _mm256_cmpeq_epi32(_mm256_andnot_si256(AlphaMask(), pixels), keys));
  }
  return done;
}

#endif

using RowCopier = std::int64_t (*)(const std::uint8_t* in, std::uint8_t* out, std::int64_t count,
                                   const KeyBytes& key);

// `kCopyMost` copies as much of the row as it can.
template <int FromBytes, int ToBytes, RowCopier kCopyMost>
void CopyRow(const std::uint8_t* in, std::uint8_t* out, std::int64_t count, bool backwards,
             const KeyBytes& key) {
  if (backwards) {
    for (std::int64_t i = count - 1; i >= 0; --i) {
      CopyPixel<FromBytes, ToBytes>(in + i * FromBytes, out + i * ToBytes, key);
    }
  } else {
    for (std::int64_t i = kCopyMost(in, out, count, key); i < count; ++i) {
      CopyPixel<FromBytes, ToBytes>(in + i * FromBytes, out + i * ToBytes, key);
    }
  }
}

template <int FromBytes, int ToBytes>
KeyedRowCopier Copier() {
#if MARKLET_HAS_AVX2_PATH
  if (TakesAvx2()) return CopyRow<FromBytes, ToBytes, CopyWide<FromBytes, ToBytes>>;
#endif
  return CopyRow<FromBytes, ToBytes, CopyBlocks<FromBytes, ToBytes>>;
}

}  // namespace

KeyedRowCopier KeyedRowCopierFor(int from_bits, int to_bits) {
  if (from_bits == 24) return to_bits == 24 ? Copier<3, 3>() : Copier<3, 4>();
  return to_bits == 24 ? Copier<4, 3>() : Copier<4, 4>();
}

}  // namespace marklet
