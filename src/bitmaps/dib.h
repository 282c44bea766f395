// What CDib24 and CDib32 have in common: pixel memory of our own with a device context to draw on it.
//
// Rows are bottom-up; row 0 in memory is the picture's bottom line, and (0, 0) of hDC() is the first pixel of
// the last row.
#pragma once

#include <cstdint>

#include "platform/gdi.h"
#include "platform/types.h"

namespace marklet {

class Dib {
 public:
  Dib(const Dib&) = delete;
  Dib& operator=(const Dib&) = delete;

  // Releases everything; the size stays readable. Selects back, deletes the bitmap, deletes the context, in
  // this order.
  void ClearUp();

  Long BytesPerScanLine() const { return bytes_per_scan_line_; }
  Long Width() const { return width_; }  // of the last surface created
  Long Height() const { return height_; }
  HDC hDC() const { return hdc_; }
  std::uint8_t* Bits() const { return bits_; }  // the bottom row; null when empty
  PixelView View() const { return {bits_, width_, height_, bytes_per_scan_line_, bits_per_pixel_}; }

  // Fills the whole surface with an RGB colour. An alpha byte becomes 0.
  void Clear(COLORREF colour);

  // Here a width or height below 0 means the surface's own. On an empty surface nothing happens.
  //
  // Copies from a context into this surface at (0, 0). An alpha byte comes from a source of 32 bits, else it
  // becomes 0.
  void LoadFromDC(HDC source, Long x, Long y, Long width, Long height, std::uint32_t rop);
  // Copies a part of this surface to a context.
  void PaintTo(HDC destination, Long x, Long y, Long width, Long height, Long source_x, Long source_y,
               std::uint32_t rop) const;
  void PaintTransparent(HDC destination, Long x, Long y, Long width, Long height, Long source_x,
                        Long source_y, COLORREF key) const;

 protected:
  Dib() = default;
  ~Dib() { ClearUp(); }

  // New pixels, all zero, in place of any earlier ones; `stride` is only what BytesPerScanLine tells. False,
  // and empty, when they can't be made or their offsets can't be held in 32 bits.
  bool CreateSection(Long width, Long height, int bits_per_pixel, std::int64_t stride);
  // Takes the pixels of a bitmap from CreateDIBSection over, in place of any earlier ones. False, and empty,
  // when they are of another depth or out of reach.
  bool TakeSection(ObjectRef bitmap, int bits_per_pixel);
  // Copies a bitmap, of this surface's size, in.
  void LoadBitmap(HBITMAP bitmap);
  // Gives the bitmap away: the caller deletes it. The surface is empty afterwards.
  HBITMAP DetachBitmap();

  static Long OrOwn(Long size, Long own) { return size < 0 ? own : size; }

 private:
  void Describe(Long width, Long height, int bits_per_pixel, std::int64_t stride);
  void Forget();

  Long bytes_per_scan_line_ = 0;
  int bits_per_pixel_ = 0;
  HBITMAP hdib_ = nullptr;
  HGDIOBJ old_bitmap_ = nullptr;
  HDC hdc_ = nullptr;
  std::uint8_t* bits_ = nullptr;
  Long width_ = 0, height_ = 0;
};

// Copies a rectangle, leaving the destination as it is wherever the source pixel is exactly `key`, and where
// the rectangle leaves either surface. Works between any two contexts, and within one. The alpha byte of a
// 32-bit destination comes from a 32-bit source, else it becomes 0. Returns 0, or error number 7 (out of
// memory) with nothing copied.
Long TransparentCopy(HDC destination, Long x, Long y, Long width, Long height, HDC source, Long source_x,
                     Long source_y, COLORREF key);

}  // namespace marklet
