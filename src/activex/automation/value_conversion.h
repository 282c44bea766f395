// Values of properties between the control and its callers: as the C types of the interface's slots and as
// variants.
#pragma once

#include "activex/automation/font.h"
#include "activex/com/com.h"
#include "control/properties.h"

namespace marklet::activex {

// A whole number from any numeric variant or text. A colour may come signed or unsigned: 0x8000000F is
// -2147483633 and 2147483663.
bool ColourFromVariant(const VARIANT& source, Long& colour);

// The value of a property of type `type` from a variant; DISP_E_TYPEMISMATCH or DISP_E_OVERFLOW when it can't
// be converted. Objects may be null.
HRESULT ValueFromVariant(const VARIANT& source, ValueType type, Value& value);
// `result` is empty before. A value that couldn't be had gives E_UNEXPECTED.
HRESULT VariantFromValue(HostFont& host_font, const Value& value, ValueType type, VARIANT& result);

// A picture of the host's.
HostObjectRef WrapPicture(IUnknown* picture);
ComPtr<IPictureDisp> UnwrapPicture(const HostObjectRef& object);

}  // namespace marklet::activex
