// The factory of the one creatable class.
#pragma once

#include "activex/com/com.h"

namespace marklet::activex {

HRESULT CreateClassFactory(REFIID iid, void** object);

}  // namespace marklet::activex
