#include "theme/color_xp.h"

#include <algorithm>
#include <array>

#include "base/blanks.h"
#include "base/ignore_errors.h"
#include "platform/shared/os_tests.h"
#include "platform/shared/resolved_colour.h"
#include "platform/theme.h"
#include "theme/schemes.h"

namespace marklet {
namespace {

constexpr std::size_t kNameBuffer = 256;  // characters

void Capitalise(std::u16string& text) {
  std::ranges::transform(text, text.begin(), [](char16_t ch) {
    return ch >= u'a' && ch <= u'z' ? static_cast<char16_t>(ch - (u'a' - u'A')) : ch;
  });
}

// Each once over the text: what a removal brings together stays.
void RemoveAll(std::u16string& text, std::u16string_view piece) {
  for (std::size_t at = 0; (at = text.find(piece, at)) != std::u16string::npos;) text.erase(at, piece.size());
}

void CleanUp(std::u16string& scheme) {
  Capitalise(scheme);
  RemoveAll(scheme, u"(LARGE)");
  RemoveAll(scheme, u"(EXTRA LARGE)");
}

bool IsOnScreen(const Scheme& scheme) {
  return GetSysColor(COLOR_WINDOW) == scheme.window && GetSysColor(COLOR_BTNFACE) == scheme.button_face &&
         GetSysColor(COLOR_HIGHLIGHT) == scheme.highlight;
}

}  // namespace

void CColorXP::ComputeColours(std::u16string& scheme, bool menu_style, HWND window) {
  IgnoreErrors([&] { CleanUp(scheme); });
  const bool themed = ReplaceByTheme(scheme, window);
  if (!WriteScheme(TrimBlanks(scheme), menu_style)) ComputeFromSystem(themed, menu_style);
}

// Whether the window has a visual style. Its name then counts, even when it can't be told. The system test
// says no on 6.0 and on 10.0.
bool CColorXP::ReplaceByTheme(std::u16string& scheme, HWND window) {
  if (!IsXPOrLater() || window == nullptr) return false;
  const HTHEME theme = OpenThemeData(window, u"Button");
  if (theme == nullptr) return false;
  ReadThemeNames();
  IgnoreErrors([&] {
    scheme = state_.ThemeColourName;
    Capitalise(scheme);
  });
  CloseThemeData(theme);
  return true;
}

void CColorXP::ReadThemeNames() {
  std::array<char16_t, kNameBuffer> file{}, colour{}, size{};
  const bool told = GetCurrentThemeName(file, colour, size);
  const auto name_in = [told](const auto& buffer) {
    return told ? CutAtNul({buffer.data(), buffer.size()}) : std::u16string_view();
  };
  IgnoreErrors([&] { state_.ThemeFileName = name_in(file); });
  IgnoreErrors([&] { state_.ThemeColourName = name_in(colour); });
  IgnoreErrors([&] { state_.ThemeSizeName = name_in(size); });
}

// False when the scheme has no colours of its own or isn't what the screen shows. A scheme without any begins
// with those of the default.
bool CColorXP::WriteScheme(std::u16string_view name, bool menu_style) {
  const Scheme* const scheme = SchemeNamed(name);
  std::span<const COLORREF> own;
  if (scheme) own = menu_style ? scheme->menu_style : scheme->plain;
  std::ranges::copy(own.empty() ? DefaultSlots() : own, state_.Colours.begin());
  return scheme && !own.empty() && IsOnScreen(*scheme);
}

COLORREF CColorXP::TranslateSystem(OLE_COLOR colour) { return ResolvedColour(colour); }

ThemeColours ThemeColoursOf(std::u16string scheme, HWND window) {
  CColorXP color_xp;
  color_xp.ComputeColours(scheme, true, window);
  ThemeColours colours;
  color_xp.GetColours(colours);
  return colours;
}

}  // namespace marklet
