// Activation in place: the control's window on the container's, and the dealings with the in-place site.
#pragma once

#include "activex/com/face.h"

namespace marklet::activex {

class ActiveObjectFace;
class ControlWindow;
class Extent;
class PlaceListener;
class Site;

// Any call to the site may come back into the control: set rectangles before there is a window, deactivate in
// the middle of activation, take the site away. Each step looks again at how things stand.
class InPlace {
 public:
  InPlace(const Site& site, Extent& extent, ControlWindow& window, ActiveObjectFace& active_object,
          PlaceListener& listener)
      : client_site_(site),
        extent_(extent),
        window_(window),
        active_object_(active_object),
        listener_(listener) {}

  HRESULT Activate();
  HRESULT ActivateUi();
  HRESULT Deactivate();
  HRESULT DeactivateUi();
  HRESULT SetRects(const ::RECT* position, const ::RECT* clip);
  // Until a verb shows the control again, or rectangles that it didn't ask for itself.
  HRESULT Hide();
  bool IsActive() const { return state_ == State::Active; }

  // Where the container has put the window, in pixels of its client area.
  const ::RECT& Position() const { return position_; }

  // Asks the container for another size at the same place.
  void RequestSize(::SIZE size);
  HRESULT GetWindow(::HWND* window) const;  // for callers
  // The frame of the container, null while the control isn't active or where it shows none.
  ComPtr<IOleInPlaceFrame> Frame() const { return frame_; }

 private:
  enum class State { Inactive, Activating, Active };

  HRESULT EnterWindow();
  HRESULT Reveal();
  HRESULT TellShown();
  void TakeFrame();
  void ReadContext();
  void LeaveSite(bool notify);

  const Site& client_site_;
  Extent& extent_;
  ControlWindow& window_;
  ActiveObjectFace& active_object_;
  PlaceListener& listener_;
  State state_ = State::Inactive;
  bool ui_active_ = false;
  bool placed_ = false;  // the container has set rectangles since activation began
  bool hidden_ = false;  // by the verb
  bool asking_ = false;  // for another size
  ::RECT position_ = {};
  ::RECT clip_ = {};
  ComPtr<IOleInPlaceSite> site_;
  ComPtr<IOleInPlaceFrame> frame_;
  ComPtr<IOleInPlaceUIWindow> document_;
};

class InPlaceObjectFace final : public Face<IOleInPlaceObject> {
 public:
  InPlaceObjectFace(FaceOwner& owner, InPlace& in_place) : Face(owner), in_place_(in_place) {}
  STDMETHODIMP GetWindow(::HWND* window) override { return in_place_.GetWindow(window); }
  STDMETHODIMP ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
  STDMETHODIMP InPlaceDeactivate() override;
  STDMETHODIMP UIDeactivate() override;
  STDMETHODIMP SetObjectRects(LPCRECT position, LPCRECT clip) override;
  STDMETHODIMP ReactivateAndUndo() override { return INPLACE_E_NOTUNDOABLE; }

 private:
  InPlace& in_place_;
};

class ActiveObjectFace final : public Face<IOleInPlaceActiveObject> {
 public:
  ActiveObjectFace(FaceOwner& owner, const InPlace& in_place, const Site& site)
      : Face(owner), in_place_(in_place), site_(site) {}
  STDMETHODIMP GetWindow(::HWND* window) override { return in_place_.GetWindow(window); }
  STDMETHODIMP ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
  STDMETHODIMP TranslateAccelerator(LPMSG message) override;
  STDMETHODIMP OnFrameWindowActivate(BOOL) override { return S_OK; }
  STDMETHODIMP OnDocWindowActivate(BOOL) override { return S_OK; }
  STDMETHODIMP ResizeBorder(LPCRECT, IOleInPlaceUIWindow*, BOOL) override { return S_OK; }
  STDMETHODIMP EnableModeless(BOOL) override { return S_OK; }

 private:
  const InPlace& in_place_;
  const Site& site_;
  bool asking_ = false;  // the site, about a key message
};

}  // namespace marklet::activex
