// Colours of a scheme that are computed from the system's.
#include <algorithm>

#include "base/rounding.h"
#include "platform/system.h"
#include "platform/system_colours.h"
#include "theme/color_xp.h"
#include "theme/hsl.h"

namespace marklet {
namespace {

constexpr COLORREF kWhite = MakeRgb(255, 255, 255);
constexpr COLORREF kGrey = MakeRgb(150, 150, 150);
// Black, and so is each of the theme's own colours: nothing has ever set them.
constexpr COLORREF kBlack = 0;

unsigned BlendChannel(unsigned a, unsigned b, int weight) {
  const double share_a = static_cast<int>(a) * weight / 255.0;
  const double share_b = static_cast<int>(b) * (255 - weight) / 255.0;
  return static_cast<unsigned>(RoundHalfEven(share_a + share_b));
}

unsigned MeanOf(COLORREF colour) { return (RedOf(colour) + GreenOf(colour) + BlueOf(colour)) / 3; }

COLORREF Darker(COLORREF colour) {
  const auto darker = [](unsigned channel) { return static_cast<unsigned>(RoundHalfEven(channel * 0.65)); };
  return MakeRgb(darker(RedOf(colour)), darker(GreenOf(colour)), darker(BlueOf(colour)));
}

unsigned ChannelAt(double level) { return static_cast<unsigned>(std::clamp(RoundHalfEven(level), 0, 255)); }

COLORREF Lightened(COLORREF colour) {
  const Hsl hsl = ToHSL(RedOf(colour), GreenOf(colour), BlueOf(colour));
  const RgbLevels levels = FromHSL(hsl.hue, hsl.lightness * 1.215, hsl.saturation);
  return MakeRgb(ChannelAt(levels.red), ChannelAt(levels.green), ChannelAt(levels.blue));
}

}  // namespace

struct CColorXP::Palette {
  COLORREF window = GetSysColor(COLOR_WINDOW);
  COLORREF face = GetSysColor(COLOR_BTNFACE);
  COLORREF highlight = GetSysColor(COLOR_HIGHLIGHT);
  COLORREF shadow = GetSysColor(COLOR_BTNSHADOW);
  COLORREF Page() const { return Blend(Blend(window, face, 224), face, 249); }
};

COLORREF CColorXP::Blend(OLE_COLOR first, OLE_COLOR second, int weight) {
  const COLORREF a = TranslateSystem(first), b = TranslateSystem(second);
  return MakeRgb(BlendChannel(RedOf(a), RedOf(b), weight), BlendChannel(GreenOf(a), GreenOf(b), weight),
                 BlendChannel(BlueOf(a), BlueOf(b), weight));
}

COLORREF CColorXP::DarkenToReadable(OLE_COLOR& colour) {
  colour = TranslateSystem(colour);
  COLORREF result = colour;
  while (MeanOf(result) >= 128) result = Darker(result);
  return result;
}

COLORREF CColorXP::RaiseContrast(OLE_COLOR& colour, COLORREF reference) const {
  constexpr COLORREF kExempt[] = {MakeRgb(140, 140, 28), MakeRgb(30, 140, 28)};
  constexpr unsigned kDark = 101;
  colour = TranslateSystem(colour);
  if (std::ranges::find(kExempt, reference) != std::end(kExempt) || MeanOf(reference) > kDark) return colour;
  // Only black becomes lighter. The other dark colours stay: a search for lighter ones would not end.
  return Blend(MeanOf(colour) == 0 ? kWhite : colour, state_.Colours[1], 200);
}

// Slots 10, 19, 20, 23, 24 and 30 keep what they are, and so do those from 28 on but on a themed desktop.
void CColorXP::ComputeFromSystem(bool themed, bool menu_style) {
  ThemeColours& slot = state_.Colours;
  const Palette system;
  slot[0] = system.face;
  slot[1] = system.Page();
  slot[15] = system.highlight;
  if (themed && menu_style) {
    ComputeStyled(system);
  } else {
    ComputePlain(system);
  }
  slot[18] = Blend(slot[15], slot[7], 128);
  slot[3] = RaiseContrast(slot[3], slot[1]);
  slot[25] = RaiseContrast(slot[25], slot[8]);
  slot[26] = RaiseContrast(slot[26], slot[8]);
  slot[5] = RaiseContrast(slot[5], slot[1]);
  slot[6] = Blend(Blend(system.shadow, system.Page(), 172), kBlack, 250);
  ComputeBars(system, menu_style && !themed);
  if (themed) ComputeThemed(system);
  slot[27] = Lightened(system.face);
}

void CColorXP::ComputePlain(const Palette& system) {
  ThemeColours& slot = state_.Colours;
  slot[8] = Blend(Blend(Blend(system.window, system.face, 246), system.highlight, 180), kGrey, 235);
  slot[2] = Blend(kBlack, system.shadow, 51);
  slot[7] = DarkenToReadable(slot[15]);
  slot[9] = Blend(system.face, system.window, 213);
  slot[16] = Blend(slot[8], Blend(slot[9], slot[1], 128), 110);
  slot[17] = Blend(slot[9], Blend(slot[8], system.highlight, 96), 96);
  slot[22] = Blend(system.shadow, system.window, 250);
  slot[4] = Blend(system.shadow, system.window, 240);
  slot[21] = Blend(slot[8], Blend(system.shadow, system.highlight, 128), 128);
}

void CColorXP::ComputeStyled(const Palette& system) {
  ThemeColours& slot = state_.Colours;
  slot[8] = Blend(kBlack, system.window, 120);
  for (const std::size_t theme_colour : {2u, 7u, 9u, 16u, 17u}) slot[theme_colour] = kBlack;
  slot[22] = Blend(kBlack, system.face, 164);
  slot[4] = Blend(kBlack, system.face, 157);
  slot[21] = Blend(slot[8], Blend(system.shadow, slot[8], 164), 128);
}

// The gradients of bars. Of two shades of the window one is stronger, which menus without a theme swap.
void CColorXP::ComputeBars(const Palette& system, bool menus_without_theme) {
  ThemeColours& slot = state_.Colours;
  const COLORREF bar = slot[9];
  slot[11] = Blend(system.window, bar, menus_without_theme ? 196 : 215);
  slot[12] = menus_without_theme ? bar : Blend(bar, Blend(kBlack, system.shadow, 200), 213);
  slot[13] = Blend(system.window, bar, menus_without_theme ? 215 : 196);
  slot[14] = Blend(system.window, bar, 128);
}

void CColorXP::ComputeThemed(const Palette& system) {
  ThemeColours& slot = state_.Colours;
  for (const std::size_t theme_colour : {28u, 29u, 31u, 32u, 35u, 39u, 41u}) slot[theme_colour] = kBlack;
  slot[33] = slot[34] = Blend(kBlack, kWhite, 128);
  // Between theme colours that are the same, the face takes their place.
  slot[36] = Blend(system.face, kWhite, 225);
  slot[37] = Blend(system.face, kBlack, 225);
  slot[38] = Blend(kBlack, kWhite, 200);
  slot[40] = Blend(kBlack, kWhite, 128);
  slot[42] = Blend(kBlack, kWhite, 64);
  slot[43] = Blend(kBlack, kWhite, 255);
}

}  // namespace marklet
