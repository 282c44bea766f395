#include "pages.h"

#include <ocidl.h>
#include <olectl.h>
#include <wrl/client.h>

#include <memory>
#include <vector>

namespace designer {
namespace {

using Microsoft::WRL::ComPtr;

// The frame of some systems has an empty tab for a page that it can't create.
bool CanBeCreated(const CLSID& page) {
  ComPtr<IClassFactory> factory;
  return SUCCEEDED(CoGetClassObject(page, CLSCTX_INPROC_SERVER, nullptr, IID_PPV_ARGS(&factory)));
}

std::vector<CLSID> AllPages(IUnknown& control) {
  ComPtr<ISpecifyPropertyPages> source;
  CAUUID named = {};
  std::vector<CLSID> pages;
  if (FAILED(control.QueryInterface(IID_PPV_ARGS(&source))) || FAILED(source->GetPages(&named))) return pages;
  const std::unique_ptr<CLSID, decltype(&CoTaskMemFree)> owner(named.pElems, &CoTaskMemFree);
  for (ULONG i = 0; i < named.cElems; ++i)
    if (CanBeCreated(named.pElems[i])) pages.push_back(named.pElems[i]);
  return pages;
}

std::vector<CLSID> PageOf(IUnknown& control, DISPID property) {
  ComPtr<IPerPropertyBrowsing> browsing;
  CLSID page = GUID_NULL;
  if (FAILED(control.QueryInterface(IID_PPV_ARGS(&browsing))) ||
      browsing->MapPropertyToPage(property, &page) != S_OK || !CanBeCreated(page))
    return {};
  return {page};
}

}  // namespace

bool ShowPages(IUnknown& control, const std::wstring& name, HWND owner, std::optional<DISPID> property) {
  std::vector<CLSID> pages = property ? PageOf(control, *property) : AllPages(control);
  if (pages.empty()) return false;
  IUnknown* objects[] = {&control};
  OCPFIPARAMS parameters = {};
  parameters.cbStructSize = sizeof parameters;
  parameters.hWndOwner = owner;
  parameters.x = parameters.y = 40;
  parameters.lpszCaption = name.c_str();
  parameters.cObjects = 1;
  parameters.lplpUnk = objects;
  parameters.cPages = static_cast<ULONG>(pages.size());
  parameters.lpPages = pages.data();
  parameters.lcid = LOCALE_USER_DEFAULT;
  parameters.dispidInitialProperty = property.value_or(DISPID_UNKNOWN);
  return SUCCEEDED(OleCreatePropertyFrameIndirect(&parameters));
}

}  // namespace designer
