// Which characters can't be drawn one after the other.
#pragma once

#include <string_view>

namespace marklet::headless {

// Whether a text has a character that is written from right to left, joins, reorders or combines.
bool IsComplex(std::u16string_view text);

}  // namespace marklet::headless
