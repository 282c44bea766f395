// The answers to theme.h that a configuration gives in place of the desktop.
#pragma once

#include <span>

#include "platform/theme.h"

namespace marklet {

// Some handle, or null when windows have no style.
HTHEME OpenConfiguredTheme(const ThemeConfiguration& theme);
// As GetCurrentThemeName.
bool ConfiguredThemeName(const ThemeConfiguration& theme, std::span<char16_t> file,
                         std::span<char16_t> colour, std::span<char16_t> size);

}  // namespace marklet
