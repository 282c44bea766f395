// Saved values between the control and the property bags of hosts, which hold variants.
#pragma once

#include "activex/com.h"
#include "platform/property_bag.h"

namespace marklet::activex {

class ControlObject;

// `result` is empty before. False for a value that is none. Throws std::bad_alloc.
bool VariantFromBagValue(ControlObject& control, const BagValue& value, VARIANT& result);

// The value in the type asked for, whatever convertible shape it comes in; monostate when there is no way.
// Numbers and flags in text are read the same in every language.
BagValue BagValueFromVariant(const VARIANT& source, BagType type);

}  // namespace marklet::activex
