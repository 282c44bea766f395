#include "activex/control/tooltip.h"

namespace marklet::activex {

WindowTooltip::WindowTooltip(::HWND window) : window_(window) {
  tip_.PutBalloon(false);
  tip_.Create(window);
  tip_.AddTool(window, window, u"", u"");
}

}  // namespace marklet::activex
