// The changes of size of pixels with alpha.
#pragma once

#include "platform/gdi.h"

namespace marklet {

// Fills `to`, which has pixels and isn't the source, from `from`, as the operations of CDib32 that these
// serve: ResampleNearest, and ResampleArea with `to` of the height that follows from its width.
void CopyNearest(const PixelView& from, const PixelView& to);
void AverageArea(const PixelView& from, const PixelView& to);

}  // namespace marklet
