// The visual style of the desktop's windows.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/types.h"

namespace marklet {

struct ThemeHandle;
using HTHEME = ThemeHandle*;

// Answers that stand in for the desktop's own on this thread, once they are set.
struct ThemeConfiguration {
  struct Names {
    std::u16string file, colour, size;
  };
  bool active = true;          // whether windows have a visual style
  std::optional<Names> names;  // none: they can't be told
};
std::optional<ThemeConfiguration>& ConfiguredTheme();

// The visual style of a window for a class list such as "Button". Null for a window without one; otherwise
// CloseThemeData is due.
HTHEME OpenThemeData(HWND window, std::u16string_view classes);
// The names of the style's file, colour scheme and size, each with a NUL at its end. False, and the buffers
// in any state, when there is no style or a name has no room.
bool GetCurrentThemeName(std::span<char16_t> file, std::span<char16_t> colour, std::span<char16_t> size);
// False for null.
bool CloseThemeData(HTHEME theme);

}  // namespace marklet
