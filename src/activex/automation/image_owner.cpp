#include "activex/automation/image_owner.h"

#include "activex/automation/image_list.h"
#include "activex/automation/type_info.h"
#include "activex/com/guid.h"
#include "activex/com/text.h"

namespace marklet::activex {
namespace {

// What `use` makes of the description of this interface.
template <typename Use>
HRESULT WithTypeInfo(Use&& use) {
  ComPtr<ITypeInfo> info;
  const HRESULT result = GetOwnTypeInfo(kImageOwnerGuid, info.GetAddressOf());
  return FAILED(result) ? result : use(*info.Get());
}

}  // namespace

ImageRef OwnLabelFace::LoadImageIntoList(std::u16string_view file, std::u16string_view key) {
  const Entry entry(owner_);
  return marklet_.LoadImageIntoList(file, key);
}

HRESULT ImageOwnerFace::GetTypeInfoCount(UINT* count) {
  if (!count) return E_POINTER;
  *count = 1;
  return S_OK;
}

HRESULT ImageOwnerFace::GetTypeInfo(UINT index, LCID, ITypeInfo** info) {
  if (!info) return E_POINTER;
  *info = nullptr;
  if (index != 0) return DISP_E_BADINDEX;
  return Call([&] { return GetOwnTypeInfo(kImageOwnerGuid, info); });
}

HRESULT ImageOwnerFace::GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
  if (iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (!ids || !names || count == 0) return E_POINTER;
  return Call(
      [&] { return WithTypeInfo([&](ITypeInfo& info) { return info.GetIDsOfNames(names, count, ids); }); });
}

HRESULT ImageOwnerFace::Invoke(DISPID id, REFIID iid, LCID, WORD flags, DISPPARAMS* parameters,
                               VARIANT* result, EXCEPINFO* exception, UINT* bad_argument) {
  if (iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (!parameters) return E_POINTER;
  return Call([&] {
    return WithTypeInfo([&](ITypeInfo& info) {
      return info.Invoke(static_cast<IImageOwner*>(this), id, flags, parameters, result, exception,
                         bad_argument);
    });
  });
}

HRESULT ImageOwnerFace::DestroyIconByteCollectionData() {
  return Call([&] {
    images_.DestroyIconByteCollectionData();
    return S_OK;
  });
}

HRESULT ImageOwnerFace::DeleteIconImage(BSTR key) {
  return Call([&] {
    images_.DeleteIconImage(FromBstr(key));
    return S_OK;
  });
}

HRESULT ImageOwnerFace::LoadIconByteImageFromDisk(BSTR file, BSTR key, IDispatch** image) {
  if (!image) return E_POINTER;
  *image = nullptr;
  return Call([&] {
    *image = ImageObject(images_.LoadIconByteImageFromDisk(FromBstr(file), FromBstr(key))).Detach();
    return S_OK;
  });
}

HRESULT ImageOwnerFace::GetIconByteCollection(IDispatch** list) {
  if (!list) return E_POINTER;
  *list = nullptr;
  return Call([&] {
    *list = ListObject(images_.GetIconByteCollection()).Detach();
    return S_OK;
  });
}

HRESULT ImageOwnerFace::GetFriendlyString(BSTR* text) {
  if (!text) return E_POINTER;
  *text = nullptr;
  return Call([&] {
    *text = NewBstr(images_.GetFriendlyString());
    return S_OK;
  });
}

}  // namespace marklet::activex
