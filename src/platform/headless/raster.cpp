#include "platform/headless/raster.h"

#include <cstring>

namespace marklet::headless {
namespace {

struct Pixel {
  std::uint8_t blue, green, red;
};

Pixel PixelOf(COLORREF colour) {
  return {static_cast<std::uint8_t>(BlueOf(colour)), static_cast<std::uint8_t>(GreenOf(colour)),
          static_cast<std::uint8_t>(RedOf(colour))};
}

void FillRow(std::uint8_t* row, std::int64_t count, int bytes_per_pixel, Pixel pixel) {
  const bool one_byte = pixel.blue == pixel.green && pixel.green == pixel.red;
  if (one_byte && bytes_per_pixel == 3) {
    std::memset(row, pixel.blue, static_cast<std::size_t>(count) * 3);
    return;
  }
  for (std::int64_t i = 0; i < count; ++i, row += bytes_per_pixel) {
    row[0] = pixel.blue;
    row[1] = pixel.green;
    row[2] = pixel.red;
    if (bytes_per_pixel == 4) row[3] = 0;
  }
}

// x / 255 to nearest for x up to 255 * 255.
constexpr unsigned DivideBy255(unsigned x) {
  x += 128;
  return (x + (x >> 8)) >> 8;
}

std::uint8_t Towards(std::uint8_t from, std::uint8_t to, unsigned coverage) {
  return static_cast<std::uint8_t>(DivideBy255(from * (255u - coverage) + to * coverage));
}

template <int kBytes>
void BlendRow(std::uint8_t* row, const std::uint8_t* coverage, std::int64_t count, Pixel pixel) {
  for (std::int64_t i = 0; i < count; ++i, row += kBytes) {
    const unsigned a = coverage[i];
    if (a == 0) continue;
    row[0] = Towards(row[0], pixel.blue, a);
    row[1] = Towards(row[1], pixel.green, a);
    row[2] = Towards(row[2], pixel.red, a);
  }
}

}  // namespace

void FillBox(const Surface& surface, const Box& box, COLORREF colour) {
  const Box visible = Intersect(box, surface.Bounds());
  if (visible.Empty()) return;
  std::uint8_t* const first = surface.At(visible.left, visible.top);
  const std::int64_t count = visible.Width();
  FillRow(first, count, surface.bytes_per_pixel, PixelOf(colour));
  const auto bytes = static_cast<std::size_t>(count * surface.bytes_per_pixel);
  for (std::int64_t y = visible.top + 1; y < visible.bottom; ++y)
    std::memcpy(surface.At(visible.left, y), first, bytes);
}

void BlendCoverage(const Surface& surface, const Box& clip, std::int64_t x, std::int64_t y,
                   const Coverage& coverage, COLORREF colour) {
  const Box visible =
      Intersect(Intersect({x, y, x + coverage.width, y + coverage.height}, clip), surface.Bounds());
  if (visible.Empty()) return;
  const Pixel pixel = PixelOf(colour);
  const auto blend_row = surface.bytes_per_pixel == 3 ? BlendRow<3> : BlendRow<4>;
  const std::uint8_t* source = coverage.rows + (visible.top - y) * coverage.stride + (visible.left - x);
  std::uint8_t* row = surface.At(visible.left, visible.top);
  for (std::int64_t i = visible.Height(); i > 0; --i, source += coverage.stride, row -= surface.stride)
    blend_row(row, source, visible.Width(), pixel);
}

}  // namespace marklet::headless
