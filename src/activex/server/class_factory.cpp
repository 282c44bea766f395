#include "activex/server/class_factory.h"

#include "activex/com/boundary.h"
#include "activex/com/com_object.h"
#include "activex/com/guid.h"
#include "activex/control/control_object.h"
#include "activex/page/image_page.h"

namespace marklet::activex {
namespace {

struct ServedClass {
  const CLSID& id;
  // An object for `outer` to aggregate, unless that is null.
  HRESULT (*create)(IUnknown* outer, REFIID iid, void** object);
};
constexpr ServedClass kClasses[] = {{kClassGuid, ControlObject::Create}, {kImagePageGuid, ImagePage::Create}};

class ClassFactory final : public ComObject<IClassFactory> {
 public:
  explicit ClassFactory(const ServedClass& served) : served_(served) {}

  STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
    if (!object) return E_POINTER;
    *object = nullptr;
    // An outer object can only ask for the identity that it will delegate to.
    if (outer && iid != __uuidof(IUnknown)) return CLASS_E_NOAGGREGATION;
    return Guarded([&] { return served_.create(outer, iid, object); });
  }

  STDMETHODIMP LockServer(BOOL lock) override {
    lock ? LockModule() : UnlockModule();
    return S_OK;
  }

 private:
  const ServedClass& served_;
};

}  // namespace

HRESULT CreateClassFactory(REFCLSID class_id, REFIID iid, void** object) {
  for (const ServedClass& served : kClasses) {
    if (served.id != class_id) continue;
    const auto factory = Adopt<IClassFactory>(new ClassFactory(served));
    return factory->QueryInterface(iid, object);
  }
  return CLASS_E_CLASSNOTAVAILABLE;
}

}  // namespace marklet::activex
