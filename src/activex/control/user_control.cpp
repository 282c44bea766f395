#include "activex/control/user_control.h"

#include "activex/automation/dispatch_reader.h"
#include "activex/control/control_object.h"
#include "base/rounding.h"

namespace marklet::activex {
namespace {

// The control's place in its container, for a host that adds nothing around the control.
class Place final : public NamedMembers {
 public:
  explicit Place(const ::RECT& place) : place_(place) {}

  std::optional<Long> GetLong(std::string_view name) override {
    if (name == "Left") return place_.left;
    if (name == "Top") return place_.top;
    if (name == "Width") return place_.right - place_.left;
    if (name == "Height") return place_.bottom - place_.top;
    return std::nullopt;
  }
  bool PutLong(std::string_view, Long) override { return false; }

 private:
  ::RECT place_;  // pixels
};

}  // namespace

OleUserControl::OleUserControl(ControlObject& control)
    : control_(control), ambient_(control.site), last_size_(control.extent.Pixels()) {}

// --- Window and size --------------------------------------------------------------------------------------

HWND OleUserControl::hWnd() { return Wrap(control_.window.Handle()); }
HDC OleUserControl::hDC() { return Wrap(control_.window.Context()); }

::SIZE OleUserControl::Size() const {
  return control_.window.Handle() ? control_.window.ClientSize() : control_.extent.Pixels();
}

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
// same.
void OleUserControl::RequestSize(::SIZE size) {
  control_.extent.SetPixels(size);
  if (control_.window.Handle()) control_.in_place.RequestSize(size);
  SizeMayHaveChanged();
}

void OleUserControl::SizeMayHaveChanged() {
  const ::SIZE size = Size();
  if (size.cx != last_size_.cx || size.cy != last_size_.cy) Resized();
}

void OleUserControl::Resized() {
  last_size_ = Size();
  control_.extent.SetPixels(last_size_);
  control_.marklet.Resize();
  control_.NotifyLook();
}

// --- What the control keeps here --------------------------------------------------------------------------

void OleUserControl::PutEnabled(bool enabled) {
  enabled_ = enabled;
  EnableWindow();
}

void OleUserControl::EnableWindow() {
  user_mode_ = ambient_.UserMode();
  if (control_.window.Handle()) ::EnableWindow(control_.window.Handle(), enabled_ || !user_mode_);
}

void OleUserControl::UserModeMayHaveChanged() {
  const bool before = user_mode_;
  EnableWindow();
  if (user_mode_ == before) return;
  control_.marklet.RedrawNow();
  control_.NotifyLook();
}

// There is always a font: Nothing leaves the one that stands.
void OleUserControl::PutFont(FontRef font) {
  if (!font) return;
  font_ = std::move(font);
  control_.host_font.Follow(font_);
}

void OleUserControl::PutAccessKeys(std::u16string keys) {
  if (keys == access_keys_) return;
  access_keys_ = std::move(keys);
  if (const auto site = control_.site.Query<IOleControlSite>()) site->OnControlInfoChanged();
}

// --- What is around it ------------------------------------------------------------------------------------

HWND OleUserControl::ContainerHwnd() {
  ::HWND window = nullptr;
  const auto site = control_.site.Query<IOleInPlaceSite>();
  return site && SUCCEEDED(site->GetWindow(&window)) ? Wrap(window) : nullptr;
}

std::shared_ptr<NamedMembers> OleUserControl::Parent() { return MembersOf(control_.site.Container()); }
std::shared_ptr<NamedMembers> OleUserControl::Extender() {
  if (auto members = MembersOf(control_.site.ExtendedControl())) return members;
  if (!control_.in_place.IsActive()) return nullptr;
  return std::make_shared<Place>(control_.in_place.Position());
}

void OleUserControl::PropertyChanged(std::string_view name) {
  control_.persist.SetDirty(true);
  const PropertyRow* row = FindProperty(name);
  const DISPID id = row ? row->dispid : DISPID_UNKNOWN;
  control_.connections.Notifications().ForEach<IPropertyNotifySink>(
      [&](IPropertyNotifySink& sink) { sink.OnChanged(id); });
  control_.NotifyLook();
}

}  // namespace marklet::activex
