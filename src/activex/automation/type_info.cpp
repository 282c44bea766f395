#include "activex/automation/type_info.h"

#include "activex/com/guid.h"
#include "activex/com/module.h"

namespace marklet::activex {

// Read anew each time: the platform keeps what it has read while anybody uses it, and a reference of our own
// would outlive the server.
HRESULT GetOwnTypeInfo(REFGUID guid, ITypeInfo** info) {
  ComPtr<ITypeLib> library;
  const HRESULT result = ::LoadTypeLibEx(ModulePath().c_str(), REGKIND_NONE, library.GetAddressOf());
  return FAILED(result) ? result : library->GetTypeInfoOfGuid(guid, info);
}

HRESULT ClassInfoFace::GetClassInfo(ITypeInfo** info) {
  if (!info) return E_POINTER;
  *info = nullptr;
  return Call([&] { return GetOwnTypeInfo(kClassGuid, info); });
}

HRESULT ClassInfoFace::GetGUID(DWORD kind, GUID* guid) {
  if (!guid) return E_POINTER;
  *guid = kind == GUIDKIND_DEFAULT_SOURCE_DISP_IID ? kEventsGuid : GUID_NULL;
  return kind == GUIDKIND_DEFAULT_SOURCE_DISP_IID ? S_OK : E_INVALIDARG;
}

}  // namespace marklet::activex
