#include "platform/text.h"

#include <algorithm>

#include "platform/system.h"
#include "platform/win32/handles.h"

namespace marklet {

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
  if (dc) return GetDeviceCaps(Native(dc), LOGPIXELSY);
  const ::HDC screen = GetDC(nullptr);
  const Long result = screen ? GetDeviceCaps(screen, LOGPIXELSY) : 96;
  ReleaseDC(nullptr, screen);
  return result;
}

COLORREF SetTextColor(HDC dc, COLORREF colour) { return ::SetTextColor(Native(dc), colour); }

COLORREF GetTextColor(HDC dc) { return ::GetTextColor(Native(dc)); }

COLORREF SetBkColor(HDC dc, COLORREF colour) { return ::SetBkColor(Native(dc), colour); }

int SetBkMode(HDC dc, int mode) {
  int former = ::SetBkMode(Native(dc), mode);
  const bool named = mode == sdk::kTransparentMode || mode == sdk::kOpaqueMode;
  // A platform that refuses a mode it has no name for gets the one that looks the same.
  if (former == 0 && !named) former = ::SetBkMode(Native(dc), sdk::kTransparentMode);
  return former == sdk::kTransparentMode || former == sdk::kOpaqueMode ? former : 0;
}

std::uint32_t SetTextAlign(HDC dc, std::uint32_t align) {
  const UINT former = ::SetTextAlign(Native(dc), align);
  return former == GDI_ERROR ? 0 : former;
}

bool GetTextExtentPoint32W(HDC dc, std::u16string_view text, SIZE& size) {
  ::SIZE native{};
  if (!::GetTextExtentPoint32W(Native(dc), Native(text.data()), static_cast<int>(text.size()), &native))
    return false;
  size = Wrap(native);
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
  ::RECT native = Native(rect);
  const int height =
      ::DrawTextW(Native(dc), Native(text.data()), static_cast<int>(text.size()), &native, flags);
  rect = Wrap(native);
  return height;
}

int DrawTextA(HDC dc, std::string_view text, RECT& rect, std::uint32_t flags) {
  return DrawTextW(dc, MultiByteToWideChar(CP_ACP, text), rect, flags);
}

bool TextOutW(HDC dc, Long x, Long y, std::u16string_view text) {
  return ::TextOutW(Native(dc), x, y, Native(text.data()), static_cast<int>(text.size()));
}

bool ExtTextOutW(HDC dc, Long x, Long y, std::uint32_t options, const RECT* rect, std::u16string_view text) {
  const ::RECT native = rect ? Native(*rect) : ::RECT{};
  return ::ExtTextOutW(Native(dc), x, y, options, rect ? &native : nullptr, Native(text.data()),
                       static_cast<UINT>(text.size()), nullptr);
}

}  // namespace marklet
