// A host made of memory: it keeps what the control gives it and logs what the control tells it.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "bitmaps/cdib24.h"
#include "control/marklet.h"

namespace marklet::testing {

struct FakeAmbient final : Ambient {
  bool user_mode = true;
  OLE_COLOR back_color = 0x8000000F, fore_color = 0x80000012;
  FontRef font = std::make_shared<StdFont>();
  std::u16string display_name;
  bool right_to_left = false;

  bool UserMode() override { return user_mode; }
  OLE_COLOR BackColor() override { return back_color; }
  OLE_COLOR ForeColor() override { return fore_color; }
  FontRef Font() override { return font; }
  std::u16string DisplayName() override { return display_name; }
  bool RightToLeft() override { return right_to_left; }
};

// The log holds, in call order:
//   "hDC"                    its context asked for: once by each measurement and once by each paint
//   "PropertyChanged(Name)"  with nothing between the brackets for no name
//   "AccessKeys(K)" "Enabled(0)" "BackColor(8000000F)" "Font" "MouseIcon" "MousePointer(2)"
//   "Width(1500)" "Height(450)"
//   "TrackMouseEvent" "CreateTooltip" "ToolText(text)" "TooltipGone" "StartSubclass(1)"
//   "Change" "Click" "DblClick" "MouseDown(1,2,3,4)" "MouseUp(1,2,3,4)" "MouseMove(1,2,3,4)"
//   "MouseEnter" "MouseLeave" "OLEDragOver(7,1,2,3,4,0)" and the other events of dragging, without their data
class FakeHost final : public UserControl, public MarkletEvents {
 public:
  using Log = std::vector<std::string>;
  Log log;

  FakeAmbient ambient;
  double scale_width = 100, scale_height = 50;  // pixels
  double largest_side = 32767;                  // pixels that the control may grow to, either way
  double twips_per_pixel = 15;
  HWND window = nullptr;
  NamedMembersRef parent, extender;
  HWND container = nullptr;
  bool has_tooltips = true;
  bool has_surface = true;  // whether there is a context to paint on
  bool is_seen = true;      // whether what is painted can be seen

  bool enabled = true;
  FontRef font = std::make_shared<StdFont>();
  OLE_COLOR back_color = 0;
  HostObjectRef mouse_icon;
  Long mouse_pointer = 0;
  std::u16string access_keys;

  // Called from inside the notifications; `on_enabled_asked` from inside the building of a picture.
  std::function<void(std::string_view)> on_property_changed;
  std::function<void()> on_change, on_resize, on_enabled_asked, on_mouse_enter;
  // Draws what lies behind; false when that isn't known for good. Without it there is nothing.
  std::function<bool(HDC)> paint_behind;
  int asked_behind = 0;
  // What the handlers of the drag events leave as effect.
  std::optional<Long> effect_left;

  // Where paints without a context of their own arrive, at the present size.
  CDib24& Surface();
  COLORREF Pixel(Long x, Long y);

  Log TakeLog();          // and empties it
  Log Announced() const;  // the names of PropertyChanged alone
  int Paints() const;     // how often the context was asked for

  Ambient& AmbientProperties() override { return ambient; }
  HWND hWnd() override { return window; }
  HDC hDC() override;
  bool IsSeen() override { return is_seen; }
  double ScaleWidth() override { return scale_width; }
  double ScaleHeight() override { return scale_height; }
  double Width() override { return scale_width * twips_per_pixel; }
  double Height() override { return scale_height * twips_per_pixel; }
  void PutWidth(double twips) override;
  void PutHeight(double twips) override;
  double TwipsPerPixelX() override { return twips_per_pixel; }
  double TwipsPerPixelY() override { return twips_per_pixel; }
  bool Enabled() override;
  void PutEnabled(bool value) override;
  FontRef Font() override { return font; }
  void PutFont(FontRef value) override;
  OLE_COLOR BackColor() override { return back_color; }
  void PutBackColor(OLE_COLOR colour) override;
  HostObjectRef MouseIcon() override { return mouse_icon; }
  void PutMouseIcon(HostObjectRef icon) override;
  Long MousePointer() override { return mouse_pointer; }
  void PutMousePointer(Long pointer) override;
  std::u16string AccessKeys() override { return access_keys; }
  void PutAccessKeys(std::u16string keys) override;
  void TrackMouseEvent() override { log.push_back("TrackMouseEvent"); }
  HostTooltipRef CreateTooltip() override;
  void StartSubclass(bool extended_buttons) override;
  HWND ContainerHwnd() override { return container; }
  NamedMembersRef Parent() override { return parent; }
  NamedMembersRef Extender() override { return extender; }
  bool PaintBehind(HDC dc) override;
  void PropertyChanged(std::string_view name) override;

  void Change() override;
  void Click() override { log.push_back("Click"); }
  void DblClick() override { log.push_back("DblClick"); }
  void MouseDown(std::int16_t& button, std::int16_t& shift, float& x, float& y) override;
  void MouseUp(std::int16_t& button, std::int16_t& shift, float& x, float& y) override;
  void MouseMove(std::int16_t& button, std::int16_t& shift, float& x, float& y) override;
  void MouseEnter() override;
  void MouseLeave() override { log.push_back("MouseLeave"); }
  void OLECompleteDrag(Long& effect) override;
  void OLEDragDrop(const HostObjectRef& data, Long& effect, PointerArguments& pointer) override;
  void OLEDragOver(const HostObjectRef& data, Long& effect, PointerArguments& pointer,
                   std::int16_t& state) override;
  void OLEGiveFeedback(Long& effect, bool& default_cursors) override;
  void OLESetData(const HostObjectRef& data, std::int16_t& format) override;
  void OLEStartDrag(const HostObjectRef& data, Long& allowed_effects) override;

 private:
  std::unique_ptr<CDib24> surface_;
};

// A control in a fake host. Nothing has been set: the host is as the test wants it before InitProperties.
struct HostedControl {
  FakeHost host;
  Marklet control{host, host};

  void Init();  // InitProperties, with the log emptied after it
  Value Get(std::string_view name);
  void Set(std::string_view name, const Value& value);
  std::u16string Text(std::string_view name) { return std::get<std::u16string>(Get(name)); }
  Long Number(std::string_view name) { return std::get<Long>(Get(name)); }
  bool Flag(std::string_view name) { return std::get<bool>(Get(name)); }
  MarkletState& State() { return control.State(); }
};

// One that has been placed on a form, with nothing in its log.
struct PlacedControl : HostedControl {
  PlacedControl() { Init(); }
};

// Fixes the answers of the system on this thread, and forgets them again.
class FixedSystem {
 public:
  explicit FixedSystem(std::uint32_t major = 6, std::uint32_t minor = 1, std::uint32_t platform = 2);
  ~FixedSystem();
  FixedSystem(const FixedSystem&) = delete;
  FixedSystem& operator=(const FixedSystem&) = delete;
};

}  // namespace marklet::testing
