// Pictures of windows.
#pragma once

#include <windows.h>

#include <string>

namespace example {

// Writes a part of the screen to a PNG file. False when that fails.
bool SavePicture(const RECT& part, const std::wstring& file);

// The same of what `window` shows inside its frame, and what stands over it.
bool SavePicture(HWND window, const std::wstring& file);

}  // namespace example
