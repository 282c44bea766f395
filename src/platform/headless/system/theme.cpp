// Windows have no visual style here but a configured one.
#include "platform/theme.h"

#include "platform/headless/recorder/hook.h"
#include "platform/shared/configured_theme.h"

namespace marklet {

using headless::Operation;
using headless::Refused;

HTHEME OpenThemeData(HWND window, std::u16string_view classes) {
  if (Refused(Operation::kOpenThemeData, classes) || window == nullptr || !ConfiguredTheme()) return nullptr;
  return OpenConfiguredTheme(*ConfiguredTheme());
}

bool GetCurrentThemeName(std::span<char16_t> file, std::span<char16_t> colour, std::span<char16_t> size) {
  if (Refused(Operation::kGetCurrentThemeName) || !ConfiguredTheme()) return false;
  return ConfiguredThemeName(*ConfiguredTheme(), file, colour, size);
}

bool CloseThemeData(HTHEME theme) { return !Refused(Operation::kCloseThemeData) && theme != nullptr; }

}  // namespace marklet
