// Marklet: the control object. It owns the caption's state and the finished picture, and lives in one host on
// one thread.
//
// No call throws and none reports an error: a failing step is skipped and the next one runs. Setters paint
// before they return. Events and PropertyChanged may re-enter any member.
#pragma once

#include <array>
#include <memory>
#include <string>
#include <string_view>

#include "bitmaps/cdib24.h"
#include "control/events.h"
#include "control/properties.h"
#include "control/value.h"
#include "platform/types.h"
#include "platform/user_control.h"

namespace marklet {

// The state of the control, in the order in which saved forms and debuggers have always known it.
struct MarkletState {
  bool DesignMode = false;  // written by InitProperties alone
  bool Hover = false;
  Long MaxHeight = 0, MaxWidth = 0;  // largest client size seen, pixels
  Long ImageSize = 0;
  Long ImagePixels = 0;  // edge length for ImageSize
  std::u16string ImageKey, ImageKeyhover;
  Long ImageAlignment = 0;
  bool UsesSystemColors = false;  // some colour names a system colour
  std::array<COLORREF, 6> SystemColorCache{};
  Long Appearance = 0, BorderStyle = 0;
  OLE_COLOR BackColor = 0, ForeColor = 0;
  std::u16string Caption, UniToolTipText;
  Long BackStyle = 0;
  Long Padding = 0;          // not public
  bool RightToLeft = false;  // not public
  bool UseMnemonic = false;
  Long Alignment = 0;          // not public
  Long VerticalAlignment = 0;  // not public
  Long TextEffect = 0;
  bool WordWrap = false;
  OLE_COLOR EffectColor = 0;
  bool AutoSize = false;
  std::unique_ptr<CDib24> BackBuffer;  // the finished picture; null when it must be built again
  bool SafeForScripting = false, SafeForInitializing = false;
};

class Marklet {
 public:
  // Initialize. `host` and `events` outlive the control.
  Marklet(UserControl& host, MarkletEvents& events);
  ~Marklet();  // Terminate
  Marklet(const Marklet&) = delete;
  Marklet& operator=(const Marklet&) = delete;

  // The defaults of a newly placed control.
  void InitProperties();

  // The public surface. A value of another type than the row's is ignored; setting a read-only property does
  // nothing.
  Value Get(const PropertyRow& row);
  void Set(const PropertyRow& row, const Value& value);
  bool LoadIconImageFromFile(std::u16string_view file, std::u16string_view key);

  // Brings the picture up to date and copies it to `dc`, or to the host's context when that is null.
  void PaintControl(HDC dc);
  // Drops the picture and paints at once.
  void RedrawNow();

  // The host's notifications.
  void Resize();
  void Click();
  void DblClick();
  void MouseDown(std::int16_t button, std::int16_t shift, float x, float y);
  void MouseUp(std::int16_t button, std::int16_t shift, float x, float y);
  void MouseMove(std::int16_t button, std::int16_t shift, float x, float y);

  MarkletState& State() { return state_; }
  const MarkletState& State() const { return state_; }
  UserControl& Host() { return host_; }

 private:
  UserControl& host_;
  MarkletEvents& events_;
  MarkletState state_;
};

}  // namespace marklet
