// CColorXP: the colours of a desktop's scheme, by its name.
//
// Some schemes have colours of their own, for a desktop that shows the scheme's system colours. In every
// other case the colours are computed from the system's. Nothing here throws, and a failing step is skipped.
#pragma once

#include <string>
#include <string_view>

#include "platform/types.h"
#include "theme/theme_colours.h"

namespace marklet {

class CColorXP {
 public:
  struct State {
    std::u16string ThemeFileName, ThemeColourName, ThemeSizeName;
    ThemeColours Colours{};
  };
  const State& Fields() const { return state_; }

  void GetColours(ThemeColours& colours) const { colours = state_.Colours; }
  // Fills the colours. `scheme` is changed to what was looked up: the name in capitals (of ASCII; schemes
  // have no others), without "(LARGE)" and "(EXTRA LARGE)"; or, when `window` isn't null and has a visual
  // style, the colour name of that. Some schemes have other colours in menu style.
  void ComputeColours(std::u16string& scheme, bool menu_style, HWND window);

  // The names of the desktop's visual style; empty when they can't be told.
  void ReadThemeNames();

  // A system colour as GetSysColor gives it; every other value as it is.
  static COLORREF TranslateSystem(OLE_COLOR colour);
  // `weight` 255ths of the first colour and the rest of the second, rounded to nearest. Takes system colours.
  static COLORREF Blend(OLE_COLOR first, OLE_COLOR second, int weight);
  // The text in front of the first NUL.
  static std::u16string_view CutAtNul(std::u16string_view text) { return text.substr(0, text.find(u'\0')); }
  // The colour, darkened as long as its channels are 128 or more on average. A system colour in `colour` is
  // replaced by what it looks like.
  static COLORREF DarkenToReadable(OLE_COLOR& colour);
  // The colour, made lighter when `reference` is dark: a bright one goes towards slot 1, a black one comes
  // from white. A system colour in `colour` is replaced by what it looks like.
  COLORREF RaiseContrast(OLE_COLOR& colour, COLORREF reference) const;

 private:
  struct Palette;

  bool ReplaceByTheme(std::u16string& scheme, HWND window);
  bool WriteScheme(std::u16string_view name, bool menu_style);

  // The computed colours, in color_xp_computed.cpp.
  void ComputeFromSystem(bool themed, bool menu_style);
  void ComputePlain(const Palette& system);
  void ComputeStyled(const Palette& system);
  void ComputeBars(const Palette& system, bool menus_without_theme);
  void ComputeThemed(const Palette& system);

  State state_;
};

// The colours of a scheme in menu style, for a window that may be null.
ThemeColours ThemeColoursOf(std::u16string scheme, HWND window);

}  // namespace marklet
