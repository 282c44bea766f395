// Values of a control's properties as texts: read and set by late binding.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <optional>
#include <string>

#include "properties.h"

namespace designer {

// Empty where the control gives none.
std::wstring ReadValue(IDispatch& control, const Property& property);

// Sets what the text says. The answer is what to tell the user when the control, or this program, doesn't
// take it.
std::optional<std::wstring> WriteValue(IDispatch& control, const Property& property,
                                       const std::wstring& text);

// Of a font object; nothing when it is none.
std::optional<FontValue> ReadFont(IDispatch& control, const Property& property);

// The words for a failed call.
std::wstring FailureText(HRESULT result);

}  // namespace designer
