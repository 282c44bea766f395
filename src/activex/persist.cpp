#include "activex/persist.h"

#include "activex/control_object.h"
#include "activex/guid.h"

namespace marklet::activex {
namespace {

HRESULT GiveClassId(CLSID* class_id) {
  if (!class_id) return E_POINTER;
  *class_id = kClassGuid;
  return S_OK;
}

}  // namespace

HRESULT Persist::InitNew() {
  control_.marklet.InitProperties();
  dirty_ = true;
  return S_OK;
}

HRESULT PersistStreamFace::GetClassID(CLSID* class_id) { return GiveClassId(class_id); }
HRESULT PersistStreamFace::IsDirty() { return control_.persist.IsDirty() ? S_OK : S_FALSE; }
HRESULT PersistStreamFace::InitNew() {
  return Call([this] { return control_.persist.InitNew(); });
}

HRESULT PersistBagFace::GetClassID(CLSID* class_id) { return GiveClassId(class_id); }
HRESULT PersistBagFace::InitNew() {
  return Call([this] { return control_.persist.InitNew(); });
}

HRESULT PersistStorageFace::GetClassID(CLSID* class_id) { return GiveClassId(class_id); }
HRESULT PersistStorageFace::IsDirty() { return control_.persist.IsDirty() ? S_OK : S_FALSE; }
HRESULT PersistStorageFace::InitNew(IStorage*) {
  return Call([this] { return control_.persist.InitNew(); });
}

}  // namespace marklet::activex
