// `_ISupportsAlphaImage` as callers see it.
#pragma once

#include <string>
#include <vector>

#include "activex/server.h"

namespace ocx_test {

// The slots in the order in which the documentation lists them.
struct ImageOwner : public IDispatch {
  virtual HRESULT STDMETHODCALLTYPE DestroyIconByteCollectionData() = 0;
  virtual HRESULT STDMETHODCALLTYPE DeleteIconImage(BSTR key) = 0;
  virtual HRESULT STDMETHODCALLTYPE LoadIconByteImageFromDisk(BSTR file, BSTR key, IDispatch** image) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetIconByteCollection(IDispatch** list) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetFriendlyString(BSTR* text) = 0;
};

// The keys of a control's images, in their order; "?" alone where there is no list.
inline std::vector<std::wstring> ImageKeys(IUnknown* control) {
  ComPtr<ImageOwner> owner;
  ComPtr<IDispatch> list;
  Variant enumerator;
  if (FAILED(control->QueryInterface(kImageOwnerId, reinterpret_cast<void**>(owner.GetAddressOf()))) ||
      FAILED(owner->GetIconByteCollection(list.GetAddressOf())) || !list ||
      FAILED(Get(list.Get(), DISPID_NEWENUM, enumerator)))
    return {L"?"};
  const ComPtr<IEnumVARIANT> images = As<IEnumVARIANT>(enumerator.punkVal);
  std::vector<std::wstring> keys;
  while (true) {
    Variant image;
    if (images->Next(1, &image, nullptr) != S_OK) return keys;
    keys.push_back(GetText(image.pdispVal, L"Key"));
  }
}

// Loads a file into a control; whether it took it.
inline bool LoadImageFile(IDispatch* control, const std::wstring& path, const std::wstring& key) {
  Variant file(path.c_str()), name(key.c_str()), loaded;
  VARIANT arguments[] = {name, file};  // last to first
  DISPPARAMS parameters = {arguments, nullptr, 2, 0};
  const DISPID id = IdOf(control, L"LoadIconImageFromFile");
  return SUCCEEDED(control->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, &loaded,
                                   nullptr, nullptr)) &&
         loaded.boolVal != VARIANT_FALSE;
}

}  // namespace ocx_test
