// The two lowest layers of the picture, and the test that notices a change of the system colours.
#include "bitmaps/colour.h"
#include "control/ignore_errors.h"
#include "control/marklet.h"
#include "platform/rounding.h"
#include "platform/system.h"

namespace marklet {

bool Marklet::CheckSystemColors() {
  if (!SystemColoursChanged(state_.SystemColorCache)) return false;
  for (std::size_t i = 0; i < kWatchedSystemColours.size(); ++i)
    state_.SystemColorCache[i] = GetSysColor(kWatchedSystemColours[i]);
  return true;
}

void Marklet::DrawBackground(HDC dc, const RECT& rect) {
  if (state_.BackStyle == 0) return;  // a transparent control has no background of its own
  GradientRect(dc, state_.BackColor, state_.BackColor, rect.left, rect.top, WrapSub(rect.right, rect.left),
               WrapSub(rect.bottom, rect.top), false);
}

void Marklet::DrawBorder(HDC dc, const RECT& rect) {
  if (state_.BorderStyle == 1) {
    constexpr COLORREF kBlack = 0;
    if (state_.Appearance != 1) FrameRectangle(dc, kBlack, rect.left, rect.top, rect.right, rect.bottom);
    return;
  }
  // A control that would show nothing at all is outlined in the designer, so that it can be found.
  if (state_.Caption.empty() && state_.BackStyle == 0 && !host_.AmbientProperties().UserMode())
    DrawFocusRect(dc, rect);
}

}  // namespace marklet
