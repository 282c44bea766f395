// Late-bound calls.
#include "activex/automation/dispatch.h"

#include <iterator>

#include "activex/automation/error_report.h"
#include "activex/automation/type_info.h"
#include "activex/automation/value_conversion.h"
#include "activex/com/boundary.h"
#include "activex/com/guid.h"
#include "activex/com/text.h"
#include "control/property_table.h"

namespace marklet::activex {
namespace {

DISPID FindMember(const wchar_t* name) {
  for (const PropertyRow& row : Properties())
    if (SameName(name, row.name)) return row.dispid;
  const MethodRow& method = LoadIconImageFromFileRow();
  return SameName(name, method.name) ? method.dispid : DISPID_UNKNOWN;
}

// Arguments are numbered from 0 in the order in which the member declares them.
DISPID FindArgument(DISPID member, const wchar_t* name) {
  const MethodRow& method = LoadIconImageFromFileRow();
  if (member != method.dispid) return DISPID_UNKNOWN;
  for (std::size_t i = 0; i < method.arguments.size(); ++i)
    if (SameName(name, method.arguments[i].name)) return static_cast<DISPID>(i);
  return DISPID_UNKNOWN;
}

// What a call came with.
struct Call {
  Marklet& marklet;
  HostFont& host_font;
  WORD flags;
  DISPPARAMS& parameters;
  VARIANT* result;
  UINT* bad_argument;
};

HRESULT BadArgument(const Call& call, HRESULT result, UINT index) {
  const bool about_type = result == DISP_E_TYPEMISMATCH || result == DISP_E_OVERFLOW;
  if (call.bad_argument) *call.bad_argument = index;
  return about_type ? DISP_E_TYPEMISMATCH : result;
}

HRESULT GetProperty(const Call& call, const PropertyRow& row) {
  if (call.parameters.cArgs != 0) return DISP_E_BADPARAMCOUNT;
  const Value value = call.marklet.Get(row);
  return call.result ? VariantFromValue(call.host_font, value, row.type, *call.result) : S_OK;
}

HRESULT PutProperty(const Call& call, const PropertyRow& row) {
  if (call.parameters.cArgs != 1) return DISP_E_BADPARAMCOUNT;
  if (call.parameters.cNamedArgs > 1) return DISP_E_NONAMEDARGS;
  if (call.parameters.cNamedArgs == 1 && call.parameters.rgdispidNamedArgs[0] != DISPID_PROPERTYPUT)
    return DISP_E_PARAMNOTFOUND;
  Value value;
  const HRESULT result = ValueFromVariant(call.parameters.rgvarg[0], row.type, value);
  if (FAILED(result)) return BadArgument(call, result, 0);
  call.marklet.Set(row, value);
  return S_OK;
}

unsigned PutAttributes(WORD flags) {
  return ((flags & DISPATCH_PROPERTYPUT) != 0 ? kPut : 0u) |
         ((flags & DISPATCH_PROPERTYPUTREF) != 0 ? kPutRef : 0u);
}

HRESULT InvokeProperty(const Call& call, const PropertyRow& row) {
  if (const unsigned puts = PutAttributes(call.flags))
    return (row.attributes & puts) != 0 ? PutProperty(call, row) : DISP_E_MEMBERNOTFOUND;
  return (call.flags & DISPATCH_PROPERTYGET) != 0 ? GetProperty(call, row) : DISP_E_MEMBERNOTFOUND;
}

// Where the argument with this number stands: unnamed ones come last to first after the named ones.
const VARIANT* FindPassed(const DISPPARAMS& parameters, UINT number, UINT& index) {
  for (index = 0; index < parameters.cNamedArgs; ++index)
    if (parameters.rgdispidNamedArgs[index] == static_cast<DISPID>(number)) return &parameters.rgvarg[index];
  const UINT unnamed = parameters.cArgs - parameters.cNamedArgs;
  if (number >= unnamed) return nullptr;
  index = parameters.cArgs - 1 - number;
  return &parameters.rgvarg[index];
}

HRESULT InvokeLoadIconImage(const Call& call) {
  if ((call.flags & DISPATCH_METHOD) == 0) return DISP_E_MEMBERNOTFOUND;
  const DISPPARAMS& parameters = call.parameters;
  if (parameters.cArgs != std::size(property_table::kLoadArguments) ||
      parameters.cNamedArgs > parameters.cArgs)
    return DISP_E_BADPARAMCOUNT;
  Value texts[std::size(property_table::kLoadArguments)];
  for (UINT number = 0; number < std::size(texts); ++number) {
    UINT index = 0;
    const VARIANT* passed = FindPassed(parameters, number, index);
    if (!passed) return BadArgument(call, DISP_E_PARAMNOTFOUND, 0);
    const HRESULT result = ValueFromVariant(*passed, ValueType::Text, texts[number]);
    if (FAILED(result)) return BadArgument(call, result, index);
  }
  const bool loaded = call.marklet.LoadIconImageFromFile(std::get<std::u16string>(texts[0]),
                                                         std::get<std::u16string>(texts[1]));
  return call.result ? VariantFromValue(call.host_font, loaded, ValueType::Boolean, *call.result) : S_OK;
}

HRESULT Dispatch(const Call& call, DISPID id) {
  if (const PropertyRow* row = PropertyOf(id)) return InvokeProperty(call, *row);
  if (id == LoadIconImageFromFileRow().dispid) return InvokeLoadIconImage(call);
  return DISP_E_MEMBERNOTFOUND;
}

}  // namespace

const PropertyRow* PropertyOf(DISPID id) {
  for (const PropertyRow& row : Properties())
    if (row.dispid == id) return &row;
  return nullptr;
}

HRESULT GetTypeInfoOfDispatch(UINT index, ITypeInfo** info) {
  if (!info) return E_POINTER;
  *info = nullptr;
  return index == 0 ? GetOwnTypeInfo(kDispatchGuid, info) : DISP_E_BADINDEX;
}

HRESULT GetIdsOfNames(REFIID iid, LPOLESTR* names, UINT count, DISPID* ids) {
  if (iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (!ids || (!names && count)) return E_POINTER;
  HRESULT result = S_OK;
  for (UINT i = 0; i < count; ++i) {
    ids[i] = i == 0 ? FindMember(names[0]) : FindArgument(ids[0], names[i]);
    if (ids[i] == DISPID_UNKNOWN) result = DISP_E_UNKNOWNNAME;
  }
  return result;
}

HRESULT InvokeMember(Marklet& marklet, HostFont& host_font, DISPID id, REFIID iid, WORD flags,
                     DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception, UINT* bad_argument) {
  if (iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (!parameters) return E_POINTER;
  if (result) ::VariantInit(result);
  return ReportInvoke(Guarded([&] {
                        return Dispatch({marklet, host_font, flags, *parameters, result, bad_argument}, id);
                      }),
                      exception);
}

}  // namespace marklet::activex
