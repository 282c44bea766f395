// A control that was loaded, as from a saved form, which is what its window is subclassed for.
#pragma once

#include "activex/container.h"
#include "activex/saving.h"

namespace ocx_test {

// In a container on the screen, active, with a listener to its events.
class Loaded {
 public:
  explicit Loaded(bool user_mode = true, bool activate_first = false)
      : Loaded(CreateControl(), user_mode, activate_first) {}
  explicit Loaded(ComPtr<IUnknown> control, bool user_mode = true, bool activate_first = false) {
    container.ambients.user_mode = user_mode;
    container.HostObject(std::move(control));
    if (activate_first) Activate();
    MemoryBag bag;
    EXPECT_EQ(S_OK, LoadFromBag(container.Object(), bag));
    if (!activate_first) Activate();
    EXPECT_EQ(S_OK, events.ConnectEvents(container.Object()));
    PumpMessages();
  }
  ~Loaded() { events.Disconnect(); }

  void Activate() { EXPECT_EQ(S_OK, container.Activate()); }
  HWND Window() const { return container.ControlWindow(); }
  LRESULT Send(UINT message, WPARAM wparam = 0, LPARAM lparam = 0) {
    return SendMessageW(Window(), message, wparam, lparam);
  }
  bool IsSubclassed() { return Send(WM_ERASEBKGND) == -1; }

  Container container;
  Sink events;
};

// Handles messages for a while.
inline void Wait(int milliseconds) {
  for (int waited = 0; waited < milliseconds; waited += 10) {
    PumpMessages();
    Sleep(10);
  }
}

}  // namespace ocx_test
