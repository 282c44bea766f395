#include "properties.h"

#include <ocidl.h>
#include <olectl.h>
#include <wrl/client.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <memory>

#include "categories.h"
#include "variant.h"

namespace designer {
namespace {

using Microsoft::WRL::ComPtr;

constexpr GUID kOleColor = {0x66504301, 0xBE0F, 0x101A, {0x8B, 0xBB, 0x00, 0xAA, 0x00, 0x30, 0x0C, 0xAB}};
constexpr GUID kFonts[] = {{0xBEF6E003, 0xA874, 0x101A, {0x8B, 0xBA, 0x00, 0xAA, 0x00, 0x30, 0x0C, 0xAB}},
                           {0xBEF6E002, 0xA874, 0x101A, {0x8B, 0xBA, 0x00, 0xAA, 0x00, 0x30, 0x0C, 0xAB}},
                           {0x0BE35203, 0x8F91, 0x11CE, {0x9D, 0xE3, 0x00, 0xAA, 0x00, 0x4B, 0xB8, 0x51}}};

// --- What a type library hands out, given back
// --------------------------------------------------------------

struct Releaser {
  ITypeInfo* info;
  void operator()(TYPEATTR* attributes) const { info->ReleaseTypeAttr(attributes); }
  void operator()(FUNCDESC* function) const { info->ReleaseFuncDesc(function); }
  void operator()(VARDESC* variable) const { info->ReleaseVarDesc(variable); }
};
template <typename Description>
using Held = std::unique_ptr<Description, Releaser>;

Held<TYPEATTR> AttributesOf(ITypeInfo& info) {
  TYPEATTR* attributes = nullptr;
  info.GetTypeAttr(&attributes);
  return {attributes, {&info}};
}
Held<FUNCDESC> FunctionOf(ITypeInfo& info, UINT index) {
  FUNCDESC* function = nullptr;
  info.GetFuncDesc(index, &function);
  return {function, {&info}};
}
Held<VARDESC> VariableOf(ITypeInfo& info, UINT index) {
  VARDESC* variable = nullptr;
  info.GetVarDesc(index, &variable);
  return {variable, {&info}};
}

// --- Types
// --------------------------------------------------------------------------------------------------

void ReadType(ITypeInfo& info, const TYPEDESC& type, Property& property);

void ReadChoices(ITypeInfo& info, const TYPEATTR& attributes, Property& property) {
  property.kind = Kind::Choice;
  for (UINT i = 0; i < attributes.cVars; ++i) {
    const auto member = VariableOf(info, i);
    if (!member || member->varkind != VAR_CONST) continue;
    Variant value;
    Bstr name;
    if (FAILED(VariantCopy(&value, member->lpvarValue)) || !value.Become(VT_I4)) continue;
    if (FAILED(info.GetDocumentation(member->memid, name.Out(), nullptr, nullptr, nullptr))) continue;
    property.choices.push_back({name.Text(), static_cast<int>(value.lVal)});
  }
}

void ReadReferredType(ITypeInfo& info, HREFTYPE reference, Property& property) {
  ComPtr<ITypeInfo> referred;
  if (FAILED(info.GetRefTypeInfo(reference, &referred))) return;
  const auto attributes = AttributesOf(*referred.Get());
  if (!attributes) return;
  if (attributes->typekind == TKIND_ENUM) return ReadChoices(*referred.Get(), *attributes, property);
  if (attributes->typekind == TKIND_ALIAS && attributes->guid != kOleColor)
    return ReadType(*referred.Get(), attributes->tdescAlias, property);
  if (attributes->guid == kOleColor) property.kind = Kind::Colour;
  if (std::ranges::find(kFonts, attributes->guid) != std::end(kFonts)) property.kind = Kind::Font;
}

void ReadType(ITypeInfo& info, const TYPEDESC& type, Property& property) {
  switch (type.vt) {
    case VT_PTR:
      return ReadType(info, *type.lptdesc, property);
    case VT_USERDEFINED:
      return ReadReferredType(info, type.hreftype, property);
    case VT_BSTR:
    case VT_VARIANT:
      property.kind = Kind::Text;
      return;
    case VT_BOOL:
      property.kind = Kind::Truth;
      return;
    case VT_I1:
    case VT_I2:
    case VT_I4:
    case VT_INT:
    case VT_UI1:
    case VT_UI2:
    case VT_UI4:
    case VT_UINT:
    case VT_R4:
    case VT_R8:
    case VT_CY:
      property.kind = Kind::Number;
      return;
    default:
      return;  // an object, an array
  }
}

// --- Members
// ------------------------------------------------------------------------------------------------

using Found = std::map<DISPID, Property>;

void ReadNames(ITypeInfo& info, Property& property) {
  Bstr name, help;
  if (FAILED(info.GetDocumentation(property.id, name.Out(), help.Out(), nullptr, nullptr))) return;
  property.name = name.Text();
  property.help = help.Text();
}

// The value is what the function returns, or what its last argument points to.
void ReadGetter(ITypeInfo& info, const FUNCDESC& function, Found& found) {
  constexpr WORD kHidden = FUNCFLAG_FHIDDEN | FUNCFLAG_FRESTRICTED | FUNCFLAG_FNONBROWSABLE;
  const bool returns = function.elemdescFunc.tdesc.vt != VT_HRESULT;
  if (function.wFuncFlags & kHidden || function.cParams != (returns ? 0 : 1)) return;
  Property& property = found[function.memid];
  property.id = function.memid;
  ReadNames(info, property);
  ReadType(info, returns ? function.elemdescFunc.tdesc : function.lprgelemdescParam[0].tdesc, property);
}

void ReadFunctions(ITypeInfo& info, const TYPEATTR& attributes, Found& found) {
  for (UINT i = 0; i < attributes.cFuncs; ++i) {
    const auto function = FunctionOf(info, i);
    if (function && function->invkind == INVOKE_PROPERTYGET) ReadGetter(info, *function, found);
  }
  for (UINT i = 0; i < attributes.cFuncs; ++i) {
    const auto function = FunctionOf(info, i);
    if (!function || !(function->invkind & (INVOKE_PROPERTYPUT | INVOKE_PROPERTYPUTREF))) continue;
    const auto property = found.find(function->memid);
    if (property == found.end()) continue;
    property->second.can_set = true;
    if (function->invkind == INVOKE_PROPERTYPUTREF) property->second.by_reference = true;
  }
}

void ReadVariables(ITypeInfo& info, const TYPEATTR& attributes, Found& found) {
  constexpr WORD kHidden = VARFLAG_FHIDDEN | VARFLAG_FRESTRICTED | VARFLAG_FNONBROWSABLE;
  for (UINT i = 0; i < attributes.cVars; ++i) {
    const auto variable = VariableOf(info, i);
    if (!variable || variable->varkind != VAR_DISPATCH || variable->wVarFlags & kHidden) continue;
    Property& property = found[variable->memid];
    property.id = variable->memid;
    property.can_set = !(variable->wVarFlags & VARFLAG_FREADONLY);
    ReadNames(info, property);
    ReadType(info, variable->elemdescVar.tdesc, property);
  }
}

// --- What the control adds
// ----------------------------------------------------------------------------------

// Those that every designer knows.
const wchar_t* KnownGroup(PROPCAT category) {
  constexpr const wchar_t* kNames[] = {nullptr,     nullptr, L"Misc", L"Font", L"Position", L"Appearance",
                                       L"Behavior", L"Data", L"List", L"Text", L"Scale",    L"DDE"};
  const bool known = category <= 0 && category > -static_cast<int>(std::size(kNames));
  return known ? kNames[-category] : nullptr;
}

std::wstring GroupOf(ICategorizeProperties& categories, DISPID id) {
  PROPCAT category = 0;
  if (FAILED(categories.MapPropertyToCategory(id, &category))) return {};
  if (const wchar_t* known = KnownGroup(category)) return known;
  Bstr name;
  return SUCCEEDED(categories.GetCategoryName(category, LOCALE_USER_DEFAULT, name.Out())) ? name.Text() : L"";
}

bool HasPage(IPerPropertyBrowsing& browsing, DISPID id) {
  CLSID page = GUID_NULL;
  return browsing.MapPropertyToPage(id, &page) == S_OK && page != GUID_NULL;
}

void AskControl(IDispatch& control, std::vector<Property>& properties) {
  ComPtr<ICategorizeProperties> categories;
  ComPtr<IPerPropertyBrowsing> browsing;
  control.QueryInterface(IID_PPV_ARGS(&categories));
  control.QueryInterface(IID_PPV_ARGS(&browsing));
  for (Property& property : properties) {
    if (categories) property.group = GroupOf(*categories.Get(), property.id);
    if (browsing) property.has_page = HasPage(*browsing.Get(), property.id);
  }
}

}  // namespace

std::vector<Property> PropertiesOf(IDispatch& control) {
  ComPtr<ITypeInfo> info;
  if (FAILED(control.GetTypeInfo(0, LOCALE_USER_DEFAULT, &info)) || !info) return {};
  const auto attributes = AttributesOf(*info.Get());
  if (!attributes) return {};
  Found found;
  ReadFunctions(*info.Get(), *attributes, found);
  ReadVariables(*info.Get(), *attributes, found);
  std::vector<Property> properties;
  for (auto& [id, property] : found)
    if (!property.name.empty()) properties.push_back(std::move(property));
  AskControl(control, properties);
  return properties;
}

}  // namespace designer
