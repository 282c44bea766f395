#include "images/bits.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

#include "base/rows.h"
#include "bitmaps/pixel_loops.h"

namespace marklet {
namespace {

void CopyPixel(const std::uint8_t* from, Long from_channels, std::uint8_t* to, Long to_channels) {
  std::memcpy(to, from, 3);
  if (to_channels == 4) to[3] = from_channels == 4 ? from[3] : std::uint8_t{0};
}

void CopyRow(const std::uint8_t* from, Long from_channels, std::uint8_t* to, Long to_channels, Long pixels) {
  if (from_channels == to_channels) {
    std::memcpy(to, from, static_cast<std::size_t>(pixels) * static_cast<std::size_t>(to_channels));
    return;
  }
  for (Long i = 0; i < pixels; ++i, from += from_channels, to += to_channels)
    CopyPixel(from, from_channels, to, to_channels);
}

// The part of a rectangle that lies on the pixels of a context.
struct Overlap {
  Long left, top, width, height;  // left and top within the rectangle
};
Overlap OverlapOf(const PixelView& view, Long x, Long y, Long width, Long height) {
  const auto part = [](std::int64_t at, std::int64_t size, std::int64_t limit) {
    const std::int64_t start = std::max<std::int64_t>(0, -at), end = std::min(size, limit - at);
    return std::pair{static_cast<Long>(std::min(start, size)),
                     static_cast<Long>(std::max<std::int64_t>(0, end - start))};
  };
  const auto [left, across] = part(x, width, view.width);
  const auto [top, down] = part(y, height, view.height);
  return {left, top, across, down};
}

void FillWithKey(std::vector<std::uint8_t>& bytes) {
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = kKeyBytes[i % 3];
}

}  // namespace

ByteArray GetBits(HDC dc, Long x, Long y, Long width, Long height, Long channels) {
  if (width < 1 || height < 1) return {};
  const std::int64_t stride = std::int64_t{width} * channels;
  ByteArray array{{{0, channels}, {0, width}, {0, height}}, {}};
  array.bytes.resize(static_cast<std::size_t>(stride * height));
  PixelView view;
  const bool readable = PixelsOf(dc, view);
  const Overlap part = readable ? OverlapOf(view, x, y, width, height) : Overlap{};
  if (channels == 3 && (part.width < width || part.height < height)) FillWithKey(array.bytes);
  for (Long line = part.top; line < part.top + part.height; ++line) {
    std::uint8_t* const row = LineFromTop(array.bytes.data(), height, stride, std::int64_t{line}) +
                              std::ptrdiff_t{part.left} * channels;
    CopyRow(view.At(x + part.left, y + line), view.bits_per_pixel / 8, row, channels, part.width);
  }
  return array;
}

bool PutBits(HDC dc, Long x, Long y, Long width, Long height, const ByteArray& bytes, Long channels) {
  if (width < 1 || height < 1) return false;
  const std::int64_t stride = DibStride(width, std::int64_t{8} * channels);
  if (static_cast<std::int64_t>(bytes.bytes.size()) / stride < height) return false;
  PixelView view;
  if (!PixelsOf(dc, view)) return false;
  const Overlap part = OverlapOf(view, x, y, width, height);
  for (Long line = part.top; line < part.top + part.height; ++line) {
    const std::uint8_t* const row = LineFromTop(bytes.bytes.data(), height, stride, std::int64_t{line}) +
                                    std::ptrdiff_t{part.left} * channels;
    CopyRow(row, channels, view.At(x + part.left, y + line), view.bits_per_pixel / 8, part.width);
  }
  return true;
}

}  // namespace marklet
