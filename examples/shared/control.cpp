#include "control.h"

#include <cstring>

namespace example {
namespace {

CLSID MarkletId() {
  CLSID id;
  Check(CLSIDFromProgID(L"zvsMarklet.Marklet", &id));
  return id;
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

// A stream that reads what is given, or that can be written to.
ComPtr<IStream> MemoryStream(std::span<const std::uint8_t> bytes = {}) {
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, bytes.size());
  if (!memory) throw E_OUTOFMEMORY;
  if (!bytes.empty()) {
    std::memcpy(GlobalLock(memory), bytes.data(), bytes.size());
    GlobalUnlock(memory);
  }
  ComPtr<IStream> stream;
  const HRESULT result = CreateStreamOnHGlobal(memory, TRUE, &stream);
  if (FAILED(result)) GlobalFree(memory);
  Check(result);
  // The block may be larger than was asked for.
  ULARGE_INTEGER size;
  size.QuadPart = bytes.size();
  Check(stream->SetSize(size));
  return stream;
}

std::vector<std::uint8_t> BytesOf(IStream& stream) {
  STATSTG state;
  Check(stream.Stat(&state, STATFLAG_NONAME));
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(state.cbSize.QuadPart));
  Check(stream.Seek({}, STREAM_SEEK_SET, nullptr));
  ULONG read = 0;
  Check(stream.Read(bytes.data(), static_cast<ULONG>(bytes.size()), &read));
  if (read != bytes.size()) throw E_FAIL;
  return bytes;
}

// For a property that is put by value.
class Text {
 public:
  explicit Text(const wchar_t* text) {
    V_VT(&value_) = VT_BSTR;
    V_BSTR(&value_) = SysAllocString(text);
  }
  ~Text() { VariantClear(&value_); }
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;
  const VARIANT& Value() const { return value_; }

 private:
  VARIANT value_;
};

}  // namespace

void Check(HRESULT result) {
  if (FAILED(result)) throw result;
}

void StartNew(IOleObject& object) {
  ComPtr<IPersistStreamInit> stream;
  ComPtr<IPersistPropertyBag> bag;
  if (SUCCEEDED(object.QueryInterface(IID_PPV_ARGS(&stream))))
    Check(stream->InitNew());
  else if (SUCCEEDED(object.QueryInterface(IID_PPV_ARGS(&bag))))
    Check(bag->InitNew());
}

void StartEmpty(IOleObject& object) {
  ComPtr<IPersistPropertyBag> persist;
  Check(object.QueryInterface(IID_PPV_ARGS(&persist)));
  EmptyBag bag;
  Check(persist->Load(&bag, nullptr));
}

void StartFrom(IOleObject& object, std::span<const std::uint8_t> saved) {
  ComPtr<IPersistStreamInit> persist;
  Check(object.QueryInterface(IID_PPV_ARGS(&persist)));
  Check(persist->Load(MemoryStream(saved).Get()));
}

std::vector<std::uint8_t> Save(IOleObject& object) {
  ComPtr<IPersistStreamInit> persist;
  Check(object.QueryInterface(IID_PPV_ARGS(&persist)));
  const ComPtr<IStream> stream = MemoryStream();
  Check(persist->Save(stream.Get(), TRUE));
  return BytesOf(*stream.Get());
}

// What throws from here on is cleaned up after: the object is whole.
Control::Control(const CLSID& id) {
  Check(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&object_)));
  Check(object_.As(&properties_));
  object_.As(&in_place_);
}

Control::Control(const CLSID& id, HWND window, const RECT& place, const Ambients& ambients,
                 const Start& start)
    : Control(id) {
  window_ = window;
  site_ = new Site(window, place, ambients);
  site_->Attach(in_place_.Get());

  // A control that is told its site first knows its ambient properties when it takes its first values.
  Check(object_->SetClientSite(static_cast<IOleClientSite*>(site_.Get())));
  start(*object_.Get());
  SIZEL size = Himetric(place);
  object_->SetExtent(DVASPECT_CONTENT, &size);  // one of a fixed size refuses, and has it
}

// One that is loaded, as from a saved form, hears when the pointer leaves; a new one doesn't.
Control::Control(HWND window, const RECT& place) : Control(MarkletId(), window, place, {}, StartEmpty) {
  Activate();
}

Control::~Control() {
  if (events_) events_->Unadvise(connection_);
  if (!site_) return;
  site_->Detach();
  if (in_place_) in_place_->InPlaceDeactivate();
  object_->Close(OLECLOSE_NOSAVE);
  object_->SetClientSite(nullptr);
}

void Control::Activate() {
  const RECT place = site_->Place();
  Check(object_->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, static_cast<IOleClientSite*>(site_.Get()), 0,
                        window_, &place));
}

HWND Control::Window() const {
  HWND window = nullptr;
  return in_place_ && SUCCEEDED(in_place_->GetWindow(&window)) ? window : nullptr;
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
  const Text path(file), name(key);
  arguments[1] = path.Value();
  arguments[0] = name.Value();
  DISPPARAMS parameters = {arguments, nullptr, 2, 0};
  Check(properties_->Invoke(Find(L"LoadIconImageFromFile"), IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                            &parameters, &loaded, nullptr, nullptr));
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

void Control::Set(const wchar_t* name, const wchar_t* text) { Put(name, Text(text).Value()); }

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

}  // namespace example
