// The control's window, there while the control is active in place, and what it draws on.
#pragma once

#include "activex/com/com.h"
#include "activex/com/face.h"
#include "activex/control/extent.h"
#include "control/marklet.h"
#include "host/user_control.h"

namespace marklet::activex {

// Says what of the user's input is the control's.
class InputListener {
 public:
  virtual bool TakesMouse() = 0;  // it is a designer's otherwise, or nobody's
  virtual void FocusChanged(bool got) = 0;

 protected:
  ~InputListener() = default;
};

class ControlWindow {
 public:
  ControlWindow(FaceOwner& owner, Marklet& marklet, UserControl& host, PlaceListener& listener,
                InputListener& input)
      : owner_(owner), marklet_(marklet), host_(host), listener_(listener), input_(input) {}
  ~ControlWindow();
  ControlWindow(const ControlWindow&) = delete;
  ControlWindow& operator=(const ControlWindow&) = delete;

  // A child of `parent` at a position in its client area, in pixels, not yet visible.
  bool Create(::HWND parent, const ::RECT& position);
  void Destroy();
  ::HWND Handle() const { return window_; }
  ::SIZE ClientSize() const;
  // Of the window itself, whatever its parents are. Without a window nothing happens.
  bool IsVisible() const;
  void Show();
  void Hide();
  void ReleaseMouse();  // a press that has begun is over
  // Moves and sizes the window, and cuts it to `clip` where that covers it only in part. Both are in the
  // client area of the parent.
  void Place(const ::RECT& position, const ::RECT* clip);

  // The context to paint on now: that of the paint message while one is answered, else the window's, else a
  // memory context of one pixel, so that measuring works in a control that isn't active or is hidden, where
  // the window's own would be dear and show nothing. Valid until ReleaseContext.
  ::HDC Context();
  ::HDC FontContext();  // the same with the control's font selected
  void ReleaseContext();

 private:
  using Handler = LRESULT (ControlWindow::*)(UINT message, WPARAM wparam, LPARAM lparam);
  struct Route {
    UINT message;
    Handler handler;
    bool is_mouse;  // for the control only when it takes the mouse
  };
  static const Route kRoutes[];
  static LRESULT CALLBACK Procedure(::HWND window, UINT message, WPARAM wparam, LPARAM lparam);
  LRESULT Handle(UINT message, WPARAM wparam, LPARAM lparam);
  LRESULT Default(UINT message, WPARAM wparam, LPARAM lparam);

  LRESULT OnPaint(UINT message, WPARAM wparam, LPARAM lparam);
  LRESULT OnPrintClient(UINT message, WPARAM wparam, LPARAM lparam);
  LRESULT OnEraseBackground(UINT message, WPARAM wparam, LPARAM lparam);
  LRESULT OnPaintFrame(UINT message, WPARAM wparam, LPARAM lparam);
  LRESULT OnSize(UINT message, WPARAM wparam, LPARAM lparam);
  LRESULT OnPlaced(UINT message, WPARAM wparam, LPARAM lparam);
  LRESULT OnMouseMove(UINT message, WPARAM wparam, LPARAM lparam);
  LRESULT OnButtonDown(UINT message, WPARAM wparam, LPARAM lparam);
  LRESULT OnButtonUp(UINT message, WPARAM wparam, LPARAM lparam);
  LRESULT OnDoubleClick(UINT message, WPARAM wparam, LPARAM lparam);
  LRESULT OnCaptureLost(UINT message, WPARAM wparam, LPARAM lparam);
  LRESULT OnSetCursor(UINT message, WPARAM wparam, LPARAM lparam);
  LRESULT OnFocus(UINT message, WPARAM wparam, LPARAM lparam);
  LRESULT OnDestroy(UINT message, WPARAM wparam, LPARAM lparam);
  LRESULT OnLast(UINT message, WPARAM wparam, LPARAM lparam);

  FaceOwner& owner_;
  Marklet& marklet_;
  UserControl& host_;  // for the font and the mouse pointer
  PlaceListener& listener_;
  InputListener& input_;
  ::HWND window_ = nullptr;
  ::HDC paint_context_ = nullptr;     // of the paint message that is being answered
  ::HDC borrowed_context_ = nullptr;  // the window's, or a memory context
  bool borrowed_from_window_ = false;
  bool cut_ = false;            // to a region smaller than itself
  bool creating_ = false;       // inside Create, whose caller goes by the size that comes of it
  short pressed_ = 0;           // the buttons that are down
  bool swallow_click_ = false;  // the release after a double click is no click
};

// Before the module goes. There is no window left then.
void UnregisterWindowClass();

}  // namespace marklet::activex
