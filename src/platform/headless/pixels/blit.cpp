// Copies and blends between contexts.
#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

#include "base/byte_order.h"
#include "platform/gdi.h"
#include "platform/headless/pixels/device_context.h"
#include "platform/headless/recorder/hook.h"

namespace marklet {
namespace {

using headless::Box;
using headless::Operation;
using headless::Refused;
using headless::Surface;

// A blit after clipping: where it starts on both surfaces, and its size.
struct Clipped {
  std::int64_t x, y, source_x, source_y, width, height;
};

// Leaves out what lies outside either surface. The size is zero or less when nothing remains.
Clipped ClipToBoth(const Surface& to, Long x, Long y, Long width, Long height, const Surface& from,
                   Long source_x, Long source_y) {
  const std::int64_t dx = std::int64_t{source_x} - x, dy = std::int64_t{source_y} - y;
  const Box wanted = {x, y, std::int64_t{x} + width, std::int64_t{y} + height};
  const Box readable = {-dx, -dy, from.width - dx, from.height - dy};
  const Box box = Intersect(Intersect(wanted, to.Bounds()), readable);
  return {box.left, box.top, box.left + dx, box.top + dy, box.Width(), box.Height()};
}

// One row from `from` to `to`, `count` pixels. The rows may overlap only where both are of one depth.
using RowCombiner = void (*)(std::uint8_t* to, const std::uint8_t* from, std::int64_t count);

void CopyRow3(std::uint8_t* to, const std::uint8_t* from, std::int64_t count) {
  std::memmove(to, from, static_cast<std::size_t>(count) * 3);
}
void CopyRow4(std::uint8_t* to, const std::uint8_t* from, std::int64_t count) {
  std::memmove(to, from, static_cast<std::size_t>(count) * 4);
}

// Combines channel by channel. Between depths the alpha that isn't there counts as 0.
template <int kTo, int kFrom, typename Combine>
void CombineRow(std::uint8_t* to, const std::uint8_t* from, std::int64_t count, Combine combine) {
  for (std::int64_t i = 0; i < count; ++i, to += kTo, from += kFrom) {
    for (int channel = 0; channel < 3; ++channel) to[channel] = combine(to[channel], from[channel]);
    if constexpr (kTo == 4) to[3] = combine(to[3], kFrom == 4 ? from[3] : std::uint8_t{0});
  }
}

struct Copy {
  std::uint8_t operator()(std::uint8_t, std::uint8_t s) const { return s; }
};
struct And {
  std::uint8_t operator()(std::uint8_t d, std::uint8_t s) const { return d & s; }
};
struct Xor {
  std::uint8_t operator()(std::uint8_t d, std::uint8_t s) const { return d ^ s; }
};
struct NotCopy {
  std::uint8_t operator()(std::uint8_t, std::uint8_t s) const { return static_cast<std::uint8_t>(~s); }
};

template <int kTo, int kFrom, typename Combine>
void Row(std::uint8_t* to, const std::uint8_t* from, std::int64_t count) {
  CombineRow<kTo, kFrom>(to, from, count, Combine{});
}

// Without alpha, four pixels at a time.
void NarrowRow(std::uint8_t* to, const std::uint8_t* from, std::int64_t count) {
  const auto pixel = [&from](int at) {
    return LoadLittleEndian<std::uint32_t>(from + std::ptrdiff_t{4} * at);
  };
  for (; count >= 4; count -= 4, to += 12, from += 16) {
    const std::uint32_t second = pixel(1), third = pixel(2);
    const std::uint32_t words[] = {(pixel(0) & 0xFFFFFF) | second << 24, (second >> 8 & 0xFFFF) | third << 16,
                                   (third >> 16 & 0xFF) | pixel(3) << 8};
    for (int word = 0; word < 3; ++word) StoreLittleEndian(to + std::ptrdiff_t{4} * word, words[word]);
  }
  Row<3, 4, Copy>(to, from, count);
}

struct RasterOperation {
  std::uint32_t rop;
  RowCombiner rows[2][2];  // by depth of destination and source: three bytes, four bytes
};

template <typename Combine>
constexpr RasterOperation Combining(std::uint32_t rop) {
  return {rop, {{Row<3, 3, Combine>, Row<3, 4, Combine>}, {Row<4, 3, Combine>, Row<4, 4, Combine>}}};
}

constexpr RasterOperation kRasterOperations[] = {
    {SRCCOPY, {{CopyRow3, NarrowRow}, {Row<4, 3, Copy>, CopyRow4}}},
    Combining<And>(SRCAND),
    Combining<Xor>(SRCINVERT),
    Combining<NotCopy>(NOTSRCCOPY),
};

RowCombiner CombinerFor(std::uint32_t rop, const Surface& to, const Surface& from) {
  for (const RasterOperation& operation : kRasterOperations)
    if (operation.rop == rop) return operation.rows[to.bytes_per_pixel - 3][from.bytes_per_pixel - 3];
  return nullptr;
}

// Whether rows must go from the last to the first, so that an overlapping copy reads before it writes.
bool RunsBackwards(const Surface& to, const Surface& from, const Clipped& area) {
  return to.bits == from.bits && area.y > area.source_y;
}

// A row that reads what it has just written goes through a copy of itself.
bool OverlapsInRow(const Surface& to, const Surface& from, const Clipped& area) {
  return to.bits == from.bits && area.y == area.source_y && area.x > area.source_x;
}

void CombineArea(const Surface& to, const Surface& from, const Clipped& area, RowCombiner combine) {
  std::vector<std::uint8_t> copy;
  if (OverlapsInRow(to, from, area)) copy.resize(static_cast<std::size_t>(area.width * from.bytes_per_pixel));
  const bool backwards = RunsBackwards(to, from, area);
  for (std::int64_t i = 0; i < area.height; ++i) {
    const std::int64_t row = backwards ? area.height - 1 - i : i;
    const std::uint8_t* source = from.At(area.source_x, area.source_y + row);
    if (!copy.empty()) {
      std::memcpy(copy.data(), source, copy.size());
      source = copy.data();
    }
    combine(to.At(area.x, area.y + row), source, area.width);
  }
}

// A quotient of a pixel's products, rounded to nearest.
std::uint8_t Rounded(unsigned products, unsigned divisor) {
  return static_cast<std::uint8_t>(std::min(255u, (products + divisor / 2) / divisor));
}

// The source's colours hold its alpha already, so that they and the rest of the destination share one
// rounding, in 255ths of 255ths.
void BlendPixel(std::uint8_t* to, int to_bytes, const std::uint8_t* from, unsigned constant) {
  constexpr unsigned kWhole = 255 * 255;
  const unsigned rest = kWhole - from[3] * constant;
  for (int channel = 0; channel < to_bytes; ++channel)
    to[channel] = Rounded(from[channel] * constant * 255 + to[channel] * rest, kWhole);
}

void MixPixel(std::uint8_t* to, int to_bytes, const std::uint8_t* from, unsigned constant) {
  const auto mix = [constant](unsigned d, unsigned s) {
    return Rounded(s * constant + d * (255 - constant), 255);
  };
  for (int channel = 0; channel < 3; ++channel) to[channel] = mix(to[channel], from[channel]);
  if (to_bytes == 4) to[3] = mix(to[3], 255);
}

bool InsideSource(const Surface& from, Long source_x, Long source_y, Long width, Long height) {
  return width >= 0 && height >= 0 && source_x >= 0 && source_y >= 0 &&
         std::int64_t{source_x} + width <= from.width && std::int64_t{source_y} + height <= from.height;
}

}  // namespace

bool BitBlt(HDC destination, Long x, Long y, Long width, Long height, HDC source, Long source_x,
            Long source_y, std::uint32_t rop) {
  if (Refused(Operation::kBitBlt, destination, x, y, width, height, source, source_x, source_y, rop))
    return false;
  if (destination == nullptr || source == nullptr) return false;
  const Surface &to = destination->surface, &from = source->surface;
  if (to.bits == nullptr || from.bits == nullptr) return true;
  const RowCombiner combine = CombinerFor(rop, to, from);
  if (combine == nullptr) return false;
  const Clipped area = ClipToBoth(to, x, y, width, height, from, source_x, source_y);
  if (area.width > 0 && area.height > 0) CombineArea(to, from, area, combine);
  return true;
}

int SetStretchBltMode(HDC dc, int mode) {
  if (Refused(Operation::kSetStretchBltMode, dc, mode) || dc == nullptr) return 0;
  return std::exchange(dc->stretch_mode, mode);
}

bool StretchBlt(HDC destination, Long x, Long y, Long width, Long height, HDC source, Long source_x,
                Long source_y, Long source_width, Long source_height, std::uint32_t rop) {
  if (Refused(Operation::kStretchBlt, destination, x, y, width, height, source, source_x, source_y,
              source_width, source_height, rop))
    return false;
  if (destination == nullptr || source == nullptr || width < 0 || height < 0) return false;
  const Surface &to = destination->surface, &from = source->surface;
  if (!InsideSource(from, source_x, source_y, source_width, source_height)) return false;
  if (to.bits == nullptr || to.bits == from.bits) return to.bits == nullptr;
  const RowCombiner combine = CombinerFor(rop, to, from);
  if (combine == nullptr) return false;
  const Box area = Intersect({x, y, std::int64_t{x} + width, std::int64_t{y} + height}, to.Bounds());
  if (area.Empty() || source_width == 0 || source_height == 0) return true;
  const std::ptrdiff_t bytes = from.bytes_per_pixel;
  std::vector<std::uint8_t> sampled(static_cast<std::size_t>(area.Width() * bytes));
  for (std::int64_t row = area.top; row < area.bottom; ++row) {
    const std::int64_t source_row = source_y + (row - y) * source_height / height;
    std::uint8_t* out = sampled.data();
    for (std::int64_t column = area.left; column < area.right; ++column, out += bytes)
      std::copy_n(from.At(source_x + (column - x) * source_width / width, source_row), bytes, out);
    combine(to.At(area.left, row), sampled.data(), area.Width());
  }
  return true;
}

bool AlphaBlend(HDC destination, Long x, Long y, Long width, Long height, HDC source, Long source_x,
                Long source_y, Long source_width, Long source_height, std::uint8_t constant_alpha,
                bool use_source_alpha) {
  if (Refused(Operation::kAlphaBlend, destination, x, y, width, height, source, source_x, source_y,
              source_width, source_height, constant_alpha, use_source_alpha))
    return false;
  if (destination == nullptr || source == nullptr || width < 0 || height < 0) return false;
  const Surface &to = destination->surface, &from = source->surface;
  if (!InsideSource(from, source_x, source_y, source_width, source_height)) return false;
  if (use_source_alpha && from.bytes_per_pixel != 4) return false;
  if (to.bits == nullptr || to.bits == from.bits) return to.bits == nullptr;
  if (source_width == 0 || source_height == 0) return true;
  const auto blend = use_source_alpha ? BlendPixel : MixPixel;
  const Box area = Intersect({x, y, std::int64_t{x} + width, std::int64_t{y} + height}, to.Bounds());
  for (std::int64_t row = area.top; row < area.bottom; ++row) {
    std::uint8_t* d = to.At(area.left, row);
    const std::int64_t source_row = source_y + (row - y) * source_height / height;
    for (std::int64_t column = area.left; column < area.right; ++column, d += to.bytes_per_pixel) {
      const std::int64_t source_column = source_x + (column - x) * source_width / width;
      blend(d, to.bytes_per_pixel, from.At(source_column, source_row), constant_alpha);
    }
  }
  return true;
}

}  // namespace marklet
