// What subclassing adds to a message: subclass_bench RESULTS.json. The same window procedure is called bare,
// with a thunk that has the message in neither table or in both, and subclassed by the system's own means.
#include <array>
#include <string>

#include "plumbing/csubclass_asm.h"
#include "windows/report.h"

namespace {

using marklet::Long;
using namespace marklet::plumbing;

constexpr int kRepetitions = 25, kMessages = 20000;
constexpr UINT kMessage = WM_USER + 1;
constexpr const char* kBits = sizeof(void*) == 8 ? "64" : "32";

LRESULT CALLBACK Procedure(::HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  return message == kMessage ? static_cast<LRESULT>(wparam)
                             : ::DefWindowProcW(window, message, wparam, lparam);
}

::HWND NewWindow() {
  WNDCLASSW description = {};
  description.lpfnWndProc = Procedure;
  description.hInstance = ::GetModuleHandleW(nullptr);
  description.lpszClassName = L"marklet.SubclassBench";
  ::RegisterClassW(&description);
  const ::HWND window = ::CreateWindowExW(0, description.lpszClassName, L"", WS_POPUP, 0, 0, 10, 10, nullptr,
                                          nullptr, description.hInstance, nullptr);
  Require(window != nullptr, "a window can't be made");
  return window;
}

class Nothing : public CallbackObject {
 public:
  Nothing() : CallbackObject(kMethods) {}

 private:
  void OnMessage(SubclassCall&) {}
  static inline const Method kMethods[] = {MethodOf<&Nothing::OnMessage>()};
};

// The common controls' subclassing, which is there by number on every system.
using SubclassProcedure = LRESULT(CALLBACK*)(::HWND, UINT, WPARAM, LPARAM, UINT_PTR, DWORD_PTR);
using SetWindowSubclassType = BOOL(WINAPI*)(::HWND, SubclassProcedure, UINT_PTR, DWORD_PTR);
using DefSubclassProcType = LRESULT(WINAPI*)(::HWND, UINT, WPARAM, LPARAM);
DefSubclassProcType def_subclass_proc = nullptr;

template <typename Function>
Function CommonControl(int number) {
  const ::HMODULE library = ::LoadLibraryW(L"comctl32.dll");
  const auto entry = ::GetProcAddress(library, MAKEINTRESOURCEA(number));
  Require(entry != nullptr, "no subclassing in comctl32.dll");
  return reinterpret_cast<Function>(reinterpret_cast<void*>(entry));
}

LRESULT CALLBACK PassOn(::HWND window, UINT message, WPARAM wparam, LPARAM lparam, UINT_PTR, DWORD_PTR) {
  return def_subclass_proc(window, message, wparam, lparam);
}

double TimeOfMessage(::HWND window) {
  const auto procedure = PointerIn<WNDPROC>(::GetWindowLongPtrW(window, GWLP_WNDPROC));
  const double time = TimeOf([&] {
    for (int i = 0; i < kMessages; ++i)
      Require(procedure(window, kMessage, static_cast<WPARAM>(i), 0) == i, "a wrong answer");
  });
  return time / kMessages;
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
  Require(count == 2, "subclass_bench RESULTS.json");
  const ::HWND bare = NewWindow(), neither = NewWindow(), both = NewWindow(), system = NewWindow();
  Nothing object;
  CSubClassAsm subclasser;
  bool unicode = true;
  for (const ::HWND window : {neither, both})
    Require(subclasser.ssc_Subclass(window, 0, 1, &object, true, unicode, false), "not subclassed");
  // As many as a control asks for.
  const std::array<MessageEntry, 12> messages = {Long{675}, Long{794}, Long{791}, Long{792},
                                                 Long{14},  Long{61},  Long{523}, Long{524},
                                                 Long{525}, Long{171}, Long{172}, Long{173}};
  for (const ::HWND window : {neither, both}) {
    subclasser.ssc_AddMsg(window, kWhenBefore, {Long{20}});
    subclasser.ssc_AddMsg(window, kWhenAfter, messages);
  }
  subclasser.ssc_AddMsg(both, kWhenBefore | kWhenAfter, {Long{kMessage}});
  def_subclass_proc = CommonControl<DefSubclassProcType>(413);
  Require(CommonControl<SetWindowSubclassType>(410)(system, PassOn, 1, 0), "not subclassed by the system");

  Report report;
  const std::string group = std::string("subclass/") + kBits;
  // Taken in turn, so that a busy moment of the machine hits them alike.
  for (int i = 0; i < kRepetitions; ++i) {
    report.Add(group + "/bare", TimeOfMessage(bare));
    report.Add(group + "/neither", TimeOfMessage(neither));
    report.Add(group + "/both", TimeOfMessage(both));
    report.Add(group + "/system", TimeOfMessage(system));
  }
  Require(report.Write(arguments[1]), "the results can't be written");
  return 0;
}
