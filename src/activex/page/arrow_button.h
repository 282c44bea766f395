// The arrows of the page's two small buttons, for machines without the font that has them.
#pragma once

#include "activex/com/com.h"

namespace marklet::activex::page {

// Whether the machine has a font of that name.
bool HasFont(const wchar_t* face);

// Draws the whole of such a button, as its owner.
void DrawArrowButton(const DRAWITEMSTRUCT& button, bool points_left);

}  // namespace marklet::activex::page
