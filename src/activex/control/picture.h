// The control's picture for those who want it elsewhere than in its window: views, metafiles, bitmaps.
#pragma once

#include "activex/com/com.h"
#include "activex/control/picture_target.h"
#include "bitmaps/cdib24.h"
#include "control/marklet.h"

namespace marklet::activex {

class OleUserControl;

class ControlPicture {
 public:
  ControlPicture(OleUserControl& host, Marklet& marklet) : host_(host), marklet_(marklet) {}

  ::SIZE Size() const;  // pixels
  bool IsOpaque() const;

  // The picture at the control's own size on a new surface. False, and empty, when there can't be one.
  bool PaintOn(CDib24& surface);
  // The same, brought to the bounds, in the units of the context. Nothing when there can't be one. E_ABORT
  // when `go_on` stopped it. A transparent control without a window stands on what is there already.
  HRESULT Draw(::HDC dc, const RECTL& bounds, const GoOn& go_on);
  // The same in its own pixels, for a record that is played at sizes that nobody knows yet.
  void Record(::HDC dc, const RECTL& bounds);

 private:
  bool StandsOnTarget() const;
  bool PaintOn(CDib24& surface, COLORREF behind);

  OleUserControl& host_;
  Marklet& marklet_;
};

}  // namespace marklet::activex
