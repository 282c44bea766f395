// Device contexts, bitmaps, blits, brushes, pens and lines.
//
// Every handle that a Create call returns belongs to the caller: bitmaps, brushes, pens and fonts go back
// through DeleteObject, contexts through DeleteDC. Select an object back out of its context before deleting
// it. No call here calls back into the program. A null handle makes a call return false or null and do
// nothing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "base/rows.h"
#include "platform/types.h"

namespace marklet {

// A memory context compatible with `like`, or with the screen when that is null. Null on failure.
HDC CreateCompatibleDC(HDC like);
bool DeleteDC(HDC dc);

// Makes the pixels of an uncompressed bottom-up bitmap: `bits_per_pixel` 24 (rows padded to four bytes)
// or 32. `bits` receives the first byte of the bottom row; the memory is zeroed and lives as long as the
// bitmap. Null on failure: a width or height below 1, or no memory.
HBITMAP CreateDIBSection(HDC dc, Long width, Long height, int bits_per_pixel, std::uint8_t*& bits);

// Selects a bitmap, brush, font or pen and returns the former one; null if that is gone, or on failure.
HGDIOBJ SelectObject(HDC dc, HGDIOBJ object);
bool DeleteObject(HGDIOBJ object);

// An object that is nowhere selected, deleted with the reference.
struct ObjectDeleter {
  void operator()(HGDIOBJ object) const { DeleteObject(object); }
};
using ObjectRef = std::unique_ptr<GdiObjectHandle, ObjectDeleter>;

// The pixel memory behind a context. Bottom-up: row 0 is the bottom line of the picture.
struct PixelView {
  std::uint8_t* bits = nullptr;
  Long width = 0, height = 0;
  Long stride = 0;         // bytes from one row to the next
  int bits_per_pixel = 0;  // 24 (blue, green, red) or 32 (blue, green, red, alpha)

  // A row by its number from the bottom, and a pixel by its place from the picture's top left.
  std::uint8_t* Row(Long y) const { return bits + static_cast<std::ptrdiff_t>(y) * stride; }
  std::uint8_t* At(std::int64_t x, std::int64_t y) const {
    return LineFromTop(bits, height, stride, y) + x * (bits_per_pixel / 8);
  }
};

// Gives the memory of the bitmap from CreateDIBSection that is selected in `dc`, with all drawing to it
// finished. False when the context stands on anything else, as a window's does. Valid until the bitmap is
// selected out.
bool PixelsOf(HDC dc, PixelView& view);

// Waits until drawing that is still queued has reached pixel memory.
void GdiFlush();

// Copies a rectangle between contexts. Parts outside either one are left out. Only SRCCOPY, SRCAND, SRCINVERT
// and NOTSRCCOPY are used. Source and destination may be the same context and overlap.
bool BitBlt(HDC destination, Long x, Long y, Long width, Long height, HDC source, Long source_x,
            Long source_y, std::uint32_t rop);

// How StretchBlt makes one pixel of several; only HALFTONE, which averages where the platform can, is used.
// Returns the former mode, 0 on failure.
int SetStretchBltMode(HDC dc, int mode);
// The same as BitBlt to a rectangle of another size. What lies between pixels, and alpha where the sizes
// differ, is the platform's choice; a plain area keeps its colour. The two must be different surfaces. Parts
// outside the destination are left out; a rectangle that reaches out of the source, or a negative size, draws
// nothing and returns false.
bool StretchBlt(HDC destination, Long x, Long y, Long width, Long height, HDC source, Long source_x,
                Long source_y, Long source_width, Long source_height, std::uint32_t rop);

// Blends a rectangle, sampled at the nearest pixel where the sizes differ. With `use_source_alpha` the source
// is 32-bit with premultiplied alpha: d := s * c + d * (1 - s.alpha * c) with c = constant_alpha / 255;
// otherwise every source pixel counts as opaque. The result is rounded to nearest, and 255 at most; where
// both the constant and the source's alpha are below whole, a platform may round each product on its own.
// The two must be different surfaces. Parts outside the destination are left out; a rectangle that reaches
// out of the source, a negative size, or with alpha a source that has none, draws nothing and returns false.
bool AlphaBlend(HDC destination, Long x, Long y, Long width, Long height, HDC source, Long source_x,
                Long source_y, Long source_width, Long source_height, std::uint8_t constant_alpha,
                bool use_source_alpha);

// Null on failure, as for CreatePen.
HBRUSH CreateSolidBrush(COLORREF colour);
// Fills left <= x < right, top <= y < bottom. An empty or inverted rectangle fills nothing.
bool FillRect(HDC dc, const RECT& rect, HBRUSH brush);

// A solid pen of `width` pixels (only 1 is used).
HPEN CreatePen(Long width, COLORREF colour);
bool MoveToEx(HDC dc, Long x, Long y);
// Draws from the current point with the selected pen up to, and without, the pixel (x, y), which becomes
// current.
bool LineTo(HDC dc, Long x, Long y);

// The dotted frame that marks the focus: pixels on the rectangle's edge whose x + y is odd are inverted.
bool DrawFocusRect(HDC dc, const RECT& rect);

// Draws sides of a rectangle as a three-dimensional edge in the system's colours. `edge` has bits of BDR_,
// `flags` bits of BF_.
bool DrawEdge(HDC dc, RECT& rect, std::uint32_t edge, std::uint32_t flags);

struct BITMAP {
  Long bmWidth = 0, bmHeight = 0;
  int bmBitsPixel = 0;
};
// Size and depth of any bitmap, in pixels and bits. False, and nothing told, for a handle of another kind.
bool GetObjectA(HBITMAP bitmap, BITMAP& result);

}  // namespace marklet
