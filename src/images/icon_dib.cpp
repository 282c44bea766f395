#include "images/icon_dib.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "base/byte_reader.h"
#include "base/rows.h"

namespace marklet {
namespace {

constexpr std::int64_t kHeaderBytes = 40, kPaletteEntryBytes = 4;
constexpr std::uint32_t kUncompressed = 0;

std::int64_t RowBytes(std::int64_t pixels, int bits_per_pixel) { return (pixels * bits_per_pixel + 7) / 8; }

void Put(std::uint8_t* pixel, unsigned blue, unsigned green, unsigned red, unsigned alpha = 0) {
  pixel[0] = static_cast<std::uint8_t>(blue);
  pixel[1] = static_cast<std::uint8_t>(green);
  pixel[2] = static_cast<std::uint8_t>(red);
  pixel[3] = static_cast<std::uint8_t>(alpha);
}

// One row of a file to pixels of 32 bits.
using Unpacker = void (*)(const std::uint8_t* row, Long pixels, const IconPalette& palette,
                          std::uint8_t* out);

// The leftmost pixel is in a byte's high bits.
template <int kBits>
void UnpackIndexed(const std::uint8_t* row, Long pixels, const IconPalette& palette, std::uint8_t* out) {
  constexpr Long kPerByte = 8 / kBits;
  constexpr unsigned kMask = (1u << kBits) - 1;
  for (Long x = 0; x < pixels; ++x, out += 4) {
    const unsigned shift = static_cast<unsigned>(8 - kBits - x % kPerByte * kBits);
    const auto& colour = palette[row[x / kPerByte] >> shift & kMask];
    Put(out, colour[0], colour[1], colour[2]);
  }
}

// Five bits a channel, widened by repeating the highest.
void Unpack16(const std::uint8_t* row, Long pixels, const IconPalette&, std::uint8_t* out) {
  const auto widened = [](unsigned five) { return (five & 31) << 3 | (five & 31) >> 2; };
  for (Long x = 0; x < pixels; ++x, row += 2, out += 4) {
    const unsigned pixel = LoadLittleEndian<std::uint16_t>(row);
    Put(out, widened(pixel), widened(pixel >> 5), widened(pixel >> 10));
  }
}

void Unpack24(const std::uint8_t* row, Long pixels, const IconPalette&, std::uint8_t* out) {
  for (Long x = 0; x < pixels; ++x, row += 3, out += 4) Put(out, row[0], row[1], row[2]);
}

void Unpack32(const std::uint8_t* row, Long pixels, const IconPalette&, std::uint8_t* out) {
  std::memcpy(out, row, static_cast<std::size_t>(pixels) * 4);
}

// What an uncompressed bitmap may have; anything else isn't drawn.
struct Depth {
  int bits;
  Unpacker unpack;
};
constexpr Depth kDepths[] = {{1, UnpackIndexed<1>}, {4, UnpackIndexed<4>}, {8, UnpackIndexed<8>},
                             {16, Unpack16},        {24, Unpack24},        {32, Unpack32}};

Unpacker UnpackerFor(int bits) {
  for (const Depth& depth : kDepths)
    if (depth.bits == bits) return depth.unpack;
  return nullptr;
}

}  // namespace

std::optional<BITMAPINFOHEADER> ReadHeader(std::span<const std::uint8_t> data) {
  if (data.size() < static_cast<std::size_t>(kHeaderBytes)) return std::nullopt;
  const PaddedBytes header(data);
  return BITMAPINFOHEADER{header.U32(0),  header.I32(4),  header.I32(8), header.U16(12),
                          header.U16(14), header.U32(16), header.U32(32)};
}

std::int64_t ColourCountOf(const BITMAPINFOHEADER& header) {
  if (header.biClrUsed != 0) return header.biClrUsed;
  for (const int indexed : {1, 4, 8})
    if (header.biBitCount == indexed) return std::int64_t{1} << indexed;
  return 0;
}

std::int64_t PaletteSize(const BITMAPINFOHEADER& header) {
  return kHeaderBytes + kPaletteEntryBytes * ColourCountOf(header);
}

// The data count as one byte longer than the file says, and that byte as 0.
bool IconDib::ReadRow(std::int64_t start, std::int64_t count, std::uint8_t* row) const {
  const auto size = static_cast<std::int64_t>(data_.size());
  if (start < 0 || start > size || count > size + 1 - start) return false;
  const std::int64_t there = std::min(count, size - start);
  if (there > 0) std::memcpy(row, data_.data() + start, static_cast<std::size_t>(there));
  if (there < count) row[there] = 0;
  return true;
}

IconPalette IconDib::ReadPalette() const {
  IconPalette palette{};
  const std::int64_t count = std::min<std::int64_t>(ColourCountOf(*header_), 256);
  std::uint8_t entry[kPaletteEntryBytes];
  for (std::int64_t i = 0; i < count; ++i) {
    if (!ReadRow(kHeaderBytes + i * kPaletteEntryBytes, kPaletteEntryBytes, entry)) break;
    std::copy_n(entry, 3, palette[static_cast<std::size_t>(i)].begin());
  }
  return palette;
}

void IconDib::PaintRows(const Rows& rows, const IconPalette& palette, const PixelView& to) const {
  const Unpacker unpack = UnpackerFor(rows.bits_per_pixel);
  if (unpack == nullptr || header_->biWidth < 1) return;
  const Long width = std::min(to.width, header_->biWidth);
  const Long height = std::min(to.height, header_->biHeight / 2);
  const std::int64_t bytes = RowBytes(width, rows.bits_per_pixel);
  std::vector<std::uint8_t> row(static_cast<std::size_t>(bytes));
  for (Long y = 0; y < height; ++y)
    if (ReadRow(rows.start + y * rows.stride, bytes, row.data()))
      unpack(row.data(), width, palette, to.Row(y));
}

void IconDib::PaintColour(const PixelView& to) const {
  if (!header_ || header_->biSize != kHeaderBytes || header_->biCompression != kUncompressed) return;
  const int bits = header_->biBitCount;
  PaintRows({PaletteSize(*header_), DibStride(header_->biWidth, bits), bits}, ReadPalette(), to);
}

// Planes take part in finding the mask, and in nothing else.
void IconDib::PaintMask(const PixelView& to) const {
  if (!header_ || header_->biSize != kHeaderBytes || header_->biWidth < 1) return;
  const std::int64_t bits = std::int64_t{header_->biBitCount} * header_->biPlanes * header_->biWidth;
  const auto past_data = static_cast<std::int64_t>(data_.size()) + 1;  // a row longer than this has no end
  const std::int64_t start = to.height * std::min(DibStride(bits, 1), past_data) + PaletteSize(*header_);
  PaintRows({start, DibStride(header_->biWidth, 1), 1}, {{{0, 0, 0}, {255, 255, 255}}}, to);
}

}  // namespace marklet
