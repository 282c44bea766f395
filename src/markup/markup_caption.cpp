#include "markup/markup_caption.h"

#include "base/rounding.h"
#include "markup/caption_pen.h"
#include "markup/tokenizer.h"
#include "text/emit_text_run.h"

namespace marklet {
namespace {

void ObeyOrPlace(CaptionPen& pen, std::u16string_view token) {
  try {
    if (!ObeyTag(pen, token)) PlaceText(pen, token);
  } catch (...) {  // the next token goes on from what was reached
  }
}

// Tokens that stand in front of every caption. They select the run font for the first time, round its size to
// a whole number, and leave VerticalAlignment at 0. They also keep every tag of the caption's own off the
// first place, where <p> and <.> have no effect.
constexpr std::u16string_view kSentinel[] = {u"<sub>", u"</sub>"};

void DrawTokens(HDC dc, std::u16string_view caption, const RECT& rect, const CaptionStyle& style) {
  // The caption is cut apart from the sentinel, which comes out as its two tags whatever follows it.
  CaptionPen pen(dc, caption, rect, style);
  for (const std::u16string_view token : kSentinel) ObeyOrPlace(pen, token);
  for (const std::u16string_view token : pen.tokens) {
    ObeyOrPlace(pen, token);
    ++pen.index;
  }
}

double Share(unsigned channel, int weight) { return weight * static_cast<double>(channel) / 255; }

unsigned BlendChannel(unsigned a, unsigned b, int weight) {
  return static_cast<unsigned>(RoundHalfEven(Share(b, 255 - weight) + Share(a, weight)));
}

}  // namespace

void DrawMarkupCaption(HDC dc, std::u16string_view caption, RECT& rect, CaptionStyle& style) {
  if (caption.empty()) return;
  try {
    if (HasMarkup(caption)) {
      DrawTokens(dc, caption, rect, style);
    } else {
      EmitTextRun(dc, caption, rect, style, false);
    }
  } catch (...) {  // a paint never raises into its host
  }
}

COLORREF BlendColors(OLE_COLOR a, OLE_COLOR b, int weight) {
  const COLORREF first = TranslateColor(a);
  const COLORREF second = TranslateColor(b);
  return MakeRgb(BlendChannel(RedOf(first), RedOf(second), weight),
                 BlendChannel(GreenOf(first), GreenOf(second), weight),
                 BlendChannel(BlueOf(first), BlueOf(second), weight));
}

}  // namespace marklet
