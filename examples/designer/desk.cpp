#include "desk.h"

#include <algorithm>

namespace designer {
namespace {

constexpr int kMargin = 8;

SCROLLINFO BarOf(HWND window, int bar) {
  SCROLLINFO info = {};
  info.cbSize = sizeof info;
  info.fMask = SIF_ALL;
  GetScrollInfo(window, bar, &info);
  return info;
}

}  // namespace

Desk::Desk(HWND parent, const Look& look) : look_(look) {
  window_.Create({L"MarkletDesignerDesk", L"",
                  WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN | WS_CLIPSIBLINGS | WS_HSCROLL | WS_VSCROLL,
                  WS_EX_CLIENTEDGE, GetSysColorBrush(COLOR_APPWORKSPACE)},
                 parent, {}, [this](UINT message, WPARAM w, LPARAM l) { return Handle(message, w, l); });
}

void Desk::Hold(HWND form) {
  form_ = form;
  Update();
}

// A bar that comes or goes changes the room for the other one.
void Desk::Update() {
  if (!form_ || updating_) return;
  updating_ = true;
  RECT form = {};
  GetWindowRect(form_, &form);
  const int margins = 2 * look_.Pixels(kMargin);
  for (int round = 0; round < 2; ++round) {
    RECT inside = {};
    GetClientRect(Window(), &inside);
    UpdateBar(SB_HORZ, static_cast<int>(form.right - form.left) + margins, static_cast<int>(inside.right));
    UpdateBar(SB_VERT, static_cast<int>(form.bottom - form.top) + margins, static_cast<int>(inside.bottom));
  }
  SetWindowPos(form_, nullptr, look_.Pixels(kMargin) - BarOf(Window(), SB_HORZ).nPos,
               look_.Pixels(kMargin) - BarOf(Window(), SB_VERT).nPos, 0, 0,
               SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  updating_ = false;
}

void Desk::UpdateBar(int bar, int length, int room) {
  SCROLLINFO info = {};
  info.cbSize = sizeof info;
  info.fMask = SIF_RANGE | SIF_PAGE;
  info.nMax = length - 1;
  info.nPage = static_cast<UINT>(std::max(room, 0));
  SetScrollInfo(Window(), bar, &info, TRUE);
}

void Desk::Scroll(int bar, int how) {
  SCROLLINFO info = BarOf(Window(), bar);
  const int line = look_.Pixels(16), page = static_cast<int>(info.nPage);
  switch (how) {
    case SB_LINEUP:
      info.nPos -= line;
      break;
    case SB_LINEDOWN:
      info.nPos += line;
      break;
    case SB_PAGEUP:
      info.nPos -= page;
      break;
    case SB_PAGEDOWN:
      info.nPos += page;
      break;
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION:
      info.nPos = info.nTrackPos;
      break;
    default:
      return;
  }
  info.fMask = SIF_POS;
  SetScrollInfo(Window(), bar, &info, TRUE);
  Update();
}

LRESULT Desk::Handle(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_SIZE:
      Update();
      return 0;
    case WM_HSCROLL:
    case WM_VSCROLL:
      Scroll(message == WM_HSCROLL ? SB_HORZ : SB_VERT, LOWORD(wparam));
      return 0;
    case WM_MOUSEWHEEL:
      Scroll(SB_VERT, GET_WHEEL_DELTA_WPARAM(wparam) > 0 ? SB_LINEUP : SB_LINEDOWN);
      return 0;
    default:
      return window_.Default(message, wparam, lparam);
  }
}

}  // namespace designer
