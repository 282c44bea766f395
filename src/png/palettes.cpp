#include "png/palettes.h"

#include <algorithm>
#include <cmath>

#include "base/byte_reader.h"
#include "base/rounding.h"

namespace marklet::png {
namespace {

using Bytes = std::span<const std::uint8_t>;

// Triples of red, green and blue to entries; missing bytes are 0.
void FillSlot(std::span<PaletteEntry> slot, Bytes triples) {
  const PaddedBytes bytes(triples);
  for (std::size_t entry = 0; entry < slot.size(); ++entry)
    slot[entry] = {bytes.U8(3 * entry + 2), bytes.U8(3 * entry + 1), bytes.U8(3 * entry), 0};
}

// Where a gray ramp goes; nothing for a depth that has no slot.
std::span<PaletteEntry> SlotOfRamp(Long depth, bool expanded) {
  ModPng& mod = Mod();
  switch (depth) {
    case 1:
      return expanded ? std::span(mod.palette8).first(2) : std::span<PaletteEntry>();
    case 2:
      return std::span(mod.palette8).first(4);
    case 4:
      return expanded ? std::span(mod.palette8).first(16) : std::span(mod.palette4);
    case 8:
      return mod.palette8;
    default:
      return {};
  }
}

COLORREF TripleAt(Bytes triples, std::size_t index) {
  if (triples.size() < 3 * index + 3) return 0;
  return MakeRgb(triples[3 * index], triples[3 * index + 1], triples[3 * index + 2]);
}

COLORREF GrayBackground(Bytes payload, Long bit_depth) {
  if (payload.size() != 2) return 0;
  const unsigned level = PaddedBytes(payload).BigU16(0);
  if (level > std::exp2(bit_depth) - 1) return 0;
  return TripleAt(GrayPalette(bit_depth, false), level);
}

COLORREF RgbBackground(Bytes payload, Long bit_depth) {
  const double highest = std::exp2(bit_depth) - 1;
  if (payload.size() != 6 || highest < 1) return 0;
  const auto level = [&](std::size_t offset) {
    const std::int32_t value = RoundHalfEven(PaddedBytes(payload).BigU16(offset) / highest * 255);
    return static_cast<unsigned>(std::min(value, 255));
  };
  return MakeRgb(level(0), level(2), level(4));
}

COLORREF IndexedBackground(Bytes payload, Bytes palette_bytes) {
  // The bound is the palette's highest byte index less one, not its count of colours.
  if (payload.size() != 1 || payload[0] + 2u > palette_bytes.size()) return 0;
  return TripleAt(palette_bytes, payload[0]);
}

}  // namespace

ModPng& Mod() {
  thread_local ModPng mod;
  return mod;
}

std::vector<std::uint8_t> GrayPalette(Long depth, bool expanded) {
  const bool has_ramp = depth == 1 || depth == 2 || depth == 4 || depth == 8 || depth == 16;
  if (!has_ramp) return {};
  const std::size_t count = std::size_t{1} << std::min(depth, 8);
  const auto step = static_cast<std::size_t>(RoundHalfEven(255.0 / static_cast<double>(count - 1)));
  std::vector<std::uint8_t> triples(3 * count);
  for (std::size_t entry = 0; entry < count; ++entry)
    std::fill_n(triples.begin() + static_cast<std::ptrdiff_t>(3 * entry), 3,
                static_cast<std::uint8_t>(entry * step));
  FillSlot(SlotOfRamp(depth, expanded), triples);
  return triples;
}

void DefaultPalette1(int kind) {
  constexpr PaletteEntry kBlack{}, kWhite{255, 255, 255, 0};
  Mod().palette1 = {kind == 1 ? kBlack : kWhite, kind == 1 ? kWhite : kBlack};
}

void SetPalette1(Bytes palette_bytes) {
  if (palette_bytes.size() != 6) return DefaultPalette1(1);
  FillSlot(Mod().palette1, palette_bytes);
}

void SetPalette4(Bytes palette_bytes) { FillSlot(Mod().palette4, palette_bytes); }

void SetPalette8(Bytes palette_bytes) { FillSlot(Mod().palette8, palette_bytes); }

COLORREF ParseBackground(Bytes payload, Long color_type, Long bit_depth, Bytes palette_bytes) {
  switch (color_type) {
    case 0:
    case 4:
      return GrayBackground(payload, bit_depth);
    case 2:
    case 6:
      return RgbBackground(payload, bit_depth);
    case 3:
      return IndexedBackground(payload, palette_bytes);
    default:
      return 0;
  }
}

}  // namespace marklet::png
