#include "label.h"

#include <cstdio>
#include <cstdlib>

#include "captions.h"
#include "markup/markup_caption.h"
#include "platform/text.h"

namespace marklet::bench {

Label::Label(Long width, Long height) {
  if (!surface_.Create(width, height)) {
    std::fputs("no surface\n", stderr);
    std::abort();
  }
  surface_.Clear(MakeRgb(255, 255, 255));
  style_.Font = std::make_shared<StdFont>();
  style_.Font->PutName(Utf16(kFamily));
  style_.Font->PutSize(kFontPoints);
  style_.ForeColor = 0;
  style_.SurfaceDC = surface_.hDC();
}

void Label::Draw(std::u16string_view caption) {
  const HDC dc = surface_.hDC();
  const HGDIOBJ old_font = SelectObject(dc, style_.Font->hFont());
  SetTextAlign(dc, 0);
  SetBkMode(dc, TRANSPARENT);
  style_.TextHeight = 0;
  RECT rect = {0, 0, surface_.Width(), surface_.Height()};
  DrawMarkupCaption(dc, caption, rect, style_);
  SelectObject(dc, old_font);
}

}  // namespace marklet::bench
