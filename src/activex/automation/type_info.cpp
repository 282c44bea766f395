#include "activex/automation/type_info.h"

#include "activex/com/module.h"

namespace marklet::activex {

// Read anew each time: the platform keeps what it has read while anybody uses it, and a reference of our own
// would outlive the server.
HRESULT GetOwnTypeInfo(REFGUID guid, ITypeInfo** info) {
  ComPtr<ITypeLib> library;
  const HRESULT result = ::LoadTypeLibEx(ModulePath().c_str(), REGKIND_NONE, library.GetAddressOf());
  return FAILED(result) ? result : library->GetTypeInfoOfGuid(guid, info);
}

}  // namespace marklet::activex
