// CDib24: 24-bit pixels in memory of our own, with a device context to draw text on them.
//
// Rows are bottom-up, padded to four bytes; row 0 in memory is the picture's bottom line, and (0, 0) of hDC()
// is the first pixel of the last row. A pixel is blue, green, red. There is no alpha: KeyColour marks what is
// transparent.
#pragma once

#include <cstdint>
#include <memory>

#include "platform/gdi.h"
#include "platform/types.h"

namespace marklet {

class CDib24 {
 public:
  CDib24() = default;
  ~CDib24() { ClearUp(); }
  CDib24(const CDib24&) = delete;
  CDib24& operator=(const CDib24&) = delete;

  // A new black surface in place of any earlier one. False, and empty, when it can't be made.
  bool Create(Long width, Long height);
  // A surface of the picture's size with the picture in it; black when the picture can't be read. `picture`
  // stays the caller's. Empty when the surface can't be made.
  void CreateFromPicture(HBITMAP picture);
  // Releases everything; the size stays readable. Selects back, deletes the bitmap, deletes the context, in
  // this order.
  void ClearUp();
  // Gives the bitmap away: the caller deletes it. The surface is empty afterwards.
  HBITMAP Detach();

  Long BytesPerScanLine() const { return bytes_per_scan_line_; }
  Long Width() const { return width_; }  // of the last surface created
  Long Height() const { return height_; }
  HDC hDC() const { return hdc_; }
  std::uint8_t* Bits() const { return bits_; }  // the bottom row; null when empty

  // Fills the whole surface with an RGB colour.
  void Clear(COLORREF colour);

  // Here a width or height below 0 means the surface's own. On an empty surface nothing happens.
  //
  // Copies from a context into this surface at (0, 0).
  void LoadFromDC(HDC source, Long x, Long y, Long width, Long height, std::uint32_t rop);
  // Copies a part of this surface to a context.
  void PaintTo(HDC destination, Long x, Long y, Long width, Long height, Long source_x, Long source_y,
               std::uint32_t rop) const;
  void AlphaPaint(HDC destination, Long x, Long y, Long width, Long height, Long source_x, Long source_y,
                  std::uint8_t constant_alpha, bool use_source_alpha) const;
  void PaintTransparent(HDC destination, Long x, Long y, Long width, Long height, Long source_x,
                        Long source_y, COLORREF key) const;

  // Makes every pixel but those of KeyColour grey, all three bytes their mean rounded half to even. A `key`
  // of CLR_INVALID becomes KeyColour; what is skipped never depends on it.
  void Grayscale(COLORREF& key);

  // Bilinear, never mixing `key` into its neighbours: such pixels come out as KeyColour. Null when the new
  // surface can't be made; a copy at the same size. Height comes first.
  std::unique_ptr<CDib24> ResizeKeyed(Long new_height, Long new_width, COLORREF key) const;
  // The same onto a surface that exists, other than this one, of any size. Always false.
  bool BilinearInto(CDib24& destination, COLORREF key) const;

  // Nearest neighbour, corner sampling corner. Null when the new surface can't be made.
  std::unique_ptr<CDib24> ResampleNearest(Long new_width, Long new_height) const;

 private:
  void Forget();

  Long bytes_per_scan_line_ = 0;
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
