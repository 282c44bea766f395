#include "platform/icon.h"

#include <functional>

#include "platform/test_picture.h"

namespace marklet {
namespace {

using Pixel = std::function<std::uint32_t(Long x, Long y)>;  // 0xAARRGGBB, from the top left

ObjectRef Bitmap(Long width, Long height, const Pixel& pixel) {
  const HDC dc = CreateCompatibleDC(nullptr);
  std::uint8_t* bits = nullptr;
  ObjectRef bitmap(CreateDIBSection(dc, width, height, 32, bits));
  for (Long y = height; y-- > 0;)
    for (Long x = 0; x < width; ++x)
      for (int c = 0; c < 4; ++c) *bits++ = static_cast<std::uint8_t>(pixel(x, y) >> 8 * c);
  DeleteDC(dc);
  return bitmap;
}

bool Outside(Long x, Long y) { return x < 3 || y > 11; }
std::uint32_t Mask(Long x, Long y) { return Outside(x, y) ? 0xFFFFFF : 0; }
std::uint32_t Speckle(Long x, Long y) {
  return (static_cast<std::uint32_t>(x * 0x0D0511 + y * 0x310B07) & 0xFFFFFF) | 1;
}
COLORREF ColourOf(std::uint32_t pixel) { return MakeRgb(pixel >> 16, pixel >> 8, pixel); }

TEST(Icon, ShowsItsColoursWhereTheMaskIsBlack) {
  const ObjectRef mask = Bitmap(16, 16, Mask);
  const ObjectRef colours = Bitmap(16, 16, [](Long x, Long y) { return Outside(x, y) ? 0 : Speckle(x, y); });
  const PictureRef picture = OleCreatePictureIndirect(CreateIconIndirect(mask.get(), colours.get()));
  ASSERT_NE(picture, nullptr);
  TestPicture paper(20, 20);
  paper.Fill(0x99);
  EXPECT_TRUE(RenderPicture(picture, paper.Context()));
  for (Long y = 0; y < 20; ++y)
    for (Long x = 0; x < 20; ++x) {
      const bool shown = x < 16 && y < 16 && !Outside(x, y);
      ASSERT_EQ(paper.Pixel(x, y), shown ? ColourOf(Speckle(x, y)) : 0x999999u) << x << ',' << y;
    }
}

TEST(Icon, AsAPictureHasItsSizeAndNoBitmap) {
  const ObjectRef mask = Bitmap(32, 32, Mask), colours = Bitmap(32, 32, Speckle);
  const PictureRef picture = OleCreatePictureIndirect(CreateIconIndirect(mask.get(), colours.get()));
  const Long himetric = (32 * 2540 + PixelsPerInch(nullptr) / 2) / PixelsPerInch(nullptr);
  EXPECT_EQ(PictureSize(picture), (SIZE{himetric, himetric}));
  EXPECT_EQ(PictureHandle(picture), nullptr);
}

TEST(Icon, LeavesTheBitmapsToTheirOwner) {
  const ObjectRef mask = Bitmap(16, 16, Mask), colours = Bitmap(16, 16, Speckle);
  { const IconRef icon = CreateIconIndirect(mask.get(), colours.get()); }
  BITMAP record;
  EXPECT_TRUE(GetObjectA(mask.get(), record));
  EXPECT_TRUE(GetObjectA(colours.get(), record));
}

TEST(Icon, NeedsTwoBitmapsOfOneSize) {
  const ObjectRef mask = Bitmap(16, 16, Mask), colours = Bitmap(16, 15, Speckle);
  const ObjectRef brush(CreateSolidBrush(0));
  EXPECT_EQ(CreateIconIndirect(mask.get(), colours.get()), nullptr);
  EXPECT_EQ(CreateIconIndirect(nullptr, colours.get()), nullptr);
  EXPECT_EQ(CreateIconIndirect(mask.get(), nullptr), nullptr);
  EXPECT_EQ(CreateIconIndirect(brush.get(), colours.get()), nullptr);
}

TEST(Icon, ThatIsNoneMakesNoPicture) {
  EXPECT_EQ(OleCreatePictureIndirect(nullptr), nullptr);
  EXPECT_FALSE(DestroyIcon(nullptr));
}

}  // namespace
}  // namespace marklet
