// One value of a saved form as bytes. docs/saved-format.md tells them one by one.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "host/property_bag.h"

namespace marklet {

using SavedBytes = std::vector<std::uint8_t>;

// What a record of the format holds. The numbers stand in saved forms.
enum class SavedType : std::uint8_t { I2 = 1, I4 = 2, Boolean = 3, Text = 4, Bytes = 5, Object = 6 };

// Numbers as saved forms have them, low byte first.
void AppendU8(SavedBytes& bytes, std::uint32_t number);
void AppendU16(SavedBytes& bytes, std::uint32_t number);
void AppendU32(SavedBytes& bytes, std::uint32_t number);

// `value` is not monostate.
SavedType SavedTypeOf(const BagValue& value);
// Appends the value's bytes; it is not monostate. Throws std::length_error for one that no length field can
// count and for an array that isn't one.
void AppendValue(SavedBytes& bytes, const BagValue& value);
void AppendArray(SavedBytes& bytes, const ByteArray& array);

// Whether the bytes are a value of that type. A type that isn't known is no mistake: a later version has it.
bool IsSavedValue(std::uint8_t type, std::span<const std::uint8_t> bytes);
// The value; monostate when the bytes aren't one. Allocates no more than the bytes hold.
BagValue ReadValue(std::uint8_t type, std::span<const std::uint8_t> bytes);

// The value in the type asked for; monostate when there is no way. A text in place of bytes stays one.
BagValue Converted(BagValue value, BagType type);

}  // namespace marklet
