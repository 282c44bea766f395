// What the control asks of its host, answered over OLE.
#pragma once

#include "activex/control/drop_target.h"
#include "activex/control/extent.h"
#include "activex/control/site.h"
#include "activex/control/subclass.h"
#include "activex/control/window.h"
#include "control/marklet.h"
#include "host/user_control.h"
#include "platform/system_colours.h"

namespace marklet::activex {

class HostFont;
class InPlace;

// Tells the outside what has changed.
class ChangeListener {
 public:
  virtual void PropertyChanged(DISPID id) = 0;  // DISPID_UNKNOWN for none in particular
  virtual void LookChanged() = 0;               // to everybody who keeps a picture

 protected:
  ~ChangeListener() = default;
};

class OleUserControl final : public UserControl, public PlaceListener, public InputListener {
 public:
  OleUserControl(ChangeListener& listener, const Site& site, Extent& extent, HostFont& host_font,
                 ControlWindow& window, InPlace& in_place, WindowSubclass& subclass, DropTarget& drop_target,
                 Marklet& marklet);

  Ambient& AmbientProperties() override { return ambient_; }

  HWND hWnd() override;
  HDC hDC() override;
  double ScaleWidth() override;
  double ScaleHeight() override;
  double Width() override;
  double Height() override;
  void PutWidth(double twips) override;
  void PutHeight(double twips) override;
  double TwipsPerPixelX() override { return extent_.TwipsPerPixel(); }
  double TwipsPerPixelY() override { return extent_.TwipsPerPixel(); }

  bool Enabled() override { return enabled_; }
  void PutEnabled(bool enabled) override;
  FontRef Font() override { return font_; }
  void PutFont(FontRef font) override;
  OLE_COLOR BackColor() override { return back_color_; }
  void PutBackColor(OLE_COLOR colour) override { back_color_ = colour; }
  HostObjectRef MouseIcon() override { return mouse_icon_; }
  void PutMouseIcon(HostObjectRef icon) override { mouse_icon_ = std::move(icon); }
  Long MousePointer() override { return mouse_pointer_; }
  void PutMousePointer(Long pointer) override { mouse_pointer_ = pointer; }
  std::u16string AccessKeys() override { return access_keys_; }
  void PutAccessKeys(std::u16string keys) override;

  void TrackMouseEvent() override;
  HostTooltipRef CreateTooltip() override;
  void StartSubclass(bool extended_buttons) override;

  HWND ContainerHwnd() override;
  NamedMembersRef Parent() override;
  NamedMembersRef Extender() override;
  bool PaintBehind(HDC dc) override;
  void PropertyChanged(std::string_view name) override;

  // The client size in pixels: the window's, or what the container has given to a control without one.
  ::SIZE Size() const;
  void Entered() override;
  void Leaving() override;
  // Raises Resize when the size, or the resolution, is another than at the last one.
  void SizeMayHaveChanged() override;
  // The container of an active control has the last word on that too.
  void SizeLoaded(SIZEL himetric) override;
  bool TakesMouse() override;
  void FocusChanged(bool got) override;
  // Draws the control anew when the mode is another one: a designer outlines what would show nothing.
  void UserModeMayHaveChanged();
  void ListenersChanged();  // to the control's events
  // Ends a press that is no longer the control's.
  void MouseMayBeTaken();

 private:
  void RequestSize(::SIZE size);
  // Goes by the resolution of the window. False when that is what it was.
  bool FollowResolution();
  void FitFont();
  // Raises Resize.
  void Resized();
  // Lets the window take the mouse as Enabled says, and what is dropped on it in run mode. A designer has the
  // mouse for itself.
  void EnableWindow();

  ChangeListener& listener_;
  const Site& site_;
  Extent& extent_;
  HostFont& host_font_;
  ControlWindow& window_;
  InPlace& in_place_;
  WindowSubclass& subclass_;
  DropTarget& drop_target_;
  Marklet& marklet_;
  SiteAmbient ambient_;
  ::SIZE last_size_ = {};
  Long last_resolution_;
  bool enabled_ = true;
  bool user_mode_ = true;  // as the window knows it
  FontRef font_ = std::make_shared<StdFont>();
  OLE_COLOR back_color_ = kButtonFace;
  HostObjectRef mouse_icon_;
  Long mouse_pointer_ = 0;
  std::u16string access_keys_;
};

}  // namespace marklet::activex
