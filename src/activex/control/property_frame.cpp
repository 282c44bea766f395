#include "activex/control/property_frame.h"

#include <memory>
#include <vector>

namespace marklet::activex {
namespace {

bool CanBeCreated(const CLSID& page) {
  ComPtr<IClassFactory> factory;
  return SUCCEEDED(
      ::CoGetClassObject(page, CLSCTX_INPROC_SERVER, nullptr, IID_PPV_ARGS(factory.GetAddressOf())));
}

// The frame of some systems has an empty tab for a page that it can't create.
std::vector<CLSID> PagesThere(IUnknown& object) {
  std::vector<CLSID> there;
  ComPtr<ISpecifyPropertyPages> source;
  CAUUID named = {};
  if (FAILED(object.QueryInterface(IID_PPV_ARGS(source.GetAddressOf()))) || FAILED(source->GetPages(&named)))
    return there;
  const std::unique_ptr<CLSID, decltype(&::CoTaskMemFree)> owner(named.pElems, &::CoTaskMemFree);
  for (ULONG i = 0; i < named.cElems; ++i)
    if (CanBeCreated(named.pElems[i])) there.push_back(named.pElems[i]);
  return there;
}

}  // namespace

HRESULT ShowPropertyFrame(IUnknown& object, ::HWND owner, const std::wstring& caption, LCID locale) {
  std::vector<CLSID> pages = PagesThere(object);
  if (pages.empty()) return OLEOBJ_S_CANNOT_DOVERB_NOW;
  IUnknown* objects[] = {&object};
  return ::OleCreatePropertyFrame(owner, 0, 0, caption.c_str(), 1, objects, static_cast<ULONG>(pages.size()),
                                  pages.data(), locale, 0, nullptr);
}

}  // namespace marklet::activex
