// The control's size in the units of its callers: 0.01 mm for containers, pixels for itself, twips for forms.
#pragma once

#include "activex/com/com.h"

namespace marklet::activex {

class Extent {
 public:
  // 121 by 25 pixels at 96 per inch: what a designer draws for a caption of one line, a sixth of a column
  // wide.
  static constexpr SIZEL kInitial = {3201, 661};

  SIZEL Himetric() const { return himetric_; }
  void SetHimetric(SIZEL size) { himetric_ = size; }
  ::SIZE Pixels() const;
  void SetPixels(::SIZE size);  // leaves the exact size alone when it is this many pixels already

  static double TwipsPerPixel();

 private:
  SIZEL himetric_ = kInitial;
};

}  // namespace marklet::activex
