// The system's window for the property pages of an object.
#pragma once

#include <string>

#include "activex/com/com.h"

namespace marklet::activex {

// Shows the pages that `object` names, as far as they exist on this machine, until the user closes the
// window. Anything may happen to the object in the meantime. Without a page there is no window:
// OLEOBJ_S_CANNOT_DOVERB_NOW.
HRESULT ShowPropertyFrame(IUnknown& object, ::HWND owner, const std::wstring& caption, LCID locale);

}  // namespace marklet::activex
