#include "bitmaps/cdib32.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "bitmaps/alpha_rows.h"
#include "bitmaps/key_out.h"
#include "bitmaps/pixel_loops.h"
#include "platform/shared/os_tests.h"

namespace marklet {

bool CDib32::Create(Long width, Long height, bool want_24) {
  not_premultiplied_ = true;
  return CreateSection(width, height, want_24 ? 24 : 32, std::int64_t{width} * kBytesPerAlphaPixel);
}

void CDib32::CreateFromBitmap(HBITMAP bitmap) {
  not_premultiplied_ = true;
  BITMAP record;
  GetObjectA(bitmap, record);
  if (Create(record.bmWidth, record.bmHeight)) LoadBitmap(bitmap);
}

void CDib32::TakeBitmap(ObjectRef bitmap) {
  not_premultiplied_ = true;
  TakeSection(std::move(bitmap), 32);
}

void CDib32::StretchPaintTo(HDC destination, Long x, Long y, Long width, Long height,
                            std::uint32_t rop) const {
  SetStretchBltMode(destination, HALFTONE);
  StretchBlt(destination, x, y, OrOwn(width, Width()), OrOwn(height, Height()), hDC(), 0, 0, Width(),
             Height(), rop);
}

void CDib32::AlphaPaint(HDC destination, Long x, Long y, Long width, Long height, Long source_x,
                        Long source_y, Long source_width, Long source_height, std::uint8_t constant_alpha,
                        bool use_source_alpha) const {
  width = OrOwn(width, Width());
  height = OrOwn(height, Height());
  // The test's false first answer is real here too: a control that was never loaded composites its first
  // image in software.
  if (IsWindows2000Family()) {
    AlphaBlend(destination, x, y, width, height, hDC(), source_x, source_y, OrOwn(source_width, width),
               OrOwn(source_height, height), constant_alpha, use_source_alpha);
  } else {
    SoftwareAlphaPaint(destination, x, y, constant_alpha);
  }
}

void CDib32::SoftwareAlphaPaint(HDC destination, Long x, Long y, std::uint8_t constant_alpha) const {
  if (!HasPixels() || destination == nullptr) return;
  PixelView target;
  if (marklet::PixelsOf(destination, target) && target.bits != Bits()) {
    BlendOnto(target, x, y, constant_alpha);
    return;
  }
  // What isn't pixels of ours, and this surface itself, takes part through a copy.
  CDib32 mixed;
  if (!mixed.Create(Width(), Height())) return;
  mixed.LoadFromDC(destination, x, y, Width(), Height(), SRCCOPY);
  GdiFlush();
  BlendOnto(mixed.View(), 0, 0, constant_alpha);
  mixed.PaintTo(destination, x, y, Width(), Height(), 0, 0, SRCCOPY);
}

void CDib32::BlendOnto(const PixelView& target, std::int64_t x, std::int64_t y,
                       std::uint8_t constant_alpha) const {
  const std::int64_t left = std::max<std::int64_t>(0, -x), top = std::max<std::int64_t>(0, -y);
  const std::int64_t right = std::min<std::int64_t>(Width(), target.width - x);
  const std::int64_t bottom = std::min<std::int64_t>(Height(), target.height - y);
  if (left >= right || top >= bottom) return;
  BlendRows({View().At(left, bottom - 1), BytesPerScanLine(), target.At(x + left, y + bottom - 1),
             target.stride, static_cast<std::ptrdiff_t>(right - left),
             static_cast<std::ptrdiff_t>(bottom - top), ShareOf(constant_alpha)},
            target.bits_per_pixel);
}

void CDib32::Premultiply() {
  if (!not_premultiplied_) return;
  not_premultiplied_ = false;
  if (!HasPixels()) return;
  GdiFlush();
  PremultiplyPixels(Bits(), PixelCount());
}

void CDib32::SetConstantAlpha(std::uint8_t alpha) {
  if (!HasPixels()) return;
  GdiFlush();
  SetAlphaOfPixels(Bits(), PixelCount(), alpha);
}

void CDib32::Grayscale(Long key) {
  if (!HasPixels()) return;
  GdiFlush();
  GreyPixels(Bits(), PixelCount(), key >= 1);
}

void CDib32::KeyOutCorner() {
  if (HasPixels()) KeyOut<SameValue>(View());
}
void CDib32::KeyOutCornerFuzzy() {
  if (HasPixels()) KeyOut<WithinTolerance>(View());
}

}  // namespace marklet
