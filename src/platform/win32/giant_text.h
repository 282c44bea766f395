// Characters far larger than any surface.
#pragma once

#include <string_view>

#include "platform/win32/sdk.h"

namespace marklet::win32 {

// Fills the outlines of a run with its top left corner at (x, y) in the text colour, as much of them as
// `clip` shows, whatever the height of the font selected in the context. The platform would make a bitmap of
// each glyph, of gigabytes at the largest sizes. Not smoothed, and without underline or strikeout.
bool FillGiantText(::HDC dc, int x, int y, std::u16string_view text, const ::RECT& clip);

}  // namespace marklet::win32
