#include "markup/caption_pen.h"

#include "markup/saturate.h"
#include "platform/gdi.h"
#include "text/emit_text_run.h"
#include "text/shaping.h"

namespace marklet {

CaptionPen::CaptionPen(HDC context, std::u16string_view caption, const RECT& caption_rect,
                       const CaptionStyle& style)
    : dc(context),
      rect(caption_rect),
      Alignment(style.Alignment),
      shaping(UniscribeAvailable()),
      tokens(TokenizeMarkup(caption, &token_memory)),
      PenX(caption_rect.left),
      PenY(caption_rect.top),
      AvailableWidth(SaturatingAdd(caption_rect.right, -std::int64_t{caption_rect.left})),
      RunStyle(style) {
  if (style.Font) RunFont = *style.Font;
  RunStyle.Alignment = 0;
  RunStyle.SingleLine = true;
  RunStyle.VerticalAlignment = 3;
  if (Alignment == 1) {
    StartLineAtRight();
    PenX = LineStart;
  }
}

void CaptionPen::SelectRunFont() const {
  if (RunFont) SelectObject(dc, RunFont->hFont());
}

SIZE CaptionPen::StartLineAtRight() {
  // No line is ever stored, so its width isn't known here: right-aligned markup starts at the right edge.
  const SIZE empty = MeasureString(dc, {});
  LineStart = SaturatingAdd(rect.right, -std::int64_t{empty.cx});
  return empty;
}

}  // namespace marklet
