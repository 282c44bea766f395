// The line-by-line route for systems without a working DrawTextW: measures and draws at points, nothing else.
//
// It fits short captions, which is what it was made for. In longer ones the place of a break, counted from
// the start of the text, is taken for a length within the line; captions on such systems have always been
// laid out so.
#pragma once

#include <string_view>

#include "platform/types.h"

namespace marklet {

// Draws a text without its mnemonic marks, wrapped at blanks and CR. Other control characters are dropped,
// but for a text that fits in one line. Lines below `rect.bottom` are drawn too. At the right goes before
// centred. Failing calls are ignored: a measure that fails leaves the one before in use.
void DrawTextManual(HDC dc, const RECT& rect, std::u16string_view text, bool center_vertically, bool center,
                    bool right_aligned);

// How far down the same text reaches: the top of its last line, 0 for a text that fits in one line.
Long MeasureWrappedText(HDC dc, const RECT& rect, std::u16string_view text, bool center_vertically,
                        bool center, bool right_aligned);

bool IsWrapPoint(char16_t ch);

// Whether the system has a locale of an Arabic country. Asked once a thread.
bool ArabicLocaleInstalled();
void ForgetArabicLocale();

}  // namespace marklet
