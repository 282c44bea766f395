#include "activex/container.h"

#include <algorithm>
#include <cstdio>

#include "platform/system_colours.h"

namespace ocx_test {
namespace {

constexpr wchar_t kWindowClass[] = L"MarkletTestContainer";

ATOM RegisterWindowClass() {
  WNDCLASSW description = {};
  description.lpfnWndProc = DefWindowProcW;
  description.hInstance = GetModuleHandleW(nullptr);
  description.hbrBackground = GetSysColorBrush(marklet::COLOR_WINDOW);
  description.lpszClassName = kWindowClass;
  return RegisterClassW(&description);
}

// Threads that come here at the same time wait for the first one: a class that another thread is about to
// register exists before it can be used.
HWND CreateContainerWindow() {
  static const ATOM window_class = RegisterWindowClass();
  EXPECT_NE(0, window_class);
  const HWND window = CreateWindowExW(0, kWindowClass, L"", WS_POPUP, 100, 100, 400, 300, nullptr, nullptr,
                                      GetModuleHandleW(nullptr), nullptr);
  ShowWindow(window, SW_SHOWNOACTIVATE);
  return window;
}

std::string Numbers(const char* name, const RECT& rect) {
  char text[100];
  std::snprintf(text, sizeof text, "%s(%ld,%ld,%ld,%ld)", name, rect.left, rect.top, rect.right, rect.bottom);
  return text;
}

// Counts references and answers for the interfaces it is given. Lives as long as its maker, who deletes it.
template <typename... Interfaces>
class Counted : public Interfaces... {
 public:
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() override { return --references; }
  ULONG references = 0;

 protected:
  ~Counted() = default;
  HRESULT Give(IUnknown* face, void** object) {
    *object = face;
    face->AddRef();
    return S_OK;
  }
};

}  // namespace

// --- Frame ------------------------------------------------------------------------------------------------

class FrameObject final : public Counted<IOleInPlaceFrame> {
 public:
  explicit FrameObject(Container& container) : container_(container) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    *object = nullptr;
    if (iid != __uuidof(IUnknown) && iid != __uuidof(IOleInPlaceFrame) &&
        iid != __uuidof(IOleInPlaceUIWindow) && iid != __uuidof(IOleWindow))
      return E_NOINTERFACE;
    return Give(this, object);
  }
  HRESULT STDMETHODCALLTYPE GetWindow(HWND* window) override {
    *window = container_.Window();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetBorder(LPRECT) override { return INPLACE_E_NOTOOLSPACE; }
  HRESULT STDMETHODCALLTYPE RequestBorderSpace(LPCBORDERWIDTHS) override { return INPLACE_E_NOTOOLSPACE; }
  HRESULT STDMETHODCALLTYPE SetBorderSpace(LPCBORDERWIDTHS) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE SetActiveObject(IOleInPlaceActiveObject* object, LPCOLESTR) override {
    active = object;
    container_.Note(object ? "SetActiveObject" : "SetActiveObject(none)");
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE InsertMenus(HMENU, LPOLEMENUGROUPWIDTHS) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetMenu(HMENU, HOLEMENU, HWND) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE RemoveMenus(HMENU) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetStatusText(LPCOLESTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE EnableModeless(BOOL enable) override {
    container_.Note(enable ? "EnableModeless" : "EnableModeless(no)");
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE TranslateAccelerator(LPMSG, WORD) override { return S_FALSE; }

  ComPtr<IOleInPlaceActiveObject> active;

 private:
  Container& container_;
};

// --- Site -------------------------------------------------------------------------------------------------

class SiteObject final
    : public Counted<IOleClientSite, IOleInPlaceSite, IOleControlSite, IDispatch, IOleContainer> {
 public:
  explicit SiteObject(Container& container) : frame(container), container_(container) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    *object = nullptr;
    if (iid == __uuidof(IUnknown) || iid == __uuidof(IOleClientSite))
      return Give(static_cast<IOleClientSite*>(this), object);
    if ((iid == __uuidof(IOleInPlaceSite) || iid == __uuidof(IOleWindow)) && Has(SiteInterface::InPlaceSite))
      return Give(static_cast<IOleInPlaceSite*>(this), object);
    if (iid == __uuidof(IOleControlSite) && Has(SiteInterface::ControlSite))
      return Give(static_cast<IOleControlSite*>(this), object);
    if (iid == __uuidof(IDispatch) && Has(SiteInterface::Ambients))
      return Give(static_cast<IDispatch*>(this), object);
    return E_NOINTERFACE;
  }

  // IOleClientSite
  HRESULT STDMETHODCALLTYPE SaveObject() override {
    Note("SaveObject");
    return container_.save_answer;
  }
  HRESULT STDMETHODCALLTYPE GetMoniker(DWORD, DWORD which, IMoniker** moniker) override {
    *moniker = nullptr;
    if (which != OLEWHICHMK_OBJFULL || !container_.moniker) return E_NOTIMPL;
    *moniker = ComPtr<IMoniker>(container_.moniker).Detach();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetContainer(IOleContainer** container) override {
    *container = nullptr;
    Read("container");
    if (!Has(SiteInterface::Container)) return E_NOINTERFACE;
    if (container_.form) return container_.form.CopyTo(container);
    return Give(static_cast<IOleContainer*>(this), reinterpret_cast<void**>(container));
  }
  HRESULT STDMETHODCALLTYPE ShowObject() override { return Note("ShowObject"); }
  HRESULT STDMETHODCALLTYPE OnShowWindow(BOOL) override { return Note("OnShowWindow"); }
  HRESULT STDMETHODCALLTYPE RequestNewObjectLayout() override {
    Note("RequestNewObjectLayout");
    return E_NOTIMPL;
  }

  // IOleInPlaceSite
  HRESULT STDMETHODCALLTYPE GetWindow(HWND* window) override {
    Note("GetWindow");
    *window = container_.frame_window ? container_.frame_window : container_.Window();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE CanInPlaceActivate() override { return Note("CanInPlaceActivate"); }
  HRESULT STDMETHODCALLTYPE OnInPlaceActivate() override { return Note("OnInPlaceActivate"); }
  HRESULT STDMETHODCALLTYPE OnUIActivate() override { return Note("OnUIActivate"); }
  HRESULT STDMETHODCALLTYPE GetWindowContext(IOleInPlaceFrame** frame_out, IOleInPlaceUIWindow** document,
                                             LPRECT position, LPRECT clip,
                                             LPOLEINPLACEFRAMEINFO info) override {
    *frame_out = nullptr;
    *document = nullptr;
    Note("GetWindowContext");
    if (!Has(SiteInterface::InPlaceContext)) return E_NOTIMPL;
    if (Has(SiteInterface::Frame)) Give(&frame, reinterpret_cast<void**>(frame_out));
    *position = container_.position;
    *clip = container_.clip;
    info->hwndFrame = container_.Window();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Scroll(SIZE) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE OnUIDeactivate(BOOL) override { return Note("OnUIDeactivate"); }
  HRESULT STDMETHODCALLTYPE OnInPlaceDeactivate() override { return Note("OnInPlaceDeactivate"); }
  HRESULT STDMETHODCALLTYPE DiscardUndoState() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE DeactivateAndUndo() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE OnPosRectChange(LPCRECT position) override {
    Note(Numbers("OnPosRectChange", *position));
    if (!Has(SiteInterface::PosRectChange)) return E_NOTIMPL;
    const auto answer = container_.place ? container_.place(*position) : std::optional<RECT>(*position);
    if (!answer) return container_.pos_rect_answer;
    container_.position = *answer;
    if (const auto object = As<IOleInPlaceObject>(container_.Object()))
      object->SetObjectRects(&container_.position, &container_.clip);
    return container_.pos_rect_answer;
  }

  // IOleControlSite
  HRESULT STDMETHODCALLTYPE OnControlInfoChanged() override { return Note("OnControlInfoChanged"); }
  HRESULT STDMETHODCALLTYPE LockInPlaceActive(BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetExtendedControl(IDispatch** control) override {
    *control = ComPtr<IDispatch>(container_.extender).Detach();
    return *control ? S_OK : E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE TransformCoords(POINTL*, POINTF*, DWORD) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE TranslateAccelerator(MSG*, DWORD modifiers) override {
    Note("TranslateAccelerator(" + std::to_string(modifiers) + ")");
    return container_.accelerator_answer;
  }
  HRESULT STDMETHODCALLTYPE OnFocus(BOOL got) override { return Note(got ? "OnFocus" : "OnFocus(lost)"); }
  HRESULT STDMETHODCALLTYPE ShowPropertyFrame() override {
    Note("ShowPropertyFrame");
    return container_.property_frame_answer;
  }

  // IDispatch: the ambient properties
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* id) override {
    if (!container_.on_read || std::wstring(names[0]) != L"BackColor") return E_NOTIMPL;
    Read("member");
    *id = DISPID_AMBIENT_BACKCOLOR;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO*,
                                   UINT*) override {
    const AmbientValues& values = container_.ambients;
    Read("ambient " + std::to_string(id));
    VariantInit(result);
    switch (id) {
      case DISPID_AMBIENT_USERMODE:
        return GiveBool(values.user_mode, result);
      case DISPID_AMBIENT_UIDEAD:
        return GiveBool(values.ui_dead, result);
      case DISPID_AMBIENT_RIGHTTOLEFT:
        return GiveBool(values.right_to_left, result);
      case DISPID_AMBIENT_BACKCOLOR:
        return GiveNumber(values.back_color, result);
      case DISPID_AMBIENT_FORECOLOR:
        return GiveNumber(values.fore_color, result);
      case DISPID_AMBIENT_DISPLAYNAME:
        result->vt = VT_BSTR;
        result->bstrVal = SysAllocString(values.display_name.c_str());
        return S_OK;
      case DISPID_AMBIENT_FONT:
        if (!values.font) break;
        result->vt = VT_DISPATCH;
        result->pdispVal = values.font.Get();
        result->pdispVal->AddRef();
        return S_OK;
    }
    return DISP_E_MEMBERNOTFOUND;
  }

  // IOleContainer
  HRESULT STDMETHODCALLTYPE ParseDisplayName(IBindCtx*, LPOLESTR, ULONG*, IMoniker**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE EnumObjects(DWORD, IEnumUnknown**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE LockContainer(BOOL) override { return E_NOTIMPL; }

  FrameObject frame;

 private:
  bool Has(SiteInterface what) const { return container_.Has(what); }
  HRESULT Note(const std::string& call) {
    container_.Note(call);
    return S_OK;
  }
  void Read(const std::string& what) {
    if (container_.on_read) container_.on_read(what);
  }
  static HRESULT GiveBool(bool value, VARIANT* result) {
    result->vt = VT_BOOL;
    result->boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
    return S_OK;
  }
  static HRESULT GiveNumber(long value, VARIANT* result) {
    result->vt = VT_I4;
    result->lVal = value;
    return S_OK;
  }

  Container& container_;
};

// --- Container --------------------------------------------------------------------------------------------

Container::Container() {
  Server::Get();
  window_ = CreateContainerWindow();
  site_ = new SiteObject(*this);
}

Container::~Container() {
  on_call = nullptr;
  if (object_) Close();
  site_->frame.active.Reset();  // of a control that was dropped while it had the user interface
  DestroyWindow(window_);
  EXPECT_EQ(0u, site_->references) << "references to the site are left";
  EXPECT_EQ(0u, site_->frame.references) << "references to the frame are left";
  delete site_;
}

void Container::Host() {
  const ComPtr<IUnknown> control = CreateControl();
  const auto object = As<IOleObject>(control);
  ASSERT_TRUE(object);
  object_ = control;
  EXPECT_EQ(S_OK, object->SetClientSite(site_));
  EXPECT_EQ(S_OK, As<IPersistStreamInit>(control)->InitNew());
}

void Container::HostObject(ComPtr<IUnknown> object) {
  object_ = std::move(object);
  EXPECT_EQ(S_OK, As<IOleObject>(object_)->SetClientSite(site_));
}

HRESULT Container::Activate(LONG verb) {
  return As<IOleObject>(object_)->DoVerb(verb, nullptr, site_, 0, window_, &position);
}

void Container::NewWindow() { window_ = CreateContainerWindow(); }

void Container::Close() {
  const auto object = As<IOleObject>(object_);
  object->Close(OLECLOSE_NOSAVE);
  object->SetClientSite(nullptr);
  site_->frame.active.Reset();
  object_.Reset();
}

HWND Container::ControlWindow() const {
  HWND window = nullptr;
  if (const auto in_place = As<IOleInPlaceObject>(object_)) in_place->GetWindow(&window);
  return window;
}

IOleClientSite* Container::ClientSite() const { return site_; }
ULONG Container::SiteReferences() const { return site_->references; }

void Container::Note(const std::string& call) {
  log.push_back(call);
  if (on_call) on_call(call);
}

int Container::Count(const std::string& call) const {
  return static_cast<int>(std::count(log.begin(), log.end(), call));
}

// --- Sink -------------------------------------------------------------------------------------------------

class Sink::SinkObject final : public Counted<IDispatch, IPropertyNotifySink> {
 public:
  explicit SinkObject(Sink& sink) : sink_(sink) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    *object = nullptr;
    if (iid == __uuidof(IUnknown) || iid == __uuidof(IDispatch) || iid == kEventsId)
      return Give(static_cast<IDispatch*>(this), object);
    if (iid == __uuidof(IPropertyNotifySink)) return Give(static_cast<IPropertyNotifySink*>(this), object);
    return E_NOINTERFACE;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT*,
                                   EXCEPINFO*, UINT*) override {
    EXPECT_EQ(DISPATCH_METHOD, flags);
    sink_.arguments = parameters;
    sink_.Note(Describe(id, *parameters));
    sink_.arguments = nullptr;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE OnChanged(DISPID id) override {
    sink_.Note("Changed(" + std::to_string(id) + ")");
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE OnRequestEdit(DISPID) override { return S_OK; }

 private:
  static std::string Describe(DISPID id, const DISPPARAMS& parameters) {
    static const char* const kNames[] = {
        "?",           "Change",      "Click",           "DblClick",   "MouseDown",
        "MouseUp",     "MouseMove",   "MouseEnter",      "MouseLeave", "OLECompleteDrag",
        "OLEDragDrop", "OLEDragOver", "OLEGiveFeedback", "OLESetData", "OLEStartDrag"};
    std::string text = id > 0 && id <= 14 ? kNames[id] : "Event " + std::to_string(id);
    for (UINT i = 0; i < parameters.cArgs; ++i) {
      const VARIANTARG& argument = parameters.rgvarg[parameters.cArgs - 1 - i];
      text += i == 0 ? "(" : ",";
      if (argument.vt == (VT_I2 | VT_BYREF))
        text += std::to_string(*argument.piVal);
      else if (argument.vt == (VT_I4 | VT_BYREF))
        text += std::to_string(*argument.plVal);
      else if (argument.vt == (VT_BOOL | VT_BYREF))
        text += *argument.pboolVal ? "True" : "False";
      else if (argument.vt == (VT_DISPATCH | VT_BYREF))
        text += *argument.ppdispVal ? "Data" : "Nothing";
      else if (argument.vt == (VT_R4 | VT_BYREF))
        text += std::to_string(static_cast<long>(*argument.pfltVal));
      else
        text += "type " + std::to_string(argument.vt);
    }
    return parameters.cArgs ? text + ")" : text;
  }

  Sink& sink_;
};

Sink::Sink() : object_(new SinkObject(*this)) {}

Sink::~Sink() {
  on_event = nullptr;
  Disconnect();
  EXPECT_EQ(0u, object_->references) << "references to the sink are left";
  delete object_;
}

HRESULT Sink::Connect(IUnknown* control, const IID& iid) {
  const auto container = As<IConnectionPointContainer>(control);
  HRESULT result = container->FindConnectionPoint(iid, point_.ReleaseAndGetAddressOf());
  if (SUCCEEDED(result)) result = point_->Advise(Object(), &cookie_);
  return result;
}

HRESULT Sink::ConnectEvents(IUnknown* control) { return Connect(control, kEventsId); }
HRESULT Sink::ConnectChanges(IUnknown* control) { return Connect(control, __uuidof(IPropertyNotifySink)); }

void Sink::Disconnect() {
  if (const ComPtr<IConnectionPoint> point = std::move(point_)) point->Unadvise(cookie_);
  point_.Reset();
}

IUnknown* Sink::Object() const { return static_cast<IDispatch*>(object_); }
ULONG Sink::References() const { return object_->references; }

void Sink::Note(const std::string& event) {
  log.push_back(event);
  if (on_event) on_event(event);
}

}  // namespace ocx_test
