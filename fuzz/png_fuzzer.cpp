// PNG files of any kind, sound or broken, from their bytes to a bitmap. Small ones are held against the slow
// decoder of the tests.
#include <cstdint>

#include "fuzz/fuzzers.h"
#include "fuzz/require.h"
#include "png/cpng_decoder.h"
#include "png/plain_decoder.h"
#include "png/png_files.h"

namespace marklet {
namespace {

constexpr std::int64_t kMostPixels = 1 << 13;  // that the slow decoder gets

bool IsCheap(const CPngDecoder& decoder) {
  const std::int64_t width = decoder.Width(), height = decoder.Height();
  return width <= kMostPixels && height <= kMostPixels && width * height <= kMostPixels;
}

void CheckPixels(const png::test::Bytes& pixels, const png::test::Bytes& file) {
  try {
    const auto expected = png::plain::Decoder().Decode(file);
    Require(pixels == (expected ? expected->pixels : png::test::Bytes()),
            "the pixels are not those of the slow decoder");
  } catch (const png::plain::Unsettled&) {
    // No result is right or wrong; it only had to end.
  }
}

}  // namespace

void FuzzPng(std::span<const std::uint8_t> input) {
  const png::test::Bytes file(input.begin(), input.end());
  png::test::Bytes scratch = file;
  CPngDecoder decoder;
  decoder.LoadFromMemory(scratch);
  if (IsCheap(decoder)) CheckPixels(png::test::PixelsOfBitmap(decoder), file);
}

}  // namespace marklet
