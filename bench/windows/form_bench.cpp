// A form of a thousand controls in the system's own container, beside as many plain STATIC windows with the
// same text: form_bench SERVER RESULTS.json.
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
constexpr CLSID kClass = {0x2C94FDA3, 0xAB60, 0x4E3F, {0x85, 0xFD, 0xA5, 0xAE, 0xC6, 0x54, 0x3F, 0x3F}};
constexpr DISPID kCaption = -518;

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

  static void Pump() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
  }

 private:
  HWND window_;
  int count_ = 0;
};

ComPtr<IDispatch> NewControl(Libraries& libraries) {
  ComPtr<IDispatch> control;
  Require(SUCCEEDED(libraries.factory->CreateInstance(nullptr, IID_IDispatch,
                                                      reinterpret_cast<void**>(control.GetAddressOf()))),
          "no control");
  return control;
}

void PutCaption(IDispatch& control) {
  VARIANTARG text;
  VariantInit(&text);
  text.vt = VT_BSTR;
  text.bstrVal = SysAllocString(kText);
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS parameters = {&text, &put, 1, 1};
  control.Invoke(kCaption, IID_NULL, 0, DISPATCH_PROPERTYPUT, &parameters, nullptr, nullptr, nullptr);
  VariantClear(&text);
}

ComPtr<IDispatch> AddControl(Libraries& libraries, Form& form) {
  const HWND host = form.Add(L"AtlAxWin100", nullptr);
  ComPtr<IDispatch> control = NewControl(libraries);
  ComPtr<IPersistStreamInit> persist;
  control.As(&persist);
  persist->InitNew();
  PutCaption(*control.Get());
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

void MeasureWindows(Report& report, const std::string& name, const wchar_t* window_class,
                    const wchar_t* text) {
  const Footprint before = Footprint::Take();
  Form form;
  report.Add("form/" + name + "/show", TimeOf([&] {
               for (int i = 0; i < kCount; ++i) form.Add(window_class, text);
               form.Paint();
             }));
  report.Add("form/" + name + "/repaint", TimeOf([&] { form.Repaint(); }));
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

}  // namespace

int wmain(int count, wchar_t** arguments) {
  Require(count == 3, "form_bench SERVER RESULTS.json");
  OleInitialize(nullptr);
  Libraries libraries(arguments[1]);
  Report report;
  {
    Form form;
    report.Add("form/first", TimeOf([&] {
                 libraries.LoadServer();
                 AddControl(libraries, form);
                 form.Paint();
               }));
  }
  // Taken in turn, so that a busy moment of the machine hits them alike.
  for (int i = 0; i < kRepetitions; ++i) {
    MeasureWindows(report, "static", L"STATIC", kText);
    MeasureWindows(report, "container", L"AtlAxWin100", nullptr);
    MeasureControls(report, libraries);
  }
  Require(report.Write(arguments[2]), "the results can't be written");
  return 0;
}
