// How the rows of the property table get, store and save: what its entries point to.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "control/marklet.h"
#include "control/properties.h"
#include "platform/shared/std_font.h"
#include "platform/system_colours.h"

namespace marklet::property_table {

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

// The text as a designer is shown it.
Value DesignerText(Marklet& control, const std::u16string& text);

template <auto Field>
Value GetDesignerText(Marklet& control) {
  return DesignerText(control, control.State().*Field);
}

void StoreCaption(Marklet& control, const Value& value);
void StoreToolTip(Marklet& control, const Value& value);

// --- Font -------------------------------------------------------------------------------------------------

Value GetFont(Marklet& control);
void StoreFont(Marklet& control, const Value& value);
// The font as it was read, without a copy.
void LoadFont(Marklet& control, const Value& value);

template <auto MemberGetter>
Value GetFontMember(Marklet& control) {
  const FontRef font = control.Host().Font();
  return (font.get()->*MemberGetter)();
}

// The member is set on the font that stands, which its other holders see, and a copy of that is assigned.
template <auto Putter, class Member>
void StoreFontMember(Marklet& control, const Value& value) {
  const FontRef font = control.Host().Font();
  (font.get()->*Putter)(std::get<Member>(value));
  StoreFont(control, font);
}

Value GetFontSize(Marklet& control);
void StoreFontSize(Marklet& control, const Value& value);

// --- Properties with a rule of their own, and those that the host keeps -----------------------------------

void StoreAppearance(Marklet& control, const Value& value);
void StoreUseMnemonic(Marklet& control, const Value& value);
void StoreImageSize(Marklet& control, const Value& value);

Value GetEnabled(Marklet& control);
void StoreEnabled(Marklet& control, const Value& value);
Value GetWindow(Marklet& control);
Value GetMouseIcon(Marklet& control);
void StoreMouseIcon(Marklet& control, const Value& value);
Value GetMousePointer(Marklet& control);
void StoreMousePointer(Marklet& control, const Value& value);

// --- Saved forms ------------------------------------------------------------------------------------------

// Defaults have the types that saved forms have always given them: numbers are Long, but for two.
template <bool Truth>
BagValue FixedBoolean(Marklet&) {
  return Truth;
}
template <Long Number>
BagValue FixedLong(Marklet&) {
  return Number;
}
template <std::int16_t Number>
BagValue FixedShort(Marklet&) {
  return Number;
}
BagValue NoText(Marklet& control);
BagValue AmbientBackColor(Marklet& control);
BagValue AmbientForeColor(Marklet& control);
BagValue AmbientFont(Marklet& control);
BagValue AmbientRightToLeft(Marklet& control);

// A field that is saved and loaded as it stands.
template <auto Field>
consteval SavedAs SavedField(std::string_view key, BagType type, Fallback* fallback) {
  return {key, type, fallback, GetField<Field>, StoreField<Field>};
}
// A property that is saved as it stands and loaded through its setter.
consteval SavedAs SavedBySetter(std::string_view key, BagType type, Fallback* fallback, Getter* get) {
  return {key, type, fallback, get, nullptr};
}
// A key that is read and never written.
consteval SavedAs NeverWritten(SavedAs saved) {
  saved.written = false;
  return saved;
}

}  // namespace marklet::property_table
