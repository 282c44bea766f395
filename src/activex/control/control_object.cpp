#include "activex/control/control_object.h"

#include "activex/com/guid.h"

namespace marklet::activex {
namespace {

struct InterfaceRow {
  const IID& iid;
  IUnknown* (*get)(ControlObject& control);
};

template <auto Member>
IUnknown* Get(ControlObject& control) {
  return &(control.*Member);
}
IUnknown* GetDispatch(ControlObject& control) { return control.dispatch.Interface(); }

// The platform's libraries have no symbol for this one.
constexpr GUID kObjectSafetyGuid = ParseGuid("{CB5BDC81-93C1-11CF-8F20-00805F2CD064}");

using C = ControlObject;
const InterfaceRow kInterfaces[] = {
    {__uuidof(IDispatch), GetDispatch},
    {kDispatchGuid, GetDispatch},
    {__uuidof(IOleObject), Get<&C::ole_object>},
    {__uuidof(IOleControl), Get<&C::ole_control>},
    {__uuidof(IOleWindow), Get<&C::in_place_object>},
    {__uuidof(IOleInPlaceObject), Get<&C::in_place_object>},
    {__uuidof(IOleInPlaceActiveObject), Get<&C::active_object>},
    {__uuidof(IViewObject), Get<&C::view>},
    {__uuidof(IViewObject2), Get<&C::view>},
    {__uuidof(IViewObjectEx), Get<&C::view>},
    {__uuidof(IPersist), Get<&C::persist_stream>},
    {__uuidof(IPersistStreamInit), Get<&C::persist_stream>},
    {__uuidof(IPersistPropertyBag), Get<&C::persist_bag>},
    {__uuidof(IPersistStorage), Get<&C::persist_storage>},
    {__uuidof(IConnectionPointContainer), Get<&C::connections>},
    {__uuidof(IProvideClassInfo), Get<&C::class_info>},
    {__uuidof(IProvideClassInfo2), Get<&C::class_info>},
    {__uuidof(ISupportErrorInfo), Get<&C::error_info>},
    {__uuidof(IQuickActivate), Get<&C::quick_activate>},
    {__uuidof(IDataObject), Get<&C::data>},
    {__uuidof(ISpecifyPropertyPages), Get<&C::property_pages>},
    {__uuidof(IPerPropertyBrowsing), Get<&C::property_browsing>},
    {__uuidof(ICategorizeProperties), Get<&C::categories>},
    {kObjectSafetyGuid, Get<&C::safety>},
    {kImageOwnerGuid, Get<&C::image_owner>},
};

}  // namespace

IUnknown& OuterOf(ControlObject& control) { return control.Outer(); }

// --- Entry ------------------------------------------------------------------------------------------------

Entry::Entry(ControlObject& control) : control_(control) {
  control_.Outer().AddRef();
  ++control_.depth_;
}

Entry::~Entry() {
  if (--control_.depth_ == 0) control_.window.ReleaseContext();
  control_.Outer().Release();
}

// --- Identity ---------------------------------------------------------------------------------------------

HRESULT ControlObject::Create(IUnknown* outer, REFIID iid, void** object) {
  ControlObject* control = new ControlObject(outer);
  const HRESULT result = control->QueryInterface(iid, object);
  control->Release();
  return result;
}

HRESULT ControlObject::QueryInterface(REFIID iid, void** object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  if (iid == __uuidof(IUnknown)) {
    *object = static_cast<IUnknown*>(this);
    AddRef();
    return S_OK;
  }
  for (const InterfaceRow& row : kInterfaces) {
    if (row.iid != iid) continue;
    IUnknown* const face = row.get(*this);
    face->AddRef();
    *object = face;
    return S_OK;
  }
  return E_NOINTERFACE;
}

ULONG ControlObject::AddRef() { return ++references_; }

// The last steps make calls of their own, which come and go on a reference of theirs.
ULONG ControlObject::Release() {
  if (references_ > 1) return --references_;
  if (outer_ != this) outer_ = this;  // the outer object is on its way out and must not be counted on
  Shutdown();
  delete this;
  return 0;
}

void ControlObject::NotifyLook() {
  view.NotifyChange();
  data.NotifyChange();
}

void ControlObject::Shutdown() {
  in_place.Deactivate();
  connections.Events().Clear();
  connections.Notifications().Clear();
  site.Set(nullptr);
}

}  // namespace marklet::activex
