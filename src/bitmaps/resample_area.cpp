#include "bitmaps/alpha_resample.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "base/processor.h"
#include "bitmaps/area_axis.h"
#include "bitmaps/pixel_loops.h"
#if MARKLET_HAS_AVX2_PATH
#include <immintrin.h>
#endif

namespace marklet {
namespace {

// Added to a sum, this makes each further addition round it to the nearest integer, ties to even: a double of
// its size has no fraction bits.
constexpr double kRounder = 0x1.8p52;
// A single rounding of the exact sum is what adding in a double and rounding afterwards gives, as long as the
// sum before is below 2^20: then either all of its bits fit, or the weight is so small that nothing is added.
constexpr Long kMostPixelsACell = 32;

// The rows that a row of cells takes from.
struct Line {
  const std::uint8_t* pixels;
  double part;
  double held;  // the part as a 32-bit float, the weight of a pixel whose column lies whole in its cell
};
using Lines = std::vector<Line>;

double Weight(const AreaShare& share, const Line& line) {
  return double{static_cast<float>(share.part * line.part)};
}

// Takes a row of cells from its lines. The order of columns, and of lines within them, is that of the sums'
// definition, on which the ties depend.
using RowWriter = void (*)(const AreaAxis& columns, const Lines& lines, double width, const PixelView& to,
                           std::uint8_t* out);

// From the weighted sum to the mean: times the square of the ratio, truncated after each step.
std::uint8_t Mean(double sum, double new_width, double width) {
  const auto once = static_cast<std::int64_t>(sum * new_width / width);
  const auto twice = static_cast<std::int64_t>(static_cast<double>(once) * new_width / width);
  return static_cast<std::uint8_t>(std::min<std::int64_t>(twice, 255));
}

void WriteRowPlain(const AreaAxis& columns, const Lines& lines, double width, const PixelView& to,
                   std::uint8_t* out) {
  for (Long x = 0; x < to.width; ++x, out += kBytesPerAlphaPixel) {
    double sums[kBytesPerAlphaPixel] = {};
    for (const AreaShare* share = columns.begin(x); share != columns.end(x); ++share) {
      for (const Line& line : lines) {
        const std::uint8_t* pixel = line.pixels + std::ptrdiff_t{share->source} * kBytesPerAlphaPixel;
        if (pixel[3] == 0) continue;  // what is clear gives no colour
        const double weight = Weight(*share, line);
        for (int c = 0; c < kBytesPerAlphaPixel; ++c) {
          // An addition in a double of its own, then rounded.
          sums[c] = sums[c] + pixel[c] * weight + kRounder - kRounder;
        }
      }
    }
    for (int c = 0; c < kBytesPerAlphaPixel; ++c) out[c] = Mean(sums[c], to.width, width);
  }
}

#if MARKLET_HAS_AVX2_PATH

MARKLET_AVX2 MARKLET_INLINE __m256d ChannelsAt(const std::uint8_t* bytes) {
  std::uint32_t pixel;
  std::memcpy(&pixel, bytes, sizeof pixel);
  pixel &= 0u - static_cast<std::uint32_t>(pixel > 0xFFFFFF);  // what is clear gives no colour
  return _mm256_cvtepi32_pd(_mm_cvtepu8_epi32(_mm_cvtsi32_si128(static_cast<int>(pixel))));
}

MARKLET_AVX2 MARKLET_INLINE void Add(__m256d& sums, const std::uint8_t* pixel, double weight) {
  sums = _mm256_add_pd(sums, _mm256_mul_pd(ChannelsAt(pixel), _mm256_set1_pd(weight)));
}

MARKLET_AVX2 MARKLET_INLINE void WriteMeans(__m256d sums, __m256d new_width, __m256d width,
                                            std::uint8_t* out) {
  const __m128i once = _mm256_cvttpd_epi32(_mm256_div_pd(_mm256_mul_pd(sums, new_width), width));
  const __m256d product = _mm256_mul_pd(_mm256_cvtepi32_pd(once), new_width);
  const __m128i mean = _mm_min_epi32(_mm256_cvttpd_epi32(_mm256_div_pd(product, width)), _mm_set1_epi32(255));
  const int pixel = _mm_cvtsi128_si32(
      _mm_shuffle_epi8(mean, _mm_setr_epi8(0, 4, 8, 12, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1)));
  std::memcpy(out, &pixel, sizeof pixel);
}

MARKLET_AVX2 void WriteRowAvx2(const AreaAxis& columns, const Lines& lines, double width, const PixelView& to,
                               std::uint8_t* out) {
  const __m256d rounder = _mm256_set1_pd(kRounder);
  const __m256d widths = _mm256_set1_pd(width), new_widths = _mm256_set1_pd(to.width);
  const Line *const first = lines.data(), *const last = first + lines.size();
  for (Long x = 0; x < to.width; ++x, out += kBytesPerAlphaPixel) {
    __m256d sums = rounder;
    for (const AreaShare *share = columns.begin(x), *end = columns.end(x); share != end; ++share) {
      const std::ptrdiff_t offset = std::ptrdiff_t{share->source} * kBytesPerAlphaPixel;
      if (share->part == 1.0) {
        for (const Line* line = first; line != last; ++line) Add(sums, line->pixels + offset, line->held);
      } else {
        for (const Line* line = first; line != last; ++line) {
          Add(sums, line->pixels + offset, Weight(*share, *line));
        }
      }
    }
    WriteMeans(_mm256_sub_pd(sums, rounder), new_widths, widths, out);
  }
}

#endif

RowWriter WriterFor(Long width, Long new_width) {
#if MARKLET_HAS_AVX2_PATH
  if (TakesAvx2() && width / new_width < kMostPixelsACell) return WriteRowAvx2;
#endif
  return WriteRowPlain;
}

void AverageByCoverage(const PixelView& from, const PixelView& to) {
  const AreaAxis columns(from.width, to.width, from.width, to.width);
  const AreaAxis rows(from.height, to.height, from.width, to.width);
  const RowWriter write = WriterFor(from.width, to.width);
  Lines lines;
  for (Long y = 0; y < to.height; ++y) {
    lines.clear();
    for (const AreaShare* share = rows.begin(y); share != rows.end(y); ++share) {
      lines.push_back({from.Row(share->source), share->part, double{static_cast<float>(share->part)}});
    }
    write(columns, lines, from.width, to, to.Row(y));
  }
}

// What a block of pixels adds up to: colours weighed by alpha, and alpha.
struct BlockSum {
  std::uint64_t blue = 0, green = 0, red = 0, alpha = 0;
  std::uint64_t visible = 0;  // pixels

  void AddRow(const std::uint8_t* pixel, Long count) {
    for (Long i = 0; i < count; ++i, pixel += kBytesPerAlphaPixel) {
      const unsigned a = pixel[3];
      blue += pixel[0] * a / 255;
      green += pixel[1] * a / 255;
      red += pixel[2] * a / 255;
      alpha += a;
      visible += a != 0;
    }
  }
  // Colours are a mean of the visible pixels and alpha one of all: both are kept.
  void Write(std::uint64_t pixels, std::uint8_t* out) const {
    const std::uint64_t divisor = std::max<std::uint64_t>(visible, 1);
    out[0] = static_cast<std::uint8_t>(blue / divisor);
    out[1] = static_cast<std::uint8_t>(green / divisor);
    out[2] = static_cast<std::uint8_t>(red / divisor);
    out[3] = static_cast<std::uint8_t>(alpha / pixels);
  }
};

void AverageBlocks(const PixelView& from, const PixelView& to) {
  const Long across = from.width / to.width, down = from.height / to.height;
  const auto pixels = static_cast<std::uint64_t>(across) * static_cast<std::uint64_t>(down);
  std::vector<BlockSum> sums(static_cast<std::size_t>(to.width));
  for (Long y = 0; y < to.height; ++y) {
    std::fill(sums.begin(), sums.end(), BlockSum{});
    for (Long row = y * down; row < (y + 1) * down; ++row) {
      const std::uint8_t* in = from.Row(row);
      for (BlockSum& sum : sums) {
        sum.AddRow(in, across);
        in += std::ptrdiff_t{across} * kBytesPerAlphaPixel;
      }
    }
    std::uint8_t* out = to.Row(y);
    for (const BlockSum& sum : sums) {
      sum.Write(pixels, out);
      out += kBytesPerAlphaPixel;
    }
  }
}

}  // namespace

void AverageArea(const PixelView& from, const PixelView& to) {
  if (from.height % to.height == 0 && from.width % to.width == 0) {
    AverageBlocks(from, to);
  } else {
    AverageByCoverage(from, to);
  }
}

}  // namespace marklet
