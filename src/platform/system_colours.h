// The system colours that the control names: by index, as GetSysColor takes them, and as OLE colours.
#pragma once

#include "platform/types.h"

namespace marklet {

constexpr int COLOR_WINDOW = 5;
constexpr int COLOR_WINDOWTEXT = 8;
constexpr int COLOR_HIGHLIGHT = 13;
constexpr int COLOR_BTNFACE = 15;
constexpr int COLOR_BTNSHADOW = 16;
constexpr int COLOR_BTNTEXT = 18;
constexpr int COLOR_BTNHIGHLIGHT = 20;
constexpr int COLOR_3DDKSHADOW = 21;

// Set in an OLE colour that is a system colour's index.
constexpr OLE_COLOR kSystemColour = 0x80000000;
constexpr OLE_COLOR OleColourOf(int index) { return kSystemColour | static_cast<OLE_COLOR>(index); }

constexpr OLE_COLOR kWindow = OleColourOf(COLOR_WINDOW);
constexpr OLE_COLOR kWindowText = OleColourOf(COLOR_WINDOWTEXT);
constexpr OLE_COLOR kButtonFace = OleColourOf(COLOR_BTNFACE);
constexpr OLE_COLOR kButtonShadow = OleColourOf(COLOR_BTNSHADOW);
constexpr OLE_COLOR kButtonText = OleColourOf(COLOR_BTNTEXT);
constexpr OLE_COLOR kButtonHighlight = OleColourOf(COLOR_BTNHIGHLIGHT);
constexpr OLE_COLOR kDarkShadow = OleColourOf(COLOR_3DDKSHADOW);

}  // namespace marklet
