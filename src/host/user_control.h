// What a host gives the control: its window, its ambient properties, its extender and its container.
//
// These are the only interfaces of the seam with several implementations in one program: the hosting layer
// over OLE, the memory host of marklet-render, and those of the tests. A host that lacks something answers
// with the default named here. Calls may re-enter the control wherever that is said.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "host/named_members.h"
#include "host/tooltip.h"
#include "platform/shared/std_font.h"
#include "platform/system_colours.h"
#include "platform/types.h"

namespace marklet {

// A picture object that the host hands in and takes back unread, such as a mouse pointer's icon.
class HostObject {
 public:
  virtual ~HostObject() = default;
};
using HostObjectRef = std::shared_ptr<HostObject>;

class Ambient {
 public:
  virtual ~Ambient() = default;
  virtual bool UserMode() = 0;               // false in a designer; true without an answer
  virtual OLE_COLOR BackColor() = 0;         // kButtonFace without an answer
  virtual OLE_COLOR ForeColor() = 0;         // kButtonText without an answer
  virtual FontRef Font() = 0;                // never null; Tahoma 8.25 without an answer
  virtual std::u16string DisplayName() = 0;  // empty without an answer
  virtual bool RightToLeft() = 0;            // false without an answer
};

class UserControl {
 public:
  virtual ~UserControl() = default;

  virtual Ambient& AmbientProperties() = 0;

  virtual HWND hWnd() = 0;  // null without a window
  // The context that Paint draws on, with Font selected; null when there is nowhere to draw.
  virtual HDC hDC() = 0;
  // The same for a finished picture, whatever font is selected.
  virtual HDC PictureDC() { return hDC(); }
  // False while nobody can see what Paint draws, as without a window.
  virtual bool IsSeen() { return true; }
  virtual double ScaleWidth() = 0;  // client size in pixels
  virtual double ScaleHeight() = 0;
  // Outer size in twips. Setting one raises Resize before it returns.
  virtual double Width() = 0;
  virtual double Height() = 0;
  virtual void PutWidth(double twips) = 0;
  virtual void PutHeight(double twips) = 0;
  virtual double TwipsPerPixelX() = 0;  // 15 at 96 pixels per inch
  virtual double TwipsPerPixelY() = 0;

  virtual bool Enabled() = 0;
  virtual void PutEnabled(bool enabled) = 0;
  virtual FontRef Font() = 0;              // never null
  virtual void PutFont(FontRef font) = 0;  // null is refused: the font stays
  virtual OLE_COLOR BackColor() = 0;
  virtual void PutBackColor(OLE_COLOR colour) = 0;
  virtual HostObjectRef MouseIcon() = 0;
  virtual void PutMouseIcon(HostObjectRef icon) = 0;
  virtual Long MousePointer() = 0;
  virtual void PutMousePointer(Long pointer) = 0;
  virtual std::u16string AccessKeys() = 0;
  virtual void PutAccessKeys(std::u16string keys) = 0;

  // Says once that the pointer has left the window: calls back into the control when it does. A host without
  // a pointer does nothing, here and in the next two.
  virtual void TrackMouseEvent() {}
  // A new tip over the control's window, without a text; null when none can be had.
  virtual HostTooltipRef CreateTooltip() { return nullptr; }
  // From now on, and as long as there is a window, the control is told of messages that its window doesn't
  // answer itself, those of the extended mouse buttons only where that is asked for.
  virtual void StartSubclass(bool /*extended_buttons*/) {}

  virtual HWND ContainerHwnd() = 0;
  virtual NamedMembersRef Parent() = 0;  // null when the host shows none
  virtual NamedMembersRef Extender() = 0;
  // Draws what lies behind the control, whose corner is at (0, 0), for hosts whose parent has no picture of
  // itself to copy. False when it isn't known for good, as before the control has a window: the next picture
  // asks again. May re-enter.
  virtual bool PaintBehind(HDC dc) = 0;

  // Tells the host that a property changed, by its name; empty for no property in particular. May re-enter.
  virtual void PropertyChanged(std::string_view name) = 0;
};

}  // namespace marklet
