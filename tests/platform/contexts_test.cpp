// Contexts, what is selected in them, and handles that aren't there.
#include <limits>

#include "platform/test_picture.h"

namespace marklet {
namespace {

constexpr Long kMax = std::numeric_limits<Long>::max();

TEST(Contexts, StandOnNoPixelsAtFirst) {
  const HDC dc = CreateCompatibleDC(nullptr);
  ASSERT_NE(dc, nullptr);
  PixelView view;
  EXPECT_FALSE(PixelsOf(dc, view));
  EXPECT_TRUE(DeleteDC(dc));
}

TEST(Contexts, ShowThePixelsOfTheSelectedBitmap) {
  TestPicture picture(5, 3);
  PixelView view;
  ASSERT_TRUE(PixelsOf(picture.Context(), view));
  EXPECT_EQ(view.bits, picture.At(0, 2));
  EXPECT_EQ(view.width, 5);
  EXPECT_EQ(view.height, 3);
  EXPECT_EQ(view.stride, 16);
  EXPECT_EQ(view.bits_per_pixel, 24);
}

TEST(Contexts, GiveBackWhatWasSelectedBefore) {
  TestPicture picture(4, 4);
  const HBRUSH first = CreateSolidBrush(1), second = CreateSolidBrush(2);
  const HGDIOBJ original = SelectObject(picture.Context(), first);
  EXPECT_NE(original, nullptr);
  EXPECT_EQ(SelectObject(picture.Context(), second), first);
  EXPECT_EQ(SelectObject(picture.Context(), original), second);
  EXPECT_TRUE(DeleteObject(first));
  EXPECT_TRUE(DeleteObject(second));
}

TEST(Contexts, KeepABitmapToThemselves) {
  TestPicture picture(4, 4);
  const HDC other = CreateCompatibleDC(nullptr);
  EXPECT_EQ(SelectObject(other, picture.Bitmap()), nullptr);
  EXPECT_TRUE(DeleteDC(other));
}

TEST(Bitmaps, AreClearAndRowsArePaddedToFourBytes) {
  const HDC dc = CreateCompatibleDC(nullptr);
  std::uint8_t* bits = nullptr;
  const HBITMAP bitmap = CreateDIBSection(dc, 3, 2, 24, bits);
  ASSERT_NE(bitmap, nullptr);
  for (int i = 0; i < 24; ++i) EXPECT_EQ(bits[i], 0);
  BITMAP told;
  EXPECT_TRUE(GetObjectA(bitmap, told));
  EXPECT_EQ(told.bmWidth, 3);
  EXPECT_EQ(told.bmHeight, 2);
  EXPECT_EQ(told.bmBitsPixel, 24);
  DeleteObject(bitmap);
  DeleteDC(dc);
}

TEST(Bitmaps, OfNoSizeOrOfOtherDepthsOrPastAllMemoryAreNotMade) {
  const HDC dc = CreateCompatibleDC(nullptr);
  std::uint8_t* bits = nullptr;
  EXPECT_EQ(CreateDIBSection(dc, 0, 5, 24, bits), nullptr);
  EXPECT_EQ(CreateDIBSection(dc, 5, 0, 24, bits), nullptr);
  EXPECT_EQ(CreateDIBSection(dc, -5, 5, 24, bits), nullptr);
  EXPECT_EQ(CreateDIBSection(dc, 5, -5, 24, bits), nullptr);
  EXPECT_EQ(CreateDIBSection(dc, 5, 5, 16, bits), nullptr);
  EXPECT_EQ(CreateDIBSection(dc, kMax, kMax, 32, bits), nullptr);
  EXPECT_EQ(CreateDIBSection(dc, 65536, 32768, 24, bits), nullptr);
  EXPECT_EQ(bits, nullptr);
  DeleteDC(dc);
}

TEST(Handles, ThatAreNullFailQuietly) {
  std::uint8_t* bits = nullptr;
  BITMAP told;
  PixelView view;
  EXPECT_FALSE(DeleteDC(nullptr));
  EXPECT_FALSE(DeleteObject(nullptr));
  EXPECT_FALSE(GetObjectA(nullptr, told));
  EXPECT_FALSE(PixelsOf(nullptr, view));
  EXPECT_EQ(SelectObject(nullptr, nullptr), nullptr);
  EXPECT_FALSE(DrawFocusRect(nullptr, {0, 0, 4, 4}));
  const HDC dc = CreateCompatibleDC(nullptr);
  EXPECT_EQ(SelectObject(dc, nullptr), nullptr);
  DeleteDC(dc);
  const HBITMAP bitmap = CreateDIBSection(nullptr, 2, 2, 24, bits);
  EXPECT_NE(bitmap, nullptr);
  DeleteObject(bitmap);
}

TEST(Handles, OfAnotherKindAreNoBitmaps) {
  const HBRUSH brush = CreateSolidBrush(0);
  BITMAP told;
  EXPECT_FALSE(GetObjectA(brush, told));
  DeleteObject(brush);
}

TEST(Modes, ReturnTheirFormerValue) {
  TestPicture picture(4, 4);
  const HDC dc = picture.Context();
  EXPECT_EQ(SetBkMode(dc, TRANSPARENT), 2);
  EXPECT_EQ(SetBkMode(dc, OPAQUE), 1);
  EXPECT_EQ(SetTextColor(dc, 0x123456), 0x000000u);
  EXPECT_EQ(GetTextColor(dc), 0x123456u);
  EXPECT_EQ(SetTextColor(dc, 0), 0x123456u);
  EXPECT_EQ(SetBkColor(dc, 0x112233), 0xFFFFFFu);
  EXPECT_EQ(SetBkColor(dc, 0), 0x112233u);
  EXPECT_EQ(SetTextAlign(dc, TA_BASELINE), 0u);
  EXPECT_EQ(SetTextAlign(dc, TA_CENTER), TA_BASELINE);
}

TEST(Modes, WithoutAContextFail) {
  SIZE size{3, 4};
  ABC widths;
  RECT rect{0, 0, 10, 10};
  EXPECT_EQ(SetBkMode(nullptr, TRANSPARENT), 0);
  EXPECT_EQ(SetTextColor(nullptr, 0), CLR_INVALID);
  EXPECT_EQ(GetTextColor(nullptr), CLR_INVALID);
  EXPECT_EQ(SetBkColor(nullptr, 0), CLR_INVALID);
  EXPECT_EQ(SetTextAlign(nullptr, 0), 0u);
  EXPECT_FALSE(GetTextExtentPoint32W(nullptr, u"a", size));
  EXPECT_FALSE(GetTextExtentPoint32A(nullptr, "a", 1, size));
  EXPECT_EQ(size, (SIZE{3, 4}));
  EXPECT_FALSE(GetCharABCWidthsA(nullptr, 'a', widths));
  EXPECT_EQ(DrawTextW(nullptr, u"a", rect, 0), 0);
  EXPECT_EQ(DrawTextA(nullptr, "a", rect, 0), 0);
  EXPECT_FALSE(TextOutW(nullptr, 0, 0, u"a"));
  EXPECT_FALSE(ExtTextOutW(nullptr, 0, 0, 0, nullptr, u"a"));
  EXPECT_GT(PixelsPerInch(nullptr), 0);
}

}  // namespace
}  // namespace marklet
