// The pointer over the control: hover, and the events that the host passes on.
#include "base/ignore_errors.h"
#include "control/marklet.h"
#include "text/string_helpers.h"

namespace marklet {

// --- Hover ------------------------------------------------------------------------------------------------

// Each step as far as it gets, and in this order: a handler of MouseEnter sees the hover picture. Where the
// host doesn't tell when the pointer leaves, it is in for good.
void Marklet::BeginHover() {
  IgnoreErrors([this] { host_.TrackMouseEvent(); });
  IgnoreErrors([this] { ShowTooltip(); });
  state_.Hover = true;
  RedrawNow();
  IgnoreErrors([this] { events_.MouseEnter(); });
}

void Marklet::ShowTooltip() {
  if (state_.UniToolTipText.empty() || state_.Tooltip) return;
  state_.Tooltip = host_.CreateTooltip();
  if (state_.Tooltip) state_.Tooltip->SetToolText(DecodeUtf8IfEncoded(state_.UniToolTipText));
}

void Marklet::EndHover() {
  state_.Hover = false;
  RedrawNow();
}

// With the window the tip and the watch on the pointer are gone: over the next window it comes in anew.
void Marklet::WindowGone() {
  state_.Hover = false;
  state_.Tooltip.reset();
}

void Marklet::MouseLeave() {
  IgnoreErrors([this] { events_.MouseLeave(); });
}

// --- Buttons ----------------------------------------------------------------------------------------------

void Marklet::Click() {
  IgnoreErrors([this] { events_.Click(); });
}
void Marklet::DblClick() {
  IgnoreErrors([this] { events_.DblClick(); });
}
void Marklet::MouseDown(std::int16_t button, std::int16_t shift, float x, float y) {
  IgnoreErrors([&] { events_.MouseDown(button, shift, x, y); });
}
void Marklet::MouseUp(std::int16_t button, std::int16_t shift, float x, float y) {
  IgnoreErrors([&] { events_.MouseUp(button, shift, x, y); });
}
void Marklet::MouseMove(std::int16_t button, std::int16_t shift, float x, float y) {
  if (!state_.Hover) BeginHover();
  IgnoreErrors([&] { events_.MouseMove(button, shift, x, y); });
}

namespace {

// The first extended button has the number of the middle one.
std::int16_t ExtendedButton(Long buttons) {
  constexpr Long kFirst = 32, kSecond = 64;
  return buttons == kFirst ? 4 : buttons == kSecond ? 8 : 16;
}

}  // namespace

// The keys go on as the messages have them: 4 for Shift and 8 for Ctrl, where the other events have 1 and 2.
void Marklet::ExtendedMouseDown(Long buttons, Long shift, float x, float y) {
  MouseDown(ExtendedButton(buttons), static_cast<std::int16_t>(shift), x, y);
}
void Marklet::ExtendedMouseUp(Long buttons, Long shift, float x, float y) {
  MouseUp(ExtendedButton(buttons), static_cast<std::int16_t>(shift), x, y);
}

float Marklet::ScaleXValue(double twips) { return static_cast<float>(twips / host_.TwipsPerPixelX()); }

std::size_t Marklet::CopyCaption(std::size_t room, char16_t* to) const {
  const std::u16string& caption = state_.Caption;
  if (to) caption.copy(to, caption.size());
  return caption.size() < room ? caption.size() + 1 : room;
}

// --- Drag and drop ----------------------------------------------------------------------------------------

void Marklet::OLECompleteDrag(Long& effect) {
  IgnoreErrors([&] { events_.OLECompleteDrag(effect); });
}
void Marklet::OLEDragDrop(const HostObjectRef& data, Long& effect, PointerArguments pointer) {
  IgnoreErrors([&] { events_.OLEDragDrop(data, effect, pointer); });
}
void Marklet::OLEDragOver(const HostObjectRef& data, Long& effect, PointerArguments pointer,
                          std::int16_t state) {
  IgnoreErrors([&] { events_.OLEDragOver(data, effect, pointer, state); });
}
void Marklet::OLEGiveFeedback(Long& effect, bool& default_cursors) {
  IgnoreErrors([&] { events_.OLEGiveFeedback(effect, default_cursors); });
}
void Marklet::OLESetData(const HostObjectRef& data, std::int16_t format) {
  IgnoreErrors([&] { events_.OLESetData(data, format); });
}
void Marklet::OLEStartDrag(const HostObjectRef& data, Long& allowed_effects) {
  IgnoreErrors([&] { events_.OLEStartDrag(data, allowed_effects); });
}

}  // namespace marklet
