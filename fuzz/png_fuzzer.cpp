// PNG files of any kind, sound or broken, from their bytes to a bitmap, in both forms of the code that suits
// processors best. Small ones are held against the slow decoder of the tests.
#include <cstdint>
#include <utility>

#include "base/processor.h"
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

void CheckFields(const CPngDecoder& decoder, const png::plain::Decoder& expected) {
  Require(decoder.Width() == expected.width && decoder.Height() == expected.height &&
              decoder.BitDepth() == expected.bit_depth && decoder.ColorType() == expected.color_type &&
              decoder.CompressionMethod() == expected.compression &&
              decoder.InterlaceMethod() == expected.interlace && decoder.Fields().TextBlock == expected.text,
          "the fields are not those of the slow decoder");
}

void Check(const CPngDecoder& decoder, const png::test::Bytes& pixels, const png::test::Bytes& file) {
  try {
    png::plain::Decoder slow;
    const auto expected = slow.Decode(file);
    CheckFields(decoder, slow);
    Require(pixels == (expected ? expected->pixels : png::test::Bytes()),
            "the pixels are not those of the slow decoder");
  } catch (const png::plain::Unsettled&) {
    // No result is right or wrong; it only had to end.
  }
}

png::test::Bytes PixelsInPlainForm(png::test::Bytes file) {
  const ProcessorFormOverride plain_form(ProcessorForm::kPlain);
  return png::test::Decoded(std::move(file));
}

}  // namespace

void FuzzPng(std::span<const std::uint8_t> input) {
  const png::test::Bytes file(input.begin(), input.end());
  png::test::Bytes scratch = file;
  CPngDecoder decoder;
  decoder.LoadFromMemory(scratch);
  const png::test::Bytes pixels = png::test::PixelsOfBitmap(decoder);
  Require(pixels == PixelsInPlainForm(file), "the plain form gives other pixels");
  if (IsCheap(decoder)) Check(decoder, pixels, file);
}

}  // namespace marklet
