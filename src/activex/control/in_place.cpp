#include "activex/control/in_place.h"

#include "activex/control/control_object.h"

namespace marklet::activex {

// --- Activation -------------------------------------------------------------------------------------------

HRESULT InPlace::Activate() {
  if (state_ != State::Inactive) return S_OK;
  const auto site = control_.site.Query<IOleInPlaceSite>();
  if (!site || site->CanInPlaceActivate() != S_OK) return E_FAIL;
  if (state_ != State::Inactive) return S_OK;
  state_ = State::Activating;
  site_ = site;
  placed_ = false;
  const HRESULT result = site->OnInPlaceActivate();
  if (FAILED(result)) {
    LeaveSite(false);
    return result;
  }
  const HRESULT entered = EnterWindow();
  if (FAILED(entered)) {
    if (state_ != State::Inactive) Deactivate();
    return entered;
  }
  if (const ComPtr<IOleClientSite> client = control_.site.Get()) client->ShowObject();
  return state_ == State::Active ? S_OK : E_FAIL;
}

HRESULT InPlace::EnterWindow() {
  ::HWND parent = nullptr;
  if (state_ != State::Activating) return E_FAIL;
  const ComPtr<IOleInPlaceSite> site = site_;
  if (FAILED(site->GetWindow(&parent)) || !parent || state_ != State::Activating) return E_FAIL;
  ReadContext();
  if (state_ != State::Activating) return E_FAIL;
  if (!control_.window.Create(parent, position_)) return E_FAIL;
  state_ = State::Active;
  control_.window.Place(position_, &clip_);
  control_.host.EnableWindow();
  // The first size a control hears of is that of its window.
  control_.host.Resized();
  if (control_.window.Handle()) ::ShowWindow(control_.window.Handle(), SW_SHOWNA);
  return state_ == State::Active ? S_OK : E_FAIL;
}

// Where the site puts the control; rectangles that it has set itself in the meantime go before. A site that
// doesn't say gets the control at its corner, at its own size.
void InPlace::ReadContext() {
  const ::SIZE size = control_.extent.Pixels();
  ::RECT position = {0, 0, size.cx, size.cy}, clip = position;
  OLEINPLACEFRAMEINFO info = {};
  info.cb = sizeof info;
  ComPtr<IOleInPlaceFrame> frame;
  ComPtr<IOleInPlaceUIWindow> document;
  const ComPtr<IOleInPlaceSite> site = site_;
  const bool known = SUCCEEDED(
      site->GetWindowContext(frame.GetAddressOf(), document.GetAddressOf(), &position, &clip, &info));
  if (state_ != State::Activating) return;
  if (known) {
    frame_ = frame;
    document_ = document;
  }
  if (placed_) return;
  position_ = position;
  clip_ = known ? clip : position;
}

HRESULT InPlace::ActivateUi() {
  const HRESULT result = Activate();
  if (FAILED(result) || state_ != State::Active) return result;
  if (ui_active_) return S_OK;
  const ComPtr<IOleInPlaceSite> site = site_;
  const HRESULT allowed = site->OnUIActivate();
  if (FAILED(allowed)) return allowed;
  if (state_ != State::Active) return E_FAIL;
  ui_active_ = true;
  ::SetFocus(control_.window.Handle());
  const ComPtr<IOleInPlaceFrame> frame = frame_;
  const ComPtr<IOleInPlaceUIWindow> document = document_;
  if (frame) {
    frame->SetActiveObject(&control_.active_object, L"Marklet");
    frame->SetBorderSpace(nullptr);
  }
  if (document) {
    document->SetActiveObject(&control_.active_object, L"Marklet");
    document->SetBorderSpace(nullptr);
  }
  return S_OK;
}

HRESULT InPlace::DeactivateUi() {
  if (!ui_active_) return S_OK;
  ui_active_ = false;
  const ComPtr<IOleInPlaceSite> site = site_;
  const ComPtr<IOleInPlaceFrame> frame = frame_;
  const ComPtr<IOleInPlaceUIWindow> document = document_;
  if (frame) frame->SetActiveObject(nullptr, nullptr);
  if (document) document->SetActiveObject(nullptr, nullptr);
  if (site) site->OnUIDeactivate(FALSE);
  return S_OK;
}

HRESULT InPlace::Deactivate() {
  if (state_ == State::Inactive) return S_OK;
  DeactivateUi();
  if (state_ != State::Inactive) LeaveSite(true);
  return S_OK;
}

void InPlace::LeaveSite(bool notify) {
  state_ = State::Inactive;
  const ComPtr<IOleInPlaceSite> site = std::move(site_);
  site_.Reset();
  frame_.Reset();
  document_.Reset();
  control_.window.Destroy();
  if (notify && site) site->OnInPlaceDeactivate();
}

// --- Place ------------------------------------------------------------------------------------------------

// Some containers call this while activation is still under way; the window is then made there.
HRESULT InPlace::SetRects(const ::RECT* position, const ::RECT* clip) {
  if (!position) return E_POINTER;
  position_ = *position;
  clip_ = clip ? *clip : *position;
  placed_ = true;
  control_.window.Place(position_, clip ? &clip_ : nullptr);
  if (!control_.window.Handle()) {
    control_.extent.SetPixels({position_.right - position_.left, position_.bottom - position_.top});
    control_.host.SizeMayHaveChanged();
  }
  return S_OK;
}

void InPlace::RequestSize(::SIZE size) {
  const ::RECT wanted = {position_.left, position_.top, position_.left + size.cx, position_.top + size.cy};
  placed_ = false;
  if (const ComPtr<IOleInPlaceSite> site = site_) site->OnPosRectChange(&wanted);
  if (placed_ || !control_.window.Handle()) return;
  position_ = wanted;
  control_.window.Place(position_, nullptr);
}

HRESULT InPlace::Hide() {
  DeactivateUi();
  if (control_.window.Handle()) ::ShowWindow(control_.window.Handle(), SW_HIDE);
  return S_OK;
}

::HWND InPlace::Window() const { return control_.window.Handle(); }

// --- The interfaces ---------------------------------------------------------------------------------------

HRESULT InPlaceObjectFace::GetWindow(::HWND* window) {
  if (!window) return E_POINTER;
  *window = control_.in_place.Window();
  return *window ? S_OK : E_FAIL;
}

HRESULT InPlaceObjectFace::InPlaceDeactivate() {
  return Call([this] { return control_.in_place.Deactivate(); });
}
HRESULT InPlaceObjectFace::UIDeactivate() {
  return Call([this] { return control_.in_place.DeactivateUi(); });
}
HRESULT InPlaceObjectFace::SetObjectRects(LPCRECT position, LPCRECT clip) {
  return Call([&] { return control_.in_place.SetRects(position, clip); });
}

HRESULT ActiveObjectFace::GetWindow(::HWND* window) { return control_.in_place_object.GetWindow(window); }

// The control has no keys of its own; the container's come first.
HRESULT ActiveObjectFace::TranslateAccelerator(LPMSG message) {
  return Call([&]() -> HRESULT {
    const auto site = control_.site.Query<IOleControlSite>();
    return site ? site->TranslateAccelerator(message, 0) : S_FALSE;
  });
}

}  // namespace marklet::activex
