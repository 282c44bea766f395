// The control's size, and who hears that it may be another one.
#pragma once

#include "activex/com/com.h"

namespace marklet::activex {

// Hears from those who place the control.
class PlaceListener {
 public:
  virtual void Entered() = 0;  // there is a window now, at its place
  virtual void SizeMayHaveChanged() = 0;

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
  void SetHimetric(SIZEL size) { himetric_ = size; }
  HRESULT Get(DWORD aspect, SIZEL* size) const;  // for callers
  ::SIZE Pixels() const;
  void SetPixels(::SIZE size);  // leaves the exact size alone when it is this many pixels already

  static double TwipsPerPixel();

 private:
  SIZEL himetric_ = kInitial;
};

}  // namespace marklet::activex
