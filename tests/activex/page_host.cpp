#include "activex/page_host.h"

// commdlg.h needs windows.h first.
#include <commdlg.h>

#include <cstring>

#include "platform/win32/undefine.h"

namespace ocx_test {

class PageSite final : public IPropertyPageSite {
 public:
  explicit PageSite(PageHost& host) : host_(host) {}
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    *object = nullptr;
    if (iid != IID_IUnknown && iid != IID_IPropertyPageSite) return E_NOINTERFACE;
    *object = this;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override { return --references_; }
  HRESULT STDMETHODCALLTYPE OnStatusChange(DWORD flags) override {
    host_.statuses.push_back(flags);
    if (host_.on_status) host_.on_status();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetLocaleID(LCID* locale) override {
    *locale = LOCALE_USER_DEFAULT;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetPageContainer(IUnknown** container) override {
    *container = nullptr;
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE TranslateAccelerator(MSG*) override { return S_FALSE; }

  ULONG References() const { return references_; }

 private:
  PageHost& host_;
  ULONG references_ = 1;
};

// --- The frame --------------------------------------------------------------------------------------------

PageHost::PageHost(HMODULE server) : site_(new PageSite(*this)) {
  frame_ = CreateWindowExW(0, L"Static", L"", WS_POPUP, 40, 40, 800, 520, nullptr, nullptr, nullptr, nullptr);
  // A window that is shown by being activated is a window manager's to Wine, which waits for it two seconds
  // when the window goes.
  ShowWindow(frame_, SW_SHOWNOACTIVATE);
  using Function = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
  const auto get =
      reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(server, "DllGetClassObject")));
  ComPtr<IClassFactory> factory;
  EXPECT_EQ(S_OK, get(kPageId, IID_PPV_ARGS(factory.GetAddressOf())));
  if (!factory) return;
  EXPECT_EQ(S_OK, factory->CreateInstance(nullptr, IID_PPV_ARGS(page_.GetAddressOf())));
}

PageHost::~PageHost() {
  Close();
  DestroyWindow(frame_);
  EXPECT_EQ(1u, site_->References()) << "the page keeps its site";
  delete site_;
}

void PageHost::Open(IUnknown* object, RECT position) {
  ASSERT_TRUE(page_);
  EXPECT_EQ(S_OK, page_->SetPageSite(site_));
  if (object) Select(object);
  ASSERT_EQ(S_OK, page_->Activate(frame_, &position, FALSE));
  EXPECT_EQ(S_OK, page_->Show(SW_SHOW));
}

void PageHost::Select(IUnknown* object) {
  EXPECT_EQ(S_OK, page_->SetObjects(object ? 1 : 0, object ? &object : nullptr));
}

void PageHost::Close() {
  if (!page_) return;
  page_->Show(SW_HIDE);
  page_->Deactivate();
  page_->SetObjects(0, nullptr);
  page_->SetPageSite(nullptr);
  page_.Reset();
}

// --- Input ------------------------------------------------------------------------------------------------

void PageHost::Type(const std::wstring& text) {
  const HWND edit = Item(kKey);
  SetFocus(edit);
  SendMessageW(edit, EM_SETSEL, 1000, 1000);
  for (const wchar_t unit : text) SendMessageW(edit, WM_CHAR, unit, 1);
}

void PageHost::Press(int button) {
  const HWND window = Item(button);
  if (!IsWindowEnabled(window)) return;
  SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(3, 3));
  if (IsWindow(window)) SendMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(3, 3));
}

void PageHost::PressStrip(int x, UINT message) { SendMessageW(Item(kStrip), message, 0, MAKELPARAM(x, 8)); }

HRESULT PageHost::Key(WPARAM key) {
  MSG message = {};
  message.hwnd = GetFocus();
  message.message = WM_KEYDOWN;
  message.wParam = key;
  message.lParam = 1;
  return page_->TranslateAccelerator(&message);
}

// --- Looks ------------------------------------------------------------------------------------------------

std::wstring PageHost::TextOf(HWND window) {
  wchar_t text[300] = {};
  GetWindowTextW(window, text, 300);
  return text;
}

RECT PageHost::Place(int item) const {
  RECT rect = {};
  GetWindowRect(Item(item), &rect);
  MapWindowPoints(nullptr, Window(), reinterpret_cast<POINT*>(&rect), 2);
  return rect;
}

std::unique_ptr<Picture> PageHost::Strip() const {
  RECT inside = {};
  GetClientRect(Item(kStrip), &inside);
  auto picture = std::make_unique<Picture>(inside.right, inside.bottom);
  SendMessageW(Item(kStrip), WM_PRINTCLIENT, reinterpret_cast<WPARAM>(picture->Dc()), PRF_CLIENT);
  return picture;
}

std::unique_ptr<Picture> PageHost::Look() const {
  constexpr DWORD kCopy = 0x00CC0020;
  RECT inside = {};
  GetClientRect(Window(), &inside);
  RedrawWindow(Window(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
  PumpMessages();
  auto picture = std::make_unique<Picture>(inside.right, inside.bottom);
  const HDC dc = GetDC(Window());
  BitBlt(picture->Dc(), 0, 0, inside.right, inside.bottom, dc, 0, 0, kCopy);
  ReleaseDC(Window(), dc);
  return picture;
}

// --- Answers ----------------------------------------------------------------------------------------------

UINT PageAnswers::per_inch = 0;
bool PageAnswers::has_arrow_font = true;

namespace {

PageAnswers* current = nullptr;

// Up to the second of two NULs.
std::string WholeFilter(const char* filter) {
  const char* end = filter;
  while (end[0] != 0 || end[1] != 0) ++end;
  return {filter, end + 2};
}

BOOL WINAPI AnswerDialog(OPENFILENAMEA* record) {
  PageAnswers& answers = *current;
  answers.dialogs.push_back({record->hwndOwner, WholeFilter(record->lpstrFilter),
                             record->lpstrTitle ? record->lpstrTitle : "",
                             record->lpstrDefExt ? record->lpstrDefExt : "", record->Flags,
                             record->nFilterIndex, record->nMaxFile});
  const std::string file = answers.file;
  if (answers.on_dialog) answers.on_dialog();
  if (file.empty()) return FALSE;
  std::strncpy(record->lpstrFile, file.c_str(), record->nMaxFile);
  return TRUE;
}

int WINAPI AnswerBox(HWND, LPCWSTR text, LPCWSTR title, UINT style) {
  PageAnswers& answers = *current;
  answers.boxes.push_back({text, title ? title : L"", style});
  const int answer = answers.box_answer;
  if (answers.on_box) answers.on_box();
  return answer;
}

UINT WINAPI AskWindow(HWND) { return PageAnswers::per_inch; }

FARPROC WINAPI FindFunction(HMODULE module, LPCSTR name) {
  if (std::strcmp(name, "GetOpenFileNameA") == 0) return reinterpret_cast<FARPROC>(Address(AnswerDialog));
  if (PageAnswers::per_inch != 0 && std::strcmp(name, "GetDpiForWindow") == 0)
    return reinterpret_cast<FARPROC>(Address(AskWindow));
  return GetProcAddress(module, name);
}

int WINAPI FindFonts(HDC dc, LPLOGFONTW font, FONTENUMPROCW found, LPARAM value, DWORD flags) {
  return PageAnswers::has_arrow_font ? EnumFontFamiliesExW(dc, font, found, value, flags) : 1;
}

}  // namespace

PageAnswers::PageAnswers(HMODULE server) {
  current = this;
  patch_.emplace(server, std::vector<Replacement>{{"GetProcAddress", Address(FindFunction)},
                                                  {"MessageBoxW", Address(AnswerBox)},
                                                  {"EnumFontFamiliesExW", Address(FindFonts)}});
}

PageAnswers::~PageAnswers() {
  patch_.reset();
  current = nullptr;
}

}  // namespace ocx_test
