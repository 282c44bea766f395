#include "control.h"

namespace form {
namespace {

void Check(HRESULT result) {
  if (FAILED(result)) throw result;
}

// Controls count in hundredths of a millimetre.
SIZEL Himetric(const RECT& place) {
  const HDC screen = GetDC(nullptr);
  const LONG per_inch = GetDeviceCaps(screen, LOGPIXELSX);
  ReleaseDC(nullptr, screen);
  return {MulDiv(place.right - place.left, 2540, per_inch), MulDiv(place.bottom - place.top, 2540, per_inch)};
}

// A form that nothing was saved in: each property takes its default.
class EmptyBag final : public IPropertyBag {
 public:
  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    if (!object) return E_POINTER;
    *object = iid == IID_IUnknown || iid == IID_IPropertyBag ? this : nullptr;
    return *object ? S_OK : E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }  // nobody keeps it
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  STDMETHODIMP Read(LPCOLESTR, VARIANT*, IErrorLog*) override { return E_INVALIDARG; }
  STDMETHODIMP Write(LPCOLESTR, VARIANT*) override { return S_OK; }
};

}  // namespace

Control::Control(HWND window, const RECT& place) {
  CLSID id;
  Check(CLSIDFromProgID(L"zvsMarklet.Marklet", &id));
  Check(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&object_)));
  Check(object_.As(&properties_));
  Check(object_.As(&in_place_));
  site_ = new Site(window, place);
  site_->Attach(in_place_.Get());

  // A control that is told its site first knows its ambient properties when it takes its first values. One
  // that is loaded, as from a saved form, hears when the pointer leaves; a new one doesn't.
  Check(object_->SetClientSite(static_cast<IOleClientSite*>(site_.Get())));
  ComPtr<IPersistPropertyBag> persist;
  Check(object_.As(&persist));
  EmptyBag bag;
  Check(persist->Load(&bag, nullptr));

  SIZEL size = Himetric(place);
  Check(object_->SetExtent(DVASPECT_CONTENT, &size));
  Check(object_->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, static_cast<IOleClientSite*>(site_.Get()), 0,
                        window, &place));
}

Control::~Control() {
  if (events_) events_->Unadvise(connection_);
  site_->Attach(nullptr);
  in_place_->InPlaceDeactivate();
  object_->Close(OLECLOSE_NOSAVE);
  object_->SetClientSite(nullptr);
}

void Control::Listen(IDispatch* sink) {
  ComPtr<IProvideClassInfo2> information;
  ComPtr<IConnectionPointContainer> points;
  GUID events;
  Check(object_.As(&information));
  Check(object_.As(&points));
  Check(information->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &events));
  Check(points->FindConnectionPoint(events, &events_));
  Check(events_->Advise(sink, &connection_));
}

void Control::Move(const RECT& place) { site_->OnPosRectChange(&place); }

bool Control::LoadImage(const wchar_t* file, const wchar_t* key) {
  VARIANT arguments[2], loaded;  // the last argument first
  VariantInit(&loaded);
  for (VARIANT& argument : arguments) V_VT(&argument) = VT_BSTR;
  V_BSTR(&arguments[1]) = SysAllocString(file);
  V_BSTR(&arguments[0]) = SysAllocString(key);
  DISPPARAMS parameters = {arguments, nullptr, 2, 0};
  const HRESULT result = properties_->Invoke(Find(L"LoadIconImageFromFile"), IID_NULL, LOCALE_USER_DEFAULT,
                                             DISPATCH_METHOD, &parameters, &loaded, nullptr, nullptr);
  for (VARIANT& argument : arguments) VariantClear(&argument);
  Check(result);
  return V_BOOL(&loaded) != VARIANT_FALSE;
}

DISPID Control::Find(const wchar_t* name) {
  LPOLESTR names = const_cast<LPOLESTR>(name);
  DISPID id;
  Check(properties_->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id));
  return id;
}

void Control::Put(const wchar_t* name, VARIANT value) {
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS parameters = {&value, &put, 1, 1};
  Check(properties_->Invoke(Find(name), IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYPUT, &parameters,
                            nullptr, nullptr, nullptr));
}

void Control::Set(const wchar_t* name, const wchar_t* text) {
  VARIANT value;
  V_VT(&value) = VT_BSTR;
  V_BSTR(&value) = SysAllocString(text);
  try {
    Put(name, value);
  } catch (...) {
    VariantClear(&value);
    throw;
  }
  VariantClear(&value);
}

void Control::Set(const wchar_t* name, LONG number) {
  VARIANT value;
  V_VT(&value) = VT_I4;
  V_I4(&value) = number;
  Put(name, value);
}

void Control::Set(const wchar_t* name, bool truth) {
  VARIANT value;
  V_VT(&value) = VT_BOOL;
  V_BOOL(&value) = truth ? VARIANT_TRUE : VARIANT_FALSE;
  Put(name, value);
}

}  // namespace form
