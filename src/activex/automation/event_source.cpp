#include "activex/automation/event_source.h"

#include <algorithm>

#include "activex/automation/connection_points.h"
#include "activex/automation/drag_data.h"
#include "control/properties.h"

namespace marklet::activex {
namespace {

DISPID FindEvent(std::string_view name) {
  const auto events = marklet::Events();
  const auto found =
      std::find_if(events.begin(), events.end(), [&](const EventRow& row) { return row.name == name; });
  return found == events.end() ? DISPID_UNKNOWN : found->dispid;
}

VARIANTARG Reference(VARTYPE type, void* value) {
  VARIANTARG argument;
  argument.vt = static_cast<VARTYPE>(type | VT_BYREF);
  argument.byref = value;
  return argument;
}

VARIANTARG ByReference(std::int16_t& value) { return Reference(VT_I2, &value); }
VARIANTARG ByReference(Long& value) { return Reference(VT_I4, &value); }
VARIANTARG ByReference(float& value) { return Reference(VT_R4, &value); }
VARIANTARG BooleanByReference(VARIANT_BOOL& value) { return Reference(VT_BOOL, &value); }
// A handler may put another object there, or none, which nobody looks at.
VARIANTARG ByReference(ComPtr<IDispatch>& object) { return Reference(VT_DISPATCH, object.GetAddressOf()); }

}  // namespace

bool EventSource::HasListeners() const { return sinks_.HasSinks(); }

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

void EventSource::MouseEnter() { Raise("MouseEnter"); }
void EventSource::MouseLeave() { Raise("MouseLeave"); }

// --- Drag and drop ----------------------------------------------------------------------------------------

void EventSource::OLECompleteDrag(Long& effect) {
  VARIANTARG arguments[] = {ByReference(effect)};
  Raise("OLECompleteDrag", arguments);
}

void EventSource::OLEDragDrop(const HostObjectRef& data, Long& effect, PointerArguments& pointer) {
  ComPtr<IDispatch> object = UnwrapDragData(data);
  VARIANTARG arguments[] = {ByReference(pointer.y),      ByReference(pointer.x), ByReference(pointer.shift),
                            ByReference(pointer.button), ByReference(effect),    ByReference(object)};
  Raise("OLEDragDrop", arguments);
}

void EventSource::OLEDragOver(const HostObjectRef& data, Long& effect, PointerArguments& pointer,
                              std::int16_t& state) {
  ComPtr<IDispatch> object = UnwrapDragData(data);
  VARIANTARG arguments[] = {ByReference(state),         ByReference(pointer.y),      ByReference(pointer.x),
                            ByReference(pointer.shift), ByReference(pointer.button), ByReference(effect),
                            ByReference(object)};
  Raise("OLEDragOver", arguments);
}

void EventSource::OLEGiveFeedback(Long& effect, bool& default_cursors) {
  VARIANT_BOOL cursors = default_cursors ? VARIANT_TRUE : VARIANT_FALSE;
  VARIANTARG arguments[] = {BooleanByReference(cursors), ByReference(effect)};
  Raise("OLEGiveFeedback", arguments);
  default_cursors = cursors != VARIANT_FALSE;
}

void EventSource::OLESetData(const HostObjectRef& data, std::int16_t& format) {
  ComPtr<IDispatch> object = UnwrapDragData(data);
  VARIANTARG arguments[] = {ByReference(format), ByReference(object)};
  Raise("OLESetData", arguments);
}

void EventSource::OLEStartDrag(const HostObjectRef& data, Long& allowed_effects) {
  ComPtr<IDispatch> object = UnwrapDragData(data);
  VARIANTARG arguments[] = {ByReference(allowed_effects), ByReference(object)};
  Raise("OLEStartDrag", arguments);
}

}  // namespace marklet::activex
