// Device contexts, bitmaps, blits and lines over the platform's own: what only Windows can show.
#include "platform/gdi.h"

#include <gtest/gtest.h>

#include "platform/win32/handles.h"

namespace marklet {
namespace {

TEST(WindowsGdi, PixelsOfReadsOnlyBitmapsMadeThroughTheSeam) {
  const HDC dc = CreateCompatibleDC(nullptr);
  PixelView view;
  EXPECT_FALSE(PixelsOf(dc, view)) << "the one-pixel bitmap of a new context";

  BITMAPINFO info{};
  info.bmiHeader = {sizeof info.bmiHeader, 4, -3, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  void* bits = nullptr;
  const HBITMAP top_down = win32::Wrap(::CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
  const HGDIOBJ former = SelectObject(dc, top_down);
  EXPECT_FALSE(PixelsOf(dc, view)) << "its rows may run the other way";
  SelectObject(dc, former);
  EXPECT_TRUE(DeleteObject(top_down));

  std::uint8_t* our_bits = nullptr;
  const HBITMAP ours = CreateDIBSection(nullptr, 5, 3, 24, our_bits);
  SelectObject(dc, ours);
  ASSERT_TRUE(PixelsOf(dc, view));
  EXPECT_EQ(view.bits, our_bits);
  EXPECT_EQ(view.width, 5);
  EXPECT_EQ(view.height, 3);
  EXPECT_EQ(view.stride, 16);
  EXPECT_EQ(view.bits_per_pixel, 24);
  SelectObject(dc, former);
  EXPECT_TRUE(DeleteObject(ours));
  EXPECT_TRUE(DeleteDC(dc));
}

}  // namespace
}  // namespace marklet
