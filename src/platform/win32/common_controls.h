// What is asked of the library of common controls, which is loaded when somebody asks first: its start takes
// several times as long as a control's way to its first picture, and many programs do without it.
#pragma once

#include "platform/win32/system_function.h"

namespace marklet::win32 {

constexpr wchar_t kCommonControls[] = L"comctl32.dll";

// Registers the window classes of the common controls, of which "tooltips_class32" is used.
inline void InitCommonControls() {
  static const auto function = SystemFunction<void(WINAPI*)()>(kCommonControls, "InitCommonControls");
  if (function) function();
}

// Asks for one message when the pointer leaves the window; false when nothing can tell of it.
inline bool TrackMouseEvent(::TRACKMOUSEEVENT& wanted) {
  static const auto function =
      SystemFunction<BOOL(WINAPI*)(::TRACKMOUSEEVENT*)>(kCommonControls, "_TrackMouseEvent");
  return function && function(&wanted) != FALSE;
}

}  // namespace marklet::win32
