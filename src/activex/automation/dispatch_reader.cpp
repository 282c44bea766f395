#include "activex/automation/dispatch_reader.h"

#include <limits>
#include <string>

namespace marklet::activex {
namespace {

class DispatchMembers final : public NamedMembers {
 public:
  explicit DispatchMembers(ComPtr<IDispatch> object) : object_(std::move(object)) {}

  bool Has(std::string_view name) override {
    DISPID dispid = DISPID_UNKNOWN;
    return GetId(name, dispid);
  }

  // Colours come as unsigned numbers too.
  std::optional<Long> GetLong(std::string_view name) override {
    Variant value;
    if (!Read(name, VT_I8, value) || value.llVal < std::numeric_limits<Long>::min() ||
        value.llVal > std::numeric_limits<std::uint32_t>::max())
      return std::nullopt;
    return static_cast<Long>(value.llVal);
  }

  std::optional<double> GetNumber(std::string_view name) override {
    Variant value;
    if (!Read(name, VT_R8, value)) return std::nullopt;
    return value.dblVal;
  }

  // The low 32 bits of a handle are all of it; the others follow its sign or are zero, as the host likes.
  std::optional<std::intptr_t> GetHandle(std::string_view name) override {
    Variant value;
    if (!Read(name, VT_I8, value)) return std::nullopt;
    return static_cast<std::intptr_t>(static_cast<std::int32_t>(value.llVal));
  }

  NamedMembersRef GetObject(std::string_view name) override {
    Variant value;
    return Read(name, VT_DISPATCH, value) ? MembersOf(value.pdispVal) : nullptr;
  }

  bool PutFlag(std::string_view name, bool flag) override {
    DISPID dispid = DISPID_UNKNOWN;
    if (!GetId(name, dispid)) return false;
    VARIANT argument;
    argument.vt = VT_BOOL;
    argument.boolVal = flag ? VARIANT_TRUE : VARIANT_FALSE;
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS parameters = {&argument, &put, 1, 1};
    return SUCCEEDED(object_->Invoke(dispid, GUID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYPUT,
                                     &parameters, nullptr, nullptr, nullptr));
  }

  void Find(const std::function<bool(const NamedMembersRef& object)>& visit) override {
    if (const ComPtr<IEnumVARIANT> enumerator = Enumerator())
      FindBy(*enumerator.Get(), visit);
    else
      FindByIndex(visit);
  }

 private:
  bool GetId(std::string_view name, DISPID& dispid) {
    std::wstring text = Wide(name);
    LPOLESTR names[] = {text.data()};
    return SUCCEEDED(object_->GetIDsOfNames(GUID_NULL, names, 1, LOCALE_USER_DEFAULT, &dispid));
  }

  // Some containers have methods where others have properties.
  bool Invoke(DISPID dispid, VARIANT* argument, VARIANT& result) {
    DISPPARAMS parameters = {argument, nullptr, argument ? 1u : 0u, 0};
    return SUCCEEDED(object_->Invoke(dispid, GUID_NULL, LOCALE_USER_DEFAULT,
                                     DISPATCH_METHOD | DISPATCH_PROPERTYGET, &parameters, &result, nullptr,
                                     nullptr));
  }

  bool Read(std::string_view name, VARTYPE type, VARIANT& result) {
    DISPID dispid = DISPID_UNKNOWN;
    return GetId(name, dispid) && Invoke(dispid, nullptr, result) &&
           SUCCEEDED(::VariantChangeType(&result, &result, 0, type));
  }

  ComPtr<IEnumVARIANT> Enumerator() {
    Variant value;
    ComPtr<IEnumVARIANT> result;
    if (Invoke(DISPID_NEWENUM, nullptr, value) && (value.vt == VT_UNKNOWN || value.vt == VT_DISPATCH) &&
        value.punkVal)
      value.punkVal->QueryInterface(IID_PPV_ARGS(result.GetAddressOf()));
    return result;
  }

  // What is no object is passed over.
  static bool Visit(VARIANT& item, const std::function<bool(const NamedMembersRef&)>& visit) {
    return SUCCEEDED(::VariantChangeType(&item, &item, 0, VT_DISPATCH)) && item.pdispVal &&
           visit(MembersOf(item.pdispVal));
  }

  static void FindBy(IEnumVARIANT& enumerator, const std::function<bool(const NamedMembersRef&)>& visit) {
    for (;;) {
      Variant item;
      if (enumerator.Next(1, &item, nullptr) != S_OK || Visit(item, visit)) return;
    }
  }

  void FindByIndex(const std::function<bool(const NamedMembersRef&)>& visit) {
    const Long count = GetLong("Count").value_or(0);
    for (Long at = 0; at < count; ++at) {
      VARIANT index;
      index.vt = VT_I4;
      index.lVal = at;
      Variant item;
      if (Invoke(DISPID_VALUE, &index, item) && Visit(item, visit)) return;
    }
  }

  ComPtr<IDispatch> object_;
};

}  // namespace

bool ReadProperty(IDispatch& object, DISPID dispid, VARTYPE type, VARIANT& result) {
  DISPPARAMS none = {};
  if (FAILED(object.Invoke(dispid, GUID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none, &result,
                           nullptr, nullptr)))
    return false;
  return type == VT_EMPTY || SUCCEEDED(::VariantChangeType(&result, &result, 0, type));
}

NamedMembersRef MembersOf(ComPtr<IDispatch> object) {
  if (!object) return nullptr;
  return std::make_shared<DispatchMembers>(std::move(object));
}

}  // namespace marklet::activex
