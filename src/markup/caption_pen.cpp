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
  RunStyle.Alignment = alignLeft;
  RunStyle.SingleLine = true;
  RunStyle.VerticalAlignment = verticalBottom;
  if (Alignment == alignRight) {
    StartLineAtRight();
    PenX = LineStart;
  }
}

void CaptionPen::SelectRunFont() const {
  if (RunFont) SelectObject(dc, RunFont->hFont());
}

void CaptionPen::SetFontName(std::u16string_view name) {
  RunFont->PutName(name);
  SelectRunFont();
}

// Saves what the context holds, which before the first run is the paint code's colour and not ForeColor.
void CaptionPen::OpenColour(COLORREF colour) {
  SavedColor = GetTextColor(dc);
  SetColour(colour);
}

void CaptionPen::CloseColour() { SetColour(SavedColor); }

// The run's colour is what the context made of the one it was given.
void CaptionPen::SetColour(COLORREF colour) {
  SetTextColor(dc, colour);
  RunStyle.ForeColor = GetTextColor(dc);
}

SIZE CaptionPen::StartLineAtRight() {
  // No line is ever stored, so its width isn't known here: right-aligned markup starts at the right edge.
  const SIZE empty = MeasureString(dc, {});
  LineStart = SaturatingAdd(rect.right, -std::int64_t{empty.cx});
  return empty;
}

}  // namespace marklet
