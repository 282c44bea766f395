#include "platform/headless/pixels/raster.h"

#include <algorithm>
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
  // What is there is doubled until the row is full.
  const std::uint8_t bytes[] = {pixel.blue, pixel.green, pixel.red, 0};
  std::memcpy(row, bytes, static_cast<std::size_t>(bytes_per_pixel));
  const auto end = static_cast<std::size_t>(count * bytes_per_pixel);
  for (auto done = static_cast<std::size_t>(bytes_per_pixel); done < end; done *= 2)
    std::memcpy(row + done, row, std::min(done, end - done));
}

// x / 255 to nearest for x up to 255 * 255.
constexpr unsigned DivideBy255(unsigned x) {
  x += 128;
  return (x + (x >> 8)) >> 8;
}

std::uint8_t Towards(std::uint8_t from, std::uint8_t to, unsigned coverage) {
  return static_cast<std::uint8_t>(DivideBy255(from * (255u - coverage) + to * coverage));
}

void BlendRow(std::uint8_t* row, int bytes_per_pixel, const std::uint8_t* coverage, int step,
              std::int64_t count, Pixel pixel) {
  for (; count > 0; --count, row += bytes_per_pixel, coverage += step) {
    const unsigned a = *coverage;
    if (a == 0) continue;
    row[0] = Towards(row[0], pixel.blue, a);
    row[1] = Towards(row[1], pixel.green, a);
    row[2] = Towards(row[2], pixel.red, a);
  }
}

constexpr int kGroup = 8;
using Bytes = std::uint8_t __attribute__((vector_size(8)));
using Words = std::uint16_t __attribute__((vector_size(16)));

Words Widened(const std::uint8_t* bytes) {
  Bytes group;
  std::memcpy(&group, bytes, sizeof group);
  return __builtin_convertvector(group, Words);
}

// Towards for eight bytes at once.
void BlendGroup(std::uint8_t* row, const std::uint8_t* coverage, Words colour) {
  const Words a = Widened(coverage);
  Words sum = Widened(row) * (255 - a) + colour * a + 128;
  sum = (sum + (sum >> 8)) >> 8;
  const Bytes group = __builtin_convertvector(sum, Bytes);
  std::memcpy(row, &group, sizeof group);
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
  const std::uint8_t* source =
      coverage.rows + (visible.top - y) * coverage.stride + (visible.left - x) * coverage.step;
  std::uint8_t* row = surface.At(visible.left, visible.top);
  for (std::int64_t i = visible.Height(); i > 0; --i, source += coverage.stride, row -= surface.stride)
    BlendRow(row, surface.bytes_per_pixel, source, coverage.step, visible.Width(), pixel);
}

ColourBytes::ColourBytes(COLORREF colour, int bytes_per_pixel) {
  const Pixel pixel = PixelOf(colour);
  const std::uint16_t channels[4] = {pixel.blue, pixel.green, pixel.red, 0};
  std::uint16_t* word = &groups[0][0];
  if (bytes_per_pixel == 4)
    for (int i = 0; i < 6; ++i, word += 4) std::copy_n(channels, 4, word);
  else
    for (int i = 0; i < 8; ++i, word += 3) std::copy_n(channels, 3, word);
}

std::ptrdiff_t SpreadStride(Long width, int bytes_per_pixel) {
  return (std::ptrdiff_t{width} * bytes_per_pixel + kGroup - 1) / kGroup * kGroup;
}

void BlendSpread(const Surface& surface, std::int64_t x, std::int64_t y, const Coverage& coverage,
                 const ColourBytes& colour) {
  Words groups[3];
  std::memcpy(groups, colour.groups, sizeof groups);
  const std::uint8_t* source = coverage.rows;
  std::uint8_t* row = surface.At(x, y);
  for (Long i = coverage.height; i > 0; --i, source += coverage.stride, row -= surface.stride)
    for (std::ptrdiff_t at = 0, phase = 0; at < coverage.stride; at += kGroup) {
      BlendGroup(row + at, source + at, groups[phase]);
      phase = phase == 2 ? 0 : phase + 1;
    }
}

}  // namespace marklet::headless
