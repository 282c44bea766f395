// The palettes of pictures with at most 8 bits a pixel, and the bitmap that such a picture becomes.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/types.h"

namespace marklet::png {

struct PaletteEntry {
  std::uint8_t blue = 0, green = 0, red = 0, zero = 0;
  friend bool operator==(const PaletteEntry&, const PaletteEntry&) = default;
};

// A bitmap as its header, palette and bits tell it; no bits for "none".
struct BitmapRecord {
  Long width = 0, height = 0;
  int bit_count = 0;
  bool top_down = false;
  Long colours_used = 0;
  std::vector<PaletteEntry> palette;
  std::vector<std::uint8_t> bits;  // rows on four-byte strides
};

// What outlives each decoder and is overwritten by the next one of the thread.
struct ModPng {
  std::array<PaletteEntry, 2> palette1{};
  std::array<PaletteEntry, 16> palette4{};
  std::array<PaletteEntry, 256> palette8{};
  // Where pictures of 1, 4 and 8 bits end: nobody takes them from here.
  BitmapRecord PendingBitmap;
};
ModPng& Mod();  // one per thread

// A gray ramp as red, green, blue triples, which also goes to a slot: `expanded` tells that samples below 8
// bits have been spread over one byte each.
std::vector<std::uint8_t> GrayPalette(Long depth, bool expanded);
// 1 for black then white, 0 for white then black.
void DefaultPalette1(int kind);

// Fill a slot from "PLTE": as many bytes as there are, then zeros. The 1-bit slot wants exactly 6 bytes and
// takes black and white otherwise.
void SetPalette1(std::span<const std::uint8_t> palette_bytes);
void SetPalette4(std::span<const std::uint8_t> palette_bytes);
void SetPalette8(std::span<const std::uint8_t> palette_bytes);

// The colour that a "bKGD" payload names; 0 when it breaks a rule.
COLORREF ParseBackground(std::span<const std::uint8_t> payload, Long color_type, Long bit_depth,
                         std::span<const std::uint8_t> palette_bytes);

}  // namespace marklet::png
