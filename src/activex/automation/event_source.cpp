#include "activex/automation/event_source.h"

#include <algorithm>

#include "activex/automation/connection_points.h"
#include "control/properties.h"

namespace marklet::activex {
namespace {

DISPID FindEvent(std::string_view name) {
  const auto events = marklet::Events();
  const auto found =
      std::find_if(events.begin(), events.end(), [&](const EventRow& row) { return row.name == name; });
  return found == events.end() ? DISPID_UNKNOWN : found->dispid;
}

VARIANTARG ByReference(std::int16_t& value) {
  VARIANTARG argument;
  argument.vt = VT_I2 | VT_BYREF;
  argument.piVal = &value;
  return argument;
}

VARIANTARG ByReference(float& value) {
  VARIANTARG argument;
  argument.vt = VT_R4 | VT_BYREF;
  argument.pfltVal = &value;
  return argument;
}

}  // namespace

void EventSource::Freeze(bool freeze) {
  if (freeze)
    ++frozen_;
  else if (frozen_ > 0)
    --frozen_;
}

// Arguments stand last to first. A sink that fails doesn't keep the next one from hearing.
void EventSource::Raise(std::string_view name, std::span<VARIANTARG> arguments) {
  if (frozen_ > 0) return;
  const DISPID id = FindEvent(name);
  DISPPARAMS parameters = {arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
  sinks_.ForEach<IDispatch>([&](IDispatch& sink) {
    sink.Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr);
  });
}

void EventSource::RaiseMouse(std::string_view name, std::int16_t& button, std::int16_t& shift, float& x,
                             float& y) {
  VARIANTARG arguments[] = {ByReference(y), ByReference(x), ByReference(shift), ByReference(button)};
  Raise(name, arguments);
}

void EventSource::Change() { Raise("Change"); }
void EventSource::Click() { Raise("Click"); }
void EventSource::DblClick() { Raise("DblClick"); }
void EventSource::MouseDown(std::int16_t& button, std::int16_t& shift, float& x, float& y) {
  RaiseMouse("MouseDown", button, shift, x, y);
}
void EventSource::MouseUp(std::int16_t& button, std::int16_t& shift, float& x, float& y) {
  RaiseMouse("MouseUp", button, shift, x, y);
}
void EventSource::MouseMove(std::int16_t& button, std::int16_t& shift, float& x, float& y) {
  RaiseMouse("MouseMove", button, shift, x, y);
}

}  // namespace marklet::activex
