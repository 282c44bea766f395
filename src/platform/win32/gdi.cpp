#include "platform/gdi.h"

#include <algorithm>
#include <limits>

#include "base/rows.h"
#include "platform/win32/saved_state.h"

namespace marklet {
namespace {

using win32::kFar;
using win32::Native;
using win32::NativeAs;
using win32::Near;
using win32::SavedState;
using win32::Wrap;

// One axis of a blit: what is left when both ends are cut to GDI's range.
struct Span {
  Long start, length, source;
};

Span CutToRange(Long start, Long length, Long source) {
  const std::int64_t before = std::max({std::int64_t{0}, -kFar - start, -kFar - source});
  const std::int64_t room = kFar - std::max<std::int64_t>(start, source);
  const std::int64_t left = std::clamp<std::int64_t>(std::min<std::int64_t>(length, room) - before, 0, kFar);
  return {Near(start + before), static_cast<Long>(left), Near(source + before)};
}

// Marks a bitmap as one of ours, and so as bottom-up: the platform reports every height as positive. The
// dimension is a field that the platform keeps with a bitmap and never uses.
constexpr Long kOurWidth = 0x4D61726B, kOurHeight = 0x6C657400;

bool IsOurs(::HGDIOBJ bitmap) {
  ::SIZE mark{};
  return GetBitmapDimensionEx(static_cast<::HBITMAP>(bitmap), &mark) && mark.cx == kOurWidth &&
         mark.cy == kOurHeight;
}

// The pattern of a focus frame: white where x + y is odd.
::HBRUSH CreateCheckerBrush() {
  constexpr WORD kRows[8] = {0x55, 0xAA, 0x55, 0xAA, 0x55, 0xAA, 0x55, 0xAA};
  const ::HBITMAP pattern = CreateBitmap(8, 8, 1, 1, kRows);
  const ::HBRUSH brush = CreatePatternBrush(pattern);
  ::DeleteObject(pattern);
  return brush;
}

void InvertEdges(::HDC dc, const RECT& rect) {
  const int width = rect.right - rect.left, height = rect.bottom - rect.top;
  PatBlt(dc, rect.left, rect.top, width, 1, PATINVERT);
  if (height > 1) PatBlt(dc, rect.left, rect.bottom - 1, width, 1, PATINVERT);
  if (height > 2) PatBlt(dc, rect.left, rect.top + 1, 1, height - 2, PATINVERT);
  if (height > 2 && width > 1) PatBlt(dc, rect.right - 1, rect.top + 1, 1, height - 2, PATINVERT);
}

}  // namespace

HDC CreateCompatibleDC(HDC like) { return Wrap(::CreateCompatibleDC(Native(like))); }

bool DeleteDC(HDC dc) { return dc && ::DeleteDC(Native(dc)); }

HBITMAP CreateDIBSection(HDC dc, Long width, Long height, int bits_per_pixel, std::uint8_t*& bits) {
  if (width < 1 || height < 1 || (bits_per_pixel != 24 && bits_per_pixel != 32)) return nullptr;
  const std::int64_t stride = DibStride(width, bits_per_pixel);
  if (stride > std::numeric_limits<Long>::max() / height) return nullptr;

  BITMAPINFO info{};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = width;
  info.bmiHeader.biHeight = height;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = static_cast<WORD>(bits_per_pixel);
  info.bmiHeader.biCompression = BI_RGB;
  info.bmiHeader.biSizeImage = static_cast<DWORD>(stride * height);
  void* memory = nullptr;
  const ::HBITMAP bitmap = ::CreateDIBSection(Native(dc), &info, DIB_RGB_COLORS, &memory, nullptr, 0);
  if (!bitmap) return nullptr;
  SetBitmapDimensionEx(bitmap, kOurWidth, kOurHeight, nullptr);
  bits = static_cast<std::uint8_t*>(memory);
  return Wrap(bitmap);
}

HGDIOBJ SelectObject(HDC dc, HGDIOBJ object) {
  if (!dc || !object) return nullptr;
  const ::HGDIOBJ former = ::SelectObject(Native(dc), Native(object));
  return former == HGDI_ERROR ? nullptr : Wrap(former);
}

bool DeleteObject(HGDIOBJ object) { return object && ::DeleteObject(Native(object)); }

bool PixelsOf(HDC dc, PixelView& view) {
  const ::HGDIOBJ bitmap = GetCurrentObject(Native(dc), OBJ_BITMAP);
  DIBSECTION section{};
  if (!bitmap || !IsOurs(bitmap) || ::GetObjectW(bitmap, sizeof section, &section) != sizeof section)
    return false;
  ::GdiFlush();
  view.bits = static_cast<std::uint8_t*>(section.dsBm.bmBits);
  view.width = section.dsBm.bmWidth;
  view.height = section.dsBm.bmHeight;
  view.bits_per_pixel = section.dsBm.bmBitsPixel;
  view.stride = static_cast<Long>(DibStride(view.width, view.bits_per_pixel));
  return true;
}

void GdiFlush() { ::GdiFlush(); }

bool BitBlt(HDC destination, Long x, Long y, Long width, Long height, HDC source, Long source_x,
            Long source_y, std::uint32_t rop) {
  if (!destination || !source) return false;
  const Span across = CutToRange(x, width, source_x), down = CutToRange(y, height, source_y);
  if (across.length == 0 || down.length == 0) return true;
  return ::BitBlt(Native(destination), across.start, down.start, across.length, down.length, Native(source),
                  across.source, down.source, rop);
}

int SetStretchBltMode(HDC dc, int mode) { return dc ? ::SetStretchBltMode(Native(dc), mode) : 0; }

bool StretchBlt(HDC destination, Long x, Long y, Long width, Long height, HDC source, Long source_x,
                Long source_y, Long source_width, Long source_height, std::uint32_t rop) {
  if (!destination || !source || width < 0 || height < 0) return false;
  if (source_x < 0 || source_y < 0 || source_width < 0 || source_height < 0) return false;
  if (width == 0 || height == 0 || source_width == 0 || source_height == 0) return true;
  return ::StretchBlt(Native(destination), x, y, width, height, Native(source), source_x, source_y,
                      source_width, source_height, rop);
}

bool AlphaBlend(HDC destination, Long x, Long y, Long width, Long height, HDC source, Long source_x,
                Long source_y, Long source_width, Long source_height, std::uint8_t constant_alpha,
                bool use_source_alpha) {
  if (!destination || !source) return false;
  const BLENDFUNCTION blend = {AC_SRC_OVER, 0, constant_alpha,
                               static_cast<BYTE>(use_source_alpha ? AC_SRC_ALPHA : 0)};
  return ::AlphaBlend(Native(destination), x, y, width, height, Native(source), source_x, source_y,
                      source_width, source_height, blend);
}

HBRUSH CreateSolidBrush(COLORREF colour) { return Wrap(::CreateSolidBrush(colour)); }

bool FillRect(HDC dc, const RECT& rect, HBRUSH brush) {
  if (!dc || !brush) return false;
  // The platform would fill an inverted rectangle from its other corner.
  if (rect.left >= rect.right || rect.top >= rect.bottom) return true;
  const ::RECT native = Native(Near(rect));
  return ::FillRect(Native(dc), &native, NativeAs<::HBRUSH>(brush)) != 0;
}

HPEN CreatePen(Long width, COLORREF colour) { return Wrap(::CreatePen(PS_SOLID, width, colour)); }

bool MoveToEx(HDC dc, Long x, Long y) { return dc && ::MoveToEx(Native(dc), Near(x), Near(y), nullptr); }

bool LineTo(HDC dc, Long x, Long y) { return dc && ::LineTo(Native(dc), Near(x), Near(y)); }

// The platform's own frame starts its dots where it likes; these stand on fixed pixels.
bool DrawFocusRect(HDC dc, const RECT& rect) {
  if (!dc) return false;
  if (rect.left >= rect.right || rect.top >= rect.bottom) return true;
  const ::HDC native = Native(dc);
  const ::HBRUSH brush = CreateCheckerBrush();
  {
    const SavedState state(native);
    ::SetTextColor(native, 0x000000);
    ::SetBkColor(native, 0xFFFFFF);
    SetBrushOrgEx(native, 0, 0, nullptr);
    ::SelectObject(native, brush);
    InvertEdges(native, Near(rect));
  }
  return ::DeleteObject(brush);
}

bool DrawEdge(HDC dc, RECT& rect, std::uint32_t edge, std::uint32_t flags) {
  if (!dc) return false;
  ::RECT native = Native(Near(rect));
  const bool drawn = ::DrawEdge(Native(dc), &native, edge, flags);
  if (drawn && (flags & BF_ADJUST)) rect = {native.left, native.top, native.right, native.bottom};
  return drawn;
}

bool GetObjectA(HBITMAP bitmap, BITMAP& result) {
  ::BITMAP native{};
  if (GetObjectType(Native(bitmap)) != OBJ_BITMAP ||
      ::GetObjectW(Native(bitmap), sizeof native, &native) != sizeof native)
    return false;
  result = {native.bmWidth, native.bmHeight, native.bmBitsPixel};
  return true;
}

}  // namespace marklet
