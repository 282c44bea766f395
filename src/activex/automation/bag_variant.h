// Saved values between the control and the property bags of hosts, which hold variants.
#pragma once

#include "activex/automation/font.h"
#include "activex/com/com.h"
#include "host/property_bag.h"

namespace marklet::activex {

// What a bag is asked for that wants to be told a type.
VARTYPE VariantTypeOf(BagType type);

// `result` is empty before. False for a value that is none. Both throw std::bad_alloc.
bool VariantFromBagValue(HostFont& host_font, const BagValue& value, VARIANT& result);
void VariantFromBytes(const ByteArray& bytes, VARIANT& result);

// The value in the type asked for, whatever convertible shape it comes in, but a text in place of bytes as a
// text; monostate when there is no way. Throws std::bad_alloc, which is no reason to call a value wrong.
// Numbers and flags in text are read the same in every language.
BagValue BagValueFromVariant(const VARIANT& source, BagType type);

}  // namespace marklet::activex
