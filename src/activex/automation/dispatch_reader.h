// Reading and writing members of somebody else's automation object.
#pragma once

#include <string_view>

#include "activex/com/text.h"
#include "host/named_members.h"

namespace marklet::activex {

// The property with this DISPID, converted to `type`, or as it comes for VT_EMPTY; false when there is none.
// `result` is empty before.
bool ReadProperty(IDispatch& object, DISPID dispid, VARTYPE type, VARIANT& result);

// An automation object whose members are reached by name. Null for null.
NamedMembersRef MembersOf(ComPtr<IDispatch> object);

}  // namespace marklet::activex
