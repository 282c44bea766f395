// Images out of files.
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <set>
#include <string>

#include "bitmaps/cdib24.h"
#include "bitmaps/cdib32.h"
#include "images/icon_bytes.h"
#include "images/icon_files.h"
#include "images/png_pictures.h"
#include "platform/system.h"
#include "support/picture_files.h"
#include "support/temporary_folder.h"

namespace marklet {
namespace {

using Bytes = std::vector<std::uint8_t>;
using icons::Image;
using pictures::Png;
using Slot = std::pair<Long, Long>;  // pixels and depth index
using Slots = std::set<Slot>;

constexpr std::uint32_t kKey = 0xFE03FD;

std::uint32_t Speckle(int x, int y) {
  return static_cast<std::uint32_t>(x * 0x0D0511 + y * 0x310B07) & 0xFFFFFF;
}
std::uint32_t OpaqueSpeckle(int x, int y) { return Speckle(x, y) | 0xFF000000u; }

struct Message {
  std::u16string text, title;
  friend bool operator==(const Message&, const Message&) = default;
};

class LoadedImage : public ::testing::Test {
 protected:
  void SetUp() override {
    Configuration().message_box = [this](std::u16string_view text, std::u16string_view title) {
      messages_.push_back({std::u16string(text), std::u16string(title)});
    };
  }
  void TearDown() override { Configuration().message_box = nullptr; }

  void Load(const std::string& name, const Bytes& file) {
    folder_.Write(name, std::string(file.begin(), file.end()));
    image_.LoadFromFile(folder_.Path(name).u16string());
  }
  Slots Stored() const {
    Slots slots;
    for (Long size = 0; size < 8; ++size)
      for (Long depth = 0; depth < 5; ++depth)
        if (!image_.GetBytes(size, depth).bytes.empty()) slots.insert({SizeFromIndex(size), depth});
    return slots;
  }
  const ByteArray& BytesOf(Slot slot) const { return image_.GetBytes(SizeIndex(slot.first), slot.second); }
  // 0xRRGGBB, or with four channels 0xAARRGGBB, from the top left.
  std::uint32_t PixelAt(Slot slot, int x, int y) const {
    const ByteArray& array = BytesOf(slot);
    const Long channels = array.bounds.at(0).count, width = array.bounds.at(1).count,
               height = array.bounds.at(2).count;
    std::uint32_t pixel = 0;
    const Long first = ((height - 1 - y) * width + x) * channels;
    for (Long c = channels; c-- > 0;)
      pixel = pixel << 8 | array.bytes.at(static_cast<std::size_t>(first) + static_cast<std::size_t>(c));
    return pixel;
  }

  const testing::TemporaryFolder folder_;
  CIconBytes image_;
  std::vector<Message> messages_;
};

// --- PNG --------------------------------------------------------------------------------------------------

TEST_F(LoadedImage, OfAPngOfAStoredSizeKeepsItsPixelsStraight) {
  const auto pixel = [](int x, int y) {
    return Speckle(x, y) | static_cast<std::uint32_t>(x * 10 + y) << 24;
  };
  Load("a.png", Png(24, pixel));
  EXPECT_EQ(Stored(), (Slots{{24, 4}}));
  EXPECT_EQ(BytesOf({24, 4}).bounds, (std::vector<ByteArray::Bound>{{0, 4}, {0, 24}, {0, 24}}));
  for (int y = 0; y < 24; ++y)
    for (int x = 0; x < 24; ++x) {
      const std::uint32_t lost = x == 23 && y == 0 ? 0xFFFFFF : 0xFFFFFFFF;  // the top right alpha
      ASSERT_EQ(PixelAt({24, 4}, x, y), pixel(x, y) & lost) << x << "," << y;
    }
  EXPECT_TRUE(messages_.empty());
}

TEST_F(LoadedImage, OfAPngWithoutAlphaIsOpaque) {
  Load("a.PNG", Png(16, OpaqueSpeckle, false));
  EXPECT_EQ(Stored(), (Slots{{16, 4}}));
  EXPECT_EQ(PixelAt({16, 4}, 15, 0), OpaqueSpeckle(15, 0));
  EXPECT_EQ(PixelAt({16, 4}, 3, 9), OpaqueSpeckle(3, 9));
}

TEST_F(LoadedImage, OfAPngOfFortyPixelsIsStoredAt32AndNowhereElse) {
  Load("a.png", Png(40, OpaqueSpeckle));
  EXPECT_EQ(Stored(), (Slots{{32, 4}}));
}

TEST_F(LoadedImage, OfAPngOfEverySizeGoesToItsBand) {
  for (const auto& [pixels, stored] : std::vector<std::pair<int, Long>>{{1, 16},
                                                                        {22, 16},
                                                                        {23, 24},
                                                                        {28, 32},
                                                                        {42, 48},
                                                                        {64, 48},
                                                                        {68, 72},
                                                                        {92, 96},
                                                                        {127, 128},
                                                                        {250, 256}}) {
    image_.Reset();
    Load("a.png", Png(pixels, OpaqueSpeckle));
    EXPECT_EQ(Stored(), (Slots{{stored, 4}})) << pixels;
    EXPECT_EQ(BytesOf({stored, 4}).bytes.size(), static_cast<std::size_t>(stored * stored * 4)) << pixels;
  }
}

// Two by two pixels become one, and colours are weighed by alpha on the way.
TEST_F(LoadedImage, OfALargerPngIsResampledByArea) {
  Load("a.png", Png(512, [](int x, int y) { return (x + y) % 2 == 0 ? 0x80C8C8C8u : 0x80646464u; }));
  EXPECT_EQ(PixelAt({256, 4}, 7, 100), 0x804B4B4Bu);  // (200 * 128 / 255 + 100 * 128 / 255) / 2
}

TEST_F(LoadedImage, OfAPngThatIsNotSquareSaysSoAndStoresNothing) {
  Load("a.png", Png(16, OpaqueSpeckle));
  Load("b.png", Png(24, OpaqueSpeckle, true, 23));
  EXPECT_EQ(Stored(), (Slots{{16, 4}}));
  EXPECT_EQ(
      messages_,
      (std::vector<Message>{{u"This image is not supported. PNG images must have equal width and height.",
                             u"Corvane PNG Decoder"}}));
}

TEST_F(LoadedImage, OfAPngWithoutPixelsToDeliverIsNothing) {
  png::test::Header gray;
  gray.width = gray.height = 16;
  gray.color_type = 0;
  Load("a.png", Png(16, OpaqueSpeckle));
  const ByteArray before = image_.GetBytes(0, 4);
  Load("b.png", png::test::File(gray, png::test::StoredZlib(Bytes(272))));
  gray.width = gray.height = 20;
  Load("c.png", png::test::File(gray, png::test::StoredZlib(Bytes(420))));
  Load("d.png", {1, 2, 3});
  EXPECT_EQ(Stored(), (Slots{{16, 4}}));
  EXPECT_EQ(image_.GetBytes(0, 4), before);
  EXPECT_TRUE(messages_.empty());
}

TEST_F(LoadedImage, OfAMissingPngLeavesAnEmptyFileThere) {
  image_.LoadFromFile(folder_.Path("missing.png").u16string());
  EXPECT_EQ(Stored(), Slots{});
  EXPECT_TRUE(std::filesystem::exists(folder_.Path("missing.png")));
  EXPECT_EQ(std::filesystem::file_size(folder_.Path("missing.png")), 0u);
  image_.LoadFromFile(folder_.Path("missing.ico").u16string());
  image_.LoadFromFile(folder_.Path("missing.bmp").u16string());
  EXPECT_EQ(folder_.Entries(), 1);
}

TEST_F(LoadedImage, OfAnyFileIsReadFromAnyPathAndWithoutLeaveToWrite) {
  using std::filesystem::perms;
  const std::string name = "Bild \xC3\xA4\xE5\x9B\xBE \xF0\x9F\x96\xBC";
  for (const auto& [type, file] : {std::pair<std::string, Bytes>{".png", Png(16, OpaqueSpeckle)},
                                   {".ico", icons::FileOf({Image{.bits = 32}})},
                                   {".bmp", pictures::Bmp(16, 16, Speckle)}}) {
    image_.Reset();
    folder_.Write(name + type, std::string(file.begin(), file.end()));
    const auto path = folder_.Path(name + type);
    std::filesystem::permissions(path, perms::owner_read);
    image_.LoadFromFile(path.u16string());
    std::filesystem::permissions(path, perms::owner_all);
    EXPECT_EQ(Stored().size(), 1u) << type;
  }
}

// --- Icons ------------------------------------------------------------------------------------------------

TEST_F(LoadedImage, OfAnIconKeepsAnEntryForEachSizeAndDepth) {
  const std::vector<std::uint32_t> palette(256, 0x102030);
  Load("a.ico",
       icons::FileOf(
           {Image{.width = 16, .height = 16, .bits = 4, .palette = {palette.begin(), palette.begin() + 16}},
            Image{.width = 16, .height = 16, .bits = 8, .palette = palette},
            Image{.width = 32, .height = 32, .bits = 24}, Image{.width = 48, .height = 48, .bits = 32},
            Image{.width = 128, .height = 128, .bits = 32}}));
  EXPECT_EQ(Stored(), (Slots{{16, 1}, {16, 2}, {32, 3}, {48, 4}, {128, 4}}));
  EXPECT_EQ(BytesOf({16, 2}).bounds, (std::vector<ByteArray::Bound>{{0, 3}, {0, 16}, {0, 16}}));
  EXPECT_EQ(BytesOf({48, 4}).bounds, (std::vector<ByteArray::Bound>{{0, 4}, {0, 48}, {0, 48}}));
}

TEST_F(LoadedImage, OfAPathEndingInLowerCaseIcoTakesTheIconRoute) {
  for (const std::string name : {"a.ico", "b.Ico", "c.notanico", "dico"}) {
    image_.Reset();
    Load(name, icons::FileOf({Image{.bits = 32}}));
    EXPECT_EQ(Stored(), (Slots{{16, 4}})) << name;
  }
  image_.Reset();
  image_.LoadFromFile(u"");
  image_.LoadFromFile(u"o");
  EXPECT_EQ(Stored(), Slots{});
}

TEST_F(LoadedImage, OfAnIconHasKeyColourWhereTheMaskIsWhite) {
  const auto outside = [](int x, int y) { return (x - 8) * (x - 8) + (y - 8) * (y - 8) > 50; };
  Load("a.ico", icons::FileOf({Image{.bits = 24, .pixel = Speckle, .transparent = outside}}));
  for (int y = 0; y < 16; ++y)
    for (int x = 0; x < 16; ++x) ASSERT_EQ(PixelAt({16, 3}, x, y), outside(x, y) ? kKey : Speckle(x, y));
}

TEST_F(LoadedImage, OfAnIconWithAPaletteKeepsItsColoursAndKeyColourWhereTheMaskIsWhite) {
  const auto outside = [](int x, int y) { return (x * 5 + y * 3) % 7 == 0; };
  for (const auto& [bits, depth] : {std::pair{4, Long{1}}, {8, Long{2}}}) {
    const int colours = 1 << bits;
    std::vector<std::uint32_t> palette;
    palette.reserve(static_cast<std::size_t>(colours));
    for (int i = 0; i < colours; ++i) palette.push_back(Speckle(i, 7));
    const auto index = [=](int x, int y) { return static_cast<std::uint32_t>((x * 11 + y * 29) % colours); };
    Load("a.ico", icons::FileOf({Image{.width = 24,
                                       .height = 24,
                                       .bits = bits,
                                       .palette = palette,
                                       .pixel = index,
                                       .transparent = outside}}));
    ASSERT_EQ(CIconBytes::ByteCount(BytesOf({24, depth})), 3) << bits;
    for (int y = 0; y < 24; ++y)
      for (int x = 0; x < 24; ++x)
        ASSERT_EQ(PixelAt({24, depth}, x, y), outside(x, y) ? kKey : palette[index(x, y)]) << bits;
  }
}

TEST_F(LoadedImage, OfAnIconWithAlphaTakesNoNoticeOfTheMask) {
  const auto pixel = [](int x, int y) {
    return Speckle(x, y) | static_cast<std::uint32_t>(x * 16 + y) << 24;
  };
  Load("a.ico",
       icons::FileOf({Image{.bits = 32, .pixel = pixel, .transparent = [](int, int) { return true; }}}));
  for (int y = 0; y < 16; ++y)
    for (int x = 0; x < 16; ++x) ASSERT_EQ(PixelAt({16, 4}, x, y), pixel(x, y));
}

TEST_F(LoadedImage, OfAnIconWithTwoImagesForOneEntryKeepsTheLast) {
  const auto plain = [](std::uint32_t colour) { return [colour](int, int) { return colour; }; };
  Load("a.ico",
       icons::FileOf({Image{.bits = 24, .pixel = plain(1)}, Image{.bits = 32, .pixel = plain(2)},
                      Image{.bits = 24, .pixel = plain(3)}, Image{.bits = 16, .pixel = plain(0x7FFF)}}));
  EXPECT_EQ(Stored(), (Slots{{16, 3}, {16, 4}}));
  EXPECT_EQ(PixelAt({16, 3}, 0, 0), 0xFFFFFFu);
}

TEST_F(LoadedImage, OfAnIconOfOneBitIsDropped) {
  Load("a.ico", icons::FileOf({Image{.bits = 1, .palette = {0, 0xFFFFFF}}}));
  EXPECT_EQ(Stored(), Slots{});
}

TEST_F(LoadedImage, Of64PixelsIsDroppedFromIconsAndPicturesWithoutAWord) {
  Load("a.ico", icons::FileOf({Image{.width = 64, .height = 64, .bits = 32},
                               Image{.width = 64, .height = 16, .bits = 32}}));
  Load("a.bmp", pictures::Bmp(64, 64, Speckle));
  Load("b.bmp", pictures::Bmp(64, 10, Speckle));
  EXPECT_EQ(Stored(), Slots{});
  EXPECT_TRUE(messages_.empty());
  Load("a.png", Png(64, OpaqueSpeckle));
  EXPECT_EQ(Stored(), (Slots{{48, 4}}));
}

TEST_F(LoadedImage, OfAnIconOf256PixelsIsDropped) {
  Load("a.ico", icons::FileOf({Image{.width = 256, .height = 256, .bits = 32}}));
  EXPECT_EQ(Stored(), Slots{});
}

TEST_F(LoadedImage, OfAnIconOfAnotherSizeStandsInTheFirstSlotWithItsOwnBounds) {
  Load("a.ico", icons::FileOf({Image{.width = 18, .height = 20, .bits = 24, .pixel = Speckle}}));
  EXPECT_EQ(Stored(), (Slots{{16, 3}}));
  EXPECT_EQ(BytesOf({16, 3}).bounds, (std::vector<ByteArray::Bound>{{0, 3}, {0, 20}, {0, 20}}));
  for (int y = 0; y < 20; ++y)
    for (int x = 0; x < 20; ++x)
      ASSERT_EQ(PixelAt({16, 3}, x, y), x < 18 ? Speckle(x, y) : kKey) << x << "," << y;
}

// It would go to the same entry, but has no pixels to put there.
TEST_F(LoadedImage, OfAnIconWithAnImageOfNoHeightKeepsTheOneBeforeIt) {
  for (const int bits : {24, 32}) {
    image_.Reset();
    Load("a.ico", icons::FileOf({Image{.bits = bits, .pixel = OpaqueSpeckle},
                                 Image{.bits = bits, .pixel = Speckle, .directory_height = 0},
                                 Image{.bits = bits, .pixel = Speckle, .directory_width = 0}}));
    EXPECT_EQ(Stored(), (Slots{{16, bits == 32 ? 4 : 3}}));
    EXPECT_EQ(PixelAt({16, bits == 32 ? 4 : 3}, 3, 5) & 0xFFFFFF, Speckle(3, 5));
    EXPECT_EQ(PixelAt({16, bits == 32 ? 4 : 3}, 3, 5) >> 24, bits == 32 ? 255u : 0u);
  }
}

TEST_F(LoadedImage, OfAnIconWithAlphaIsAsWideAsItIs) {
  Load("a.ico", icons::FileOf({Image{.width = 18, .height = 24, .bits = 32}}));
  EXPECT_EQ(BytesOf({24, 4}).bounds, (std::vector<ByteArray::Bound>{{0, 4}, {0, 18}, {0, 24}}));
}

TEST_F(LoadedImage, OfABadIconLeavesAllAsItIs) {
  Load("a.png", Png(16, OpaqueSpeckle));
  Bytes file = icons::FileOf({Image{.bits = 32}, Image{.width = 24, .height = 24, .bits = 32}});
  file.pop_back();
  Load("a.ico", file);
  Load("b.ico", icons::FileOf({Image{.bits = 32}}, 2));
  EXPECT_EQ(Stored(), (Slots{{16, 4}}));
  EXPECT_TRUE(messages_.empty());
}

// Each image is the whole file, of which all but the last is thrown away.
TEST_F(LoadedImage, OfAnIconWithThousandsOfImagesDrawsEachEntryOnce) {
  icons::Entry entry = icons::EntryOf(Image{.width = 255, .height = 255, .bits = 24});
  std::vector<icons::Entry> entries(30000, icons::Entry{.width = 255, .height = 255, .data = {}, .size = 40});
  entries.push_back(entry);
  for (icons::Entry& copy : entries) copy.offset = 6 + 16 * 30001;
  Load("a.ico", icons::FileOf(entries));
  EXPECT_EQ(Stored(), (Slots{{16, 3}}));
}

// A bit count that doesn't exist counts as alpha's depth, and still has three channels.
TEST_F(LoadedImage, OfAnIconWithUnknownBitsIsAllKeyColour) {
  Bytes dib = icons::DibOf(Image{.bits = 24, .pixel = Speckle});
  dib[14] = 'D';
  dib[15] = 'R';
  Load("a.ico", icons::FileOf({icons::Entry{.width = 16, .height = 16, .data = dib}}));
  EXPECT_EQ(Stored(), (Slots{{16, 4}}));
  EXPECT_EQ(CIconBytes::ByteCount(BytesOf({16, 4})), 3);
}

// --- Pictures ---------------------------------------------------------------------------------------------

TEST_F(LoadedImage, OfAPictureOf16PixelsLosesItsCornersColour) {
  const auto colour = [](int x, int y) { return x < 4 ? 0x123456u : Speckle(x, y) | 1; };
  Load("a.bmp", pictures::Bmp(16, 16, colour));
  EXPECT_EQ(Stored(), (Slots{{16, 3}}));
  EXPECT_EQ(CIconBytes::ByteCount(BytesOf({16, 3})), 3);
  for (int y = 0; y < 16; ++y)
    for (int x = 0; x < 16; ++x)
      ASSERT_EQ(PixelAt({16, 3}, x, y), x < 4 ? kKey : colour(x, y)) << x << "," << y;
}

TEST_F(LoadedImage, OfASmallPictureFillsTheTopLeftOf16Pixels) {
  for (const auto& [width, height] : {std::pair{16, 15}, {13, 13}}) {
    const auto colour = [](int x, int y) {
      return x == 0 && y == 0 ? 0u : 0x808000u + static_cast<unsigned>(x + y);
    };
    Load("a.bmp", pictures::Bmp(width, height, colour));
    for (int y = 0; y < 16; ++y)
      for (int x = 0; x < 16; ++x) {
        const bool inside = x < width && y < height && x + y > 0;
        ASSERT_EQ(PixelAt({16, 3}, x, y), inside ? colour(x, y) : kKey) << x << "," << y;
      }
  }
  EXPECT_TRUE(messages_.empty());
}

TEST_F(LoadedImage, OfAnotherSquareIsResizedByItsBand) {
  for (const auto& [pixels, stored] : std::vector<std::pair<int, Long>>{
           {15, 16}, {17, 16}, {24, 24}, {32, 32}, {40, 32}, {48, 48}, {200, 128}, {300, 256}}) {
    image_.Reset();
    Load("a.bmp", pictures::Bmp(pixels, pixels, [](int x, int) { return x == 0 ? 0u : 0x405060u; }));
    EXPECT_EQ(Stored(), (Slots{{stored, 3}})) << pixels;
    EXPECT_EQ(PixelAt({stored, 3}, 0, 5), kKey) << pixels;
    EXPECT_EQ(PixelAt({stored, 3}, static_cast<int>(stored) - 2, 5), 0x405060u) << pixels;
  }
}

TEST_F(LoadedImage, OfASquareOfAStoredSizeIsNotResized) {
  Load("a.bmp", pictures::Bmp(32, 32, [](int x, int y) { return Speckle(x, y) | 1; }));
  for (int y = 0; y < 32; ++y)
    for (int x = 1; x < 32; ++x) ASSERT_EQ(PixelAt({32, 3}, x, y), Speckle(x, y) | 1);
}

TEST_F(LoadedImage, OfAPictureThatIsNotSquareSaysSoAndStoresNothing) {
  for (const auto& [width, height] : {std::pair{15, 16}, {32, 31}, {10, 64}})
    Load("a.bmp", pictures::Bmp(width, height, Speckle));
  EXPECT_EQ(Stored(), Slots{});
  const Message message = {u"This image is not supported. Images must have equal width and height.",
                           u"Corvane Image Renderer"};
  EXPECT_EQ(messages_, (std::vector<Message>{message, message, message}));
}

TEST_F(LoadedImage, OfAGifKeepsItsTransparency) {
  Load("a.gif", pictures::Gif(
                    16, 16, {0xFF0000, 0x00FF00, 0x0000FF},
                    [](int x, int) { return x < 5   ? 1u
                                            : x < 9 ? 2u
                                                    : 0u; }, 1));
  EXPECT_EQ(Stored(), (Slots{{16, 3}}));
  EXPECT_EQ(PixelAt({16, 3}, 0, 0), kKey);
  EXPECT_EQ(PixelAt({16, 3}, 6, 3), 0x0000FFu);
  EXPECT_EQ(PixelAt({16, 3}, 15, 15), 0xFF0000u);
}

TEST_F(LoadedImage, OfACursorKeepsItsTransparency) {
  Load("a.cur", icons::FileOf({Image{.width = 32,
                                     .height = 32,
                                     .bits = 24,
                                     .pixel = [](int x, int) { return x < 9 ? 0u : 0xFF8000u; },
                                     .transparent = [](int x, int) { return x < 9; }}},
                              2));
  EXPECT_EQ(Stored(), (Slots{{32, 3}}));
  EXPECT_EQ(PixelAt({32, 3}, 3, 3), kKey);
  EXPECT_EQ(PixelAt({32, 3}, 20, 3), 0xFF8000u);
}

// A corner of 10; next to it 22, which is close, and 23, which isn't.
int GreyNearTheCorner(int column, int row) { return row == 1 ? 200 : column == 0 ? 10 : 22 + row; }

TEST_F(LoadedImage, OfAJpgTakesColoursCloseToTheCornersForTransparent) {
  Load("a.jpg", pictures::Jpeg(16, 16, GreyNearTheCorner));
  EXPECT_EQ(Stored(), (Slots{{16, 3}}));
  EXPECT_EQ(PixelAt({16, 3}, 0, 0), kKey);
  EXPECT_EQ(PixelAt({16, 3}, 8, 0), kKey);
  EXPECT_EQ(PixelAt({16, 3}, 0, 8), 0xC8C8C8u);
}

TEST_F(LoadedImage, OfAJpegByItsLongNameTakesTheExactCorner) {
  Load("a.jpeg", pictures::Jpeg(16, 16, GreyNearTheCorner));
  EXPECT_EQ(PixelAt({16, 3}, 0, 0), kKey);
  EXPECT_EQ(PixelAt({16, 3}, 8, 0), 0x161616u);
}

TEST_F(LoadedImage, OfANameThatSaysJpgIsFuzzyWhateverItHolds) {
  Load("bmp.Jpg", pictures::Bmp(16, 16, [](int x, int) {
         return x < 8 ? 0x0A0A0Au : x < 12 ? 0x160A0Au : 0x0A170Au;
       }));
  EXPECT_EQ(PixelAt({16, 3}, 9, 9), kKey);
  EXPECT_EQ(PixelAt({16, 3}, 13, 9), 0x0A170Au);
}

TEST_F(LoadedImage, KeepsThePictureThatTheHostLoadedUntilTheNextFile) {
  EXPECT_EQ(image_.Picture(), nullptr);
  Load("a.bmp", pictures::Bmp(20, 20, Speckle));
  ASSERT_NE(image_.Picture(), nullptr);
  const PictureRef former = image_.Picture();
  Load("b.bmp", pictures::Bmp(20, 21, Speckle));
  EXPECT_NE(image_.Picture(), nullptr) << "one that isn't square is kept too";
  EXPECT_NE(image_.Picture(), former);
  for (const auto& [name, file] : {std::pair<std::string, Bytes>{"a.png", Png(16, OpaqueSpeckle)},
                                   {"a.ico", icons::FileOf({Image{.bits = 32}})},
                                   {"a.txt", {1, 2, 3}}}) {
    Load("a.bmp", pictures::Bmp(20, 20, Speckle));
    ASSERT_NE(image_.Picture(), nullptr);
    Load(name, file);
    EXPECT_EQ(image_.Picture(), nullptr) << name;
  }
}

TEST_F(LoadedImage, OfAnythingElseIsNothing) {
  Load("a.txt", {'h', 'e', 'l', 'l', 'o'});
  Load("png.dat", Png(16, OpaqueSpeckle));
  Load("x", {});
  EXPECT_EQ(Stored(), Slots{});
  EXPECT_TRUE(messages_.empty());
}

TEST_F(LoadedImage, OfFilesThatClaimTwoBillionPixelsIsNothing) {
  png::test::Header header;
  header.width = header.height = 46341;
  Load("a.png", png::test::File(header, png::test::StoredZlib(Bytes(100))));
  Bytes bmp = pictures::Bmp(16, 16, Speckle);
  for (const std::size_t at : {18u, 22u}) {
    bmp[at] = 0x05;
    bmp[at + 1] = 0xB5;
  }
  Load("a.bmp", bmp);
  EXPECT_EQ(Stored(), Slots{});
}

// --- The store --------------------------------------------------------------------------------------------

TEST_F(LoadedImage, GathersWhatOneFileAfterAnotherHolds) {
  image_.PutKey(u"key");
  Load("a.png", Png(16, OpaqueSpeckle));
  Load("b.bmp", pictures::Bmp(16, 16, Speckle));
  Load("c.ico", icons::FileOf({Image{.width = 32, .height = 32, .bits = 32}}));
  EXPECT_EQ(Stored(), (Slots{{16, 4}, {16, 3}, {32, 4}}));
  EXPECT_TRUE(image_.HasImage16());
  EXPECT_FALSE(image_.HasImage24());
  EXPECT_TRUE(image_.HasImage32());
  image_.Reset();
  EXPECT_EQ(Stored(), Slots{});
  EXPECT_EQ(image_.Key(), u"key");
}

TEST(IconBytes, GivesAnEmptyArrayOutsideItsEntries) {
  CIconBytes image;
  image.SetBytes(0, 5, OneDimension({1}));
  image.SetBytes(8, 0, OneDimension({1}));
  image.SetBytes(-1, 0, OneDimension({1}));
  for (const auto& [size, depth] : {std::pair{0, 5}, {8, 0}, {-1, 0}, {0, -1}})
    EXPECT_EQ(image.GetBytes(size, depth), ByteArray{});
}

TEST(IconBytes, CountsChannels) {
  CDib24 surface;
  ASSERT_TRUE(surface.Create(16, 16));
  CIconBytes image;
  image.StoreBits(0, 3, 24, 0, 0, 16, 16, surface.hDC());
  image.StoreBits(0, 4, 32, 0, 0, 16, 16, surface.hDC());
  EXPECT_EQ(CIconBytes::ByteCount(image.GetBytes(0, 3)), 3);
  EXPECT_EQ(CIconBytes::ByteCount(image.GetBytes(0, 4)), 4);
  EXPECT_EQ(CIconBytes::ByteCount(image.GetBytes(0, 2)), 0);
}

TEST(IconBytes, StoresNothingAtDepthZeroOrOutside) {
  CDib24 surface;
  ASSERT_TRUE(surface.Create(16, 16));
  CIconBytes image;
  for (const auto& [size, depth] : {std::pair{0, 0}, {0, 5}, {0, -1}, {8, 4}, {-1, 4}})
    image.StoreBits(size, depth, 32, 0, 0, 16, 16, surface.hDC());
  for (Long size = 0; size < 8; ++size) EXPECT_FALSE(image.HasImage(size));
}

TEST(IconBytes, OfTheLowestDepthAloneIsNoImage) {
  CIconBytes image;
  image.SetBytes(2, 0, OneDimension({1, 2, 3}));
  EXPECT_FALSE(image.HasImage32());
  image.SetBytes(2, 1, OneDimension({1, 2, 3}));
  EXPECT_TRUE(image.HasImage32());
}

TEST(IconBytes, TellsEachOfItsSizes) {
  using Has = bool (CIconBytes::*)() const;
  constexpr Has kAll[] = {&CIconBytes::HasImage16,  &CIconBytes::HasImage24, &CIconBytes::HasImage32,
                          &CIconBytes::HasImage48,  &CIconBytes::HasImage72, &CIconBytes::HasImage96,
                          &CIconBytes::HasImage128, &CIconBytes::HasImage256};
  for (Long stored = 0; stored < 8; ++stored) {
    CIconBytes image;
    image.SetBytes(stored, 4, OneDimension({1}));
    for (Long asked = 0; asked < 8; ++asked) EXPECT_EQ((image.*kAll[asked])(), asked == stored);
  }
}

}  // namespace
}  // namespace marklet
