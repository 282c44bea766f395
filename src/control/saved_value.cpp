#include "control/saved_value.h"

#include <cmath>
#include <limits>
#include <optional>
#include <stdexcept>
#include <utility>

#include "base/byte_order.h"
#include "base/byte_reader.h"
#include "control/text_bytes.h"

namespace marklet {
namespace {

using ByteSpan = std::span<const std::uint8_t>;

constexpr std::uint32_t kLongMax = std::numeric_limits<Long>::max();

std::uint32_t Counted(std::size_t count) {
  if (count > std::numeric_limits<std::uint32_t>::max()) throw std::length_error("too long to be saved");
  return static_cast<std::uint32_t>(count);
}

// --- Arrays -----------------------------------------------------------------------------------------------

// As many as the platform's own arrays may have.
constexpr std::size_t kMostDimensions = 60;

// How many bytes an array of these dimensions holds; nothing when there is no such array.
std::optional<std::uint64_t> ProductOf(const std::vector<ByteArray::Bound>& bounds) {
  if (bounds.size() > kMostDimensions) return std::nullopt;
  std::uint64_t product = bounds.empty() ? 0 : 1;
  for (const ByteArray::Bound& bound : bounds) {
    if (bound.count < 0 || std::int64_t{bound.lower} + bound.count - 1 > kLongMax) return std::nullopt;
    product *= static_cast<std::uint64_t>(bound.count);
    if (product > kLongMax) return std::nullopt;
  }
  return product;
}

// The elements of a text follow each other as those of its array do.
void AppendText(SavedBytes& bytes, std::u16string_view text) {
  for (const char16_t unit : text) AppendU16(bytes, unit);
}

struct ArrayParts {
  std::vector<ByteArray::Bound> bounds;
  ByteSpan bytes;
};

std::optional<ArrayParts> ReadArray(ByteSpan bytes) {
  constexpr std::size_t kBoundBytes = 8;
  ByteReader reader(bytes);
  ArrayParts parts;
  const std::size_t dimensions = reader.U8();
  if (reader.Left() < dimensions * kBoundBytes) return std::nullopt;
  for (std::size_t i = 0; i < dimensions; ++i) {
    const Long lower = reader.I32();
    const std::uint32_t count = reader.U32();
    if (count > kLongMax) return std::nullopt;
    parts.bounds.push_back({lower, static_cast<Long>(count)});
  }
  parts.bytes = reader.TakeRest();
  if (reader.Overran() || ProductOf(parts.bounds) != parts.bytes.size()) return std::nullopt;
  return parts;
}

// --- Objects ----------------------------------------------------------------------------------------------

constexpr unsigned kNoObject = 0, kFont = 1;                         // kinds
constexpr unsigned kItalic = 1, kUnderline = 2, kStrikethrough = 4;  // styles
constexpr double kSizeUnits = 10000;                                 // of a point

void AppendFont(SavedBytes& bytes, const StdFont& font) {
  AppendU8(bytes, kFont);
  AppendU8(bytes, (font.Italic() ? kItalic : 0u) | (font.Underline() ? kUnderline : 0u) |
                      (font.Strikethrough() ? kStrikethrough : 0u));
  AppendU8(bytes, font.Charset());
  AppendU32(bytes, static_cast<std::uint32_t>(font.Weight()));
  AppendU32(bytes, static_cast<std::uint32_t>(std::llround(font.Size() * kSizeUnits)));
  AppendU32(bytes, Counted(font.Name().size()));
  AppendText(bytes, font.Name());
}

struct FontParts {
  std::uint8_t style, charset;
  Long weight;
  std::uint32_t size;
  ByteSpan name;
};

// Bits and bytes that no version wrote so far are passed over.
std::optional<FontParts> ReadFont(ByteReader& reader) {
  FontParts font = {};
  font.style = reader.U8();
  font.charset = reader.U8();
  font.weight = reader.I32();
  font.size = reader.U32();
  const std::uint32_t units = reader.U32();
  if (units > reader.Left() / 2) return std::nullopt;
  font.name = reader.Take(std::size_t{units} * 2);
  if (reader.Overran()) return std::nullopt;
  return font;
}

FontRef FontOf(const FontParts& parts) {
  auto font = std::make_shared<StdFont>();
  font->PutName(TextOf(parts.name));
  font->PutSize(parts.size / kSizeUnits);
  font->PutWeight(parts.weight);
  font->PutItalic((parts.style & kItalic) != 0);
  font->PutUnderline((parts.style & kUnderline) != 0);
  font->PutStrikethrough((parts.style & kStrikethrough) != 0);
  font->PutCharset(parts.charset);
  return font;
}

bool IsObject(ByteSpan bytes) {
  ByteReader reader(bytes);
  const std::uint8_t kind = reader.U8();
  if (kind == kFont) return ReadFont(reader).has_value();
  return !reader.Overran();
}

BagValue ReadObject(ByteSpan bytes) {
  ByteReader reader(bytes);
  const std::uint8_t kind = reader.U8();
  if (kind == kFont)
    if (const auto parts = ReadFont(reader)) return FontOf(*parts);
  if (kind == kNoObject && !reader.Overran()) return FontRef();
  return {};
}

// --- The table of types -----------------------------------------------------------------------------------

BagValue ReadI2(ByteSpan bytes) { return static_cast<std::int16_t>(ByteReader(bytes).U16()); }
BagValue ReadI4(ByteSpan bytes) { return ByteReader(bytes).I32(); }
BagValue ReadBoolean(ByteSpan bytes) { return bytes[0] != 0; }
BagValue ReadText(ByteSpan bytes) { return TextOf(bytes); }
BagValue ReadBytes(ByteSpan bytes) {
  auto parts = ReadArray(bytes);
  return ByteArray{std::move(parts->bounds), {parts->bytes.begin(), parts->bytes.end()}};
}

void AppendI2(SavedBytes& bytes, const BagValue& value) {
  AppendU16(bytes, static_cast<std::uint16_t>(std::get<std::int16_t>(value)));
}
void AppendI4(SavedBytes& bytes, const BagValue& value) {
  AppendU32(bytes, static_cast<std::uint32_t>(std::get<Long>(value)));
}
void AppendBoolean(SavedBytes& bytes, const BagValue& value) {
  AppendU8(bytes, std::get<bool>(value) ? 1 : 0);
}
void AppendUnits(SavedBytes& bytes, const BagValue& value) {
  AppendText(bytes, std::get<std::u16string>(value));
}
void AppendBytes(SavedBytes& bytes, const BagValue& value) { AppendArray(bytes, std::get<ByteArray>(value)); }
void AppendObject(SavedBytes& bytes, const BagValue& value) {
  const FontRef& font = std::get<FontRef>(value);
  font ? AppendFont(bytes, *font) : AppendU8(bytes, kNoObject);
}

struct TypeRow {
  BagType type;
  SavedType saved_as;
  bool (*is_value)(ByteSpan);
  BagValue (*read)(ByteSpan);  // of bytes that are a value
  void (*append)(SavedBytes&, const BagValue&);
};
constexpr TypeRow kTypes[] = {
    {BagType::I2, SavedType::I2, [](ByteSpan bytes) { return bytes.size() == 2; }, ReadI2, AppendI2},
    {BagType::I4, SavedType::I4, [](ByteSpan bytes) { return bytes.size() == 4; }, ReadI4, AppendI4},
    {BagType::Boolean, SavedType::Boolean, [](ByteSpan bytes) { return bytes.size() == 1 && bytes[0] <= 1; },
     ReadBoolean, AppendBoolean},
    {BagType::Text, SavedType::Text, [](ByteSpan bytes) { return bytes.size() % 2 == 0; }, ReadText,
     AppendUnits},
    {BagType::Bytes, SavedType::Bytes, [](ByteSpan bytes) { return ReadArray(bytes).has_value(); }, ReadBytes,
     AppendBytes},
    {BagType::Font, SavedType::Object, IsObject, ReadObject, AppendObject},
};
static_assert(HasRowForEachType(kTypes));

const TypeRow* FindType(std::uint8_t type) {
  for (const TypeRow& row : kTypes)
    if (static_cast<std::uint8_t>(row.saved_as) == type) return &row;
  return nullptr;
}

// --- Conversions ------------------------------------------------------------------------------------------

// The whole number in a value; a true one is -1, as automation has it.
std::optional<Long> NumberOf(const BagValue& value) {
  if (const auto* number = std::get_if<Long>(&value)) return *number;
  if (const auto* number = std::get_if<std::int16_t>(&value)) return *number;
  if (const auto* flag = std::get_if<bool>(&value)) return *flag ? -1 : 0;
  return std::nullopt;
}

BagValue ToNumber(const BagValue& value, BagType type) {
  const std::optional<Long> number = NumberOf(value);
  if (!number) return {};
  if (type == BagType::Boolean) return *number != 0;
  if (type == BagType::I4) return *number;
  using Limits = std::numeric_limits<std::int16_t>;
  if (*number < Limits::min() || *number > Limits::max()) return {};
  return static_cast<std::int16_t>(*number);
}

}  // namespace

void AppendU8(SavedBytes& bytes, std::uint32_t number) { bytes.push_back(static_cast<std::uint8_t>(number)); }
void AppendU16(SavedBytes& bytes, std::uint32_t number) {
  AppendLittleEndian(bytes, static_cast<std::uint16_t>(number));
}
void AppendU32(SavedBytes& bytes, std::uint32_t number) { AppendLittleEndian(bytes, number); }

// --- Values -----------------------------------------------------------------------------------------------

SavedType SavedTypeOf(const BagValue& value) { return RowOfValue(kTypes, value).saved_as; }

void AppendValue(SavedBytes& bytes, const BagValue& value) { RowOfValue(kTypes, value).append(bytes, value); }

void AppendArray(SavedBytes& bytes, const ByteArray& array) {
  if (ProductOf(array.bounds) != array.bytes.size()) throw std::length_error("an array that isn't one");
  AppendU8(bytes, static_cast<std::uint32_t>(array.bounds.size()));
  for (const ByteArray::Bound& bound : array.bounds) {
    AppendU32(bytes, static_cast<std::uint32_t>(bound.lower));
    AppendU32(bytes, static_cast<std::uint32_t>(bound.count));
  }
  bytes.insert(bytes.end(), array.bytes.begin(), array.bytes.end());
}

bool IsSavedValue(std::uint8_t type, ByteSpan bytes) {
  const TypeRow* row = FindType(type);
  return row == nullptr || row->is_value(bytes);
}

BagValue ReadValue(std::uint8_t type, ByteSpan bytes) {
  const TypeRow* row = FindType(type);
  return row != nullptr && row->is_value(bytes) ? row->read(bytes) : BagValue();
}

BagValue Converted(BagValue value, BagType type) {
  if (value.index() == AlternativeOf(type)) return value;
  switch (type) {
    case BagType::I2:
    case BagType::I4:
    case BagType::Boolean:
      return ToNumber(value, type);
    case BagType::Text:
      if (const auto* array = std::get_if<ByteArray>(&value)) return TextOf(array->bytes);
      return {};
    case BagType::Bytes:
      return std::holds_alternative<std::u16string>(value) ? std::move(value) : BagValue();
    case BagType::Font:
      return {};
  }
  return {};
}

}  // namespace marklet
