#include "activex/page/arrow_button.h"

#include <algorithm>
#include <bit>

#include "platform/system_colours.h"

namespace marklet::activex::page {
namespace {

int CALLBACK FoundFont(const LOGFONTW*, const TEXTMETRICW*, DWORD, LPARAM found) {
  *std::bit_cast<bool*>(found) = true;
  return 0;  // one is enough
}

// An isosceles triangle in the middle of `rect`, half as high as that.
void FillTriangle(::HDC dc, const ::RECT& rect, bool points_left, int colour) {
  const LONG half = std::max<LONG>((rect.bottom - rect.top) / 4, 2);
  const LONG x = (rect.left + rect.right) / 2, y = (rect.top + rect.bottom) / 2;
  const LONG tip = points_left ? x - half / 2 : x + half / 2;
  const LONG base = points_left ? tip + half : tip - half;
  const POINT corners[] = {{tip, y}, {base, y - half}, {base, y + half}};
  const ::HGDIOBJ old_brush = ::SelectObject(dc, ::GetSysColorBrush(colour));
  const ::HGDIOBJ old_pen = ::SelectObject(dc, ::GetStockObject(NULL_PEN));
  ::Polygon(dc, corners, 3);
  ::SelectObject(dc, old_pen);
  ::SelectObject(dc, old_brush);
}

}  // namespace

bool HasFont(const wchar_t* face) {
  LOGFONTW wanted = {};
  wanted.lfCharSet = DEFAULT_CHARSET;
  ::lstrcpynW(wanted.lfFaceName, face, LF_FACESIZE);
  bool found = false;
  const ::HDC screen = ::GetDC(nullptr);
  ::EnumFontFamiliesExW(screen, &wanted, FoundFont, reinterpret_cast<LPARAM>(&found), 0);
  ::ReleaseDC(nullptr, screen);
  return found;
}

void DrawArrowButton(const DRAWITEMSTRUCT& button, bool points_left) {
  const bool disabled = (button.itemState & ODS_DISABLED) != 0, down = (button.itemState & ODS_SELECTED) != 0;
  ::RECT rect = button.rcItem;
  const UINT state = DFCS_BUTTONPUSH | (down ? DFCS_PUSHED : 0) | (disabled ? DFCS_INACTIVE : 0);
  ::DrawFrameControl(button.hDC, &rect, DFC_BUTTON, state);
  if (down) ::OffsetRect(&rect, 1, 1);
  FillTriangle(button.hDC, rect, points_left, disabled ? COLOR_GRAYTEXT : COLOR_BTNTEXT);
  if ((button.itemState & ODS_FOCUS) == 0) return;
  ::InflateRect(&rect, -3, -3);
  ::DrawFocusRect(button.hDC, &rect);
}

}  // namespace marklet::activex::page
