#include "property_value.h"

#include <olectl.h>
#include <wrl/client.h>

#include "variant.h"

namespace designer {
namespace {

using Microsoft::WRL::ComPtr;

bool Get(IDispatch& control, DISPID id, Variant& value) {
  DISPPARAMS none = {};
  return SUCCEEDED(control.Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none, &value,
                                  nullptr, nullptr));
}

// What went wrong, from the control's own words if it has any.
std::optional<std::wstring> Put(IDispatch& control, const Property& property, Variant value) {
  const WORD how =
      property.by_reference && value.vt == VT_DISPATCH ? DISPATCH_PROPERTYPUTREF : DISPATCH_PROPERTYPUT;
  DISPID name = DISPID_PROPERTYPUT;
  DISPPARAMS parameters = {&value, &name, 1, 1};
  EXCEPINFO exception = {};
  const HRESULT result = control.Invoke(property.id, IID_NULL, LOCALE_USER_DEFAULT, how, &parameters, nullptr,
                                        &exception, nullptr);
  Bstr source, description, help;
  *source.Out() = exception.bstrSource;
  *description.Out() = exception.bstrDescription;
  *help.Out() = exception.bstrHelpFile;
  if (SUCCEEDED(result)) return std::nullopt;
  return description.Text().empty() ? FailureText(result) : description.Text();
}

std::wstring ObjectText(const Variant& value) {
  const bool is_object = value.vt == VT_DISPATCH || value.vt == VT_UNKNOWN;
  return is_object && value.punkVal ? L"(object)" : L"(none)";
}

template <typename Value, typename Getter>
Value Ask(IFont& font, Getter getter) {
  Value value{};
  (font.*getter)(&value);
  return value;
}

FontValue ValueOf(IFont& font) {
  Bstr name;
  CY size = {};
  font.get_Name(name.Out());
  font.get_Size(&size);
  constexpr LONGLONG kPerHundredth = 100;  // sizes count ten-thousandths of a point
  return {name.Text(),
          static_cast<int>((size.int64 + kPerHundredth / 2) / kPerHundredth),
          Ask<BOOL>(font, &IFont::get_Bold) != FALSE,
          Ask<BOOL>(font, &IFont::get_Italic) != FALSE,
          Ask<BOOL>(font, &IFont::get_Underline) != FALSE,
          Ask<BOOL>(font, &IFont::get_Strikethrough) != FALSE};
}

Variant NewFont(const FontValue& value) {
  std::wstring name = value.name;
  FONTDESC description = {};
  description.cbSizeofstruct = sizeof description;
  description.lpstrName = name.data();
  description.cySize.int64 = LONGLONG{value.hundredths} * 100;
  description.sWeight = static_cast<SHORT>(value.bold ? FW_BOLD : FW_NORMAL);
  description.fItalic = value.italic;
  description.fUnderline = value.underline;
  description.fStrikethrough = value.strikethrough;
  ComPtr<IDispatch> font;
  OleCreateFontIndirect(&description, IID_IDispatch, reinterpret_cast<void**>(font.GetAddressOf()));
  return Variant(font.Get());
}

// A value of the property's type; nothing when the text is none.
std::optional<Variant> ValueFrom(const Property& property, const std::wstring& text) {
  const auto number = [](auto value) {
    return value ? std::optional<Variant>(static_cast<int>(*value)) : std::nullopt;
  };
  switch (property.kind) {
    case Kind::Text:
      return Variant(text);
    case Kind::Number: {
      if (const auto whole = ParseNumber(text)) return Variant(*whole);
      Variant fraction(text);
      return fraction.Become(VT_R8) ? std::optional(std::move(fraction)) : std::nullopt;
    }
    case Kind::Truth: {
      const auto truth = ParseTruth(text);
      return truth ? std::optional(Variant::Truth(*truth)) : std::nullopt;
    }
    case Kind::Choice:
      return number(ParseChoice(property.choices, text));
    case Kind::Colour:
      return number(ParseColour(text));
    case Kind::Font: {
      const auto font = ParseFont(text);
      return font ? std::optional(NewFont(*font)) : std::nullopt;
    }
    case Kind::Other:
      break;
  }
  return std::nullopt;
}

// What the property takes.
const wchar_t* Expected(Kind kind) {
  switch (kind) {
    case Kind::Number:
      return L"a number";
    case Kind::Truth:
      return L"True or False";
    case Kind::Choice:
      return L"one of the list, or a number";
    case Kind::Colour:
      return L"#RRGGBB, or a colour of the list";
    case Kind::Font:
      return L"a name and a size, such as \"Tahoma, 9, bold\"";
    default:
      return L"another value";
  }
}

}  // namespace

std::wstring FailureText(HRESULT result) {
  wchar_t text[300] = {};
  constexpr DWORD kFlags =
      FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK;
  FormatMessageW(kFlags, nullptr, static_cast<DWORD>(result), 0, text, 300, nullptr);
  wchar_t number[20] = {};
  wsprintfW(number, L"(0x%08lX)", static_cast<unsigned long>(result));
  return std::wstring(text) + number;
}

std::wstring ReadValue(IDispatch& control, const Property& property) {
  if (property.kind == Kind::Font) {
    const auto font = ReadFont(control, property);
    return font ? FontText(*font) : L"(none)";
  }
  Variant value;
  if (!Get(control, property.id, value)) return {};
  switch (property.kind) {
    case Kind::Truth:
      return value.Become(VT_BOOL) ? TruthText(value.boolVal != VARIANT_FALSE) : L"";
    case Kind::Choice:
      return value.Become(VT_I4) ? ChoiceText(property.choices, value.lVal) : L"";
    case Kind::Colour:
      return value.Become(VT_I4) ? ColourText(static_cast<std::uint32_t>(value.lVal)) : L"";
    case Kind::Other:
      return ObjectText(value);
    default:
      return value.Become(VT_BSTR) ? value.Text() : L"";
  }
}

std::optional<FontValue> ReadFont(IDispatch& control, const Property& property) {
  Variant value;
  ComPtr<IFont> font;
  if (!Get(control, property.id, value) || value.vt != VT_DISPATCH || !value.pdispVal) return std::nullopt;
  if (FAILED(value.pdispVal->QueryInterface(IID_PPV_ARGS(&font)))) return std::nullopt;
  return ValueOf(*font.Get());
}

std::optional<std::wstring> WriteValue(IDispatch& control, const Property& property,
                                       const std::wstring& text) {
  auto value = ValueFrom(property, text);
  if (!value) return property.name + L" takes " + Expected(property.kind) + L".";
  return Put(control, property, std::move(*value));
}

}  // namespace designer
