// Fonts and the drawing of text on a device context.
//
// Text is UTF-16 and may hold anything: NUL, lone surrogates, control characters. Extents are in pixels. The
// font is the one selected in the context. A call with a null context, or on a platform that refuses, returns
// false or zero and leaves its results as they were. Nothing here calls back into the program.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/types.h"

namespace marklet {

// What a font is made from.
struct LOGFONTW {
  Long lfHeight = 0;  // pixels; negative is the em height, positive the cell height, 0 the platform's default
  Long lfWeight = 400;  // 100 to 900, 400 is regular and 700 bold
  bool lfItalic = false;
  bool lfUnderline = false;
  bool lfStrikeOut = false;
  std::uint8_t lfCharSet = 1;
  std::u16string
      lfFaceName;  // the first 31 units up to a NUL count; an unknown or empty name is mapped to a near font
};

// A font handle for the record; the nearest match, so that it fails (null) only without memory.
HFONT CreateFontIndirectW(const LOGFONTW& record);

// Pixels per inch of a context, horizontally and vertically the same; of the screen when `dc` is null.
Long PixelsPerInch(HDC dc);

// These return the former or current colour, CLR_INVALID on failure.
COLORREF SetTextColor(HDC dc, COLORREF colour);
COLORREF GetTextColor(HDC dc);
COLORREF SetBkColor(HDC dc, COLORREF colour);
// Background modes: none, and a box behind the text in the background colour.
constexpr int TRANSPARENT = 1, OPAQUE = 2;
// Any other mode, 0 among them, is taken as given and draws no box. Returns the former mode, 0 on failure.
int SetBkMode(HDC dc, int mode);
// How text stands to its point, in DrawTextW to each corner: TA_ constants. Returns the former, 0 on failure.
std::uint32_t SetTextAlign(HDC dc, std::uint32_t align);

// Width and height of a string in one line. "&" is an ordinary character. All strings of a font are equally
// high but the empty one, which is 0 by 0.
bool GetTextExtentPoint32W(HDC dc, std::u16string_view text, SIZE& size);
// The same for the first `count` bytes of a text in the system code page; `count` past its end is cut to its
// end.
bool GetTextExtentPoint32A(HDC dc, std::string_view text, Long count, SIZE& size);
// The spacing of one character given by its code in the system code page. False for fonts without outlines.
bool GetCharABCWidthsA(HDC dc, unsigned code, ABC& widths);

// Draws a text in a rectangle and returns its height, 0 on failure and for an empty text. The flags are the
// DT_ constants; without DT_SINGLELINE, CR and LF break lines, and with DT_WORDBREAK so do words that don't
// fit. Without DT_NOPREFIX "&" underlines the character after it and "&&" draws one. DT_WORD_ELLIPSIS ends a
// word that is too wide in "...". Drawing is clipped to the rectangle, and lines below it need not be laid
// out. With DT_CALCRECT nothing is drawn: right and bottom of `rect` are set to what would be.
int DrawTextW(HDC dc, std::u16string_view text, RECT& rect, std::uint32_t flags);
int DrawTextA(HDC dc, std::string_view text, RECT& rect, std::uint32_t flags);

// Draws one line at a point, placed as SetTextAlign says.
bool TextOutW(HDC dc, Long x, Long y, std::u16string_view text);
// What is done with the rectangle of a text at a point: filled first with the background colour, clipped to.
constexpr std::uint32_t ETO_OPAQUE = 2, ETO_CLIPPED = 4;
// The same; `options` are those above.
bool ExtTextOutW(HDC dc, Long x, Long y, std::uint32_t options, const RECT* rect, std::u16string_view text);

}  // namespace marklet
