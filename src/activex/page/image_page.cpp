#include "activex/page/image_page.h"

#include "activex/automation/dispatch.h"
#include "activex/com/guid.h"
#include "activex/com/task_memory.h"
#include "activex/com/text.h"
#include "platform/win32/resolution.h"

namespace marklet::activex {
namespace {

using page::Item;

struct ButtonRow {
  PageButton button;
  Item item;
};
constexpr ButtonRow kButtons[] = {{PageButton::Next, Item::Next},
                                  {PageButton::Previous, Item::Previous},
                                  {PageButton::DeleteAll, Item::DeleteAll},
                                  {PageButton::DeleteIcon, Item::DeleteIcon},
                                  {PageButton::Browse, Item::Browse}};

}  // namespace

// --- Identity ---------------------------------------------------------------------------------------------

HRESULT ImagePage::Create(IUnknown* outer, REFIID iid, void** object) {
  if (outer) return CLASS_E_NOAGGREGATION;
  const auto made = Adopt(new ImagePage);
  return made->QueryInterface(iid, object);
}

HRESULT ImagePage::QueryInterface(REFIID iid, void** object) {
  if (!object) return E_POINTER;
  const bool known =
      iid == __uuidof(IUnknown) || iid == __uuidof(IPropertyPage) || iid == __uuidof(IPropertyPage2);
  *object = known ? static_cast<IPropertyPage2*>(this) : nullptr;
  if (!known) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

// The last steps may call out, which takes and gives back a reference.
ULONG ImagePage::Release() {
  if (references_ > 1) return --references_;
  window_.Destroy();
  delete this;
  return 0;
}

// --- For the frame ----------------------------------------------------------------------------------------

HRESULT ImagePage::SetPageSite(IPropertyPageSite* site) {
  if (site && site_) return E_UNEXPECTED;
  site_ = site;
  return S_OK;
}

// The buttons of the new window are as the flows have left them, and its text as the last one had it.
HRESULT ImagePage::Activate(::HWND parent, LPCRECT position, BOOL) {
  if (!position) return E_POINTER;
  if (window_.Handle()) return E_UNEXPECTED;
  const ComPtr<IUnknown> keeper(this);
  return Guarded([&] {
    if (!window_.Create(parent, *position)) return E_FAIL;
    window_.PutKeyText(Wide(kept_key_));
    Flow([this] { flows_.SelectionChanged(); });
    return S_OK;
  });
}

HRESULT ImagePage::Deactivate() {
  if (!window_.Handle()) return E_UNEXPECTED;
  const ComPtr<IUnknown> keeper(this);
  return Guarded([&] {
    kept_key_ = KeyText();
    window_.Destroy();
    return S_OK;
  });
}

HRESULT ImagePage::GetPageInfo(PROPPAGEINFO* info) {
  if (!info) return E_POINTER;
  return Guarded([&] {
    const int per_inch = window_.PerInch();
    const LPOLESTR title = NewTaskString(page::kCaption);
    const ULONG size = info->cb;
    *info = {};
    info->cb = size;
    info->pszTitle = title;
    info->size = {page::Pixels(page::kWidth, per_inch), page::Pixels(page::kHeight, per_inch)};
    return S_OK;
  });
}

HRESULT ImagePage::SetObjects(ULONG count, IUnknown** objects) {
  if (count != 0 && (!objects || !objects[0])) return E_POINTER;
  const ComPtr<IUnknown> keeper(this);
  return Guarded([&] {
    selected_ = count == 0 ? nullptr : std::make_shared<page::SelectedObject>(ComPtr<IUnknown>(objects[0]));
    Flow([this] { flows_.SelectionChanged(); });
    return S_OK;
  });
}

HRESULT ImagePage::Show(UINT how) {
  if (!window_.Handle()) return E_UNEXPECTED;
  if (how != SW_SHOW && how != SW_SHOWNORMAL && how != SW_HIDE) return E_INVALIDARG;
  ::ShowWindow(window_.Handle(), static_cast<int>(how));
  return S_OK;
}

HRESULT ImagePage::Move(LPCRECT position) {
  if (!position) return E_POINTER;
  if (!window_.Handle()) return E_UNEXPECTED;
  ::MoveWindow(window_.Handle(), position->left, position->top, position->right - position->left,
               position->bottom - position->top, TRUE);
  return S_OK;
}

HRESULT ImagePage::Apply() {
  const ComPtr<IUnknown> keeper(this);
  return Guarded([&] {
    Flow([this] { flows_.ApplyChanges(); });
    dirty_ = false;
    return S_OK;
  });
}

HRESULT ImagePage::TranslateAccelerator(MSG* message) {
  if (!message) return E_POINTER;
  const ComPtr<IUnknown> keeper(this);
  return Guarded([&] { return window_.Translate(*message) ? S_OK : S_FALSE; });
}

HRESULT ImagePage::EditProperty(DISPID id) {
  return Guarded([&] {
    const PropertyRow* row = PropertyOf(id);
    if (!row || row->name != "ImageKey") return E_NOTIMPL;
    if (!window_.Handle()) return E_UNEXPECTED;
    ::SetFocus(window_.Control(Item::Key));
    return S_OK;
  });
}

// --- For the flows ----------------------------------------------------------------------------------------

// Buttons that a flow turns off and on again don't flicker, and keep the focus.
template <typename Body>
void ImagePage::Flow(Body&& body) {
  ++depth_;
  body();
  if (--depth_ == 0) ShowEnabled();
}

// First those that are on, so that the focus of one that goes off has somewhere to go.
void ImagePage::ShowEnabled() {
  for (const bool on : {true, false})
    for (const ButtonRow& row : kButtons)
      if (enabled_[static_cast<std::size_t>(row.button)] == on) window_.Enable(row.item, on);
}

std::u16string ImagePage::KeyText() {
  if (!window_.Handle()) return kept_key_;
  const std::wstring text = window_.KeyText();
  return {text.begin(), text.end()};
}

void ImagePage::PutKeyText(std::u16string text) {
  if (window_.Handle()) return window_.PutKeyText(Wide(text));
  kept_key_ = std::move(text);
  KeyTyped();
}

void ImagePage::Enable(PageButton button, bool enabled) {
  enabled_[static_cast<std::size_t>(button)] = enabled;
}

double ImagePage::TwipsPerPixelX() { return double{page::kTwipsPerInch} / window_.PerInch(); }

marklet::HWND ImagePage::BrowseWindow() { return win32::Wrap(window_.Control(Item::Browse)); }

void ImagePage::Inform(std::u16string_view text) {
  ::MessageBoxW(window_.Handle(), Wide(text).c_str(), Wide(library::kName).c_str(),
                MB_OK | MB_ICONINFORMATION);
}

bool ImagePage::Ask(std::u16string_view text, std::u16string_view title) {
  constexpr UINT kStyle = MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2;
  return ::MessageBoxW(window_.Handle(), Wide(text).c_str(), Wide(title).c_str(), kStyle) == IDYES;
}

void ImagePage::PutChanged(bool changed) {
  dirty_ = changed;
  const ComPtr<IPropertyPageSite> site = site_;
  if (changed && site) site->OnStatusChange(PROPPAGESTATUS_DIRTY | PROPPAGESTATUS_VALIDATE);
}

// --- From the window --------------------------------------------------------------------------------------

void ImagePage::Pressed(Item button) {
  Flow([&] {
    switch (button) {
      case Item::Browse:
        return flows_.Browse();
      case Item::DeleteAll:
        return flows_.DeleteAll();
      case Item::DeleteIcon:
        return flows_.DeleteIcon();
      default:
        return flows_.Navigate(button == Item::Next ? PageButton::Next : PageButton::Previous);
    }
  });
}

void ImagePage::KeyTyped() {
  Flow([this] { flows_.KeyChanged(); });
}

void ImagePage::StripPressed(int x) {
  // The middle of the pixel: its edge in twips may be rounded down into the one before.
  Flow([&] { flows_.StripPressed(static_cast<float>((x + 0.5) * TwipsPerPixelX())); });
}

void ImagePage::StripResized() {
  Flow([this] { flows_.ShowPreview(); });
}

}  // namespace marklet::activex
