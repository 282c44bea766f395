// From a file to the pixels of its bitmap: conversion, interlace, filters, and what is lost on the way.
#include "png/cpng_decoder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <string>
#include <utility>

#include "png/deflate_streams.h"
#include "png/plain_decoder.h"
#include "png/png_files.h"

namespace marklet::png::test {
namespace {

using Numbers = std::initializer_list<std::uint8_t>;
using Pixel = std::array<int, 4>;  // blue, green, red, alpha

// Counts rows from the top, as pictures do.
Pixel At(const Bytes& pixels, std::size_t width, std::size_t x, std::size_t y) {
  const std::size_t height = pixels.size() / 4 / width;
  const std::uint8_t* pixel = pixels.data() + ((height - 1 - y) * width + x) * 4;
  return {pixel[0], pixel[1], pixel[2], pixel[3]};
}

// Scanlines without filters from samples.
Bytes Unfiltered(const Header& header, const Bytes& samples) {
  Bytes data;
  for (std::size_t y = 0; y < header.height; ++y) {
    data.push_back(0);
    const auto row = samples.begin() + static_cast<std::ptrdiff_t>(y * header.RowBytes());
    data.insert(data.end(), row, row + static_cast<std::ptrdiff_t>(header.RowBytes()));
  }
  return data;
}

Bytes FileOfSamples(const Header& header, const Bytes& samples, const Bytes& chunks_before_idat = {}) {
  return File(header, StoredZlib(Unfiltered(header, samples)), chunks_before_idat);
}

// How many bytes of inflated data an Adam7 picture takes.
std::size_t Adam7Bytes(const Header& header) {
  static constexpr std::size_t kXStart[] = {0, 4, 0, 2, 0, 1, 0}, kXStep[] = {8, 8, 4, 4, 2, 2, 1};
  static constexpr std::size_t kYStart[] = {0, 0, 4, 0, 2, 0, 1}, kYStep[] = {8, 8, 8, 4, 4, 2, 2};
  std::size_t total = 0;
  for (std::size_t pass = 0; pass < 7; ++pass) {
    std::size_t columns = 0, rows = 0;
    for (std::size_t x = kXStart[pass]; x < header.width; x += kXStep[pass]) ++columns;
    for (std::size_t y = kYStart[pass]; y < header.height; y += kYStep[pass]) ++rows;
    if (columns > 0) total += rows * (1 + (columns * header.BitsPerPixel() + 7) / 8);
  }
  return total;
}

std::size_t InflatedBytes(const Header& header) {
  return header.interlace == 1 ? Adam7Bytes(header) : header.height * (header.RowBytes() + 1);
}

// Inflated data with every kind of filter byte, wrong ones included.
Bytes RandomScanlines(Random& random, const Header& header) {
  Bytes data = random.Some(InflatedBytes(header));
  if (header.interlace != 0) {
    // Somewhere among the bytes are the filters; small numbers make them likely.
    for (std::uint8_t& byte : data)
      if (random.Below(3) == 0) byte = static_cast<std::uint8_t>(random.Below(6));
    return data;
  }
  for (std::size_t y = 0; y < header.height; ++y)
    data[y * (header.RowBytes() + 1)] =
        static_cast<std::uint8_t>(random.Below(16) == 0 ? random.Below(256) : random.Below(5));
  return data;
}

void ExpectSameAsPlain(const Bytes& file) {
  CPngDecoder decoder;
  Bytes scratch = file;
  decoder.LoadFromMemory(scratch);
  try {
    const auto expected = plain::Decoder().Decode(file);
    ASSERT_EQ(PixelsOfBitmap(decoder), expected ? expected->pixels : Bytes());
  } catch (const plain::Unsettled&) {
  }
}

// ---- what reaches the caller ----

TEST(CPngDecoder, RgbaPictureOf16By16LosesTheTopRightPixelsAlpha) {
  const Header header{16, 16, 8, 6};
  Random random(21);
  Bytes samples = random.Some(std::size_t{16} * 16 * 4);
  samples[15 * 4 + 3] = 255;
  const Bytes pixels = Decoded(FileOfSamples(header, samples));
  ASSERT_EQ(pixels.size(), 16u * 16 * 4);
  for (std::size_t y = 0; y < 16; ++y)
    for (std::size_t x = 0; x < 16; ++x) {
      const std::uint8_t* sample = samples.data() + (y * 16 + x) * 4;
      const int alpha = x == 15 && y == 0 ? 0 : sample[3];
      EXPECT_EQ(At(pixels, 16, x, y), (Pixel{sample[2], sample[1], sample[0], alpha})) << x << ' ' << y;
    }
}

TEST(CPngDecoder, RgbPictureIsOpaque) {
  const Header header{3, 2, 8, 2};
  const Bytes pixels =
      Decoded(FileOfSamples(header, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18}));
  EXPECT_EQ(At(pixels, 3, 0, 0), (Pixel{3, 2, 1, 255}));
  EXPECT_EQ(At(pixels, 3, 2, 0), (Pixel{9, 8, 7, 255}));
  EXPECT_EQ(At(pixels, 3, 0, 1), (Pixel{12, 11, 10, 255}));
  EXPECT_EQ(At(pixels, 3, 2, 1), (Pixel{18, 17, 16, 255})) << "the lost byte is padding at this width";
}

TEST(CPngDecoder, RgbPictureWithoutRowPaddingLosesTheBottomRightRed) {
  const Header header{4, 2, 8, 2};
  const Bytes pixels = Decoded(FileOfSamples(header, Bytes(24, 200)));
  for (std::size_t y = 0; y < 2; ++y)
    for (std::size_t x = 0; x < 4; ++x)
      EXPECT_EQ(At(pixels, 4, x, y), (Pixel{200, 200, x == 3 && y == 1 ? 0 : 200, 255})) << x << ' ' << y;
}

TEST(CPngDecoder, RgbPictureWithTransparentColourStaysOpaque) {
  const Header header{2, 1, 8, 2};
  const Bytes file = FileOfSamples(header, {10, 20, 30, 40, 50, 60}, Chunk("tRNS", {0, 10, 0, 20, 0, 30}));
  EXPECT_EQ(Decoded(file), (Bytes{30, 20, 10, 255, 60, 50, 40, 255}));
}

TEST(CPngDecoder, PalettePictureWithTransparencyGivesNoPixels) {
  const Header header{4, 4, 8, 3};
  Bytes extra = Chunk("PLTE", {1, 2, 3, 4, 5, 6});
  Append(extra, Chunk("tRNS", {0, 128}));
  CPngDecoder decoder;
  Bytes file = FileOfSamples(header, Bytes(16, 1), extra);
  decoder.LoadFromMemory(file);
  EXPECT_EQ(decoder.BitmapHandle(), nullptr);
  EXPECT_EQ(decoder.Width(), 4);
}

TEST(CPngDecoder, GrayPicturesGiveNoPixels) {
  for (const std::uint8_t depth : Numbers{1, 2, 4, 8, 16})
    for (const std::uint8_t interlace : Numbers{0, 1}) {
      const Header header{8, 8, depth, 0, interlace};
      EXPECT_EQ(Decoded(File(header, StoredZlib(Bytes(InflatedBytes(header))))), Bytes()) << int{depth};
    }
}

TEST(CPngDecoder, GrayWithAlphaBecomesGrayThreeTimes) {
  const Bytes pixels = Decoded(FileOfSamples({2, 2, 8, 4}, {10, 1, 20, 2, 30, 3, 40, 4}));
  EXPECT_EQ(At(pixels, 2, 0, 0), (Pixel{10, 10, 10, 1}));
  EXPECT_EQ(At(pixels, 2, 1, 0), (Pixel{20, 20, 20, 0})) << "top right";
  EXPECT_EQ(At(pixels, 2, 0, 1), (Pixel{30, 30, 30, 3}));
  EXPECT_EQ(At(pixels, 2, 1, 1), (Pixel{40, 40, 40, 4}));
}

TEST(CPngDecoder, SixteenBitChannelsDropTheLowBytesWithoutRounding) {
  const Bytes rgba = {1, 255, 2, 255, 3, 255, 4, 255, 5, 255, 6, 255, 7, 255, 8, 255};
  EXPECT_EQ(Decoded(FileOfSamples({1, 2, 16, 6}, rgba)), (Bytes{7, 6, 5, 8, 3, 2, 1, 0}));
  const Bytes rgb = {1, 255, 2, 255, 3, 255};
  EXPECT_EQ(Decoded(FileOfSamples({1, 1, 16, 2}, rgb)), (Bytes{3, 2, 1, 255}));
  const Bytes gray = {1, 255, 2, 255, 3, 255, 4, 255};
  EXPECT_EQ(Decoded(FileOfSamples({1, 2, 16, 4}, gray)), (Bytes{3, 3, 3, 4, 1, 1, 1, 0}));
}

TEST(CPngDecoder, GammaLeavesPixelsUntouched) {
  const Header header{4, 4, 8, 6};
  Random random(22);
  const Bytes samples = random.Some(64);
  for (const Bytes& gamma : {Bytes{0, 0, 0, 1}, Bytes{0, 1, 0x86, 0xA0}, Bytes{0xFF, 0xFF, 0xFF, 0xFF}})
    EXPECT_EQ(Decoded(FileOfSamples(header, samples, Chunk("gAMA", gamma))),
              Decoded(FileOfSamples(header, samples)));
}

TEST(CPngDecoder, BitmapHas32BitsAndTheFilesSize) {
  CPngDecoder decoder;
  Bytes file = FileOfSamples({5, 3, 8, 2}, Bytes(45, 9));
  decoder.LoadFromMemory(file);
  BITMAP bitmap;
  ASSERT_TRUE(GetObjectA(decoder.BitmapHandle(), bitmap));
  EXPECT_EQ(bitmap.bmWidth, 5);
  EXPECT_EQ(bitmap.bmHeight, 3);
  EXPECT_EQ(bitmap.bmBitsPixel, 32);
  decoder.ReleaseBitmap();
  EXPECT_EQ(decoder.BitmapHandle(), nullptr);
  decoder.ReleaseBitmap();
}

// ---- scanlines ----

TEST(CPngDecoder, UnknownFilterLeavesTheRowAsItIs) {
  for (const std::uint8_t filter : Numbers{5, 9, 128, 255}) {
    const Bytes data = {filter, 1, 2, 3, 4, 5, 6, 7, 8, 2, 1, 1, 1, 1, 1, 1, 1, 1};
    EXPECT_EQ(Decoded(File({2, 2, 8, 6}, StoredZlib(data))),
              (Bytes{4, 3, 2, 5, 8, 7, 6, 9, 3, 2, 1, 4, 7, 6, 5, 0}));
  }
}

TEST(CPngDecoder, SubWorksAtTheDistanceOfAWholePixel) {
  // At 16-bit RGBA that is 8 bytes: the second pixel adds the first one.
  const Bytes data = {1, 1, 0, 2, 0, 3, 0, 4, 0, 10, 0, 10, 0, 10, 0, 10, 0};
  EXPECT_EQ(Decoded(File({2, 1, 16, 6}, StoredZlib(data))), (Bytes{3, 2, 1, 4, 13, 12, 11, 0}));
}

TEST(CPngDecoder, PaethPrefersLeftThenUpperThenUpperLeft) {
  const auto second_pixel = [](std::uint8_t upper_left, std::uint8_t upper, std::uint8_t left) {
    // Gray with alpha; the first row's alpha keeps the lost byte away from the numbers.
    const Bytes data = {0, upper_left, 0, upper, 0, 4, static_cast<std::uint8_t>(left - upper_left), 0, 0, 0};
    return int{At(Decoded(File({2, 2, 8, 4}, StoredZlib(data))), 2, 1, 1)[0]};
  };
  EXPECT_EQ(second_pixel(10, 10, 10), 10);
  EXPECT_EQ(second_pixel(10, 20, 10), 20) << "20 is nearest";
  EXPECT_EQ(second_pixel(10, 10, 20), 20);
  EXPECT_EQ(second_pixel(20, 10, 10), 10);
  EXPECT_EQ(second_pixel(15, 10, 20), 15);
  EXPECT_EQ(second_pixel(12, 10, 16), 16) << "left and upper-left alike: left";
  EXPECT_EQ(second_pixel(12, 8, 14), 8) << "upper and upper-left alike: upper";
  EXPECT_EQ(second_pixel(0, 255, 255), 255);
  EXPECT_EQ(second_pixel(255, 0, 0), 0);
}

TEST(CPngDecoder, AverageTruncatesTheSumOfNineBits) {
  // Left 255 and upper 254 make 254.
  const Bytes data = {0, 0, 0, 254, 0, 3, 255, 0, 0, 0};
  EXPECT_EQ(At(Decoded(File({2, 2, 8, 4}, StoredZlib(data))), 2, 1, 1)[0], 254);
}

TEST(CPngDecoder, InterlacedPictureOfOnePixelReadsOnePass) {
  EXPECT_EQ(Decoded(File({1, 1, 8, 2, 1}, StoredZlib({0, 1, 2, 3}))), (Bytes{3, 2, 1, 255}));
  EXPECT_EQ(Decoded(File({1, 1, 8, 2, 1}, StoredZlib({0, 1, 2}))), Bytes()) << "a byte is missing";
}

TEST(CPngDecoder, InterlacedPictureGivesWhatThePlainOneGives) {
  Random random(23);
  for (std::uint32_t width = 1; width <= 17; ++width)
    for (std::uint32_t height = 1; height <= 17; ++height) {
      const Bytes samples = random.Some(std::size_t{width} * height * 4);
      Bytes data;
      static constexpr std::uint32_t kXStart[] = {0, 4, 0, 2, 0, 1, 0}, kXStep[] = {8, 8, 4, 4, 2, 2, 1};
      static constexpr std::uint32_t kYStart[] = {0, 0, 4, 0, 2, 0, 1}, kYStep[] = {8, 8, 8, 4, 4, 2, 2};
      for (std::size_t pass = 0; pass < 7; ++pass)
        for (std::uint32_t y = kYStart[pass]; y < height && kXStart[pass] < width; y += kYStep[pass]) {
          data.push_back(0);
          for (std::uint32_t x = kXStart[pass]; x < width; x += kXStep[pass])
            for (std::uint32_t c = 0; c < 4; ++c) data.push_back(samples[(y * width + x) * 4 + c]);
        }
      EXPECT_EQ(Decoded(File({width, height, 8, 6, 1}, StoredZlib(data))),
                Decoded(FileOfSamples({width, height, 8, 6}, samples)))
          << width << ' ' << height;
    }
}

// ---- against the slow decoder ----

TEST(SlowCPngDecoder, EveryKindOfPictureGivesWhatTheSlowDecoderGives) {
  Random random(24);
  for (const std::uint8_t type : Numbers{2, 4, 6})
    for (const std::uint8_t depth : Numbers{8, 16})
      for (const std::uint8_t interlace : Numbers{0, 1})
        for (std::uint32_t size = 1; size <= 70; size += size < 20 ? 1 : 7) {
          const Header header{size, 1 + random.Below(70), depth, type, interlace};
          SCOPED_TRACE(testing::Message() << header.width << 'x' << header.height << " type " << int{type}
                                          << " depth " << int{depth});
          ExpectSameAsPlain(File(header, StoredZlib(RandomScanlines(random, header))));
          if (HasFatalFailure()) return;
        }
}

// The data are let out of the decoder piece by piece then, and rows and matches cross from piece to piece.
TEST(SlowCPngDecoder, LargePicturesGiveWhatTheSlowDecoderGives) {
  Random random(25);
  for (const Header& header :
       {Header{300, 700, 8, 6}, Header{700, 300, 8, 2, 1}, Header{60000, 3, 16, 6},
        Header{100000, 5, 8, 2, 1}, Header{1, 90000, 8, 6}, Header{2, 60000, 16, 4, 1}}) {
    SCOPED_TRACE(testing::Message() << header.width << 'x' << header.height);
    ExpectSameAsPlain(File(header, StoredZlib(RandomScanlines(random, header))));
  }
}

TEST(SlowCPngDecoder, OddHeadersGiveWhatTheSlowDecoderGives) {
  Random random(26);
  for (int round = 0; round < 3000; ++round) {
    Header header{1 + random.Below(12), 1 + random.Below(12)};
    const std::uint8_t depths[] = {0, 1, 2, 3, 4, 8, 16, 24, 32, 255},
                       types[] = {0, 1, 2, 3, 4, 5, 6, 7, 255};
    header.depth = depths[random.Below(10)];
    header.color_type = types[random.Below(9)];
    header.interlace = static_cast<std::uint8_t>(random.Below(4) == 0 ? random.Below(256) : random.Below(3));
    header.compression = static_cast<std::uint8_t>(random.Below(6) == 0);
    SCOPED_TRACE(testing::Message() << "round " << round << " depth " << int{header.depth} << " type "
                                    << int{header.color_type});
    const std::size_t bytes =
        header.interlace > 1 ? header.height * header.RowBytes() : InflatedBytes(header);
    Bytes data = random.Some(bytes + random.Below(3) * std::size_t{random.Below(60)});
    for (std::uint8_t& byte : data)
      if (random.Below(2) == 0) byte = static_cast<std::uint8_t>(random.Below(6));
    ExpectSameAsPlain(File(header, header.compression ? data : StoredZlib(data)));
    if (HasFatalFailure()) return;
  }
}

// Not even where bytes enough for such a bitmap are there.
TEST(CPngDecoder, DepthsOfABitmapGivePixelsForColourTypesWithColourOrAlphaAlone) {
  for (const std::uint8_t type : Numbers{0, 1, 2, 3, 4, 5, 6, 7, 8, 250})
    for (const std::uint8_t depth : Numbers{24, 32}) {
      Header header{4, 4, depth, type};
      header.compression = header.interlace = 9;  // the bytes go on as they are
      const bool delivered = !Decoded(File(header, Bytes(2 + 64, 1))).empty();
      EXPECT_EQ(delivered, type == 2 || type == 4 || type == 6) << int{type} << ' ' << int{depth};
    }
}

TEST(SlowCPngDecoder, OddStreamsGiveWhatTheSlowDecoderGives) {
  Random random(27);
  int pictures = 0;
  for (int round = 0; round < 4000; ++round) {
    SCOPED_TRACE(round);
    const RandomStream stream = MakeRandomStream(random, random.Below(3));
    // A picture that the stream fills about, so that some are just too small and some pass the limit.
    const auto pixels = static_cast<std::uint32_t>(stream.written / 4);
    Header header{1 + random.Below(8), 1};
    header.height = std::max(1u, pixels / header.width + random.Below(3) - 1);
    Bytes zlib = {0x78, 0x01};
    Append(zlib, stream.bytes);
    const Bytes file = File(header, zlib);
    pictures += Decoded(file).empty() ? 0 : 1;
    ExpectSameAsPlain(file);
    if (HasFatalFailure()) return;
  }
  EXPECT_GT(pictures, 200);
}

TEST(CPngDecoder, StreamWithoutUsableCodesIsFilteredAsItIs) {
  // A dynamic block whose code of code lengths has a gap, and enough bytes after it for two pixels.
  BitWriter bits;
  bits.Put(1, 1).Put(2, 2).Put(0, 5).Put(0, 5).Put(0, 4);
  for (int i = 0; i < 4; ++i) bits.Put(i == 3 ? 1 : 0, 3);
  bits.ToByte();
  while (bits.bytes().size() < 9) bits.Byte(static_cast<unsigned>(100 + bits.bytes().size()));
  const Bytes stream = bits.bytes();
  Bytes zlib = {0x78, 0x01};
  Append(zlib, stream);
  ASSERT_EQ(stream[0], 5) << "an unknown filter";
  EXPECT_EQ(Decoded(File({2, 1, 8, 6}, zlib)),
            (Bytes{stream[3], stream[2], stream[1], stream[4], stream[7], stream[6], stream[5], 0}));
  EXPECT_EQ(Decoded(File({3, 1, 8, 6}, zlib)), Bytes()) << "too few bytes";
}

// The block that has no usable code comes after rows that were pixels already.
TEST(SlowCPngDecoder, LateFaultTakesBackAPictureThatWasDone) {
  const Header header{500, 300, 8, 2};
  Random random(28);
  Bytes zlib = StoredZlib(RandomScanlines(random, header));
  zlib.resize(zlib.size() - 4);
  // The last stored block becomes one of several.
  std::size_t last = 2;
  while ((zlib[last] & 1) == 0) last += 5u + zlib[last + 1] + 256u * zlib[last + 2];
  zlib[last] = 0;
  BitWriter bits;
  bits.Put(1, 1).Put(2, 2).Put(0, 5).Put(0, 5).Put(0, 4).Put(0, 12).Put(0, 32);
  Append(zlib, bits.bytes());
  const Bytes file = File(header, zlib);
  const auto expected = plain::Decoder().Decode(file);
  ASSERT_TRUE(expected);
  EXPECT_EQ(Decoded(file), expected->pixels);
}

// ---- sizes ----

TEST(CPngDecoder, SizesThatTheDataCantReachCostNothing) {
  const Bytes zlib = StoredZlib(Bytes(1000, 0));
  for (const std::uint8_t type : Numbers{0, 2, 3, 4, 6})
    for (const std::uint8_t interlace : Numbers{0, 1, 2})
      for (const auto& [width, height] : {std::pair{46340u, 46340u},
                                          {2000000000u, 1u},
                                          {1u, 2000000000u},
                                          {0x7FFFFFFFu, 0x7FFFFFFFu},
                                          {20000u, 20000u},
                                          {0xFFFFFFFFu, 0xFFFFFFFFu},
                                          {0u, 0u},
                                          {0u, 5u},
                                          {5u, 0u}}) {
        Header header{width, height, 8, type, interlace};
        EXPECT_EQ(Decoded(File(header, zlib)), Bytes()) << width << 'x' << height << " type " << int{type};
      }
}

TEST(CPngDecoder, TooFewBytesGiveNoPicture) {
  const Header header{8, 8, 8, 6};
  Bytes data(InflatedBytes(header), 1);
  EXPECT_NE(Decoded(File(header, StoredZlib(data))), Bytes());
  data.pop_back();
  EXPECT_EQ(Decoded(File(header, StoredZlib(data))), Bytes());
}

TEST(CPngDecoder, EmptyAndTinyStreamsGiveNoPicture) {
  for (const Bytes& zlib : {Bytes{1}, Bytes{1, 2}, Bytes{1, 2, 3}, Bytes{0x78, 1, 1, 0, 0, 0xFF, 0xFF}})
    EXPECT_EQ(Decoded(File({1, 1, 8, 6}, zlib)), Bytes());
}

// ---- a second file for the same decoder ----

// Clears what the first one left but the fields that a load sets.
TEST(CPngDecoder, SecondLoadStartsFromTheFieldsThatTheFirstOneLeft) {
  CPngDecoder decoder;
  Bytes first = FileOf({Chunk("IHDR", Header{2, 2, 8, 6}.Payload()), Chunk("tRNS", {1}), Chunk("tEXt", {65}),
                        Chunk("gAMA", {0, 0, 0, 7}), Chunk("IDAT", StoredZlib(Bytes(18))), Chunk("IEND")});
  decoder.LoadFromMemory(first);
  EXPECT_TRUE(decoder.Fields().HasTransparency);
  const Bytes former = PixelsOfBitmap(decoder);
  ASSERT_FALSE(former.empty());

  Bytes bad = {1, 2, 3};
  decoder.LoadFromMemory(bad);
  EXPECT_EQ(decoder.Width(), 2);
  EXPECT_EQ(decoder.ColorType(), 6);
  EXPECT_EQ(decoder.Fields().GammaValue, 7);
  EXPECT_FALSE(decoder.Fields().HasTransparency);
  EXPECT_EQ(decoder.Fields().TransparencyBytes, Bytes{1});
  EXPECT_EQ(PixelsOfBitmap(decoder), former);

  Bytes text = FileOf({Chunk("tEXt", {66}), Chunk("IEND")});
  decoder.LoadFromMemory(text);
  EXPECT_EQ(decoder.Fields().TextBlock, std::string("A\0B\0", 4));
}

TEST(CPngDecoder, SecondPictureTakesThePlaceOfTheFirst) {
  CPngDecoder decoder;
  Bytes first = FileOfSamples({2, 2, 8, 6}, Bytes(16, 3));
  decoder.LoadFromMemory(first);
  const Bytes second = FileOfSamples({3, 1, 8, 2}, {1, 2, 3, 4, 5, 6, 7, 8, 9});
  Bytes scratch = second;
  decoder.LoadFromMemory(scratch);
  EXPECT_EQ(PixelsOfBitmap(decoder), Decoded(second));
}

// ---- files ----

class CPngDecoderFile : public testing::Test {
 protected:
  void TearDown() override { std::filesystem::remove(path_); }
  void Write(const Bytes& bytes) {
    std::ofstream(path_, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  }
  std::filesystem::path path_ =
      std::filesystem::temp_directory_path() /
      (std::string("marklet-") + testing::UnitTest::GetInstance()->current_test_info()->name() + ".png");
};

TEST_F(CPngDecoderFile, IsDecodedFromItsPath) {
  const Bytes file = FileOfSamples({2, 2, 8, 6}, Bytes(16, 3));
  Write(file);
  CPngDecoder decoder;
  decoder.LoadFromFile(path_.u16string());
  EXPECT_EQ(PixelsOfBitmap(decoder), Decoded(file));
  EXPECT_EQ(decoder.Width(), 2);
}

TEST_F(CPngDecoderFile, MissingLeavesAnEmptyFileAndNoPicture) {
  std::filesystem::remove(path_);
  CPngDecoder decoder;
  decoder.LoadFromFile(path_.u16string());
  EXPECT_EQ(decoder.BitmapHandle(), nullptr);
  ASSERT_TRUE(std::filesystem::exists(path_));
  EXPECT_EQ(std::filesystem::file_size(path_), 0u);
}

TEST_F(CPngDecoderFile, ThatMayOnlyBeReadIsDecodedAllTheSame) {
  const Bytes file = FileOfSamples({2, 2, 8, 6}, Bytes(16, 3));
  Write(file);
  std::filesystem::permissions(path_, std::filesystem::perms::owner_read);
  CPngDecoder decoder;
  decoder.LoadFromFile(path_.u16string());
  std::filesystem::permissions(path_, std::filesystem::perms::owner_all);
  EXPECT_EQ(PixelsOfBitmap(decoder), Decoded(file));
}

TEST_F(CPngDecoderFile, MayHaveANameInAnyAlphabet) {
  path_ = std::filesystem::temp_directory_path() / u"marklet-\u03B5\u03B9\u03BA\u03CC\u03BD\u03B1-\u56FE.png";
  const Bytes file = FileOfSamples({2, 2, 8, 6}, Bytes(16, 3));
  Write(file);
  CPngDecoder decoder;
  decoder.LoadFromFile(path_.u16string());
  EXPECT_EQ(PixelsOfBitmap(decoder), Decoded(file));
}

TEST_F(CPngDecoderFile, ThatIsBadIsNotHeldOpen) {
  for (const Bytes& bad : {Bytes{1, 2, 3}, Signature(), File({1, 1, 8, 6}, {})}) {
    Write(bad);
    CPngDecoder decoder;
    decoder.LoadFromFile(path_.u16string());
    EXPECT_EQ(decoder.BitmapHandle(), nullptr);
    EXPECT_TRUE(std::filesystem::remove(path_));
  }
}

}  // namespace
}  // namespace marklet::png::test
