// What the control tells its host by events. Handlers may change the arguments, set properties and destroy
// windows.
#pragma once

#include <cstdint>

namespace marklet {

class MarkletEvents {
 public:
  virtual ~MarkletEvents() = default;
  virtual void Change() {}
  virtual void Click() {}
  virtual void DblClick() {}
  virtual void MouseDown(std::int16_t& /*button*/, std::int16_t& /*shift*/, float& /*x*/, float& /*y*/) {}
  virtual void MouseUp(std::int16_t& /*button*/, std::int16_t& /*shift*/, float& /*x*/, float& /*y*/) {}
  virtual void MouseMove(std::int16_t& /*button*/, std::int16_t& /*shift*/, float& /*x*/, float& /*y*/) {}
};

}  // namespace marklet
