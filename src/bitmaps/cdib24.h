// CDib24: 24-bit pixels in memory of our own, with a device context to draw text on them.
//
// Rows are bottom-up, padded to four bytes; row 0 in memory is the picture's bottom line, and (0, 0) of hDC()
// is the first pixel of the last row. A pixel is blue, green, red. There is no alpha: KeyColour marks what is
// transparent.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>

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
  // A surface of the picture's size with the picture in it. `picture` stays the caller's. Empty on failure.
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
  // Copies from a context into this surface at (0, 0).
  void LoadFromDC(HDC source, Long x, Long y, Long width, Long height, std::uint32_t rop);
  // Copies a part of this surface to a context. In this and the next two a width or height below 0 means the
  // surface's.
  void PaintTo(HDC destination, Long x, Long y, Long width, Long height, Long source_x, Long source_y,
               std::uint32_t rop);
  void AlphaPaint(HDC destination, Long x, Long y, Long width, Long height, Long source_x, Long source_y,
                  std::uint8_t constant_alpha, bool use_source_alpha);
  void PaintTransparent(HDC destination, Long x, Long y, Long width, Long height, Long source_x,
                        Long source_y, COLORREF key);

  // Makes every pixel but those of KeyColour grey, all three bytes their mean rounded half to even. `key` of
  // -1 is replaced by KeyColour; what is skipped never depends on it.
  void Grayscale(std::optional<COLORREF>& key);

  // Bilinear, never mixing `key` into its neighbours: such pixels come out as KeyColour. Null when the new
  // surface can't be made; a copy at the same size. Height comes first.
  std::unique_ptr<CDib24> ResizeKeyed(Long new_height, Long new_width, COLORREF key) const;
  // The same onto a surface that exists. Always false.
  bool BilinearInto(CDib24& destination, COLORREF key) const;

  // Nearest neighbour between corners. Null when the new surface can't be made.
  std::unique_ptr<CDib24> ResampleNearest(Long new_width, Long new_height) const;

 private:
  Long bytes_per_scan_line_ = 0;
  HBITMAP hdib_ = nullptr;
  HGDIOBJ old_bitmap_ = nullptr;
  HDC hdc_ = nullptr;
  std::uint8_t* bits_ = nullptr;
  Long width_ = 0, height_ = 0;
};

// Copies a rectangle, leaving the destination as it is wherever the source pixel is exactly `key`. Works
// between any two contexts. Returns 0, or an error number when a surface couldn't be had.
Long TransparentCopy(HDC destination, Long x, Long y, Long width, Long height, HDC source, Long source_x,
                     Long source_y, COLORREF key);

}  // namespace marklet
