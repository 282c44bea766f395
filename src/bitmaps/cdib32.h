// CDib32: 32-bit pixels with alpha in memory of our own, with a device context on them.
//
// Rows are bottom-up without padding; row 0 in memory is the picture's bottom line, and (0, 0) of hDC() is
// the first pixel of the last row. A pixel is blue, green, red, alpha; a new one is all zero.
//
// A surface is made holding straight alpha, colour not multiplied by it: NotPremultiplied() is true.
// Premultiply alone changes that; it belongs right before AlphaPaint. Nothing else reads or writes the flag.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "bitmaps/dib.h"
#include "platform/gdi.h"
#include "platform/types.h"

namespace marklet {

class CDib32 : public Dib {
 public:
  // A new surface in place of any earlier one. False, and empty, when it can't be made. `want_24` makes a
  // context of 24 bits whose stride is still told as four bytes a pixel: only blits work on it, operations
  // that go through the pixels leave it alone.
  bool Create(Long width, Long height, bool want_24 = false);
  // A surface of the bitmap's size with the bitmap in it, alpha included where it has 32 bits. The bitmap
  // stays the caller's and must not be selected anywhere. Empty when the surface can't be made, all zero when
  // the bitmap can't be read.
  void CreateFromBitmap(HBITMAP bitmap);
  void CreateFromPicture(HBITMAP picture) { CreateFromBitmap(picture); }
  // The bitmap itself as the surface, where the caller has no more use for it: pixels are held once. It must
  // be of 32 bits and from CreateDIBSection, and selected nowhere; any other leaves the surface empty.
  void TakeBitmap(ObjectRef bitmap);
  bool NotPremultiplied() const { return not_premultiplied_; }

  // Stretches the whole surface to a rectangle, averaging where the platform can. A width or height below 0
  // means the surface's own. Sets the destination's mode of stretching.
  void StretchPaintTo(HDC destination, Long x, Long y, Long width, Long height, std::uint32_t rop) const;

  // Composites this surface. The first call of IsWindows2000Family on a thread, and every call on a system
  // outside that family, takes SoftwareAlphaPaint; otherwise it is AlphaBlend. A width or height below 0
  // means the surface's own, a source size below 0 the size on the destination.
  void AlphaPaint(HDC destination, Long x, Long y, Long width, Long height, Long source_x, Long source_y,
                  Long source_width, Long source_height, std::uint8_t constant_alpha,
                  bool use_source_alpha) const;
  // Composites the whole surface at (x, y) by each pixel's alpha, times `constant_alpha` / 255, as if its
  // colours were straight. Colours that are premultiplied come out darker than on the platform's route, and
  // have always done so.
  void SoftwareAlphaPaint(HDC destination, Long x, Long y, std::uint8_t constant_alpha) const;

  // Multiplies colours by alpha, once: a premultiplied surface stays as it is.
  void Premultiply();
  // Multiplies colours by `alpha` and gives each pixel that alpha.
  void SetConstantAlpha(std::uint8_t alpha);
  // Makes every pixel grey, its colour bytes their mean rounded half to even; alpha stays. A `key` of 1 or
  // more spares the pixels of KeyColour; which key it is doesn't matter.
  void Grayscale(Long key);
  // Turns each pixel whose colour is that of the picture's top left corner into KeyColour with alpha 0. The
  // fuzzy one takes 12 more or less in any channel for equal. Others keep their alpha.
  void KeyOutCorner();
  void KeyOutCornerFuzzy();
  static bool SameValue(Long value, Long reference) { return value == reference; }
  static bool WithinTolerance(Long value, Long reference) {
    const std::int64_t difference = std::int64_t{value} - reference;
    return -12 <= difference && difference <= 12;
  }

  // New surfaces, this one left alone; NotPremultiplied() of them is true whatever it is here. When the new
  // pixels can't be made they are empty.
  //
  // Nearest neighbour, corner sampling corner. A size of 0 means this surface's; null when both are.
  std::unique_ptr<CDib32> ResampleNearest(Long new_width, Long new_height) const;
  // Box coverage; the height follows from the width, rounded up. Null when this surface has no width.
  // Shrinking by whole factors weighs colours by alpha, which leaves them multiplied by it once although the
  // flag says otherwise; any other ratio doesn't. Enlarging by more than 2 leaves pixels empty.
  std::unique_ptr<CDib32> ResampleArea(Long new_width) const;
  // Upside down. Blue is lost: it comes out as alpha.
  std::unique_ptr<CDib32> FlipVertical() const;

 private:
  // Whether loops may go through the pixels.
  bool HasPixels() const { return Bits() != nullptr && View().bits_per_pixel == 32; }
  std::ptrdiff_t PixelCount() const { return std::ptrdiff_t{Width()} * Height(); }
  // Coordinates count from the target's top left; what lies outside is left out.
  void BlendOnto(const PixelView& target, std::int64_t x, std::int64_t y, std::uint8_t constant_alpha) const;

  bool not_premultiplied_ = true;
};

}  // namespace marklet
