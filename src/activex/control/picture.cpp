#include "activex/control/picture.h"

#include "activex/control/user_control.h"

namespace marklet::activex {

BITMAPINFOHEADER Describe(const CDib24& surface) {
  BITMAPINFOHEADER header = {};
  header.biSize = sizeof header;
  header.biWidth = surface.Width();
  header.biHeight = surface.Height();
  header.biPlanes = 1;
  header.biBitCount = 24;
  // Some recorders of metafiles keep no more bits than are promised here.
  const DWORD row = (static_cast<DWORD>(surface.Width()) * 3 + 3) / 4 * 4;
  header.biSizeImage = row * static_cast<DWORD>(surface.Height());
  return header;
}

::SIZE ControlPicture::Size() const { return host_.Size(); }

bool ControlPicture::IsOpaque() const {
  constexpr Long kTransparentStyle = 0;
  return marklet_.State().BackStyle != kTransparentStyle;
}

bool ControlPicture::PaintOn(CDib24& surface) {
  const ::SIZE size = Size();
  if (!surface.Create(size.cx, size.cy)) return false;
  marklet_.PaintControl(surface.hDC());
  ::GdiFlush();
  return true;
}

// The picture is made at the control's own size and brought to the bounds in one blit of its bits, which
// printers and metafiles take too, whatever their units.
void ControlPicture::Draw(::HDC dc, const RECTL& bounds) {
  CDib24 surface;
  if (!PaintOn(surface)) return;
  BITMAPINFO info = {};
  info.bmiHeader = Describe(surface);
  const int old_mode = ::SetStretchBltMode(dc, COLORONCOLOR);
  ::StretchDIBits(dc, bounds.left, bounds.top, bounds.right - bounds.left, bounds.bottom - bounds.top, 0, 0,
                  surface.Width(), surface.Height(), surface.Bits(), &info, DIB_RGB_COLORS, 0x00CC0020);
  if (old_mode) ::SetStretchBltMode(dc, old_mode);
}

}  // namespace marklet::activex
