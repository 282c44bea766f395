// The two tags that carry a value: <f=NAME> and <c=RRGGBB>.
#pragma once

#include <string_view>

#include "platform/shared/std_font.h"
#include "platform/types.h"

namespace marklet {

struct CaptionPen;

// A new font with the eight properties of `source`, sharing nothing with it; null for null.
FontRef CloneFont(const FontRef& source);

// Reads RR GG BB as RGB. Every "#" is removed first; each pair is read up to its first character that is no
// hexadecimal digit, and nothing readable gives 0.
COLORREF ParseColorTag(std::u16string_view value);

// Does what a token that ends in ">" says when it is one of the two. A word may be such a tag as well when it
// happens to have the shape. False when the token is text.
bool ObeyValueTag(CaptionPen& pen, std::u16string_view token);

}  // namespace marklet
