// The type library that the server carries.
#pragma once

#include "activex/com/com.h"

namespace marklet::activex {

// The description of a type of the library by its GUID, for the caller to release.
HRESULT GetOwnTypeInfo(REFGUID guid, ITypeInfo** info);

}  // namespace marklet::activex
