#include "png/indexed.h"

#include <algorithm>
#include <cstring>

#include "base/rows.h"
#include "png/palettes.h"

namespace marklet::png {
namespace {

using Bytes = std::span<const std::uint8_t>;

struct Picture {
  std::vector<std::uint8_t>& data;
  const ScanlineLayout& layout;

  // Of 16-bit samples only the high bytes are there.
  std::size_t RowBytes() const {
    const ScanlineLayout kept{layout.width, layout.height, layout.color_type,
                              std::min<Long>(layout.depth, 8)};
    return static_cast<std::size_t>(kept.RowBytes()) - 1;
  }
  std::size_t Stride(Long bits) const { return static_cast<std::size_t>(DibStride(layout.width, bits)); }
  void Align(Long bits, std::size_t row_bytes) const {
    AlignRows(data, layout.height, row_bytes, Stride(bits));
  }
};

// ---- gray ----

void GrayPlain(Picture picture) {
  const Long depth = picture.layout.depth;
  GrayPalette(depth, false);
  picture.Align(depth, picture.RowBytes());
  // Depths 1 and 4 are aligned again, as if the rows still lay close.
  if (depth < 8) picture.Align(depth, picture.RowBytes());
}
void GrayInterlaced(Picture picture) { GrayPalette(picture.layout.depth, true); }
void Gray2Plain(Picture picture) {
  GrayPalette(2, false);
  Unpack2BitRows(picture.data, picture.layout.width, picture.layout.height, picture.RowBytes());
}
void Gray2Interlaced(Picture) { GrayPalette(2, false); }
void Gray16(Picture) { GrayPalette(8, false); }

// ---- palette ----

void PalettePlain(Picture picture) { picture.Align(picture.layout.depth, picture.RowBytes()); }
void PaletteInterlaced(Picture picture) { picture.Align(8, static_cast<std::size_t>(picture.layout.width)); }
void Palette2Plain(Picture picture) {
  Unpack2BitRows(picture.data, picture.layout.width, picture.layout.height, picture.RowBytes());
}

// One kind of picture: what happens to its rows, and the bits of the bitmap that comes out.
struct Route {
  Long color_type, depth;
  bool interlaced;
  void (*convert)(Picture picture);
  int bits;
};

constexpr Route kRoutes[] = {
    {0, 1, false, GrayPlain, 1},     {0, 1, true, GrayInterlaced, 8},
    {0, 2, false, Gray2Plain, 8},    {0, 2, true, Gray2Interlaced, 8},
    {0, 4, false, GrayPlain, 4},     {0, 4, true, GrayInterlaced, 8},
    {0, 8, false, GrayPlain, 8},     {0, 8, true, GrayInterlaced, 8},
    {0, 16, false, Gray16, 8},       {0, 16, true, Gray16, 8},
    {3, 1, false, PalettePlain, 1},  {3, 1, true, PaletteInterlaced, 8},
    {3, 2, false, Palette2Plain, 8}, {3, 2, true, PaletteInterlaced, 8},
    {3, 4, false, PalettePlain, 4},  {3, 4, true, PaletteInterlaced, 8},
    {3, 8, false, PalettePlain, 8},  {3, 8, true, PaletteInterlaced, 8},
};

const Route* FindRoute(Long color_type, Long depth, bool interlaced) {
  const auto route = std::find_if(std::begin(kRoutes), std::end(kRoutes), [&](const Route& candidate) {
    return candidate.color_type == color_type && candidate.depth == depth &&
           candidate.interlaced == interlaced;
  });
  return route == std::end(kRoutes) ? nullptr : route;
}

// ---- the bitmap ----

void SetPalette(int bits, bool from_file, Bytes palette_bytes) {
  if (bits == 1) return from_file ? SetPalette1(palette_bytes) : DefaultPalette1(1);
  if (!from_file) return;  // a gray ramp is there already
  return bits == 4 ? SetPalette4(palette_bytes) : SetPalette8(palette_bytes);
}

std::span<const PaletteEntry> Slot(int bits) {
  const ModPng& mod = Mod();
  if (bits == 1) return mod.palette1;
  return bits == 4 ? std::span<const PaletteEntry>(mod.palette4) : mod.palette8;
}

// Takes no more memory than that.
void Resize(std::vector<std::uint8_t>& data, std::size_t size) {
  data.reserve(size);
  data.resize(size);
}

}  // namespace

// In place, so that no more than one picture is there: from the last row up, which so moves onto no other.
void AlignRows(std::vector<std::uint8_t>& data, Long height, std::size_t row_bytes, std::size_t stride) {
  if (row_bytes == stride) return;
  Resize(data, static_cast<std::size_t>(height) * stride);
  for (auto y = static_cast<std::size_t>(height); y-- > 0;) {
    std::uint8_t* const row = data.data() + y * stride;
    std::memmove(row, data.data() + y * row_bytes, row_bytes);
    std::memset(row + row_bytes, 0, stride - row_bytes);
  }
}

void ReduceTo8Bits(std::vector<std::uint8_t>& data) {
  for (std::size_t sample = 0; sample < data.size() / 2; ++sample) data[sample] = data[2 * sample];
  data.resize(data.size() / 2);
}

void Unpack2BitRows(std::vector<std::uint8_t>& data, Long width, Long height, std::size_t row_bytes) {
  const auto stride = static_cast<std::size_t>(DibStride(width, 8));
  std::vector<std::uint8_t> samples(static_cast<std::size_t>(height) * stride);
  for (std::size_t y = 0; y < static_cast<std::size_t>(height); ++y)
    for (std::size_t x = 0; x < static_cast<std::size_t>(width); ++x)
      samples[y * stride + x] = data[y * row_bytes + x / 4] >> (6 - 2 * (x % 4)) & 3;
  data = std::move(samples);
}

bool IsIndexed(Long color_type, Long depth) { return FindRoute(color_type, depth, false) != nullptr; }

void BuildIndexed(std::vector<std::uint8_t> rows, const ScanlineLayout& layout, bool interlaced,
                  Bytes palette_bytes) {
  const Route* const route = FindRoute(layout.color_type, layout.depth, interlaced);
  if (!route) return;
  // Rows under an interlace method that doesn't exist are as many as they are.
  const Picture picture{rows, layout};
  if (!interlaced && rows.size() / picture.RowBytes() < static_cast<std::size_t>(layout.height)) return;
  route->convert(picture);
  SetPalette(route->bits, layout.color_type == 3, palette_bytes);
  Resize(rows, static_cast<std::size_t>(DibStride(layout.width, route->bits) * layout.height));
  const std::span<const PaletteEntry> slot = Slot(route->bits);
  Mod().PendingBitmap = {layout.width,   layout.height, route->bits, true, 0, {slot.begin(), slot.end()},
                         std::move(rows)};
}

}  // namespace marklet::png
