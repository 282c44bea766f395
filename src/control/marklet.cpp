#include "control/marklet.h"

#include "base/ignore_errors.h"
#include "text/string_helpers.h"

namespace marklet {

// --- Lifecycle --------------------------------------------------------------------------------------------

Marklet::Marklet(UserControl& host, MarkletEvents& events) : host_(host), events_(events) {
  state_.SafeForScripting = true;
  state_.SafeForInitializing = true;
  state_.ImagePixels = 16;
  IgnoreErrors([this] { state_.Images = std::make_shared<ImageCollection>(); });
  IgnoreErrors([this] { state_.BackBuffer = std::make_shared<CDib24>(); });
  state_.UsesSystemColors = true;
}

Marklet::~Marklet() = default;

bool Marklet::SetByName(std::string_view name, const Value& value) {
  const PropertyRow* row = FindProperty(name);
  return row != nullptr && TrySet(*row, value);
}

bool Marklet::InitProperties() {
  Ambient& ambient = host_.AmbientProperties();
  bool whole = true;
  // A step that fails is skipped; one that sets a property may fail inside.
  const auto step = [&](auto body) {
    if (!IgnoreErrors(body)) whole = false;
  };
  const auto set = [&](std::string_view name, auto value) {
    step([&] {
      if (!SetByName(name, value())) whole = false;
    });
  };
  step([&] { state_.DesignMode = !ambient.UserMode(); });
  set("Appearance", [] { return Long{1}; });
  set("BorderStyle", [] { return Long{0}; });
  set("Caption", [&] { return ambient.DisplayName(); });
  state_.Alignment = 0;
  set("Font", [&] { return ambient.Font(); });
  step([&] { host_.Font()->PutName(ambient.Font()->Name()); });
  step([&] { host_.PutEnabled(true); });
  step([&] { state_.BackColor = ambient.BackColor(); });
  step([&] { state_.ForeColor = ambient.ForeColor(); });
  state_.EffectColor = 0x80000010;
  step([&] { state_.RightToLeft = ambient.RightToLeft(); });
  state_.Padding = 0;
  state_.UseMnemonic = true;
  state_.WordWrap = true;
  state_.BackStyle = 1;
  state_.VerticalAlignment = 0;
  state_.TextEffect = 0;
  state_.ImageAlignment = 0;
  state_.ImagePixels = 16;
  state_.ImageSize = 0;
  MatchAccessKeys();
  return whole;
}

// --- The property protocol --------------------------------------------------------------------------------

Value Marklet::Get(const PropertyRow& row) {
  Value result;
  IgnoreErrors([&] { result = row.get(*this); });
  return result;
}

void Marklet::Set(const PropertyRow& row, const Value& value) { TrySet(row, value); }

// False when the value couldn't be stored for a failure.
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
  constexpr OLE_COLOR kSystemColour = 0x80000000;
  state_.UsesSystemColors = ((state_.BackColor | state_.ForeColor | state_.EffectColor) & kSystemColour) != 0;
}

void Marklet::UpdateAccessKeys(std::u16string_view text) {
  IgnoreErrors([&] { host_.PutAccessKeys(text.empty() ? std::u16string() : FindAccessKey(text)); });
}

// The caption was set while UseMnemonic still had its former value.
void Marklet::MatchAccessKeys() { UpdateAccessKeys(state_.UseMnemonic ? state_.Caption : std::u16string()); }

// --- Events that the host passes on -----------------------------------------------------------------------

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
  IgnoreErrors([&] { events_.MouseMove(button, shift, x, y); });
}

}  // namespace marklet
