#include "platform/text.h"

#include <algorithm>
#include <limits>

#include "base/rounding.h"
#include "platform/shared/aligned_corner.h"
#include "platform/shared/saturated.h"
#include "platform/system.h"
#include "platform/win32/handles.h"
#include "platform/win32/long_text.h"
#include "platform/win32/saved_state.h"
#include "platform/win32/text_run.h"

namespace marklet {
namespace {

using win32::ClipTo;
using win32::DrawLongText;
using win32::DrawRun;
using win32::kPlainHeight;
using win32::kPlainUnits;
using win32::MetricsOf;
using win32::Native;
using win32::Near;
using win32::SavedState;
using win32::WidthOf;
using win32::Wrap;

// Whether the platform's own calls do.
bool IsPlain(std::u16string_view text, int line_height) {
  return text.size() <= kPlainUnits && line_height <= kPlainHeight;
}

bool PlainExtent(::HDC dc, std::u16string_view text, SIZE& size) {
  ::SIZE native{};
  if (!::GetTextExtentPoint32W(dc, Native(text.data()), static_cast<int>(text.size()), &native)) return false;
  size = Wrap(native);
  return true;
}

// The platform cuts a line off at 1024 units when it breaks none at words.
bool NeedsOwnLayout(std::u16string_view text, int line_height, std::uint32_t flags) {
  const bool breaks_at_words = (flags & (DT_WORDBREAK | DT_SINGLELINE)) == DT_WORDBREAK;
  return line_height > kPlainHeight || (text.size() > kPlainUnits && !breaks_at_words);
}

int PlainDrawText(::HDC dc, std::u16string_view text, ::RECT& rect, std::uint32_t flags) {
  constexpr std::size_t kMost = std::numeric_limits<int>::max();
  return ::DrawTextW(dc, Native(text.data()), static_cast<int>(std::min(text.size(), kMost)), &rect, flags);
}

// Measures at a place where the platform can add to the rectangle.
int MeasurePlainText(::HDC dc, std::u16string_view text, RECT& rect, std::uint32_t flags) {
  ::RECT place = {0, 0, Near(std::int64_t{rect.right} - rect.left), 0};
  const int height = PlainDrawText(dc, text, place, flags);
  rect.right = WrapAdd(rect.left, place.right);
  rect.bottom = WrapAdd(rect.top, place.bottom);
  return height;
}

int DrawPlainText(::HDC dc, std::u16string_view text, const RECT& rect, std::uint32_t flags) {
  ::RECT place = Native(Near(rect));
  const bool marks = (flags & DT_NOPREFIX) == 0 && text.find(u'&') != text.npos;
  if (!marks || (flags & DT_NOCLIP)) return PlainDrawText(dc, text, place, flags);
  // The bar below a marked character isn't clipped by every platform.
  const SavedState state(dc);
  ClipTo(dc, rect);
  return PlainDrawText(dc, text, place, flags);
}

Long ScreenPixelsPerInch() {
  const ::HDC screen = GetDC(nullptr);
  const Long result = screen ? GetDeviceCaps(screen, LOGPIXELSY) : 96;
  ReleaseDC(nullptr, screen);
  return result;
}

// Draws a run where the context's text alignment places it.
bool DrawAligned(::HDC dc, Long x, Long y, std::u16string_view text) {
  const UINT align = GetTextAlign(dc);
  const TEXTMETRICW metrics = MetricsOf(dc);
  std::int64_t width = 0;
  if (!WidthOf(dc, text, width)) return false;
  const LineCorner corner = AlignedCorner(align, x, y, {width, metrics.tmHeight, metrics.tmAscent});
  return DrawRun(dc, corner.x, corner.y, text, (align & TA_RTLREADING) != 0);
}

}  // namespace

HFONT CreateFontIndirectW(const LOGFONTW& record) {
  ::LOGFONTW native{};
  native.lfHeight = record.lfHeight;
  native.lfWeight = record.lfWeight;
  native.lfItalic = record.lfItalic;
  native.lfUnderline = record.lfUnderline;
  native.lfStrikeOut = record.lfStrikeOut;
  native.lfCharSet = record.lfCharSet;
  // The record is zeroed, so that the name ends in a NUL.
  record.lfFaceName.copy(reinterpret_cast<char16_t*>(native.lfFaceName), LF_FACESIZE - 1);
  return Wrap(::CreateFontIndirectW(&native));
}

Long PixelsPerInch(HDC dc) {
  if (Configuration().pixels_per_inch) return *Configuration().pixels_per_inch;
  if (dc) return GetDeviceCaps(Native(dc), LOGPIXELSY);
  // The screen's resolution is the same from sign-in to sign-out.
  static const Long screen = ScreenPixelsPerInch();
  return screen;
}

COLORREF SetTextColor(HDC dc, COLORREF colour) { return ::SetTextColor(Native(dc), colour); }

COLORREF GetTextColor(HDC dc) { return dc ? ::GetTextColor(Native(dc)) : CLR_INVALID; }

COLORREF SetBkColor(HDC dc, COLORREF colour) { return ::SetBkColor(Native(dc), colour); }

int SetBkMode(HDC dc, int mode) {
  int former = ::SetBkMode(Native(dc), mode);
  const bool named = mode == TRANSPARENT || mode == OPAQUE;
  // A platform that refuses a mode it has no name for gets the one that looks the same.
  if (former == 0 && !named) former = ::SetBkMode(Native(dc), TRANSPARENT);
  return former == TRANSPARENT || former == OPAQUE ? former : 0;
}

std::uint32_t SetTextAlign(HDC dc, std::uint32_t align) {
  const UINT former = ::SetTextAlign(Native(dc), align);
  return former == GDI_ERROR ? 0 : former;
}

bool GetTextExtentPoint32W(HDC dc, std::u16string_view text, SIZE& size) {
  if (text.empty()) text = u"";  // not null, which the platform needn't take
  if (text.size() <= kPlainUnits) return PlainExtent(Native(dc), text, size);
  std::int64_t width = 0;
  TEXTMETRICW metrics{};
  if (!WidthOf(Native(dc), text, width) || !GetTextMetricsW(Native(dc), &metrics)) return false;
  size = {Saturated(width), metrics.tmHeight};
  return true;
}

bool GetTextExtentPoint32A(HDC dc, std::string_view text, Long count, SIZE& size) {
  const std::size_t bytes = std::min(text.size(), static_cast<std::size_t>(std::max(count, 0)));
  return GetTextExtentPoint32W(dc, MultiByteToWideChar(CP_ACP, text.substr(0, bytes)), size);
}

bool GetCharABCWidthsA(HDC dc, unsigned code, ABC& widths) {
  ::ABC native{};
  if (!::GetCharABCWidthsA(Native(dc), code, code, &native)) return false;
  widths = Wrap(native);
  return true;
}

int DrawTextW(HDC dc, std::u16string_view text, RECT& rect, std::uint32_t flags) {
  if (!dc || text.empty()) return 0;
  const int line_height = MetricsOf(Native(dc)).tmHeight;
  if (NeedsOwnLayout(text, line_height, flags)) return DrawLongText(dc, text, rect, flags);
  const int height = flags & DT_CALCRECT ? MeasurePlainText(Native(dc), text, rect, flags)
                                         : DrawPlainText(Native(dc), text, rect, flags);
  // For a single line the platform tells where it ends in the rectangle.
  return flags & DT_SINGLELINE ? line_height : height;
}

int DrawTextA(HDC dc, std::string_view text, RECT& rect, std::uint32_t flags) {
  return DrawTextW(dc, MultiByteToWideChar(CP_ACP, text), rect, flags);
}

bool TextOutW(HDC dc, Long x, Long y, std::u16string_view text) {
  return ExtTextOutW(dc, x, y, 0, nullptr, text);
}

bool ExtTextOutW(HDC dc, Long x, Long y, std::uint32_t options, const RECT* rect, std::u16string_view text) {
  if (!dc) return false;
  const ::HDC native = Native(dc);
  const ::RECT box = rect ? Native(Near(*rect)) : ::RECT{};
  const auto output = [&](std::u16string_view plain) {
    return ::ExtTextOutW(native, Near(x), Near(y), options, rect ? &box : nullptr, Native(plain.data()),
                         static_cast<UINT>(plain.size()), nullptr) != 0;
  };
  if (IsPlain(text, MetricsOf(native).tmHeight)) return output(text);
  const SavedState state(native);
  if (rect) output({});
  if (rect && (options & ETO_CLIPPED)) ClipTo(native, *rect);
  return DrawAligned(native, x, y, text);
}

}  // namespace marklet
