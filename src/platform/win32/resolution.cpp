#include "platform/win32/resolution.h"

#include "platform/system.h"
#include "platform/text.h"
#include "platform/win32/system_function.h"

namespace marklet::win32 {
namespace {

// Both answer 0 where the system can't say.
Long AskWindow(::HWND window) {
  using Function = UINT(WINAPI*)(::HWND);
  static const auto function = SystemFunction<Function>(L"user32.dll", "GetDpiForWindow");
  return function ? static_cast<Long>(function(window)) : 0;
}

Long AskMonitor(::HWND window) {
  using Function = HRESULT(WINAPI*)(HMONITOR, int kind, UINT* across, UINT* down);
  constexpr int kEffective = 0;  // as the user has set it
  static const auto function = SystemFunction<Function>(L"shcore.dll", "GetDpiForMonitor");
  const HMONITOR monitor = function ? ::MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST) : nullptr;
  UINT across = 0, down = 0;
  return monitor && SUCCEEDED(function(monitor, kEffective, &across, &down)) ? static_cast<Long>(down) : 0;
}

}  // namespace

Long PixelsPerInchOf(::HWND window) {
  if (Configuration().pixels_per_inch) return *Configuration().pixels_per_inch;
  if (const Long of_window = AskWindow(window); of_window > 0) return of_window;
  if (const Long of_monitor = AskMonitor(window); of_monitor > 0) return of_monitor;
  return PixelsPerInch(nullptr);
}

}  // namespace marklet::win32
