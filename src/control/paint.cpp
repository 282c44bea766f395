// From state to pixels: the layers of the picture, bottom to top, and the copy to where it is wanted.
#include <utility>

#include "base/ignore_errors.h"
#include "base/rounding.h"
#include "control/enumeration_values.h"
#include "control/form_picture.h"
#include "control/layout.h"
#include "control/marklet.h"
#include "images/image_sizes.h"
#include "markup/markup_caption.h"
#include "platform/system_colours.h"
#include "platform/text.h"
#include "text/caption_style.h"
#include "text/emit_text_run.h"

namespace marklet {

void Marklet::RedrawNow() {
  state_.BackBuffer.reset();
  ++pictures_dropped_;
  PaintControl(nullptr);
}

bool Marklet::StandsOnSnapshot() {
  return state_.BackStyle == backTransparent && (host_.hWnd() != nullptr || KeepsPicture(host_));
}

// Nobody sees when a picture was built, but a snapshot shows when it was taken.
bool Marklet::CanWait() {
  bool result = false;
  IgnoreErrors([&] { result = !host_.IsSeen() && !StandsOnSnapshot(); });
  return result;
}

void Marklet::PaintControl(HDC dc) {
  if (capturing_) {
    missed_a_paint_ = true;  // the control is no part of what lies behind it
    return;
  }
  if (dc == nullptr && CanWait()) return;
  IgnoreErrors([&] {
    BringUpToDate();
    // Whatever the field and the host hold by now: a setter called from inside the building leaves a newer
    // picture, and the host may have taken the window away.
    const auto picture = state_.BackBuffer;
    const HDC target = dc != nullptr ? dc : host_.PictureDC();
    if (picture) picture->PaintTo(target, 0, 0, -1, -1, 0, 0, SRCCOPY);
  });
  if (std::exchange(is_provisional_, false)) state_.BackBuffer.reset();
  if (std::exchange(missed_a_paint_, false) && dc != nullptr) PaintControl(nullptr);
}

void Marklet::BringUpToDate() {
  if (state_.UsesSystemColors && CheckSystemColors()) state_.BackBuffer.reset();
  // Once more when the container has dropped the picture while it drew what lies behind the control.
  for (int round = 0; !state_.BackBuffer && round < 2; ++round)
    IgnoreErrors(
        [&] { BuildPicture(RoundHalfEven(host_.ScaleWidth()), RoundHalfEven(host_.ScaleHeight())); });
}

void Marklet::PaintOver(HDC dc, std::shared_ptr<CDib32> behind) {
  if (capturing_) return;
  IgnoreErrors([&] {
    if (state_.UsesSystemColors && CheckSystemColors()) state_.BackBuffer.reset();
  });
  const auto snapshot = std::exchange(state_.Background, std::move(behind));
  const auto picture = std::exchange(state_.BackBuffer, nullptr);
  const unsigned dropped = pictures_dropped_;
  PaintControl(dc);
  state_.Background = snapshot;
  state_.BackBuffer = picture;
  if (dropped != pictures_dropped_) RedrawNow();  // a setter was called meanwhile
}

void Marklet::BuildPicture(Long width, Long height) {
  // Held here too: the field may be replaced while the layers are drawn.
  const auto picture = std::make_shared<CDib24>();
  state_.BackBuffer = picture;
  if (!picture->Create(width, height)) return;
  const HDC dc = picture->hDC();
  RECT rect = {0, 0, width, height};
  IgnoreErrors([&] { DrawBackground(dc, rect); });
  IgnoreErrors([&] { DrawBorder(dc, rect); });
  IgnoreErrors([&] { DrawImage(dc, rect); });
  IgnoreErrors([&] { DrawCaption(dc, rect); });
}

// The hover key counts only on a control that has a normal one.
ImageRef Marklet::ShownImage() const {
  if (state_.ImageKey.empty() || !state_.Images) return nullptr;
  const bool hover = state_.Hover && !state_.ImageKeyhover.empty();
  return state_.Images->Item(hover ? state_.ImageKeyhover : state_.ImageKey);
}

// Draws the image, if there is one, and takes its room out of the rectangle.
void Marklet::DrawImage(HDC dc, RECT& rect) {
  const ImageRef image = ShownImage();
  if (!image) return;
  const ImageSide side = SideOfImage(state_.ImageAlignment, state_.RightToLeft);
  const ImagePlace place = PlaceImage(rect, side, state_.ImagePixels, BorderInset(state_.BorderStyle));
  IgnoreErrors([&] {
    // By the pixels: a size that isn't in the enumeration is drawn, like it is placed, at 16.
    image->Render(dc, SizeIndex(state_.ImagePixels), kAlphaDepthIndex, place.x, place.y, host_.Enabled(),
                  kButtonFace, 0);
  });
  rect = AdjustTextRect(rect, side, state_.ImagePixels);
}

// The whole disabled look of the text is its colour.
COLORREF Marklet::CaptionColour() {
  if (host_.Enabled()) return TranslateColor(state_.ForeColor);
  if (state_.BackColor == kButtonFace || state_.BackColor == kWindow) return TranslateColor(kButtonShadow);
  return BlendColors(state_.ForeColor, state_.BackColor, 92);
}

// What can't be had is done without: the text is drawn in the context's own font, or in the style's own
// colour.
void Marklet::DrawCaption(HDC dc, RECT rect) {
  std::u16string text;
  IgnoreErrors([&] { text = state_.Caption; });
  FontRef font;
  IgnoreErrors([&] { font = host_.Font(); });
  HFONT font_handle = nullptr;
  IgnoreErrors([&] { font_handle = font ? font->hFont() : nullptr; });
  // The platform counts the same modes from 1.
  static_assert(TRANSPARENT == backTransparent + 1 && OPAQUE == backOpaque + 1);
  const int mode = WrapAdd(state_.BackStyle, 1);
  const HGDIOBJ old_font = SelectObject(dc, font_handle);
  SetTextAlign(dc, 0);
  const int old_mode = SetBkMode(dc, mode);
  MoveToEx(dc, rect.left, rect.top);

  CaptionStyle style;
  style.Font = font;
  IgnoreErrors([&] { style.ForeColor = CaptionColour(); });
  style.BackColor = TranslateColor(state_.BackColor);
  style.EffectColor = TranslateColor(state_.EffectColor);
  style.Alignment = state_.Alignment;
  style.VerticalAlignment = state_.VerticalAlignment;
  style.SingleLine = !state_.WordWrap;
  style.RightToLeft = state_.RightToLeft;
  style.TextEffect = state_.TextEffect;
  style.SurfaceDC = dc;

  rect = InsetByBorder(InsetByPadding(rect, state_.Padding), state_.BorderStyle);
  IgnoreErrors([&] { DrawMarkupCaption(dc, text, rect, style); });

  SelectObject(dc, old_font);
  SetBkMode(dc, old_mode);
  // Neither colour was kept: both end as black.
  SetBkColor(dc, 0);
  SetTextColor(dc, 0);
}

}  // namespace marklet
