#include "window.h"

#include <bit>

namespace designer {

// Nothing may be thrown through the system. A step that fails is a step that isn't done.
LRESULT CALLBACK OwnWindow::Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == WM_NCCREATE) {
    const auto* creation = std::bit_cast<const CREATESTRUCTW*>(lparam);
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(creation->lpCreateParams));
    static_cast<OwnWindow*>(creation->lpCreateParams)->window_ = window;
  }
  auto* own = std::bit_cast<OwnWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (own && message == WM_NCDESTROY) {
    own->window_ = nullptr;
    SetWindowLongPtrW(window, GWLP_USERDATA, 0);
    own = nullptr;
  }
  if (!own || !own->handler_) return DefWindowProcW(window, message, wparam, lparam);
  const Handler handler = own->handler_;  // it may end the window, and with it itself
  try {
    return handler(message, wparam, lparam);
  } catch (...) {
    return 0;
  }
}

void OwnWindow::Create(const Look& look, HWND parent, const RECT& place, Handler handler) {
  const HINSTANCE program = GetModuleHandleW(nullptr);
  WNDCLASSEXW description = {};
  description.cbSize = sizeof description;
  if (!GetClassInfoExW(program, look.class_name, &description)) {
    description.style = CS_DBLCLKS;
    description.lpfnWndProc = Procedure;
    description.hInstance = program;
    description.hCursor = LoadCursorW(nullptr, MAKEINTRESOURCEW(32512));  // an arrow
    description.hIcon = LoadIconW(nullptr, MAKEINTRESOURCEW(32512));
    description.hbrBackground = look.background;
    description.lpszClassName = look.class_name;
    RegisterClassExW(&description);
  }
  handler_ = std::move(handler);
  const HWND window =
      CreateWindowExW(look.extended, look.class_name, look.title, look.style, place.left, place.top,
                      place.right - place.left, place.bottom - place.top, parent, nullptr, program, this);
  if (!window) throw E_FAIL;
}

void OwnWindow::Destroy() {
  handler_ = nullptr;
  if (window_) DestroyWindow(window_);
}

void Focus(HWND window) {
  if (GetAncestor(window, GA_ROOT) == GetActiveWindow()) SetFocus(window);
}

std::wstring TextOf(HWND window) {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)), L'\0');
  const int length = GetWindowTextW(window, text.data(), static_cast<int>(text.size()) + 1);
  text.resize(static_cast<std::size_t>(length));
  return text;
}

}  // namespace designer
