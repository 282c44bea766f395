#include "activex/control/ole_bag.h"

#include <new>

#include "activex/automation/bag_variant.h"
#include "activex/com/boundary.h"
#include "activex/com/text.h"

namespace marklet::activex {
namespace {

bool IsAboutType(HRESULT result) {
  return result == DISP_E_TYPEMISMATCH || result == DISP_E_OVERFLOW || result == DISP_E_BADVARTYPE;
}

bool MayBeLeftOut(const BagValue& value, const BagValue& fallback) {
  const auto* font = std::get_if<FontRef>(&value);
  const auto* other = std::get_if<FontRef>(&fallback);
  return font && other && *font && *other ? SameFont(**font, **other) : value == fallback;
}

}  // namespace

std::optional<BagValue> OleBag::ReadProperty(std::string_view name, BagType type) {
  const std::wstring wide_name = Wide(name);
  Variant value;
  HRESULT result = bag_.Read(wide_name.c_str(), &value, log_);
  // A bag that isn't told a type gives what it has; some want to be told.
  if (FAILED(result) && result != E_INVALIDARG) {
    ::VariantClear(&value);
    value.vt = VariantTypeOf(type);
    value.llVal = 0;
    result = bag_.Read(wide_name.c_str(), &value, nullptr);
    if (FAILED(result)) {
      value.vt = VT_EMPTY;  // what a failing bag has left there isn't ours to free
      if (IsAboutType(result)) return BagValue();
    }
  }
  if (result == E_OUTOFMEMORY) throw std::bad_alloc();
  if (FAILED(result) || value.vt == VT_EMPTY) return std::nullopt;
  BagValue read = BagValueFromVariant(value, type);
  if (read.index() == 0) Report(wide_name);
  return read;
}

// The host is told of a value that is there and can't be used.
void OleBag::Report(const std::wstring& name) {
  if (!log_) return;
  BstrResult source, description;
  *source.Out() = NewBstr(u"Marklet");
  *description.Out() = NewBstr(u"The saved value isn't of the property's type.");
  EXCEPINFO info = {};
  info.bstrSource = source.Get();
  info.bstrDescription = description.Get();
  info.scode = DISP_E_TYPEMISMATCH;
  log_->AddError(name.c_str(), &info);
}

void OleBag::WriteProperty(std::string_view name, const BagValue& value, const BagValue& fallback) {
  if (!save_all_ && MayBeLeftOut(value, fallback)) return;
  Write(name, [&](VARIANT& variant) { return VariantFromBagValue(host_font_, value, variant); });
}

void OleBag::WriteBytes(std::string_view name, const ByteArray& bytes) {
  Write(name, [&](VARIANT& variant) {
    VariantFromBytes(bytes, variant);
    return true;
  });
}

template <typename Fill>
void OleBag::Write(std::string_view name, Fill fill) {
  const HRESULT result = Guarded([&] {
    Variant variant;
    return fill(variant) ? bag_.Write(Wide(name).c_str(), &variant) : S_OK;
  });
  if (SUCCEEDED(written_)) written_ = result;
}

}  // namespace marklet::activex
