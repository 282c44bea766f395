// Where a host keeps the control's saved properties: values under names.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "base/alternative.h"
#include "base/byte_array.h"
#include "platform/shared/std_font.h"
#include "platform/types.h"

namespace marklet {

enum class BagType { I2, I4, Boolean, Text, Bytes, Font };

// One alternative a type, in the order of BagType after monostate, which is a value that couldn't be had.
using BagValue = std::variant<std::monostate, std::int16_t, Long, bool, std::u16string, ByteArray, FontRef>;
inline constexpr std::size_t kBagTypes = std::variant_size_v<BagValue> - 1;

// The place among the alternatives at which a value of this type stands.
constexpr std::size_t AlternativeOf(BagType type) {
  switch (type) {
    case BagType::I2:
      return kPlaceIn<std::int16_t, BagValue>;
    case BagType::I4:
      return kPlaceIn<Long, BagValue>;
    case BagType::Boolean:
      return kPlaceIn<bool, BagValue>;
    case BagType::Text:
      return kPlaceIn<std::u16string, BagValue>;
    case BagType::Bytes:
      return kPlaceIn<ByteArray, BagValue>;
    case BagType::Font:
      return kPlaceIn<FontRef, BagValue>;
  }
  return std::variant_npos;  // no type at all
}

// Whether a table has one row a type, in the order of BagType, so that a type is the index of its row.
template <class Row, std::size_t Count>
consteval bool HasRowForEachType(const Row (&rows)[Count]) {
  if (Count != kBagTypes) throw "each type of a saved value must have a row";
  for (std::size_t i = 0; i < Count; ++i)
    if (AlternativeOf(rows[i].type) != i + 1) throw "the rows must follow the order of the types";
  return true;
}

// Of a value that isn't monostate.
template <class Row>
constexpr const Row& RowOfValue(const Row (&rows)[kBagTypes], const BagValue& value) {
  return rows[value.index() - 1];
}
template <class Row>
constexpr const Row& RowOfType(const Row (&rows)[kBagTypes], BagType type) {
  return rows[AlternativeOf(type) - 1];
}

class PropertyBag {
 public:
  virtual ~PropertyBag() = default;

  // The value under `name` in the type asked for, whatever convertible shape it was saved in; but a text
  // where bytes are asked for stays a text. Nothing when there is no such name; monostate when there is one
  // that can't be converted.
  virtual std::optional<BagValue> ReadProperty(std::string_view name, BagType type) = 0;

  // May leave out a value that equals `fallback`, type included. A name is written once.
  virtual void WriteProperty(std::string_view name, const BagValue& value, const BagValue& fallback) = 0;
  // The same for bytes that have no fallback. They may be many and aren't copied on their way.
  virtual void WriteBytes(std::string_view name, const ByteArray& bytes) {
    WriteProperty(name, bytes, BagValue());
  }
};

}  // namespace marklet
