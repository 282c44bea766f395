// What the control asks of its host, answered over OLE.
#pragma once

#include "activex/control/drop_target.h"
#include "activex/control/extent.h"
#include "activex/control/site.h"
#include "activex/control/subclass.h"
#include "activex/control/window.h"
#include "control/marklet.h"
#include "host/storing_user_control.h"

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

class OleUserControl final : public StoringUserControl, public PlaceListener, public InputListener {
 public:
  OleUserControl(ChangeListener& listener, const Site& site, Extent& extent, HostFont& host_font,
                 ControlWindow& window, InPlace& in_place, WindowSubclass& subclass, DropTarget& drop_target,
                 Marklet& marklet);

  Ambient& AmbientProperties() override { return ambient_; }

  HWND hWnd() override;
  HDC hDC() override;
  HDC PictureDC() override;
  bool IsSeen() override { return window_.IsVisible(); }
  double ScaleWidth() override;
  double ScaleHeight() override;
  double Width() override;
  double Height() override;
  void PutWidth(double twips) override;
  void PutHeight(double twips) override;
  double TwipsPerPixelX() override { return extent_.TwipsPerPixel(); }
  double TwipsPerPixelY() override { return extent_.TwipsPerPixel(); }

  void PutEnabled(bool enabled) override;
  void PutFont(FontRef font) override;
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
  bool user_mode_ = true;  // as the window knows it
};

}  // namespace marklet::activex
