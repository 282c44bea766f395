// The server's entries in the registry.
#pragma once

#include "activex/com.h"

namespace marklet::activex {

enum class RegistrationScope { Machine, User };

// Writes all entries; what an earlier registration left is overwritten. On failure nothing stays behind.
HRESULT RegisterServer(RegistrationScope scope);
// Removes all entries. Those of a server of the other bitness that shares the type library's key stay.
HRESULT UnregisterServer(RegistrationScope scope);

// The traits by which containers judge the control, as IOleObject reports them too. The mnemonic of a label
// takes the user to the control behind it.
inline constexpr DWORD kMiscStatus = OLEMISC_RECOMPOSEONRESIZE | OLEMISC_CANTLINKINSIDE | OLEMISC_INSIDEOUT |
                                     OLEMISC_ACTIVATEWHENVISIBLE | OLEMISC_ACTSLIKELABEL |
                                     OLEMISC_SETCLIENTSITEFIRST;

}  // namespace marklet::activex
