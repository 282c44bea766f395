#include "activex/automation/value_conversion.h"

#include "activex/com/text.h"

namespace marklet::activex {
namespace {

class Picture final : public HostObject {
 public:
  explicit Picture(ComPtr<IPictureDisp> picture) : picture_(std::move(picture)) {}
  const ComPtr<IPictureDisp>& Get() const { return picture_; }

 private:
  ComPtr<IPictureDisp> picture_;
};

HRESULT Convert(const VARIANT& source, VARTYPE type, VARIANT& result) {
  return ::VariantChangeType(&result, const_cast<VARIANT*>(&source), 0, type);
}

// Nothing arrives as a null object, an empty variant or a null one.
HRESULT ObjectFromVariant(const VARIANT& source, IUnknown*& object) {
  object = nullptr;
  switch (source.vt) {
    case VT_DISPATCH:
    case VT_UNKNOWN:
      object = source.punkVal;
      return S_OK;
    case VT_EMPTY:
    case VT_NULL:
      return S_OK;
    default:
      return DISP_E_TYPEMISMATCH;
  }
}

HRESULT FontFromVariant(const VARIANT& source, Value& value) {
  IUnknown* object = nullptr;
  const HRESULT result = ObjectFromVariant(source, object);
  if (FAILED(result)) return result;
  FontRef font = FontFromObject(object);
  if (object && !font) return DISP_E_TYPEMISMATCH;
  value = std::move(font);
  return S_OK;
}

HRESULT PictureFromVariant(const VARIANT& source, Value& value) {
  IUnknown* object = nullptr;
  const HRESULT result = ObjectFromVariant(source, object);
  if (FAILED(result)) return result;
  HostObjectRef picture = WrapPicture(object);
  if (object && !picture) return DISP_E_TYPEMISMATCH;
  value = std::move(picture);
  return S_OK;
}

HRESULT ColourValueFromVariant(const VARIANT& source, Value& value) {
  Long colour = 0;
  if (!ColourFromVariant(source, colour)) return DISP_E_TYPEMISMATCH;
  value = colour;
  return S_OK;
}

HRESULT BooleanFromVariant(const VARIANT& source, Value& value) {
  Variant flag;
  const HRESULT result = Convert(source, VT_BOOL, flag);
  if (SUCCEEDED(result)) value = flag.boolVal != VARIANT_FALSE;
  return result;
}

HRESULT TextFromVariant(const VARIANT& source, Value& value) {
  Variant text;
  const HRESULT result = Convert(source, VT_BSTR, text);
  if (SUCCEEDED(result)) value = FromBstr(text.bstrVal);
  return result;
}

HRESULT LongFromVariant(const VARIANT& source, Value& value) {
  Variant number;
  const HRESULT result = Convert(source, VT_I4, number);
  if (SUCCEEDED(result)) value = static_cast<Long>(number.lVal);
  return result;
}

template <typename Interface>
HRESULT PutObject(ComPtr<Interface> object, VARIANT& result) {
  result.vt = VT_DISPATCH;
  result.pdispVal = object.Detach();
  return S_OK;
}

}  // namespace

bool ColourFromVariant(const VARIANT& source, Long& colour) {
  Variant number;
  if (SUCCEEDED(Convert(source, VT_I4, number))) {
    colour = number.lVal;
    return true;
  }
  if (FAILED(Convert(source, VT_UI4, number))) return false;
  colour = static_cast<Long>(number.ulVal);
  return true;
}

HRESULT ValueFromVariant(const VARIANT& reference, ValueType type, Value& value) {
  Variant source;
  const HRESULT result = ::VariantCopyInd(&source, const_cast<VARIANT*>(&reference));
  if (FAILED(result)) return result;
  switch (type) {
    case ValueType::Font:
      return FontFromVariant(source, value);
    case ValueType::Picture:
      return PictureFromVariant(source, value);
    case ValueType::Colour:
      return ColourValueFromVariant(source, value);
    case ValueType::Boolean:
      return BooleanFromVariant(source, value);
    case ValueType::Text:
      return TextFromVariant(source, value);
    case ValueType::Number:
    case ValueType::Choice:
    case ValueType::MousePointer:
      return LongFromVariant(source, value);
  }
  return E_UNEXPECTED;  // no type at all
}

HRESULT VariantFromValue(HostFont& host_font, const Value& value, ValueType type, VARIANT& result) {
  if (!HoldsType(value, type)) return E_UNEXPECTED;
  switch (type) {
    case ValueType::Font:
      return PutObject(host_font.For(std::get<FontRef>(value)), result);
    case ValueType::Picture:
      return PutObject(UnwrapPicture(std::get<HostObjectRef>(value)), result);
    case ValueType::Text:
      result.bstrVal = NewBstr(std::get<std::u16string>(value));
      result.vt = VT_BSTR;
      return S_OK;
    case ValueType::Boolean:
      result.vt = VT_BOOL;
      result.boolVal = std::get<bool>(value) ? VARIANT_TRUE : VARIANT_FALSE;
      return S_OK;
    case ValueType::Number:
    case ValueType::Colour:  // script languages have no unsigned numbers
    case ValueType::Choice:
    case ValueType::MousePointer:
      result.vt = VT_I4;
      result.lVal = std::get<Long>(value);
      return S_OK;
  }
  return E_UNEXPECTED;  // no type at all
}

HostObjectRef WrapPicture(IUnknown* picture) {
  ComPtr<IPictureDisp> object;
  if (!picture || FAILED(picture->QueryInterface(IID_PPV_ARGS(object.GetAddressOf())))) return nullptr;
  return std::make_shared<Picture>(std::move(object));
}

ComPtr<IPictureDisp> UnwrapPicture(const HostObjectRef& object) {
  const auto* picture = dynamic_cast<const Picture*>(object.get());
  return picture ? picture->Get() : nullptr;
}

}  // namespace marklet::activex
