// The style record that travels from the paint code through the markup engine to the text routes.
#pragma once

#include "platform/shared/std_font.h"
#include "platform/system_colours.h"
#include "platform/types.h"

namespace marklet {

enum TextEffects : Long {
  effectNone = 0,
  effectStroke = 1,
  effectShadow = 2,
  effectEmboss = 3,
  effectEngrave = 4,
  effectHollow = 5,
};

enum HorizontalJAlignment : Long { alignLeft = 0, alignRight = 1, alignCenter = 2, alignJustified = 3 };
enum VertAlignment : Long { verticalTop = 0, verticalCenter = 2, verticalBottom = 3 };  // there is no 1

// Colours are RGB values, system colours already resolved, but for the default of ForeColor. Any number may
// stand in the enumeration fields: saved properties are not checked.
struct CaptionStyle {
  bool RightToLeft = false;
  bool SingleLine = false;
  Long Alignment = alignLeft;            // a HorizontalJAlignment
  Long VerticalAlignment = verticalTop;  // a VertAlignment
  OLE_COLOR ForeColor = kWindowText;
  COLORREF BackColor = 0;
  COLORREF EffectColor = 0;
  FontRef Font;
  Long TextEffect = effectNone;  // a TextEffects
  HDC SurfaceDC = nullptr;       // the context that is drawn on
  Long TextHeight = 0;           // pixels; 0 until EmitTextRun has measured the first run
};

}  // namespace marklet
