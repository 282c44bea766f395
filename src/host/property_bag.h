// Where a host keeps the control's saved properties: values under names.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "base/byte_array.h"
#include "platform/shared/std_font.h"
#include "platform/types.h"

namespace marklet {

enum class BagType { I2, I4, Boolean, Text, Bytes, Font };

// One alternative a type, in the order of BagType behind monostate, which is a value that couldn't be had.
using BagValue = std::variant<std::monostate, std::int16_t, Long, bool, std::u16string, ByteArray, FontRef>;

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
