// The changes of size of pixels with alpha.
#pragma once

#include "bitmaps/alpha_rows.h"

namespace marklet {

// Fills `to`, which has pixels and isn't the source, from `from`, as the operations of CDib32 that these
// serve: ResampleNearest, and ResampleArea with `to` of the height that follows from its width.
void CopyNearest(const AlphaPixels& from, const AlphaPixels& to);
void AverageArea(const AlphaPixels& from, const AlphaPixels& to);

}  // namespace marklet
