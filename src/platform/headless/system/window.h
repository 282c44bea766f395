// A window of the headless platform: nothing but its text.
#pragma once

#include <string>

namespace marklet {

// Whoever needs a window makes one and passes its address as HWND.
struct WindowHandle {
  std::u16string text;
};

}  // namespace marklet
