// Pictures of windows.
#pragma once

#include <windows.h>

#include <string>

namespace example {

// Writes what `window` shows inside its frame to a PNG file. False when that fails.
bool SavePicture(HWND window, const std::wstring& file);

}  // namespace example
