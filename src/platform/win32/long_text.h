// DrawTextW by the platform's rules for texts that the platform itself cuts off or takes too long over.
#pragma once

#include <string_view>

#include "platform/types.h"

namespace marklet::win32 {

// The contract is DrawTextW's in text.h. Time is linear in the text; drawing ends with the first line below
// the rectangle.
int DrawLongText(HDC dc, std::u16string_view text, RECT& rect, std::uint32_t flags);

}  // namespace marklet::win32
