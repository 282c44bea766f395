// A context on pixels of any depth, for copies between formats.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>

#include "platform/gdi.h"

namespace marklet {

class PixelContext {
 public:
  PixelContext(Long width, Long height, int bits_per_pixel) : dc_(CreateCompatibleDC(nullptr)) {
    bitmap_ = CreateDIBSection(dc_, width, height, bits_per_pixel, view_.bits);
    former_ = SelectObject(dc_, bitmap_);
    EXPECT_TRUE(PixelsOf(dc_, view_));
  }
  ~PixelContext() {
    SelectObject(dc_, former_);
    DeleteObject(bitmap_);
    DeleteDC(dc_);
  }
  PixelContext(const PixelContext&) = delete;
  PixelContext& operator=(const PixelContext&) = delete;

  HDC Get() const { return dc_; }
  int Bytes() const { return view_.bits_per_pixel / 8; }
  Long Width() const { return view_.width; }
  Long Height() const { return view_.height; }

  // In coordinates of the picture, from the top left.
  std::uint8_t* At(Long x, Long y) const { return view_.At(x, y); }

 private:
  HDC dc_;
  HBITMAP bitmap_ = nullptr;
  HGDIOBJ former_ = nullptr;
  PixelView view_;
};

}  // namespace marklet
