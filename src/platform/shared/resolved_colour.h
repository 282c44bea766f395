// What an OLE colour looks like, wherever colours are mixed.
#pragma once

#include "platform/system.h"
#include "platform/system_colours.h"

namespace marklet {

// A system colour as GetSysColor gives it; every other value, -1 among them, as it is.
inline COLORREF ResolvedColour(OLE_COLOR colour) {
  const bool is_system_colour = (colour & 0xFFFFFF00u) == kSystemColour;
  return is_system_colour ? GetSysColor(static_cast<int>(colour & 0xFFu)) : colour;
}

}  // namespace marklet
