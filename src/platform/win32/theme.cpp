// uxtheme.dll is asked for its functions when it is needed: not every system has it.
#include "platform/theme.h"

#include "platform/shared/configured_theme.h"
#include "platform/win32/handles.h"
#include "platform/win32/system_function.h"

namespace marklet {
namespace {

constexpr const wchar_t* kLibrary = L"uxtheme.dll";

wchar_t* Buffer(std::span<char16_t> text) { return reinterpret_cast<wchar_t*>(text.data()); }
int Room(std::span<char16_t> text) { return static_cast<int>(text.size()); }

}  // namespace

HTHEME OpenThemeData(HWND window, std::u16string_view classes) {
  using Function = HTHEME(WINAPI*)(::HWND, const wchar_t*);
  static const auto function = win32::SystemFunction<Function>(kLibrary, "OpenThemeData");
  if (!window) return nullptr;
  if (ConfiguredTheme()) return OpenConfiguredTheme(*ConfiguredTheme());
  const std::u16string terminated(classes);
  return function ? function(win32::Native(window), win32::Native(terminated.c_str())) : nullptr;
}

bool GetCurrentThemeName(std::span<char16_t> file, std::span<char16_t> colour, std::span<char16_t> size) {
  using Function = HRESULT(WINAPI*)(wchar_t*, int, wchar_t*, int, wchar_t*, int);
  static const auto function = win32::SystemFunction<Function>(kLibrary, "GetCurrentThemeName");
  if (ConfiguredTheme()) return ConfiguredThemeName(*ConfiguredTheme(), file, colour, size);
  return function && SUCCEEDED(function(Buffer(file), Room(file), Buffer(colour), Room(colour), Buffer(size),
                                        Room(size)));
}

bool CloseThemeData(HTHEME theme) {
  using Function = HRESULT(WINAPI*)(HTHEME);
  static const auto function = win32::SystemFunction<Function>(kLibrary, "CloseThemeData");
  if (ConfiguredTheme()) return theme != nullptr;
  return theme && function && SUCCEEDED(function(theme));
}

}  // namespace marklet
