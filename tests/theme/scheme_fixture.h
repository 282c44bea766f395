// A desktop with system colours and a visual style of the test's own.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "platform/system.h"
#include "platform/system_colours.h"
#include "platform/theme.h"
#include "support/fake_host.h"
#include "theme/color_xp.h"

namespace marklet::testing {

// Any window: a configured style doesn't look at it.
inline const HWND kSomeWindow = reinterpret_cast<HWND>(0x10);

class SchemeTest : public ::testing::Test {
 protected:
  SchemeTest() { ConfiguredTheme() = {.active = false, .names = {}}; }
  ~SchemeTest() override { ConfiguredTheme().reset(); }

  static void ShowColours(COLORREF window, COLORREF face, COLORREF highlight, COLORREF shadow = 0x808080) {
    auto& colours = Configuration().system_colours;
    colours[COLOR_WINDOW] = window;
    colours[COLOR_BTNFACE] = face;
    colours[COLOR_HIGHLIGHT] = highlight;
    colours[COLOR_BTNSHADOW] = shadow;
  }
  // Desktops that show schemes with colours of their own.
  static void ShowClassic() { ShowColours(0xFFFFFF, MakeRgb(192, 192, 192), MakeRgb(0, 0, 128)); }
  static void ShowNormalColor() { ShowColours(0xFFFFFF, MakeRgb(236, 233, 216), MakeRgb(49, 106, 197)); }
  static void ShowTheme(std::u16string colour_name) {
    ConfiguredTheme() = {
        .active = true,
        .names = ThemeConfiguration::Names{u"luna.msstyles", std::move(colour_name), u"Normal"}};
  }
  // The colours of a scheme, and what became of its name.
  static ThemeColours Compute(std::u16string& scheme, bool menu_style = true, HWND window = nullptr) {
    CColorXP color_xp;
    color_xp.ComputeColours(scheme, menu_style, window);
    ThemeColours colours;
    color_xp.GetColours(colours);
    return colours;
  }
  static ThemeColours ColoursOf(std::u16string scheme, bool menu_style = true, HWND window = nullptr) {
    return Compute(scheme, menu_style, window);
  }

  FixedSystem system_{5, 1};
};

}  // namespace marklet::testing
