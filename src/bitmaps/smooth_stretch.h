// A picture at another size, as smooth as its pixels allow: averaged where it shrinks, so that no line of it
// is dropped, and blended from pixel to pixel where it grows.
#pragma once

#include "bitmaps/cdib24.h"

namespace marklet {

// How wide and high the whole picture comes out, and whether it is turned over.
struct StretchSize {
  Long width, height;
  bool mirrored = false, upside_down = false;
};

// Fills `part` with what lies at (left, top) of `picture` stretched to `size`, counted from its top left
// corner. Along each axis a pixel is the mean of what it covers, or, where the picture grows, lies between
// the centres of two pixels, those at the edge going on outside. Each channel is rounded once, to the
// nearest. Both surfaces hold pixels and are different ones; the size is at least one pixel, and the part
// lies in it.
void StretchSmooth(const CDib24& picture, const StretchSize& size, Long left, Long top, const CDib24& part);

}  // namespace marklet
