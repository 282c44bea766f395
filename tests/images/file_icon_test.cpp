#include "images/file_icon.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "bitmaps/pixel_context.h"
#include "images/icon_files.h"
#include "support/temporary_folder.h"

namespace marklet {
namespace {

using icons::Bytes;
using icons::Entry;
using icons::EntryOf;
using icons::FileOf;
using icons::Image;

CFileIcon Opened(const Bytes& file) {
  CFileIcon icon;
  EXPECT_TRUE(icon.OpenIconBytes(file));
  return icon;
}

// 0xAARRGGBB of a 32-bit context.
std::uint32_t PixelAt(const PixelContext& context, Long x, Long y) {
  GdiFlush();
  const std::uint8_t* pixel = context.At(x, y);
  return pixel[0] | static_cast<std::uint32_t>(pixel[1]) << 8 | static_cast<std::uint32_t>(pixel[2]) << 16 |
         static_cast<std::uint32_t>(pixel[3]) << 24;
}

std::uint32_t ColourAt(const PixelContext& context, Long x, Long y) {
  return PixelAt(context, x, y) & 0xFFFFFF;
}

void Fill(const PixelContext& context, std::uint32_t pixel) {
  GdiFlush();
  for (Long y = 0; y < context.Height(); ++y)
    for (Long x = 0; x < context.Width(); ++x)
      for (int i = 0; i < 4; ++i) context.At(x, y)[i] = static_cast<std::uint8_t>(pixel >> 8 * i);
}

// --- Opening ----------------------------------------------------------------------------------------------

TEST(FileIcon, GivesSizesFromTheDirectoryAndBitCountsFromTheImages) {
  const CFileIcon icon = Opened(FileOf({Image{.width = 16, .height = 16, .bits = 32},
                                        Image{.width = 48, .height = 40, .bits = 8, .palette = {}},
                                        Image{.width = 24, .height = 24, .bits = 1, .directory_width = 99}}));
  EXPECT_EQ(icon.ImageCount(), 3);
  EXPECT_EQ(icon.ImageWidth(1), 16);
  EXPECT_EQ(icon.ImageBitCount(1), 32);
  EXPECT_EQ(icon.ImageWidth(2), 48);
  EXPECT_EQ(icon.ImageHeight(2), 40);
  EXPECT_EQ(icon.ImageBitCount(2), 8);
  EXPECT_EQ(icon.ImageWidth(3), 99);
  EXPECT_EQ(icon.ImageBitCount(3), 1);
}

TEST(FileIcon, CountsImagesFromOne) {
  const CFileIcon icon = Opened(FileOf({Image{}}));
  for (const Long index : {0, 2, -1, 2147483647}) {
    EXPECT_EQ(icon.ImageWidth(index), 0);
    EXPECT_EQ(icon.ImageHeight(index), 0);
    EXPECT_EQ(icon.ImageBitCount(index), 0);
  }
  EXPECT_EQ(icon.ImageWidth(1), 16);
}

struct BadFile {
  const char* name;
  Bytes file;
};

class RefusedIconFile : public ::testing::TestWithParam<BadFile> {};

TEST_P(RefusedIconFile, LeavesNoImages) {
  CFileIcon icon = Opened(FileOf({Image{}}));
  EXPECT_FALSE(icon.OpenIconBytes(GetParam().file));
  EXPECT_EQ(icon.ImageCount(), 0);
  EXPECT_EQ(icon.ImageWidth(1), 0);
}

Bytes Cut(Bytes file, std::size_t size) {
  file.resize(size);
  return file;
}

Entry WithRange(std::uint32_t offset, std::uint32_t size) {
  Entry entry = EntryOf(Image{});
  entry.offset = offset;
  entry.size = size;
  return entry;
}

INSTANTIATE_TEST_SUITE_P(
    , RefusedIconFile,
    ::testing::Values(
        BadFile{"OfNoBytes", {}}, BadFile{"WithHalfAHeader", {0, 0, 1, 0, 1}},
        BadFile{"WithNoImages", FileOf(std::vector<Image>{})},
        BadFile{"WithANegativeCount", FileOf({EntryOf(Image{})}, 1, 0xFFFF)},
        BadFile{"WithMoreImagesThanEntries",
                FileOf({Entry{.width = 1, .height = 1, .data = {}, .size = 0, .offset = 0}}, 1, 2)},
        BadFile{"WithHalfAnEntry", Cut(FileOf({Image{}}), 21)},
        BadFile{"ThatIsACursor", FileOf({Image{}}, 2)},
        BadFile{"WithAnotherReservedWord", FileOf({EntryOf(Image{})}, 1, {}, 1)},
        BadFile{"WhoseSecondImageEndsPastTheFile", FileOf({EntryOf(Image{}), WithRange(100, 1u << 30)})},
        BadFile{"WhoseImageStartsPastTheFile", FileOf({WithRange(0x80000000u, 1)})},
        BadFile{"WhoseRangeWrapsAround", FileOf({WithRange(0xFFFFFFFFu, 0xFFFFFFFFu)})},
        BadFile{"ThatLacksItsLastByte", Cut(FileOf({Image{}}), FileOf({Image{}}).size() - 1)}),
    [](const auto& bad) { return std::string(bad.param.name); });

TEST(FileIcon, TakesAnEmptyImageWhereverItIsSaidToLie) {
  EXPECT_EQ(Opened(FileOf({WithRange(0xFFFFFFFFu, 0)})).ImageCount(), 1);
}

// 32767 images of the same megabyte, which copies would make 32 gigabytes.
TEST(FileIcon, ThatRepeatsItsDataTakesNoMoreMemoryThanItsFile) {
  constexpr std::uint32_t kMegabyte = 1 << 20;
  std::vector<Entry> entries(32767,
                             Entry{.width = 16, .height = 16, .data = {}, .size = kMegabyte, .offset = 0});
  Bytes file = FileOf(entries);
  file.resize(std::max<std::size_t>(file.size(), kMegabyte));
  EXPECT_EQ(Opened(file).ImageCount(), 32767);
}

TEST(FileIcon, IsReadFromAFileWithAnyName) {
  const testing::TemporaryFolder folder;
  const Bytes bytes = FileOf({Image{}});
  folder.Write("Bild \xC3\xA4 \xE5\x9B\xBE.ico", std::string(bytes.begin(), bytes.end()));
  CFileIcon icon;
  EXPECT_TRUE(icon.OpenIcon(folder.Path("Bild \xC3\xA4 \xE5\x9B\xBE.ico").u16string()));
  EXPECT_EQ(icon.ImageCount(), 1);
}

TEST(FileIcon, IsReadFromAFileThatMayOnlyBeRead) {
  const testing::TemporaryFolder folder;
  const Bytes bytes = FileOf({Image{}});
  folder.Write("a.ico", std::string(bytes.begin(), bytes.end()));
  using std::filesystem::perms;
  std::filesystem::permissions(folder.Path("a.ico"), perms::owner_read | perms::group_read);
  CFileIcon icon;
  EXPECT_TRUE(icon.OpenIcon(folder.Path("a.ico").u16string()));
  std::filesystem::permissions(folder.Path("a.ico"), perms::owner_all);
}

TEST(FileIcon, OfAMissingPathFailsAndMakesNoFile) {
  const testing::TemporaryFolder folder;
  CFileIcon icon;
  EXPECT_FALSE(icon.OpenIcon(folder.Path("missing.ico").u16string()));
  EXPECT_EQ(icon.ImageCount(), 0);
  EXPECT_EQ(folder.Entries(), 0);
}

TEST(FileIcon, OfWidthByteZeroKeepsASizeOfZeroAndDrawsNothing) {
  const CFileIcon icon =
      Opened(FileOf({Image{.width = 16, .height = 16, .directory_width = 0, .directory_height = 0}}));
  EXPECT_EQ(icon.ImageWidth(1), 0);
  EXPECT_EQ(icon.ImageHeight(1), 0);
  const PixelContext context(16, 16, 32);
  Fill(context, 0x11223344);
  icon.DrawImage(context.Get(), 1, false, 0, 0, 0, 0, SRCCOPY);
  EXPECT_EQ(PixelAt(context, 0, 0), 0x11223344u);
}

// --- Sizes ------------------------------------------------------------------------------------------------

TEST(IconSizes, PalettesHaveTheColoursThatTheDepthCanTell) {
  for (const auto& [bits, count] : {std::pair{1, 2}, {4, 16}, {8, 256}, {16, 0}, {24, 0}, {32, 0}, {2, 0}}) {
    const BITMAPINFOHEADER header{.biBitCount = static_cast<std::uint16_t>(bits)};
    EXPECT_EQ(ColourCountOf(header), count) << bits;
    EXPECT_EQ(PaletteSize(header), 40 + 4 * count) << bits;
  }
}

TEST(IconSizes, SevenColoursUsedAreSevenEvenWithEightBits) {
  EXPECT_EQ(ColourCountOf({.biBitCount = 8, .biClrUsed = 7}), 7);
  EXPECT_EQ(PaletteSize({.biBitCount = 8, .biClrUsed = 7}), 68);
  EXPECT_EQ(PaletteSize({.biBitCount = 32, .biClrUsed = 7}), 68);
}

// --- Drawing ----------------------------------------------------------------------------------------------

// A colour for each place, unlike its neighbours.
std::uint32_t Speckle(int x, int y) {
  return static_cast<std::uint32_t>(x * 0x0D0511 + y * 0x310B07) & 0xFFFFFF;
}

TEST(FileIconDrawing, Of32BitsBringsItsAlpha) {
  const auto pixel = [](int x, int y) {
    return Speckle(x, y) | static_cast<std::uint32_t>(x * 16 + y) << 24;
  };
  const CFileIcon icon = Opened(FileOf({Image{.bits = 32, .pixel = pixel}}));
  const PixelContext context(16, 16, 32);
  Fill(context, 0xFFFFFFFF);
  icon.DrawImage(context.Get(), 1, false, 0, 0, 0, 0, SRCCOPY);
  for (int y = 0; y < 16; ++y)
    for (int x = 0; x < 16; ++x) ASSERT_EQ(PixelAt(context, x, y), pixel(x, y)) << x << "," << y;
}

TEST(FileIconDrawing, Of24BitsHasRowsOfWholeGroupsOfFourBytes) {
  const CFileIcon icon = Opened(FileOf({Image{.width = 5, .height = 3, .bits = 24, .pixel = Speckle}}));
  const PixelContext context(5, 3, 32);
  icon.DrawImage(context.Get(), 1, false, 0, 0, 0, 0, SRCCOPY);
  for (int y = 0; y < 3; ++y)
    for (int x = 0; x < 5; ++x) ASSERT_EQ(PixelAt(context, x, y), Speckle(x, y)) << x << "," << y;
}

TEST(FileIconDrawing, Of16BitsWidensFiveBitsToEight) {
  const CFileIcon icon = Opened(FileOf({Image{
      .width = 2, .height = 1, .bits = 16, .pixel = [](int x, int) { return x == 0 ? 0x7FFFu : 0x4210u; }}}));
  const PixelContext context(2, 1, 32);
  icon.DrawImage(context.Get(), 1, false, 0, 0, 0, 0, SRCCOPY);
  EXPECT_EQ(PixelAt(context, 0, 0), 0xFFFFFFu);
  EXPECT_EQ(PixelAt(context, 1, 0), 0x848484u);
}

struct IndexedDepth {
  int bits, colours;
};

class IndexedIcon : public ::testing::TestWithParam<IndexedDepth> {};

TEST_P(IndexedIcon, TakesItsColoursFromThePalette) {
  const auto [bits, colours] = GetParam();
  std::vector<std::uint32_t> palette;
  palette.reserve(static_cast<std::size_t>(colours));
  for (int i = 0; i < colours; ++i) palette.push_back(Speckle(i, 3));
  const auto index = [count = colours](int x, int y) {
    return static_cast<std::uint32_t>((x * 7 + y * 13) % count);
  };
  const CFileIcon icon =
      Opened(FileOf({Image{.width = 19, .height = 9, .bits = bits, .palette = palette, .pixel = index}}));
  const PixelContext context(19, 9, 32);
  icon.DrawImage(context.Get(), 1, false, 0, 0, 0, 0, SRCCOPY);
  for (int y = 0; y < 9; ++y)
    for (int x = 0; x < 19; ++x) ASSERT_EQ(PixelAt(context, x, y), palette[index(x, y)]) << x << "," << y;
}

INSTANTIATE_TEST_SUITE_P(, IndexedIcon,
                         ::testing::Values(IndexedDepth{1, 2}, IndexedDepth{4, 16}, IndexedDepth{8, 256}),
                         [](const auto& depth) { return "Of" + std::to_string(depth.param.bits) + "Bits"; });

TEST(FileIconDrawing, WithSevenColoursOfEightBitsFindsRowsAfterTheSeventh) {
  const std::vector<std::uint32_t> palette = {1, 2, 3, 4, 5, 6, 0xABCDEF};
  const CFileIcon icon = Opened(FileOf({Image{.width = 4,
                                              .height = 1,
                                              .bits = 8,
                                              .palette = palette,
                                              .pixel = [](int x, int) { return x == 3 ? 200u : 6u; },
                                              .transparent = [](int x, int) { return x == 1; },
                                              .colours_used = 7}}));
  const PixelContext context(4, 1, 32);
  icon.DrawImage(context.Get(), 1, false, 0, 0, 0, 0, SRCCOPY);
  EXPECT_EQ(PixelAt(context, 0, 0), 0xABCDEFu);
  EXPECT_EQ(PixelAt(context, 3, 0), 0u) << "a colour that the palette lacks";
  icon.DrawImage(context.Get(), 1, true, 0, 0, 0, 0, SRCCOPY);
  EXPECT_EQ(ColourAt(context, 0, 0), 0u);
  EXPECT_EQ(ColourAt(context, 1, 0), 0xFFFFFFu);
}

class IconMask : public ::testing::TestWithParam<int> {};

TEST_P(IconMask, IsBlackAndWhite) {
  const auto transparent = [](int x, int y) { return (x * 3 + y * 5) % 7 < 3; };
  const int bits = GetParam();
  const std::vector<std::uint32_t> palette(bits <= 8 ? std::size_t{1} << bits : 0, 0x123456);
  const CFileIcon icon = Opened(FileOf(
      {Image{.width = 37, .height = 11, .bits = bits, .palette = palette, .transparent = transparent}}));
  const PixelContext context(37, 11, 32);
  icon.DrawImage(context.Get(), 1, true, 0, 0, 0, 0, SRCCOPY);
  for (int y = 0; y < 11; ++y)
    for (int x = 0; x < 37; ++x)
      ASSERT_EQ(ColourAt(context, x, y), transparent(x, y) ? 0xFFFFFFu : 0u) << x << "," << y;
}

INSTANTIATE_TEST_SUITE_P(, IconMask, ::testing::Values(1, 4, 8, 24, 32),
                         [](const auto& bits) { return "Of" + std::to_string(bits.param) + "Bits"; });

// For widths up to 32 the colour rows of 1 bit take 4 bytes each, and header and palette take 48.
TEST(FileIconDrawing, Of1BitFindsItsMaskAtFourBytesARowAnd48) {
  for (const int width : {1, 16, 32}) {
    Bytes dib = icons::DibOf({.width = width, .height = 10, .bits = 1, .palette = {0, 0xFFFFFF}});
    ASSERT_EQ(dib.size(), 2u * 40 + 48);
    dib[10 * 4 + 48] = 0x80;  // the left pixel of the mask's bottom row
    const CFileIcon icon = Opened(FileOf({Entry{.width = width, .height = 10, .data = dib}}));
    const PixelContext context(width, 10, 32);
    icon.DrawImage(context.Get(), 1, true, 0, 0, 0, 0, SRCCOPY);
    EXPECT_EQ(ColourAt(context, 0, 9), 0xFFFFFFu);
    EXPECT_EQ(ColourAt(context, 0, 0), 0u);
  }
}

TEST(FileIconDrawing, CombinesWithWhatIsThere) {
  const CFileIcon icon = Opened(
      FileOf({Image{.width = 1, .height = 1, .bits = 24, .pixel = [](int, int) { return 0x0FF055u; }}}));
  const PixelContext context(1, 1, 32);
  Fill(context, 0x003C3C3C);
  icon.DrawImage(context.Get(), 1, false, 0, 0, 0, 0, SRCINVERT);
  EXPECT_EQ(ColourAt(context, 0, 0), 0x33CC69u);
  icon.DrawImage(context.Get(), 1, false, 0, 0, 0, 0, SRCAND);
  EXPECT_EQ(ColourAt(context, 0, 0), 0x03C041u);
}

// The way an icon gets onto a surface: colours exclusive-or, mask and, colours exclusive-or.
TEST(FileIconDrawing, InThreeStepsLeavesWhatIsThereWhereTheMaskIsWhite) {
  const auto transparent = [](int x, int y) { return (x + y) % 3 == 0; };
  for (const int bits : {4, 8, 24}) {
    const std::vector<std::uint32_t> palette(bits <= 8 ? std::size_t{1} << bits : 0, 0x8040C0);
    const CFileIcon icon =
        Opened(FileOf({Image{.bits = bits,
                             .palette = palette,
                             .pixel = [bits](int, int) { return bits == 24 ? 0x8040C0u : 3u; },
                             .transparent = transparent}}));
    const PixelContext context(16, 16, 32);
    Fill(context, 0x00FE03FD);
    icon.DrawImage(context.Get(), 1, false, 0, 0, 0, 0, SRCINVERT);
    icon.DrawImage(context.Get(), 1, true, 0, 0, 0, 0, SRCAND);
    icon.DrawImage(context.Get(), 1, false, 0, 0, 0, 0, SRCINVERT);
    for (int y = 0; y < 16; ++y)
      for (int x = 0; x < 16; ++x)
        ASSERT_EQ(ColourAt(context, x, y), transparent(x, y) ? 0xFE03FDu : 0x8040C0u) << bits;
  }
}

TEST(FileIconDrawing, GoesToThePlaceAndIsCutAtTheEdges) {
  const CFileIcon icon = Opened(FileOf({Image{.width = 3, .height = 2, .bits = 24, .pixel = Speckle}}));
  const PixelContext context(4, 3, 32);
  Fill(context, 0x00777777);
  icon.DrawImage(context.Get(), 1, false, 2, 1, 0, 0, SRCCOPY);
  for (int y = 0; y < 3; ++y)
    for (int x = 0; x < 4; ++x)
      ASSERT_EQ(ColourAt(context, x, y), x >= 2 && y >= 1 ? Speckle(x - 2, y - 1) : 0x777777u);
}

TEST(FileIconDrawing, StretchesToASizeAndTakesZeroAsItsOwn) {
  const CFileIcon icon = Opened(FileOf({Image{.width = 2, .height = 2, .bits = 24, .pixel = Speckle}}));
  const PixelContext context(6, 4, 32);
  icon.DrawImage(context.Get(), 1, false, 0, 0, 6, 0, SRCCOPY);
  for (int y = 0; y < 4; ++y)
    for (int x = 0; x < 6; ++x) ASSERT_EQ(ColourAt(context, x, y), y < 2 ? Speckle(x / 3, y) : 0u);
  icon.DrawImage(context.Get(), 1, false, 0, 0, 0, 4, SRCCOPY);
  EXPECT_EQ(ColourAt(context, 1, 3), Speckle(1, 1));
  icon.DrawImage(context.Get(), 1, false, 0, 0, -3, 4, SRCCOPY);
  EXPECT_EQ(ColourAt(context, 1, 3), Speckle(1, 1));
}

// --- Bitmaps, icons and pictures --------------------------------------------------------------------------

TEST(FileIcon, KeepsThePathThatWasOpenedLast) {
  const testing::TemporaryFolder folder;
  const Bytes bytes = FileOf({Image{}});
  folder.Write("a.ico", std::string(bytes.begin(), bytes.end()));
  CFileIcon icon;
  EXPECT_EQ(icon.FileName(), u"");
  icon.OpenIcon(folder.Path("a.ico").u16string());
  EXPECT_EQ(icon.FileName(), folder.Path("a.ico").u16string());
  icon.OpenIcon(u"no such file.ico");
  EXPECT_EQ(icon.FileName(), u"no such file.ico");
}

// What is kept is laid onto a context, to be looked at.
void Show(const ObjectRef& bitmap, const PixelContext& on) {
  const HDC dc = CreateCompatibleDC(nullptr);
  const HGDIOBJ former = SelectObject(dc, bitmap.get());
  ASSERT_NE(former, nullptr) << "it is selected nowhere else";
  BitBlt(on.Get(), 0, 0, on.Width(), on.Height(), dc, 0, 0, SRCCOPY);
  SelectObject(dc, former);
  DeleteDC(dc);
}

TEST(FileIconPainting, KeepsTheColoursAndTheMaskInTheirOwnSizeWithoutDrawing) {
  const auto transparent = [](int x, int y) { return (x + y) % 3 == 0; };
  const auto pixel = [](int x, int y) {
    return Speckle(x, y) | static_cast<std::uint32_t>(x * 16 + y) << 24;
  };
  const CFileIcon icon = Opened(
      FileOf({Image{.width = 9, .height = 7, .bits = 32, .pixel = pixel, .transparent = transparent}}));
  const PixelContext context(9, 7, 32), kept(9, 7, 32);
  const ObjectRef colours = icon.PaintImage(context.Get(), 1, false, false, 0, 0, 3, 3, SRCCOPY, true);
  BITMAP size;
  ASSERT_TRUE(GetObjectA(colours.get(), size));
  EXPECT_EQ(size.bmWidth, 9);
  EXPECT_EQ(size.bmHeight, 7);
  Show(colours, kept);
  for (int y = 0; y < 7; ++y)
    for (int x = 0; x < 9; ++x) ASSERT_EQ(PixelAt(kept, x, y), pixel(x, y)) << x << "," << y;
  Show(icon.PaintImage(nullptr, 1, true, false, 0, 0, 0, 0, SRCCOPY, true), kept);
  for (int y = 0; y < 7; ++y)
    for (int x = 0; x < 9; ++x) ASSERT_EQ(ColourAt(kept, x, y), transparent(x, y) ? 0xFFFFFFu : 0u);
  EXPECT_EQ(PixelAt(context, 4, 4), 0u) << "nothing is drawn";
}

TEST(FileIconPainting, DrawsAndKeepsAtOnceAndKeepsNothingUnasked) {
  const CFileIcon icon = Opened(FileOf({Image{.width = 3, .height = 3, .bits = 24, .pixel = Speckle}}));
  const PixelContext context(3, 3, 32), kept(3, 3, 32);
  Show(icon.PaintImage(context.Get(), 1, false, true, 0, 0, 0, 0, SRCCOPY, true), kept);
  EXPECT_EQ(ColourAt(context, 2, 1), Speckle(2, 1));
  EXPECT_EQ(ColourAt(kept, 2, 1), Speckle(2, 1));
  EXPECT_EQ(icon.PaintImage(context.Get(), 1, false, true, 0, 0, 0, 0, SRCCOPY, false), nullptr);
  EXPECT_EQ(icon.PaintImage(context.Get(), 2, false, true, 0, 0, 0, 0, SRCCOPY, true), nullptr)
      << "there is no second image";
}

class IconPicture : public ::testing::TestWithParam<int> {};

TEST_P(IconPicture, ShowsColoursThroughTheMask) {
  const auto transparent = [](int x, int y) { return x < 4 || y == 9; };
  const int bits = GetParam();
  const std::uint32_t colour = 0x40C080;
  const std::vector<std::uint32_t> palette =
      bits <= 8 ? std::vector<std::uint32_t>{0, colour} : std::vector<std::uint32_t>{};
  const CFileIcon icon =
      Opened(FileOf({Image{.bits = bits,
                           .palette = palette,
                           .pixel =
                               [=](int x, int y) {
                                 if (transparent(x, y)) return 0u;
                                 return bits <= 8 ? 1u : bits == 32 ? colour | 0xFF000000u : colour;
                               },
                           .transparent = transparent,
                           .colours_used = static_cast<std::uint32_t>(palette.size())}}));
  const PixelContext context(16, 16, 32);
  for (const PictureRef& picture :
       {icon.PictureFromImage(context.Get(), 1),
        CFileIcon::PictureFromIconHandle(icon.IconHandleFromImage(context.Get(), 1))}) {
    Fill(context, 0x00777777);
    ASSERT_TRUE(RenderPicture(picture, context.Get()));
    for (int y = 0; y < 16; ++y)
      for (int x = 0; x < 16; ++x)
        ASSERT_EQ(ColourAt(context, x, y), transparent(x, y) ? 0x777777u : colour) << x << "," << y;
  }
}

INSTANTIATE_TEST_SUITE_P(, IconPicture, ::testing::Values(1, 4, 8, 24, 32),
                         [](const auto& bits) { return "Of" + std::to_string(bits.param) + "Bits"; });

TEST(FileIconPictures, OfAnImageThatIsNotThereAreNone) {
  const CFileIcon icon = Opened(FileOf({Image{}}));
  EXPECT_EQ(icon.IconHandleFromImage(nullptr, 2), nullptr);
  EXPECT_EQ(icon.PictureFromImage(nullptr, 0), nullptr);
  EXPECT_EQ(CFileIcon::PictureFromIconHandle(nullptr), nullptr);
}

// --- Data that lie ----------------------------------------------------------------------------------------

TEST(FileIconDrawing, OfASizeOtherThanTheDirectorysStandsOnTheBottomLeft) {
  const CFileIcon icon = Opened(FileOf({Image{
      .width = 2, .height = 2, .bits = 24, .pixel = Speckle, .directory_width = 4, .directory_height = 3}}));
  const PixelContext context(4, 3, 32);
  Fill(context, 0x00777777);
  icon.DrawImage(context.Get(), 1, false, 0, 0, 0, 0, SRCCOPY);
  for (int y = 0; y < 3; ++y)
    for (int x = 0; x < 4; ++x)
      ASSERT_EQ(ColourAt(context, x, y), x < 2 && y >= 1 ? Speckle(x, y - 1) : 0u) << x << "," << y;
}

TEST(FileIconDrawing, OfDataCutShortShowsTheRowsThatAreThere) {
  const Bytes dib = icons::DibOf({.width = 4, .height = 4, .bits = 32, .pixel = [](int, int y) {
                                    return 0xFF000001u + static_cast<std::uint32_t>(y);
                                  }});
  for (const std::size_t rows : {0u, 1u, 3u}) {
    const CFileIcon icon =
        Opened(FileOf({Entry{.width = 4, .height = 4, .data = Cut(dib, 40 + rows * 16 + 14)}}));
    const PixelContext context(4, 4, 32);
    icon.DrawImage(context.Get(), 1, false, 0, 0, 0, 0, SRCCOPY);
    for (int y = 0; y < 4; ++y)
      EXPECT_EQ(PixelAt(context, 2, y),
                3 - y < static_cast<int>(rows) ? 0xFF000001u + static_cast<unsigned>(y) : 0u);
    icon.DrawImage(context.Get(), 1, true, 0, 0, 0, 0, SRCCOPY);
    EXPECT_EQ(ColourAt(context, 0, 0), 0u);
  }
}

TEST(FileIconDrawing, CountsOneByteAfterTheDataAsZero) {
  const Bytes dib =
      icons::DibOf({.width = 4, .height = 1, .bits = 32, .pixel = [](int, int) { return 0xFFFFFFFFu; }});
  const CFileIcon icon = Opened(FileOf({Entry{.width = 4, .height = 1, .data = Cut(dib, 40 + 15)}}));
  const PixelContext context(4, 1, 32);
  icon.DrawImage(context.Get(), 1, false, 0, 0, 0, 0, SRCCOPY);
  EXPECT_EQ(PixelAt(context, 0, 0), 0xFFFFFFFFu);
  EXPECT_EQ(PixelAt(context, 3, 0), 0x00FFFFFFu);
}

class LyingImage : public ::testing::TestWithParam<BadFile> {};

// Black where colours should be, and no crash.
TEST_P(LyingImage, DrawsNoColours) {
  const CFileIcon icon = Opened(FileOf({Entry{.width = 16, .height = 16, .data = GetParam().file}}));
  const PixelContext context(16, 16, 32);
  Fill(context, 0x00777777);
  icon.DrawImage(context.Get(), 1, true, 0, 0, 0, 0, SRCINVERT);
  icon.DrawImage(context.Get(), 1, false, 0, 0, 0, 0, SRCCOPY);
  for (int y = 0; y < 16; ++y)
    for (int x = 0; x < 16; ++x) ASSERT_EQ(PixelAt(context, x, y), 0u);
}

Bytes White(Image image) {
  image.pixel = [](int, int) { return 0xFFFFFFFFu; };
  return icons::DibOf(image);
}

Bytes WithDword(Bytes data, std::size_t offset, std::uint32_t value) {
  for (std::size_t i = 0; i < 4; ++i) data[offset + i] = static_cast<std::uint8_t>(value >> 8 * i);
  return data;
}

INSTANTIATE_TEST_SUITE_P(
    , LyingImage,
    ::testing::Values(BadFile{"OfNoData", {}}, BadFile{"WithHalfAHeader", Cut(White({}), 39)},
                      BadFile{"WithAHeaderOfAnotherKind", White({.header_size = 12})},
                      BadFile{"ThatIsCompressed", White({.compression = 1})},
                      BadFile{"WithTwoBitsAPixel", WithDword(White({}), 12, 2u << 16 | 1)},
                      BadFile{"OfNoWidth", WithDword(White({}), 4, 0)},
                      BadFile{"OfNegativeWidth", WithDword(White({}), 4, 0x80000000u)},
                      BadFile{"OfNoHeight", WithDword(White({}), 8, 1)},
                      BadFile{"OfNegativeHeight", WithDword(White({}), 8, 0xFFFFFFE0u)},
                      BadFile{"OfTwoBillionColours", White({.colours_used = 0x7FFFFFFFu})},
                      BadFile{"OfFourBillionColours", White({.colours_used = 0xFFFFFFFFu})}),
    [](const auto& bad) { return std::string(bad.param.name); });

TEST(FileIconDrawing, OfTheWidestImageWithTheMostPlanesEndsWithoutAMask) {
  for (const std::uint32_t width : {0x7FFFFFFFu, 0x80000000u, 0xB2B2B2B2u}) {
    const Bytes dib = WithDword(WithDword(White({}), 4, width), 12, 0xFFFFFFFFu);
    const CFileIcon icon = Opened(FileOf({Entry{.width = 16, .height = 255, .data = dib}}));
    const PixelContext context(16, 16, 32);
    Fill(context, 0x00777777);
    icon.DrawImage(context.Get(), 1, true, 0, 0, 0, 0, SRCCOPY);
    EXPECT_EQ(ColourAt(context, 0, 0), 0u);
  }
}

TEST(FileIconDrawing, OnNoContextDoesNothing) {
  Opened(FileOf({Image{}})).DrawImage(nullptr, 1, false, 0, 0, 0, 0, SRCCOPY);
}

}  // namespace
}  // namespace marklet
