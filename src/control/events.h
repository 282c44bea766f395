// What the control tells its host by events. Handlers may change the arguments, set properties and destroy
// windows.
#pragma once

#include <cstdint>

#include "host/user_control.h"
#include "platform/types.h"

namespace marklet {

// Where the pointer is and what is held down, as all events of the pointer tell it: `x` and `y` in pixels
// from the control's corner.
struct PointerArguments {
  std::int16_t button = 0, shift = 0;
  float x = 0, y = 0;
};

// `data` is the host's own object for what is dragged, `effect` a sum of 1 for copying, 2 for moving and 4
// for linking.
class MarkletEvents {
 public:
  virtual ~MarkletEvents() = default;
  virtual void Change() {}
  virtual void Click() {}
  virtual void DblClick() {}
  virtual void MouseDown(std::int16_t& /*button*/, std::int16_t& /*shift*/, float& /*x*/, float& /*y*/) {}
  virtual void MouseUp(std::int16_t& /*button*/, std::int16_t& /*shift*/, float& /*x*/, float& /*y*/) {}
  virtual void MouseMove(std::int16_t& /*button*/, std::int16_t& /*shift*/, float& /*x*/, float& /*y*/) {}
  virtual void MouseEnter() {}
  virtual void MouseLeave() {}
  virtual void OLECompleteDrag(Long& /*effect*/) {}
  virtual void OLEDragDrop(const HostObjectRef& /*data*/, Long& /*effect*/, PointerArguments& /*pointer*/) {}
  virtual void OLEDragOver(const HostObjectRef& /*data*/, Long& /*effect*/, PointerArguments& /*pointer*/,
                           std::int16_t& /*state*/) {}
  virtual void OLEGiveFeedback(Long& /*effect*/, bool& /*default_cursors*/) {}
  virtual void OLESetData(const HostObjectRef& /*data*/, std::int16_t& /*format*/) {}
  virtual void OLEStartDrag(const HostObjectRef& /*data*/, Long& /*allowed_effects*/) {}
};

}  // namespace marklet
