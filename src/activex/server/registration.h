// The server's entries in the registry.
#pragma once

#include "activex/com/com.h"

namespace marklet::activex {

enum class RegistrationScope { Machine, User };

// Writes all entries; what an earlier registration left is overwritten. On failure nothing stays behind.
HRESULT RegisterServer(RegistrationScope scope);
// Removes all entries. Those of a server of the other bitness that shares the type library's key stay.
HRESULT UnregisterServer(RegistrationScope scope);

}  // namespace marklet::activex
