#include "activex/control/picture.h"

#include "activex/control/user_control.h"
#include "control/enumeration_values.h"

namespace marklet::activex {

::SIZE ControlPicture::Size() const { return host_.Size(); }

bool ControlPicture::IsOpaque() const { return marklet_.State().BackStyle != backTransparent; }

bool ControlPicture::PaintOn(CDib24& surface) {
  const ::SIZE size = Size();
  if (!surface.Create(size.cx, size.cy)) return false;
  marklet_.PaintControl(surface.hDC());
  ::GdiFlush();
  return true;
}

HRESULT ControlPicture::Draw(::HDC dc, const RECTL& bounds, const GoOn& go_on) {
  const PictureTarget target(dc, bounds);
  CDib24 surface;
  if (!target.IsSeen() || !PaintOn(surface)) return S_OK;
  return target.Put(surface, go_on);
}

void ControlPicture::Record(::HDC dc, const RECTL& bounds) {
  CDib24 surface;
  if (PaintOn(surface)) PutAsItIs(dc, bounds, surface);
}

}  // namespace marklet::activex
