// The value of a property on its way between a host and the control.
#pragma once

#include <cstddef>
#include <string>
#include <variant>

#include "base/alternative.h"
#include "host/user_control.h"
#include "platform/shared/std_font.h"
#include "platform/types.h"

namespace marklet {

// Enumerations and colours travel as Long. monostate is a value that could not be had or converted.
using Value = std::variant<std::monostate, bool, Long, std::u16string, FontRef, HostObjectRef>;

// From 1 on, so that a property whose type was forgotten has none.
enum class ValueType {
  Boolean = 1,
  Number,
  Colour,  // an OLE colour
  Choice,  // of the row's enumeration; any number is taken as given
  Text,
  Font,
  Picture,
  MousePointer,  // of the host's own constants
};

// The place among the alternatives of Value at which a value of this type stands.
constexpr std::size_t AlternativeOf(ValueType type) {
  switch (type) {
    case ValueType::Boolean:
      return kPlaceIn<bool, Value>;
    case ValueType::Number:
    case ValueType::Colour:
    case ValueType::Choice:
    case ValueType::MousePointer:
      return kPlaceIn<Long, Value>;
    case ValueType::Text:
      return kPlaceIn<std::u16string, Value>;
    case ValueType::Font:
      return kPlaceIn<FontRef, Value>;
    case ValueType::Picture:
      return kPlaceIn<HostObjectRef, Value>;
  }
  return std::variant_npos;  // no type at all
}

// What a value of this type is held as.
template <ValueType Type>
using HeldAs = std::variant_alternative_t<AlternativeOf(Type), Value>;

// Whether a value has the type that a row's store takes.
inline bool HoldsType(const Value& value, ValueType type) { return value.index() == AlternativeOf(type); }

}  // namespace marklet
