// What the seam makes and releases on Windows, counted in the table of GDI handles.
#include <gtest/gtest.h>

#include <vector>

#include "platform/gdi.h"
#include "platform/shared/std_font.h"
#include "platform/text.h"
#include "support/gdi_handles.h"

namespace marklet {
namespace {

TEST(GdiHandles, AreCountedOneByOne) {
  const int before = CountGdiHandles();
  std::vector<HBRUSH> brushes(50);
  for (HBRUSH& brush : brushes) brush = CreateSolidBrush(0x123456);
  EXPECT_EQ(CountGdiHandles(), before + 50);
  std::uint8_t* bits = nullptr;
  const HBITMAP bitmap = CreateDIBSection(nullptr, 3, 3, 32, bits);
  EXPECT_EQ(CountGdiHandles(), before + 51);
  EXPECT_TRUE(DeleteObject(bitmap));
  for (HBRUSH brush : brushes) EXPECT_TRUE(DeleteObject(brush));
  EXPECT_EQ(CountGdiHandles(), before);
}

void DrawOneOfEverything(HDC dc) {
  const RECT all = {0, 0, 40, 20};
  const HBRUSH brush = CreateSolidBrush(0x00FF00);
  FillRect(dc, all, brush);
  DeleteObject(brush);

  const HPEN pen = CreatePen(1, 0x0000FF);
  const HGDIOBJ former_pen = SelectObject(dc, pen);
  MoveToEx(dc, 0, 0);
  LineTo(dc, 40, 20);
  SelectObject(dc, former_pen);
  DeleteObject(pen);

  LOGFONTW record;
  record.lfHeight = -13;
  for (const Long height : {-13, -3000}) {
    record.lfHeight = height;
    const HFONT font = CreateFontIndirectW(record);
    const HGDIOBJ former_font = SelectObject(dc, font);
    RECT rect = all;
    DrawTextW(dc, u"&Text on two lines", rect, DT_WORDBREAK | DT_WORD_ELLIPSIS);
    DrawTextW(dc, std::u16string(1500, u'm'), rect, DT_SINGLELINE | DT_RIGHT);
    ExtTextOutW(dc, 0, 0, 4, &rect, u"Text");
    SIZE size;
    GetTextExtentPoint32W(dc, u"Text", size);
    SelectObject(dc, former_font);
    DeleteObject(font);
  }
  DrawFocusRect(dc, all);
}

void MakeDrawAndRelease() {
  const HDC dc = CreateCompatibleDC(nullptr);
  std::uint8_t* bits = nullptr;
  const HBITMAP bitmap = CreateDIBSection(dc, 40, 20, 24, bits);
  const HGDIOBJ former = SelectObject(dc, bitmap);
  DrawOneOfEverything(dc);
  BitBlt(dc, 1, 1, 30, 10, dc, 0, 0, SRCCOPY);
  PixelView view;
  EXPECT_TRUE(PixelsOf(dc, view));
  EXPECT_GT(PixelsPerInch(nullptr), 0);
  SelectObject(dc, former);
  EXPECT_TRUE(DeleteObject(bitmap));
  EXPECT_TRUE(DeleteDC(dc));
}

TEST(GdiHandles, NoneIsLeftBehindByAThousandRounds) {
  MakeDrawAndRelease();  // what the platform keeps for itself is made here
  const int before = CountGdiHandles();
  for (int i = 0; i < 1000; ++i) MakeDrawAndRelease();
  EXPECT_EQ(CountGdiHandles(), before);
}

TEST(GdiHandles, FontsOfOneKindShareOne) {
  StdFont first;
  first.PutName(u"Tahoma");
  first.hFont();
  const int before = CountGdiHandles();
  for (int i = 0; i < 1000; ++i) {
    StdFont font;
    font.PutBold(i % 2 == 0);
    font.PutItalic(i % 3 == 0);
    EXPECT_NE(font.hFont(), nullptr);
  }
  EXPECT_LE(CountGdiHandles(), before + 4);
}

}  // namespace
}  // namespace marklet
