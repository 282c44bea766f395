// A host's property bag as the control sees it.
#pragma once

#include "activex/com.h"
#include "platform/property_bag.h"

namespace marklet::activex {

class ControlObject;

class OleBag final : public PropertyBag {
 public:
  // `log` may be null. With `save_all`, values that equal their defaults are written too.
  OleBag(ControlObject& control, IPropertyBag& bag, IErrorLog* log, bool save_all)
      : control_(control), bag_(bag), log_(log), save_all_(save_all) {}

  std::optional<BagValue> ReadProperty(std::string_view name, BagType type) override;
  void WriteProperty(std::string_view name, const BagValue& value, const BagValue& fallback) override;

  // The first failure to write. The control goes on behind one.
  HRESULT Written() const { return written_; }

 private:
  void Report(const std::wstring& name);

  ControlObject& control_;
  IPropertyBag& bag_;
  IErrorLog* log_;
  bool save_all_;
  HRESULT written_ = S_OK;
};

}  // namespace marklet::activex
