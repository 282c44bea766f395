// The line-by-line route for systems without a working DrawTextW.
#pragma once

#include <string_view>

#include "platform/types.h"

namespace marklet {

// Draws a text inside `rect`, wrapped at blanks. Draws nothing until this route is built.
void DrawTextManual(HDC dc, const RECT& rect, std::u16string_view text, bool center_vertically, bool center,
                    bool right_aligned);

}  // namespace marklet
