// What the form lies on. It can be scrolled when the form is larger.
#pragma once

#include "look.h"
#include "window.h"

namespace designer {

class Desk {
 public:
  Desk(HWND parent, const Look& look);

  HWND Window() const { return window_.Handle(); }
  // The window that lies on it, a child of its own.
  void Hold(HWND form);
  // After one of them has another size.
  void Update();

 private:
  LRESULT Handle(UINT message, WPARAM wparam, LPARAM lparam);
  void UpdateBar(int bar, int length, int room);
  void Scroll(int bar, int how);

  const Look& look_;
  OwnWindow window_;
  HWND form_ = nullptr;
  bool updating_ = false;
};

}  // namespace designer
