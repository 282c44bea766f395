#include <algorithm>
#include <cstdint>

#include "bitmaps/cdib24.h"
#include "bitmaps/keyed_row.h"

namespace marklet {
namespace {

constexpr Long kOutOfMemory = 7;
constexpr COLORREF kLastColour = 0xFFFFFF;

// A rectangle on its way from one surface to another, in pixels of the picture.
struct Passage {
  std::int64_t x, y, source_x, source_y, width, height;

  // Leaves out what lies outside a surface at `at_x`, `at_y`, which are this passage's own.
  void Clip(std::int64_t& at_x, std::int64_t& at_y, Long surface_width, Long surface_height) {
    const std::int64_t left = std::max<std::int64_t>(0, -at_x), top = std::max<std::int64_t>(0, -at_y);
    x += left, source_x += left, width -= left;
    y += top, source_y += top, height -= top;
    width = std::min(width, surface_width - at_x);
    height = std::min(height, surface_height - at_y);
  }
  bool IsEmpty() const { return width <= 0 || height <= 0; }
};

// Within one surface the walk starts at the end that the copy moves towards, so that each pixel is read
// before it is overwritten; else it goes the way that memory goes.
void CopyKeyed(const PixelView& from, const PixelView& to, const Passage& passage, COLORREF key) {
  const KeyedRowCopier copy_row = KeyedRowCopierFor(from.bits_per_pixel, to.bits_per_pixel);
  const KeyBytes key_bytes(key);
  const bool upwards = from.bits != to.bits || passage.y > passage.source_y;
  const bool backwards = passage.x > passage.source_x && from.bits == to.bits;
  const std::int64_t first_row = upwards ? passage.height - 1 : 0;
  const std::uint8_t* const in = from.At(passage.source_x, passage.source_y + first_row);
  std::uint8_t* const out = to.At(passage.x, passage.y + first_row);
  const std::ptrdiff_t in_step = upwards ? from.stride : -from.stride,
                       out_step = upwards ? to.stride : -to.stride;
  for (std::ptrdiff_t i = 0; i < passage.height; ++i)
    copy_row(in + i * in_step, out + i * out_step, passage.width, backwards, key_bytes);
}

}  // namespace

Long TransparentCopy(HDC destination, Long x, Long y, Long width, Long height, HDC source, Long source_x,
                     Long source_y, COLORREF key) {
  if (destination == nullptr || source == nullptr) return 0;
  if (key > kLastColour) {  // no pixel has it
    BitBlt(destination, x, y, width, height, source, source_x, source_y, SRCCOPY);
    return 0;
  }
  Passage passage{x, y, source_x, source_y, width, height};
  PixelView from, to;
  const bool reads_pixels = PixelsOf(source, from), writes_pixels = PixelsOf(destination, to);
  if (reads_pixels) passage.Clip(passage.source_x, passage.source_y, from.width, from.height);
  if (writes_pixels) passage.Clip(passage.x, passage.y, to.width, to.height);
  if (passage.IsEmpty()) return 0;

  // A context that isn't pixels of ours takes part through a copy.
  const auto part_width = static_cast<Long>(passage.width), part_height = static_cast<Long>(passage.height);
  const auto part_x = static_cast<Long>(passage.x), part_y = static_cast<Long>(passage.y);
  CDib24 source_copy, destination_copy;
  if (!reads_pixels) {
    if (!source_copy.Create(part_width, part_height)) return kOutOfMemory;
    source_copy.Clear(key);  // what lies outside the source counts as transparent
    source_copy.LoadFromDC(source, static_cast<Long>(passage.source_x), static_cast<Long>(passage.source_y),
                           part_width, part_height, SRCCOPY);
    GdiFlush();
    from = source_copy.View();
    passage.source_x = passage.source_y = 0;
  }
  if (!writes_pixels) {
    if (!destination_copy.Create(part_width, part_height)) return kOutOfMemory;
    destination_copy.LoadFromDC(destination, part_x, part_y, part_width, part_height, SRCCOPY);
    GdiFlush();
    to = destination_copy.View();
    passage.x = passage.y = 0;
  }
  CopyKeyed(from, to, passage, key);
  if (!writes_pixels) destination_copy.PaintTo(destination, part_x, part_y, -1, -1, 0, 0, SRCCOPY);
  return 0;
}

}  // namespace marklet
