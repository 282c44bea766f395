// A place on a device context, and how a picture is brought there: screens, printers, metafiles.
#pragma once

#include <functional>

#include "activex/com/com.h"
#include "bitmaps/smooth_stretch.h"

namespace marklet::activex {

// Asked between the steps of long output; false stops it.
using GoOn = std::function<bool()>;

// A rectangle in the units of a context. At any size but its own the picture is stretched here, to the pixels
// of the device, since what a platform or a printer's driver does drops lines. Where the corners change
// places on the device the picture is turned over.
class PictureTarget {
 public:
  PictureTarget(::HDC dc, const RECTL& bounds);

  // False where nothing would be seen of a picture.
  bool IsSeen() const { return seen_.left < seen_.right && seen_.top < seen_.bottom; }
  // S_OK, or E_ABORT when `go_on`, which may be empty, said so.
  HRESULT Put(const CDib24& picture, const GoOn& go_on) const;
  // The same with a picture that what is there shows through: as it looks in front of black and of white,
  // both of one size. Where the target can't be read each pixel is either the picture's or the target's.
  HRESULT PutOver(const CDib24& on_black, const CDib24& on_white, const GoOn& go_on) const;

 private:
  enum class Route {
    AsItIs,  // in the picture's own pixels: old metafiles, which know no device, and turned coordinates
    Whole,   // in the device's pixels, in one piece: enhanced metafiles and mirrored layouts
    Bands    // what is seen of it, in the device's pixels
  };

  bool MeasureOnDevice();
  // Calls `make` for each band with the place of its corner in the picture, to fill it.
  template <typename Make>
  HRESULT PutBands(const GoOn& go_on, Make make) const;
  bool CanRead() const;
  void PutWhole(const CDib24& picture) const;

  ::HDC dc_;
  RECTL bounds_;
  Route route_ = Route::AsItIs;
  StretchSize size_ = {};  // in the device's pixels, as the next two are
  ::POINT corner_ = {};
  ::RECT seen_ = {0, 0, 1, 1};
};

// Records or draws a picture in its own pixels at a rectangle in the units of the context. Who plays a record
// stretches it, as smoothly as his platform can.
void PutAsItIs(::HDC dc, const RECTL& bounds, const CDib24& picture);

// The surface's rows are bottom up, each on four bytes.
BITMAPINFOHEADER Describe(const CDib24& surface);

}  // namespace marklet::activex
