// The window of the page for images: the controls of layout.h in a dialog without a frame.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "activex/com/com.h"
#include "activex/page/layout.h"

namespace marklet::activex::page {

// What the user does in the window. Each call may end the window.
class Input {
 public:
  virtual void Pressed(Item button) = 0;
  virtual void KeyTyped() = 0;
  virtual void StripPressed(int x) = 0;  // in pixels, from the inside's left edge
  virtual void PaintStrip(::HDC dc) = 0;
  virtual void StripResized() = 0;
  // Whose life the window's messages must not outlast.
  virtual IUnknown& Keeper() = 0;

 protected:
  ~Input() = default;
};

class Window {
 public:
  explicit Window(Input& input) : input_(input) {}
  ~Window() { Destroy(); }
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  // A child of `parent`, not yet visible, with all buttons disabled. False when the system makes none.
  bool Create(::HWND parent, const ::RECT& position);
  void Destroy();
  ::HWND Handle() const { return window_; }
  ::HWND Control(Item item) const { return ::GetDlgItem(window_, IdOf(item)); }
  int PerInch() const;  // pixels

  std::wstring KeyText() const;
  void PutKeyText(const std::wstring& text) { ::SetWindowTextW(Control(Item::Key), text.c_str()); }
  // The focus of a button that gets disabled moves on, so that the keyboard isn't lost.
  void Enable(Item button, bool enabled);
  ::SIZE StripSize() const;
  void RepaintStrip() { ::InvalidateRect(Control(Item::Strip), nullptr, FALSE); }

  // Whether a message of the keyboard was the page's. Enter in a text, Escape, and Tab at either end are the
  // frame's.
  bool Translate(MSG& message);

 private:
  static INT_PTR CALLBACK Procedure(::HWND window, UINT message, WPARAM wparam, LPARAM lparam);
  static LRESULT CALLBACK StripProcedure(::HWND strip, UINT message, WPARAM wparam, LPARAM lparam);
  INT_PTR Handle(UINT message, WPARAM wparam, LPARAM lparam);
  bool HandleStrip(UINT message, WPARAM wparam, LPARAM lparam, LRESULT& result);
  void OnCommand(int id, int code);
  void OnPaint();
  void PaintStrip();

  void CreateControls();
  ::HWND CreateControl(const ControlRow& row);
  void CreateTips();
  void Layout();
  void DeleteFonts();
  bool PressFocused();
  bool MoveFocus(bool back);

  Input& input_;
  ::HWND window_ = nullptr;
  ::HWND tips_ = nullptr;
  WNDPROC strip_procedure_ = nullptr;  // the platform's
  bool draws_arrows_ = false;
  std::vector<::HFONT> fonts_;  // in the order of layout.h
};

}  // namespace marklet::activex::page
