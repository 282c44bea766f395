#include "bitmaps/dib.h"

#include <limits>
#include <utility>

namespace marklet {

bool Dib::CreateSection(Long width, Long height, int bits_per_pixel, std::int64_t stride) {
  ClearUp();
  if (width <= 0 || height <= 0 || stride > std::numeric_limits<Long>::max() / height) return false;
  hdc_ = CreateCompatibleDC(nullptr);
  if (hdc_ == nullptr) return false;
  hdib_ = CreateDIBSection(hdc_, width, height, bits_per_pixel, bits_);
  if (hdib_ == nullptr) {
    bits_ = nullptr;
    DeleteDC(std::exchange(hdc_, nullptr));
    return false;
  }
  old_bitmap_ = SelectObject(hdc_, hdib_);
  Describe(width, height, bits_per_pixel, stride);
  return true;
}

bool Dib::TakeSection(ObjectRef bitmap, int bits_per_pixel) {
  ClearUp();
  if (bitmap == nullptr) return false;
  hdc_ = CreateCompatibleDC(nullptr);
  if (hdc_ == nullptr) return false;
  hdib_ = bitmap.release();
  old_bitmap_ = SelectObject(hdc_, hdib_);
  PixelView view;
  if (!PixelsOf(hdc_, view) || view.bits_per_pixel != bits_per_pixel) {
    ClearUp();
    return false;
  }
  bits_ = view.bits;
  Describe(view.width, view.height, view.bits_per_pixel, view.stride);
  return true;
}

void Dib::Describe(Long width, Long height, int bits_per_pixel, std::int64_t stride) {
  bytes_per_scan_line_ = static_cast<Long>(stride);
  bits_per_pixel_ = bits_per_pixel;
  width_ = width;
  height_ = height;
}

void Dib::LoadBitmap(HBITMAP bitmap) {
  const HDC dc = CreateCompatibleDC(nullptr);
  if (dc == nullptr) return;
  const HGDIOBJ former = SelectObject(dc, bitmap);
  LoadFromDC(dc, 0, 0, width_, height_, SRCCOPY);
  SelectObject(dc, former);
  DeleteDC(dc);
}

void Dib::ClearUp() {
  if (hdc_ == nullptr) return;
  SelectObject(hdc_, old_bitmap_);
  DeleteObject(hdib_);
  DeleteDC(hdc_);
  Forget();
}

HBITMAP Dib::DetachBitmap() {
  const HBITMAP pixels = hdib_;
  if (hdc_ == nullptr) return pixels;
  SelectObject(hdc_, old_bitmap_);
  DeleteDC(hdc_);
  Forget();
  return pixels;
}

void Dib::Forget() {
  bytes_per_scan_line_ = 0;
  hdib_ = nullptr;
  old_bitmap_ = nullptr;
  hdc_ = nullptr;
  bits_ = nullptr;
}

void Dib::Clear(COLORREF colour) {
  if (hdc_ == nullptr) return;
  const HBRUSH brush = CreateSolidBrush(colour);
  FillRect(hdc_, {0, 0, width_, height_}, brush);
  DeleteObject(brush);
}

void Dib::LoadFromDC(HDC source, Long x, Long y, Long width, Long height, std::uint32_t rop) {
  BitBlt(hdc_, 0, 0, OrOwn(width, width_), OrOwn(height, height_), source, x, y, rop);
}

void Dib::PaintTo(HDC destination, Long x, Long y, Long width, Long height, Long source_x, Long source_y,
                  std::uint32_t rop) const {
  BitBlt(destination, x, y, OrOwn(width, width_), OrOwn(height, height_), hdc_, source_x, source_y, rop);
}

void Dib::PaintTransparent(HDC destination, Long x, Long y, Long width, Long height, Long source_x,
                           Long source_y, COLORREF key) const {
  TransparentCopy(destination, x, y, OrOwn(width, width_), OrOwn(height, height_), hdc_, source_x, source_y,
                  key);
}

}  // namespace marklet
