#include "imagelist/owner_theme.h"

#include <string>

#include "base/ignore_errors.h"
#include "theme/appearance_scheme.h"
#include "theme/color_xp.h"

namespace marklet {

ThemeColours OwnerThemeColours(UserControl& host) {
  std::u16string scheme;
  HWND window = nullptr;
  IgnoreErrors([&] { scheme = AppearanceScheme(); });
  IgnoreErrors([&] { window = host.hWnd(); });
  return ThemeColoursOf(std::move(scheme), window);
}

}  // namespace marklet
