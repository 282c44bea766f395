#include "activex/control/class_info.h"

#include "activex/automation/type_info.h"
#include "activex/com/guid.h"

namespace marklet::activex {

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

HRESULT ErrorInfoFace::InterfaceSupportsErrorInfo(REFIID iid) {
  return iid == kDispatchGuid || iid == __uuidof(IDispatch) ? S_OK : S_FALSE;
}

}  // namespace marklet::activex
