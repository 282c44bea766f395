// A window of our own whose messages an object handles.
#pragma once

#include <windows.h>

#include <functional>
#include <string>

namespace designer {

class OwnWindow {
 public:
  // The answer is the message's, or what Default gives.
  using Handler = std::function<LRESULT(UINT message, WPARAM wparam, LPARAM lparam)>;

  OwnWindow() = default;
  ~OwnWindow() { Destroy(); }
  OwnWindow(const OwnWindow&) = delete;
  OwnWindow& operator=(const OwnWindow&) = delete;

  struct Look {
    const wchar_t* class_name;
    const wchar_t* title = L"";
    DWORD style = WS_CHILD | WS_VISIBLE, extended = 0;
    HBRUSH background = nullptr;
  };
  // `handler` gets every message from the first on. Throws an HRESULT.
  void Create(const Look& look, HWND parent, const RECT& place, Handler handler);
  void Destroy();  // after it the handler gets nothing more

  HWND Handle() const { return window_; }
  LRESULT Default(UINT message, WPARAM wparam, LPARAM lparam) const {
    return DefWindowProcW(window_, message, wparam, lparam);
  }

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);

  HWND window_ = nullptr;
  Handler handler_;
};

// While it lives, the window is painted.
class Painting {
 public:
  explicit Painting(HWND window) : window_(window) { BeginPaint(window, &paint_); }
  ~Painting() { EndPaint(window_, &paint_); }
  Painting(const Painting&) = delete;
  Painting& operator=(const Painting&) = delete;
  HDC Dc() const { return paint_.hdc; }

 private:
  HWND window_;
  PAINTSTRUCT paint_;
};

std::wstring TextOf(HWND window);

// Gives a window the keyboard, if it belongs to the one that the user works in.
void Focus(HWND window);

}  // namespace designer
