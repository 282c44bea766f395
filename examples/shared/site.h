// The least that a container owes a control: a place to be, answers to ambient questions, and a way to ask
// for another size.
#pragma once

#include <windows.h>

#include <ocidl.h>
#include <olectl.h>

#include <functional>
#include <string>

#include "counted.h"

namespace example {

// What a form tells its controls of itself.
struct Ambients {
  bool running = true;  // false: it is being designed
  std::wstring name;    // what the control is called; new ones show it
  int back_color = COLOR_WINDOW, fore_color = COLOR_WINDOWTEXT;  // of the system
};

// The client site of one control.
class Site final : public Counted<IOleClientSite, IOleInPlaceSite, IOleControlSite, IDispatch> {
 public:
  // `window` is where the control's window goes, `place` where in it, in pixels.
  Site(HWND window, const RECT& place, Ambients ambients = {})
      : window_(window), place_(place), ambients_(std::move(ambients)) {}

  // Called after the control has given itself another place, and when it wants its property pages to be
  // shown (false: they can't be). Both may stay empty.
  std::function<void()> on_placed;
  std::function<bool()> on_pages;

  // The control whose site this is, so that it can be given another size. Not counted.
  void Attach(IOleInPlaceObject* control) { control_ = control; }
  const RECT& Place() const { return place_; }
  void Rename(std::wstring name) { ambients_.name = std::move(name); }
  // Nobody stands behind the site any more, whoever may still hold it.
  void Detach();

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override;

  // IOleClientSite: nothing is embedded or linked here
  STDMETHODIMP SaveObject() override { return E_NOTIMPL; }
  STDMETHODIMP GetMoniker(DWORD, DWORD, IMoniker**) override { return E_NOTIMPL; }
  STDMETHODIMP GetContainer(IOleContainer** container) override;
  STDMETHODIMP ShowObject() override { return S_OK; }
  STDMETHODIMP OnShowWindow(BOOL) override { return S_OK; }
  STDMETHODIMP RequestNewObjectLayout() override { return E_NOTIMPL; }

  // IOleInPlaceSite
  STDMETHODIMP GetWindow(HWND* window) override;
  STDMETHODIMP ContextSensitiveHelp(BOOL) override { return S_OK; }
  STDMETHODIMP CanInPlaceActivate() override { return S_OK; }
  STDMETHODIMP OnInPlaceActivate() override { return S_OK; }
  STDMETHODIMP OnUIActivate() override { return S_OK; }
  STDMETHODIMP GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** document, RECT* position,
                                RECT* clip, OLEINPLACEFRAMEINFO* info) override;
  STDMETHODIMP Scroll(SIZE) override { return E_NOTIMPL; }
  STDMETHODIMP OnUIDeactivate(BOOL) override { return S_OK; }
  STDMETHODIMP OnInPlaceDeactivate() override { return S_OK; }
  STDMETHODIMP DiscardUndoState() override { return E_NOTIMPL; }
  STDMETHODIMP DeactivateAndUndo() override { return E_NOTIMPL; }
  STDMETHODIMP OnPosRectChange(const RECT* position) override;

  // IOleControlSite
  STDMETHODIMP OnControlInfoChanged() override { return S_OK; }
  STDMETHODIMP LockInPlaceActive(BOOL) override { return S_OK; }
  STDMETHODIMP GetExtendedControl(IDispatch** extender) override;
  STDMETHODIMP TransformCoords(POINTL*, POINTF*, DWORD) override { return E_NOTIMPL; }
  STDMETHODIMP TranslateAccelerator(MSG*, DWORD) override { return S_FALSE; }
  STDMETHODIMP OnFocus(BOOL) override { return S_OK; }
  STDMETHODIMP ShowPropertyFrame() override { return on_pages && on_pages() ? S_OK : E_NOTIMPL; }

  // IDispatch: the ambient properties
  STDMETHODIMP GetTypeInfoCount(UINT* count) override;
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return DISP_E_UNKNOWNNAME; }
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS*, VARIANT* result, EXCEPINFO*,
                      UINT*) override;

 private:
  HWND window_;
  RECT place_;
  Ambients ambients_;
  IOleInPlaceObject* control_ = nullptr;
};

}  // namespace example
