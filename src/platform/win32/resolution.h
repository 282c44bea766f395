// How fine the screen is below a window. Monitors differ, and a process may be told so.
#pragma once

#include "platform/types.h"
#include "platform/win32/sdk.h"

namespace marklet::win32 {

// Pixels per inch of a window as its process sees them: those of its monitor where the process knows about
// monitors, those of the whole screen everywhere else.
Long PixelsPerInchOf(::HWND window);

}  // namespace marklet::win32
