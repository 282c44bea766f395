// A form of a thousand controls in the system's own container, beside as many plain STATIC windows with the
// same text, and one control with the pointer coming in and leaving: form_bench SERVER IMAGES RESULTS.json.
// In place of IMAGES, "first" measures how long a program waits for its first control, which each process can
// do once.
#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "platform/win32/sdk_ole.h"
#include "support/gdi_handles.h"
#include "windows/report.h"

#include <psapi.h>

namespace {

using Microsoft::WRL::ComPtr;

constexpr int kCount = 1000, kColumns = 20, kWidth = 60, kHeight = 18;
constexpr int kRepetitions = 5;
constexpr wchar_t kText[] = L"Total: 12 of 40";
constexpr wchar_t kBareWindow[] = L"form_bench.Bare";
constexpr CLSID kClass = {0x2C94FDA3, 0xAB60, 0x4E3F, {0x85, 0xFD, 0xA5, 0xAE, 0xC6, 0x54, 0x3F, 0x3F}};
constexpr DISPID kCaption = -518, kBackColor = -501;
constexpr int kEntries = 200;

template <typename Function>
Function EntryOf(HMODULE library, const char* name) {
  const auto entry = reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
  Require(entry != nullptr, name);
  return entry;
}

// The server under test and the system's container.
struct Libraries {
  explicit Libraries(const wchar_t* server_path) {
    atl = LoadLibraryW(L"atl100.dll");
    Require(atl && EntryOf<BOOL(WINAPI*)()>(atl, "AtlAxWinInit")(), "no atl100.dll");
    attach = EntryOf<HRESULT(WINAPI*)(IUnknown*, HWND, IUnknown**)>(atl, "AtlAxAttachControl");
    path = server_path;
  }
  void LoadServer() {
    const HMODULE server = LoadLibraryW(path);
    Require(server != nullptr, "the server can't be loaded");
    const auto get = EntryOf<HRESULT(WINAPI*)(REFCLSID, REFIID, void**)>(server, "DllGetClassObject");
    Require(SUCCEEDED(get(kClass, IID_IClassFactory, reinterpret_cast<void**>(factory.GetAddressOf()))),
            "no class factory");
  }

  HMODULE atl;
  HRESULT(WINAPI* attach)(IUnknown*, HWND, IUnknown**);
  const wchar_t* path;
  ComPtr<IClassFactory> factory;
};

class Form {
 public:
  Form() {
    window_ = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, kColumns * kWidth,
                              kCount / kColumns * kHeight, nullptr, nullptr, nullptr, nullptr);
    ShowWindow(window_, SW_SHOWNOACTIVATE);
    Pump();
  }
  ~Form() {
    DestroyWindow(window_);
    Pump();
  }
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;

  HWND Add(const wchar_t* window_class, const wchar_t* text) {
    const int place = count_++;
    const HWND window =
        CreateWindowExW(0, window_class, text, WS_CHILD | WS_VISIBLE, place % kColumns * kWidth,
                        place / kColumns * kHeight, kWidth, kHeight, window_, nullptr, nullptr, nullptr);
    Require(window != nullptr, "a window can't be made");
    return window;
  }
  void Paint() { RedrawWindow(window_, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN); }
  void Repaint() {
    RedrawWindow(window_, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
  }

  // The same for windows alone, without what holds them.
  static void Repaint(const std::vector<HWND>& windows) {
    for (const HWND window : windows)
      RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
  }

  // The innermost window of each place.
  std::vector<HWND> Innermost() const {
    std::vector<HWND> windows;
    for (HWND window = GetWindow(window_, GW_CHILD); window; window = GetWindow(window, GW_HWNDNEXT)) {
      const HWND inner = GetWindow(window, GW_CHILD);
      windows.push_back(inner ? inner : window);
    }
    return windows;
  }

  static void Pump() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
  }

 private:
  HWND window_;
  int count_ = 0;
};

// The least that a window does: it paints nothing, in the proper order.
LRESULT CALLBACK BareProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == WM_ERASEBKGND) return 1;
  if (message != WM_PAINT) return DefWindowProcW(window, message, wparam, lparam);
  PAINTSTRUCT paint;
  BeginPaint(window, &paint);
  EndPaint(window, &paint);
  return 0;
}

void RegisterBareWindow() {
  WNDCLASSW description = {};
  description.lpfnWndProc = BareProcedure;
  description.lpszClassName = kBareWindow;
  Require(RegisterClassW(&description) != 0, "no class for bare windows");
}

// A container with a bare window where a control would be: what any control with a window costs there.
void AddBareWindow(Form& form) {
  const HWND host = form.Add(L"AtlAxWin100", nullptr);
  Require(CreateWindowExW(0, kBareWindow, kText, WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS, 0, 0, kWidth,
                          kHeight, host, nullptr, nullptr, nullptr) != nullptr,
          "a window can't be made");
}

ComPtr<IDispatch> NewControl(Libraries& libraries) {
  ComPtr<IDispatch> control;
  Require(SUCCEEDED(libraries.factory->CreateInstance(nullptr, IID_IDispatch,
                                                      reinterpret_cast<void**>(control.GetAddressOf()))),
          "no control");
  return control;
}

DISPID IdOf(IDispatch& control, const wchar_t* name) {
  LPOLESTR names = const_cast<LPOLESTR>(name);
  DISPID id = DISPID_UNKNOWN;
  Require(SUCCEEDED(control.GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id)), "no such member");
  return id;
}

void Put(IDispatch& control, DISPID id, VARIANTARG value) {
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS parameters = {&value, &put, 1, 1};
  Require(SUCCEEDED(control.Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYPUT, &parameters,
                                   nullptr, nullptr, nullptr)),
          "a property can't be set");
  VariantClear(&value);
}

VARIANTARG Text(const std::wstring& text) {
  VARIANTARG value;
  VariantInit(&value);
  value.vt = VT_BSTR;
  value.bstrVal = SysAllocString(text.c_str());
  return value;
}

VARIANTARG Number(LONG number) {
  VARIANTARG value;
  VariantInit(&value);
  value.vt = VT_I4;
  value.lVal = number;
  return value;
}

void LoadImageFile(IDispatch& control, const std::wstring& file, const std::wstring& key) {
  VARIANTARG arguments[] = {Text(key), Text(file)};  // last to first
  VARIANT loaded;
  VariantInit(&loaded);
  DISPPARAMS parameters = {arguments, nullptr, 2, 0};
  control.Invoke(IdOf(control, L"LoadIconImageFromFile"), IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                 &parameters, &loaded, nullptr, nullptr);
  for (VARIANTARG& argument : arguments) VariantClear(&argument);
  Require(loaded.vt == VT_BOOL && loaded.boolVal != VARIANT_FALSE, "an image can't be loaded");
}

ComPtr<IDispatch> AddControl(Libraries& libraries, Form& form) {
  const HWND host = form.Add(L"AtlAxWin100", nullptr);
  ComPtr<IDispatch> control = NewControl(libraries);
  ComPtr<IPersistStreamInit> persist;
  control.As(&persist);
  persist->InitNew();
  Put(*control.Get(), kCaption, Text(kText));
  ComPtr<IUnknown> container;
  Require(SUCCEEDED(libraries.attach(control.Get(), host, container.GetAddressOf())), "not attached");
  return control;
}

struct Footprint {
  double bytes, gdi;
  static Footprint Take() {
    PROCESS_MEMORY_COUNTERS memory = {};
    memory.cb = sizeof memory;
    GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof memory);
    return {static_cast<double>(memory.PagefileUsage), static_cast<double>(marklet::CountGdiHandles())};
  }
};

void AddFootprint(Report& report, const std::string& name, const Footprint& before, const Footprint& after) {
  char counters[160];
  std::snprintf(counters, sizeof counters, ", \"bytes\": %.0f, \"gdi\": %.3f",
                (after.bytes - before.bytes) / kCount, (after.gdi - before.gdi) / kCount);
  report.Add(name, 0, counters);
}

// `add` adds one window, with what it holds, to a form.
template <typename Add>
void MeasureWindows(Report& report, const std::string& name, Add add) {
  const Footprint before = Footprint::Take();
  Form form;
  report.Add("form/" + name + "/show", TimeOf([&] {
               for (int i = 0; i < kCount; ++i) add(form);
               form.Paint();
             }));
  report.Add("form/" + name + "/repaint", TimeOf([&] { form.Repaint(); }));
  report.Add("form/" + name + "/repaint-each",
             TimeOf([&, windows = form.Innermost()] { Form::Repaint(windows); }));
  AddFootprint(report, "form/" + name + "/footprint", before, Footprint::Take());
}

void MeasureControls(Report& report, Libraries& libraries) {
  const Footprint before = Footprint::Take();
  Form form;
  std::vector<ComPtr<IDispatch>> controls;
  report.Add("form/marklet/show", TimeOf([&] {
               for (int i = 0; i < kCount; ++i) controls.push_back(AddControl(libraries, form));
               form.Paint();
             }));
  report.Add("form/marklet/repaint", TimeOf([&] { form.Repaint(); }));
  report.Add("form/marklet/repaint-each",
             TimeOf([&, windows = form.Innermost()] { Form::Repaint(windows); }));
  AddFootprint(report, "form/marklet/footprint", before, Footprint::Take());

  ComPtr<IStream> stream;
  CreateStreamOnHGlobal(nullptr, TRUE, stream.GetAddressOf());
  report.Add("form/marklet/save", TimeOf([&] {
               for (const auto& control : controls) {
                 ComPtr<IPersistStreamInit> persist;
                 control.As(&persist);
                 Require(SUCCEEDED(persist->Save(stream.Get(), TRUE)), "not saved");
               }
             }));
  stream->Seek({}, STREAM_SEEK_SET, nullptr);
  report.Add("form/marklet/load", TimeOf([&] {
               for (int i = 0; i < kCount; ++i) {
                 ComPtr<IPersistStreamInit> persist;
                 NewControl(libraries).As(&persist);
                 Require(SUCCEEDED(persist->Load(stream.Get())), "not loaded");
               }
             }));
}

// A loaded control, which hears that the pointer leaves. When the call of a message is over, the picture that
// belongs to it is on the screen.
void MeasureHover(Report& report, Libraries& libraries, const std::wstring& images) {
  Form form;
  ComPtr<IStream> stream;
  CreateStreamOnHGlobal(nullptr, TRUE, stream.GetAddressOf());
  const ComPtr<IDispatch> control = NewControl(libraries);
  ComPtr<IPersistStreamInit> empty, persist;
  NewControl(libraries).As(&empty);
  control.As(&persist);
  empty->InitNew();
  empty->Save(stream.Get(), TRUE);
  stream->Seek({}, STREAM_SEEK_SET, nullptr);
  Require(SUCCEEDED(persist->Load(stream.Get())), "not loaded");
  Put(*control.Get(), kCaption, Text(kText));
  LoadImageFile(*control.Get(), images + L"\\lamp.png", L"lamp");
  LoadImageFile(*control.Get(), images + L"\\lamp-lit.png", L"lit");
  Put(*control.Get(), IdOf(*control.Get(), L"ImageKey"), Text(L"lamp"));
  Put(*control.Get(), IdOf(*control.Get(), L"ImageKeyhover"), Text(L"lit"));
  const HWND host = form.Add(L"AtlAxWin100", nullptr);
  ComPtr<IUnknown> container;
  Require(SUCCEEDED(libraries.attach(control.Get(), host, container.GetAddressOf())), "not attached");
  form.Paint();
  const HWND window = GetWindow(host, GW_CHILD);
  Require(SendMessageW(window, WM_ERASEBKGND, 0, 0) == -1, "not subclassed");
  for (int i = 0; i < kEntries; ++i) {
    report.Add("hover/entry", TimeOf([&] { SendMessageW(window, WM_MOUSEMOVE, 0, MAKELPARAM(5, 5)); }));
    report.Add("hover/leave", TimeOf([&] { SendMessageW(window, WM_MOUSELEAVE, 0, 0); }));
    report.Add("hover/redraw", TimeOf([&] { Put(*control.Get(), kBackColor, Number(0x204060 + i)); }));
  }
}

void MeasureFirst(Report& report, Libraries& libraries) {
  Form form;
  report.Add("form/first", TimeOf([&] {
               libraries.LoadServer();
               AddControl(libraries, form);
               form.Paint();
             }));
}

void MeasureAll(Report& report, Libraries& libraries, const std::wstring& images) {
  libraries.LoadServer();
  RegisterBareWindow();
  // Taken in turn, so that a busy moment of the machine hits them alike.
  for (int i = 0; i < kRepetitions; ++i) {
    MeasureWindows(report, "static", [](Form& form) { form.Add(L"STATIC", kText); });
    MeasureWindows(report, "container", [](Form& form) { form.Add(L"AtlAxWin100", nullptr); });
    MeasureWindows(report, "bare", AddBareWindow);
    MeasureControls(report, libraries);
  }
  MeasureHover(report, libraries, images);
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
  Require(count == 4, "form_bench SERVER IMAGES|first RESULTS.json");
  OleInitialize(nullptr);
  Libraries libraries(arguments[1]);
  Report report;
  const std::wstring what = arguments[2];
  what == L"first" ? MeasureFirst(report, libraries) : MeasureAll(report, libraries, what);
  Require(report.Write(arguments[3]), "the results can't be written");
  return 0;
}
