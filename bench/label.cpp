#include "label.h"

#include <cstdio>
#include <cstdlib>

#include "captions.h"
#include "markup/markup_caption.h"
#include "platform/text.h"

namespace marklet::bench {

Label::Label(Long width, Long height) : font_(std::make_shared<StdFont>()) {
  if (!surface_.Create(width, height)) {
    std::fputs("no surface\n", stderr);
    std::abort();
  }
  surface_.Clear(MakeRgb(255, 255, 255));
  font_->PutName(Utf16(kFamily));
  font_->PutSize(kFontPoints);
}

void Label::Draw(std::u16string_view caption) {
  const HDC dc = surface_.hDC();
  const HGDIOBJ old_font = SelectObject(dc, font_->hFont());
  SetTextAlign(dc, 0);
  SetBkMode(dc, 1);
  CaptionStyle style;
  style.Font = font_;
  style.ForeColor = 0;
  style.SurfaceDC = dc;
  RECT rect = {0, 0, surface_.Width(), surface_.Height()};
  DrawMarkupCaption(dc, caption, rect, style);
  SelectObject(dc, old_font);
}

}  // namespace marklet::bench
