// The factories of the classes that the system creates here: the control, and its page for images.
#pragma once

#include "activex/com/com.h"

namespace marklet::activex {

// CLASS_E_CLASSNOTAVAILABLE for any other class.
HRESULT CreateClassFactory(REFCLSID class_id, REFIID iid, void** object);

}  // namespace marklet::activex
