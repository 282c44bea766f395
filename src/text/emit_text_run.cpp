#include "text/emit_text_run.h"

#include "base/rounding.h"
#include "platform/shared/os_tests.h"
#include "platform/system.h"
#include "platform/text.h"
#include "text/manual_text.h"
#include "text/shaping.h"
#include "text/string_helpers.h"

namespace marklet {
namespace {

// Neither of the two background modes.
constexpr int kNoBackgroundMode = 0;

// Where a block of text starts that the platform doesn't place. Half of the bottom coordinate is taken, not
// the middle of the rectangle: a rectangle that doesn't start at 0 has its text too high.
Long BlockTop(const RECT& rect, const CaptionStyle& style) {
  if (style.VerticalAlignment == verticalCenter) return WrapSub(rect.bottom / 2, style.TextHeight / 2);
  if (style.VerticalAlignment == verticalBottom) return WrapSub(rect.bottom, style.TextHeight);
  return rect.top;
}

std::uint32_t HorizontalFlags(const CaptionStyle& style) {
  const bool start_aligned = style.Alignment == alignLeft || style.Alignment == alignJustified;
  if (start_aligned) return style.RightToLeft ? DT_RIGHT : 0;
  if (style.Alignment == alignRight) return style.RightToLeft ? 0 : DT_RIGHT;
  return style.Alignment == alignCenter ? DT_CENTER : 0;
}

std::uint32_t VerticalFlags(const CaptionStyle& style) {
  if (!style.SingleLine) return 0;
  if (style.VerticalAlignment == verticalCenter) return DT_VCENTER;
  return style.VerticalAlignment == verticalBottom ? DT_BOTTOM : 0;
}

// The height of the first run counts for all runs that share the style, whatever their fonts.
void MeasureTextHeight(HDC dc, std::u16string_view text, CaptionStyle& style) {
  SIZE size;
  // The count is that of the text, although the bytes may be more.
  GetTextExtentPoint32A(dc, WideCharToMultiByte(CP_ACP, text), static_cast<Long>(text.size()), size);
  style.TextHeight = size.cy;
}

enum class Route { Unicode, Shaped, Manual };

// Systems from Vista on shape by themselves; only justifying is beyond DrawTextW.
Route RouteOf(std::u16string_view text, const CaptionStyle& style) {
  const bool justified = style.Alignment == alignJustified;
  if (!justified && IsVistaOrLater()) return Route::Unicode;
  if (UniscribeAvailable() && (justified || !IsNT4OrLater() || IsComplexText(text))) return Route::Shaped;
  return IsNT4OrLater() ? Route::Unicode : Route::Manual;
}

void DrawShaped(HDC dc, std::u16string_view text, RECT& rect, const CaptionStyle& style) {
  rect.top = BlockTop(rect, style);
  DrawScriptString(dc, ETO_CLIPPED, rect, text, 0, 0,
                   {.rtl = style.RightToLeft,
                    .right = style.Alignment == alignRight,
                    .singleLine = style.SingleLine,
                    .center = style.Alignment == alignCenter,
                    .justified = style.Alignment == alignJustified});
}

}  // namespace

void EmitTextRun(HDC dc, std::u16string_view text, RECT& rect, CaptionStyle& style, bool in_effect) {
  // Text comes out without a box behind it on an opaque control too, so that the layers of an effect don't
  // wipe each other out.
  SetBkMode(dc, kNoBackgroundMode);
  SetTextColor(dc, TranslateColor(style.ForeColor));
  if (!in_effect && style.TextEffect != effectNone) return DrawTextEffect(dc, text, rect, style);
  if (style.TextHeight == 0) MeasureTextHeight(dc, text, style);

  switch (RouteOf(text, style)) {
    case Route::Unicode:
      return DrawTextUnicode(dc, text, rect, style);
    case Route::Shaped:
      return DrawShaped(dc, text, rect, style);
    case Route::Manual:
      return DrawTextManual(dc, rect, text, style.VerticalAlignment == verticalCenter,
                            style.Alignment == alignCenter, style.Alignment == alignRight);
  }
}

void DrawTextUnicode(HDC dc, std::u16string_view text, const RECT& rect, const CaptionStyle& style) {
  // The platform takes the text as ending in NUL.
  text = TrimAtNull(text);
  if (text.empty()) return;
  RECT place = rect;
  if (!style.SingleLine) place.top = BlockTop(rect, style);
  // DT_NOPREFIX is not among the flags: "&" marks a mnemonic and "&&" prints one ampersand.
  DrawTextW(dc, text, place,
            HorizontalFlags(style) | VerticalFlags(style) | (style.RightToLeft ? DT_RTLREADING : 0) |
                (style.SingleLine ? DT_SINGLELINE : DT_WORDBREAK) | DT_WORD_ELLIPSIS);
}

SIZE MeasureString(HDC dc, std::u16string_view text) {
  SIZE size;
  if (IsNT4OrLater()) {
    GetTextExtentPoint32W(dc, text, size);
  } else {
    const std::string bytes = WideCharToMultiByte(CP_ACP, text);
    GetTextExtentPoint32A(dc, bytes, static_cast<Long>(bytes.size()), size);
  }
  return size;
}

COLORREF TranslateColor(OLE_COLOR colour) {
  COLORREF result = CLR_INVALID;
  return OleTranslateColor(colour, result) ? result : CLR_INVALID;
}

}  // namespace marklet
