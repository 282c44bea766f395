// Gray and palette pictures: the bitmap that is left pending, which no caller gets.
#include "png/indexed.h"

#include <gtest/gtest.h>

#include <thread>

#include "png/palettes.h"
#include "png/png_files.h"

namespace marklet::png::test {
namespace {

const BitmapRecord& Pending(const Header& header, const Bytes& data, const Bytes& chunks_before_idat = {}) {
  Mod() = ModPng();
  EXPECT_EQ(Decoded(File(header, StoredZlib(data), chunks_before_idat)), Bytes());
  return Mod().PendingBitmap;
}

PaletteEntry Gray(std::uint8_t level) { return {level, level, level, 0}; }

TEST(Indexed, GrayOf8BitsIsAlignedUnderAGrayRamp) {
  const BitmapRecord& bitmap = Pending({3, 2, 8, 0}, {0, 1, 2, 3, 1, 4, 1, 1});
  EXPECT_EQ(bitmap.width, 3);
  EXPECT_EQ(bitmap.height, 2);
  EXPECT_EQ(bitmap.bit_count, 8);
  EXPECT_TRUE(bitmap.top_down);
  EXPECT_EQ(bitmap.colours_used, 0);
  EXPECT_EQ(bitmap.bits, (Bytes{1, 2, 3, 0, 4, 5, 6, 0}));
  ASSERT_EQ(bitmap.palette.size(), 256u);
  EXPECT_EQ(bitmap.palette[77], Gray(77));
}

TEST(Indexed, GrayOf1BitIsAlignedTwice) {
  // Rows of one byte on strides of four; the second time every byte counts as a row of its own.
  const BitmapRecord& bitmap = Pending({8, 3, 1, 0}, {0, 0xA1, 0, 0xB2, 0, 0xC3});
  EXPECT_EQ(bitmap.bit_count, 1);
  EXPECT_EQ(bitmap.bits, (Bytes{0xA1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(bitmap.palette, (std::vector<PaletteEntry>{Gray(0), Gray(255)}));
}

TEST(Indexed, GrayOf4BitsUsesTheSmallRamp) {
  const BitmapRecord& bitmap = Pending({8, 1, 4, 0}, {0, 0x01, 0x23, 0x45, 0x67});
  EXPECT_EQ(bitmap.bit_count, 4);
  EXPECT_EQ(bitmap.bits, (Bytes{0x01, 0x23, 0x45, 0x67}));
  ASSERT_EQ(bitmap.palette.size(), 16u);
  EXPECT_EQ(bitmap.palette[15], Gray(255));
  EXPECT_EQ(bitmap.palette[1], Gray(17));
}

TEST(Indexed, GrayOf2BitsIsSpread) {
  const BitmapRecord& bitmap = Pending({5, 2, 2, 0}, {0, 0b00011011, 0b11000000, 0, 0b11100100, 0b01000000});
  EXPECT_EQ(bitmap.bit_count, 8);
  EXPECT_EQ(bitmap.bits, (Bytes{0, 1, 2, 3, 3, 0, 0, 0, 3, 2, 1, 0, 1, 0, 0, 0}));
  EXPECT_EQ(bitmap.palette[2], Gray(170));
}

TEST(Indexed, GrayOf16BitsKeepsTheHighBytes) {
  const BitmapRecord& bitmap = Pending({4, 1, 16, 0}, {0, 1, 255, 2, 255, 3, 255, 4, 255});
  EXPECT_EQ(bitmap.bit_count, 8);
  EXPECT_EQ(bitmap.bits, (Bytes{1, 2, 3, 4}));
}

TEST(Indexed, InterlacedSamplesAreSpreadOverBytes) {
  // Passes of a picture of 3 by 3: (0,0); (2,0); (0,2) and (2,2); (1,0) and (1,2); the second row.
  const Bytes data = {0, 0b10000000, 0, 0b01000000, 0, 0b10010000,
                      0, 0b11000000, 0, 0b00000000, 0, 0b01101100};
  const BitmapRecord& bitmap = Pending({3, 3, 2, 3, 1}, data, Chunk("PLTE", {9, 8, 7}));
  EXPECT_EQ(bitmap.bit_count, 8);
  EXPECT_EQ(bitmap.bits, (Bytes{2, 3, 1, 0, 1, 2, 3, 0, 2, 0, 1, 0}));
  EXPECT_EQ(bitmap.palette[0], (PaletteEntry{7, 8, 9, 0}));
}

// The tail of a row counts the digits of a pass at or below it.
TEST(Indexed, InterlacedPictureOfWidth3AndDepth1) {
  // Pass 1: (0,0). Pass 4 takes column 2, pass 6 column 1; rows 1 comes whole.
  const Bytes data = {0, 0x80, 0, 0x80, 0, 0x00, 0, 0b10100000};
  const BitmapRecord& bitmap = Pending({3, 2, 1, 0, 1}, data);
  EXPECT_EQ(bitmap.bit_count, 8);
  ASSERT_EQ(bitmap.bits.size(), 8u);
  EXPECT_EQ(Bytes(bitmap.bits.begin(), bitmap.bits.begin() + 6), (Bytes{1, 0, 1, 1, 0, 1}))
      << "rows are not aligned";
  EXPECT_EQ(bitmap.palette[1], Gray(255));
}

TEST(Indexed, SubWorksAtTheDistanceOfOneByteBelow16Bits) {
  EXPECT_EQ(Pending({4, 1, 8, 0}, {1, 10, 1, 1, 1}).bits, (Bytes{10, 11, 12, 13}));
  EXPECT_EQ(Pending({8, 1, 4, 3}, {1, 0x10, 0x01, 0x01, 0x01}).bits, (Bytes{0x10, 0x11, 0x12, 0x13}));
}

TEST(Indexed, PaletteOf1BitWantsExactlySixBytes) {
  const Bytes row = {0, 0x80};
  const std::vector<PaletteEntry> black_and_white = {Gray(0), Gray(255)};
  EXPECT_EQ(Pending({1, 1, 1, 3}, row, Chunk("PLTE", {1, 2, 3, 4, 5, 6})).palette,
            (std::vector<PaletteEntry>{{3, 2, 1, 0}, {6, 5, 4, 0}}));
  EXPECT_EQ(Pending({1, 1, 1, 3}, row, Chunk("PLTE", {1, 2, 3})).palette, black_and_white);
  EXPECT_EQ(Pending({1, 1, 1, 3}, row, Chunk("PLTE", {1, 2, 3, 4, 5, 6, 7, 8, 9})).palette, black_and_white);
  EXPECT_EQ(Pending({1, 1, 1, 3}, row).palette, black_and_white);
}

TEST(Indexed, ShortPaletteEndsInZeros) {
  const auto palette = Pending({2, 1, 4, 3}, {0, 0x12}, Chunk("PLTE", {1, 2, 3, 4})).palette;
  EXPECT_EQ(palette[0], (PaletteEntry{3, 2, 1, 0}));
  EXPECT_EQ(palette[1], (PaletteEntry{0, 0, 4, 0}));
  EXPECT_EQ(palette[15], (PaletteEntry{}));
}

TEST(Indexed, PaletteOf8BitsIsAligned) {
  EXPECT_EQ(Pending({1, 2, 8, 3}, {0, 5, 2, 1}).bits, (Bytes{5, 0, 0, 0, 6, 0, 0, 0}));
  EXPECT_EQ(Pending({5, 1, 2, 3}, {0, 0b00011011, 0b11000000}).bits, (Bytes{0, 1, 2, 3, 3, 0, 0, 0}));
}

TEST(Indexed, PendingBitmapIsOverwrittenByTheNextDecodeOfTheThread) {
  Pending({1, 1, 8, 0}, {0, 1});
  Decoded(File({2, 1, 8, 0}, StoredZlib({0, 1, 2})));
  EXPECT_EQ(Mod().PendingBitmap.width, 2);
  std::thread([] { EXPECT_EQ(Mod().PendingBitmap.width, 0); }).join();
}

TEST(Indexed, OddInterlaceMethodsTakeTheDataAsRows) {
  EXPECT_EQ(Pending({4, 1, 8, 0, 2}, {1, 2, 3, 4}).bits, (Bytes{1, 2, 3, 4}));
  EXPECT_EQ(Pending({4, 2, 2, 0, 7}, {1}).width, 0) << "too few bytes";
}

TEST(Palettes, RampStepsAreRounded) {
  EXPECT_EQ(GrayPalette(1, false), (Bytes{0, 0, 0, 255, 255, 255}));
  EXPECT_EQ(GrayPalette(2, false)[5], 85);
  EXPECT_EQ(GrayPalette(4, false)[47], 255);
  EXPECT_EQ(GrayPalette(16, false).size(), 768u);
  EXPECT_EQ(GrayPalette(3, false), Bytes());
}

TEST(Palettes, RampsGoToTheirSlots) {
  Mod() = ModPng();
  GrayPalette(1, false);
  EXPECT_EQ(Mod().palette8[1], PaletteEntry());
  GrayPalette(1, true);
  EXPECT_EQ(Mod().palette8[1], Gray(255));
  GrayPalette(4, false);
  EXPECT_EQ(Mod().palette4[1], Gray(17));
  EXPECT_EQ(Mod().palette8[2], PaletteEntry());
  GrayPalette(4, true);
  EXPECT_EQ(Mod().palette8[2], Gray(34));
}

TEST(Palettes, DefaultPaletteComesInTwoKinds) {
  DefaultPalette1(1);
  EXPECT_EQ(Mod().palette1, (std::array<PaletteEntry, 2>{Gray(0), Gray(255)}));
  DefaultPalette1(0);
  EXPECT_EQ(Mod().palette1, (std::array<PaletteEntry, 2>{Gray(255), Gray(0)}));
}

TEST(Palettes, BackgroundOfGrayIsALevelOfTheRamp) {
  EXPECT_EQ(ParseBackground(Bytes{0, 2}, 0, 2, {}), MakeRgb(170, 170, 170));
  EXPECT_EQ(ParseBackground(Bytes{0, 4}, 0, 2, {}), 0u);
  EXPECT_EQ(ParseBackground(Bytes{0, 77}, 4, 8, {}), MakeRgb(77, 77, 77));
  EXPECT_EQ(ParseBackground(Bytes{1, 0}, 4, 16, {}), 0u) << "past the 256 entries";
  EXPECT_EQ(ParseBackground(Bytes{2}, 0, 8, {}), 0u);
}

TEST(Palettes, BackgroundOfColourIsScaledAndRounded) {
  EXPECT_EQ(ParseBackground(Bytes{0, 1, 0, 2, 0, 3}, 2, 8, {}), MakeRgb(1, 2, 3));
  EXPECT_EQ(ParseBackground(Bytes{0x80, 0, 0xFF, 0xFF, 0, 0x80}, 6, 16, {}), MakeRgb(128, 255, 0));
  EXPECT_EQ(ParseBackground(Bytes{0, 1, 0, 2}, 2, 8, {}), 0u);
  EXPECT_EQ(ParseBackground(Bytes{0, 1, 0, 2, 0, 3}, 2, 0, {}), 0u);
}

TEST(Palettes, BackgroundIndexIsHeldAgainstThePalettesHighestByte) {
  const Bytes palette = {1, 2, 3, 4, 5, 6};
  EXPECT_EQ(ParseBackground(Bytes{1}, 3, 8, palette), MakeRgb(4, 5, 6));
  EXPECT_EQ(ParseBackground(Bytes{2}, 3, 8, palette), 0u) << "accepted, but there is no such triple";
  EXPECT_EQ(ParseBackground(Bytes{5}, 3, 8, palette), 0u);
  EXPECT_EQ(ParseBackground(Bytes{0, 1}, 3, 8, palette), 0u);
  EXPECT_EQ(ParseBackground(Bytes{0}, 5, 8, palette), 0u);
}

TEST(Palettes, BackgroundSeesTheHeaderAndPaletteBeforeIt) {
  const auto background = [](const std::vector<Bytes>& chunks) {
    Bytes file = Signature();
    for (const Bytes& chunk : chunks) Append(file, chunk);
    Inflater inflater;
    ChunkFields fields;
    WalkChunks(file, inflater, fields);
    return fields.BackgroundColor;
  };
  const Bytes header = Chunk("IHDR", Header{1, 1, 8, 3}.Payload()), palette = Chunk("PLTE", {1, 2, 3}),
              bkgd = Chunk("bKGD", {0});
  EXPECT_EQ(background({header, palette, bkgd}), MakeRgb(1, 2, 3));
  EXPECT_EQ(background({header, bkgd, palette}), 0u);
  EXPECT_EQ(background({bkgd, palette, header}), 0u);
}

}  // namespace
}  // namespace marklet::png::test
