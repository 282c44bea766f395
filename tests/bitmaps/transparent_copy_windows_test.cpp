// Keyed copies where one side is no pixel memory of ours: bitmaps that the device keeps.
#include <gtest/gtest.h>

#include "bitmaps/cdib24.h"
#include "bitmaps/pixels.h"
#include "platform/win32/handles.h"

namespace marklet {
namespace {

constexpr COLORREF kKey = MakeRgb(255, 0, 255), kRed = MakeRgb(255, 0, 0), kGrey = MakeRgb(9, 10, 11);

class DeviceBitmap {
 public:
  DeviceBitmap(int width, int height) : dc_(::CreateCompatibleDC(nullptr)) {
    const ::HDC screen = GetDC(nullptr);
    bitmap_ = CreateCompatibleBitmap(screen, width, height);
    ReleaseDC(nullptr, screen);
    former_ = ::SelectObject(dc_, bitmap_);
  }
  ~DeviceBitmap() {
    ::SelectObject(dc_, former_);
    ::DeleteObject(bitmap_);
    ::DeleteDC(dc_);
  }
  DeviceBitmap(const DeviceBitmap&) = delete;
  DeviceBitmap& operator=(const DeviceBitmap&) = delete;

  HDC Get() const { return win32::Wrap(dc_); }
  void Put(int x, int y, COLORREF colour) { SetPixel(dc_, x, y, colour); }
  COLORREF At(int x, int y) const { return GetPixel(dc_, x, y); }

 private:
  ::HDC dc_;
  ::HBITMAP bitmap_;
  ::HGDIOBJ former_;
};

TEST(TransparentCopyOnWindows, ToADeviceBitmap) {
  DeviceBitmap target(3, 2);
  PixelView view;
  ASSERT_FALSE(PixelsOf(target.Get(), view));
  for (int x = 0; x < 3; ++x) target.Put(x, 0, kGrey), target.Put(x, 1, kGrey);
  const auto source = Surface(2, 2, kRed);
  PutColour(*source, 1, 1, kKey);
  EXPECT_EQ(TransparentCopy(target.Get(), 1, 0, 2, 2, source->hDC(), 0, 0, kKey), 0);
  EXPECT_EQ(target.At(0, 0), kGrey);
  EXPECT_EQ(target.At(1, 0), kRed);
  EXPECT_EQ(target.At(2, 0), kGrey) << "the key, at the top right";
  EXPECT_EQ(target.At(1, 1), kRed);
  EXPECT_EQ(target.At(2, 1), kRed);
}

TEST(TransparentCopyOnWindows, FromADeviceBitmapNothingOutsideItIsTaken) {
  DeviceBitmap source(2, 1);
  source.Put(0, 0, kRed);
  source.Put(1, 0, kKey);
  const auto target = Surface(5, 1, kGrey);
  EXPECT_EQ(TransparentCopy(target->hDC(), 0, 0, 5, 1, source.Get(), -1, 0, kKey), 0);
  EXPECT_EQ(Colours(*target), (std::vector<COLORREF>{kGrey, kRed, kGrey, kGrey, kGrey}));
}

TEST(TransparentCopyOnWindows, BetweenDeviceBitmaps) {
  DeviceBitmap source(2, 1), target(2, 1);
  source.Put(0, 0, kKey);
  source.Put(1, 0, kRed);
  target.Put(0, 0, kGrey);
  target.Put(1, 0, kGrey);
  EXPECT_EQ(TransparentCopy(target.Get(), 0, 0, 2, 1, source.Get(), 0, 0, kKey), 0);
  EXPECT_EQ(target.At(0, 0), kGrey);
  EXPECT_EQ(target.At(1, 0), kRed);
}

TEST(TransparentCopyOnWindows, AnUnboundedRectangleReportsOutOfMemory) {
  DeviceBitmap source(2, 1), target(2, 1);
  EXPECT_EQ(TransparentCopy(target.Get(), 0, 0, 0x7FFFFFFF, 0x7FFFFFFF, source.Get(), 0, 0, kKey), 7);
}

}  // namespace
}  // namespace marklet
