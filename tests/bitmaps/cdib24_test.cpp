#include "bitmaps/cdib24.h"

#include <gtest/gtest.h>

#include <limits>

#include "bitmaps/cdib32.h"
#include "bitmaps/pixels.h"
#include "platform/text.h"

namespace marklet {
namespace {

constexpr COLORREF kRed = MakeRgb(255, 0, 0), kBlue = MakeRgb(0, 0, 255), kGrey = MakeRgb(9, 10, 11);
constexpr Long kMax = std::numeric_limits<Long>::max(), kMin = std::numeric_limits<Long>::min();

void ExpectEmpty(const CDib24& surface) {
  EXPECT_EQ(surface.hDC(), nullptr);
  EXPECT_EQ(surface.Bits(), nullptr);
  EXPECT_EQ(surface.BytesPerScanLine(), 0);
}

TEST(CDib24, StartsEmpty) {
  const CDib24 surface;
  ExpectEmpty(surface);
  EXPECT_EQ(surface.Width(), 0);
  EXPECT_EQ(surface.Height(), 0);
}

TEST(CDib24, StrideIsThreeBytesAPixelInWholeFours) {
  constexpr Long kStrides[][2] = {{1, 4},    {2, 8},     {3, 12},    {4, 12},      {5, 16},     {6, 20},
                                  {7, 24},   {8, 24},    {9, 28},    {16, 48},     {17, 52},    {33, 100},
                                  {99, 300}, {100, 300}, {101, 304}, {1023, 3072}, {1024, 3072}};
  for (const auto& [width, stride] : kStrides) {
    CDib24 surface;
    ASSERT_TRUE(surface.Create(width, 2));
    EXPECT_EQ(surface.BytesPerScanLine(), stride) << "width " << width;
    PixelView view;
    ASSERT_TRUE(PixelsOf(surface.hDC(), view));
    EXPECT_EQ(view.stride, stride) << "width " << width;
    EXPECT_EQ(view.bits, surface.Bits());
  }
}

// Both ways of keying out, in three bytes and in four. Rows of three bytes end in padding, which is no pixel.
TEST(CDib24, KeysOutWhatTheSurfaceWithAlphaDoes) {
  Random random(43);
  for (int round = 0; round < 50; ++round) {
    const auto surface = Surface(Between(random, 1, 20), Between(random, 1, 20));
    CDib32 with_alpha;
    ASSERT_TRUE(with_alpha.Create(surface->Width(), surface->Height()));
    const auto near = [&] { return Between(random, 90, 118); };
    for (Long y = 0; y < surface->Height(); ++y)
      for (Long x = 0; x < surface->Width(); ++x)
        PutColour(*surface, x, y,
                  Between(random, 0, 2) == 0 ? MakeRgb(99, 99, 99) : MakeRgb(near(), near(), near()));
    with_alpha.LoadFromDC(surface->hDC(), 0, 0, -1, -1, SRCCOPY);
    const bool fuzzy = round % 2 == 0;
    fuzzy ? surface->KeyOutCornerFuzzy() : surface->KeyOutCorner();
    fuzzy ? with_alpha.KeyOutCornerFuzzy() : with_alpha.KeyOutCorner();
    const auto expected = Surface(surface->Width(), surface->Height());
    expected->LoadFromDC(with_alpha.hDC(), 0, 0, -1, -1, SRCCOPY);
    ASSERT_EQ(Colours(*surface), Colours(*expected)) << round;
    ASSERT_EQ(ColourAt(*surface, 0, surface->Height() - 1), KeyColour);
  }
  CDib24 empty;
  empty.KeyOutCorner();
  empty.KeyOutCornerFuzzy();
  ExpectEmpty(empty);
}

TEST(CDib24, IsBlackWhenNew) {
  const auto surface = Surface(13, 7);
  EXPECT_EQ(Colours(*surface), std::vector<COLORREF>(std::size_t{13} * 7, 0));
}

TEST(CDib24, PixelsAreBlueGreenRedFromTheBottomLineUp) {
  const auto surface = Surface(3, 2);
  PutColour(*surface, 0, 1, MakeRgb(1, 2, 3));
  EXPECT_EQ(surface->Bits()[12], 3);
  EXPECT_EQ(surface->Bits()[13], 2);
  EXPECT_EQ(surface->Bits()[14], 1);
  const auto top_left = Surface(1, 1);
  top_left->LoadFromDC(surface->hDC(), 0, 0, 1, 1, SRCCOPY);
  EXPECT_EQ(Colours(*top_left), std::vector<COLORREF>{MakeRgb(1, 2, 3)})
      << "(0, 0) is the last row in memory";
}

TEST(CDib24, CreateRefusesSizesThatHoldNoPixels) {
  constexpr Long kSizes[][2] = {{0, 5},   {5, 0},    {0, 0},    {-1, 5},     {5, -1},
                                {-5, -5}, {kMin, 5}, {5, kMin}, {kMin, kMin}};
  for (const auto& [width, height] : kSizes) {
    CDib24 surface;
    EXPECT_FALSE(surface.Create(width, height)) << width << " by " << height;
    ExpectEmpty(surface);
  }
}

TEST(CDib24, CreateRefusesSizesWhosePixelsCannotBeCounted) {
  constexpr Long kSizes[][2] = {{kMax, 1},     {1, kMax},      {kMax, kMax},
                                {kMax / 3, 2}, {65536, 65536}, {715827883, 1}};
  for (const auto& [width, height] : kSizes) {
    CDib24 surface;
    EXPECT_FALSE(surface.Create(width, height)) << width << " by " << height;
    ExpectEmpty(surface);
  }
}

TEST(CDib24, CreateReplacesTheEarlierSurface) {
  CDib24 surface;
  ASSERT_TRUE(surface.Create(4, 4));
  surface.Clear(kRed);
  ASSERT_TRUE(surface.Create(2, 3));
  EXPECT_EQ(surface.Width(), 2);
  EXPECT_EQ(surface.Height(), 3);
  EXPECT_EQ(Colours(surface), std::vector<COLORREF>(6, 0));
}

TEST(CDib24, AFailedCreateLeavesTheSurfaceEmpty) {
  CDib24 surface;
  ASSERT_TRUE(surface.Create(4, 4));
  EXPECT_FALSE(surface.Create(0, 4));
  ExpectEmpty(surface);
}

TEST(CDib24, ClearUpKeepsTheSize) {
  CDib24 surface;
  ASSERT_TRUE(surface.Create(6, 2));
  surface.ClearUp();
  ExpectEmpty(surface);
  EXPECT_EQ(surface.Width(), 6);
  EXPECT_EQ(surface.Height(), 2);
  surface.ClearUp();
  ExpectEmpty(surface);
}

TEST(CDib24, DetachGivesTheBitmapAway) {
  CDib24 surface;
  ASSERT_TRUE(surface.Create(5, 3));
  surface.Clear(kRed);
  const HBITMAP bitmap = surface.Detach();
  ExpectEmpty(surface);
  BITMAP record;
  ASSERT_TRUE(GetObjectA(bitmap, record));
  EXPECT_EQ(record.bmWidth, 5);
  EXPECT_EQ(record.bmHeight, 3);
  EXPECT_EQ(record.bmBitsPixel, 24);
  EXPECT_TRUE(DeleteObject(bitmap));
  EXPECT_EQ(surface.Detach(), nullptr);
}

TEST(CDib24, CreateFromPictureTakesSizeAndPixels) {
  const auto picture = Surface(5, 3);
  Random random(1);
  FillWithNoise(*picture, random, KeyColour);
  const std::vector<COLORREF> pixels = Colours(*picture);
  const HBITMAP bitmap = picture->Detach();
  CDib24 surface;
  surface.CreateFromPicture(bitmap);
  EXPECT_EQ(surface.Width(), 5);
  EXPECT_EQ(surface.Height(), 3);
  EXPECT_EQ(Colours(surface), pixels);
  EXPECT_TRUE(DeleteObject(bitmap)) << "the picture stays the caller's";
}

TEST(CDib24, CreateFromNoPictureIsEmpty) {
  CDib24 surface;
  ASSERT_TRUE(surface.Create(2, 2));
  surface.CreateFromPicture(nullptr);
  ExpectEmpty(surface);
}

TEST(CDib24, ClearFillsTheWholeSurface) {
  const auto surface = Surface(7, 5, kGrey);
  EXPECT_EQ(Colours(*surface), std::vector<COLORREF>(35, kGrey));
}

TEST(CDib24, DrawingOnAnEmptySurfaceDoesNothing) {
  const auto other = Surface(3, 3, kRed);
  CDib24 empty;
  empty.Clear(kRed);
  empty.LoadFromDC(other->hDC(), 0, 0, 3, 3, SRCCOPY);
  empty.PaintTo(other->hDC(), 0, 0, 3, 3, 0, 0, SRCCOPY);
  empty.AlphaPaint(other->hDC(), 0, 0, 3, 3, 0, 0, 128, false);
  empty.PaintTransparent(other->hDC(), 0, 0, 3, 3, 0, 0, kBlue);
  COLORREF key = CLR_INVALID;
  empty.Grayscale(key);
  EXPECT_FALSE(empty.BilinearInto(*other, KeyColour));
  EXPECT_FALSE(other->BilinearInto(empty, KeyColour));
  ExpectEmpty(empty);
  EXPECT_EQ(Colours(*other), std::vector<COLORREF>(9, kRed));
}

TEST(CDib24, ResizingAnEmptySurfaceGivesABlackOne) {
  const CDib24 empty;
  const auto nearest = empty.ResampleNearest(2, 2);
  ASSERT_NE(nearest, nullptr);
  EXPECT_EQ(Colours(*nearest), std::vector<COLORREF>(4, 0));
  const auto keyed = empty.ResizeKeyed(2, 2, KeyColour);
  ASSERT_NE(keyed, nullptr);
  EXPECT_EQ(Colours(*keyed), std::vector<COLORREF>(4, 0));
}

TEST(CDib24, LoadFromDCCopiesToTheTopLeftCorner) {
  const auto source = Surface(4, 4);
  PutColour(*source, 2, 4 - 1 - 1, kRed);  // (2, 1) of the picture
  const auto surface = Surface(3, 3, kGrey);
  surface->LoadFromDC(source->hDC(), 2, 1, 2, 2, SRCCOPY);
  EXPECT_EQ(Colours(*surface), (std::vector<COLORREF>{kGrey, kGrey, kGrey, 0, 0, kGrey, kRed, 0, kGrey}));
}

TEST(CDib24, PaintToCopiesThePartAskedFor) {
  const auto source = Surface(3, 2);
  PutColour(*source, 1, 0, kRed);
  const auto target = Surface(4, 2, kGrey);
  source->PaintTo(target->hDC(), 2, 0, 2, 2, 1, 0, SRCCOPY);
  EXPECT_EQ(Colours(*target), (std::vector<COLORREF>{kGrey, kGrey, kRed, 0, kGrey, kGrey, 0, 0}));
}

TEST(CDib24, SizesBelowZeroMeanTheSurfacesOwn) {
  const auto source = Surface(3, 2, kRed);
  const std::vector<COLORREF> all_red(6, kRed);

  const auto painted = Surface(3, 2);
  source->PaintTo(painted->hDC(), 0, 0, -1, kMin, 0, 0, SRCCOPY);
  EXPECT_EQ(Colours(*painted), all_red);

  const auto loaded = Surface(3, 2);
  loaded->LoadFromDC(source->hDC(), 0, 0, -1, -1, SRCCOPY);
  EXPECT_EQ(Colours(*loaded), all_red);

  const auto blended = Surface(3, 2);
  source->AlphaPaint(blended->hDC(), 0, 0, -1, -1, 0, 0, 255, false);
  EXPECT_EQ(Colours(*blended), all_red);

  const auto keyed = Surface(3, 2);
  source->PaintTransparent(keyed->hDC(), 0, 0, -1, -1, 0, 0, kBlue);
  EXPECT_EQ(Colours(*keyed), all_red);
}

TEST(CDib24, ASizeOfZeroPaintsNothing) {
  const auto source = Surface(3, 2, kRed);
  const auto target = Surface(3, 2);
  source->PaintTo(target->hDC(), 0, 0, 0, -1, 0, 0, SRCCOPY);
  source->PaintTransparent(target->hDC(), 0, 0, -1, 0, 0, 0, kBlue);
  EXPECT_EQ(Colours(*target), std::vector<COLORREF>(6, 0));
}

TEST(CDib24, AlphaPaintMixesByTheConstant) {
  const auto source = Surface(1, 1, MakeRgb(200, 100, 0));
  const auto target = Surface(1, 1, MakeRgb(0, 100, 200));
  source->AlphaPaint(target->hDC(), 0, 0, 1, 1, 0, 0, 51, false);  // a fifth
  const COLORREF mixed = Colours(*target)[0];
  EXPECT_NEAR(RedOf(mixed), 40, 1);
  EXPECT_NEAR(GreenOf(mixed), 100, 1);
  EXPECT_NEAR(BlueOf(mixed), 160, 1);
}

TEST(CDib24, TextDrawnOnItsContextReachesItsPixels) {
  const auto surface = Surface(40, 30, MakeRgb(255, 255, 255));
  SetBkMode(surface->hDC(), TRANSPARENT);
  TextOutW(surface->hDC(), 2, 2, u"W");
  EXPECT_NE(Colours(*surface), std::vector<COLORREF>(std::size_t{40} * 30, MakeRgb(255, 255, 255)));
}

}  // namespace
}  // namespace marklet
