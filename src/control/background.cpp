// The two lowest layers of the picture, and the test that notices a change of the system colours.
#include <optional>

#include "base/ignore_errors.h"
#include "base/rounding.h"
#include "bitmaps/colour.h"
#include "bitmaps/edge.h"
#include "control/enumeration_values.h"
#include "control/form_picture.h"
#include "control/marklet.h"
#include "platform/system.h"
#include "platform/system_colours.h"

namespace marklet {

bool Marklet::CheckSystemColors() {
  if (!SystemColoursChanged(state_.SystemColorCache)) return false;
  for (std::size_t i = 0; i < kWatchedSystemColours.size(); ++i)
    state_.SystemColorCache[i] = GetSysColor(kWatchedSystemColours[i]);
  return true;
}

void Marklet::DrawBackground(HDC dc, const RECT& rect) {
  if (state_.BackStyle != backTransparent) {
    GradientRect(dc, state_.BackColor, state_.BackColor, rect.left, rect.top, WrapSub(rect.right, rect.left),
                 WrapSub(rect.bottom, rect.top), false);
    return;
  }
  const auto behind = state_.Background ? state_.Background : CaptureBackground();
  behind->PaintTo(dc, 0, 0, -1, -1, 0, 0, SRCCOPY);
}

// Held here too: the field may be replaced or dropped while the container draws.
std::shared_ptr<CDib32> Marklet::CaptureBackground() {
  auto snapshot = std::make_shared<CDib32>();
  state_.Background = snapshot;
  snapshot->Create(RoundHalfEven(host_.ScaleWidth()), RoundHalfEven(host_.ScaleHeight()));
  capturing_ = true;
  bool is_for_good = false;
  IgnoreErrors([&] {
    is_for_good = KeepsPicture(host_);
    if (is_for_good)
      CopyFromForm(host_, snapshot->hDC());
    else
      is_for_good = host_.PaintBehind(snapshot->hDC());
  });
  capturing_ = false;
  snapshot->SetConstantAlpha(255);
  if (is_for_good) return snapshot;
  is_provisional_ = true;
  state_.Background.reset();
  return snapshot;
}

// The colour that the edge of an opaque control is shaded from: its parent's, where that can be had.
OLE_COLOR Marklet::EdgeBaseColour() {
  if (state_.BackStyle == backTransparent) return kButtonFace;
  std::optional<Long> colour;
  IgnoreErrors([&] {
    if (const auto parent = host_.Parent()) colour = parent->GetLong("BackColor");
  });
  return colour ? static_cast<OLE_COLOR>(*colour) : kButtonFace;
}

void Marklet::DrawBorder(HDC dc, const RECT& rect) {
  if (state_.BorderStyle != borderFixedSingle)
    DrawDesignersOutline(dc, rect);
  else if (state_.Appearance != appearance3d)
    FrameRectangle(dc, MakeRgb(0, 0, 0), rect.left, rect.top, rect.right, rect.bottom);
  else
    DrawSunkenEdge(dc, rect);
}

// A control that would show nothing at all is outlined in the designer, so that it can be found.
void Marklet::DrawDesignersOutline(HDC dc, const RECT& rect) {
  if (state_.Caption.empty() && state_.BackStyle == backTransparent && !host_.AmbientProperties().UserMode())
    DrawFocusRect(dc, rect);
}

void Marklet::DrawSunkenEdge(HDC dc, RECT rect) {
  std::uint32_t all_sides = BF_RECT;
  CEdge edge;
  edge.PutBaseColor(EdgeBaseColour());
  edge.DrawEdge(dc, rect, EDGE_SUNKEN, all_sides);
}

}  // namespace marklet
