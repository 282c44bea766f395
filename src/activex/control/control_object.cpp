#include "activex/control/control_object.h"

#include "activex/com/guid.h"

namespace marklet::activex {
namespace {

// The platform's libraries have no symbol for this one.
constexpr GUID kObjectSafetyGuid = ParseGuid("{CB5BDC81-93C1-11CF-8F20-00805F2CD064}");

}  // namespace

template <auto Member>
IUnknown* ControlObject::Get(ControlObject& control) {
  return &(control.*Member);
}
template <>
IUnknown* ControlObject::Get<&ControlObject::dispatch_>(ControlObject& control) {
  return control.dispatch_.Interface();
}

const ControlObject::InterfaceRow ControlObject::kInterfaces[] = {
    {__uuidof(IDispatch), Get<&ControlObject::dispatch_>},
    {kDispatchGuid, Get<&ControlObject::dispatch_>},
    {__uuidof(IOleObject), Get<&ControlObject::ole_object_>},
    {__uuidof(IOleControl), Get<&ControlObject::ole_control_>},
    {__uuidof(IOleWindow), Get<&ControlObject::in_place_object_>},
    {__uuidof(IOleInPlaceObject), Get<&ControlObject::in_place_object_>},
    {__uuidof(IOleInPlaceActiveObject), Get<&ControlObject::active_object_>},
    {__uuidof(IViewObject), Get<&ControlObject::view_>},
    {__uuidof(IViewObject2), Get<&ControlObject::view_>},
    {__uuidof(IViewObjectEx), Get<&ControlObject::view_>},
    {__uuidof(IPersist), Get<&ControlObject::persist_stream_>},
    {__uuidof(IPersistStreamInit), Get<&ControlObject::persist_stream_>},
    {__uuidof(IPersistPropertyBag), Get<&ControlObject::persist_bag_>},
    {__uuidof(IPersistStorage), Get<&ControlObject::persist_storage_>},
    {__uuidof(IConnectionPointContainer), Get<&ControlObject::connections_>},
    {__uuidof(IProvideClassInfo), Get<&ControlObject::class_info_>},
    {__uuidof(IProvideClassInfo2), Get<&ControlObject::class_info_>},
    {__uuidof(ISupportErrorInfo), Get<&ControlObject::error_info_>},
    {__uuidof(IQuickActivate), Get<&ControlObject::quick_activate_>},
    {IOwnConstituents::kIid, Get<&ControlObject::constituents_>},
    {__uuidof(IDataObject), Get<&ControlObject::data_>},
    {__uuidof(ISpecifyPropertyPages), Get<&ControlObject::property_pages_>},
    {__uuidof(IPerPropertyBrowsing), Get<&ControlObject::property_browsing_>},
    {__uuidof(ICategorizeProperties), Get<&ControlObject::categories_>},
    {kObjectSafetyGuid, Get<&ControlObject::safety_>},
    {kImageOwnerGuid, Get<&ControlObject::image_owner_>},
    {IOwnLabel::kIid, Get<&ControlObject::own_label_>},
};

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
  SetOuter(*this);  // the outer object is on its way out and must not be counted on
  Shutdown();
  delete this;
  return 0;
}

void ControlObject::Shutdown() {
  in_place_.Deactivate();
  connections_.Events().Clear();
  connections_.Notifications().Clear();
  site_.Set(nullptr);
}

// --- For the parts ----------------------------------------------------------------------------------------

void ControlObject::PropertyChanged(DISPID id) {
  persist_.SetDirty(true);
  connections_.Notifications().ForEach<IPropertyNotifySink>(
      [id](IPropertyNotifySink& sink) { sink.OnChanged(id); });
  LookChanged();
}

// The font object is the host's to change at any time, and those who hear of it may end the control.
void ControlObject::FontChanged() {
  const Entry entry(*this);
  marklet_.RedrawNow();
  host_.PropertyChanged("Font");
}

void ControlObject::LookChanged() {
  view_.NotifyChange();
  data_.NotifyChange();
}

}  // namespace marklet::activex
