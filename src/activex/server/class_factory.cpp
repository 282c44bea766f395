#include "activex/server/class_factory.h"

#include "activex/com/boundary.h"
#include "activex/com/com_object.h"
#include "activex/control/control_object.h"

namespace marklet::activex {
namespace {

class ClassFactory final : public ComObject<IClassFactory> {
 public:
  STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
    if (!object) return E_POINTER;
    *object = nullptr;
    // An outer object can only ask for the identity that it will delegate to.
    if (outer && iid != __uuidof(IUnknown)) return CLASS_E_NOAGGREGATION;
    return Guarded([&] { return ControlObject::Create(outer, iid, object); });
  }

  STDMETHODIMP LockServer(BOOL lock) override {
    lock ? LockModule() : UnlockModule();
    return S_OK;
  }
};

}  // namespace

HRESULT CreateClassFactory(REFIID iid, void** object) {
  const auto factory = Adopt<IClassFactory>(new ClassFactory);
  return factory->QueryInterface(iid, object);
}

}  // namespace marklet::activex
