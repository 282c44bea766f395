#include "activex/automation/image_list.h"

#include <utility>
#include <vector>

#include "activex/automation/late_bound.h"
#include "activex/automation/value_conversion.h"
#include "activex/com/enumerator.h"
#include "activex/com/guid.h"
#include "activex/com/own.h"
#include "activex/com/text.h"

namespace marklet::activex {
namespace {

constexpr HRESULT kNoSuchItem = static_cast<HRESULT>(0x800A0005);  // automation's "invalid argument"

VARIANT GiveObject(ComPtr<IDispatch> object) {
  VARIANT result;
  ::VariantInit(&result);
  result.vt = VT_DISPATCH;
  result.pdispVal = object.Detach();
  return result;
}

// --- An image ---------------------------------------------------------------------------------------------

class Image final : public LateBound<Image> {
 public:
  explicit Image(ImageRef image) : image_(std::move(image)) {}

  static const Member kMembers[1];

 private:
  HRESULT Key(const DISPPARAMS&, VARIANT& result) {
    result.bstrVal = NewBstr(image_->Key());
    result.vt = VT_BSTR;
    return S_OK;
  }

  ImageRef image_;
};

const Image::Member Image::kMembers[] = {{"Key", DISPID_VALUE, 0, &Image::Key}};

// --- The list ---------------------------------------------------------------------------------------------

struct GiveImage {
  static VARIANT Give(const ImageRef& image) { return GiveObject(ImageObject(image)); }
};
using ImageEnumerator = Enumerator<IEnumVARIANT, VARIANT, ImageRef, GiveImage>;

class List final : public LateBound<List> {
 public:
  static constexpr IID kIid = ParseGuid("{6D0A1F52-7C0E-4B7B-9A53-2C1C1F0B7E41}");

  explicit List(std::shared_ptr<ImageCollection> list) : list_(std::move(list)) {}

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    if (iid != kIid || !object) return LateBound::QueryInterface(iid, object);
    *object = this;
    AddRef();
    return S_OK;
  }
  std::shared_ptr<ImageCollection> Images() const { return list_; }

  static const Member kMembers[3];

 private:
  HRESULT Count(const DISPPARAMS&, VARIANT& result) {
    result.lVal = list_->Count();
    result.vt = VT_I4;
    return S_OK;
  }

  HRESULT Item(const DISPPARAMS& parameters, VARIANT& result) {
    const VARIANT& index = parameters.rgvarg[0];
    const bool by_key = (index.vt & VT_TYPEMASK) == VT_BSTR;
    Value value;
    const HRESULT outcome = ValueFromVariant(index, by_key ? ValueType::Text : ValueType::Number, value);
    if (FAILED(outcome)) return outcome;
    const ImageRef image =
        by_key ? list_->Item(std::get<std::u16string>(value)) : list_->Item(std::get<Long>(value));
    if (!image) return kNoSuchItem;
    result = GiveObject(ImageObject(image));
    return S_OK;
  }

  HRESULT NewEnum(const DISPPARAMS&, VARIANT& result) {
    std::vector<ImageRef> images;
    for (Long position = 1; position <= list_->Count(); ++position) images.push_back(list_->Item(position));
    result.punkVal = new ImageEnumerator(std::move(images));
    result.vt = VT_UNKNOWN;
    return S_OK;
  }

  std::shared_ptr<ImageCollection> list_;
};

const List::Member List::kMembers[] = {{"Item", DISPID_VALUE, 1, &List::Item},
                                       {"Count", 1, 0, &List::Count},
                                       {"_NewEnum", DISPID_NEWENUM, 0, &List::NewEnum}};

}  // namespace

ComPtr<IDispatch> ListObject(std::shared_ptr<ImageCollection> list) {
  if (!list) return {};
  return Adopt<IDispatch>(new List(std::move(list)));
}

std::shared_ptr<ImageCollection> ListBehind(IDispatch* object) {
  const ComPtr<List> list = AsOwn<List>(object);
  return list ? list->Images() : nullptr;
}

ComPtr<IDispatch> ImageObject(ImageRef image) {
  if (!image) return {};
  return Adopt<IDispatch>(new Image(std::move(image)));
}

}  // namespace marklet::activex
