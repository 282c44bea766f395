// The colours of the desktop's scheme, as an owner of images sees it.
#pragma once

#include "host/user_control.h"
#include "theme/theme_colours.h"

namespace marklet {

// For the owner's window, which has the visual style. Failing steps are skipped.
ThemeColours OwnerThemeColours(UserControl& host);

}  // namespace marklet
