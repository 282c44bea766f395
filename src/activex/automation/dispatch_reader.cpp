#include "activex/automation/dispatch_reader.h"

#include <string>

namespace marklet::activex {
namespace {

class DispatchMembers final : public NamedMembers {
 public:
  explicit DispatchMembers(ComPtr<IDispatch> object) : object_(std::move(object)) {}

  std::optional<Long> GetLong(std::string_view name) override {
    Variant value;
    DISPID dispid = DISPID_UNKNOWN;
    if (!Find(name, dispid) || !ReadProperty(*object_.Get(), dispid, VT_I4, value)) return std::nullopt;
    return static_cast<Long>(value.lVal);
  }

  bool PutLong(std::string_view name, Long value) override {
    DISPID dispid = DISPID_UNKNOWN;
    if (!Find(name, dispid)) return false;
    VARIANT argument;
    argument.vt = VT_I4;
    argument.lVal = value;
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS parameters = {&argument, &put, 1, 1};
    return SUCCEEDED(object_->Invoke(dispid, GUID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYPUT,
                                     &parameters, nullptr, nullptr, nullptr));
  }

 private:
  bool Find(std::string_view name, DISPID& dispid) {
    std::wstring text = Wide(name);
    LPOLESTR names[] = {text.data()};
    return SUCCEEDED(object_->GetIDsOfNames(GUID_NULL, names, 1, LOCALE_USER_DEFAULT, &dispid));
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

std::shared_ptr<NamedMembers> MembersOf(ComPtr<IDispatch> object) {
  if (!object) return nullptr;
  return std::make_shared<DispatchMembers>(std::move(object));
}

}  // namespace marklet::activex
