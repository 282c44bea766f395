// CFileIcon: an icon file, kept as it was read. Its images become pixels only when they are drawn.
//
// Images count from 1. A cursor file, and a file whose directory or data reach past its end, is refused
// whole.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "images/icon_dib.h"
#include "platform/gdi.h"
#include "platform/icon.h"
#include "platform/types.h"

namespace marklet {

class CFileIcon {
 public:
  // False, and no images, when the file can't be read or isn't an icon file.
  bool OpenIcon(std::u16string_view path);
  // The same with a file's bytes.
  bool OpenIconBytes(std::vector<std::uint8_t> file);
  // The path that was opened last, well or not.
  const std::u16string& FileName() const { return file_name_; }

  Long ImageCount() const { return static_cast<Long>(entries_.size()); }
  // 0 when there is no such image. The size is the directory's, in pixels, where 256 stands as 0 and stays
  // so; the bit count is that of the image itself.
  Long ImageWidth(Long index) const;
  Long ImageHeight(Long index) const;
  Long ImageBitCount(Long index) const;

  // Draws the colours of an image, or its mask in black and white. A width or height of 0 stands for the
  // image's own; another stretches or shrinks it by leaving out and repeating pixels. An image of size 0
  // draws nothing.
  void DrawImage(HDC dc, Long index, bool mask, Long x, Long y, Long width, Long height,
                 std::uint32_t rop) const;
  // The same for `draw`; for `keep` the picture in its own size is returned, of 32 bits, the mask's in black
  // and white. Null otherwise, and when it can't be made.
  ObjectRef PaintImage(HDC dc, Long index, bool mask, bool draw, Long x, Long y, Long width, Long height,
                       std::uint32_t rop, bool keep) const;

  // An image as an icon of its own, or as a picture. Null when it can't be made.
  IconRef IconHandleFromImage(HDC dc, Long index) const;
  PictureRef PictureFromImage(HDC dc, Long index) const;
  static PictureRef PictureFromIconHandle(IconRef icon);

 private:
  struct Entry {
    Long width = 0, height = 0;
    std::size_t offset = 0, size = 0;  // of the data in file_
  };

  bool ReadEntries();
  // Zeroes for an index that isn't there.
  Entry EntryAt(Long index) const;
  IconDib ImageOf(const Entry& entry) const;

  std::u16string file_name_;
  std::vector<std::uint8_t> file_;
  std::vector<Entry> entries_;
};

}  // namespace marklet
