#include "contents.h"

#include <iterator>
#include <optional>
#include <string_view>

namespace form {
namespace {

constexpr LONG kButtonFace = static_cast<LONG>(0x8000000F);
constexpr LONG kHighlight = static_cast<LONG>(0x8000000D), kHighlightText = static_cast<LONG>(0x8000000E);
constexpr LONG kInfo = static_cast<LONG>(0x80000018), kInfoText = static_cast<LONG>(0x80000017);
constexpr LONG kStroke = 1, kShadow = 2, kEmboss = 3, kEngrave = 4, kHollow = 5;

constexpr LONG kRight = 1, kCentre = 2;
constexpr LONG kTransparent = 0, kFlat = 0, kThreeDimensional = 1;
constexpr LONG k16 = 0, k32 = 2, k48 = 3;

constexpr int kColumns = 3, kMargin = 20, kGap = 8, kCellWidth = 250, kCellHeight = 56, kTitleHeight = 16;

struct Cell {
  const wchar_t* title;
  std::vector<Property> properties;
  std::optional<Scenery::Kind> scenery{};
};

const Cell kCells[] = {
    {L"Plain", {{L"Caption", L"The quick brown fox jumps."}}},
    {L"Wrapped", {{L"Caption", L"A caption that is longer than its control wraps onto the lines below."}}},
    {L"Disabled",
     {{L"Caption", L"<b>Not now</b>: this one is disabled."},
      {L"BackColor", kButtonFace},
      {L"Enabled", false}}},

    {L"b i u s a",
     {{L"Caption", L"<b>Bold</b>, <i>italic</i>, <u>underlined</u>, <s>struck</s> and <a>link</a>."}}},
    {L"c f", {{L"Caption", L"<b>Total</b>: <c=C00000>12</c>, set in <f=Courier New>Courier New</f>."}}},
    {L"sub sup p . (a line, a paragraph)",
     {{L"Caption", L"H<sub>2</sub>O, <i>E</i> = <i>mc</i><sup>2</sup><.>a line down<p>a paragraph"}}},

    {L"effectStroke",
     {{L"TextEffect", kStroke},
      {L"ForeColor", LONG{RGB(255, 255, 255)}},
      {L"EffectColor", LONG{RGB(47, 93, 138)}}}},
    {L"effectShadow", {{L"TextEffect", kShadow}}},
    {L"effectEmboss", {{L"TextEffect", kEmboss}, {L"ForeColor", LONG{RGB(0xD4, 0xD0, 0xC8)}}}},
    {L"effectEngrave", {{L"TextEffect", kEngrave}, {L"ForeColor", LONG{RGB(0xD4, 0xD0, 0xC8)}}}},
    {L"effectHollow", {{L"TextEffect", kHollow}, {L"EffectColor", LONG{RGB(47, 93, 138)}}}},
    {L"Markup with an effect",
     {{L"TextEffect", kStroke},
      {L"EffectColor", LONG{RGB(255, 224, 130)}},
      {L"Caption", L"<c=A02020>Mark</c><c=205080>let</c> "}}},

    {L"System colours",
     {{L"Caption", L"Selected: <b>highlight</b>"},
      {L"BackColor", kHighlight},
      {L"ForeColor", kHighlightText}}},
    {L"System colours, bordered",
     {{L"Caption", L"Information"},
      {L"BackColor", kInfo},
      {L"ForeColor", kInfoText},
      {L"BorderStyle", LONG{1}},
      {L"Appearance", LONG{0}}}},
    {L"RGB colours",
     {{L"Caption", L"#1E5B34 on #E3F1E8"},
      {L"BackColor", LONG{RGB(0xE3, 0xF1, 0xE8)}},
      {L"ForeColor", LONG{RGB(0x1E, 0x5B, 0x34)}}}},

    {L"An image at the left",
     {{L"ImageKey", L"logo"}, {L"ImageSize", k48}, {L"Caption", L"A caption beside its image"}}},
    {L"At the right",
     {{L"ImageKey", L"parcel"},
      {L"ImageSize", k48},
      {L"ImageAlignment", kRight},
      {L"Caption", L"<b>2 parcels</b> from an icon file"}}},
    {L"Centred, under the text",
     {{L"ImageKey", L"star"},
      {L"ImageSize", k48},
      {L"ImageAlignment", kCentre},
      {L"Caption", L"Takes no room"}}},
    {L"Lit while the pointer is on it",
     {{L"ImageKey", L"lamp"},
      {L"ImageKeyhover", L"lit"},
      {L"ImageSize", k48},
      {L"UniToolTipText", L"A light · свет"},
      {L"Caption", L"Switch on"}}},
    {L"Disabled",
     {{L"ImageKey", L"logo"},
      {L"ImageSize", k48},
      {L"BackColor", kButtonFace},
      {L"Enabled", false},
      {L"Caption", L"Grey and faded"}}},
    {L"Alpha over a colour",
     {{L"ImageKey", L"lit"},
      {L"ImageSize", k48},
      {L"BackColor", LONG{RGB(47, 93, 138)}},
      {L"ForeColor", LONG{RGB(255, 255, 255)}},
      {L"Caption", L"Soft edges on any background"}}},
    {L"32x32", {{L"ImageKey", L"parcel"}, {L"ImageSize", k32}, {L"Caption", L"The same icon file"}}},
    {L"16x16, bordered",
     {{L"ImageKey", L"parcel"}, {L"ImageSize", k16}, {L"BorderStyle", LONG{1}}, {L"Caption", L"And again"}}},
    {L"A PNG in another size",
     {{L"ImageKey", L"logo"}, {L"ImageSize", k32}, {L"Caption", L"Made from 48 by 48 pixels"}}},

    {L"Transparent, over a gradient",
     {{L"BackStyle", kTransparent},
      {L"ForeColor", LONG{RGB(255, 255, 255)}},
      {L"ImageKey", L"lit"},
      {L"ImageSize", k48},
      {L"Caption", L"<b>Through</b> to the window"}},
     Scenery::Kind::Gradient},
    {L"Over a picture",
     {{L"BackStyle", kTransparent},
      {L"TextEffect", kStroke},
      {L"FontSize", LONG{14}},
      {L"ForeColor", LONG{RGB(255, 255, 255)}},
      {L"Caption", L"<b>Stars</b> behind"}},
     Scenery::Kind::Picture},
    {L"In a group box",
     {{L"BackStyle", kTransparent}, {L"Caption", L"A <i>label</i> as others are"}},
     Scenery::Kind::GroupBox},
    {L"A flat border, transparent",
     {{L"BackStyle", kTransparent},
      {L"BorderStyle", LONG{1}},
      {L"Appearance", kFlat},
      {L"ForeColor", LONG{RGB(255, 255, 255)}},
      {L"Caption", L"Black, one pixel"}},
     Scenery::Kind::Gradient},
    {L"A three-dimensional border",
     {{L"BorderStyle", LONG{1}},
      {L"BackColor", LONG{RGB(255, 255, 225)}},
      {L"Appearance", kThreeDimensional},
      {L"BackColor", LONG{RGB(255, 255, 225)}},
      {L"Caption", L"Sunken, two pixels"}}},
    {L"AutoSize, one line and wrapped",
     {{L"WordWrap", false},
      {L"BackColor", kInfo},
      {L"ForeColor", kInfoText},
      {L"Caption", L"As wide as its words"},
      {L"AutoSize", true}}},

    {L"Greek", {{L"FontSize", LONG{11}}, {L"Caption", L"<b>Καλημέρα</b>, κόσμε"}}},
    {L"Cyrillic", {{L"FontSize", LONG{11}}, {L"Caption", L"<b>Здравствуй</b>, мир"}}},
    {L"Hebrew", {{L"FontSize", LONG{11}}, {L"Caption", L"שלום, עולם"}}},
    {L"Chinese", {{L"FontSize", LONG{11}}, {L"Caption", L"<f=Droid Sans Fallback>你好，世界</f> "}}},
    {L"Mnemonic", {{L"Caption", L"Save &As..."}}},
    {L"Several things at once",
     {{L"Caption",
       L"<b>3 parcels</b> for <a>Jane Doe</a>: <c=1E7B34>2 arrived</c>, <c=C00000>1 is <i>late</i></c>."}}},
};

const Image kImages[] = {{L"images\\logo.png", L"logo"},
                         {L"images\\lamp.png", L"lamp"},
                         {L"images\\lamp-lit.png", L"lit"},
                         {L"images\\star.png", L"star"},
                         {L"images\\parcel.ico", L"parcel"}};

// Those that one of the properties names.
std::vector<Image> ImagesOf(const Cell& cell) {
  std::vector<Image> images;
  for (const Image& image : kImages)
    for (const Property& property : cell.properties)
      if (const auto* text = std::get_if<const wchar_t*>(&property.value))
        if (std::wstring_view(*text) == image.key) images.push_back(image);
  return images;
}

bool ShowsAnEffect(const Cell& cell) {
  return cell.properties.front().name == std::wstring_view(L"TextEffect");
}

// What the cells of a kind share.
std::vector<Property> WithDefaults(const Cell& cell) {
  std::vector<Property> all;
  if (ShowsAnEffect(cell)) {
    all = {{L"BackColor", LONG{RGB(0xD4, 0xD0, 0xC8)}},
           {L"FontSize", LONG{20}},
           {L"FontBold", true},
           {L"Caption", L"Marklet"}};
  }
  all.insert(all.end(), cell.properties.begin(), cell.properties.end());
  return all;
}

RECT CellPlace(int index) {
  const LONG x = kMargin + index % kColumns * (kCellWidth + kGap);
  const LONG y = kMargin + index / kColumns * (kTitleHeight + kCellHeight + kGap);
  return {x, y, x + kCellWidth, y + kTitleHeight + kCellHeight};
}

RECT ControlPlace(int index) {
  RECT place = CellPlace(index);
  place.top += kTitleHeight;
  return place;
}

}  // namespace

// The frame of a group box stands around its control, in the room between the cells.
std::vector<Scenery> SceneryOfForm() {
  std::vector<Scenery> scenery;
  int index = 0;
  for (const Cell& cell : kCells) {
    RECT place = ControlPlace(index++);
    if (cell.scenery == Scenery::Kind::GroupBox) InflateRect(&place, kGap / 2, 0);
    if (cell.scenery) scenery.push_back({*cell.scenery, place});
  }
  return scenery;
}

std::vector<Item> Contents() {
  std::vector<Item> items;
  int index = 0;
  for (const Cell& cell : kCells) {
    const RECT place = CellPlace(index++);
    const RECT title = {place.left, place.top, place.right, place.top + kTitleHeight};
    RECT control = ControlPlace(index - 1);
    if (cell.scenery == Scenery::Kind::GroupBox) InflateRect(&control, -kGap, -14);
    items.push_back(
        {title, {{L"Caption", cell.title}, {L"ForeColor", LONG{RGB(90, 101, 112)}}}, {}, /*is_title=*/true});
    items.push_back({control, WithDefaults(cell), ImagesOf(cell)});
    if (cell.properties.back().name != std::wstring_view(L"AutoSize")) continue;
    const RECT below = {control.left, control.top + 20, control.left + 150, control.bottom};
    items.push_back({below,
                     {{L"BackColor", kInfo},
                      {L"ForeColor", kInfoText},
                      {L"Caption", L"As high as its words need at this width"},
                      {L"AutoSize", true}}});
  }
  return items;
}

SIZE ContentsSize() {
  const RECT last_column = CellPlace(kColumns - 1);
  const RECT last_row = CellPlace(static_cast<int>(std::size(kCells)) - 1);
  return {last_column.right + kMargin, last_row.bottom + kMargin};
}

}  // namespace form
