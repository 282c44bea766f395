#include "platform/host_picture.h"

#include <cstring>
#include <new>
#include <utility>
#include <vector>

#include "base/rounding.h"
#include "platform/file.h"
#include "platform/shared/picture_header.h"
#include "platform/text.h"
#include "platform/win32/handles.h"
#include "platform/win32/picture.h"

namespace marklet {
namespace {

using Microsoft::WRL::ComPtr;
using win32::Native;
using win32::Wrap;
using win32::WrapPicture;

// A stream over a copy of the bytes; null without memory.
ComPtr<IStream> StreamOver(const std::vector<std::uint8_t>& bytes) {
  ComPtr<IStream> stream;
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, bytes.size());
  void* const copy = memory != nullptr ? GlobalLock(memory) : nullptr;
  if (copy == nullptr) return nullptr;
  std::memcpy(copy, bytes.data(), bytes.size());
  GlobalUnlock(memory);
  if (FAILED(CreateStreamOnHGlobal(memory, TRUE, stream.GetAddressOf()))) GlobalFree(memory);
  return stream;
}

PictureRef Load(std::u16string_view path) {
  std::vector<std::uint8_t> file;
  if (!ReadWholeFile(path, file, HasPictureSignature)) return nullptr;
  const auto kind = CheckPictureFile(file);
  if (!kind) return nullptr;
  if (*kind == PictureKind::kGif) KeepFirstFrame(file);
  const auto size = static_cast<LONG>(file.size());
  const ComPtr<IStream> stream = StreamOver(std::exchange(file, {}));
  if (stream == nullptr) return nullptr;
  ComPtr<IPicture> picture;
  if (FAILED(OleLoadPicture(stream.Get(), size, FALSE, IID_IPicture,
                            reinterpret_cast<void**>(picture.GetAddressOf()))))
    return nullptr;
  return WrapPicture(std::move(picture));
}

bool IsPlainBitmap(IPicture& picture) {
  SHORT type = 0;
  DWORD attributes = 0;
  picture.get_Type(&type);
  picture.get_Attributes(&attributes);
  return type == PICTYPE_BITMAP && (attributes & PICTURE_TRANSPARENT) == 0;
}

::HBITMAP BitmapOf(IPicture& picture) {
  SHORT type = 0;
  OLE_HANDLE handle = 0;
  if (FAILED(picture.get_Type(&type)) || type != PICTYPE_BITMAP || FAILED(picture.get_Handle(&handle)))
    return nullptr;
  // NOLINTNEXTLINE(performance-no-int-to-ptr): OLE hands out handles as numbers
  return reinterpret_cast<::HBITMAP>(static_cast<INT_PTR>(static_cast<int>(handle)));
}

// Straight from the bitmap: a picture's own drawing isn't exact everywhere.
bool CopyBitmap(IPicture& picture, ::HDC dc) {
  const ::HBITMAP bitmap = BitmapOf(picture);
  ::BITMAP record{};
  const ::HDC source = ::CreateCompatibleDC(nullptr);
  if (source == nullptr) return false;
  const ::HGDIOBJ former = ::SelectObject(source, bitmap);
  const bool copied = former != nullptr && ::GetObjectW(bitmap, sizeof record, &record) != 0 &&
                      ::BitBlt(dc, 0, 0, record.bmWidth, record.bmHeight, source, 0, 0, SRCCOPY);
  if (former != nullptr) ::SelectObject(source, former);
  ::DeleteDC(source);
  return copied;
}

// Pictures measure themselves by the resolution of the screen that there is.
SIZE PixelSize(IPicture& picture) {
  OLE_XSIZE_HIMETRIC width = 0;
  OLE_YSIZE_HIMETRIC height = 0;
  if (FAILED(picture.get_Width(&width)) || FAILED(picture.get_Height(&height))) return {};
  const ::HDC screen = ::GetDC(nullptr);
  const SIZE size = {MulDiv(width, GetDeviceCaps(screen, LOGPIXELSX), 2540),
                     MulDiv(height, GetDeviceCaps(screen, LOGPIXELSY), 2540)};
  ::ReleaseDC(nullptr, screen);
  return size;
}

// Some pictures are drawn with a top row missing when the destination's height is negative, so that it is the
// source whose height runs downwards.
bool DrawPicture(IPicture& picture, ::HDC dc) {
  OLE_XSIZE_HIMETRIC width = 0;
  OLE_YSIZE_HIMETRIC height = 0;
  picture.get_Width(&width);
  picture.get_Height(&height);
  const SIZE size = PixelSize(picture);
  return SUCCEEDED(picture.Render(dc, 0, 0, size.cx, size.cy, 0, height, width, -height, nullptr));
}

}  // namespace

PictureRef win32::WrapPicture(ComPtr<IPicture> picture) {
  try {
    return std::make_shared<HostPicture>(HostPicture{std::move(picture)});
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

PictureRef LoadPicture(std::u16string_view path) {
  try {
    return Load(path);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

SIZE PictureSize(const PictureRef& picture) {
  if (picture == nullptr) return {};
  const SIZE pixels = PixelSize(*picture->picture.Get());
  const double per_pixel = 2540.0 / PixelsPerInch(nullptr);
  return {RoundHalfEven(pixels.cx * per_pixel), RoundHalfEven(pixels.cy * per_pixel)};
}

bool RenderPicture(const PictureRef& picture, HDC dc) {
  if (picture == nullptr || dc == nullptr) return false;
  IPicture& drawn = *picture->picture.Get();
  return IsPlainBitmap(drawn) ? CopyBitmap(drawn, Native(dc)) : DrawPicture(drawn, Native(dc));
}

HBITMAP PictureHandle(const PictureRef& picture) {
  return picture == nullptr ? nullptr : Wrap(BitmapOf(*picture->picture.Get()));
}

}  // namespace marklet
