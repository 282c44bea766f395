// `prpImage` in a designer: the page for images as a property page of OLE.
#pragma once

#include <memory>

#include "activex/com/boundary.h"
#include "activex/com/com_object.h"
#include "activex/com/module.h"
#include "activex/page/open_file_dialog.h"
#include "activex/page/selected_object.h"
#include "activex/page/window.h"
#include "imagelist/prp_image.h"

namespace marklet::activex {

// Works on the first of the objects that its frame gives it. All but Apply acts at once. The frame may end
// the page's window, its selection and the page itself inside any call that the page makes.
class ImagePage final : public IPropertyPage2, private ImagePageView, private page::Input {
 public:
  // It can't be aggregated.
  static HRESULT Create(IUnknown* outer, REFIID iid, void** object);

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
  STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() override;

  STDMETHODIMP SetPageSite(IPropertyPageSite* site) override;
  STDMETHODIMP Activate(::HWND parent, LPCRECT position, BOOL modal) override;
  STDMETHODIMP Deactivate() override;
  STDMETHODIMP GetPageInfo(PROPPAGEINFO* info) override;
  STDMETHODIMP SetObjects(ULONG count, IUnknown** objects) override;
  STDMETHODIMP Show(UINT how) override;
  STDMETHODIMP Move(LPCRECT position) override;
  STDMETHODIMP IsPageDirty() override { return dirty_ ? S_OK : S_FALSE; }
  STDMETHODIMP Apply() override;
  STDMETHODIMP Help(LPCOLESTR) override { return E_NOTIMPL; }
  STDMETHODIMP TranslateAccelerator(MSG* message) override;
  // Puts the focus where the property is edited; only ImageKey has such a place.
  STDMETHODIMP EditProperty(DISPID id) override;

 private:
  ImagePage() { GiveToOthers(this); }
  ~ImagePage() override = default;
  template <typename Body>
  void Flow(Body&& body);
  void ShowEnabled();

  // For the flows.
  std::shared_ptr<PageObject> SelectedControl() override { return selected_; }
  std::u16string KeyText() override;
  void PutKeyText(std::u16string text) override;
  void Enable(PageButton button, bool enabled) override;
  marklet::SIZE StripSize() override { return win32::Wrap(window_.StripSize()); }
  void StripChanged() override { window_.RepaintStrip(); }
  double TwipsPerPixelX() override;
  marklet::HWND BrowseWindow() override;
  OpenFileDialog& Dialog() override { return dialog_; }
  void Inform(std::u16string_view text) override;
  bool Ask(std::u16string_view text, std::u16string_view title) override;
  void PutChanged(bool changed) override;

  // From the window.
  void Pressed(page::Item button) override;
  void KeyTyped() override;
  void StripPressed(int x) override;
  void PaintStrip(::HDC dc) override { flows_.PaintStrip(win32::Wrap(dc)); }
  void StripResized() override;
  IUnknown& Keeper() override { return *this; }

  ULONG references_ = 1;
  ModuleReference module_;
  ComPtr<IPropertyPageSite> site_;
  std::shared_ptr<PageObject> selected_;
  page::SystemFileDialog dialog_;
  bool dirty_ = false;
  unsigned depth_ = 0;  // of the flows that run
  bool enabled_[static_cast<std::size_t>(PageButton::Browse) + 1] = {};
  std::u16string kept_key_;  // what stands in the text box while there is no window
  prpImage flows_{*this};
  page::Window window_{*this};
};

}  // namespace marklet::activex
