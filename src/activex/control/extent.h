// The control's size, and who hears that it may be another one.
#pragma once

#include "activex/com/com.h"

namespace marklet::activex {

// Hears from those who place the control.
class PlaceListener {
 public:
  virtual void Entered() = 0;  // there is a window now, at its place
  virtual void Leaving() = 0;  // and it is about to go
  virtual void SizeMayHaveChanged() = 0;
  virtual void SizeLoaded(SIZEL himetric) = 0;  // from a saved form

 protected:
  ~PlaceListener() = default;
};

// Whether the control shows itself in an aspect: its content, on the screen and printed, and the two passes
// of those who draw what is opaque first.
bool IsShown(DWORD aspect);

// The size in the units of its callers: 0.01 mm for containers, pixels for the control, twips for forms.
class Extent {
 public:
  // 121 by 25 pixels at 96 per inch: what a designer draws for a caption of one line, a sixth of a column
  // wide.
  static constexpr SIZEL kInitial = {3201, 661};

  SIZEL Himetric() const { return himetric_; }
  void SetHimetric(SIZEL size) { himetric_ = wished_ = size; }
  HRESULT Get(DWORD aspect, SIZEL* size) const;  // for callers
  ::SIZE Pixels() const;
  ::SIZE PixelsOf(SIZEL himetric) const;
  // Leaves the exact size alone when it is this many pixels already. One that comes to as many pixels as what
  // SetHimetric was told last is exactly that again, so that a way over other monitors changes nothing.
  void SetPixels(::SIZE size);

  // Pixels per inch of the window that the control is in, or was in last; until then the screen's. Another
  // resolution changes the size in pixels.
  Long PixelsPerInch() const;
  void SetPixelsPerInch(Long resolution) { pixels_per_inch_ = resolution; }
  double TwipsPerPixel() const;

 private:
  Long ToPixels(Long himetric) const;
  Long ToHimetric(Long pixels) const;
  Long Exact(Long pixels, Long now, Long wished) const;

  Long pixels_per_inch_ = 0;  // none yet
  SIZEL himetric_ = kInitial, wished_ = kInitial;
};

}  // namespace marklet::activex
