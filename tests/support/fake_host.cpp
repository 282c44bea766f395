#include "support/fake_host.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "platform/gdi.h"
#include "platform/shared/os_tests.h"
#include "platform/system.h"
#include "text/shaping.h"

namespace marklet::testing {
namespace {

template <class... Arguments>
std::string Print(const char* format, Arguments... arguments) {
  char line[128];
  std::snprintf(line, sizeof line, format, arguments...);
  return line;
}

std::string Mouse(const char* name, int button, int shift, float x, float y) {
  return Print("%s(%d,%d,%g,%g)", name, button, shift, double(x), double(y));
}

std::string Narrow(std::u16string_view text) {
  std::string result;
  for (const char16_t ch : text) result += ch < 128 ? static_cast<char>(ch) : '?';
  return result;
}

}  // namespace

CDib24& FakeHost::Surface() {
  const Long width = static_cast<Long>(std::lround(scale_width));
  const Long height = static_cast<Long>(std::lround(scale_height));
  if (!surface_ || surface_->Width() != width || surface_->Height() != height) {
    surface_ = std::make_unique<CDib24>();
    surface_->Create(width, height);
  }
  return *surface_;
}

COLORREF FakeHost::Pixel(Long x, Long y) {
  PixelView view;
  if (!PixelsOf(Surface().hDC(), view) || x < 0 || y < 0 || x >= view.width || y >= view.height)
    return CLR_INVALID;
  const std::uint8_t* pixel =
      view.bits + std::ptrdiff_t{view.height - 1 - y} * view.stride + std::ptrdiff_t{x} * 3;
  return MakeRgb(pixel[2], pixel[1], pixel[0]);
}

FakeHost::Log FakeHost::TakeLog() {
  Log result;
  result.swap(log);
  return result;
}

FakeHost::Log FakeHost::Announced() const {
  constexpr std::string_view kPrefix = "PropertyChanged(";
  Log result;
  for (const std::string& line : log)
    if (line.starts_with(kPrefix))
      result.push_back(line.substr(kPrefix.size(), line.size() - kPrefix.size() - 1));
  return result;
}

int FakeHost::Paints() const { return static_cast<int>(std::count(log.begin(), log.end(), "hDC")); }

HDC FakeHost::hDC() {
  log.push_back("hDC");
  return has_surface ? Surface().hDC() : nullptr;
}

void FakeHost::PutWidth(double twips) {
  log.push_back(Print("Width(%g)", twips));
  scale_width = std::min(twips / twips_per_pixel, largest_side);
  if (on_resize) on_resize();
}

void FakeHost::PutHeight(double twips) {
  log.push_back(Print("Height(%g)", twips));
  scale_height = std::min(twips / twips_per_pixel, largest_side);
  if (on_resize) on_resize();
}

bool FakeHost::Enabled() {
  if (on_enabled_asked) on_enabled_asked();
  return enabled;
}

void FakeHost::PutEnabled(bool value) {
  log.push_back(Print("Enabled(%d)", value ? 1 : 0));
  enabled = value;
}

void FakeHost::PutFont(FontRef value) {
  log.push_back("Font");
  if (value) font = std::move(value);
}

void FakeHost::PutBackColor(OLE_COLOR colour) {
  log.push_back(Print("BackColor(%08X)", colour));
  back_color = colour;
}

void FakeHost::PutMouseIcon(HostObjectRef icon) {
  log.push_back("MouseIcon");
  mouse_icon = std::move(icon);
}

void FakeHost::PutMousePointer(Long pointer) {
  log.push_back(Print("MousePointer(%d)", pointer));
  mouse_pointer = pointer;
}

void FakeHost::PutAccessKeys(std::u16string keys) {
  log.push_back("AccessKeys(" + Narrow(keys) + ")");
  access_keys = std::move(keys);
}

bool FakeHost::PaintBehind(HDC dc) {
  ++asked_behind;
  return !paint_behind || paint_behind(dc);
}

void FakeHost::PropertyChanged(std::string_view name) {
  log.push_back("PropertyChanged(" + std::string(name) + ")");
  if (on_property_changed) on_property_changed(name);
}

void FakeHost::Change() {
  log.push_back("Change");
  if (on_change) on_change();
}

void FakeHost::MouseDown(std::int16_t& button, std::int16_t& shift, float& x, float& y) {
  log.push_back(Mouse("MouseDown", button, shift, x, y));
}
void FakeHost::MouseUp(std::int16_t& button, std::int16_t& shift, float& x, float& y) {
  log.push_back(Mouse("MouseUp", button, shift, x, y));
}
void FakeHost::MouseMove(std::int16_t& button, std::int16_t& shift, float& x, float& y) {
  log.push_back(Mouse("MouseMove", button, shift, x, y));
}

namespace {

class FakeTooltip final : public HostTooltip {
 public:
  explicit FakeTooltip(FakeHost::Log& log) : log_(log) {}
  ~FakeTooltip() override { log_.push_back("TooltipGone"); }
  void SetToolText(std::u16string_view text) override { log_.push_back("ToolText(" + Narrow(text) + ")"); }

 private:
  FakeHost::Log& log_;
};

std::string Drag(const char* name, Long effect, const PointerArguments& pointer) {
  return Print("%s(%d,%d,%d,%g,%g", name, effect, pointer.button, pointer.shift, double(pointer.x),
               double(pointer.y));
}

}  // namespace

HostTooltipRef FakeHost::CreateTooltip() {
  log.push_back("CreateTooltip");
  return has_tooltips ? std::make_shared<FakeTooltip>(log) : nullptr;
}

void FakeHost::StartSubclass(bool extended_buttons) {
  log.push_back(Print("StartSubclass(%d)", extended_buttons));
}

void FakeHost::MouseEnter() {
  log.push_back("MouseEnter");
  if (on_mouse_enter) on_mouse_enter();
}

void FakeHost::OLECompleteDrag(Long& effect) { log.push_back(Print("OLECompleteDrag(%d)", effect)); }
void FakeHost::OLEDragDrop(const HostObjectRef&, Long& effect, PointerArguments& pointer) {
  log.push_back(Drag("OLEDragDrop", effect, pointer) + ")");
  effect = effect_left.value_or(effect);
}
void FakeHost::OLEDragOver(const HostObjectRef&, Long& effect, PointerArguments& pointer,
                           std::int16_t& state) {
  log.push_back(Drag("OLEDragOver", effect, pointer) + Print(",%d)", state));
  effect = effect_left.value_or(effect);
}
void FakeHost::OLEGiveFeedback(Long& effect, bool& default_cursors) {
  log.push_back(Print("OLEGiveFeedback(%d,%d)", effect, default_cursors));
  default_cursors = false;
}
void FakeHost::OLESetData(const HostObjectRef&, std::int16_t& format) {
  log.push_back(Print("OLESetData(%d)", format));
}
void FakeHost::OLEStartDrag(const HostObjectRef&, Long& allowed_effects) {
  log.push_back(Print("OLEStartDrag(%d)", allowed_effects));
  allowed_effects = effect_left.value_or(allowed_effects);
}

void HostedControl::Init() {
  control.InitProperties();
  host.TakeLog();
}

Value HostedControl::Get(std::string_view name) {
  const PropertyRow* row = FindProperty(name);
  return row ? control.Get(*row) : Value();
}

void HostedControl::Set(std::string_view name, const Value& value) {
  if (const PropertyRow* row = FindProperty(name)) control.Set(*row, value);
}

FixedSystem::FixedSystem(std::uint32_t major, std::uint32_t minor, std::uint32_t platform) {
  Configuration().version = OSVERSIONINFOA{major, minor, platform};
  ForgetOsTests();
  ForgetUniscribe();
}

FixedSystem::~FixedSystem() {
  Configuration() = {};
  ForgetOsTests();
  ForgetUniscribe();
}

}  // namespace marklet::testing
