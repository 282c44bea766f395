#include "activex/control/in_place.h"

#include <utility>

#include "activex/control/extent.h"
#include "activex/control/site.h"
#include "activex/control/window.h"
#include "platform/win32/resolution.h"

namespace marklet::activex {
namespace {

// As a site is told of them. The platform's headers don't have the names.
constexpr DWORD kShift = 1, kControl = 2, kAlt = 4;

DWORD ModifiersDown() {
  const auto down = [](int key, DWORD modifier) { return ::GetKeyState(key) < 0 ? modifier : 0; };
  return down(VK_SHIFT, kShift) | down(VK_CONTROL, kControl) | down(VK_MENU, kAlt);
}

}  // namespace

// --- Activation -------------------------------------------------------------------------------------------

HRESULT InPlace::Activate() {
  hidden_ = false;
  if (state_ == State::Active) return Reveal();
  if (state_ == State::Activating) return S_OK;
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
  return TellShown();
}

// An active control whose window is hidden, by the verb or by the container's own hand, or has gone with its
// parent.
HRESULT InPlace::Reveal() {
  if (window_.IsVisible()) return S_OK;
  if (window_.Handle()) {
    window_.Show();
    return TellShown();
  }
  DeactivateUi();
  if (state_ != State::Active) return E_FAIL;
  state_ = State::Activating;
  placed_ = false;
  const HRESULT entered = EnterWindow();
  if (SUCCEEDED(entered)) return TellShown();
  if (state_ == State::Activating) state_ = State::Active;
  return entered;
}

HRESULT InPlace::TellShown() {
  const ComPtr<IOleClientSite> client = client_site_.Get();
  if (client && !hidden_) client->ShowObject();
  return state_ == State::Active ? S_OK : E_FAIL;
}

HRESULT InPlace::EnterWindow() {
  ::HWND parent = nullptr;
  if (state_ != State::Activating) return E_FAIL;
  const ComPtr<IOleInPlaceSite> site = site_;
  if (FAILED(site->GetWindow(&parent)) || !parent || state_ != State::Activating) return E_FAIL;
  extent_.SetPixelsPerInch(win32::PixelsPerInchOf(parent));
  ReadContext();
  if (state_ != State::Activating) return E_FAIL;
  if (!window_.Create(parent, position_)) return E_FAIL;
  state_ = State::Active;
  window_.Place(position_, &clip_);
  listener_.Entered();
  if (!hidden_) window_.Show();
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
  const bool had_it = std::exchange(ui_active_, true);
  if (!had_it) {
    const ComPtr<IOleInPlaceSite> site = site_;
    const HRESULT allowed = site->OnUIActivate();
    if (FAILED(allowed)) ui_active_ = false;
    if (FAILED(allowed)) return allowed;
  }
  if (ui_active_) ::SetFocus(window_.Handle());
  if (!had_it) TakeFrame();
  return ui_active_ ? S_OK : E_FAIL;
}

// Each call may be the one that takes the user interface away again.
void InPlace::TakeFrame() {
  const ComPtr<IOleInPlaceUIWindow> windows[] = {frame_, document_};
  for (const ComPtr<IOleInPlaceUIWindow>& window : windows) {
    if (window && ui_active_) window->SetActiveObject(&active_object_, L"Marklet");
    if (window && ui_active_) window->SetBorderSpace(nullptr);
  }
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

// Some containers call this while activation is still under way; the window is then made there. They say how
// much of the control is to be seen, so that a hidden one comes back with them; as the answer to its own wish
// for a size they don't say so.
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
  ::RECT seen;
  if (!hidden_ || asking_ || !::IntersectRect(&seen, &position_, &clip_)) return S_OK;
  hidden_ = false;
  window_.Show();
  return S_OK;
}

void InPlace::RequestSize(::SIZE size) {
  const ::RECT wanted = {position_.left, position_.top, position_.left + size.cx, position_.top + size.cy};
  placed_ = false;
  HRESULT answer = E_NOTIMPL;
  if (const ComPtr<IOleInPlaceSite> site = site_) {
    const bool asking = std::exchange(asking_, true);
    answer = site->OnPosRectChange(&wanted);
    asking_ = asking;
  }
  const bool refused = FAILED(answer) && answer != E_NOTIMPL;
  if (placed_ || refused || !window_.Handle()) return;
  position_ = wanted;
  window_.Place(position_, nullptr);
}

HRESULT InPlace::Hide() {
  if (state_ == State::Inactive) return S_OK;
  hidden_ = true;
  DeactivateUi();
  if (hidden_) window_.Hide();
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

// The control has no keys of its own; the container's come first. One that asks back what it is asked gets no
// for an answer.
HRESULT ActiveObjectFace::TranslateAccelerator(LPMSG message) {
  if (!message) return E_POINTER;
  return Call([&]() -> HRESULT {
    const auto site = site_.Query<IOleControlSite>();
    if (!site || asking_) return S_FALSE;
    asking_ = true;
    const HRESULT answer = site->TranslateAccelerator(message, ModifiersDown());
    asking_ = false;
    return answer == S_OK ? S_OK : S_FALSE;
  });
}

}  // namespace marklet::activex
