// The control in the system's frame for property pages, with pages of our own in the place of those it names.
#include <vector>

#include "activex/container.h"

namespace ocx_test {
namespace {

// What the pages saw, in order.
struct FrameLog {
  std::vector<int> created;
  int objects_right = 0;
};

// Closes the frame as soon as it is shown.
class Page final : public IPropertyPage {
 public:
  Page(FrameLog& log, IUnknown* expected) : log_(log), expected_(expected) {}

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
    PostMessageW(GetParent(parent), WM_COMMAND, IDCANCEL, 0);
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
    if (count == 1 && As<IUnknown>(objects[0]).Get() == expected_) ++log_.objects_right;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Show(UINT) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE Move(LPCRECT) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE IsPageDirty() override { return S_FALSE; }
  HRESULT STDMETHODCALLTYPE Apply() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE Help(LPCOLESTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE TranslateAccelerator(MSG*) override { return S_FALSE; }

 private:
  FrameLog& log_;
  IUnknown* expected_;
  ULONG references_ = 0;
};

class PageFactory final : public IClassFactory {
 public:
  PageFactory(FrameLog& log, IUnknown* expected, int number)
      : log_(log), number_(number), page_(log, expected) {}
  ~PageFactory() { EXPECT_EQ(0u, page_.References()) << "the frame keeps a page"; }
  PageFactory(const PageFactory&) = delete;
  PageFactory& operator=(const PageFactory&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    *object = nullptr;
    if (iid != IID_IUnknown && iid != IID_IClassFactory) return E_NOINTERFACE;
    *object = this;
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }  // lives longer than its registration
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID iid, void** object) override {
    log_.created.push_back(number_);
    return page_.QueryInterface(iid, object);
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

 private:
  FrameLog& log_;
  int number_;
  Page page_;
};

TEST(PropertyFrame, ShowsTheControlsThreePagesWithTheControl) {
  Container container;
  container.Host();
  ASSERT_EQ(S_OK, container.Activate());
  FrameLog log;
  IUnknown* object = container.Object();
  PageFactory factories[] = {{log, object, 0}, {log, object, 1}, {log, object, 2}};
  DWORD cookies[3] = {};
  CAUUID pages = {};
  ASSERT_EQ(S_OK, As<ISpecifyPropertyPages>(object)->GetPages(&pages));
  ASSERT_EQ(3u, pages.cElems);
  for (int i = 0; i < 3; ++i)
    ASSERT_EQ(S_OK, CoRegisterClassObject(pages.pElems[i], &factories[i], CLSCTX_INPROC_SERVER,
                                          REGCLS_MULTIPLEUSE, &cookies[i]));
  const HRESULT result = OleCreatePropertyFrame(container.Window(), 0, 0, L"Marklet", 1, &object,
                                                pages.cElems, pages.pElems, LOCALE_USER_DEFAULT, 0, nullptr);
  for (const DWORD cookie : cookies) CoRevokeClassObject(cookie);
  CoTaskMemFree(pages.pElems);
  EXPECT_EQ(S_OK, result);
  EXPECT_EQ((std::vector<int>{0, 1, 2}), log.created);
  EXPECT_EQ(3, log.objects_right);
}

}  // namespace
}  // namespace ocx_test
