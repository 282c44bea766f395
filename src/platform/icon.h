// Icons: colours behind a mask. Nothing here calls back into the program.
#pragma once

#include <memory>

#include "platform/host_picture.h"
#include "platform/types.h"

namespace marklet {

struct IconHandle;

// What IconRef does at its end; false for null.
bool DestroyIcon(IconHandle* icon);
struct IconDeleter {
  void operator()(IconHandle* icon) const { DestroyIcon(icon); }
};
using IconRef = std::unique_ptr<IconHandle, IconDeleter>;

// An icon, its hot spot in the corner, from two bitmaps of one size, which stay the caller's. Where the mask
// is black the colours show, where it is white what is behind them; colours there should be black. Where
// colours of 32 bits have any alpha, some systems go by that instead. Null on failure.
IconRef CreateIconIndirect(HBITMAP mask, HBITMAP colours);

// A picture that owns the icon, which is gone too when the answer is null.
PictureRef OleCreatePictureIndirect(IconRef icon);

}  // namespace marklet
