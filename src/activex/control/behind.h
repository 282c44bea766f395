// What lies behind the control's window, drawn by the windows that it stands on, for hosts whose forms keep
// no picture of themselves.
#pragma once

#include "activex/com/com.h"
#include "platform/types.h"

namespace marklet::activex {

// Has the parent of `window`, siblings below it and group boxes draw what they show at its place; its client
// area begins at (0, 0) of `dc`, a context on pixels of ours. Parents that draw nothing let theirs be seen,
// and where nobody draws there is `otherwise`. Windows of other threads aren't asked: they might never
// answer.
//
// False when it isn't known for good: some windows draw only what is seen on the screen, and aren't on it
// yet. All of them may do anything inside.
bool PaintBehindWindow(::HWND window, HDC dc, COLORREF otherwise);

}  // namespace marklet::activex
