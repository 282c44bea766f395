#include "bitmaps/cdib24.h"

#include <limits>
#include <utility>

namespace marklet {
namespace {

constexpr int kBitsPerPixel = 24;

// Three bytes a pixel, rounded up to a multiple of four.
std::int64_t StrideOf(Long width) { return (std::int64_t{width} + 1) * 3 & ~std::int64_t{3}; }

// Whether all offsets within the pixels can be held in 32 bits.
bool IsSizePossible(Long width, Long height) {
  return width > 0 && height > 0 && StrideOf(width) <= std::numeric_limits<Long>::max() / height;
}

Long OrOwn(Long size, Long own) { return size < 0 ? own : size; }

}  // namespace

bool CDib24::Create(Long width, Long height) {
  ClearUp();
  if (!IsSizePossible(width, height)) return false;
  hdc_ = CreateCompatibleDC(nullptr);
  if (hdc_ == nullptr) return false;
  hdib_ = CreateDIBSection(hdc_, width, height, kBitsPerPixel, bits_);
  if (hdib_ == nullptr) {
    bits_ = nullptr;
    DeleteDC(std::exchange(hdc_, nullptr));
    return false;
  }
  old_bitmap_ = SelectObject(hdc_, hdib_);
  bytes_per_scan_line_ = static_cast<Long>(StrideOf(width));
  width_ = width;
  height_ = height;
  return true;
}

void CDib24::CreateFromPicture(HBITMAP picture) {
  BITMAP record;
  GetObjectA(picture, record);
  if (!Create(record.bmWidth, record.bmHeight)) return;
  const HDC dc = CreateCompatibleDC(nullptr);
  if (dc == nullptr) return;
  const HGDIOBJ former = SelectObject(dc, picture);
  LoadFromDC(dc, 0, 0, width_, height_, SRCCOPY);
  SelectObject(dc, former);
  DeleteDC(dc);
}

void CDib24::ClearUp() {
  if (hdc_ == nullptr) return;
  SelectObject(hdc_, old_bitmap_);
  DeleteObject(hdib_);
  DeleteDC(hdc_);
  Forget();
}

HBITMAP CDib24::Detach() {
  const HBITMAP pixels = hdib_;
  if (hdc_ == nullptr) return pixels;
  SelectObject(hdc_, old_bitmap_);
  DeleteDC(hdc_);
  Forget();
  return pixels;
}

void CDib24::Forget() {
  bytes_per_scan_line_ = 0;
  hdib_ = nullptr;
  old_bitmap_ = nullptr;
  hdc_ = nullptr;
  bits_ = nullptr;
}

void CDib24::Clear(COLORREF colour) {
  if (hdc_ == nullptr) return;
  const HBRUSH brush = CreateSolidBrush(colour);
  FillRect(hdc_, {0, 0, width_, height_}, brush);
  DeleteObject(brush);
}

void CDib24::LoadFromDC(HDC source, Long x, Long y, Long width, Long height, std::uint32_t rop) {
  BitBlt(hdc_, 0, 0, OrOwn(width, width_), OrOwn(height, height_), source, x, y, rop);
}

void CDib24::PaintTo(HDC destination, Long x, Long y, Long width, Long height, Long source_x, Long source_y,
                     std::uint32_t rop) const {
  BitBlt(destination, x, y, OrOwn(width, width_), OrOwn(height, height_), hdc_, source_x, source_y, rop);
}

void CDib24::AlphaPaint(HDC destination, Long x, Long y, Long width, Long height, Long source_x,
                        Long source_y, std::uint8_t constant_alpha, bool use_source_alpha) const {
  AlphaBlend(destination, x, y, OrOwn(width, width_), OrOwn(height, height_), hdc_, source_x, source_y,
             constant_alpha, use_source_alpha);
}

void CDib24::PaintTransparent(HDC destination, Long x, Long y, Long width, Long height, Long source_x,
                              Long source_y, COLORREF key) const {
  TransparentCopy(destination, x, y, OrOwn(width, width_), OrOwn(height, height_), hdc_, source_x, source_y,
                  key);
}

std::unique_ptr<CDib24> CDib24::ResizeKeyed(Long new_height, Long new_width, COLORREF key) const {
  auto resized = std::make_unique<CDib24>();
  if (!resized->Create(new_width, new_height)) return nullptr;
  if (new_width == width_ && new_height == height_) {
    resized->LoadFromDC(hdc_, 0, 0, width_, height_, SRCCOPY);
  } else {
    BilinearInto(*resized, key);
  }
  return resized;
}

}  // namespace marklet
