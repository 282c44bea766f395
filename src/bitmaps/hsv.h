// Colours by hue, saturation and value.
#pragma once

#include "platform/types.h"

namespace marklet {

struct Hsv {
  Long hue = 0;                    // degrees
  Long saturation = 0, value = 0;  // 0 to 100
  friend bool operator==(const Hsv&, const Hsv&) = default;
};

// Of the darkest steps, 0 and 1 both have the value 0.
Hsv RGBToHSV(COLORREF colour);

// With `normalise` the triple goes through NormaliseHSV first. Black for a hue outside 0 to 360.
COLORREF HSVToRGB(Hsv hsv, bool normalise);

// Hue to 0 to 359, saturation and value to 0 to 100.
Hsv NormaliseHSV(Hsv hsv);

}  // namespace marklet
