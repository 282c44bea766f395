#include "activex/property_page.h"

#include <cwchar>

namespace ocx_test {

class PropertyPages::Page final : public IPropertyPage {
 public:
  explicit Page(PropertyPages& pages) : pages_(pages) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    *object = nullptr;
    if (iid != IID_IUnknown && iid != IID_IPropertyPage) return E_NOINTERFACE;
    *object = this;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override { return --references_; }
  ULONG References() const { return references_; }

  HRESULT STDMETHODCALLTYPE SetPageSite(IPropertyPageSite*) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE Activate(HWND parent, LPCRECT, BOOL) override {
    const HWND frame = GetParent(parent);
    if (pages_.on_activate) pages_.on_activate();
    PostMessageW(frame, WM_COMMAND, IDCANCEL, 0);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Deactivate() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE GetPageInfo(PROPPAGEINFO* info) override {
    const auto copy = [](const wchar_t* text) {
      const auto result = static_cast<LPOLESTR>(CoTaskMemAlloc((wcslen(text) + 1) * sizeof *text));
      return wcscpy(result, text);
    };
    info->pszTitle = copy(L"Page");
    info->size = {100, 50};
    info->pszDocString = copy(L"");
    info->pszHelpFile = nullptr;
    info->dwHelpContext = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE SetObjects(ULONG count, IUnknown** objects) override {
    if (count == 1 && As<IUnknown>(objects[0]).Get() == pages_.control_) ++pages_.objects_right_;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Show(UINT) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE Move(LPCRECT) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE IsPageDirty() override { return S_FALSE; }
  HRESULT STDMETHODCALLTYPE Apply() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE Help(LPCOLESTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE TranslateAccelerator(MSG*) override { return S_FALSE; }

 private:
  PropertyPages& pages_;
  ULONG references_ = 0;
};

class PropertyPages::Factory final : public IClassFactory {
 public:
  Factory(PropertyPages& pages, int number) : pages_(pages), number_(number), page_(pages) {}
  ~Factory() { EXPECT_EQ(0u, page_.References()) << "the frame keeps a page"; }
  Factory(const Factory&) = delete;
  Factory& operator=(const Factory&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    *object = nullptr;
    if (iid != IID_IUnknown && iid != IID_IClassFactory) return E_NOINTERFACE;
    *object = this;
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }  // lives longer than its registration
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID iid, void** object) override {
    pages_.created_.push_back(number_);
    return page_.QueryInterface(iid, object);
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

 private:
  PropertyPages& pages_;
  int number_;
  Page page_;
};

PropertyPages::PropertyPages(IUnknown* control, const std::vector<int>& there)
    : control_(As<IUnknown>(control).Get()) {
  CAUUID ids = {};
  EXPECT_EQ(S_OK, As<ISpecifyPropertyPages>(control)->GetPages(&ids));
  for (const int number : there) {
    factories_.push_back(std::make_unique<Factory>(*this, number));
    cookies_.push_back(0);
    EXPECT_EQ(S_OK, CoRegisterClassObject(ids.pElems[number], factories_.back().get(), CLSCTX_INPROC_SERVER,
                                          REGCLS_MULTIPLEUSE, &cookies_.back()));
  }
  CoTaskMemFree(ids.pElems);
}

PropertyPages::~PropertyPages() {
  for (const DWORD cookie : cookies_) CoRevokeClassObject(cookie);
}

}  // namespace ocx_test
