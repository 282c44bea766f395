#include "control/properties.h"

#include <algorithm>
#include <cstdint>
#include <type_traits>

#include "base/ignore_errors.h"
#include "base/rounding.h"
#include "control/layout.h"
#include "control/marklet.h"
#include "markup/font_colour_tags.h"
#include "platform/shared/os_tests.h"
#include "platform/system.h"
#include "text/string_helpers.h"

namespace marklet {
namespace {

// --- Properties that are a field of the state -------------------------------------------------------------

template <auto Field>
using FieldType = std::remove_reference_t<decltype(std::declval<MarkletState&>().*Field)>;

template <auto Field>
Value GetField(Marklet& control) {
  const auto& field = control.State().*Field;
  if constexpr (std::is_same_v<FieldType<Field>, OLE_COLOR>)
    return static_cast<Long>(field);
  else
    return field;
}

template <auto Field>
void StoreField(Marklet& control, const Value& value) {
  auto& field = control.State().*Field;
  if constexpr (std::is_same_v<FieldType<Field>, OLE_COLOR>)
    field = static_cast<OLE_COLOR>(std::get<Long>(value));
  else
    field = std::get<FieldType<Field>>(value);
}

// --- Texts ------------------------------------------------------------------------------------------------

// Designers can't show every text: they get this in place of one that isn't plain Latin.
constexpr std::u16string_view kPlaceholder = u"(Unicode Text)";

template <auto Field>
Value GetDesignerText(Marklet& control) {
  const std::u16string& text = control.State().*Field;
  if (!control.Host().AmbientProperties().UserMode() && IsUnicodeText(text))
    return std::u16string(kPlaceholder);
  return text;
}

// By the rules of English (United States), whatever language the system has.
constexpr std::uint32_t kWindowTextCodePage = 1252;

// The default window procedure is called directly, so that a subclass doesn't see the text pass.
void GiveWindowText(Marklet& control) {
  const std::u16string& caption = control.State().Caption;
  if (IsNT4OrLater())
    DefWindowProcW_SetText(control.Host().hWnd(), caption);
  else
    DefWindowProcA_SetText(control.Host().hWnd(), WideCharToMultiByte(kWindowTextCodePage, caption));
}

void StoreCaption(Marklet& control, const Value& value) {
  control.State().Caption = DecodeUtf8IfEncoded(std::get<std::u16string>(value));
  IgnoreErrors([&] { GiveWindowText(control); });
  if (control.State().UseMnemonic) control.UpdateAccessKeys(control.State().Caption);
}

void StoreToolTip(Marklet& control, const Value& value) {
  control.State().UniToolTipText = DecodeUtf8IfEncoded(std::get<std::u16string>(value));
}

// --- Font -------------------------------------------------------------------------------------------------

Value GetFont(Marklet& control) { return control.Host().Font(); }

void StoreFont(Marklet& control, const Value& value) {
  control.Host().PutFont(CloneFont(std::get<FontRef>(value)));
}

template <auto Getter>
Value GetFontMember(Marklet& control) {
  const FontRef font = control.Host().Font();
  return (font.get()->*Getter)();
}

// The member is set on the font that stands, which its other holders see, and a copy of that is assigned.
template <auto Putter, class Member>
void StoreFontMember(Marklet& control, const Value& value) {
  const FontRef font = control.Host().Font();
  (font.get()->*Putter)(std::get<Member>(value));
  StoreFont(control, font);
}

Value GetFontSize(Marklet& control) { return Value(RoundHalfEven(control.Host().Font()->Size())); }

void StoreFontSize(Marklet& control, const Value& value) {
  const FontRef font = control.Host().Font();
  font->PutSize(std::get<Long>(value));
  StoreFont(control, font);
}

// --- Properties with a rule of their own ------------------------------------------------------------------

constexpr OLE_COLOR kButtonFace = 0x8000000F, kWindow = 0x80000005;

// A change of look brings the background that goes with it; nobody is told of that colour.
void StoreAppearance(Marklet& control, const Value& value) {
  const Long appearance = std::get<Long>(value);
  MarkletState& state = control.State();
  if (state.Appearance == appearance) return;
  state.Appearance = appearance;
  state.BackColor = appearance != 0 ? kButtonFace : kWindow;
}

void StoreUseMnemonic(Marklet& control, const Value& value) {
  MarkletState& state = control.State();
  state.UseMnemonic = std::get<bool>(value);
  control.UpdateAccessKeys(state.UseMnemonic ? state.Caption : std::u16string());
}

void StoreImageSize(Marklet& control, const Value& value) {
  MarkletState& state = control.State();
  state.ImageSize = std::get<Long>(value);
  state.ImagePixels = PixelsOfImageSize(state.ImageSize);
}

// --- Properties that the host keeps -----------------------------------------------------------------------

Value GetEnabled(Marklet& control) { return control.Host().Enabled(); }
void StoreEnabled(Marklet& control, const Value& value) { control.Host().PutEnabled(std::get<bool>(value)); }

// Window handles have 32 significant bits on every system.
Value GetWindow(Marklet& control) {
  return static_cast<Long>(reinterpret_cast<std::intptr_t>(control.Host().hWnd()));
}

Value GetMouseIcon(Marklet& control) { return control.Host().MouseIcon(); }
void StoreMouseIcon(Marklet& control, const Value& value) {
  control.Host().PutMouseIcon(std::get<HostObjectRef>(value));
}

Value GetMousePointer(Marklet& control) { return control.Host().MousePointer(); }
void StoreMousePointer(Marklet& control, const Value& value) {
  control.Host().PutMousePointer(std::get<Long>(value));
}

// --- Saved forms ------------------------------------------------------------------------------------------

template <auto Number>
BagValue Fixed(Marklet&) {
  return Number;
}
BagValue NoText(Marklet&) { return std::u16string(); }
BagValue AmbientBackColor(Marklet& control) {
  return static_cast<Long>(control.Host().AmbientProperties().BackColor());
}
BagValue AmbientForeColor(Marklet& control) {
  return static_cast<Long>(control.Host().AmbientProperties().ForeColor());
}
BagValue AmbientFont(Marklet& control) { return control.Host().AmbientProperties().Font(); }
BagValue AmbientRightToLeft(Marklet& control) { return control.Host().AmbientProperties().RightToLeft(); }

// The font as it was read, without a copy.
void LoadFont(Marklet& control, const Value& value) { control.Host().PutFont(std::get<FontRef>(value)); }

// A field that is saved and loaded as it stands.
template <auto Field>
constexpr SavedAs SavedField(std::string_view key, BagType type, BagValue (*fallback)(Marklet&)) {
  return {key, type, fallback, GetField<Field>, StoreField<Field>};
}
// A property that is saved as it stands and loaded through its setter.
constexpr SavedAs SavedBySetter(std::string_view key, BagType type, BagValue (*fallback)(Marklet&),
                                Value (*get)(Marklet&)) {
  return {key, type, fallback, get, nullptr};
}

// Fallbacks have the types that saved forms have always given them.
constexpr std::int16_t kShortZero = 0, kShortOne = 1;
constexpr Long kZero = 0, kOne = 1, kButtonShadow = static_cast<Long>(0x80000010);

// --- The table --------------------------------------------------------------------------------------------

using S = MarkletState;
constexpr unsigned kFontMember = kPut | kNotBrowsable;

constexpr PropertyRow kRows[] = {
    {.name = "AutoSize",
     .dispid = 0x6803006C,
     .type = ValueType::Boolean,
     .steps = kSize | kRedraw,
     .announced = "AutoSize",
     .help = "Determines whether a control is automatically resized to display its entire contents.",
     .category = ";Behavior",
     .get = GetField<&S::AutoSize>,
     .store = StoreField<&S::AutoSize>,
     .saved = SavedBySetter("AutoSize", BagType::Boolean, Fixed<false>, GetField<&S::AutoSize>)},
    {.name = "BackColor",
     .dispid = -501,
     .type = ValueType::Colour,
     .steps = kColourFlag | kHostColour | kRedraw,
     .announced = "BackColor",
     .help = "Returns/sets the background color used to display text and graphics in an object.",
     .category = ";Appearance",
     .get = GetField<&S::BackColor>,
     .store = StoreField<&S::BackColor>,
     .saved = SavedField<&S::BackColor>("BackColor", BagType::I4, AmbientBackColor)},
    // Announces the colour's name, and its own never: hosts rely on it.
    {.name = "BackStyle",
     .dispid = -502,
     .type = ValueType::Choice,
     .enumeration = &enumerations::BackStyle,
     .steps = kRedraw,
     .announced = "BackColor",
     .help = "Indicates whether a control is transparent or opaque.",
     .get = GetField<&S::BackStyle>,
     .store = StoreField<&S::BackStyle>,
     .saved = SavedField<&S::BackStyle>("BackStyle", BagType::I4, Fixed<kOne>)},
    {.name = "Appearance",
     .dispid = -520,
     .type = ValueType::Choice,
     .enumeration = &enumerations::AppearanceConstants,
     .steps = kRedraw,
     .announced = "Appearance",
     .help = "Returns/sets whether or not an object is painted at runtime with 3-D effects.",
     .get = GetField<&S::Appearance>,
     .store = StoreAppearance,
     .saved = SavedField<&S::Appearance>("Appearance", BagType::I4, Fixed<kShortOne>)},
    {.name = "BorderStyle",
     .dispid = -504,
     .type = ValueType::Choice,
     .enumeration = &enumerations::BorderConstants,
     .steps = kRedraw,
     .announced = "BorderStyle",
     .help = "Returns/sets the border style for an object.",
     .get = GetField<&S::BorderStyle>,
     .store = StoreField<&S::BorderStyle>,
     .saved = SavedField<&S::BorderStyle>("BorderStyle", BagType::I4, Fixed<kShortZero>)},
    {.name = "Caption",
     .dispid = -518,
     .type = ValueType::Text,
     .attributes = kPut | kUiDefault,
     .steps = kSize | kRedraw | kRaiseChange,
     .announced = "Caption",
     .help = "Returns/sets the text displayed in an object's title bar or below an object's icon.",
     .category = "prpTextEdit;Appearance",
     .get = GetDesignerText<&S::Caption>,
     .store = StoreCaption,
     .saved = SavedBySetter("Caption", BagType::Bytes, NoText, GetField<&S::Caption>)},
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
     .get = GetFontMember<&StdFont::Bold>,
     .store = StoreFontMember<&StdFont::PutBold, bool>},
    {.name = "FontItalic",
     .dispid = 0x6803006A,
     .type = ValueType::Boolean,
     .attributes = kFontMember,
     .steps = kSize | kRedraw,
     .announced = "Font",
     .get = GetFontMember<&StdFont::Italic>,
     .store = StoreFontMember<&StdFont::PutItalic, bool>},
    {.name = "FontStrikethru",
     .dispid = 0x68030069,
     .type = ValueType::Boolean,
     .attributes = kFontMember,
     .steps = kSize | kRedraw,
     .announced = "Font",
     .get = GetFontMember<&StdFont::Strikethrough>,
     .store = StoreFontMember<&StdFont::PutStrikethrough, bool>},
    {.name = "FontUnderline",
     .dispid = 0x68030068,
     .type = ValueType::Boolean,
     .attributes = kFontMember,
     .steps = kSize | kRedraw,
     .announced = "Font",
     .get = GetFontMember<&StdFont::Underline>,
     .store = StoreFontMember<&StdFont::PutUnderline, bool>},
    {.name = "FontName",
     .dispid = 0x68030067,
     .type = ValueType::Text,
     .attributes = kFontMember,
     .steps = kSize | kRedraw,
     .announced = "Font",
     .get = GetFontMember<&StdFont::Name>,
     .store = StoreFontMember<&StdFont::PutName, std::u16string>},
    {.name = "FontSize",
     .dispid = 0x68030066,
     .type = ValueType::Number,
     .attributes = kFontMember,
     .steps = kSize | kRedraw,
     .announced = "Font",
     .get = GetFontSize,
     .store = StoreFontSize},
    {.name = "ForeColor",
     .dispid = -513,
     .type = ValueType::Colour,
     .steps = kColourFlag | kRedraw,
     .announced = "ForeColor",
     .help = "Returns/sets the foreground color used to display text and graphics in an object.",
     .get = GetField<&S::ForeColor>,
     .store = StoreField<&S::ForeColor>,
     .saved = SavedField<&S::ForeColor>("ForeColor", BagType::I4, AmbientForeColor)},
    {.name = "EffectColor",
     .dispid = 0x68030065,
     .type = ValueType::Colour,
     .steps = kColourFlag | kRedraw,
     .announced = "EffectColor",
     .description = "Returns/sets the color used to display special effects.",
     .get = GetField<&S::EffectColor>,
     .store = StoreField<&S::EffectColor>,
     .saved = SavedField<&S::EffectColor>("EffectColor", BagType::I4, Fixed<kButtonShadow>)},
    {.name = "ImageKey",
     .dispid = 0x68030064,
     .type = ValueType::Text,
     .steps = kSize | kRedraw,
     .announced = "ImageKey",
     .help = "Returns/sets a unique value representing the key of the image to use.",
     .category = ";Image",
     .get = GetField<&S::ImageKey>,
     .store = StoreField<&S::ImageKey>,
     .saved = SavedField<&S::ImageKey>("ImageKey", BagType::Text, NoText)},
    // The announced name has a capital H that the property's own name has not.
    {.name = "ImageKeyhover",
     .dispid = 0x68030063,
     .type = ValueType::Text,
     .steps = kRedraw,
     .announced = "ImageKeyHover",
     .help =
         "Returns/sets a unique value representing the key of the image to use when the mouse hovers over "
         "the control.",
     .get = GetField<&S::ImageKeyhover>,
     .store = StoreField<&S::ImageKeyhover>,
     .saved = SavedField<&S::ImageKeyhover>("ImageKeyHover", BagType::Text, NoText)},
    {.name = "UseMnemonic",
     .dispid = 0x68030060,
     .type = ValueType::Boolean,
     .announced = "UseMnemonic",
     .help = "Returns/sets a value that specifies whether an & in a control's Caption property defines an "
             "access key.",
     .get = GetField<&S::UseMnemonic>,
     .store = StoreUseMnemonic,
     .saved = SavedField<&S::UseMnemonic>("UseMnemonic", BagType::Boolean, Fixed<true>)},
    // The announced name has a small t.
    {.name = "UniToolTipText",
     .dispid = 0x6803005F,
     .type = ValueType::Text,
     .announced = "UniTooltipText",
     .help = "Returns/sets the Unicode text displayed when the mouse is paused over the control.",
     .category = "prpTextEdit;Misc",
     .get = GetDesignerText<&S::UniToolTipText>,
     .store = StoreToolTip,
     .saved = SavedBySetter("UniToolTipText", BagType::Bytes, NoText, GetField<&S::UniToolTipText>)},
    {.name = "TextEffect",
     .dispid = 0x6803005C,
     .type = ValueType::Choice,
     .enumeration = &enumerations::TextEffects,
     .steps = kRedraw,
     .announced = "TextEffect",
     .description = "Returns/sets the type of effect to be applied to a control's text.",
     .get = GetField<&S::TextEffect>,
     .store = StoreField<&S::TextEffect>,
     .saved = SavedField<&S::TextEffect>("TextEffect", BagType::I4, Fixed<kZero>)},
    {.name = "Enabled",
     .dispid = -514,
     .type = ValueType::Boolean,
     .steps = kRedraw,
     .announced = "Enabled",
     .help = "Returns/sets a value that determines whether an object can respond to user-generated events.",
     .get = GetEnabled,
     .store = StoreEnabled,
     .saved = SavedBySetter("Enabled", BagType::Boolean, Fixed<true>, GetEnabled)},
    {.name = "WordWrap",
     .dispid = 0x6803005B,
     .type = ValueType::Boolean,
     .steps = kSize | kRedraw,
     .announced = "WordWrap",
     .help = "Returns/sets a value that determines whether a control will wrap long lines of text to fit in "
             "the control.",
     .get = GetField<&S::WordWrap>,
     .store = StoreField<&S::WordWrap>,
     .saved = SavedField<&S::WordWrap>("WordWrap", BagType::Boolean, Fixed<true>)},
    {.name = "ImageAlignment",
     .dispid = 0x6803005A,
     .type = ValueType::Choice,
     .enumeration = &enumerations::HorizontalAlignment,
     .steps = kRedraw,
     .announced = "ImageAlignment",
     .help = "Returns/sets the alignment of the control's image.",
     .get = GetField<&S::ImageAlignment>,
     .store = StoreField<&S::ImageAlignment>,
     .saved = SavedBySetter("ImageAlignment", BagType::I4, Fixed<kZero>, GetField<&S::ImageAlignment>)},
    {.name = "ImageSize",
     .dispid = 0x68030059,
     .type = ValueType::Choice,
     .enumeration = &enumerations::ImageSizes,
     .steps = kSize | kRedraw,
     .announced = "ImageSize",
     .help = "Returns/sets the size of the image when rendered in the control.",
     .get = GetField<&S::ImageSize>,
     .store = StoreImageSize,
     .saved = SavedBySetter("ImageSize", BagType::I4, Fixed<kZero>, GetField<&S::ImageSize>)},
    {.name = "hwnd",
     .dispid = 0x68030058,
     .type = ValueType::Number,
     .attributes = kNotBrowsable,
     .get = GetWindow},
    {.name = "MouseIcon",
     .dispid = 0x68030057,
     .type = ValueType::Picture,
     .attributes = kPutRef,
     .get = GetMouseIcon,
     .store = StoreMouseIcon},
    {.name = "MousePointer",
     .dispid = 0x68030056,
     .type = ValueType::MousePointer,
     .get = GetMousePointer,
     .store = StoreMousePointer},
};

constexpr PropertyRow kHiddenRows[] = {
    {.name = "Padding",
     .dispid = 0x68030062,
     .type = ValueType::Number,
     .steps = kSize | kRedraw,
     .announced = "Padding",
     .get = GetField<&S::Padding>,
     .store = StoreField<&S::Padding>,
     .saved = SavedField<&S::Padding>("Padding", BagType::I4, Fixed<kShortZero>)},
    {.name = "RightToLeft",
     .dispid = 0x68030061,
     .type = ValueType::Boolean,
     .steps = kRedraw,
     .announced = "RightToLeft",
     .get = GetField<&S::RightToLeft>,
     .store = StoreField<&S::RightToLeft>,
     .saved = SavedField<&S::RightToLeft>("RightToLeft", BagType::Boolean, AmbientRightToLeft)},
    {.name = "Alignment",
     .dispid = 0x6803005E,
     .type = ValueType::Choice,
     .enumeration = &enumerations::HorizontalJAlignment,
     .steps = kRedraw,
     .announced = "Alignment",
     .get = GetField<&S::Alignment>,
     .store = StoreField<&S::Alignment>,
     .saved = SavedField<&S::Alignment>("Alignment", BagType::I4, Fixed<kZero>)},
    {.name = "VerticalAlignment",
     .dispid = 0x6803005D,
     .type = ValueType::Choice,
     .enumeration = &enumerations::VertAlignment,
     .steps = kRedraw,
     .announced = "VerticalAlignment",
     .get = GetField<&S::VerticalAlignment>,
     .store = StoreField<&S::VerticalAlignment>,
     .saved = SavedField<&S::VerticalAlignment>("VerticalAlignment", BagType::I4, Fixed<kZero>)},
};

constexpr Argument kLoadArguments[] = {{"sfile", ArgumentType::String}, {"sKey", ArgumentType::String}};
constexpr MethodRow kLoadIconImageFromFile = {"LoadIconImageFromFile", 0x6003008D, kLoadArguments};

constexpr char LowerCase(char ch) { return ch >= 'A' && ch <= 'Z' ? static_cast<char>(ch + 32) : ch; }

}  // namespace

std::span<const PropertyRow> Properties() { return kRows; }
std::span<const PropertyRow> HiddenProperties() { return kHiddenRows; }
const MethodRow& LoadIconImageFromFileRow() { return kLoadIconImageFromFile; }

const PropertyRow* FindProperty(std::string_view name) {
  const auto same = [name](const PropertyRow& row) {
    return std::equal(row.name.begin(), row.name.end(), name.begin(), name.end(),
                      [](char a, char b) { return LowerCase(a) == LowerCase(b); });
  };
  const auto found = std::find_if(std::begin(kRows), std::end(kRows), same);
  return found == std::end(kRows) ? nullptr : found;
}

const PropertyRow* FindSaved(std::string_view key) {
  for (const auto& rows : {Properties(), HiddenProperties()})
    for (const PropertyRow& row : rows)
      if (row.saved.key == key) return &row;
  return nullptr;
}

bool HoldsType(const Value& value, ValueType type) {
  switch (type) {
    case ValueType::Boolean:
      return std::holds_alternative<bool>(value);
    case ValueType::Text:
      return std::holds_alternative<std::u16string>(value);
    case ValueType::Font:
      return std::holds_alternative<FontRef>(value);
    case ValueType::Picture:
      return std::holds_alternative<HostObjectRef>(value);
    default:
      return std::holds_alternative<Long>(value);
  }
}

}  // namespace marklet
