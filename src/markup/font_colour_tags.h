// The two tags that carry a value: <f=NAME> and <c=RRGGBB>.
#pragma once

#include <string_view>

#include "platform/std_font.h"
#include "platform/types.h"

namespace marklet {

// A new font with the eight properties of `source`, sharing nothing with it; null for null.
FontRef CloneFont(const FontRef& source);

// Reads RR GG BB as RGB. Every "#" is removed first; each pair is read up to its first character that is no
// hexadecimal digit, and nothing readable gives 0.
COLORREF ParseColorTag(std::u16string_view value);

}  // namespace marklet
