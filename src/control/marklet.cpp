#include "control/marklet.h"

#include "base/ignore_errors.h"
#include "platform/system_colours.h"
#include "text/string_helpers.h"

namespace marklet {

// --- Lifecycle --------------------------------------------------------------------------------------------

Marklet::Marklet(UserControl& host, MarkletEvents& events) : host_(host), events_(events) {
  hidden_list_.InitProperties();  // a constituent begins before its control
  state_.SafeForScripting = true;
  state_.SafeForInitializing = true;
  state_.ImagePixels = 16;
  IgnoreErrors([this] { state_.Images = std::make_shared<ImageCollection>(); });
  IgnoreErrors([this] { state_.BackBuffer = std::make_shared<CDib24>(); });
  state_.UsesSystemColors = true;
}

Marklet::~Marklet() = default;

// --- The property protocol --------------------------------------------------------------------------------

Value Marklet::Get(const PropertyRow& row) {
  Value result;
  IgnoreErrors([&] { result = row.get(*this); });
  return result;
}

void Marklet::Set(const PropertyRow& row, const Value& value) { TrySet(row, value); }

// False when a failure kept the value from being stored.
bool Marklet::TrySet(const PropertyRow& row, const Value& value) {
  if (row.store == nullptr || !HoldsType(value, row.type)) return true;
  const bool stored = IgnoreErrors([&] { row.store(*this, value); });
  RunSteps(row);
  return stored;
}

void Marklet::RunSteps(const PropertyRow& row) {
  if (row.steps & kColourFlag) UpdateColorFlag();
  if (row.steps & kHostColour) IgnoreErrors([this] { host_.PutBackColor(state_.BackColor); });
  if (row.steps & kSize && state_.AutoSize) RecomputeAutoSize();
  if (row.steps & kRedraw) RedrawNow();
  if (!row.announced.empty()) IgnoreErrors([&] { host_.PropertyChanged(row.announced); });
  if (row.steps & kRaiseChange) IgnoreErrors([this] { events_.Change(); });
}

void Marklet::UpdateColorFlag() {
  state_.UsesSystemColors = ((state_.BackColor | state_.ForeColor | state_.EffectColor) & kSystemColour) != 0;
}

void Marklet::UpdateAccessKeys(std::u16string_view text) {
  IgnoreErrors([&] { host_.PutAccessKeys(text.empty() ? std::u16string() : FindAccessKey(text)); });
}

// The caption was set while UseMnemonic still had its former value.
void Marklet::MatchAccessKeys() { UpdateAccessKeys(state_.UseMnemonic ? state_.Caption : std::u16string()); }

}  // namespace marklet
