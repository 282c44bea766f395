// Images on their way to the screen.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <functional>

#include "bitmaps/pixel_context.h"
#include "images/bits.h"
#include "images/icon_bytes.h"
#include "platform/shared/os_tests.h"
#include "platform/system.h"
#include "support/picture_files.h"
#include "support/temporary_folder.h"

namespace marklet {
namespace {

constexpr std::array<Long, 8> kSizes = {16, 24, 32, 48, 72, 96, 128, 256};
constexpr std::uint32_t kKey = 0xFE03FD, kPaper = 0x4080C0;

using Pixel = std::function<std::uint32_t(Long x, Long y)>;  // 0xAARRGGBB, from the top left

ByteArray Entry(Long size, Long channels, const Pixel& pixel) {
  ByteArray entry{{{0, channels}, {0, size}, {0, size}}, {}};
  for (Long y = size; y-- > 0;)
    for (Long x = 0; x < size; ++x)
      for (Long c = 0; c < channels; ++c)
        entry.bytes.push_back(static_cast<std::uint8_t>(pixel(x, y) >> 8 * c));
  return entry;
}

void Put(CIconBytes& image, Long size, Long depth, const Pixel& pixel) {
  image.SetBytes(SizeIndex(size), depth, Entry(size, depth == 4 ? 4 : 3, pixel));
}

Pixel Plain(std::uint32_t colour) {
  return [colour](Long, Long) { return colour; };
}

std::uint32_t Speckle(Long x, Long y) {
  return static_cast<std::uint32_t>(x * 0x0D0511 + y * 0x310B07) & 0xFFFFFF;
}

class Paper {
 public:
  explicit Paper(Long size = 32, int bits = 24, std::uint32_t colour = kPaper) : context_(size, size, bits) {
    GdiFlush();
    for (Long y = 0; y < size; ++y)
      for (Long x = 0; x < size; ++x)
        for (int c = 0; c < context_.Bytes(); ++c)
          context_.At(x, y)[c] = static_cast<std::uint8_t>(colour >> 8 * c);
  }
  std::uint32_t At(Long x, Long y) const {
    GdiFlush();
    const std::uint8_t* pixel = context_.At(x, y);
    return pixel[0] | static_cast<std::uint32_t>(pixel[1]) << 8 | static_cast<std::uint32_t>(pixel[2]) << 16;
  }
  HDC Get() const { return context_.Get(); }

 private:
  PixelContext context_;
};

void Draw(CIconBytes& image, const Paper& paper, Long size, bool enabled = true, Long x = 0, Long y = 0) {
  image.Render(paper.Get(), SizeIndex(size), 4, x, y, enabled, 0x8000000F, 0);
}

// Plays a system for a test, its first question already asked.
class Played {
 public:
  explicit Played(OSVERSIONINFOA version) {
    Configuration().version = version;
    ForgetOsTests();
    IsWindows2000Family();
  }
  ~Played() {
    Configuration().version.reset();
    ForgetOsTests();
  }
};
constexpr OSVERSIONINFOA kXp{5, 1, 2}, kVista{6, 0, 2};

// --- The choice of bytes ----------------------------------------------------------------------------------

// Which size is turned to, in pixels, by the size asked for.
constexpr std::array<std::array<Long, 8>, 8> kOrders = {{{16, 24, 32, 48, 72, 96, 128, 256},
                                                         {24, 32, 48, 16, 72, 96, 128, 256},
                                                         {32, 48, 24, 72, 16, 96, 128, 256},
                                                         {48, 72, 32, 24, 96, 128, 256, 16},
                                                         {72, 96, 128, 256, 48, 32, 24, 16},
                                                         {96, 128, 256, 72, 48, 32, 24, 16},
                                                         {128, 256, 96, 72, 48, 32, 24, 16},
                                                         {256, 128, 96, 72, 48, 32, 24, 16}}};

std::uint32_t ColourOfSize(Long size) { return 0x010000u * static_cast<std::uint32_t>(size / 16) + 0x0055AA; }

TEST(RenderedImage, OfEverySetOfSizesIsTheOneThatTheTableTurnsTo) {
  std::array<ByteArray, 8> entries;
  for (std::size_t i = 0; i < 8; ++i) entries[i] = Entry(kSizes[i], 3, Plain(ColourOfSize(kSizes[i])));
  const Paper paper(8);
  for (unsigned stored = 1; stored < 256; ++stored) {
    CIconBytes image;
    for (Long i = 0; i < 8; ++i)
      if ((stored >> i & 1) != 0) image.SetBytes(i, 3, entries[static_cast<std::size_t>(i)]);
    for (std::size_t asked = 0; asked < 8; ++asked) {
      Long expected = 0;
      for (const Long candidate : kOrders[asked])
        if (expected == 0 && (stored >> SizeIndex(candidate) & 1) != 0) expected = candidate;
      Draw(image, paper, kSizes[asked]);
      ASSERT_EQ(paper.At(3, 3), ColourOfSize(expected)) << "stored " << stored << ", asked " << kSizes[asked];
    }
  }
}

TEST(RenderedImage, TakesAlphaBeforeColoursAndMoreColoursBeforeFewer) {
  const Paper paper;
  CIconBytes image;
  Put(image, 48, 0, Plain(0x000000));
  Draw(image, paper, 48);
  EXPECT_EQ(paper.At(5, 5), kPaper) << "the lowest depth isn't drawn";
  for (Long depth = 1; depth <= 4; ++depth) {
    Put(image, 48, depth, Plain(0xFF000011u * static_cast<std::uint32_t>(depth) | 0xFF000000u));
    Draw(image, paper, 48);
    EXPECT_EQ(paper.At(5, 5), 0x11u * static_cast<std::uint32_t>(depth));
  }
}

TEST(RenderedImage, OfTheLowestDepthAloneCountsAsNotThere) {
  CIconBytes image;
  Put(image, 16, 0, Plain(0));
  Put(image, 24, 3, Plain(0x112233));
  const Paper paper;
  Draw(image, paper, 16);
  EXPECT_EQ(paper.At(0, 0), 0x112233u);
}

TEST(RenderedImage, WithNothingStoredDrawsNothingHoweverOftenItIsAsked) {
  CIconBytes image;
  const Paper paper;
  for (int round = 0; round < 60; ++round)
    for (const Long size : kSizes) Draw(image, paper, size);
  EXPECT_EQ(paper.At(0, 0), kPaper);
  // The search is as good as new.
  Put(image, 16, 3, Plain(0x112233));
  Draw(image, paper, 256);
  EXPECT_EQ(paper.At(0, 0), 0x112233u);
}

TEST(RenderedImage, OfASizeOutsideTheTableDrawsNothing) {
  CIconBytes image;
  Put(image, 16, 3, Plain(0));
  const Paper paper;
  for (const Long index : {-1, 8, 2147483647}) image.Render(paper.Get(), index, 4, 0, 0, true, 0, 0);
  image.Render(nullptr, 0, 4, 0, 0, true, 0, 0);
  EXPECT_EQ(paper.At(0, 0), kPaper);
}

// --- Without alpha ----------------------------------------------------------------------------------------

TEST(RenderedImage, WithoutAlphaLeavesOutKeyColour) {
  CIconBytes image;
  const Pixel pixel = [](Long x, Long y) { return (x + y) % 3 == 0 ? kKey : Speckle(x, y); };
  Put(image, 16, 3, pixel);
  for (const int bits : {24, 32}) {
    const Paper paper(32, bits);
    Draw(image, paper, 16, true, 5, 7);
    for (Long y = 0; y < 32; ++y)
      for (Long x = 0; x < 32; ++x) {
        const bool inside = x >= 5 && x < 21 && y >= 7 && y < 23;
        const std::uint32_t colour = inside ? pixel(x - 5, y - 7) : kKey;
        ASSERT_EQ(paper.At(x, y), colour == kKey ? kPaper : colour) << x << "," << y;
      }
  }
}

std::uint32_t Grey(std::uint32_t colour) {
  const double sum = (colour & 255) + (colour >> 8 & 255) + (colour >> 16 & 255);
  return static_cast<std::uint32_t>(std::nearbyint(sum / 3.0)) * 0x010101u;
}

// Where a pixel of the image comes from.
Long Nearest(Long at, Long stored, Long asked) {
  return static_cast<Long>(std::nearbyint(at * ((stored - 1.0) / (asked - 1.0))));
}

// Rows count from the bottom in this.
TEST(SlowRenderedImage, WithoutAlphaOfEveryPairOfSizesIsResampledWithoutAFringe) {
  for (const Long stored : kSizes)
    for (const Long asked : kSizes)
      for (const bool enabled : {true, false}) {
        CIconBytes image;
        const Pixel pixel = [](Long x, Long y) { return (x / 3 + y / 5) % 4 == 0 ? kKey : Speckle(x, y); };
        Put(image, stored, 3, pixel);
        const Paper paper(256);
        Draw(image, paper, asked, enabled);
        for (Long y = 0; y < asked; y += 3)
          for (Long x = 0; x < asked; x += 3) {
            const Long row = Nearest(asked - 1 - y, stored, asked);
            const std::uint32_t colour = pixel(Nearest(x, stored, asked), stored - 1 - row);
            const std::uint32_t expected = colour == kKey ? kPaper : enabled ? colour : Grey(colour);
            ASSERT_EQ(paper.At(x, y), expected) << stored << " at " << asked << ": " << x << "," << y;
          }
        if (asked < 256) {
          ASSERT_EQ(paper.At(asked, 0), kPaper);
          ASSERT_EQ(paper.At(0, asked), kPaper);
        }
      }
}

TEST(RenderedImage, DisabledWithoutAlphaIsGreyAtFullStrengthAndStaysTransparent) {
  CIconBytes image;
  Put(image, 16, 3, [](Long x, Long) { return x == 0 ? kKey : 0x0A141Fu; });
  const Paper paper;
  Draw(image, paper, 16, false);
  EXPECT_EQ(paper.At(0, 3), kPaper);
  EXPECT_EQ(paper.At(1, 3), 0x141414u);  // 61 / 3 is 20.33
}

// --- With alpha -------------------------------------------------------------------------------------------

std::uint32_t Channel(std::uint32_t pixel, int c) { return pixel >> 8 * c & 255; }

// Colours times alpha, then the straight formula all the same.
std::uint32_t InSoftware(std::uint32_t source, std::uint32_t under, bool enabled) {
  const std::uint32_t alpha = source >> 24;
  const auto weight =
      enabled ? alpha
              : static_cast<std::uint32_t>(std::nearbyint(alpha * double{static_cast<float>(92 / 255.0)}));
  std::uint32_t result = 0;
  for (int c = 2; c >= 0; --c) {
    const std::uint32_t colour = Channel(enabled ? source : Grey(source), c) * alpha / 255;
    result = result << 8 | (Channel(under, c) * (255 - weight) + colour * weight + 127) / 255;
  }
  return result;
}

double OnThePlatform(std::uint32_t source, std::uint32_t under, bool enabled, int c) {
  const std::uint32_t alpha = source >> 24;
  const double strength = enabled ? 1 : 92 / 255.0;
  const std::uint32_t colour = Channel(enabled ? source : Grey(source), c) * alpha / 255;
  return colour * strength + Channel(under, c) * (1 - alpha * strength / 255);
}

// A platform rounds to nearest, but each product on its own where strength and alpha are both below whole.
double Tolerance(std::uint32_t source, bool enabled) { return enabled || source >> 24 == 255 ? 0.5 : 1.5; }

std::uint32_t Soft(Long x, Long y) {
  return Speckle(x, y) | static_cast<std::uint32_t>((x * 37 + y * 11) % 256) << 24;
}

TEST(RenderedImage, WithAlphaIsComposited) {
  CIconBytes image;
  Put(image, 32, 4, Soft);
  for (const bool enabled : {true, false}) {
    {
      const Played system(kVista);
      const Paper paper;
      Draw(image, paper, 32, enabled);
      for (Long y = 0; y < 32; ++y)
        for (Long x = 0; x < 32; ++x)
          ASSERT_EQ(paper.At(x, y), InSoftware(Soft(x, y), kPaper, enabled)) << x << "," << y;
    }
    const Played system(kXp);
    const Paper paper;
    Draw(image, paper, 32, enabled);
    for (Long y = 0; y < 32; ++y)
      for (Long x = 0; x < 32; ++x)
        for (int c = 0; c < 3; ++c)
          ASSERT_NEAR(Channel(paper.At(x, y), c), OnThePlatform(Soft(x, y), kPaper, enabled, c),
                      Tolerance(Soft(x, y), enabled));
  }
}

TEST(SlowRenderedImage, WithAlphaOfEveryPairOfSizesIsResampled) {
  const Played system(kVista);
  for (const Long stored : kSizes)
    for (const Long asked : kSizes) {
      CIconBytes image;
      Put(image, stored, 4, Soft);
      const Paper paper(256);
      Draw(image, paper, asked);
      for (Long y = 0; y < asked; y += 5)
        for (Long x = 0; x < asked; x += 3) {
          const Long row = Nearest(asked - 1 - y, stored, asked);
          const std::uint32_t source = Soft(Nearest(x, stored, asked), stored - 1 - row);
          ASSERT_EQ(paper.At(x, y), InSoftware(source, kPaper, true)) << stored << " at " << asked;
        }
    }
}

TEST(RenderedImage, DisabledWithAlphaWeighs92Of255OnBothRoutes) {
  CIconBytes image;
  Put(image, 16, 4, Plain(0xFFFFFFFFu));
  for (const OSVERSIONINFOA& version : {kXp, kVista}) {
    const Played system(version);
    for (const std::uint32_t under : {0u, kPaper, 0xFFFFFFu}) {
      const Paper paper(32, 24, under);
      Draw(image, paper, 16, false);
      for (int c = 0; c < 3; ++c)
        EXPECT_EQ(Channel(paper.At(2, 2), c), std::lround((255 * 92 + Channel(under, c) * 163) / 255.0));
    }
  }
}

TEST(RenderedImage, WithSoftEdgesIsDarkerInSoftware) {
  CIconBytes image;
  Put(image, 16, 4, Plain(0x80FFFFFFu));
  const Paper in_software, on_platform;
  {
    const Played system(kVista);
    Draw(image, in_software, 16);
  }
  const Played system(kXp);
  Draw(image, on_platform, 16);
  EXPECT_LT(Channel(in_software.At(0, 0), 0), Channel(on_platform.At(0, 0), 0));
}

// --- The picture itself -----------------------------------------------------------------------------------

struct KeptPicture : ::testing::Test {
  void Load(int size, const std::function<std::uint32_t(int, int)>& colour) {
    const auto bmp = pictures::Bmp(size, size, colour);
    folder.Write("a.bmp", std::string(bmp.begin(), bmp.end()));
    image.LoadFromFile(folder.Path("a.bmp").u16string());
  }
  const testing::TemporaryFolder folder;
  CIconBytes image;
};

TEST_F(KeptPicture, IsDrawnInAnySizeWithMagentaLeftOut) {
  Load(20, [](int x, int) { return x < 10 ? 0xFF00FFu : 0x102030u; });
  const Paper paper(48);
  image.RenderPicture(paper.Get(), 20, 3, 5);
  for (Long y = 0; y < 48; ++y)
    for (Long x = 0; x < 48; ++x)
      ASSERT_EQ(paper.At(x, y), x >= 13 && x < 23 && y >= 5 && y < 25 ? 0x102030u : kPaper) << x << ',' << y;
}

// Resizing marks what touches the transparent colour with another than is left out in the end.
TEST_F(KeptPicture, ShowsKeyColourWhereMagentaWasResized) {
  Load(20, [](int x, int) { return x < 10 ? 0xFF00FFu : 0x102030u; });
  const Paper paper(48);
  image.RenderPicture(paper.Get(), 32, 0, 0);
  EXPECT_EQ(paper.At(0, 9), kKey);
  EXPECT_EQ(paper.At(31, 9), 0x102030u);
  EXPECT_EQ(paper.At(32, 9), kPaper);
}

TEST_F(KeptPicture, IsNotWhatAnImageIsDrawnFrom) {
  Load(16, [](int, int) { return 0xFF00FFu; });
  image.ClearImages();
  const Paper paper;
  Draw(image, paper, 16);
  EXPECT_EQ(paper.At(3, 3), kPaper);
}

TEST_F(KeptPicture, ThatIsNoneOrOfNoSizeDrawsNothing) {
  const Paper paper;
  image.RenderPicture(paper.Get(), 16, 0, 0);
  Load(16, [](int, int) { return 0x102030u; });
  for (const Long size : {0, -1}) image.RenderPicture(paper.Get(), size, 0, 0);
  image.RenderPicture(nullptr, 16, 0, 0);
  EXPECT_EQ(paper.At(0, 0), kPaper);
}

// --- Bytes that don't fit ---------------------------------------------------------------------------------

TEST(RenderedImage, OfTooFewBytesIsMagentaAtItsOwnSizeAndNothingAtAnother) {
  CIconBytes image;
  image.SetBytes(0, 3, OneDimension(std::vector<std::uint8_t>(16 * 16 * 3 - 1, 7)));
  const Paper paper;
  Draw(image, paper, 24);
  EXPECT_EQ(paper.At(3, 3), kPaper);
  Draw(image, paper, 16);
  EXPECT_EQ(paper.At(3, 3), 0xFF00FFu);
}

TEST(RenderedImage, OfTooFewBytesWithAlphaIsNothing) {
  CIconBytes image;
  image.SetBytes(0, 4, Entry(16, 3, Plain(0x123456)));
  const Paper paper;
  Draw(image, paper, 16);
  Draw(image, paper, 24, false);
  EXPECT_EQ(paper.At(3, 3), kPaper);
}

TEST(RenderedImage, OfMoreBytesThanItTakesShowsTheirFirstRows) {
  CIconBytes image;
  ByteArray rows = Entry(16, 3, Speckle);
  rows.bytes.resize(rows.bytes.size() + 1000);
  rows.bounds = {{5, 3}, {0, 1000}, {-7, 1}};
  image.SetBytes(0, 3, rows);
  const Paper paper;
  Draw(image, paper, 16);
  EXPECT_EQ(paper.At(9, 2), Speckle(9, 2));
}

TEST(RenderedImage, OfAnotherDepthReadsBytesWithAlphaAsIfTheyHadNone) {
  CIconBytes image;
  Put(image, 16, 4, Plain(0x01020304));
  const Paper paper;
  image.Render(paper.Get(), 0, 3, 0, 0, true, 0, 0);
  EXPECT_EQ(paper.At(0, 15), 0x020304u);
  EXPECT_EQ(paper.At(1, 15), 0x030401u);
}

}  // namespace
}  // namespace marklet
