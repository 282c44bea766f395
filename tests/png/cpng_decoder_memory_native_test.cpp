// What a decode takes of memory and time, whatever a file claims.
#include <gtest/gtest.h>
#include <zlib.h>

#include <ctime>
#include <filesystem>
#include <fstream>
#include <initializer_list>

#include "png/palettes.h"
#include "png/png_files.h"
#include "png/scanlines.h"
#include "support/heap_watch.h"
#include "support/temporary_folder.h"

namespace marklet::png::test {
namespace {

using Numbers = std::initializer_list<std::uint8_t>;

// Beside the rows and pixels: the bitmap's object, what a match may run over, strings.
constexpr std::size_t kSmallChange = 2000;

using CPngDecoderMemory = HeapTest;

Bytes Deflated(const Bytes& data, int level) {
  uLongf size = compressBound(data.size());
  Bytes stream(size);
  compress2(stream.data(), &size, data.data(), data.size(), level);
  stream.resize(size);
  return stream;
}

// Noise under Sub filters, or a flat area.
Bytes Rows(const Header& header, bool noise) {
  Random random(41);
  const std::size_t row = header.RowBytes() + 1;
  Bytes rows = noise ? random.Some(row * header.height) : Bytes(row * header.height, 0);
  for (std::size_t y = 0; y < header.height; ++y) rows[y * row] = 1;
  return rows;
}

std::size_t PixelBytes(const Header& header) { return std::size_t{header.width} * header.height * 4; }

using SlowCPngDecoderMemory = CPngDecoderMemory;

TEST_F(SlowCPngDecoderMemory, HoldsInflatedRowsAndPixelsBesideTheFileAndNoMore) {
  for (const std::uint32_t size : {1u, 16u, 64u, 300u})
    for (const std::uint8_t type : Numbers{2, 4, 6})
      for (const std::uint8_t depth : Numbers{8, 16})
        for (const bool noise : {false, true}) {
          const Header header{size, size, depth, type};
          const Bytes rows = Rows(header, noise);
          Bytes file = File(header, Deflated(rows, 6));
          CPngDecoder decoder;
          const std::size_t peak = PeakOfHeap([&] { decoder.LoadFromMemory(file); });
          ASSERT_NE(decoder.BitmapHandle(), nullptr);
          EXPECT_GT(peak, PixelBytes(header)) << "the pixels at least";
          EXPECT_LE(peak, rows.size() + PixelBytes(header) + kSmallChange)
              << size << " type " << int{type} << " depth " << int{depth};
        }
}

// The bytes of all scanlines.
std::size_t InflatedBytes(const Header& header) {
  if (header.interlace == 0) return (header.RowBytes() + 1) * header.height;
  std::size_t bytes = 0;
  for (const Adam7Pass& pass : kAdam7Passes) {
    Header rows = header;
    rows.width = static_cast<std::uint32_t>(pass.Width(static_cast<Long>(header.width)));
    const auto count = static_cast<std::size_t>(pass.Height(static_cast<Long>(header.height)));
    if (rows.width > 0) bytes += (rows.RowBytes() + 1) * count;
  }
  return bytes;
}

TEST_F(SlowCPngDecoderMemory, HoldsNoMoreForInterlacedPictures) {
  for (const std::uint32_t size : {1u, 16u, 301u})
    for (const std::uint8_t type : Numbers{2, 4, 6})
      for (const std::uint8_t depth : Numbers{8, 16}) {
        const Header header{size, size, depth, type, 1};
        Bytes file = File(header, StoredZlib(Bytes(InflatedBytes(header))));
        CPngDecoder decoder;
        const std::size_t peak = PeakOfHeap([&] { decoder.LoadFromMemory(file); });
        ASSERT_NE(decoder.BitmapHandle(), nullptr);
        EXPECT_LE(peak, InflatedBytes(header) + PixelBytes(header) + kSmallChange)
            << size << " type " << int{type} << " depth " << int{depth};
      }
}

// Their pixels become a bitmap too, though no caller gets it.
TEST_F(SlowCPngDecoderMemory, HoldsNoMoreForGrayAndPalettePictures) {
  for (const std::uint32_t size : {1u, 16u, 301u, 1000u})
    for (const std::uint8_t type : Numbers{0, 3})
      for (const std::uint8_t depth : Numbers{1, 2, 4, 8, 16})
        for (const std::uint8_t interlace : Numbers{0, 1}) {
          if (type == 3 && depth == 16) continue;
          const Header header{size, size, depth, type, interlace};
          // The decoder's estimate falls short of passes that end in many broken bytes: no bitmap then.
          const std::size_t estimate = (header.RowBytes() + 1 + interlace) * size;
          if (InflatedBytes(header) > estimate + Inflater::kSlack) continue;
          const std::size_t bits = depth == 2 || depth == 16 || interlace == 1 ? 8 : depth;
          const std::size_t pixels = (size * bits + 31) / 32 * 4 * size;
          Bytes file = File(header, StoredZlib(Bytes(InflatedBytes(header))));
          Mod().PendingBitmap = {};
          CPngDecoder decoder;
          const std::size_t peak = PeakOfHeap([&] { decoder.LoadFromMemory(file); });
          EXPECT_EQ(Mod().PendingBitmap.bits.size(), pixels);
          EXPECT_LE(peak, InflatedBytes(header) + pixels + kSmallChange)
              << size << " type " << int{type} << " depth " << int{depth} << " interlace " << int{interlace};
        }
}

// Of a large picture only a piece of the rows is there at a time.
TEST_F(CPngDecoderMemory, OfRowsIsBoundedForLargePictures) {
  const Header header{1500, 1500, 8, 6};
  Bytes file = File(header, Deflated(Rows(header, false), 6));
  CPngDecoder decoder;
  const std::size_t peak = PeakOfHeap([&] { decoder.LoadFromMemory(file); });
  ASSERT_NE(decoder.BitmapHandle(), nullptr);
  EXPECT_LE(peak, PixelBytes(header) + (256u << 10));
}

TEST_F(CPngDecoderMemory, HoldsTheFileOnceWhenItIsReadFromItsPath) {
  const Header header{300, 300, 8, 6};
  const Bytes rows = Rows(header, true);
  const Bytes file = File(header, Deflated(rows, 6));
  const ::marklet::testing::TemporaryFolder folder;
  const std::filesystem::path path = folder.Path("noise.png");
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(file.data()), static_cast<std::streamsize>(file.size()));
  CPngDecoder decoder;
  const std::size_t peak = PeakOfHeap([&] { decoder.LoadFromFile(path.u16string()); });
  ASSERT_NE(decoder.BitmapHandle(), nullptr);
  constexpr std::size_t kReading = 8192;
  EXPECT_LE(peak, file.size() + rows.size() + PixelBytes(header) + kReading + kSmallChange);
}

// ---- claims ----

struct Claim {
  std::uint32_t width, height;
};
constexpr Claim kClaims[] = {{46340, 46340}, {2000000000, 1}, {1, 2000000000}, {0x7FFFFFFF, 0x7FFFFFFF}};

void ExpectCheap(Bytes file, std::size_t most_bytes) {
  const std::clock_t start = std::clock();
  CPngDecoder decoder;
  const std::size_t peak = PeakOfHeap([&] { decoder.LoadFromMemory(file); });
  const double seconds = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
  EXPECT_EQ(decoder.BitmapHandle(), nullptr);
  EXPECT_LE(peak, most_bytes);
  EXPECT_LT(seconds, 0.5);
}

TEST_F(CPngDecoderMemory, TwoBillionPixelsInASmallFileCostNothing) {
  const Bytes zlib = Deflated(Bytes(1000, 0), 9);
  for (const Claim& claim : kClaims)
    for (const std::uint8_t type : Numbers{0, 2, 3, 4, 6})
      for (const std::uint8_t interlace : Numbers{0, 1, 2}) {
        SCOPED_TRACE(::testing::Message() << claim.width << 'x' << claim.height << " type " << int{type});
        ExpectCheap(File({claim.width, claim.height, 8, type, interlace}, zlib), 200u << 10);
      }
}

// The stream is long enough for the claim, if only it were made of the longest matches.
TEST_F(SlowCPngDecoderMemory, TwoBillionBytesCostNoMoreThanTheDataThatAreThere) {
  constexpr std::uint32_t kRowBytes = 107'000, kRows = 20'000;  // as much as numbers hold
  Random random(42);
  const Bytes zlib = StoredZlib(random.Some(2100000));
  for (const std::uint8_t type : Numbers{0, 2, 3, 4, 6})
    for (const std::uint8_t depth : Numbers{1, 2, 8, 16}) {
      SCOPED_TRACE(::testing::Message() << "type " << int{type} << " depth " << int{depth});
      Header header{8, kRows, depth, type};
      header.width = kRowBytes / static_cast<std::uint32_t>(header.RowBytes()) * 8;
      ASSERT_LE(header.RowBytes(), kRowBytes);
      ASSERT_GT(header.RowBytes(), kRowBytes * 9 / 10);
      ExpectCheap(File(header, zlib), 8u << 20);
    }
}

TEST_F(SlowCPngDecoderMemory, AClaimOfOneRowCostsNoMoreThanTheDataThatAreThere) {
  Random random(43);
  const Bytes zlib = StoredZlib(random.Some(1100000));
  ExpectCheap(File({260'000'000, 1, 8, 6}, zlib), 1u << 20);
  ExpectCheap(File({1, 200'000'000, 8, 6}, zlib), 1u << 20);
}

// Far more rows than bytes may be honest.
TEST_F(SlowCPngDecoderMemory, AFlatPictureIsDecodedHoweverSmallItsFile) {
  const Header header{3000, 3000, 8, 6};
  Bytes file = File(header, Deflated(Rows(header, false), 9));
  ASSERT_LT(file.size() * 500, PixelBytes(header));
  CPngDecoder decoder;
  decoder.LoadFromMemory(file);
  EXPECT_NE(decoder.BitmapHandle(), nullptr);
}

// A file of two billion bytes that aren't there: reading it would take as many of memory.
TEST_F(CPngDecoderMemory, AFileOfAnotherFormatIsNotRead) {
  const ::marklet::testing::TemporaryFolder folder;
  const std::filesystem::path path = folder.Path("giant.png");
  std::ofstream(path) << "no PNG";
  std::filesystem::resize_file(path, 2'000'000'000);
  CPngDecoder decoder;
  EXPECT_LT(PeakOfHeap([&] { decoder.LoadFromFile(path.u16string()); }), 8192u);
}

}  // namespace
}  // namespace marklet::png::test
