// What the tests of the thunks share: windows, objects with methods, and a look at the memory of blocks.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "plumbing/csubclass_asm.h"

namespace marklet::plumbing {

// A hidden window whose own procedure keeps the messages that it gets, and answers what a test says.
class TestWindow {
 public:
  using Answer = std::function<LRESULT(UINT, WPARAM, LPARAM)>;

  explicit TestWindow(::HWND parent = nullptr) : parent_(parent) {
    WNDCLASSEXW description = {};
    description.cbSize = sizeof description;
    description.lpfnWndProc = Procedure;
    description.hInstance = ::GetModuleHandleW(nullptr);
    description.lpszClassName = L"marklet.PlumbingTest";
    ::RegisterClassExW(&description);
    const DWORD style = parent ? WS_CHILD : WS_POPUP;
    window_ = ::CreateWindowExW(0, description.lpszClassName, L"text", style, 0, 0, 10, 10, parent, nullptr,
                                description.hInstance, this);
    seen.clear();
  }
  ~TestWindow() { Destroy(); }
  TestWindow(const TestWindow&) = delete;
  TestWindow& operator=(const TestWindow&) = delete;

  operator ::HWND() const { return window_; }  // NOLINT(google-explicit-constructor): as short as a handle
  LRESULT Send(UINT message, WPARAM wparam = 0, LPARAM lparam = 0) {
    return ::SendMessageW(window_, message, wparam, lparam);
  }
  void Destroy() {
    if (window_ && ::IsWindow(window_)) ::DestroyWindow(window_);
  }

  std::vector<UINT> seen;
  Answer answer;

 private:
  static LRESULT CALLBACK Procedure(::HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == WM_NCCREATE) {
      const auto* creation = PointerIn<const CREATESTRUCTW*>(lparam);
      ::SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(creation->lpCreateParams));
    }
    auto* const self = PointerIn<TestWindow*>(::GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self) self->seen.push_back(message);
    if (self && self->answer && message >= WM_USER) return self->answer(message, wparam, lparam);
    return ::DefWindowProcW(window, message, wparam, lparam);
  }

  ::HWND window_ = nullptr;
  ::HWND parent_;
};

// Its last method does what a test says with the messages that it gets, and keeps their words.
class Watcher : public CallbackObject {
 public:
  struct Call {
    bool before;
    UINT message;
    WPARAM wparam;
    LPARAM lparam;
    friend bool operator==(const Call&, const Call&) = default;
  };

  Watcher() : CallbackObject(kMethods) {}

  std::vector<Call> calls;
  std::function<void(SubclassCall&)> action;
  std::function<void(HookCall&)> hook_action;
  int first_method_calls = 0;
  Word* block = nullptr;  // of the last call

 private:
  void First(SubclassCall&) { ++first_method_calls; }
  void OnHook(HookCall& call) {
    block = &call.lParamUser - hook_block::kUser;
    if (hook_action) hook_action(call);
  }
  void OnMessage(SubclassCall& call) {
    block = &call.lParamUser - subclass_block::kUser;
    calls.push_back({call.bBefore, call.uMsg, call.wParam, call.lParam});
    // A copy, since the action may end this object.
    if (const auto act = action) act(call);
  }

  static inline const Method kMethods[] = {MethodOf<&Watcher::First>(), MethodOf<&Watcher::OnHook>(),
                                           MethodOf<&Watcher::OnMessage>()};
};

constexpr Long kWatcherMessages = 1, kWatcherHooks = 2, kWatcherFirst = 3;

inline bool SubclassWith(CSubClassAsm& subclasser, ::HWND window, CallbackObject* object, Word user = 0) {
  bool unicode = true;
  return subclasser.ssc_Subclass(window, user, 1, object, true, unicode, false);
}

inline LONG_PTR ProcedureOf(::HWND window) { return ::GetWindowLongPtrW(window, GWLP_WNDPROC); }

inline void Pump() {
  MSG message;
  while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) ::DispatchMessageW(&message);
}

// Dispatches what arrives in the next milliseconds.
inline void PumpFor(DWORD milliseconds) {
  const ULONGLONG end = ::GetTickCount64() + milliseconds;
  for (ULONGLONG now = ::GetTickCount64(); now < end; now = ::GetTickCount64()) {
    ::MsgWaitForMultipleObjects(0, nullptr, FALSE, static_cast<DWORD>(end - now), QS_ALLINPUT);
    Pump();
  }
}

inline bool IsMemory(const void* address) {
  MEMORY_BASIC_INFORMATION information = {};
  ::VirtualQuery(address, &information, sizeof information);
  return information.State == MEM_COMMIT;
}

// Until a block's timer has released it; false when it is still there long after.
inline bool IsReleased(const Word* block) {
  for (int i = 0; i < 100 && IsMemory(block); ++i) PumpFor(10);
  return !IsMemory(block);
}

// The regions of this process's own memory that `counts` is true for.
template <typename Predicate>
int CountRegions(Predicate&& counts) {
  int count = 0;
  MEMORY_BASIC_INFORMATION region = {};
  for (const char* at = nullptr; ::VirtualQuery(at, &region, sizeof region) != 0;) {
    if (region.State == MEM_COMMIT && region.Type == MEM_PRIVATE && counts(region)) ++count;
    at = static_cast<const char*>(region.BaseAddress) + region.RegionSize;
  }
  return count;
}

inline int CountPrivateRegions() {
  return CountRegions([](const MEMORY_BASIC_INFORMATION&) { return true; });
}

inline int CountExecutableRegions() {
  constexpr DWORD executable =
      PAGE_EXECUTE | PAGE_EXECUTE_READ | PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;
  return CountRegions(
      [](const MEMORY_BASIC_INFORMATION& region) { return (region.Protect & executable) != 0; });
}

}  // namespace marklet::plumbing
