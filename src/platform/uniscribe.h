// The platform's script processor: text that can't be drawn character by character, a line at a time. Nothing
// here calls back into the program.
#pragma once

#include <string_view>

#include "platform/types.h"

namespace marklet {

constexpr Long S_OK = 0;
constexpr Long S_FALSE = 1;
constexpr std::uint32_t SIC_COMPLEX = 1;

// Whether any character of the text needs more than to be drawn after the one before: S_OK when one does,
// S_FALSE when none does, another value when the platform fails. Complex are scripts that join, reorder,
// combine or run from right to left, and also control characters but NUL and form feed, the soft hyphen,
// joiners, surrogates and Hangul: platform/shared/complex_characters.h has the list.
Long ScriptIsComplex(std::u16string_view text, std::uint32_t flags);

// What an analysis does.
constexpr std::uint32_t SSA_TAB = 0x2;        // tabs reach to the next tab stop
constexpr std::uint32_t SSA_CLIP = 0x4;       // only what fits in the width
constexpr std::uint32_t SSA_FIT = 0x8;        // stretches the line to the width
constexpr std::uint32_t SSA_FALLBACK = 0x20;  // characters that the font lacks come from others
constexpr std::uint32_t SSA_BREAK = 0x40;     // with the attributes of its characters
constexpr std::uint32_t SSA_GLYPHS = 0x80;    // with what it takes to draw it
constexpr std::uint32_t SSA_RTL = 0x100;      // the line runs from right to left
constexpr std::uint32_t SSA_HOTKEY = 0x400;   // "&" underlines the character after it and isn't drawn

// Records that an analysis may be given, in the platform's own layout. All zero is the platform's choice: no
// language, the direction of the flags, a tab stop at every eighth average character width. The headless
// platform reads none of them.
struct SCRIPT_CONTROL {
  std::uint32_t bits = 0;
};
struct SCRIPT_STATE {
  std::uint16_t bits = 0;
};
struct SCRIPT_TABDEF {
  Long cTabStops = 0;
  Long iScale = 0;
  const Long* pTabStops = nullptr;  // `cTabStops` of them
  Long iTabOrigin = 0;
};

// A line as analysed in the font that its context had then.
struct ScriptStringHandle;
using SCRIPT_STRING_ANALYSIS = ScriptStringHandle*;

// Analyses a text as one line, `width` pixels wide for SSA_CLIP and SSA_FIT. Null when the platform fails,
// and for an empty text. The caller frees the analysis, before its context and its font go.
//
// With SSA_CLIP the line is the text up to the cluster that no longer fits whole, or to the end of the first
// CR LF when that comes first, and no more than about that much is looked at, however long the text. Without
// SSA_CLIP it is the whole text.
//
// CR, LF, NUL and the soft hyphen take no place and show nothing. Under SSA_HOTKEY neither does the "&" that
// marks a character: a bar one pixel thick is drawn below the last one marked in the line, "&&" is drawn as
// one "&", and at the end of the text it stands for itself. SSA_FIT widens a line that is too narrow: the
// blanks inside it share what is missing, in their absence the clusters do whose letters don't join, and the
// blanks at its end take no place. Wine knows neither SSA_FIT nor SSA_HOTKEY: text is drawn without.
SCRIPT_STRING_ANALYSIS ScriptStringAnalyse(HDC dc, std::u16string_view text, std::uint32_t flags, Long width,
                                           const SCRIPT_CONTROL& control, const SCRIPT_STATE& state,
                                           const SCRIPT_TABDEF& tabs);
// False for null.
bool ScriptStringFree(SCRIPT_STRING_ANALYSIS analysis);

// The answers belong to the analysis. Null on failure and for null.

// How many code units fit: under SSA_CLIP whole clusters only, and only as many as still fit when the text is
// cut there and its last letters change their form; otherwise all.
const Long* ScriptString_pcOutChars(SCRIPT_STRING_ANALYSIS analysis);
// The extent of the line as it is drawn, with the cluster that no longer fits whole.
const SIZE* ScriptString_pSize(SCRIPT_STRING_ANALYSIS analysis);
// One byte for each code unit that fits: bit 0 a line may end before it, bit 1 it is a blank that a line may
// end after (no-break spaces aren't), bit 2 a caret may stand before it, bit 3 a word starts with it. Only
// under SSA_BREAK.
const std::uint8_t* ScriptString_pLogAttr(SCRIPT_STRING_ANALYSIS analysis);

// The alignment that SetTextAlign has set holds for DrawTextW too, on every platform: what would be the upper
// left corner of a line is the point that the line stands to. After TA_RIGHT each line therefore ends where
// it would have begun, after TA_CENTER half of it does; the bar below a marked character stays where it was.
//
// Draws the line at a point, in the colours and modes of its context, placed as a whole as SetTextAlign says.
// `options` are those of ExtTextOutW, for the rectangle `clip`. Characters from `first_selected`
// to before `past_selected` are drawn as a selection by Windows; none when they are equal. `disabled` greys
// a selection.
bool ScriptStringOut(SCRIPT_STRING_ANALYSIS analysis, Long x, Long y, std::uint32_t options, const RECT* clip,
                     Long first_selected, Long past_selected, bool disabled);

}  // namespace marklet
