#include "activex/user_control.h"

#include "activex/control_object.h"
#include "activex/dispatch_reader.h"
#include "platform/rounding.h"

namespace marklet::activex {

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
  control_.view.NotifyChange();
}

// --- What the control keeps here --------------------------------------------------------------------------

void OleUserControl::PutEnabled(bool enabled) {
  enabled_ = enabled;
  EnableWindow();
}

void OleUserControl::EnableWindow() {
  if (control_.window.Handle()) ::EnableWindow(control_.window.Handle(), enabled_ || !ambient_.UserMode());
}

// There is always a font: Nothing leaves the one that stands.
void OleUserControl::PutFont(FontRef font) {
  if (font) font_ = std::move(font);
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
  return MembersOf(control_.site.ExtendedControl());
}

void OleUserControl::PropertyChanged(std::string_view name) {
  control_.persist.SetDirty(true);
  const PropertyRow* row = FindProperty(name);
  const DISPID id = row ? row->dispid : DISPID_UNKNOWN;
  control_.connections.Notifications().ForEach<IPropertyNotifySink>(
      [&](IPropertyNotifySink& sink) { sink.OnChanged(id); });
  control_.view.NotifyChange();
}

}  // namespace marklet::activex
