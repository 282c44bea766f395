// A host's property bag as the control sees it.
#pragma once

#include "activex/automation/font.h"
#include "activex/com/com.h"
#include "host/property_bag.h"

namespace marklet::activex {

class OleBag final : public PropertyBag {
 public:
  // `log` may be null. With `save_all`, values that equal their defaults are written too.
  OleBag(HostFont& host_font, IPropertyBag& bag, IErrorLog* log, bool save_all)
      : host_font_(host_font), bag_(bag), log_(log), save_all_(save_all) {}

  // Throws std::bad_alloc when it is the bag that has no memory.
  std::optional<BagValue> ReadProperty(std::string_view name, BagType type) override;
  void WriteProperty(std::string_view name, const BagValue& value, const BagValue& fallback) override;
  void WriteBytes(std::string_view name, const ByteArray& bytes) override;

  // The first failure to write. The control goes on after one.
  HRESULT Written() const { return written_; }

 private:
  void Report(const std::wstring& name);
  template <typename Fill>
  void Write(std::string_view name, Fill fill);

  HostFont& host_font_;
  IPropertyBag& bag_;
  IErrorLog* log_;
  bool save_all_;
  HRESULT written_ = S_OK;
};

}  // namespace marklet::activex
