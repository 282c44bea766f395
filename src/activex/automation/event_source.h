// Events on their way to the host's sinks.
#pragma once

#include <span>

#include "activex/com/com.h"
#include "control/events.h"

namespace marklet::activex {

class ConnectionPoint;

// Raises the control's events on every connected sink, with the arguments by reference so that a handler may
// change them. While the host has events frozen they are dropped.
class EventSource final : public MarkletEvents {
 public:
  explicit EventSource(ConnectionPoint& sinks) : sinks_(sinks) {}

  void Change() override;
  void Click() override;
  void DblClick() override;
  void MouseDown(std::int16_t& button, std::int16_t& shift, float& x, float& y) override;
  void MouseUp(std::int16_t& button, std::int16_t& shift, float& x, float& y) override;
  void MouseMove(std::int16_t& button, std::int16_t& shift, float& x, float& y) override;
  void MouseEnter() override;
  void MouseLeave() override;
  void OLECompleteDrag(Long& effect) override;
  void OLEDragDrop(const HostObjectRef& data, Long& effect, PointerArguments& pointer) override;
  void OLEDragOver(const HostObjectRef& data, Long& effect, PointerArguments& pointer,
                   std::int16_t& state) override;
  void OLEGiveFeedback(Long& effect, bool& default_cursors) override;
  void OLESetData(const HostObjectRef& data, std::int16_t& format) override;
  void OLEStartDrag(const HostObjectRef& data, Long& allowed_effects) override;

  // Whether anybody is connected, and would hear an event now.
  bool HasListeners() const;
  bool IsHeard() const { return frozen_ == 0 && HasListeners(); }
  // Counted: as many thaws as freezes let events through again.
  void Freeze(bool freeze);

 private:
  void Raise(std::string_view name, std::span<VARIANTARG> arguments = {});
  void RaiseMouse(std::string_view name, std::int16_t& button, std::int16_t& shift, float& x, float& y);

  ConnectionPoint& sinks_;
  int frozen_ = 0;
};

}  // namespace marklet::activex
