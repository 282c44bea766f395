// The host's picture loader: BMP, GIF, JPG and CUR files, told apart by their first bytes whatever their
// names say. Nothing here calls back into the program.
#pragma once

#include <memory>
#include <string_view>

#include "platform/types.h"

namespace marklet {

struct HostPicture;  // each platform's own
using PictureRef = std::shared_ptr<const HostPicture>;

// Reads a file and decodes its picture, of several frames the first, of several cursors one of the platform's
// choice. Null when the file can't be read or decoded, isn't of one of the formats, or claims more pixels
// than its bytes could hold (platform/shared/picture_header.h). A path is UTF-16; the file is closed on
// return.
PictureRef LoadPicture(std::u16string_view path);

// In HIMETRIC, hundredths of a millimetre, as pixels become on the screen: a picture of `n` pixels is
// n * 2540 / PixelsPerInch(nullptr) wide or high, rounded to nearest. Nothing for a null picture.
SIZE PictureSize(const PictureRef& picture);

// Draws the whole picture, pixel by pixel, with its top left corner on that of the context. What is
// transparent in a GIF or CUR leaves the context as it is; cursors may have edges that mix with it. Alpha of
// the context becomes 0 where something is drawn. False for a null picture or context.
bool RenderPicture(const PictureRef& picture, HDC dc);

// The bitmap of a picture, without regard to what is transparent in it. It stays the picture's and lives as
// long; select it nowhere but for a copy. Null for a null picture, for icons and cursors, and without memory.
HBITMAP PictureHandle(const PictureRef& picture);

}  // namespace marklet
