#include "activex/automation/bag_variant.h"

#include <cstring>
#include <limits>
#include <new>
#include <optional>
#include <span>
#include <utility>

#include "activex/com/text.h"
#include "control/text_bytes.h"

namespace marklet::activex {
namespace {

// --- Arrays -----------------------------------------------------------------------------------------------

// The elements of an array, held in place.
class ArrayData {
 public:
  explicit ArrayData(SAFEARRAY* array) : array_(array) {
    if (FAILED(::SafeArrayAccessData(array_, &data_))) array_ = nullptr;
  }
  ~ArrayData() {
    if (array_) ::SafeArrayUnaccessData(array_);
  }
  ArrayData(const ArrayData&) = delete;
  ArrayData& operator=(const ArrayData&) = delete;
  std::uint8_t* Get() const { return array_ ? static_cast<std::uint8_t*>(data_) : nullptr; }

 private:
  SAFEARRAY* array_;
  void* data_ = nullptr;
};

SAFEARRAY* NewArray(const ByteArray& array) {
  if (array.bounds.empty()) return nullptr;
  std::vector<SAFEARRAYBOUND> bounds;
  for (const ByteArray::Bound& bound : array.bounds)
    bounds.push_back({static_cast<ULONG>(bound.count), bound.lower});
  SAFEARRAY* const result = ::SafeArrayCreate(VT_UI1, static_cast<UINT>(bounds.size()), bounds.data());
  if (!result) throw std::bad_alloc();
  const ArrayData data(result);
  if (data.Get() && !array.bytes.empty()) std::memcpy(data.Get(), array.bytes.data(), array.bytes.size());
  return result;
}

// The dimensions, and the number of elements. Nothing for what no array of ours can be.
std::optional<std::size_t> ReadBounds(SAFEARRAY* array, std::vector<ByteArray::Bound>& bounds) {
  constexpr UINT kMostDimensions = 60;  // of what a saved form can hold
  constexpr std::int64_t kMost = std::numeric_limits<Long>::max();
  std::int64_t total = 1;
  if (::SafeArrayGetDim(array) > kMostDimensions) return std::nullopt;
  for (UINT dimension = 1; dimension <= ::SafeArrayGetDim(array); ++dimension) {
    LONG lower = 0, upper = 0;
    if (FAILED(::SafeArrayGetLBound(array, dimension, &lower)) ||
        FAILED(::SafeArrayGetUBound(array, dimension, &upper)))
      return std::nullopt;
    // The upper bound of an empty dimension at the lowest place of all has wrapped around.
    const std::int64_t count = static_cast<std::uint32_t>(upper) - static_cast<std::uint32_t>(lower) + 1u;
    if (count > kMost) return std::nullopt;
    total *= count;
    if (total > kMost) return std::nullopt;
    bounds.push_back({lower, static_cast<Long>(count)});
  }
  return bounds.empty() ? 0 : static_cast<std::size_t>(total);
}

HRESULT Convert(const VARIANT& source, VARTYPE type, VARIANT& result) {
  const LCID us_english = MAKELCID(MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), SORT_DEFAULT);
  const HRESULT converted =
      ::VariantChangeTypeEx(&result, const_cast<VARIANT*>(&source), us_english, 0, type);
  if (converted == E_OUTOFMEMORY) throw std::bad_alloc();
  return converted;
}

// One element of an array of anything, as a byte. The element stays the array's.
bool ReadElement(VARTYPE type, const std::uint8_t* element, UINT size, std::uint8_t& byte) {
  VARIANT source;
  ::VariantInit(&source);
  if (type == VT_VARIANT) {
    std::memcpy(static_cast<void*>(&source), element, sizeof source);
  } else {
    source.vt = type;
    std::memcpy(&source.llVal, element, size);
  }
  Variant number;
  if (FAILED(Convert(source, VT_UI1, number))) return false;
  byte = number.bVal;
  return true;
}

// Script languages have arrays of variants only.
std::optional<ByteArray> ReadElements(SAFEARRAY* array, VARTYPE type, ByteArray result, std::size_t count) {
  const ArrayData data(array);
  const UINT size = ::SafeArrayGetElemsize(array);
  const bool fits = type == VT_VARIANT ? size == sizeof(VARIANT) : size <= sizeof(LONGLONG);
  if (!fits || (count > 0 && !data.Get())) return std::nullopt;
  result.bytes.resize(count);
  for (std::size_t i = 0; i < count; ++i)
    if (!ReadElement(type, data.Get() + i * size, size, result.bytes[i])) return std::nullopt;
  return result;
}

std::optional<ByteArray> ReadArray(const VARIANT& source) {
  const VARTYPE element = source.vt & VT_TYPEMASK;
  SAFEARRAY* const array = (source.vt & VT_BYREF) != 0 ? *source.pparray : source.parray;
  ByteArray result;
  if (!array) return result;
  const std::optional<std::size_t> count = ReadBounds(array, result.bounds);
  if (!count) return std::nullopt;
  if (element != VT_UI1 && element != VT_I1) return ReadElements(array, element, std::move(result), *count);
  const ArrayData data(array);
  if (*count > 0 && !data.Get()) return std::nullopt;
  const std::span bytes(data.Get(), *count);
  result.bytes.assign(bytes.begin(), bytes.end());
  return result;
}

// --- By the type asked for --------------------------------------------------------------------------------

// A number may come signed or unsigned: 0x8000000F is -2147483633 and 2147483663.
BagValue ReadLong(const VARIANT& source) {
  Variant number;
  if (SUCCEEDED(Convert(source, VT_I4, number))) return static_cast<Long>(number.lVal);
  if (SUCCEEDED(Convert(source, VT_UI4, number))) return static_cast<Long>(number.ulVal);
  return {};
}

BagValue ReadShort(const VARIANT& source) {
  Variant number;
  return SUCCEEDED(Convert(source, VT_I2, number)) ? BagValue(std::int16_t{number.iVal}) : BagValue();
}

BagValue ReadFlag(const VARIANT& source) {
  Variant flag;
  return SUCCEEDED(Convert(source, VT_BOOL, flag)) ? BagValue(flag.boolVal != VARIANT_FALSE) : BagValue();
}

BagValue ReadText(const VARIANT& source) {
  if ((source.vt & VT_ARRAY) != 0) {
    const auto array = ReadArray(source);
    return array ? BagValue(TextOf(array->bytes)) : BagValue();
  }
  Variant text;
  return SUCCEEDED(Convert(source, VT_BSTR, text)) ? BagValue(FromBstr(text.bstrVal)) : BagValue();
}

// A form that somebody wrote by hand has a text where the control saves its code units.
BagValue ReadBytes(const VARIANT& source) {
  if ((source.vt & VT_ARRAY) != 0) {
    auto array = ReadArray(source);
    return array ? BagValue(std::move(*array)) : BagValue();
  }
  if (source.vt == VT_BSTR) return FromBstr(source.bstrVal);
  return source.vt == (VT_BSTR | VT_BYREF) ? BagValue(FromBstr(*source.pbstrVal)) : BagValue();
}

BagValue ReadFont(const VARIANT& source) {
  if (source.vt == VT_NULL) return FontRef();
  Variant object;
  if (FAILED(Convert(source, VT_UNKNOWN, object))) return {};
  FontRef font = FontFromObject(object.punkVal);
  return font || !object.punkVal ? BagValue(std::move(font)) : BagValue();
}

// --- And into a variant, which is empty before ------------------------------------------------------------

void WriteShort(HostFont&, const BagValue& value, VARIANT& result) {
  result.vt = VT_I2;
  result.iVal = std::get<std::int16_t>(value);
}

void WriteLong(HostFont&, const BagValue& value, VARIANT& result) {
  result.vt = VT_I4;
  result.lVal = std::get<Long>(value);
}

void WriteFlag(HostFont&, const BagValue& value, VARIANT& result) {
  result.vt = VT_BOOL;
  result.boolVal = std::get<bool>(value) ? VARIANT_TRUE : VARIANT_FALSE;
}

void WriteText(HostFont&, const BagValue& value, VARIANT& result) {
  result.bstrVal = NewBstr(std::get<std::u16string>(value));
  result.vt = VT_BSTR;
}

void WriteBytes(HostFont&, const BagValue& value, VARIANT& result) {
  VariantFromBytes(std::get<ByteArray>(value), result);
}

void WriteFont(HostFont& host_font, const BagValue& value, VARIANT& result) {
  result.pdispVal = host_font.For(std::get<FontRef>(value)).Detach();
  result.vt = VT_DISPATCH;
}

// --- The table of types -----------------------------------------------------------------------------------

struct TypeRow {
  BagType type;
  VARTYPE asked_for;
  BagValue (*read)(const VARIANT&);
  void (*write)(HostFont&, const BagValue&, VARIANT&);
};
constexpr TypeRow kTypes[] = {
    {BagType::I2, VT_I2, ReadShort, WriteShort},
    {BagType::I4, VT_I4, ReadLong, WriteLong},
    {BagType::Boolean, VT_BOOL, ReadFlag, WriteFlag},
    {BagType::Text, VT_BSTR, ReadText, WriteText},
    {BagType::Bytes, VT_ARRAY | VT_UI1, ReadBytes, WriteBytes},
    {BagType::Font, VT_UNKNOWN, ReadFont, WriteFont},
};
static_assert(HasRowForEachType(kTypes));

}  // namespace

VARTYPE VariantTypeOf(BagType type) { return RowOfType(kTypes, type).asked_for; }

bool VariantFromBagValue(HostFont& host_font, const BagValue& value, VARIANT& result) {
  if (std::holds_alternative<std::monostate>(value)) return false;
  RowOfValue(kTypes, value).write(host_font, value, result);
  return true;
}

void VariantFromBytes(const ByteArray& bytes, VARIANT& result) {
  result.parray = NewArray(bytes);
  result.vt = VT_ARRAY | VT_UI1;
}

BagValue BagValueFromVariant(const VARIANT& source, BagType type) {
  if ((source.vt & VT_BYREF) != 0 && !source.byref) return {};
  if (source.vt == (VT_BYREF | VT_VARIANT))
    return source.pvarVal->vt != (VT_BYREF | VT_VARIANT) ? BagValueFromVariant(*source.pvarVal, type)
                                                         : BagValue();
  return RowOfType(kTypes, type).read(source);
}

}  // namespace marklet::activex
