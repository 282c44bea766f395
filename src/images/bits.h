// Pixels between a device context and the arrays that an image is kept in.
//
// An array has three dimensions from 0: channel (blue, green, red, and alpha if there are four), column, row.
// The channel runs fastest; row 0 is the bottom line; rows have no padding.
#pragma once

#include "base/byte_array.h"
#include "platform/gdi.h"
#include "platform/types.h"

namespace marklet {

// A copy of a rectangle, 3 or 4 channels. What lies outside the context's pixels is KeyColour in three
// channels and 0 in four; so is all of it where the context has no pixels to read. No array for a width or
// height below 1. Throws std::bad_alloc.
ByteArray GetBits(HDC dc, Long x, Long y, Long width, Long height, Long channels);

// The opposite: the array's bytes, whatever its bounds say, become the rows of a rectangle, each rounded up
// to whole groups of four bytes. False, and nothing written, when there are too few or the context has no
// pixels. Alpha that one side lacks is 0.
bool PutBits(HDC dc, Long x, Long y, Long width, Long height, const ByteArray& bytes, Long channels);

}  // namespace marklet
