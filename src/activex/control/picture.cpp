#include "activex/control/picture.h"

#include <memory>

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

bool ControlPicture::PaintOn(CDib24& surface, COLORREF behind) {
  const ::SIZE size = Size();
  const auto backdrop = std::make_shared<CDib32>();
  if (!surface.Create(size.cx, size.cy) || !backdrop->Create(size.cx, size.cy)) return false;
  backdrop->Clear(behind);
  marklet_.PaintOver(surface.hDC(), backdrop);
  ::GdiFlush();
  return true;
}

// Without a snapshot of its own place, a transparent control shows through to what it is drawn on.
bool ControlPicture::StandsOnTarget() const { return !IsOpaque() && !marklet_.StandsOnSnapshot(); }

HRESULT ControlPicture::Draw(::HDC dc, const RECTL& bounds, const GoOn& go_on) {
  const PictureTarget target(dc, bounds);
  if (!target.IsSeen()) return S_OK;
  constexpr COLORREF kBlack = 0, kWhite = 0xFFFFFF;
  CDib24 surface, on_white;
  if (!StandsOnTarget()) return PaintOn(surface) ? target.Put(surface, go_on) : S_OK;
  if (!PaintOn(surface, kBlack) || !PaintOn(on_white, kWhite)) return S_OK;
  return target.PutOver(surface, on_white, go_on);
}

void ControlPicture::Record(::HDC dc, const RECTL& bounds) {
  CDib24 surface;
  if (PaintOn(surface)) PutAsItIs(dc, bounds, surface);
}

}  // namespace marklet::activex
