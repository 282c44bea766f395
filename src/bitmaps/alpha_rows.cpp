#include "bitmaps/alpha_rows.h"

#include <array>
#include <cstring>

#include "base/processor.h"
#include "base/rounding.h"
#include "bitmaps/alpha_rows_avx2.h"

namespace marklet {
namespace {

// A pixel's alpha once the constant has its share.
std::array<std::uint8_t, 256> Weights(float share) {
  std::array<std::uint8_t, 256> weights{};
  for (std::size_t alpha = 0; alpha < weights.size(); ++alpha) {
    weights[alpha] = static_cast<std::uint8_t>(RoundHalfEven(static_cast<double>(alpha) * double{share}));
  }
  return weights;
}

void BlendRow(const std::uint8_t* source, std::uint8_t* destination, int destination_bytes,
              std::ptrdiff_t count, const std::array<std::uint8_t, 256>& weights) {
  for (; count > 0; --count, source += kBytesPerAlphaPixel, destination += destination_bytes) {
    const int a = weights[source[3]];
    for (int c = 0; c < 3; ++c) {
      destination[c] = static_cast<std::uint8_t>((destination[c] * (255 - a) + source[c] * a + 127) / 255);
    }
  }
}

}  // namespace

float ShareOf(std::uint8_t constant) { return static_cast<float>(constant / 255.0); }

void BlendRows(const AlphaRows& rows, int destination_bits) {
#if MARKLET_HAS_AVX2_PATH
  if (TakesAvx2()) return BlendRowsAvx2(rows, destination_bits);
#endif
  const auto weights = Weights(rows.share);
  for (std::ptrdiff_t y = 0; y < rows.height; ++y) {
    BlendRow(rows.source + y * rows.source_stride, rows.destination + y * rows.destination_stride,
             destination_bits / 8, rows.width, weights);
  }
}

void PremultiplyPixels(std::uint8_t* pixels, std::ptrdiff_t count) {
#if MARKLET_HAS_AVX2_PATH
  if (TakesAvx2()) return PremultiplyPixelsAvx2(pixels, count);
#endif
  for (std::ptrdiff_t i = 0; i < count; ++i, pixels += kBytesPerAlphaPixel) {
    for (int c = 0; c < 3; ++c) pixels[c] = static_cast<std::uint8_t>(pixels[c] * pixels[3] / 255);
  }
}

void SetAlphaOfPixels(std::uint8_t* pixels, std::ptrdiff_t count, std::uint8_t alpha) {
  for (std::ptrdiff_t i = 0; i < count; ++i, pixels += kBytesPerAlphaPixel) {
    for (int c = 0; c < 3; ++c) pixels[c] = static_cast<std::uint8_t>(pixels[c] * alpha / 255);
    pixels[3] = alpha;
  }
}

void GreyPixels(std::uint8_t* pixels, std::ptrdiff_t count, bool spare_key) {
#if MARKLET_HAS_AVX2_PATH
  if (TakesAvx2()) return GreyPixelsAvx2(pixels, count, spare_key);
#endif
  for (std::ptrdiff_t i = 0; i < count; ++i, pixels += kBytesPerAlphaPixel) {
    if (spare_key && IsKeyPixel(pixels)) continue;
    // Thirds are never halfway between integers.
    pixels[0] = pixels[1] = pixels[2] =
        static_cast<std::uint8_t>((pixels[0] + pixels[1] + pixels[2] + 1) / 3);
  }
}

}  // namespace marklet
