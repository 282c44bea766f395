#include "platform/icon.h"

#include "platform/gdi.h"
#include "platform/win32/handles.h"
#include "platform/win32/picture.h"
#include "platform/win32/sdk_ole.h"

namespace marklet {
namespace {

using win32::Native;
using win32::NativeAs;

// The platform wants masks of one bit. A copy to such a bitmap makes white of what has the background colour
// of the source, which is white in a new context, and black of all else.
::HBITMAP CreateMonochrome(HBITMAP mask, const BITMAP& size) {
  const ::HBITMAP monochrome = CreateBitmap(size.bmWidth, size.bmHeight, 1, 1, nullptr);
  const ::HDC from = ::CreateCompatibleDC(nullptr), to = ::CreateCompatibleDC(nullptr);
  const ::HGDIOBJ former_from = ::SelectObject(from, Native(mask));
  const ::HGDIOBJ former_to = ::SelectObject(to, monochrome);
  ::BitBlt(to, 0, 0, size.bmWidth, size.bmHeight, from, 0, 0, SRCCOPY);
  ::SelectObject(from, former_from);
  ::SelectObject(to, former_to);
  ::DeleteDC(from);
  ::DeleteDC(to);
  return monochrome;
}

}  // namespace

IconRef CreateIconIndirect(HBITMAP mask, HBITMAP colours) {
  BITMAP mask_size, size;
  if (!GetObjectA(mask, mask_size) || !GetObjectA(colours, size)) return nullptr;
  if (mask_size.bmWidth != size.bmWidth || mask_size.bmHeight != size.bmHeight) return nullptr;
  const ::HBITMAP monochrome = CreateMonochrome(mask, size);
  ICONINFO info = {TRUE, 0, 0, monochrome, NativeAs<::HBITMAP>(colours)};
  IconRef icon(reinterpret_cast<IconHandle*>(::CreateIconIndirect(&info)));
  ::DeleteObject(monochrome);
  return icon;
}

bool DestroyIcon(IconHandle* icon) { return icon && ::DestroyIcon(reinterpret_cast<::HICON>(icon)); }

PictureRef OleCreatePictureIndirect(IconRef icon) {
  if (!icon) return nullptr;
  PICTDESC description{};
  description.cbSizeofstruct = sizeof description;
  description.picType = PICTYPE_ICON;
  description.icon.hicon = reinterpret_cast<::HICON>(icon.get());
  Microsoft::WRL::ComPtr<IPicture> picture;
  if (FAILED(::OleCreatePictureIndirect(&description, IID_IPicture, TRUE,
                                        reinterpret_cast<void**>(picture.GetAddressOf()))))
    return nullptr;
  static_cast<void>(icon.release());  // the picture's from now on
  return win32::WrapPicture(std::move(picture));
}

}  // namespace marklet
