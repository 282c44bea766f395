// The one way by which text reaches the platform: a whole caption without markup, or one token of a caption
// with it.
#pragma once

#include <string_view>

#include "platform/types.h"
#include "text/caption_style.h"

namespace marklet {

// Draws a run. Hands it to DrawTextEffect when the style has an effect and `in_effect` is false; otherwise
// chooses the route by system, alignment and script. Sets the context's text colour; stores the measured
// height in `style.TextHeight` when that is 0. The shaping route moves `rect.top`. Throws ScriptError when
// the script test fails.
void EmitTextRun(HDC dc, std::u16string_view text, RECT& rect, CaptionStyle& style, bool in_effect);

// The run in its effect's layers, each drawn by EmitTextRun with `in_effect` true. Defined with the effects
// in markup/.
void DrawTextEffect(HDC dc, std::u16string_view text, const RECT& rect, const CaptionStyle& style);

// The DrawTextW route. An empty text never reaches the platform.
void DrawTextUnicode(HDC dc, std::u16string_view text, const RECT& rect, const CaptionStyle& style);

// Extent of a text in the selected font, by the platform's wide or byte call as the system allows. Zero on
// failure.
SIZE MeasureString(HDC dc, std::u16string_view text);

// An OLE colour as RGB; CLR_INVALID when it is neither an RGB value nor a system colour.
COLORREF TranslateColor(OLE_COLOR colour);

}  // namespace marklet
