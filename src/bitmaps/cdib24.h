// CDib24: 24-bit pixels in memory of our own, with a device context to draw text on them.
//
// Rows are bottom-up, padded to four bytes; row 0 in memory is the picture's bottom line, and (0, 0) of hDC()
// is the first pixel of the last row. A pixel is blue, green, red. There is no alpha: KeyColour marks what is
// transparent.
#pragma once

#include <cstdint>
#include <memory>

#include "bitmaps/dib.h"
#include "platform/gdi.h"
#include "platform/types.h"

namespace marklet {

class CDib24 : public Dib {
 public:
  // A new black surface in place of any earlier one. False, and empty, when it can't be made.
  bool Create(Long width, Long height);
  // A surface of the picture's size with the picture in it; black when the picture can't be read. `picture`
  // stays the caller's. Empty when the surface can't be made.
  void CreateFromPicture(HBITMAP picture);
  // Gives the bitmap away: the caller deletes it. The surface is empty afterwards.
  HBITMAP Detach() { return DetachBitmap(); }

  // A width or height below 0 means the surface's own.
  void AlphaPaint(HDC destination, Long x, Long y, Long width, Long height, Long source_x, Long source_y,
                  std::uint8_t constant_alpha, bool use_source_alpha) const;

  // Makes every pixel but those of KeyColour grey, all three bytes their mean rounded half to even. A `key`
  // of CLR_INVALID becomes KeyColour; what is skipped never depends on it.
  void Grayscale(COLORREF& key);
  // As the surface of 32 bits does it: what has the colour of the top left corner, or is close to it, becomes
  // KeyColour.
  void KeyOutCorner();
  void KeyOutCornerFuzzy();

  // Bilinear, never mixing `key` into its neighbours: such pixels come out as KeyColour. Null when the new
  // surface can't be made; a copy at the same size. Height comes first.
  std::unique_ptr<CDib24> ResizeKeyed(Long new_height, Long new_width, COLORREF key) const;
  // The same onto a surface that exists, other than this one, of any size. Always false.
  bool BilinearInto(CDib24& destination, COLORREF key) const;

  // Nearest neighbour, corner sampling corner. An empty surface when the new pixels can't be made.
  std::unique_ptr<CDib24> ResampleNearest(Long new_width, Long new_height) const;
};

}  // namespace marklet
