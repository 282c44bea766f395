#include "bitmaps/cdib32.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <limits>
#include <utility>

#include "bitmaps/alpha_pixels.h"
#include "bitmaps/pixel_context.h"

namespace marklet {
namespace {

constexpr COLORREF kRed = MakeRgb(255, 0, 0), kGrey = MakeRgb(9, 10, 11);
constexpr Pixel kSeeThrough{1, 2, 3, 128}, kOpaque{4, 5, 6, 255};
constexpr Long kMax = std::numeric_limits<Long>::max(), kMin = std::numeric_limits<Long>::min();

void ExpectEmpty(const CDib32& surface) {
  EXPECT_EQ(surface.hDC(), nullptr);
  EXPECT_EQ(surface.Bits(), nullptr);
  EXPECT_EQ(surface.BytesPerScanLine(), 0);
}

TEST(CDib32, StartsEmptyWithStraightAlpha) {
  const CDib32 surface;
  ExpectEmpty(surface);
  EXPECT_EQ(surface.Width(), 0);
  EXPECT_EQ(surface.Height(), 0);
  EXPECT_TRUE(surface.NotPremultiplied());
}

TEST(CDib32, StrideIsFourBytesAPixel) {
  for (const Long width : {1, 2, 3, 5, 16, 33, 255, 1024}) {
    const auto surface = AlphaSurface(width, 2);
    EXPECT_EQ(surface->BytesPerScanLine(), width * 4);
    PixelView view;
    ASSERT_TRUE(marklet::PixelsOf(surface->hDC(), view));
    EXPECT_EQ(view.stride, width * 4);
    EXPECT_EQ(view.bits_per_pixel, 32);
    EXPECT_EQ(view.bits, surface->Bits());
  }
}

TEST(CDib32, CreateWithTheWant24FlagKeepsAStrideOfFourBytesAPixel) {
  CDib32 surface;
  ASSERT_TRUE(surface.Create(5, 3, true));
  EXPECT_EQ(surface.BytesPerScanLine(), 20);
  PixelView view;
  ASSERT_TRUE(marklet::PixelsOf(surface.hDC(), view));
  EXPECT_EQ(view.bits_per_pixel, 24);
}

TEST(CDib32, ASurfaceOf24BitsIsLeftAloneByWhatGoesThroughThePixels) {
  CDib32 surface;
  ASSERT_TRUE(surface.Create(9, 9, true));
  surface.Clear(kRed);
  surface.Premultiply();
  surface.SetConstantAlpha(7);
  surface.Grayscale(-1);
  surface.KeyOutCorner();
  surface.KeyOutCornerFuzzy();
  const auto target = Surface(9, 9, kGrey);
  surface.SoftwareAlphaPaint(target->hDC(), 0, 0, 255);
  EXPECT_EQ(Colours(*target), std::vector<COLORREF>(81, kGrey));
  surface.PaintTo(target->hDC(), 0, 0, -1, -1, 0, 0, SRCCOPY);
  EXPECT_EQ(Colours(*target), std::vector<COLORREF>(81, kRed));
}

TEST(CDib32, IsAllZeroWhenNew) {
  const auto surface = AlphaSurface(13, 7);
  EXPECT_EQ(PixelsOf(*surface), Pixels(std::size_t{13} * 7, Pixel{}));
}

TEST(CDib32, CreateRefusesSizesThatHoldNoPixelsOrTooMany) {
  constexpr Long kSizes[][2] = {{0, 5},       {5, 0},    {0, 0},       {-1, 5},       {5, -1},
                                {kMin, kMin}, {kMax, 1}, {kMax, kMax}, {kMax / 4, 2}, {32768, 32768}};
  for (const auto& [width, height] : kSizes) {
    CDib32 surface;
    EXPECT_FALSE(surface.Create(width, height)) << width << " by " << height;
    ExpectEmpty(surface);
  }
}

TEST(CDib32, CreateReplacesTheEarlierSurface) {
  const auto surface = AlphaSurface(4, 4, kOpaque);
  ASSERT_TRUE(surface->Create(2, 3));
  EXPECT_EQ(PixelsOf(*surface), Pixels(6, Pixel{}));
}

TEST(CDib32, AFailedCreateLeavesTheSurfaceEmpty) {
  const auto surface = AlphaSurface(4, 4);
  EXPECT_FALSE(surface->Create(0, 4));
  ExpectEmpty(*surface);
}

TEST(CDib32, ClearUpKeepsTheSize) {
  const auto surface = AlphaSurface(6, 2);
  surface->ClearUp();
  ExpectEmpty(*surface);
  EXPECT_EQ(surface->Width(), 6);
  EXPECT_EQ(surface->Height(), 2);
}

TEST(CDib32, EveryCreationBringsStraightAlphaBack) {
  const PixelContext picture(2, 2, 32);
  const auto surface = AlphaSurface(2, 2);
  surface->Premultiply();
  EXPECT_FALSE(surface->NotPremultiplied());
  surface->Create(2, 2);
  EXPECT_TRUE(surface->NotPremultiplied());
  surface->Premultiply();
  surface->CreateFromBitmap(nullptr);
  EXPECT_TRUE(surface->NotPremultiplied());
  surface->Premultiply();
  surface->CreateFromPicture(nullptr);
  EXPECT_TRUE(surface->NotPremultiplied());
}

TEST(CDib32, ASurfaceThatWasPremultipliedKeepsSayingSo) {
  const auto surface = AlphaSurface(2, 2), other = AlphaSurface(2, 2);
  surface->Premultiply();
  surface->Clear(kRed);
  surface->LoadFromDC(other->hDC(), 0, 0, -1, -1, SRCCOPY);
  surface->Grayscale(-1);
  surface->SetConstantAlpha(255);
  surface->KeyOutCorner();
  surface->PaintTo(other->hDC(), 0, 0, -1, -1, 0, 0, SRCCOPY);
  EXPECT_FALSE(surface->NotPremultiplied());
  surface->ClearUp();
  EXPECT_FALSE(surface->NotPremultiplied());
}

// A bitmap that isn't selected anywhere, with noise in it.
struct Bitmap {
  HDC dc = CreateCompatibleDC(nullptr);
  std::uint8_t* bits = nullptr;
  HBITMAP handle;

  Bitmap(Long width, Long height, int bits_per_pixel)
      : handle(CreateDIBSection(dc, width, height, bits_per_pixel, bits)) {}
  ~Bitmap() {
    DeleteObject(handle);
    DeleteDC(dc);
  }
  Bitmap(const Bitmap&) = delete;
  Bitmap& operator=(const Bitmap&) = delete;
};

TEST(CDib32, CreateFromBitmapCarriesAllFourBytesOfEachPixel) {
  const Bitmap bitmap(5, 3, 32);
  for (int i = 0; i < 5 * 3 * 4; ++i) bitmap.bits[i] = static_cast<std::uint8_t>(i * 7 + 1);
  CDib32 surface;
  surface.CreateFromBitmap(bitmap.handle);
  ASSERT_EQ(surface.Width(), 5);
  ASSERT_EQ(surface.Height(), 3);
  GdiFlush();
  EXPECT_EQ(std::memcmp(surface.Bits(), bitmap.bits, std::size_t{5} * 3 * 4), 0);
  BITMAP record;
  EXPECT_TRUE(GetObjectA(bitmap.handle, record)) << "the bitmap stays the caller's";
}

TEST(CDib32, CreateFromABitmapWithoutAlphaTakesItsColours) {
  const Bitmap bitmap(2, 1, 24);
  for (int i = 0; i < 6; ++i) bitmap.bits[i] = static_cast<std::uint8_t>(i + 1);
  CDib32 surface;
  surface.CreateFromPicture(bitmap.handle);
  ASSERT_EQ(surface.Width(), 2);
  const Pixels pixels = PixelsOf(surface);
  for (std::size_t i = 0; i < 2; ++i) {
    for (std::size_t c = 0; c < 3; ++c) EXPECT_EQ(pixels[i][c], 3 * i + c + 1);
  }
}

TEST(CDib32, CreateFromNoBitmapIsEmpty) {
  const auto surface = AlphaSurface(2, 2);
  surface->CreateFromBitmap(nullptr);
  ExpectEmpty(*surface);
}

TEST(CDib32, TakeBitmapMakesTheBitmapItselfTheSurface) {
  std::uint8_t* bits = nullptr;
  ObjectRef bitmap(CreateDIBSection(nullptr, 5, 3, 32, bits));
  for (int i = 0; i < 5 * 3 * 4; ++i) bits[i] = static_cast<std::uint8_t>(i * 7 + 1);
  const auto surface = AlphaSurface(9, 9);
  surface->Premultiply();
  surface->TakeBitmap(std::move(bitmap));
  EXPECT_EQ(surface->Width(), 5);
  EXPECT_EQ(surface->Height(), 3);
  EXPECT_EQ(surface->BytesPerScanLine(), 20);
  EXPECT_TRUE(surface->NotPremultiplied());
  ASSERT_EQ(surface->Bits(), bits) << "no copy";
  for (int i = 0; i < 5 * 3 * 4; ++i) EXPECT_EQ(bits[i], static_cast<std::uint8_t>(i * 7 + 1));
  surface->Clear(kGrey);
  GdiFlush();
  EXPECT_EQ(PixelsOf(*surface), Pixels(15, Pixel{11, 10, 9, 0})) << "its context draws on the pixels";
}

TEST(CDib32, TakingNoBitmapOrOneOfAnotherDepthLeavesNothing) {
  std::uint8_t* bits = nullptr;
  for (const int depth : {0, 24}) {
    const auto surface = AlphaSurface(2, 2);
    surface->TakeBitmap(ObjectRef(depth == 0 ? nullptr : CreateDIBSection(nullptr, 5, 3, depth, bits)));
    ExpectEmpty(*surface);
  }
}

TEST(CDib32, ClearFillsTheWholeSurfaceWithAlphaZero) {
  const auto surface = AlphaSurface(7, 5, kOpaque);
  surface->Clear(kGrey);
  EXPECT_EQ(PixelsOf(*surface), Pixels(35, Pixel{11, 10, 9, 0}));
}

TEST(CDib32, DrawingOnAnEmptySurfaceDoesNothing) {
  const auto other = AlphaSurface(3, 3, kOpaque);
  CDib32 empty;
  empty.Clear(kRed);
  empty.LoadFromDC(other->hDC(), 0, 0, 3, 3, SRCCOPY);
  empty.PaintTo(other->hDC(), 0, 0, 3, 3, 0, 0, SRCCOPY);
  empty.StretchPaintTo(other->hDC(), 0, 0, 3, 3, SRCCOPY);
  empty.PaintTransparent(other->hDC(), 0, 0, 3, 3, 0, 0, kGrey);
  empty.AlphaPaint(other->hDC(), 0, 0, 3, 3, 0, 0, -1, -1, 255, true);
  empty.SoftwareAlphaPaint(other->hDC(), 0, 0, 255);
  empty.SetConstantAlpha(1);
  empty.Grayscale(-1);
  empty.KeyOutCorner();
  empty.KeyOutCornerFuzzy();
  empty.Premultiply();
  ExpectEmpty(empty);
  EXPECT_EQ(PixelsOf(*other), Pixels(9, kOpaque));
}

TEST(CDib32, BlitsBetweenSurfacesCarryAlpha) {
  const auto source = AlphaSurface(2, 1), target = AlphaSurface(2, 1);
  PutPixels(*source, {kSeeThrough, kOpaque});
  target->LoadFromDC(source->hDC(), 0, 0, -1, -1, SRCCOPY);
  EXPECT_EQ(PixelsOf(*target), (Pixels{kSeeThrough, kOpaque}));
  const auto painted = AlphaSurface(2, 1);
  source->PaintTo(painted->hDC(), 0, 0, kMin, -1, 0, 0, SRCCOPY);
  EXPECT_EQ(PixelsOf(*painted), (Pixels{kSeeThrough, kOpaque}));
}

TEST(CDib32, StretchPaintToFillsTheRectangleWithTheWholeSurface) {
  const auto source = AlphaSurface(4, 2, kOpaque);
  for (Long row = 0; row < 2; ++row)
    for (Long x = 2; x < 4; ++x) PutPixel(*source, x, row, {7, 8, 9, 255});
  const auto target = Surface(13, 8, kGrey);
  source->StretchPaintTo(target->hDC(), 1, 2, 12, 4, SRCCOPY);
  for (Long row = 0; row < 8; ++row) {
    const bool inside = row >= 2 && row < 6;
    EXPECT_EQ(ColourAt(*target, 0, row), kGrey);
    EXPECT_EQ(ColourAt(*target, 1, row), inside ? MakeRgb(6, 5, 4) : kGrey);
    EXPECT_EQ(ColourAt(*target, 12, row), inside ? MakeRgb(9, 8, 7) : kGrey);
  }
  const auto own_size = Surface(5, 5, kGrey);
  source->StretchPaintTo(own_size->hDC(), 0, 0, -1, -1, SRCCOPY);
  EXPECT_EQ(ColourAt(*own_size, 3, 3), MakeRgb(9, 8, 7));
  EXPECT_EQ(ColourAt(*own_size, 4, 3), kGrey);
  EXPECT_EQ(ColourAt(*own_size, 3, 2), kGrey);
}

TEST(CDib32, PaintTransparentLeavesOutTheKey) {
  const auto source = AlphaSurface(2, 1);
  PutPixels(*source, {kKeyPixel, kOpaque});
  const auto target = Surface(2, 1, kGrey);
  source->PaintTransparent(target->hDC(), 0, 0, -1, -1, 0, 0, KeyColour);
  EXPECT_EQ(Colours(*target), (std::vector<COLORREF>{kGrey, MakeRgb(6, 5, 4)}));
}

TEST(CDib32, SameValueAndWithinToleranceCompareIntegers) {
  EXPECT_TRUE(CDib32::SameValue(-5, -5));
  EXPECT_FALSE(CDib32::SameValue(5, 6));
  for (const Long reference : {0, 10, 255, -100}) {
    for (Long off = -14; off <= 14; ++off) {
      EXPECT_EQ(CDib32::WithinTolerance(reference + off, reference), off >= -12 && off <= 12) << off;
    }
  }
  EXPECT_FALSE(CDib32::WithinTolerance(kMin, kMax));
  EXPECT_TRUE(CDib32::WithinTolerance(kMax, kMax));
}

TEST(KeyOutCorner, OnASurfaceOfOneColourTurnsEveryPixelTransparent) {
  const auto surface = AlphaSurface(5, 4, kOpaque);
  surface->KeyOutCorner();
  EXPECT_EQ(PixelsOf(*surface), Pixels(20, kKeyPixel));
}

TEST(KeyOutCorner, ComparesWithTheTopLeftPixelWhateverItsAlpha) {
  const auto surface = AlphaSurface(2, 2);
  constexpr Pixel kBottomLeft{4, 5, 7, 255}, kTopRight{4, 5, 6, 9};
  PutPixels(*surface, {kBottomLeft, kSeeThrough, kOpaque, kTopRight});
  surface->KeyOutCorner();
  EXPECT_EQ(PixelsOf(*surface), (Pixels{kBottomLeft, kSeeThrough, kKeyPixel, kKeyPixel}));
}

TEST(KeyOutCornerFuzzy, OnACornerOf10Accepts22AndRejects23InAnyChannel) {
  for (std::size_t channel = 0; channel < 3; ++channel) {
    const auto surface = AlphaSurface(4, 1, Pixel{10, 10, 10, 255});
    Pixel near{10, 10, 10, 255}, far = near, below = near;
    near[channel] = 22, far[channel] = 23, below[channel] = 0;
    PutPixel(*surface, 1, 0, near);
    PutPixel(*surface, 2, 0, far);
    PutPixel(*surface, 3, 0, below);
    surface->KeyOutCornerFuzzy();
    EXPECT_EQ(PixelsOf(*surface), (Pixels{kKeyPixel, kKeyPixel, far, kKeyPixel}));
  }
}

TEST(KeyOutCornerFuzzy, FollowsItsDefinition) {
  Random random(41);
  for (int round = 0; round < 50; ++round) {
    const auto surface = AlphaSurface(Between(random, 1, 20), Between(random, 1, 20));
    Pixels expected;
    for (Long i = 0; i < surface->Width() * surface->Height(); ++i) {
      const auto near = [&] { return static_cast<std::uint8_t>(Between(random, 90, 118)); };
      expected.push_back({near(), near(), near(), near()});
    }
    PutPixels(*surface, expected);
    const Pixel corner = PixelOf(*surface, 0, surface->Height() - 1);
    for (Pixel& pixel : expected) {
      bool same = true;
      for (std::size_t c = 0; c < 3; ++c) same = same && std::abs(pixel[c] - corner[c]) <= 12;
      if (same) pixel = kKeyPixel;
    }
    surface->KeyOutCornerFuzzy();
    ASSERT_EQ(PixelsOf(*surface), expected);
  }
}

}  // namespace
}  // namespace marklet
