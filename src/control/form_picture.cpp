#include "control/form_picture.h"

#include <bit>

#include "base/ignore_errors.h"
#include "base/rounding.h"
#include "platform/gdi.h"

namespace marklet {
namespace {

// What `read` gives; nothing in place of an error.
template <typename Read>
auto Try(Read read) -> decltype(read()) {
  decltype(read()) result{};
  IgnoreErrors([&] { result = read(); });
  return result;
}

// An object whose window can't be read isn't the one.
bool Is(const NamedMembersRef& object, HWND window) {
  const auto handle = Try([&] { return object ? object->GetHandle("hwnd") : std::nullopt; });
  return handle && std::bit_cast<HWND>(*handle) == window;
}

NamedMembersRef FindControl(const NamedMembersRef& form, HWND window) {
  NamedMembersRef found;
  IgnoreErrors([&] {
    const NamedMembersRef controls = form ? form->GetObject("Controls") : nullptr;
    if (!controls) return;
    controls->Find([&](const NamedMembersRef& control) {
      if (!Is(control, window)) return false;
      found = control;
      return true;
    });
  });
  return found;
}

// The control's place on its container, in pixels. Only twips are converted: other units are taken for
// pixels.
Long Along(UserControl& host, const char* member, double twips_per_pixel, bool in_twips) {
  const auto place = Try([&] {
    const NamedMembersRef extender = host.Extender();
    return extender ? extender->GetNumber(member) : std::nullopt;
  });
  const Long whole = RoundHalfEven(place.value_or(0));
  const Long unit = in_twips ? RoundHalfEven(twips_per_pixel) : 1;
  return unit > 0 ? whole / unit : 0;
}

bool IsScaledInTwips(UserControl& host) {
  constexpr double kTwips = 1;
  const auto mode = Try([&] {
    const NamedMembersRef extender = host.Extender();
    const NamedMembersRef container = extender ? extender->GetObject("Container") : nullptr;
    return container ? container->GetNumber("ScaleMode") : std::nullopt;
  });
  return mode == kTwips;
}

void PutAutoRedraw(const NamedMembersRef& object, bool value) {
  IgnoreErrors([&] { object->PutFlag("AutoRedraw", value); });
}

}  // namespace

bool KeepsPicture(UserControl& host) {
  const NamedMembersRef parent = Try([&] { return host.Parent(); });
  return parent && parent->Has("hwnd") && parent->Has("AutoRedraw");
}

void CopyFromForm(UserControl& host, HDC destination) {
  const NamedMembersRef parent = Try([&] { return host.Parent(); });
  const HWND window = Try([&] { return host.ContainerHwnd(); });
  const bool on_parent = Is(parent, window);
  const NamedMembersRef control = on_parent ? nullptr : FindControl(parent, window);
  const NamedMembersRef under = on_parent ? parent : control;

  bool former = false;
  HDC source = nullptr;
  if (under) {
    former = Try([&] { return under->GetLong("AutoRedraw"); }).value_or(0) != 0;
    PutAutoRedraw(under, true);
    source = std::bit_cast<HDC>(Try([&] { return under->GetHandle("hdc"); }).value_or(0));
  }
  IgnoreErrors([&] {
    const bool in_twips = IsScaledInTwips(host);
    const Long x = Along(host, "Left", host.TwipsPerPixelX(), in_twips);
    const Long y = Along(host, "Top", host.TwipsPerPixelY(), in_twips);
    BitBlt(destination, 0, 0, RoundHalfEven(host.ScaleWidth()), RoundHalfEven(host.ScaleHeight()), source, x,
           y, SRCCOPY);
  });
  if (!under) return;
  const bool still_on_parent = Is(parent, Try([&] { return host.ContainerHwnd(); }));
  const NamedMembersRef changed = still_on_parent ? parent : control;
  PutAutoRedraw(changed ? changed : under, former);
}

}  // namespace marklet
