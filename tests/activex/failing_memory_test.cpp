// A server that runs out of memory says so, goes on, and leaves nothing behind.
#include "activex/failing_memory.h"
#include "activex/container.h"
#include "activex/saving.h"
#include "support/gdi_handles.h"

namespace ocx_test {
namespace {

// A life whose steps may all fail; what there is afterwards is taken away in the usual order.
void LiveAsFarAsPossible(Container& container) {
  ComPtr<IClassFactory> factory;
  ComPtr<IUnknown> control;
  if (FAILED(Server::Get().GetClassObject(kClassId, IID_PPV_ARGS(factory.GetAddressOf())))) return;
  if (FAILED(factory->CreateInstance(nullptr, IID_PPV_ARGS(control.GetAddressOf())))) return;
  container.HostObject(control);
  As<IPersistStreamInit>(control)->InitNew();
  const auto object = As<IDispatch>(control);
  Sink events;
  events.ConnectEvents(control.Get());
  PutByName(object.Get(), L"Caption", Variant(L"&A <b>bold</b> <f=DejaVu Serif>face</f> and more"));
  container.Activate(OLEIVERB_UIACTIVATE);
  PutByName(object.Get(), L"TextEffect", Variant(2));
  PutByName(object.Get(), L"FontSize", Variant(13));
  PutByName(object.Get(), L"AutoSize", Variant::Bool(true));
  Variant font, text;
  GetByName(object.Get(), L"Font", font);
  GetByName(object.Get(), L"Caption", text);
  if (const HWND window = container.ControlWindow()) {
    UpdateWindow(window);
    SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(2, 2));
    SendMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(2, 2));
  }
  const HDC dc = CreateCompatibleDC(nullptr);
  const RECTL bounds = {0, 0, 10, 10};
  As<IViewObject>(control)->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, dc, &bounds, nullptr,
                                 nullptr, 0);
  DeleteDC(dc);
  CAUUID pages = {};
  As<ISpecifyPropertyPages>(control)->GetPages(&pages);
  CoTaskMemFree(pages.pElems);
  CALPOLESTR names = {};
  CADWORD cookies = {};
  As<IPerPropertyBrowsing>(control)->GetPredefinedStrings(IdOf(object.Get(), L"TextEffect"), &names,
                                                          &cookies);
  for (ULONG i = 0; i < names.cElems; ++i) CoTaskMemFree(names.pElems[i]);
  CoTaskMemFree(names.pElems);
  CoTaskMemFree(cookies.pElems);
  CONTROLINFO info = {};
  info.cb = sizeof info;
  As<IOleControl>(control)->GetControlInfo(&info);
}

// Makes an attempt with the first allocation failing, then one with the second, until nothing fails any more.
// An attempt is handed what runs its crucial step. Returns how many were made.
template <typename Attempt>
int FailEach(bool and_on, Attempt attempt) {
  FailingMemory memory;
  int number = 0;
  do {
    ++number;
    SCOPED_TRACE("allocation " + std::to_string(number));
    attempt([&](auto step) {
      memory.FailAt(number, and_on);
      const HRESULT result = step();
      memory.Stop();
      return result;
    });
  } while (memory.HasFailed() && !::testing::Test::HasFatalFailure());
  return number;
}

// The compiler's runtime ends the program when there is no memory for a thread's first exception.
void WarmUp() {
  for (const int number : {0, 1}) {
    FailingMemory memory;
    Container container;
    memory.FailAt(number, false);
    LiveAsFarAsPossible(container);
    memory.Stop();
  }
}

// The container checks that nobody holds it in the end.
void LiveWhileEachFails(bool and_on) {
  WarmUp();
  const int handles = marklet::CountGdiHandles();
  const int lives = FailEach(and_on, [](auto run) {
    Container container;
    run([&] {
      LiveAsFarAsPossible(container);
      return S_OK;
    });
    if (container.Object()) container.Close();
    ASSERT_EQ(S_OK, Server::Get().CanUnloadNow());
  });
  EXPECT_GT(lives, 100) << "hardly anything was tried";
  EXPECT_GE(handles + 10, marklet::CountGdiHandles()) << "other fonts may be kept now";
}

TEST(FailingMemory, OneAllocationMayFailAnywhere) { LiveWhileEachFails(false); }
TEST(FailingMemory, AllocationsMayKeepFailing) { LiveWhileEachFails(true); }

// A save that says it worked has everything.
TEST(FailingMemory, ASaveIsWholeOrFails) {
  const ComPtr<IUnknown> control = ControlOf(SavedForm());
  const auto persist = As<IPersistStreamInit>(control);
  int failures = 0;
  FailEach(false, [&](auto run) {
    MemoryStream stream;
    stream.bytes.reserve(SavedForm().size());
    const HRESULT result = run([&] { return persist->Save(&stream, FALSE); });
    failures += FAILED(result);
    if (SUCCEEDED(result)) {
      EXPECT_EQ(SavedForm(), stream.bytes);
    }
  });
  EXPECT_GT(failures, 10);
}

// A load that says it worked has everything; another leaves a control that is dirty and may be started anew.
template <typename Load>
void LoadWhileEachFails(const Bytes& whole, Load load) {
  int failures = 0;
  FailEach(false, [&](auto run) {
    const ComPtr<IUnknown> control = CreateControl();
    const HRESULT result = run([&] { return load(control.Get()); });
    if (SUCCEEDED(result)) {
      EXPECT_EQ(whole, SaveToStream(control.Get()));
      return;
    }
    ++failures;
    EXPECT_EQ(E_OUTOFMEMORY, result);
    EXPECT_EQ(S_OK, As<IPersistStreamInit>(control)->InitNew());
  });
  EXPECT_GT(failures, 30);
}

TEST(FailingMemory, ALoadFromAStreamIsWholeOrFails) {
  const Bytes form = SavedForm();
  LoadWhileEachFails(form, [&](IUnknown* control) { return LoadFromStream(control, form); });
}

TEST(FailingMemory, ALoadFromABagIsWholeOrFails) {
  MemoryBag bag;
  const ComPtr<IUnknown> saved = CreateControl();
  ASSERT_EQ(S_OK, SaveToBag(ControlOf(SavedForm()).Get(), bag));
  ASSERT_EQ(S_OK, LoadFromBag(saved.Get(), bag));
  LoadWhileEachFails(SaveToStream(saved.Get()), [&](IUnknown* control) { return LoadFromBag(control, bag); });
}

TEST(FailingMemory, AStartIsWholeOrFails) {
  Container container;
  container.ambients.display_name = L"A name that is too long for a string without memory of its own";
  const Variant font = NewFont(L"Tahoma", 140000, true);
  container.ambients.font = font.pdispVal;
  container.Host();
  const Bytes whole = SaveToStream(container.Object());
  container.Close();
  int failures = 0;
  FailEach(false, [&](auto run) {
    container.HostObject(CreateControl());
    const auto persist = As<IPersistStreamInit>(container.Object());
    const HRESULT result = run([&] { return persist->InitNew(); });
    failures += FAILED(result);
    EXPECT_EQ(FAILED(result) ? E_OUTOFMEMORY : S_OK, result);
    if (SUCCEEDED(result)) {
      EXPECT_EQ(whole, SaveToStream(container.Object()));
    }
    EXPECT_EQ(S_OK, persist->InitNew());
    EXPECT_EQ(whole, SaveToStream(container.Object())) << "it may be started again";
    container.Close();
  });
  EXPECT_GT(failures, 3);
}

// --- What the caller hears --------------------------------------------------------------------------------

TEST(FailureReports, ALateCallThatFailsIsAnExceptionWithSourceAndDescription) {
  Container container;
  container.Host();
  const auto object = container.Dispatch();
  const DISPID caption = IdOf(object.Get(), L"Caption");
  FailingMemory memory;
  DISPPARAMS none = {};
  EXCEPINFO exception = {};
  Variant result;
  memory.FailAt(1, false);
  const HRESULT code = object->Invoke(caption, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none,
                                      &result, &exception, nullptr);
  memory.Stop();
  EXPECT_EQ(DISP_E_EXCEPTION, code);
  EXPECT_EQ(E_OUTOFMEMORY, exception.scode);
  EXPECT_STREQ(L"zvsMarklet.Marklet", exception.bstrSource);
  EXPECT_GT(SysStringLen(exception.bstrDescription), 0u);
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrDescription);
}

struct ErrorText {
  std::wstring source, description;
  GUID guid = {};
};

ErrorText TakeErrorInfo() {
  ErrorText text;
  ComPtr<IErrorInfo> info;
  if (GetErrorInfo(0, info.GetAddressOf()) != S_OK) return text;
  Variant source, description;
  source.vt = description.vt = VT_BSTR;
  source.bstrVal = description.bstrVal = nullptr;
  info->GetSource(&source.bstrVal);
  info->GetDescription(&description.bstrVal);
  info->GetGUID(&text.guid);
  text.source = source.Text();
  text.description = description.Text();
  return text;
}

// The slot after those of IDispatch: get AutoSize. Further down: get Caption.
TEST(FailureReports, AnEarlyCallThatFailsLeavesAnErrorObject) {
  Container container;
  container.Host();
  ComPtr<IUnknown> dual;
  ASSERT_EQ(S_OK,
            container.Object()->QueryInterface(kDispatchId, reinterpret_cast<void**>(dual.GetAddressOf())));
  using GetText = HRESULT(STDMETHODCALLTYPE*)(IUnknown*, BSTR*);
  // AutoSize, BackColor, BackStyle, Appearance and BorderStyle have two slots each.
  constexpr int kGetCaption = 7 + 5 * 2;
  const auto get = reinterpret_cast<GetText>((*reinterpret_cast<void***>(dual.Get()))[kGetCaption]);
  BSTR text = nullptr;
  ASSERT_EQ(S_OK, get(dual.Get(), &text));
  SysFreeString(text);
  text = nullptr;
  TakeErrorInfo();
  FailingMemory memory;
  memory.FailAt(1, false);
  const HRESULT code = get(dual.Get(), &text);
  memory.Stop();
  EXPECT_EQ(E_OUTOFMEMORY, code);
  EXPECT_EQ(nullptr, text);
  const ErrorText error = TakeErrorInfo();
  EXPECT_EQ(L"zvsMarklet.Marklet", error.source);
  EXPECT_NE(L"", error.description);
  EXPECT_EQ(kDispatchId, error.guid);
}

TEST(FailureReports, AWrongCallLeavesAnErrorObjectToo) {
  Container container;
  container.Host();
  TakeErrorInfo();
  EXPECT_EQ(DISP_E_TYPEMISMATCH, PutByName(container.Dispatch().Get(), L"TextEffect", Variant(L"no number")));
  EXPECT_EQ(L"zvsMarklet.Marklet", TakeErrorInfo().source);
}

TEST(FailureReports, ACallThatSucceedsLeavesNone) {
  Container container;
  container.Host();
  TakeErrorInfo();
  PutNumber(container.Dispatch().Get(), L"TextEffect", 3);
  EXPECT_EQ(L"", TakeErrorInfo().source);
}

// Out of sight, with the caption for its title; nobody but who looks for it sees it.
TEST(FailingMemory, SubclassingThatFailsHalfWayLeavesAProxyWindow) {
  int proxies = 0;
  FailEach(false, [&](auto run) {
    Container container;
    container.HostObject(CreateControl());
    ASSERT_EQ(S_OK, container.Activate());
    const HWND window = container.ControlWindow();
    MemoryBag bag;
    bag.Put(L"Caption", Variant(L"title"));
    run([&] { return LoadFromBag(container.Object(), bag); });
    const HWND proxy = FindWindowExW(window, nullptr, L"Static", nullptr);
    if (!proxy) return;
    ++proxies;
    wchar_t title[20] = {};
    GetWindowTextW(proxy, title, 20);
    EXPECT_STREQ(L"title", title);
    EXPECT_EQ(4096, GetDlgCtrlID(proxy));
    EXPECT_EQ(0x50000000, GetWindowLongW(proxy, GWL_STYLE));
    RECT place = {};
    GetWindowRect(proxy, &place);
    MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&place), 2);
    const RECT expected = {-1000, -1000, -995, -995};
    EXPECT_TRUE(EqualRect(&expected, &place)) << place.left << ' ' << place.top << ' ' << place.right;
    container.Close();
    EXPECT_FALSE(IsWindow(proxy));
  });
  EXPECT_GT(proxies, 0);
}

}  // namespace
}  // namespace ocx_test
