#include "platform/shared/configured_theme.h"

#include <algorithm>

namespace marklet {
namespace {

bool Copy(std::u16string_view name, std::span<char16_t> buffer) {
  if (name.size() >= buffer.size()) return false;
  *std::ranges::copy(name, buffer.begin()).out = u'\0';
  return true;
}

}  // namespace

std::optional<ThemeConfiguration>& ConfiguredTheme() {
  thread_local std::optional<ThemeConfiguration> theme;
  return theme;
}

HTHEME OpenConfiguredTheme(const ThemeConfiguration& theme) {
  static const char opened = 0;  // any address will do for a handle
  return theme.active ? reinterpret_cast<HTHEME>(const_cast<char*>(&opened)) : nullptr;
}

bool ConfiguredThemeName(const ThemeConfiguration& theme, std::span<char16_t> file,
                         std::span<char16_t> colour, std::span<char16_t> size) {
  if (!theme.active || !theme.names) return false;
  return Copy(theme.names->file, file) && Copy(theme.names->colour, colour) && Copy(theme.names->size, size);
}

}  // namespace marklet
