#include <algorithm>
#include <cstring>
#include <vector>

#include "bitmaps/alpha_resample.h"
#include "bitmaps/nearest_axis.h"
#include "bitmaps/pixel_loops.h"
#include "bitmaps/pixels_avx2.h"

namespace marklet {
namespace {

std::size_t Index(std::ptrdiff_t i) { return static_cast<std::size_t>(i); }

#if MARKLET_HAS_AVX2_PATH

// Four positions at a time. Returns how many they are.
MARKLET_AVX2 std::size_t FillPositionsAvx2(const NearestAxis& axis, std::vector<Long>& positions) {
  const __m256d ratio = _mm256_set1_pd(axis.Ratio());
  const __m128i last = _mm_set1_epi32(axis.Last());
  __m128i next = _mm_setr_epi32(0, 1, 2, 3);
  std::size_t done = 0;
  for (; done + 4 <= positions.size(); done += 4) {
    const __m128i rounded = _mm256_cvtpd_epi32(_mm256_mul_pd(_mm256_cvtepi32_pd(next), ratio));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(positions.data() + done), _mm_min_epi32(rounded, last));
    next = _mm_add_epi32(next, _mm_set1_epi32(4));
  }
  return done;
}

// Some neighbouring pixels of the new surface that all come from the same eight of the source.
struct Window {
  Long places[kWidePixels];  // within the eight
  Long first;
};

// How many pixels of the new surface a window of the source holds: 8 or 4, or 0 where it holds too few.
std::ptrdiff_t PixelsAWindow(Long source_width, const std::vector<Long>& columns) {
  if (source_width < kWidePixels) return 0;
  for (const std::ptrdiff_t count : {8, 4}) {
    bool fits = true;
    for (std::size_t i = 0; i + Index(count) <= columns.size(); i += Index(count)) {
      fits = fits && columns[i + Index(count) - 1] - columns[i] < kWidePixels;
    }
    if (fits) return count;
  }
  return 0;
}

std::vector<Window> WindowsOf(Long source_width, const std::vector<Long>& columns, std::ptrdiff_t count) {
  std::vector<Window> windows(columns.size() / Index(count));
  const Long* column = columns.data();
  for (Window& window : windows) {
    window.first = std::min(*column, source_width - static_cast<Long>(kWidePixels));
    for (std::ptrdiff_t i = 0; i < count; ++i) window.places[i] = *column++ - window.first;
  }
  return windows;
}

// Where the surface grows, rows come twice: `twin` takes the same pixels, unless it is `out` itself.
MARKLET_AVX2 void PickByWindowsOf8(const std::uint8_t* in, const std::vector<Window>& windows,
                                   std::uint8_t* out, std::uint8_t* twin) {
  for (const Window& window : windows) {
    const __m256i pixels = LoadWide(in + std::ptrdiff_t{window.first} * kBytesPerAlphaPixel);
    const __m256i places = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(window.places));
    const __m256i picked = _mm256_permutevar8x32_epi32(pixels, places);
    StoreWide(out, picked);
    StoreWide(twin, picked);
    out += kWidePixels * kBytesPerAlphaPixel;
    twin += kWidePixels * kBytesPerAlphaPixel;
  }
}

MARKLET_AVX2 void PickByWindowsOf4(const std::uint8_t* in, const std::vector<Window>& windows,
                                   std::uint8_t* out) {
  for (const Window& window : windows) {
    const __m256i pixels = LoadWide(in + std::ptrdiff_t{window.first} * kBytesPerAlphaPixel);
    const __m128i places = _mm_loadu_si128(reinterpret_cast<const __m128i*>(window.places));
    const __m256i picked = _mm256_permutevar8x32_epi32(pixels, _mm256_castsi128_si256(places));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm256_castsi256_si128(picked));
    out += std::ptrdiff_t{4} * kBytesPerAlphaPixel;
  }
}

MARKLET_AVX2 MARKLET_INLINE __m128i PixelAt(const std::uint8_t* in, Long column) {
  int pixel;
  std::memcpy(&pixel, in + std::ptrdiff_t{column} * kBytesPerAlphaPixel, sizeof pixel);
  return _mm_cvtsi32_si128(pixel);
}

// For columns that lie far apart.
MARKLET_AVX2 std::size_t PickBySingles(const std::uint8_t* in, const std::vector<Long>& columns,
                                       std::uint8_t* out) {
  const std::size_t most = columns.size() / 4 * 4;
  const Long* const column = columns.data();
  for (std::size_t i = 0; i < most; i += 4) {
    const __m128i low = _mm_unpacklo_epi32(PixelAt(in, column[i]), PixelAt(in, column[i + 1]));
    const __m128i high = _mm_unpacklo_epi32(PixelAt(in, column[i + 2]), PixelAt(in, column[i + 3]));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i * Index(kBytesPerAlphaPixel)),
                     _mm_unpacklo_epi64(low, high));
  }
  return most;
}

#endif

std::vector<Long> PositionsOf(Long source_size, Long destination_size) {
  const NearestAxis axis(source_size, destination_size);
  std::vector<Long> positions(Index(destination_size));
  std::size_t done = 0;
#if MARKLET_HAS_AVX2_PATH
  if (TakesAvx2()) done = FillPositionsAvx2(axis, positions);
#endif
  for (; done < positions.size(); ++done) positions[done] = axis.At(static_cast<Long>(done));
  return positions;
}

// Picks a row's pixels by their columns.
class ColumnPicker {
 public:
  ColumnPicker(Long source_width, Long width) : columns_(PositionsOf(source_width, width)) {
#if MARKLET_HAS_AVX2_PATH
    if (!TakesAvx2()) return;
    pixels_a_window_ = PixelsAWindow(source_width, columns_);
    if (pixels_a_window_ != 0) windows_ = WindowsOf(source_width, columns_, pixels_a_window_);
#endif
  }

  // `twin` is a second row to fill, or `out` again.
  void Pick(const std::uint8_t* in, std::uint8_t* out, std::uint8_t* twin) const {
    const std::size_t first = PickMost(in, out, twin);
    for (std::size_t i = first; i < columns_.size(); ++i) PutPixel(in, out, i);
    if (twin == out) return;
    const std::size_t same = pixels_a_window_ == kWidePixels ? first : 0;  // there already
    std::memcpy(twin + same * kPixelBytes, out + same * kPixelBytes, (columns_.size() - same) * kPixelBytes);
  }

 private:
  static constexpr std::size_t kPixelBytes = kBytesPerAlphaPixel;

  void PutPixel(const std::uint8_t* in, std::uint8_t* out, std::size_t i) const {
    std::memcpy(out + i * kPixelBytes, in + Index(columns_[i]) * kPixelBytes, kPixelBytes);
  }

#if MARKLET_HAS_AVX2_PATH
  std::size_t PickMost(const std::uint8_t* in, std::uint8_t* out, std::uint8_t* twin) const {
    if (pixels_a_window_ == 0) return TakesAvx2() ? PickBySingles(in, columns_, out) : 0;
    if (pixels_a_window_ == kWidePixels) {
      PickByWindowsOf8(in, windows_, out, twin);
    } else {
      PickByWindowsOf4(in, windows_, out);
    }
    return windows_.size() * Index(pixels_a_window_);
  }
  std::vector<Window> windows_;
#else
  std::size_t PickMost(const std::uint8_t*, std::uint8_t*, std::uint8_t*) const { return 0; }
#endif
  std::vector<Long> columns_;
  std::ptrdiff_t pixels_a_window_ = 0;
};

}  // namespace

void CopyNearest(const PixelView& from, const PixelView& to) {
  const ColumnPicker columns(from.width, to.width);
  const std::vector<Long> rows = PositionsOf(from.height, to.height);
  const auto is_as_before = [&](Long y) { return y < to.height && rows[Index(y)] == rows[Index(y - 1)]; };
  for (Long y = 0; y < to.height;) {
    const Long row = rows[Index(y)];
    const Long count = is_as_before(y + 1) ? 2 : 1;
    columns.Pick(from.Row(row), to.Row(y), to.Row(y + count - 1));
    y += count;
  }
}

}  // namespace marklet
