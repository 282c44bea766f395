#include "images/file_icon.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <utility>

#include "base/byte_reader.h"
#include "platform/file.h"

namespace marklet {
namespace {

constexpr std::size_t kHeaderBytes = 6, kEntryBytes = 16;
constexpr Long kIconType = 1;  // a cursor file has 2

// Of one image or more.
bool IsIconHeader(std::span<const std::uint8_t> bytes) {
  const PaddedBytes file(bytes);
  return bytes.size() >= kHeaderBytes && file.U16(0) == 0 && file.U16(2) == kIconType &&
         static_cast<std::int16_t>(file.U16(4)) >= 1;
}

// Zeroed pixels of 32 bits in a context of their own.
class Canvas {
 public:
  Canvas(Long width, Long height) : dc_(CreateCompatibleDC(nullptr)), width_(width), height_(height) {
    std::uint8_t* bits = nullptr;
    if (dc_ != nullptr) bitmap_.reset(CreateDIBSection(dc_, width, height, 32, bits));
    if (bitmap_ == nullptr) return;
    former_ = SelectObject(dc_, bitmap_.get());
    view_ = {bits, width, height, width * 4, 32};
  }
  ~Canvas() {
    Release();
    DeleteDC(dc_);
  }
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;

  bool Exists() const { return bitmap_ != nullptr; }
  const PixelView& View() const { return view_; }
  void CopyTo(HDC dc, Long x, Long y, std::uint32_t rop) const {
    BitBlt(dc, x, y, width_, height_, dc_, 0, 0, rop);
  }
  ObjectRef Release() {
    SelectObject(dc_, former_);
    return std::move(bitmap_);
  }

 private:
  HDC dc_ = nullptr;
  ObjectRef bitmap_;
  HGDIOBJ former_ = nullptr;
  PixelView view_;
  Long width_, height_;
};

void Stretch(const PixelView& from, const PixelView& to) {
  const auto source = [](Long at, Long source_size, Long size) {
    return static_cast<std::ptrdiff_t>(std::int64_t{at} * source_size / size);
  };
  for (Long y = 0; y < to.height; ++y) {
    const std::uint8_t* in = from.At(0, source(y, from.height, to.height));
    std::uint8_t* out = to.At(0, y);
    for (Long x = 0; x < to.width; ++x, out += 4)
      std::memcpy(out, in + source(x, from.width, to.width) * 4, 4);
  }
}

// Draws to a rectangle; a width or height of 0 is the picture's own.
void Draw(const Canvas& picture, HDC dc, Long x, Long y, Long width, Long height, std::uint32_t rop) {
  if (width == 0 && height == 0) return picture.CopyTo(dc, x, y, rop);
  const PixelView& view = picture.View();
  const Canvas stretched(width != 0 ? width : view.width, height != 0 ? height : view.height);
  if (!stretched.Exists()) return;
  Stretch(view, stretched.View());
  stretched.CopyTo(dc, x, y, rop);
}

}  // namespace

bool CFileIcon::OpenIcon(std::u16string_view path) {
  file_name_ = path;
  std::vector<std::uint8_t> file;
  ReadWholeFile(path, file, IsIconHeader);  // what can't be read is an empty file
  return OpenIconBytes(std::move(file));
}

bool CFileIcon::OpenIconBytes(std::vector<std::uint8_t> file) {
  entries_.clear();
  file_ = std::move(file);
  if (ReadEntries()) return true;
  entries_ = {};
  file_ = {};
  return false;
}

// The data stay where they are: entries may share them, so that a small file can't ask for much memory.
bool CFileIcon::ReadEntries() {
  const PaddedBytes file(file_);
  if (!IsIconHeader(file_)) return false;
  const auto count = static_cast<std::int16_t>(file.U16(4));
  if (static_cast<std::size_t>(count) > (file.Size() - kHeaderBytes) / kEntryBytes) return false;
  entries_.reserve(static_cast<std::size_t>(count));
  for (std::size_t at = kHeaderBytes; std::ssize(entries_) < count; at += kEntryBytes) {
    const std::size_t size = file.U32(at + 8), offset = file.U32(at + 12);
    if (size != 0 && (offset > file.Size() || size > file.Size() - offset)) return false;
    entries_.push_back({file.U8(at), file.U8(at + 1), size != 0 ? offset : 0, size});
  }
  return true;
}

CFileIcon::Entry CFileIcon::EntryAt(Long index) const {
  return index >= 1 && index <= ImageCount() ? entries_[static_cast<std::size_t>(index) - 1] : Entry{};
}

IconDib CFileIcon::ImageOf(const Entry& entry) const {
  return IconDib(std::span(file_).subspan(entry.offset, entry.size));
}

Long CFileIcon::ImageWidth(Long index) const { return EntryAt(index).width; }
Long CFileIcon::ImageHeight(Long index) const { return EntryAt(index).height; }
Long CFileIcon::ImageBitCount(Long index) const { return ImageOf(EntryAt(index)).BitCount(); }

void CFileIcon::DrawImage(HDC dc, Long index, bool mask, Long x, Long y, Long width, Long height,
                          std::uint32_t rop) const {
  PaintImage(dc, index, mask, true, x, y, width, height, rop, false);
}

ObjectRef CFileIcon::PaintImage(HDC dc, Long index, bool mask, bool draw, Long x, Long y, Long width,
                                Long height, std::uint32_t rop, bool keep) const {
  const Entry entry = EntryAt(index);
  Canvas canvas(entry.width, entry.height);
  if (!canvas.Exists()) return nullptr;
  const IconDib image = ImageOf(entry);
  mask ? image.PaintMask(canvas.View()) : image.PaintColour(canvas.View());
  if (draw) Draw(canvas, dc, x, y, width, height, rop);
  return keep ? canvas.Release() : nullptr;
}

IconRef CFileIcon::IconHandleFromImage(HDC dc, Long index) const {
  const auto part = [&](bool mask) { return PaintImage(dc, index, mask, false, 0, 0, 0, 0, SRCCOPY, true); };
  const ObjectRef colours = part(false), mask = part(true);
  return CreateIconIndirect(mask.get(), colours.get());
}

PictureRef CFileIcon::PictureFromImage(HDC dc, Long index) const {
  return PictureFromIconHandle(IconHandleFromImage(dc, index));
}

PictureRef CFileIcon::PictureFromIconHandle(IconRef icon) {
  return OleCreatePictureIndirect(std::move(icon));
}

}  // namespace marklet
