#include "platform/host_picture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <string>

#include "bitmaps/pixel_context.h"
#include "images/icon_files.h"
#include "platform/shared/picture_header.h"
#include "platform/system.h"
#include "platform/text.h"
#include "support/picture_files.h"
#include "support/processor_time.h"
#include "support/temporary_folder.h"

namespace marklet {
namespace {

using pictures::Bytes;

class HostPictures : public ::testing::Test {
 protected:
  std::u16string Make(const std::string& name, const Bytes& bytes) const {
    folder_.Write(name, std::string(bytes.begin(), bytes.end()));
    return folder_.Path(name).u16string();
  }
  PictureRef Load(const Bytes& bytes) const { return LoadPicture(Make("picture", bytes)); }

  testing::TemporaryFolder folder_;
};

std::uint32_t ColourAt(const PixelContext& context, Long x, Long y) {
  GdiFlush();
  const std::uint8_t* pixel = context.At(x, y);
  return pixel[0] | static_cast<std::uint32_t>(pixel[1]) << 8 | static_cast<std::uint32_t>(pixel[2]) << 16;
}

void Fill(const PixelContext& context, COLORREF colour) {
  const HBRUSH brush = CreateSolidBrush(colour);
  FillRect(context.Get(), {0, 0, context.Width(), context.Height()}, brush);
  DeleteObject(brush);
}

std::uint32_t Speckle(int x, int y) {
  return static_cast<std::uint32_t>(x * 0x0D0511 + y * 0x310B07) & 0xFFFFFF;
}

Long InPixels(Long himetric) {
  return static_cast<Long>(std::lround(himetric / 2540.0 * PixelsPerInch(nullptr)));
}

void ExpectSize(const PictureRef& picture, Long width, Long height) {
  ASSERT_NE(picture, nullptr);
  EXPECT_EQ(InPixels(PictureSize(picture).cx), width);
  EXPECT_EQ(InPixels(PictureSize(picture).cy), height);
}

TEST_F(HostPictures, OfBmpFilesAreDrawnTopRowIncluded) {
  const PictureRef picture = Load(pictures::Bmp(19, 7, Speckle));
  ExpectSize(picture, 19, 7);
  for (const int bits : {24, 32}) {
    const PixelContext context(19, 7, bits);
    EXPECT_TRUE(RenderPicture(picture, context.Get()));
    for (int y = 0; y < 7; ++y)
      for (int x = 0; x < 19; ++x) ASSERT_EQ(ColourAt(context, x, y), Speckle(x, y)) << x << "," << y;
  }
}

TEST_F(HostPictures, AreCutAtTheEdgesAndLeaveTheRestAsItIs) {
  const PictureRef picture = Load(pictures::Bmp(3, 3, Speckle));
  const PixelContext small(2, 2, 24), large(4, 4, 24);
  Fill(large, 0x112233);
  EXPECT_TRUE(RenderPicture(picture, small.Get()));
  EXPECT_TRUE(RenderPicture(picture, large.Get()));
  EXPECT_EQ(ColourAt(small, 1, 1), Speckle(1, 1));
  EXPECT_EQ(ColourAt(large, 2, 2), Speckle(2, 2));
  EXPECT_EQ(ColourAt(large, 3, 0), 0x332211u);
  EXPECT_EQ(ColourAt(large, 0, 3), 0x332211u);
}

TEST_F(HostPictures, OfGifFilesLeaveTheContextWhereTheyAreTransparent) {
  const std::vector<std::uint32_t> palette = {0xFF0000, 0x00FF00, 0x0000FF};
  const auto index = [](int x, int y) { return static_cast<unsigned>(x + y) % 3; };
  const PictureRef opaque = Load(pictures::Gif(20, 16, palette, index));
  const PictureRef clear = Load(pictures::Gif(20, 16, palette, index, 1));
  ExpectSize(opaque, 20, 16);
  const PixelContext context(20, 16, 32);
  Fill(context, KeyColour);
  EXPECT_TRUE(RenderPicture(clear, context.Get()));
  for (int y = 0; y < 16; ++y)
    for (int x = 0; x < 20; ++x)
      ASSERT_EQ(ColourAt(context, x, y), index(x, y) == 1 ? 0xFE03FDu : palette[index(x, y)])
          << x << "," << y;
  EXPECT_TRUE(RenderPicture(opaque, context.Get()));
  EXPECT_EQ(ColourAt(context, 1, 0), 0x00FF00u);
}

TEST_F(HostPictures, OfGifFilesAreTheFirstFrame) {
  const PictureRef picture = Load(pictures::Gif(
      4, 4, {0xFF0000, 0x00FF00}, [](int, int) { return 0u; }, {}, 3));
  ASSERT_NE(picture, nullptr);
  const PixelContext context(4, 4, 24);
  EXPECT_TRUE(RenderPicture(picture, context.Get()));
  EXPECT_EQ(ColourAt(context, 3, 3), 0xFF0000u);
}

TEST_F(HostPictures, OfJpgFilesAreDrawn) {
  const auto grey = [](int column, int row) { return (column * 90 + row * 37) % 256; };
  const PictureRef picture = Load(pictures::Jpeg(24, 16, grey));
  ExpectSize(picture, 24, 16);
  const PixelContext context(24, 16, 24);
  EXPECT_TRUE(RenderPicture(picture, context.Get()));
  for (int y = 0; y < 16; ++y)
    for (int x = 0; x < 24; ++x)
      ASSERT_EQ(ColourAt(context, x, y), static_cast<std::uint32_t>(grey(x / 8, y / 8)) * 0x010101u);
}

TEST_F(HostPictures, OfCurFilesAreDrawnThroughTheirMask) {
  const auto outside = [](int x, int y) { return x < 5 || y >= 20; };
  const PictureRef picture = Load(
      icons::FileOf({icons::Image{.width = 32,
                                  .height = 32,
                                  .bits = 24,
                                  .pixel = [&](int x, int y) { return outside(x, y) ? 0u : Speckle(x, y); },
                                  .transparent = outside}},
                    2));
  ExpectSize(picture, 32, 32);
  const PixelContext context(32, 32, 32);
  Fill(context, KeyColour);
  EXPECT_TRUE(RenderPicture(picture, context.Get()));
  for (int y = 0; y < 32; ++y)
    for (int x = 0; x < 32; ++x)
      ASSERT_EQ(ColourAt(context, x, y), outside(x, y) ? 0xFE03FDu : Speckle(x, y)) << x << "," << y;
}

TEST_F(HostPictures, GiveTheirBitmapUnlessTheyAreCursors) {
  const PictureRef bmp = Load(pictures::Bmp(19, 7, Speckle));
  const HBITMAP bitmap = PictureHandle(bmp);
  EXPECT_EQ(PictureHandle(bmp), bitmap);
  BITMAP record;
  ASSERT_TRUE(GetObjectA(bitmap, record));
  EXPECT_EQ(record.bmWidth, 19);
  EXPECT_EQ(record.bmHeight, 7);
  const PixelContext context(19, 7, 24);
  const HDC dc = CreateCompatibleDC(nullptr);
  const HGDIOBJ former = SelectObject(dc, bitmap);
  BitBlt(context.Get(), 0, 0, 19, 7, dc, 0, 0, SRCCOPY);
  SelectObject(dc, former);
  DeleteDC(dc);
  for (int y = 0; y < 7; ++y)
    for (int x = 0; x < 19; ++x) ASSERT_EQ(ColourAt(context, x, y), Speckle(x, y)) << x << "," << y;
  EXPECT_NE(PictureHandle(Load(pictures::Gif(
                4, 4, {0xFF0000}, [](int, int) { return 0u; }, 0))),
            nullptr);
  EXPECT_EQ(PictureHandle(Load(icons::FileOf({icons::Image{.width = 32, .height = 32, .bits = 24}}, 2))),
            nullptr);
  EXPECT_EQ(PictureHandle(nullptr), nullptr);
}

TEST_F(HostPictures, OfAnyPathAreRead) {
  const Bytes bmp = pictures::Bmp(2, 2, Speckle);
  EXPECT_NE(LoadPicture(Make("\xC3\xA4\xE5\x9B\xBE \xF0\x9F\x96\xBC.bmp", bmp)), nullptr);
  const std::u16string path = Make("read-only.bmp", bmp);
  using std::filesystem::perms;
  std::filesystem::permissions(path, perms::owner_read);
  EXPECT_NE(LoadPicture(path), nullptr);
  std::filesystem::permissions(path, perms::owner_all);
}

TEST_F(HostPictures, OfAMissingPathAreNoneAndMakeNoFile) {
  EXPECT_EQ(LoadPicture(folder_.Path("missing.bmp").u16string()), nullptr);
  EXPECT_EQ(LoadPicture(folder_.Path(".").u16string()), nullptr);
  EXPECT_EQ(LoadPicture(u""), nullptr);
  EXPECT_EQ(folder_.Entries(), 0);
}

TEST_F(HostPictures, LeaveTheirFileFree) {
  const std::u16string path = Make("a.bmp", pictures::Bmp(2, 2, Speckle));
  const PictureRef picture = LoadPicture(path);
  ASSERT_NE(picture, nullptr);
  // An open file couldn't be deleted on every system.
  EXPECT_TRUE(std::filesystem::remove(path));
}

TEST_F(HostPictures, OfOtherFormatsAreNone) {
  for (const Bytes& file : {Bytes{}, Bytes{'B'}, Bytes{0x89, 'P', 'N', 'G', 13, 10, 26, 10}, Bytes(100, 'x'),
                            Bytes{'B', 'M', 0, 0}, Bytes{'G', 'I', 'F', '8', '9', 'a'},
                            Bytes{0xFF, 0xD8, 0xFF}, Bytes{0, 0, 2, 0, 0, 0}, Bytes{0, 0, 2, 0, 9, 0}})
    EXPECT_EQ(Load(file), nullptr);
}

TEST(HostPicture, ThatIsNullHasNoSizeAndDrawsNothing) {
  const PixelContext context(2, 2, 24);
  EXPECT_EQ(PictureSize(nullptr), SIZE{});
  EXPECT_FALSE(RenderPicture(nullptr, context.Get()));
}

TEST_F(HostPictures, AreNotDrawnOnNoContext) {
  EXPECT_FALSE(RenderPicture(Load(pictures::Bmp(2, 2, Speckle)), nullptr));
}

// --- Files that lie about their size ----------------------------------------------------------------------

void PutAt(Bytes& file, std::size_t at, std::uint32_t value, int bytes) {
  for (int i = 0; i < bytes; ++i) file[at++] = static_cast<std::uint8_t>(value >> 8 * i);
}

Bytes BmpClaiming(std::uint32_t width, std::uint32_t height, std::uint32_t compression = 0) {
  Bytes file = pictures::Bmp(8, 8, Speckle);
  PutAt(file, 18, width, 4);
  PutAt(file, 22, height, 4);
  PutAt(file, 30, compression, 4);
  return file;
}

Bytes GifClaiming(std::uint32_t screen, std::uint32_t frame) {
  Bytes file = pictures::Gif(8, 8, {0xFF0000}, [](int, int) { return 0u; });
  const std::size_t descriptor = 13 + 3 * 128;
  PutAt(file, 6, screen | screen << 16, 4);
  PutAt(file, descriptor + 5, frame | frame << 16, 4);
  return file;
}

Bytes JpegClaiming(int width, int height) {
  Bytes file = pictures::Jpeg(8, 8, [](int, int) { return 0; });
  const std::size_t size = 20 + 69 + 5;
  for (const auto& [at, value] : {std::pair{size, height}, {size + 2, width}}) {
    file[at] = static_cast<std::uint8_t>(value >> 8);
    file[at + 1] = static_cast<std::uint8_t>(value);
  }
  return file;
}

Bytes CursorClaiming(std::uint32_t width, std::uint32_t height) {
  Bytes file = icons::FileOf({icons::Image{.bits = 24}}, 2);
  PutAt(file, 22 + 4, width, 4);
  PutAt(file, 22 + 8, height, 4);
  return file;
}

Bytes CursorOfPng(std::uint8_t high) {
  Bytes png = {0x89, 'P', 'N', 'G', 13,   10, 26, 10, 0, 0, 0, 13, 'I',
               'H',  'D', 'R', 0,   high, 0,  1,  0,  0, 0, 1, 8};
  return icons::FileOf({icons::Entry{.width = 1, .height = 1, .data = png}}, 2);
}

TEST(PictureFiles, OfHonestSizesAreTaken) {
  EXPECT_EQ(CheckPictureFile(BmpClaiming(8, 8)), PictureKind::kBmp);
  EXPECT_EQ(CheckPictureFile(BmpClaiming(8, 0xFFFFFFF8u)), PictureKind::kBmp) << "top-down";
  EXPECT_EQ(CheckPictureFile(BmpClaiming(1000, 1000, 1)), PictureKind::kBmp) << "compressed";
  EXPECT_EQ(CheckPictureFile(GifClaiming(1024, 1024)), PictureKind::kGif);
  EXPECT_EQ(CheckPictureFile(JpegClaiming(1024, 1024)), PictureKind::kJpeg);
  EXPECT_EQ(CheckPictureFile(CursorClaiming(256, 512)), PictureKind::kCursor);
  EXPECT_EQ(CheckPictureFile(CursorOfPng(0)), PictureKind::kCursor);
}

TEST(PictureFiles, OfMoreDataMayBeLarger) {
  Bytes file = JpegClaiming(4096, 4096);
  EXPECT_EQ(CheckPictureFile(file), std::nullopt);
  file.resize(32768 - 1);
  EXPECT_EQ(CheckPictureFile(file), std::nullopt) << "a bit for each block, and one is missing";
  file.resize(32768);
  EXPECT_EQ(CheckPictureFile(file), PictureKind::kJpeg);
  Bytes giant = JpegClaiming(8192, 8193);
  giant.resize(1 << 20);
  EXPECT_EQ(CheckPictureFile(giant), std::nullopt) << "no data are enough for this";
}

TEST(PictureFiles, OfAnOldHeaderAreTaken) {
  Bytes file = {'B', 'M', 0, 0, 0, 0, 0, 0, 0, 0,  26, 0, 0, 0, 12,
                0,   0,   0, 1, 0, 1, 0, 1, 0, 24, 0,  1, 2, 3, 0};
  EXPECT_EQ(CheckPictureFile(file), PictureKind::kBmp);
  file[18] = 11;
  EXPECT_EQ(CheckPictureFile(file), std::nullopt);
}

TEST_F(HostPictures, ThatClaimTwoBillionPixelsAreNoneAtOnce) {
  const double start = ProcessorSeconds();
  for (const Bytes& file :
       {BmpClaiming(46341, 46341), BmpClaiming(46341, 46341, 1), BmpClaiming(0x7FFFFFFF, 1),
        BmpClaiming(1, 0x80000000u), BmpClaiming(0x80000000u, 8), BmpClaiming(100, 100), BmpClaiming(0, 8),
        GifClaiming(65535, 8), GifClaiming(8, 65535), JpegClaiming(65535, 65535), JpegClaiming(0, 8),
        CursorClaiming(46341, 46341), CursorClaiming(257, 8), CursorClaiming(8, 514), CursorClaiming(0, 8),
        CursorOfPng(1), CursorOfPng(0x7F)})
    EXPECT_EQ(Load(file), nullptr);
  EXPECT_LT(ProcessorSeconds() - start, 2);
}

// Where the pixels start, how long the header is, how many colours there are.
TEST(PictureFiles, OfABmpWhosePartsLiePastItsEndAreRefused) {
  for (const std::size_t field : {10u, 14u, 46u})
    for (const std::uint32_t value : {0xFFFFFFCAu, 0x7FFFFFFFu, 300u}) {
      Bytes file = pictures::Bmp(8, 8, Speckle);
      ASSERT_LT(file.size(), 300u);
      PutAt(file, field, value, 4);
      EXPECT_EQ(CheckPictureFile(file), std::nullopt) << field << " " << value;
    }
}

// --- JPG files from the hands of others -------------------------------------------------------------------

// Where the parts of such a file stand: the frame header is followed by two tables.
constexpr std::ptrdiff_t kJpegTables = 20, kJpegFrame = 20 + 69, kJpegCodes = kJpegFrame + 13,
                         kJpegScanHeader = kJpegCodes + 33 + 22;

int GreyOfBlock(int column, int row) { return (column * 90 + row * 37) % 256; }

Bytes With(Bytes file, std::ptrdiff_t at, const Bytes& inserted) {
  file.insert(file.begin() + at, inserted.begin(), inserted.end());
  return file;
}

// A file whose picture ends in `scans` scans, of these pixels and at least this many bytes.
Bytes JpegOfScans(int width, int height, int scans, std::size_t bytes = 0) {
  Bytes file = JpegClaiming(width, height);
  const Bytes scan = {0xFF, 0xDA, 0, 8, 1, 1, 0, 0, 63, 0};
  for (int i = 1; i < scans; ++i) file.insert(file.end() - 2, scan.begin(), scan.end());
  file.insert(file.end() - 2, bytes > file.size() ? bytes - file.size() : 0, std::uint8_t{0});
  return file;
}

class OddJpegs : public HostPictures {
 protected:
  void ExpectTaken(const Bytes& file, const char* what) const {
    const PictureRef picture = Load(file);
    ExpectSize(picture, 24, 16);
    const PixelContext context(24, 16, 24);
    EXPECT_TRUE(RenderPicture(picture, context.Get())) << what;
    for (int y = 0; y < 16; ++y)
      for (int x = 0; x < 24; ++x)
        ASSERT_EQ(ColourAt(context, x, y), static_cast<std::uint32_t>(GreyOfBlock(x / 8, y / 8)) * 0x010101u)
            << what << " " << x << "," << y;
  }
  const Bytes plain_ = pictures::Jpeg(24, 16, GreyOfBlock);
};

TEST_F(OddJpegs, WithTheirCodeTablesInFrontOfTheFrameHeaderAreTaken) {
  Bytes file = plain_;
  std::rotate(file.begin() + kJpegFrame, file.begin() + kJpegCodes, file.begin() + kJpegScanHeader);
  ASSERT_EQ(file[kJpegFrame + 1], 0xC4);
  ExpectTaken(file, "Huffman");
  EXPECT_EQ(CheckPictureFile(With(plain_, kJpegFrame, {0xFF, 0xCC, 0, 4, 0, 0x10})), PictureKind::kJpeg)
      << "arithmetic";
}

TEST_F(OddJpegs, WithFillersRestartsAndStrayBytesAreTaken) {
  ExpectTaken(With(plain_, kJpegTables, {0xFF, 0xFF, 0xFF}), "fillers");
  ExpectTaken(With(plain_, kJpegFrame, {0xFF, 0xD0, 0xFF, 0x01}), "markers without a segment");
  ExpectTaken(With(plain_, kJpegFrame, {0, 1, 0xFF, 0, 'x'}), "stray bytes");
  ExpectTaken(With(plain_, 2, {0, 'x'}), "stray bytes after the first marker");
  ExpectTaken(With(plain_, kJpegScanHeader, {'x'}), "a stray byte between frame and scan");
}

TEST_F(OddJpegs, AreTakenWhateverFollowsTheirEnd) {
  Bytes file = plain_;
  for (int copies = 0; copies < 300; ++copies) file.insert(file.end(), plain_.begin(), plain_.end());
  ExpectTaken(file, "more pictures");
}

// A preview may lie in a segment of a picture, with markers of its own.
TEST_F(OddJpegs, AreTakenWhateverTheirSegmentsHold) {
  Bytes comment = {0xFF, 0xFE, 0x40, 0x02};
  for (int i = 0; i < 0x2000; ++i) comment.insert(comment.end(), {0xFF, 0xDA});
  ExpectTaken(With(plain_, kJpegTables, comment), "in front of the frame");
  ExpectTaken(With(plain_, kJpegScanHeader, comment), "after the frame");
}

TEST(PictureFiles, OfJpgWithoutOneFrameInFrontOfItsScansAreRefused) {
  const Bytes plain = JpegClaiming(8, 8);
  const Bytes frame(plain.begin() + kJpegFrame, plain.begin() + kJpegCodes);
  EXPECT_EQ(CheckPictureFile(With(plain, kJpegCodes, frame)), std::nullopt) << "two frames";
  EXPECT_EQ(CheckPictureFile(With(plain, kJpegScanHeader + 10, frame)), std::nullopt)
      << "a frame in the data";
  EXPECT_EQ(CheckPictureFile(With(plain, kJpegFrame, {0xFF, 0xDA, 0, 8, 1, 1, 0, 0, 63, 0})), std::nullopt);
  EXPECT_EQ(CheckPictureFile(With(plain, kJpegFrame, {0xFF, 0xD8})), std::nullopt) << "two starts";
  EXPECT_EQ(CheckPictureFile(With(plain, kJpegFrame, {0xFF, 0xD9})), std::nullopt) << "an end";
}

TEST(PictureFiles, OfJpgAreBoundByScansTimesPixels) {
  EXPECT_EQ(CheckPictureFile(JpegOfScans(1000, 1000, 240, 7000)), std::nullopt);
  EXPECT_EQ(CheckPictureFile(JpegOfScans(2000, 2000, 240, 19000)), std::nullopt);
  EXPECT_EQ(CheckPictureFile(JpegOfScans(8000, 8000, 240, 273000)), std::nullopt);
  EXPECT_EQ(CheckPictureFile(JpegOfScans(1024, 1024, 10, 2560)), PictureKind::kJpeg) << "a flat one";
  EXPECT_EQ(CheckPictureFile(JpegOfScans(1024, 1024, 11, 2560)), std::nullopt);
  EXPECT_EQ(CheckPictureFile(JpegOfScans(8736, 5856, 10, 1 << 20)), PictureKind::kJpeg) << "a camera's";
  EXPECT_EQ(CheckPictureFile(JpegOfScans(8192, 8192, 12, 1 << 20)), PictureKind::kJpeg);
  EXPECT_EQ(CheckPictureFile(JpegOfScans(8192, 8192, 13, 1 << 20)), std::nullopt);
  EXPECT_EQ(CheckPictureFile(JpegOfScans(8, 8, 256)), PictureKind::kJpeg);
  EXPECT_EQ(CheckPictureFile(JpegOfScans(8, 8, 257)), std::nullopt);
}

// Arithmetic codes take fractions of a bit.
TEST(PictureFiles, OfArithmeticJpgMayBeSmaller) {
  Bytes file = JpegOfScans(2048, 2048, 1, 1024);
  file[kJpegFrame + 1] = 0xC9;
  EXPECT_EQ(CheckPictureFile(file), PictureKind::kJpeg);
  file[kJpegFrame + 1] = 0xC2;
  EXPECT_EQ(CheckPictureFile(file), std::nullopt);
}

TEST(PictureFiles, OfACursorOutsideItsFileAreRefused) {
  Bytes file = icons::FileOf({icons::Image{.bits = 24}}, 2);
  file.pop_back();
  EXPECT_EQ(CheckPictureFile(file), std::nullopt);
}

TEST(PictureFiles, AreNeverReadPastTheirEnd) {
  for (Bytes file : {BmpClaiming(8, 8), GifClaiming(8, 8), JpegClaiming(8, 8), CursorClaiming(16, 32)})
    while (!file.empty()) {
      file.pop_back();
      file.shrink_to_fit();
      CheckPictureFile(file);
      Bytes cut = file;
      KeepFirstFrame(cut);
      EXPECT_LE(cut.size(), file.size());
    }
}

// Its pixels begin after the table.
TEST_F(HostPictures, OfGifFilesUseTheTableOfTheFirstFrame) {
  constexpr std::ptrdiff_t kFrame = 13 + 3 * 128;
  Bytes file = pictures::Gif(
      8, 8, {0xFF0000, 0x00FF00}, [](int x, int) { return x < 4 ? 0u : 1u; }, {}, 2);
  file[kFrame + 9] = 0x80 | 6;
  Bytes table = {0x12, 0x34, 0x56, 0xAB, 0xCD, 0xEF};
  table.resize(std::size_t{3} * 128);
  file = With(file, kFrame + 10, table);
  Bytes first = file;
  KeepFirstFrame(first);
  EXPECT_LT(first.size(), file.size());
  EXPECT_EQ(first.back(), 0x3B);
  const PictureRef picture = Load(file);
  ExpectSize(picture, 8, 8);
  const PixelContext context(8, 8, 24);
  EXPECT_TRUE(RenderPicture(picture, context.Get()));
  EXPECT_EQ(ColourAt(context, 3, 7), 0x123456u);
  EXPECT_EQ(ColourAt(context, 4, 0), 0xABCDEFu);
}

TEST(PictureFiles, OfGifLoseAllFramesButTheFirst) {
  const auto index = [](int, int) { return 0u; };
  Bytes many = pictures::Gif(8, 8, {0}, index, 0, 5);
  const Bytes one = pictures::Gif(8, 8, {0}, index, 0, 1);
  KeepFirstFrame(many);
  EXPECT_EQ(many, one);
  KeepFirstFrame(many);
  EXPECT_EQ(many, one);
}

// Of two controls the last counts; one of another length is none.
TEST(PictureFiles, OfGifLoseWhatTheirFirstFrameDoesNotNeed) {
  constexpr std::ptrdiff_t kBlocks = 13 + 3 * 128, kControl = 8;
  const Bytes plain = pictures::Gif(
      40, 40, {1, 2, 3}, [](int x, int y) { return static_cast<unsigned>(x * y) % 3; }, 1);
  const Bytes comment = {0x21, 0xFE, 2, 'h', 'i', 1, '!', 0}, program = {0x21, 0xFF, 1, 'x', 0};
  const Bytes former = {0x21, 0xF9, 4, 1, 9, 9, 2, 0}, broken = {0x21, 0xF9, 3, 1, 0, 2, 0};
  Bytes file = With(With(plain, kBlocks + kControl, program), kBlocks + kControl, broken);
  file = With(With(file, kBlocks, former), kBlocks, comment);
  EXPECT_EQ(KeepFirstFrame(file), 40 * 40);
  EXPECT_EQ(file, plain);
  // The same data in blocks of 7, some of which are shorter.
  Bytes cut(plain.begin(), plain.begin() + kBlocks + kControl + 11);
  Bytes data;
  for (std::size_t at = cut.size(); plain[at] != 0; at += plain[at] + std::size_t{1})
    data.insert(data.end(), plain.begin() + static_cast<std::ptrdiff_t>(at) + 1,
                plain.begin() + static_cast<std::ptrdiff_t>(at) + 1 + plain[at]);
  for (std::size_t at = 0; at < data.size();) {
    const std::size_t length = std::min(data.size() - at, at % 5 + 3);
    cut.push_back(static_cast<std::uint8_t>(length));
    cut.insert(cut.end(), data.begin() + static_cast<std::ptrdiff_t>(at),
               data.begin() + static_cast<std::ptrdiff_t>(at + length));
    at += length;
  }
  cut.insert(cut.end(), {0, 0x3B});
  EXPECT_GT(cut.size(), plain.size());
  KeepFirstFrame(cut);
  EXPECT_EQ(cut, plain);
}

TEST(PictureFiles, OfGifThatEndWithTheirFirstFrameStayAsTheyAre) {
  const Bytes plain = pictures::Gif(
      40, 40, {1}, [](int, int) { return 0u; }, {}, 1);
  for (std::size_t size = 0; size < plain.size(); ++size) {
    const Bytes cut(plain.begin(), plain.begin() + static_cast<std::ptrdiff_t>(size));
    Bytes kept = cut;
    EXPECT_EQ(KeepFirstFrame(kept), 0);
    EXPECT_EQ(kept, cut) << size;
  }
  Bytes large_frame = plain;
  large_frame[6] = large_frame[8] = 1;
  EXPECT_EQ(KeepFirstFrame(large_frame), 40 * 40);
}

// A loader may take a time for each block that grows with all that is left of the file.
TEST_F(HostPictures, OfGifFilesOfManyBlocksAreLoadedAtOnce) {
  constexpr std::ptrdiff_t kBlocks = 13 + 3 * 128;
  Bytes comment = {0x21, 0xFE};
  for (int i = 0; i < 200000; ++i) comment.insert(comment.end(), {1, 'x'});
  comment.push_back(0);
  const Bytes plain = pictures::Gif(
      16, 16, {0x405060}, [](int, int) { return 0u; }, {}, 1);
  const double start = ProcessorSeconds();
  ExpectSize(Load(With(plain, kBlocks, comment)), 16, 16);
  EXPECT_LT(ProcessorSeconds() - start, 0.5);
}

// --- Message boxes ----------------------------------------------------------------------------------------

TEST(MessageBox, GoesToTheConfigurationWhereItTakesThem) {
  std::u16string heard;
  Configuration().message_box = [&](std::u16string_view text, std::u16string_view title) {
    heard = std::u16string(title) + u": " + std::u16string(text);
  };
  EXPECT_EQ(MessageBoxW(u"no", u"A title", MB_ICONEXCLAMATION), 1);
  Configuration().message_box = nullptr;
  EXPECT_EQ(heard, u"A title: no");
}

}  // namespace
}  // namespace marklet
