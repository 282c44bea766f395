// What stands on the page for images, and where: the page as it is designed, in twips.
#pragma once

#include <cstddef>
#include <iterator>

#include "activex/com/com.h"
#include "platform/system_colours.h"

namespace marklet::activex::page {

inline constexpr int kTwipsPerInch = 1440;
inline constexpr int kWidth = 5475, kHeight = 3600;
inline constexpr wchar_t kCaption[] = L"PropertyPage1";

enum class Kind { Label, Button, Text, Strip };
enum class Font { Page, Heading, Plain, Arrows };

struct FontRow {
  const wchar_t* face;
  int hundredths;  // of a point
  LONG weight;
  BYTE charset;
};
inline constexpr FontRow kFonts[] = {
    {L"Tahoma", 825, FW_NORMAL, DEFAULT_CHARSET},
    {L"Tahoma", 825, FW_BOLD, DEFAULT_CHARSET},
    {L"MS Sans Serif", 825, FW_NORMAL, DEFAULT_CHARSET},
    {L"Marlett", 975, FW_NORMAL, SYMBOL_CHARSET},
};

// The controls in the order of the Tab key.
enum class Item {
  Previous,
  Next,
  DeleteAll,
  DeleteIcon,
  Strip,
  Key,
  Browse,
  KeyLabel,
  BrowseLabel,
  StripLabel,
};

struct ControlRow {
  Item item;
  Kind kind;
  int left, top, width, height;
  const wchar_t* caption;
  Font font;
  const wchar_t* tip;
};
// Every button is disabled until the page has something for it to do. In the font of the arrows "3" and "4"
// are one to the left and one to the right.
inline constexpr ControlRow kControls[] = {
    {Item::Previous, Kind::Button, 4560, 2040, 375, 255, L"3", Font::Arrows, L"View previous set of icons."},
    {Item::Next, Kind::Button, 4920, 2040, 375, 255, L"4", Font::Arrows, L"View next set of icons."},
    {Item::DeleteAll, Kind::Button, 240, 3000, 1215, 375, L"Delete All", Font::Page, L"Deletes all icons."},
    {Item::DeleteIcon, Kind::Button, 4080, 3000, 1215, 375, L"Delete Icon", Font::Page,
     L"Deletes the currently selected icon."},
    {Item::Strip, Kind::Strip, 240, 2400, 5055, 495, L"", Font::Plain,
     L"16x16 preview of currently assigned icons."},
    {Item::Key, Kind::Text, 240, 360, 3255, 315, L"", Font::Plain, nullptr},
    {Item::Browse, Kind::Button, 240, 1200, 1935, 375, L"Browse Icons...", Font::Plain,
     L"Browse and select an icon."},
    {Item::KeyLabel, Kind::Label, 240, 120, 2175, 255, L"1. Icon Key:", Font::Heading, nullptr},
    {Item::BrowseLabel, Kind::Label, 240, 960, 2655, 255, L"2. Click to choose the icon:", Font::Heading,
     nullptr},
    {Item::StripLabel, Kind::Label, 240, 2160, 2055, 255, L"16x16 Preview:", Font::Heading, nullptr},
};
constexpr bool InOrder() {
  for (std::size_t i = 0; i < std::size(kControls); ++i)
    if (static_cast<std::size_t>(kControls[i].item) != i) return false;
  return static_cast<std::size_t>(Item::StripLabel) + 1 == std::size(kControls);
}
static_assert(InOrder());

// From left to right, each a pixel high.
struct LineRow {
  int left, right, top;
  int colour;  // of the system
};
inline constexpr LineRow kLines[] = {{240, 5280, 1920, COLOR_3DHIGHLIGHT}, {240, 5280, 1905, COLOR_3DSHADOW}};

// The number by which the page's window knows a control.
constexpr int IdOf(Item item) { return 100 + static_cast<int>(item); }

// Twips as pixels of such a screen.
inline int Pixels(int twips, int per_inch) { return ::MulDiv(twips, per_inch, kTwipsPerInch); }

}  // namespace marklet::activex::page
