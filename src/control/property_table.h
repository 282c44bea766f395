// The property table itself, for those who read it when the program is compiled: lists of keys, and the slots
// of the dispatch interface. Everybody else includes control/properties.h.
//
// To add a property, add its row, and its field to MarkletState if it has one. A row that leaves something
// out isn't compiled; the line that the compiler shows says what is missing.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <string_view>

#include "control/enumeration_values.h"
#include "control/properties.h"
#include "control/property_access.h"
#include "text/caption_style.h"

namespace marklet::property_table {

inline constexpr unsigned kFontMember = kPut | kNotBrowsable | kNotSaved;  // saved with the font

inline constexpr PropertyRow kRows[] = {
    {.name = "AutoSize",
     .dispid = 0x6803006C,
     .type = ValueType::Boolean,
     .steps = kSize | kRedraw,
     .announced = "AutoSize",
     .help = "Determines whether a control is automatically resized to display its entire contents.",
     .category = ";Behavior",
     .get = GetField<&MarkletState::AutoSize>,
     .store = StoreField<&MarkletState::AutoSize>,
     .saved =
         SavedBySetter("AutoSize", BagType::Boolean, FixedBoolean<false>, GetField<&MarkletState::AutoSize>)},
    {.name = "BackColor",
     .dispid = -501,
     .type = ValueType::Colour,
     .steps = kColourFlag | kHostColour | kRedraw,
     .announced = "BackColor",
     .help = "Returns/sets the background color used to display text and graphics in an object.",
     .category = ";Appearance",
     .get = GetField<&MarkletState::BackColor>,
     .store = StoreField<&MarkletState::BackColor>,
     .saved = SavedField<&MarkletState::BackColor>("BackColor", BagType::I4, AmbientBackColor)},
    // Announces the colour's name, and its own never: hosts rely on it.
    {.name = "BackStyle",
     .dispid = -502,
     .type = ValueType::Choice,
     .enumeration = &enumerations::BackStyle,
     .steps = kRedraw,
     .announced = "BackColor",
     .help = "Indicates whether a control is transparent or opaque.",
     .get = GetField<&MarkletState::BackStyle>,
     .store = StoreField<&MarkletState::BackStyle>,
     .saved = SavedField<&MarkletState::BackStyle>("BackStyle", BagType::I4, FixedLong<backOpaque>)},
    {.name = "Appearance",
     .dispid = -520,
     .type = ValueType::Choice,
     .enumeration = &enumerations::AppearanceConstants,
     .steps = kRedraw,
     .announced = "Appearance",
     .help = "Returns/sets whether or not an object is painted at runtime with 3-D effects.",
     .get = GetField<&MarkletState::Appearance>,
     .store = StoreAppearance,
     .saved = SavedField<&MarkletState::Appearance>("Appearance", BagType::I4, FixedShort<appearance3d>)},
    {.name = "BorderStyle",
     .dispid = -504,
     .type = ValueType::Choice,
     .enumeration = &enumerations::BorderConstants,
     .steps = kRedraw,
     .announced = "BorderStyle",
     .help = "Returns/sets the border style for an object.",
     .get = GetField<&MarkletState::BorderStyle>,
     .store = StoreField<&MarkletState::BorderStyle>,
     .saved = SavedField<&MarkletState::BorderStyle>("BorderStyle", BagType::I4, FixedShort<borderNone>)},
    {.name = "Caption",
     .dispid = -518,
     .type = ValueType::Text,
     .attributes = kPut | kUiDefault,
     .steps = kSize | kRedraw | kRaiseChange,
     .announced = "Caption",
     .help = "Returns/sets the text displayed in an object's title bar or below an object's icon.",
     .category = "prpTextEdit;Appearance",
     .get = GetDesignerText<&MarkletState::Caption>,
     .store = StoreCaption,
     .saved = SavedBySetter("Caption", BagType::Bytes, NoText, GetField<&MarkletState::Caption>)},
    {.name = "Font",
     .dispid = -512,
     .type = ValueType::Font,
     .attributes = kPut | kPutRef,
     .steps = kSize | kRedraw,
     .announced = "Font",
     .help = "Returns a Font object.",
     .category = ";Font",
     .get = GetFont,
     .store = StoreFont,
     .saved = {"Font", BagType::Font, AmbientFont, GetFont, LoadFont}},
    {.name = "FontBold",
     .dispid = 0x6803006B,
     .type = ValueType::Boolean,
     .attributes = kFontMember,
     .steps = kSize | kRedraw,
     .announced = "Font",
     .note = "Whether the font is bold.",
     .get = GetFontMember<&StdFont::Bold>,
     .store = StoreFontMember<&StdFont::PutBold, bool>},
    {.name = "FontItalic",
     .dispid = 0x6803006A,
     .type = ValueType::Boolean,
     .attributes = kFontMember,
     .steps = kSize | kRedraw,
     .announced = "Font",
     .note = "Whether the font is italic.",
     .get = GetFontMember<&StdFont::Italic>,
     .store = StoreFontMember<&StdFont::PutItalic, bool>},
    {.name = "FontStrikethru",
     .dispid = 0x68030069,
     .type = ValueType::Boolean,
     .attributes = kFontMember,
     .steps = kSize | kRedraw,
     .announced = "Font",
     .note = "Whether the font is struck through.",
     .get = GetFontMember<&StdFont::Strikethrough>,
     .store = StoreFontMember<&StdFont::PutStrikethrough, bool>},
    {.name = "FontUnderline",
     .dispid = 0x68030068,
     .type = ValueType::Boolean,
     .attributes = kFontMember,
     .steps = kSize | kRedraw,
     .announced = "Font",
     .note = "Whether the font is underlined.",
     .get = GetFontMember<&StdFont::Underline>,
     .store = StoreFontMember<&StdFont::PutUnderline, bool>},
    {.name = "FontName",
     .dispid = 0x68030067,
     .type = ValueType::Text,
     .attributes = kFontMember,
     .steps = kSize | kRedraw,
     .announced = "Font",
     .note = "The font's typeface.",
     .get = GetFontMember<&StdFont::Name>,
     .store = StoreFontMember<&StdFont::PutName, std::u16string>},
    {.name = "FontSize",
     .dispid = 0x68030066,
     .type = ValueType::Number,
     .attributes = kFontMember,
     .steps = kSize | kRedraw,
     .announced = "Font",
     .note = "The font's size in points, as a whole number.",
     .get = GetFontSize,
     .store = StoreFontSize},
    {.name = "ForeColor",
     .dispid = -513,
     .type = ValueType::Colour,
     .steps = kColourFlag | kRedraw,
     .announced = "ForeColor",
     .help = "Returns/sets the foreground color used to display text and graphics in an object.",
     .get = GetField<&MarkletState::ForeColor>,
     .store = StoreField<&MarkletState::ForeColor>,
     .saved = SavedField<&MarkletState::ForeColor>("ForeColor", BagType::I4, AmbientForeColor)},
    {.name = "EffectColor",
     .dispid = 0x68030065,
     .type = ValueType::Colour,
     .steps = kColourFlag | kRedraw,
     .announced = "EffectColor",
     .description = "Returns/sets the color used to display special effects.",
     .get = GetField<&MarkletState::EffectColor>,
     .store = StoreField<&MarkletState::EffectColor>,
     .saved = SavedField<&MarkletState::EffectColor>("EffectColor", BagType::I4,
                                                     FixedLong<static_cast<Long>(kButtonShadow)>)},
    {.name = "ImageKey",
     .dispid = 0x68030064,
     .type = ValueType::Text,
     .steps = kSize | kRedraw,
     .announced = "ImageKey",
     .help = "Returns/sets a unique value representing the key of the image to use.",
     .category = ";Image",
     .get = GetField<&MarkletState::ImageKey>,
     .store = StoreField<&MarkletState::ImageKey>,
     .saved = SavedField<&MarkletState::ImageKey>("ImageKey", BagType::Text, NoText)},
    // The announced name has a capital H that the property's own name has not.
    {.name = "ImageKeyhover",
     .dispid = 0x68030063,
     .type = ValueType::Text,
     .steps = kRedraw,
     .announced = "ImageKeyHover",
     .help =
         "Returns/sets a unique value representing the key of the image to use when the mouse hovers over "
         "the control.",
     .get = GetField<&MarkletState::ImageKeyhover>,
     .store = StoreField<&MarkletState::ImageKeyhover>,
     .saved = SavedField<&MarkletState::ImageKeyhover>("ImageKeyHover", BagType::Text, NoText)},
    {.name = "UseMnemonic",
     .dispid = 0x68030060,
     .type = ValueType::Boolean,
     .announced = "UseMnemonic",
     .help = "Returns/sets a value that specifies whether an & in a control's Caption property defines an "
             "access key.",
     .get = GetField<&MarkletState::UseMnemonic>,
     .store = StoreUseMnemonic,
     .saved = SavedField<&MarkletState::UseMnemonic>("UseMnemonic", BagType::Boolean, FixedBoolean<true>)},
    // The announced name has a small t.
    {.name = "UniToolTipText",
     .dispid = 0x6803005F,
     .type = ValueType::Text,
     .announced = "UniTooltipText",
     .help = "Returns/sets the Unicode text displayed when the mouse is paused over the control.",
     .category = "prpTextEdit;Misc",
     .get = GetDesignerText<&MarkletState::UniToolTipText>,
     .store = StoreToolTip,
     .saved =
         SavedBySetter("UniToolTipText", BagType::Bytes, NoText, GetField<&MarkletState::UniToolTipText>)},
    {.name = "TextEffect",
     .dispid = 0x6803005C,
     .type = ValueType::Choice,
     .enumeration = &enumerations::TextEffects,
     .steps = kRedraw,
     .announced = "TextEffect",
     .description = "Returns/sets the type of effect to be applied to a control's text.",
     .get = GetField<&MarkletState::TextEffect>,
     .store = StoreField<&MarkletState::TextEffect>,
     .saved = SavedField<&MarkletState::TextEffect>("TextEffect", BagType::I4, FixedLong<effectNone>)},
    {.name = "Enabled",
     .dispid = -514,
     .type = ValueType::Boolean,
     .steps = kRedraw,
     .announced = "Enabled",
     .help = "Returns/sets a value that determines whether an object can respond to user-generated events.",
     .get = GetEnabled,
     .store = StoreEnabled,
     .saved = SavedBySetter("Enabled", BagType::Boolean, FixedBoolean<true>, GetEnabled)},
    {.name = "WordWrap",
     .dispid = 0x6803005B,
     .type = ValueType::Boolean,
     .steps = kSize | kRedraw,
     .announced = "WordWrap",
     .help = "Returns/sets a value that determines whether a control will wrap long lines of text to fit in "
             "the control.",
     .get = GetField<&MarkletState::WordWrap>,
     .store = StoreField<&MarkletState::WordWrap>,
     .saved = SavedField<&MarkletState::WordWrap>("WordWrap", BagType::Boolean, FixedBoolean<true>)},
    {.name = "ImageAlignment",
     .dispid = 0x6803005A,
     .type = ValueType::Choice,
     .enumeration = &enumerations::HorizontalAlignment,
     .steps = kRedraw,
     .announced = "ImageAlignment",
     .help = "Returns/sets the alignment of the control's image.",
     .get = GetField<&MarkletState::ImageAlignment>,
     .store = StoreField<&MarkletState::ImageAlignment>,
     .saved = SavedBySetter("ImageAlignment", BagType::I4, FixedLong<alignLeft>,
                            GetField<&MarkletState::ImageAlignment>)},
    {.name = "ImageSize",
     .dispid = 0x68030059,
     .type = ValueType::Choice,
     .enumeration = &enumerations::ImageSizes,
     .steps = kSize | kRedraw,
     .announced = "ImageSize",
     .help = "Returns/sets the size of the image when rendered in the control.",
     .get = GetField<&MarkletState::ImageSize>,
     .store = StoreImageSize,
     .saved = SavedBySetter("ImageSize", BagType::I4, FixedLong<0>, GetField<&MarkletState::ImageSize>)},
    {.name = "hwnd",
     .dispid = 0x68030058,
     .type = ValueType::Number,
     .attributes = kNotBrowsable | kNotSaved,
     .note = "The handle of the control's window.",
     .get = GetWindow},
    {.name = "MouseIcon",
     .dispid = 0x68030057,
     .type = ValueType::Picture,
     .attributes = kPutRef | kNotAnnounced | kNotSaved,
     .note = "The picture of the pointer over the control, where `MousePointer` asks for one.",
     .get = GetMouseIcon,
     .store = StoreMouseIcon},
    {.name = "MousePointer",
     .dispid = 0x68030056,
     .type = ValueType::MousePointer,
     .attributes = kPut | kNotAnnounced | kNotSaved,
     .note = "The shape of the pointer over the control, by the host's own constants.",
     .get = GetMousePointer,
     .store = StoreMousePointer},
};

inline constexpr PropertyRow kHiddenRows[] = {
    {.name = "Padding",
     .dispid = 0x68030062,
     .type = ValueType::Number,
     .steps = kSize | kRedraw,
     .announced = "Padding",
     .get = GetField<&MarkletState::Padding>,
     .store = StoreField<&MarkletState::Padding>,
     .saved = SavedField<&MarkletState::Padding>("Padding", BagType::I4, FixedShort<borderNone>)},
    {.name = "RightToLeft",
     .dispid = 0x68030061,
     .type = ValueType::Boolean,
     .steps = kRedraw,
     .announced = "RightToLeft",
     .get = GetField<&MarkletState::RightToLeft>,
     .store = StoreField<&MarkletState::RightToLeft>,
     .saved = SavedField<&MarkletState::RightToLeft>("RightToLeft", BagType::Boolean, AmbientRightToLeft)},
    // A form that holds another than 0 loses it at its next save.
    {.name = "Alignment",
     .dispid = 0x6803005E,
     .type = ValueType::Choice,
     .enumeration = &enumerations::HorizontalJAlignment,
     .steps = kRedraw,
     .announced = "Alignment",
     .get = GetField<&MarkletState::Alignment>,
     .store = StoreField<&MarkletState::Alignment>,
     .saved =
         NeverWritten(SavedField<&MarkletState::Alignment>("Alignment", BagType::I4, FixedLong<alignLeft>))},
    {.name = "VerticalAlignment",
     .dispid = 0x6803005D,
     .type = ValueType::Choice,
     .enumeration = &enumerations::VertAlignment,
     .steps = kRedraw,
     .announced = "VerticalAlignment",
     .get = GetField<&MarkletState::VerticalAlignment>,
     .store = StoreField<&MarkletState::VerticalAlignment>,
     .saved = SavedField<&MarkletState::VerticalAlignment>("VerticalAlignment", BagType::I4,
                                                           FixedLong<verticalTop>)},
};

// --- The method -------------------------------------------------------------------------------------------

inline constexpr Argument kLoadArguments[] = {{"sfile", ArgumentType::String},
                                              {"sKey", ArgumentType::String}};
inline constexpr MethodRow kLoadIconImageFromFile = {"LoadIconImageFromFile", 0x6003008D, kLoadArguments};

// Both tables as one.
inline constexpr auto kAllRows = [] {
  std::array<const PropertyRow*, std::size(kRows) + std::size(kHiddenRows)> rows{};
  std::size_t count = 0;
  for (const PropertyRow& row : kRows) rows[count++] = &row;
  for (const PropertyRow& row : kHiddenRows) rows[count++] = &row;
  return rows;
}();

// --- What must hold of a row ------------------------------------------------------------------------------

consteval bool FitsBag(ValueType type, BagType bag) {
  switch (type) {
    case ValueType::Boolean:
      return bag == BagType::Boolean;
    case ValueType::Number:
    case ValueType::Colour:
    case ValueType::Choice:
    case ValueType::MousePointer:
      return bag == BagType::I4;
    case ValueType::Text:
      return bag == BagType::Text || bag == BagType::Bytes;
    case ValueType::Font:
      return bag == BagType::Font;
    case ValueType::Picture:
      return false;
  }
  throw "no type at all";
}

consteval void CheckAccess(const PropertyRow& row) {
  constexpr unsigned kPuts = kPut | kPutRef;
  const bool settable = (row.attributes & kPuts) != 0;
  if (!row.get.IsThere()) throw "a property must have a getter";
  if (settable && !row.store.IsThere()) throw "a property that can be set must have a store";
  if (!settable && row.store.IsThere()) throw "a store needs kPut or kPutRef";
  if (!settable && row.steps != 0) throw "steps belong to a property that can be set";
  const bool announces = settable && (row.attributes & kNotAnnounced) == 0;
  if (announces && row.announced.empty()) throw "a setter must announce a name, or be kNotAnnounced";
  if (!announces && !row.announced.empty()) throw "only a setter that isn't kNotAnnounced announces a name";
}

consteval void CheckSaved(const PropertyRow& row) {
  const SavedAs& saved = row.saved;
  const bool stays_out = (row.attributes & kNotSaved) != 0;
  if (!stays_out && saved.key.empty()) throw "a property must have a key in saved forms, or be kNotSaved";
  if (stays_out && !saved.key.empty()) throw "a property that is kNotSaved has no key";
  if (stays_out) return;
  if (!saved.fallback.IsThere()) throw "a saved property must have a default";
  if (!saved.get.IsThere()) throw "a saved property must say what is saved";
  if (!saved.store.IsThere() && !row.store.IsThere()) throw "a saved property must be stored when loaded";
  if (!FitsBag(row.type, saved.type)) throw "a property must be saved in a type that holds its own";
}

consteval void Check(const PropertyRow& row, bool is_public) {
  if (row.name.empty()) throw "a property must have a name";
  if (row.dispid == 0) throw "a property must have an identifier";
  if (AlternativeOf(row.type) == std::variant_npos) throw "a property must have a type";
  if ((row.type == ValueType::Choice) != row.enumeration.IsThere())
    throw "a Choice, and nothing else, must name its enumeration";
  if (is_public && row.help.empty() && row.description.empty() && row.note.empty())
    throw "a property must say what it is: as a help string, a description or a note";
  CheckAccess(row);
  CheckSaved(row);
}

consteval void CheckPair(const PropertyRow& row, const PropertyRow& other) {
  if (SamePropertyName(row.name, other.name)) throw "two properties have one name";
  if (row.dispid == other.dispid) throw "two properties have one identifier";
  if (!row.saved.key.empty() && row.saved.key == other.saved.key) throw "two properties have one key";
}

consteval bool IsWhole() {
  int first_shown = 0;
  for (const PropertyRow& row : kRows) {
    Check(row, true);
    if (row.attributes & kUiDefault) ++first_shown;
  }
  for (const PropertyRow& row : kHiddenRows) Check(row, false);
  for (std::size_t i = 0; i < kAllRows.size(); ++i) {
    if (kAllRows[i]->dispid == kLoadIconImageFromFile.dispid) throw "a property has the method's identifier";
    for (std::size_t j = 0; j < i; ++j) CheckPair(*kAllRows[i], *kAllRows[j]);
  }
  if (first_shown != 1) throw "one property is kUiDefault";
  return true;
}
static_assert(IsWhole());

// --- Look-up when the program is compiled -----------------------------------------------------------------

// The row that is saved under a key. A key that no row has is an error of the compiler: this is used in
// constants only.
constexpr const PropertyRow& RowSavedAs(std::string_view key) {
  for (const PropertyRow* row : kAllRows)
    if (!key.empty() && row->saved.key == key) return *row;
  throw "no property is saved under this key";
}

template <std::size_t Count>
using RowList = std::array<const PropertyRow*, Count>;

constexpr bool Holds(std::span<const PropertyRow* const> rows, const PropertyRow& row) {
  return std::ranges::any_of(rows, [&row](const PropertyRow* held) { return held->name == row.name; });
}

template <std::size_t Count>
consteval RowList<Count> RowsSavedAs(const std::string_view (&keys)[Count]) {
  RowList<Count> rows{};
  for (std::size_t i = 0; i < Count; ++i) {
    const PropertyRow& row = RowSavedAs(keys[i]);
    if (Holds(std::span(rows).first(i), row)) throw "a key stands in a list twice";
    rows[i] = &row;
  }
  return rows;
}

// The saved rows that `Takes` picks: those of `first`, in that order, and after them all others in the order
// of the table. So a new property needs no place in a list, and can't be forgotten in it.
template <bool (*Takes)(const PropertyRow&), std::size_t Count>
consteval auto SavedRows(const RowList<Count>& first) {
  constexpr auto kTaken = [](const PropertyRow* row) { return !row->saved.key.empty() && Takes(*row); };
  RowList<std::ranges::count_if(kAllRows, kTaken)> rows{};
  std::size_t count = 0;
  for (const PropertyRow* row : first) {
    if (!kTaken(row)) throw "a key stands in a list that it doesn't belong to";
    rows[count++] = row;
  }
  for (const PropertyRow* row : kAllRows)
    if (kTaken(row) && !Holds(first, *row)) rows[count++] = row;
  return rows;
}

}  // namespace marklet::property_table
