// A picture in memory that tests draw on and look at.
#pragma once

#include "activex/server.h"

namespace ocx_test {

constexpr DWORD kUntouched = 0xFF00FF;

// Pixels to draw on, all untouched at first.
class Picture {
 public:
  Picture(int width, int height) : width_(width), height_(height) {
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof info.bmiHeader, width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    dc_ = CreateCompatibleDC(nullptr);
    bitmap_ = CreateDIBSection(dc_, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    pixels_ = static_cast<DWORD*>(bits);
    old_ = SelectObject(dc_, bitmap_);
    Fill(kUntouched);
  }
  ~Picture() {
    SelectObject(dc_, old_);
    DeleteObject(bitmap_);
    DeleteDC(dc_);
  }
  Picture(const Picture&) = delete;
  Picture& operator=(const Picture&) = delete;

  void Fill(DWORD colour) {
    for (int i = 0; i < width_ * height_; ++i) pixels_[i] = colour;
  }
  HDC Dc() const { return dc_; }
  int Width() const { return width_; }
  int Height() const { return height_; }
  // 0xRRGGBB
  DWORD At(int x, int y) const {
    GdiFlush();
    return pixels_[y * width_ + x] & 0xFFFFFF;
  }
  int Count(DWORD colour) const {
    GdiFlush();
    int count = 0;
    for (int i = 0; i < width_ * height_; ++i) count += (pixels_[i] & 0xFFFFFF) == colour;
    return count;
  }

  // As a bitmap file beside the program, for those who want to see it.
  void Save(const wchar_t* name) const;

 private:
  int width_, height_;
  HDC dc_;
  HBITMAP bitmap_ = nullptr;
  HGDIOBJ old_ = nullptr;
  DWORD* pixels_ = nullptr;
};

}  // namespace ocx_test
