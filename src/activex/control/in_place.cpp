#include "activex/control/in_place.h"

#include "activex/control/extent.h"
#include "activex/control/site.h"
#include "activex/control/window.h"

namespace marklet::activex {

// --- Activation -------------------------------------------------------------------------------------------

HRESULT InPlace::Activate() {
  if (state_ != State::Inactive) return S_OK;
  const auto site = client_site_.Query<IOleInPlaceSite>();
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
  if (const ComPtr<IOleClientSite> client = client_site_.Get()) client->ShowObject();
  return state_ == State::Active ? S_OK : E_FAIL;
}

HRESULT InPlace::EnterWindow() {
  ::HWND parent = nullptr;
  if (state_ != State::Activating) return E_FAIL;
  const ComPtr<IOleInPlaceSite> site = site_;
  if (FAILED(site->GetWindow(&parent)) || !parent || state_ != State::Activating) return E_FAIL;
  ReadContext();
  if (state_ != State::Activating) return E_FAIL;
  if (!window_.Create(parent, position_)) return E_FAIL;
  state_ = State::Active;
  window_.Place(position_, &clip_);
  listener_.Entered();
  if (window_.Handle()) ::ShowWindow(window_.Handle(), SW_SHOWNA);
  return state_ == State::Active ? S_OK : E_FAIL;
}

// Where the site puts the control; rectangles that it has set itself in the meantime go before. A site that
// doesn't say gets the control at its corner, at its own size.
void InPlace::ReadContext() {
  const ::SIZE size = extent_.Pixels();
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
  ::SetFocus(window_.Handle());
  const ComPtr<IOleInPlaceFrame> frame = frame_;
  const ComPtr<IOleInPlaceUIWindow> document = document_;
  if (frame) {
    frame->SetActiveObject(&active_object_, L"Marklet");
    frame->SetBorderSpace(nullptr);
  }
  if (document) {
    document->SetActiveObject(&active_object_, L"Marklet");
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
  window_.Destroy();
  if (notify && site) site->OnInPlaceDeactivate();
}

// --- Place ------------------------------------------------------------------------------------------------

// Some containers call this while activation is still under way; the window is then made there.
HRESULT InPlace::SetRects(const ::RECT* position, const ::RECT* clip) {
  if (!position) return E_POINTER;
  position_ = *position;
  clip_ = clip ? *clip : *position;
  placed_ = true;
  window_.Place(position_, clip ? &clip_ : nullptr);
  if (!window_.Handle()) {
    extent_.SetPixels({position_.right - position_.left, position_.bottom - position_.top});
    listener_.SizeMayHaveChanged();
  }
  return S_OK;
}

void InPlace::RequestSize(::SIZE size) {
  const ::RECT wanted = {position_.left, position_.top, position_.left + size.cx, position_.top + size.cy};
  placed_ = false;
  if (const ComPtr<IOleInPlaceSite> site = site_) site->OnPosRectChange(&wanted);
  if (placed_ || !window_.Handle()) return;
  position_ = wanted;
  window_.Place(position_, nullptr);
}

HRESULT InPlace::Hide() {
  DeactivateUi();
  if (window_.Handle()) ::ShowWindow(window_.Handle(), SW_HIDE);
  return S_OK;
}

HRESULT InPlace::GetWindow(::HWND* window) const {
  if (!window) return E_POINTER;
  *window = window_.Handle();
  return *window ? S_OK : E_FAIL;
}

// --- The interfaces ---------------------------------------------------------------------------------------

HRESULT InPlaceObjectFace::InPlaceDeactivate() {
  return Call([this] { return in_place_.Deactivate(); });
}
HRESULT InPlaceObjectFace::UIDeactivate() {
  return Call([this] { return in_place_.DeactivateUi(); });
}
HRESULT InPlaceObjectFace::SetObjectRects(LPCRECT position, LPCRECT clip) {
  return Call([&] { return in_place_.SetRects(position, clip); });
}

// The control has no keys of its own; the container's come first.
HRESULT ActiveObjectFace::TranslateAccelerator(LPMSG message) {
  return Call([&]() -> HRESULT {
    const auto site = site_.Query<IOleControlSite>();
    return site ? site->TranslateAccelerator(message, 0) : S_FALSE;
  });
}

}  // namespace marklet::activex
