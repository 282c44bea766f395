// The arithmetic of surfaces with alpha, against plain loops over its definitions.
#include <gtest/gtest.h>

#include <cmath>
#include <thread>
#include <tuple>

#include "bitmaps/alpha_pixels.h"
#include "bitmaps/pixel_context.h"
#include "platform/shared/os_tests.h"
#include "platform/system.h"
#include "support/processor_forms.h"

namespace marklet {
namespace {

constexpr OSVERSIONINFOA kWindows98{4, 10, 1}, kNt4{4, 0, 2}, kWindows2000{5, 0, 2}, kXp{5, 1, 2},
    kVista{6, 0, 2}, kOtherFamily5{5, 0, 1};

// What is rounded to nearest, ties to even, in the definitions.
int Rounded(double value) { return static_cast<int>(std::nearbyint(value)); }

int SoftwareWeight(int alpha, int constant) {
  if (constant >= 255) return alpha;
  const float k = static_cast<float>(constant / 255.0);
  return Rounded(static_cast<double>(alpha) * static_cast<double>(k));
}

// SoftwareAlphaPaint as it is defined, in coordinates of the picture from the top left.
void Composite(const CDib32& source, const PixelContext& target, Long x, Long y, int constant) {
  for (Long row = 0; row < source.Height(); ++row) {
    for (Long column = 0; column < source.Width(); ++column) {
      const Long to_x = x + column, to_y = y + row;
      if (to_x < 0 || to_x >= target.Width() || to_y < 0 || to_y >= target.Height()) continue;
      const Pixel s = PixelOf(source, column, source.Height() - 1 - row);
      std::uint8_t* d = target.At(to_x, to_y);
      const int a = SoftwareWeight(s[3], constant);
      for (std::size_t c = 0; c < 3; ++c) {
        d[c] = static_cast<std::uint8_t>((d[c] * (255 - a) + s[c] * a + 127) / 255);
      }
    }
  }
}

void CopyPixels(const PixelContext& from, const PixelContext& to) {
  GdiFlush();
  for (Long y = 0; y < from.Height(); ++y)
    std::copy_n(from.At(0, y), from.Width() * from.Bytes(), to.At(0, y));
}

void Fill(const PixelContext& context, Random& random) {
  GdiFlush();
  for (Long y = 0; y < context.Height(); ++y) {
    for (Long i = 0; i < context.Width() * context.Bytes(); ++i) {
      context.At(0, y)[i] = static_cast<std::uint8_t>(random());
    }
  }
}

bool Same(const PixelContext& a, const PixelContext& b) {
  GdiFlush();
  for (Long y = 0; y < a.Height(); ++y) {
    if (std::memcmp(a.At(0, y), b.At(0, y),
                    static_cast<std::size_t>(a.Width()) * static_cast<std::size_t>(a.Bytes())) != 0)
      return false;
  }
  return true;
}

class SoftwareAlphaPaintOnto : public testing::TestWithParam<std::tuple<int, ProcessorForm>> {
 protected:
  int Depth() const { return std::get<0>(GetParam()); }

 private:
  ProcessorFormOverride form_{std::get<1>(GetParam())};
};

TEST_P(SoftwareAlphaPaintOnto, FollowsItsDefinition) {
  Random random(51);
  for (int round = 0; round < 500; ++round) {
    const auto source = AlphaNoise(Between(random, 1, 90), Between(random, 1, 12), random);
    const PixelContext target(Between(random, 1, 90), Between(random, 1, 12), Depth());
    const PixelContext expected(target.Width(), target.Height(), Depth());
    Fill(target, random);
    CopyPixels(target, expected);
    const Long x = Between(random, -20, 20), y = Between(random, -6, 6);
    const Long constant = round % 3 == 0 ? 255 : round % 3 == 1 ? 92 : Between(random, 0, 255);
    Composite(*source, expected, x, y, constant);
    source->SoftwareAlphaPaint(target.Get(), x, y, static_cast<std::uint8_t>(constant));
    ASSERT_TRUE(Same(target, expected)) << "round " << round << ", constant " << constant;
  }
}

TEST_P(SoftwareAlphaPaintOnto, MixesEveryPairOfBytesAtEveryAlphaToTheByte) {
  // A row of all source bytes for each destination byte, its alphas in another order each time.
  const auto source = AlphaSurface(256, 1);
  for (int alpha = 0; alpha < 256; ++alpha) {
    for (int s = 0; s < 256; ++s) {
      const auto byte = [](int value) { return static_cast<std::uint8_t>(value); };
      PutPixel(*source, s, 0, {byte(s), byte(s + 85), byte(s + 170), byte(alpha)});
    }
    const PixelContext target(256, 16, Depth()), expected(256, 16, Depth());
    for (int d = 0; d < 16; ++d) {
      std::fill_n(target.At(0, d), 256 * target.Bytes(), static_cast<std::uint8_t>(d * 17 + alpha));
    }
    CopyPixels(target, expected);
    for (int d = 0; d < 16; ++d) {
      Composite(*source, expected, 0, d, 255);
      source->SoftwareAlphaPaint(target.Get(), 0, d, 255);
    }
    ASSERT_TRUE(Same(target, expected)) << "alpha " << alpha;
  }
}

TEST_P(SoftwareAlphaPaintOnto, MixesIconsThatAreSoftAtTheirEdgesAlone) {
  Random random(59);
  for (Long edge = 0; edge <= 34; ++edge) {
    const auto source = AlphaSurface(68, 1);
    for (Long x = 0; x < 68; ++x) {
      const bool soft = x % 32 < edge % 32 || x % 32 >= 32 - edge % 32 || x >= 64;
      const auto byte = [&] { return static_cast<std::uint8_t>(random()); };
      PutPixel(*source, x, 0, {byte(), byte(), byte(), soft ? byte() : std::uint8_t{255}});
    }
    const PixelContext target(68, 1, Depth()), expected(68, 1, Depth());
    Fill(target, random);
    CopyPixels(target, expected);
    Composite(*source, expected, 0, 0, 255);
    source->SoftwareAlphaPaint(target.Get(), 0, 0, 255);
    ASSERT_TRUE(Same(target, expected)) << "edge " << edge;
  }
}

TEST_P(SoftwareAlphaPaintOnto, LeavesTheDestinationsAlphaAsItWas) {
  if (Depth() != 32) return;
  const PixelContext target(3, 1, 32);
  for (Long x = 0; x < 3; ++x) target.At(x, 0)[3] = 77;
  for (const int alpha : {0, 100, 255}) {
    AlphaSurface(3, 1, {1, 2, 3, static_cast<std::uint8_t>(alpha)})
        ->SoftwareAlphaPaint(target.Get(), 0, 0, 255);
  }
  GdiFlush();
  for (Long x = 0; x < 3; ++x) EXPECT_EQ(target.At(x, 0)[3], 77);
}

INSTANTIATE_TEST_SUITE_P(DepthsAndPaths, SoftwareAlphaPaintOnto,
                         testing::Combine(testing::Values(24, 32), testing::ValuesIn(kProcessorForms)));

class AlphaArithmetic : public ProcessorFormTest {};
MARKLET_FOR_PROCESSOR_FORMS(AlphaArithmetic);

TEST(SoftwareAlphaPaint, OntoItselfReadsItsOwnPixelsWhole) {
  Random random(52);
  const auto surface = AlphaNoise(40, 12, random), source = AlphaSurface(40, 12);
  PutPixels(*source, PixelsOf(*surface));
  const PixelContext expected(40, 12, 32);
  for (Long y = 0; y < 12; ++y) std::memcpy(expected.At(0, y), PixelAt(*surface, 0, 11 - y), 160);
  Composite(*source, expected, 3, -2, 255);
  surface->SoftwareAlphaPaint(surface->hDC(), 3, -2, 255);
  GdiFlush();
  for (Long y = 0; y < 12; ++y)
    EXPECT_EQ(std::memcmp(expected.At(0, y), PixelAt(*surface, 0, 11 - y), 160), 0);
}

TEST(SoftwareAlphaPaint, Of200AtAlpha128On100Gives150) {
  const auto target = Surface(1, 1, MakeRgb(100, 100, 100));
  AlphaSurface(1, 1, {200, 200, 200, 128})->SoftwareAlphaPaint(target->hDC(), 0, 0, 255);
  EXPECT_EQ(Colours(*target)[0], MakeRgb(150, 150, 150));
}

TEST(SoftwareAlphaPaint, AConstantOf92WeighsAnOpaquePixelBy92) {
  const auto target = Surface(1, 1, MakeRgb(0, 0, 0));
  AlphaSurface(1, 1, {255, 255, 255, 255})->SoftwareAlphaPaint(target->hDC(), 0, 0, 92);
  EXPECT_EQ(Colours(*target)[0], MakeRgb(92, 92, 92));
}

TEST(SoftwareAlphaPaint, AConstantOfZeroLeavesTheDestination) {
  const auto target = Surface(1, 1, MakeRgb(1, 2, 3));
  AlphaSurface(1, 1, {255, 255, 255, 255})->SoftwareAlphaPaint(target->hDC(), 0, 0, 0);
  EXPECT_EQ(Colours(*target)[0], MakeRgb(1, 2, 3));
}

TEST(SoftwareAlphaPaint, WeighsPremultipliedColoursTwice) {
  const auto source = AlphaSurface(1, 1, {200, 200, 200, 128});
  source->Premultiply();
  const auto target = Surface(1, 1, MakeRgb(0, 0, 0));
  source->SoftwareAlphaPaint(target->hDC(), 0, 0, 255);
  EXPECT_EQ(Colours(*target)[0], MakeRgb(50, 50, 50)) << "200 * 128 / 255 is 100, half of it again 50";
}

class AlphaPaintTest : public testing::Test {
 protected:
  AlphaPaintTest() { Forget(); }
  ~AlphaPaintTest() override { Forget(); }

  static void Play(const OSVERSIONINFOA& version) {
    ForgetOsTests();
    Configuration().version = version;
  }
  // Black comes out darker in software: which route it was.
  static bool TakesThePlatformsRoute() {
    const auto source = AlphaSurface(1, 1, {100, 100, 100, 128});  // premultiplied
    const auto target = Surface(1, 1, MakeRgb(0, 0, 0));
    source->AlphaPaint(target->hDC(), 0, 0, -1, -1, 0, 0, -1, -1, 255, true);
    const unsigned red = RedOf(Colours(*target)[0]);
    EXPECT_TRUE(red == 100 || red == 50) << red;
    return red == 100;
  }

 private:
  static void Forget() {
    Configuration() = {};
    ForgetOsTests();
  }
};

TEST_F(AlphaPaintTest, TheFirstPaintOfAThreadIsInSoftwareWhateverTheSystem) {
  Play(kWindows2000);
  EXPECT_FALSE(TakesThePlatformsRoute());
  EXPECT_TRUE(TakesThePlatformsRoute());
  EXPECT_TRUE(TakesThePlatformsRoute());
}

TEST_F(AlphaPaintTest, AnEarlierQuestionLetsTheFirstPaintSeeTheTruth) {
  Play(kWindows2000);
  IsWindows2000Family();
  EXPECT_TRUE(TakesThePlatformsRoute());
}

TEST_F(AlphaPaintTest, TheFalseFirstAnswerIsEachThreadsOwn) {
  Play(kWindows2000);
  EXPECT_FALSE(TakesThePlatformsRoute());
  bool first = true, second = false;
  std::thread([&] {
    Configuration().version = kWindows2000;
    first = TakesThePlatformsRoute();
    second = TakesThePlatformsRoute();
  }).join();
  EXPECT_FALSE(first);
  EXPECT_TRUE(second);
}

TEST_F(AlphaPaintTest, OnlyMajorVersion5OfTheNtFamilyHasThePlatformsRoute) {
  const struct {
    OSVERSIONINFOA version;
    bool platform;
  } kSystems[] = {{kWindows98, false}, {kNt4, false},       {kWindows2000, true},  {kXp, true},
                  {kVista, false},     {{10, 0, 2}, false}, {kOtherFamily5, false}};
  for (const auto& [version, platform] : kSystems) {
    Play(version);
    TakesThePlatformsRoute();
    EXPECT_EQ(TakesThePlatformsRoute(), platform) << version.dwMajorVersion << ' ' << version.dwPlatformId;
  }
}

TEST_F(AlphaPaintTest, APixelWithAlphaZeroLeavesTheDestinationOnBothRoutes) {
  Play(kWindows2000);
  const auto source = AlphaSurface(1, 1, {0, 0, 0, 0});
  const auto target = Surface(1, 1, MakeRgb(12, 34, 56));
  for (int i = 0; i < 2; ++i) {
    source->AlphaPaint(target->hDC(), 0, 0, -1, -1, 0, 0, -1, -1, 255, true);
    EXPECT_EQ(Colours(*target)[0], MakeRgb(12, 34, 56));
  }
}

TEST_F(AlphaPaintTest, InSoftwareTheSourcesRectangleAndFlagAreIgnored) {
  Play(kVista);
  Random random(53);
  const auto source = AlphaNoise(6, 5, random);
  const auto expected = Surface(12, 12, MakeRgb(50, 60, 70)), target = Surface(12, 12, MakeRgb(50, 60, 70));
  source->SoftwareAlphaPaint(expected->hDC(), 3, 2, 180);
  source->AlphaPaint(target->hDC(), 3, 2, 1, 2, 4, 4, 9, 9, 180, false);
  EXPECT_EQ(Colours(*target), Colours(*expected));
}

TEST_F(AlphaPaintTest, OnThePlatformsRouteTheFormulaHolds) {
  Play(kXp);
  IsWindows2000Family();
  Random random(54);
  const auto source = AlphaNoise(16, 16, random);
  source->Premultiply();
  const auto target = Surface(16, 16);
  FillWithNoise(*target, random, KeyColour);
  for (const int constant : {255, 92, 0}) {
    const std::vector<COLORREF> before = Colours(*target);
    source->AlphaPaint(target->hDC(), 0, 0, -1, -1, 0, 0, -1, -1, static_cast<std::uint8_t>(constant), true);
    const std::vector<COLORREF> after = Colours(*target);
    const Pixels pixels = PixelsOf(*source);
    for (std::size_t i = 0; i < pixels.size(); ++i) {
      const auto channel = [](COLORREF colour, int c) {
        return static_cast<double>(colour >> (16 - 8 * c) & 255);
      };
      const double covered = pixels[i][3] * constant / 255.0;
      for (int c = 0; c < 3; ++c) {
        const double exact = pixels[i][static_cast<std::size_t>(c)] * constant / 255.0 +
                             channel(before[i], c) * (1 - covered / 255);
        // To nearest, but where both are below whole a platform may round each product on its own.
        ASSERT_NEAR(channel(after[i], c), exact, constant % 255 == 0 || pixels[i][3] == 255 ? 0.5 : 1.5);
      }
    }
  }
}

TEST_F(AlphaPaintTest, OnThePlatformsRouteSizesBelowZeroFollowTheDestination) {
  Play(kXp);
  IsWindows2000Family();
  const auto source = AlphaSurface(4, 4, {1, 2, 3, 255});
  const auto whole = Surface(4, 4), part = Surface(4, 4), stretched = Surface(4, 4);
  source->AlphaPaint(whole->hDC(), 0, 0, -1, -1, 0, 0, -1, -1, 255, true);
  EXPECT_EQ(Colours(*whole), std::vector<COLORREF>(16, MakeRgb(3, 2, 1)));
  source->AlphaPaint(part->hDC(), 0, 0, 4, 1, 0, 3, -1, -1, 255, true);
  EXPECT_EQ(ColourAt(*part, 3, 3), MakeRgb(3, 2, 1));
  EXPECT_EQ(ColourAt(*part, 3, 2), 0u);
  source->AlphaPaint(stretched->hDC(), 0, 0, -1, -1, 1, 1, 2, 2, 255, true);
  EXPECT_EQ(Colours(*stretched), std::vector<COLORREF>(16, MakeRgb(3, 2, 1)));
}

TEST(Premultiply, Of200AtAlpha128Gives100) {
  const auto surface = AlphaSurface(1, 1, {200, 255, 1, 128});
  surface->Premultiply();
  EXPECT_EQ(PixelsOf(*surface)[0], (Pixel{100, 128, 0, 128}));
  EXPECT_FALSE(surface->NotPremultiplied());
}

TEST_P(AlphaArithmetic, PremultiplyTwiceEqualsOnce) {
  Random random(55);
  const auto surface = AlphaNoise(40, 10, random);
  surface->Premultiply();
  const Pixels once = PixelsOf(*surface);
  surface->Premultiply();
  EXPECT_EQ(PixelsOf(*surface), once);
}

TEST_P(AlphaArithmetic, PremultiplyTruncatesEveryProduct) {
  // All colours against all alphas, and a width that isn't a whole number of blocks.
  const auto surface = AlphaSurface(257, 256);
  for (Long alpha = 0; alpha < 256; ++alpha) {
    for (Long x = 0; x < 257; ++x) {
      const auto byte = [](Long value) { return static_cast<std::uint8_t>(value); };
      PutPixel(*surface, x, alpha, {byte(x), byte(x + 85), byte(255 - x), byte(alpha)});
    }
  }
  Pixels expected = PixelsOf(*surface);
  for (Pixel& pixel : expected) {
    for (std::size_t c = 0; c < 3; ++c) pixel[c] = static_cast<std::uint8_t>(pixel[c] * pixel[3] / 255);
  }
  surface->Premultiply();
  EXPECT_EQ(PixelsOf(*surface), expected);
}

TEST_P(AlphaArithmetic, PremultiplyTakesRunsOfClearAndOpaquePixelsLikeOthers) {
  Random random(56);
  for (int round = 0; round < 100; ++round) {
    const auto surface = AlphaNoise(Between(random, 1, 100), Between(random, 1, 4), random);
    Pixels expected = PixelsOf(*surface);
    for (Pixel& pixel : expected) {
      for (std::size_t c = 0; c < 3; ++c) pixel[c] = static_cast<std::uint8_t>(pixel[c] * pixel[3] / 255);
    }
    surface->Premultiply();
    ASSERT_EQ(PixelsOf(*surface), expected);
  }
}

TEST_P(AlphaArithmetic, SetConstantAlphaWeighsColoursAndBecomesTheAlpha) {
  Random random(57);
  for (const int alpha : {0, 1, 92, 127, 128, 254, 255}) {
    const auto surface = AlphaNoise(37, 5, random);
    Pixels expected = PixelsOf(*surface);
    for (Pixel& pixel : expected) {
      for (std::size_t c = 0; c < 3; ++c) pixel[c] = static_cast<std::uint8_t>(pixel[c] * alpha / 255);
      pixel[3] = static_cast<std::uint8_t>(alpha);
    }
    surface->SetConstantAlpha(static_cast<std::uint8_t>(alpha));
    ASSERT_EQ(PixelsOf(*surface), expected);
    EXPECT_TRUE(surface->NotPremultiplied());
  }
}

TEST_P(AlphaArithmetic, GrayscaleFollowsItsDefinition) {
  Random random(58);
  for (const Long key : {-1, 0, 1, static_cast<Long>(KeyColour)}) {
    for (int round = 0; round < 60; ++round) {
      const auto surface = AlphaNoise(Between(random, 1, 90), Between(random, 1, 6), random);
      Pixels expected = PixelsOf(*surface);
      for (Pixel& pixel : expected) {
        if (key >= 1 && pixel[0] == 253 && pixel[1] == 3 && pixel[2] == 254) continue;
        const auto grey = static_cast<std::uint8_t>(Rounded((pixel[0] + pixel[1] + pixel[2]) / 3.0));
        pixel[0] = pixel[1] = pixel[2] = grey;
      }
      surface->Grayscale(key);
      ASSERT_EQ(PixelsOf(*surface), expected) << "key " << key;
    }
  }
}

TEST_P(AlphaArithmetic, GrayscaleRoundsEverySumToTheNearest) {
  const auto surface = AlphaSurface(766, 1);
  for (Long sum = 0; sum < 766; ++sum) {
    const auto byte = [](Long value) { return static_cast<std::uint8_t>(std::clamp(value, 0, 255)); };
    PutPixel(*surface, sum, 0, {byte(sum), byte(sum - 255), byte(sum - 510), 9});
  }
  surface->Grayscale(-1);
  for (Long sum = 0; sum < 766; ++sum) {
    const auto grey = static_cast<std::uint8_t>(Rounded(sum / 3.0));
    ASSERT_EQ(PixelOf(*surface, sum, 0), (Pixel{grey, grey, grey, 9}));
  }
}

TEST_P(AlphaArithmetic, GrayscaleFindsASinglePixelAmongClearOnes) {
  for (Long x = 0; x < 70; ++x)
    for (std::size_t c = 0; c < 4; ++c) {
      const auto surface = AlphaSurface(70, 1, {});
      Pixel pixel{};
      pixel[c] = 90;
      PutPixel(*surface, x, 0, pixel);
      Pixels expected = PixelsOf(*surface);
      if (c < 3) expected[static_cast<std::size_t>(x)] = {30, 30, 30, 0};
      surface->Grayscale(-1);
      ASSERT_EQ(PixelsOf(*surface), expected) << x << ' ' << c;
    }
}

TEST(AlphaGrayscale, WithKeyMinus1GreysEvenPixelsOfTheKeyAndWithKeyColourSparesThem) {
  const auto greyed = AlphaSurface(1, 1, kKeyPixel), spared = AlphaSurface(1, 1, kKeyPixel);
  greyed->Grayscale(-1);
  EXPECT_EQ(PixelsOf(*greyed)[0], (Pixel{170, 170, 170, 0}));
  spared->Grayscale(static_cast<Long>(KeyColour));
  EXPECT_EQ(PixelsOf(*spared)[0], kKeyPixel);
}

TEST(AlphaGrayscale, OnlyTheSignOfTheKeyCounts) {
  const auto surface = AlphaSurface(2, 1);
  PutPixels(*surface, {Pixel{0, 0, 1, 0}, kKeyPixel});
  surface->Grayscale(1);
  EXPECT_EQ(PixelsOf(*surface), (Pixels{Pixel{0, 0, 0, 0}, kKeyPixel})) << "key 1 is RGB(1, 0, 0)";
}

}  // namespace
}  // namespace marklet
