// Draws a caption in the tag language: one pass over the tokens, each measured, placed and drawn at once.
#pragma once

#include <string_view>

#include "platform/types.h"
#include "text/caption_style.h"

namespace marklet {

// Draws `caption` inside `rect`. Without markup the whole caption goes to EmitTextRun. The caller has
// selected the style's font; the font of the last tag stays selected. Never throws; a failing step is
// skipped.
void DrawMarkupCaption(HDC dc, std::u16string_view caption, RECT& rect, CaptionStyle& style);

// Mixes two OLE colours: (255 - weight) parts of b and weight parts of a, each channel rounded to nearest,
// ties to even.
COLORREF BlendColors(OLE_COLOR a, OLE_COLOR b, int weight);

}  // namespace marklet
