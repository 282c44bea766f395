// The control's page for images in a frame of the system's, which runs a loop of its own.
#pragma once

#include <bit>
#include <functional>
#include <string>

#include "activex/page_host.h"

namespace ocx_test {

// As the system's dialog gives it: in the ANSI code page, "?" in the place of what that page lacks.
inline std::string Narrow(const std::wstring& text) {
  constexpr UINT kAnsi = 0;
  char bytes[MAX_PATH] = {};
  WideCharToMultiByte(kAnsi, 0, text.c_str(), -1, bytes, MAX_PATH, nullptr, nullptr);
  return bytes;
}

inline BOOL CALLBACK FindBelow(HWND child, LPARAM found) {
  if (GetDlgCtrlID(child) != kBrowse || PageHost::TextOf(child) != L"Browse Icons...") return TRUE;
  *std::bit_cast<HWND*>(found) = GetParent(child);
  return FALSE;
}
inline BOOL CALLBACK FindIn(HWND window, LPARAM found) {
  EnumChildWindows(window, FindBelow, found);
  return *std::bit_cast<HWND*>(found) == nullptr;
}

// The page's window below a frame of this thread.
inline HWND FindPage() {
  HWND found = nullptr;
  EnumThreadWindows(GetCurrentThreadId(), FindIn, reinterpret_cast<LPARAM>(&found));
  return found;
}

// Runs inside the modal loop of a window that is about to open.
class Inside {
 public:
  explicit Inside(std::function<bool()> step) {  // false: not yet
    step_ = std::move(step);
    timer_ = SetTimer(nullptr, 0, 50, Tick);
  }
  ~Inside() {
    KillTimer(nullptr, timer_);
    step_ = nullptr;
  }
  Inside(const Inside&) = delete;
  Inside& operator=(const Inside&) = delete;

 private:
  static void CALLBACK Tick(HWND, UINT, UINT_PTR timer, DWORD) {
    if (!step_ || running_) return;
    running_ = true;
    if (step_()) KillTimer(nullptr, timer);
    running_ = false;
  }
  static inline std::function<bool()> step_;
  static inline bool running_ = false;
  UINT_PTR timer_;
};

// Adds an image under a key, selects it in the strip and closes the frame.
inline void AddOnPage(HWND page, const wchar_t* key) {
  SetWindowTextW(GetDlgItem(page, kKey), key);
  SendMessageW(GetDlgItem(page, kBrowse), BM_CLICK, 0, 0);
  SendMessageW(GetDlgItem(page, kStrip), WM_LBUTTONDOWN, 0, MAKELPARAM(10, 8));
  EXPECT_EQ(key, PageHost::TextOf(GetDlgItem(page, kKey)));
  PostMessageW(GetParent(page), WM_COMMAND, IDCANCEL, 0);
  PostMessageW(GetAncestor(page, GA_ROOT), WM_COMMAND, IDCANCEL, 0);
}

// Does that on the page of a frame that is about to open.
class AddingOnPage {
 public:
  explicit AddingOnPage(const wchar_t* key)
      : inside_([this, key] {
          const HWND page = FindPage();
          if (!page || !IsWindowVisible(page)) return false;
          was_there_ = true;
          AddOnPage(page, key);
          return true;
        }) {}

  bool PageWasThere() const { return was_there_; }

 private:
  bool was_there_ = false;
  const Inside inside_;
};

}  // namespace ocx_test
