#include "activex/control/user_control.h"

#include "activex/automation/dispatch_reader.h"
#include "activex/automation/font.h"
#include "activex/control/behind.h"
#include "activex/control/in_place.h"
#include "activex/control/tooltip.h"
#include "base/rounding.h"
#include "platform/gdi.h"
#include "platform/system.h"
#include "platform/text.h"
#include "platform/win32/common_controls.h"
#include "platform/win32/resolution.h"

namespace marklet::activex {
namespace {

// The control's place in its container, for a host that adds nothing around the control.
class Place final : public NamedMembers {
 public:
  explicit Place(const ::RECT& place) : place_(place) {}

  bool Has(std::string_view name) override { return GetLong(name).has_value(); }
  std::optional<Long> GetLong(std::string_view name) override {
    if (name == "Left") return place_.left;
    if (name == "Top") return place_.top;
    if (name == "Width") return place_.right - place_.left;
    if (name == "Height") return place_.bottom - place_.top;
    return std::nullopt;
  }
  std::optional<double> GetNumber(std::string_view name) override { return GetLong(name); }
  std::optional<std::intptr_t> GetHandle(std::string_view) override { return std::nullopt; }
  NamedMembersRef GetObject(std::string_view) override { return nullptr; }
  bool PutFlag(std::string_view, bool) override { return false; }
  void Find(const std::function<bool(const NamedMembersRef&)>&) override {}

 private:
  ::RECT place_;  // pixels
};

}  // namespace

OleUserControl::OleUserControl(ChangeListener& listener, const Site& site, Extent& extent,
                               HostFont& host_font, ControlWindow& window, InPlace& in_place,
                               WindowSubclass& subclass, DropTarget& drop_target, Marklet& marklet)
    : listener_(listener),
      site_(site),
      extent_(extent),
      host_font_(host_font),
      window_(window),
      in_place_(in_place),
      subclass_(subclass),
      drop_target_(drop_target),
      marklet_(marklet),
      ambient_(site),
      last_size_(extent.Pixels()),
      last_resolution_(extent.PixelsPerInch()) {}

// --- Window and size --------------------------------------------------------------------------------------

HWND OleUserControl::hWnd() { return Wrap(window_.Handle()); }
HDC OleUserControl::hDC() { return Wrap(window_.FontContext()); }
HDC OleUserControl::PictureDC() { return Wrap(window_.Context()); }

::SIZE OleUserControl::Size() const { return window_.Handle() ? window_.ClientSize() : extent_.Pixels(); }

double OleUserControl::ScaleWidth() { return Size().cx; }
double OleUserControl::ScaleHeight() { return Size().cy; }
double OleUserControl::Width() { return Size().cx * TwipsPerPixelX(); }
double OleUserControl::Height() { return Size().cy * TwipsPerPixelY(); }

void OleUserControl::PutWidth(double twips) {
  RequestSize({RoundHalfEven(twips / TwipsPerPixelX()), Size().cy});
}
void OleUserControl::PutHeight(double twips) {
  RequestSize({Size().cx, RoundHalfEven(twips / TwipsPerPixelY())});
}

// The container has the last word on an active control, but one that doesn't answer gets the size all the
// same. That of an inactive one changes, and the container is told to look at it.
void OleUserControl::RequestSize(::SIZE size) {
  if (window_.Handle()) {
    in_place_.RequestSize(size);
    SizeMayHaveChanged();
    return;
  }
  const ::SIZE before = Size();
  extent_.SetPixels(size);
  SizeMayHaveChanged();
  const ComPtr<IOleClientSite> site = site_.Get();
  if (site && (size.cx != before.cx || size.cy != before.cy)) site->RequestNewObjectLayout();
}

// The first size a control hears of is that of its window.
void OleUserControl::Entered() {
  subclass_.Entered(window_.Handle());
  EnableWindow();
  FollowResolution();
  Resized();
}

void OleUserControl::Leaving() {
  drop_target_.Revoke();
  subclass_.WindowGone();
  marklet_.WindowGone();
}

void OleUserControl::SizeMayHaveChanged() {
  const bool is_elsewhere = FollowResolution();
  const ::SIZE size = Size();
  if (is_elsewhere || size.cx != last_size_.cx || size.cy != last_size_.cy) Resized();
}

bool OleUserControl::FollowResolution() {
  if (window_.Handle()) extent_.SetPixelsPerInch(win32::PixelsPerInchOf(window_.Handle()));
  const Long resolution = extent_.PixelsPerInch();
  if (resolution == last_resolution_) return false;
  last_resolution_ = resolution;
  FitFont();
  return true;
}

// A font that knows no resolution is made for the screen, as a host's own object is.
void OleUserControl::FitFont() {
  const bool is_screen = last_resolution_ == PixelsPerInch(nullptr);
  Font()->PutPixelsPerInch(is_screen ? 0 : last_resolution_);
}

void OleUserControl::SizeLoaded(SIZEL himetric) {
  const ::SIZE wanted = extent_.PixelsOf(himetric);
  if (window_.Handle()) in_place_.RequestSize(wanted);
  const ::SIZE now = Size();
  // Exact, where the window has as many pixels.
  if (!window_.Handle() || (now.cx == wanted.cx && now.cy == wanted.cy)) extent_.SetHimetric(himetric);
  SizeMayHaveChanged();
}

void OleUserControl::Resized() {
  last_size_ = Size();
  extent_.SetPixels(last_size_);
  marklet_.Resize();
  listener_.LookChanged();
}

// --- What the control keeps here --------------------------------------------------------------------------

void OleUserControl::PutEnabled(bool enabled) {
  StoringUserControl::PutEnabled(enabled);
  EnableWindow();
}

void OleUserControl::EnableWindow() {
  user_mode_ = ambient_.UserMode();
  if (!window_.Handle()) return;
  ::EnableWindow(window_.Handle(), Enabled() || !user_mode_);
  drop_target_.Update(window_.Handle(), user_mode_);
}

// Asked anew: a host connects its handlers when it runs, and not every one has told that it does.
void OleUserControl::ListenersChanged() {
  if (window_.Handle()) drop_target_.Update(window_.Handle(), ambient_.UserMode());
}

void OleUserControl::UserModeMayHaveChanged() {
  const bool before = user_mode_;
  EnableWindow();
  if (user_mode_ == before) return;
  marklet_.RedrawNow();
  listener_.LookChanged();
}

// Asked anew each time, since not every host tells when it stops.
bool OleUserControl::TakesMouse() { return ambient_.UserMode() && !ambient_.UiDead(); }

void OleUserControl::MouseMayBeTaken() {
  if (!TakesMouse()) window_.ReleaseMouse();
}

void OleUserControl::FocusChanged(bool got) {
  if (const auto site = site_.Query<IOleControlSite>()) site->OnFocus(got ? TRUE : FALSE);
}

// --- The pointer ------------------------------------------------------------------------------------------

void OleUserControl::TrackMouseEvent() {
  TRACKMOUSEEVENT wanted = {sizeof wanted, TME_LEAVE, window_.Handle(), 0};
  win32::TrackMouseEvent(wanted);
}

HostTooltipRef OleUserControl::CreateTooltip() { return std::make_shared<WindowTooltip>(window_.Handle()); }

void OleUserControl::StartSubclass(bool extended_buttons) {
  subclass_.Loaded(window_.Handle(), extended_buttons);
}

// There is always a font: Nothing leaves the one that stands.
void OleUserControl::PutFont(FontRef font) {
  if (!font) return;
  StoringUserControl::PutFont(std::move(font));
  FitFont();
  host_font_.Follow(Font());
}

void OleUserControl::PutAccessKeys(std::u16string keys) {
  if (keys == AccessKeys()) return;
  StoringUserControl::PutAccessKeys(std::move(keys));
  if (const auto site = site_.Query<IOleControlSite>()) site->OnControlInfoChanged();
}

// --- What is around it ------------------------------------------------------------------------------------

HWND OleUserControl::ContainerHwnd() {
  ::HWND window = nullptr;
  const auto site = site_.Query<IOleInPlaceSite>();
  return site && SUCCEEDED(site->GetWindow(&window)) ? Wrap(window) : nullptr;
}

NamedMembersRef OleUserControl::Parent() { return MembersOf(site_.Container()); }
NamedMembersRef OleUserControl::Extender() {
  if (auto members = MembersOf(site_.ExtendedControl())) return members;
  if (!in_place_.IsActive()) return nullptr;
  return std::make_shared<Place>(in_place_.Position());
}

bool OleUserControl::PaintBehind(HDC dc) {
  COLORREF otherwise = GetSysColor(COLOR_BTNFACE);
  OleTranslateColor(ambient_.BackColor(), otherwise);
  if (const ::HWND window = window_.Handle()) return PaintBehindWindow(window, dc, otherwise);
  const HBRUSH brush = CreateSolidBrush(otherwise);
  FillRect(dc, {0, 0, Size().cx, Size().cy}, brush);
  DeleteObject(brush);
  return false;
}

void OleUserControl::PropertyChanged(std::string_view name) {
  const PropertyRow* row = FindProperty(name);
  listener_.PropertyChanged(row ? row->dispid : DISPID_UNKNOWN);
}

}  // namespace marklet::activex
