// The property pages of a control, in the system's frame.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <optional>
#include <string>

namespace designer {

// Shows all pages that the control names and that there are, or the one alone that edits a property. Comes
// back when the user has closed them. False: there is none.
bool ShowPages(IUnknown& control, const std::wstring& name, HWND owner, std::optional<DISPID> property = {});

}  // namespace designer
