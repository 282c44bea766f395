#include "activex/form.h"

#include <algorithm>
#include <iterator>

namespace ocx_test {
namespace {

// A member's number is its place in the map, above this.
constexpr DISPID kFirstMember = 100, kCount = 50;

std::string Lower(const wchar_t* name) {
  std::string result;
  for (; *name; ++name) result += static_cast<char>(*name >= L'A' && *name <= L'Z' ? *name + 32 : *name);
  return result;
}

// The names as they are logged.
std::string Spelt(const std::string& lower) {
  for (const char* name : {"AutoRedraw", "ScaleMode", "Container", "Controls", "Left", "Top", "BackColor"}) {
    std::string folded(name);
    std::transform(folded.begin(), folded.end(), folded.begin(),
                   [](char ch) { return static_cast<char>(ch >= 'A' && ch <= 'Z' ? ch + 32 : ch); });
    if (folded == lower) return name;
  }
  return lower;
}

class ItemEnumerator final : public IEnumVARIANT {
 public:
  explicit ItemEnumerator(ComPtr<LateObject> collection) : collection_(std::move(collection)) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    *object = nullptr;
    if (iid != __uuidof(IUnknown) && iid != __uuidof(IEnumVARIANT)) return E_NOINTERFACE;
    *object = this;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }
  HRESULT STDMETHODCALLTYPE Next(ULONG, VARIANT* item, ULONG* fetched) override {
    if (fetched) *fetched = 0;
    if (next_ == collection_->items.size()) return S_FALSE;
    item->vt = VT_DISPATCH;
    item->pdispVal = collection_->Item(next_++).Detach();
    if (fetched) *fetched = 1;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Skip(ULONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Reset() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT**) override { return E_NOTIMPL; }

 private:
  ~ItemEnumerator() = default;
  ULONG references_ = 0;
  std::size_t next_ = 0;
  ComPtr<LateObject> collection_;
};

HDC NewSurface(int width, int height, DWORD*& pixels) {
  BITMAPINFO info = {};
  info.bmiHeader = {sizeof info.bmiHeader, width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  void* bits = nullptr;
  const HDC dc = CreateCompatibleDC(nullptr);
  SelectObject(dc, CreateDIBSection(dc, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
  pixels = static_cast<DWORD*>(bits);
  return dc;
}

void DeleteSurface(HDC dc) {
  const HGDIOBJ bitmap = GetCurrentObject(dc, OBJ_BITMAP);
  DeleteDC(dc);
  DeleteObject(bitmap);
}

// The system's own function takes what it copies as if it could change it.
HRESULT Copy(VARIANT& to, const VARIANT& from) { return VariantCopy(&to, const_cast<VARIANT*>(&from)); }

Variant Handle(const void* handle) { return Variant(static_cast<int>(reinterpret_cast<LONG_PTR>(handle))); }

}  // namespace

// --- LateObject -------------------------------------------------------------------------------------------

ComPtr<LateObject> LateObject::Make(const char* name, Log& log) { return new LateObject(name, log); }

HRESULT LateObject::QueryInterface(REFIID iid, void** object) {
  *object = nullptr;
  if (iid == __uuidof(IUnknown) || iid == __uuidof(IDispatch))
    *object = static_cast<IDispatch*>(this);
  else if (iid == __uuidof(IOleContainer) || iid == __uuidof(IParseDisplayName))
    *object = static_cast<IOleContainer*>(this);
  else
    return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

ULONG LateObject::Release() {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

HRESULT LateObject::GetTypeInfoCount(UINT* count) {
  *count = 0;
  return S_OK;
}

HRESULT LateObject::Use(const std::string& what) {
  log_.push_back(name_ + what);
  if (on_use) on_use(name_ + what);
  return S_OK;
}

HRESULT LateObject::GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* id) {
  const std::string name = Lower(names[0]);
  *id = DISPID_UNKNOWN;
  if (name == "count" && !items.empty()) *id = kCount;
  const auto found = members.find(name);
  if (found != members.end()) *id = kFirstMember + static_cast<DISPID>(std::distance(members.begin(), found));
  return *id == DISPID_UNKNOWN ? DISP_E_UNKNOWNNAME : S_OK;
}

HRESULT LateObject::Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                           EXCEPINFO*, UINT*) {
  if (id == DISPID_NEWENUM) {
    if (!has_enumerator) return DISP_E_MEMBERNOTFOUND;
    result->vt = VT_UNKNOWN;
    result->punkVal = new ItemEnumerator(this);
    result->punkVal->AddRef();
    return S_OK;
  }
  if (id == kCount) {
    result->vt = VT_I4;
    result->lVal = static_cast<LONG>(items.size());
    return S_OK;
  }
  if (id == DISPID_VALUE && parameters->cArgs == 1) {
    const auto at = static_cast<std::size_t>(parameters->rgvarg[0].lVal);
    if (at >= items.size()) return DISP_E_BADINDEX;
    result->vt = VT_DISPATCH;
    result->pdispVal = Item(at).Detach();
    return S_OK;
  }
  if (id < kFirstMember || id >= kFirstMember + static_cast<DISPID>(members.size()))
    return DISP_E_MEMBERNOTFOUND;
  const auto& [name, member] = *std::next(members.begin(), id - kFirstMember);
  // Members may come and go inside.
  const LateMember held = member;
  const std::string use = "." + Spelt(name);
  if (flags & DISPATCH_PROPERTYPUT) {
    EXPECT_EQ(VT_BOOL, parameters->rgvarg[0].vt);
    Use(use + (parameters->rgvarg[0].boolVal ? "=1" : "=0"));
    return held.put ? held.put(parameters->rgvarg[0]) : DISP_E_MEMBERNOTFOUND;
  }
  Use(use);
  return held.get(*result);
}

ComPtr<IDispatch> LateObject::Item(std::size_t at) {
  Use("[" + std::to_string(at) + "]");
  return items[at]->Dispatch();
}

void LateObject::Put(const char* name, const VARIANT& value) {
  const auto kept = std::make_shared<Variant>();
  Copy(*kept, value);
  std::wstring wide(name, name + std::char_traits<char>::length(name));
  members[Lower(wide.c_str())] = {[kept](VARIANT& result) { return Copy(result, *kept); }, nullptr};
}

// --- Form -------------------------------------------------------------------------------------------------

DWORD Form::ColourAt(int x, int y) {
  return static_cast<DWORD>(x & 255) << 16 | static_cast<DWORD>(y & 255) << 8 |
         static_cast<DWORD>((x >> 8 & 15) << 4 | (y >> 8 & 15));
}

Form::Form(Container& container)
    : form(LateObject::Make("form", log)),
      controls(LateObject::Make("controls", log)),
      frame(LateObject::Make("frame", log)),
      label(LateObject::Make("label", log)),
      extender(LateObject::Make("extender", log)),
      container_(container) {
  frame_window_ = CreateWindowExW(0, L"Static", L"", WS_CHILD | WS_VISIBLE, 0, 0, 300, 200,
                                  container.Window(), nullptr, nullptr, nullptr);
  DWORD* pixels = nullptr;
  screen_ = NewSurface(kWidth, kHeight, pixels);
  picture_ = NewSurface(kWidth, kHeight, pixels);
  for (int y = 0; y < kHeight; ++y)
    for (int x = 0; x < kWidth; ++x) pixels[y * kWidth + x] = ColourAt(x, y);
  Surface(*form.Get(), container.Window(), form_redraws);
  Surface(*frame.Get(), frame_window_, frame_redraws);
  controls->items = {label, frame};
  form->Put("Controls", Variant(controls->Dispatch()));
  form->Put("BackColor", Variant(0x00AABBCC));
  extender->Put("Container", Variant(form->Dispatch()));
  PutAt(0, 0);
  container.form = form->Container();
  container.extender = extender->Dispatch();
}

Form::~Form() {
  container_.form.Reset();
  container_.extender.Reset();
  // They hold each other.
  for (LateObject* object : {form.Get(), controls.Get(), frame.Get(), extender.Get()}) {
    object->members.clear();
    object->items.clear();
  }
  DeleteSurface(picture_);
  DeleteSurface(screen_);
  DestroyWindow(frame_window_);
}

// While AutoRedraw is off the context is the screen's.
void Form::Surface(LateObject& object, HWND window, bool& redraws) {
  object.Put("hwnd", Handle(window));
  object.Put("ScaleMode", Variant(3));
  object.members["autoredraw"] = {[&redraws](VARIANT& result) {
                                    result.vt = VT_BOOL;
                                    result.boolVal = redraws ? VARIANT_TRUE : VARIANT_FALSE;
                                    return S_OK;
                                  },
                                  [&redraws](const VARIANT& value) {
                                    redraws = value.boolVal != VARIANT_FALSE;
                                    return S_OK;
                                  }};
  object.members["hdc"] = {[this, &redraws](VARIANT& result) {
                             const Variant handle = Handle(redraws ? picture_ : screen_);
                             return Copy(result, handle);
                           },
                           nullptr};
}

void Form::ScaleMode(int mode) { form->Put("ScaleMode", Variant(mode)); }

void Form::PutAt(const VARIANT& left, const VARIANT& top) {
  extender->Put("Left", left);
  extender->Put("Top", top);
}

void Form::UseFrame() {
  container_.frame_window = frame_window_;
  extender->Put("Container", Variant(frame->Dispatch()));
}

}  // namespace ocx_test
