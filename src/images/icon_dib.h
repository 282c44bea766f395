// One image of an icon file as its data stand there: header, palette, colour rows, mask rows.
//
// Data may be cut short anywhere and say anything of themselves. Whatever rows lie whole within them are
// used.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>

#include "platform/gdi.h"
#include "platform/types.h"

namespace marklet {

// The fields of a bitmap's header that count here. biHeight is that of colour and mask together, twice the
// picture's.
struct BITMAPINFOHEADER {
  std::uint32_t biSize = 0;
  Long biWidth = 0, biHeight = 0;
  std::uint16_t biPlanes = 0, biBitCount = 0;
  std::uint32_t biCompression = 0, biClrUsed = 0;
};

// None for data shorter than a header.
std::optional<BITMAPINFOHEADER> ReadHeader(std::span<const std::uint8_t> data);

// Palette entries: biClrUsed when it isn't 0, for any depth; else those that the depth can tell apart.
std::int64_t ColourCountOf(const BITMAPINFOHEADER& header);
// Bytes in front of the colour rows: the header's 40, and 4 for each palette entry.
std::int64_t PaletteSize(const BITMAPINFOHEADER& header);

using IconPalette = std::array<std::array<std::uint8_t, 3>, 256>;  // blue, green, red

class IconDib {
 public:
  explicit IconDib(std::span<const std::uint8_t> data) : data_(data), header_(ReadHeader(data)) {}

  int BitCount() const { return header_ ? header_->biBitCount : 0; }

  // These write the picture onto zeroed pixels of 32 bits, bottom line on bottom line. What isn't there stays
  // 0. Colours of 32 bits bring their alpha; all others have none.
  void PaintColour(const PixelView& to) const;
  // Black and white. The mask is looked for after as many colour rows as `to` has.
  void PaintMask(const PixelView& to) const;

 private:
  struct Rows {
    std::int64_t start;   // of the bottom row, in bytes from the start of the data
    std::int64_t stride;  // bytes
    int bits_per_pixel;
  };

  IconPalette ReadPalette() const;
  void PaintRows(const Rows& rows, const IconPalette& palette, const PixelView& to) const;
  bool ReadRow(std::int64_t start, std::int64_t count, std::uint8_t* row) const;

  std::span<const std::uint8_t> data_;
  std::optional<BITMAPINFOHEADER> header_;
};

}  // namespace marklet
