// Group boxes: see-through windows that stand, as a rule, above what they frame.
#pragma once

#include <vector>

#include "activex/com/com.h"

namespace marklet::activex {

// Those among the children of `parent` that meet `place`, a rectangle of its client area, from the top.
std::vector<::HWND> GroupBoxesAt(::HWND parent, const ::RECT& place);

}  // namespace marklet::activex
