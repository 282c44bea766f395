#include "png/bgra_rows.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <cstring>
#include <iterator>

namespace marklet::png {
namespace {

static_assert(std::endian::native == std::endian::little,
              "pixels are handled as 32-bit numbers, blue lowest");

constexpr std::uint32_t kOpaque = 0xFF000000;
constexpr std::size_t kPixelBytes = 4;

inline void StorePixel(std::uint8_t* to, std::uint32_t pixel) { std::memcpy(to, &pixel, sizeof pixel); }

// ---- spreading; the numbers are the offsets of a colour in a pixel of `bytes` ----

constexpr std::size_t kNoAlpha = 99;

template <std::size_t bytes, std::size_t blue, std::size_t green, std::size_t red, std::size_t alpha>
inline void SpreadBy(std::size_t step, const std::uint8_t* from, std::uint32_t fill, const PixelRun& run) {
  std::uint8_t* to = run.to;
  for (std::size_t x = 0; x < run.count; ++x, from += bytes, to += step) {
    std::uint32_t top = fill;
    if constexpr (alpha != kNoAlpha) top = std::uint32_t{from[alpha]} << 24;
    StorePixel(to, from[blue] | std::uint32_t{from[green]} << 8 | std::uint32_t{from[red]} << 16 | top);
  }
}

template <std::size_t... offsets>
void Spread(const std::uint8_t* from, std::uint32_t fill, const PixelRun& run) {
  if (run.step == kPixelBytes) return SpreadBy<offsets...>(kPixelBytes, from, fill, run);
  SpreadBy<offsets...>(run.step, from, fill, run);
}

constexpr PixelFormat kFormats[] = {
    {2, 8, 3, kOpaque, Spread<3, 2, 1, 0, kNoAlpha>},
    {2, 16, 6, kOpaque, Spread<6, 4, 2, 0, kNoAlpha>},
    {4, 8, 2, 0, Spread<2, 0, 0, 0, 1>},
    {4, 16, 4, 0, Spread<4, 0, 0, 0, 2>},
    {6, 8, 4, 0, Spread<4, 2, 1, 0, 3>},
    {6, 16, 8, 0, Spread<8, 4, 2, 0, 6>},
};

// ---- filters, undone in place ----

void UndoSub(const PixelRun& run, std::uint32_t border) {
  std::uint8_t left[kPixelBytes];
  std::memcpy(left, &border, kPixelBytes);
  std::uint8_t* to = run.to;
  for (std::size_t x = 0; x < run.count; ++x, to += run.step)
    for (std::size_t c = 0; c < kPixelBytes; ++c)
      left[c] = to[c] = static_cast<std::uint8_t>(to[c] + left[c]);
}

void UndoUp(const PixelRun& run, std::uint32_t) {
  if (run.step == kPixelBytes) {
    for (std::size_t i = 0; i < run.count * kPixelBytes; ++i)
      run.to[i] = static_cast<std::uint8_t>(run.to[i] + run.above[i]);
    return;
  }
  for (std::size_t x = 0; x < run.count * run.step; x += run.step)
    for (std::size_t c = 0; c < kPixelBytes; ++c)
      run.to[x + c] = static_cast<std::uint8_t>(run.to[x + c] + run.above[x + c]);
}

// `above` gives the pixel above at a distance from the first one.
template <typename Above>
inline void UndoAverageUnder(Above above, const PixelRun& run, std::uint32_t border) {
  std::uint8_t left[kPixelBytes];
  std::memcpy(left, &border, kPixelBytes);
  for (std::size_t x = 0; x < run.count * run.step; x += run.step)
    for (std::size_t c = 0; c < kPixelBytes; ++c)
      left[c] = run.to[x + c] = static_cast<std::uint8_t>(run.to[x + c] + (left[c] + above(x)[c]) / 2);
}

void UndoAverage(const PixelRun& run, std::uint32_t border) {
  UndoAverageUnder([&](std::size_t x) { return run.above + x; }, run, border);
}

void UndoAverageOnTop(const PixelRun& run, std::uint32_t border) {
  const auto* const pixel = reinterpret_cast<const std::uint8_t*>(&border);
  UndoAverageUnder([&](std::size_t) { return pixel; }, run, border);
}

inline int PaethPredictor(int left, int upper, int upper_left) {
  const int to_left = std::abs(upper - upper_left);
  const int to_upper = std::abs(left - upper_left);
  const int to_upper_left = std::abs(left + upper - 2 * upper_left);
  const int second = to_upper <= to_upper_left ? upper : upper_left;
  return to_left <= std::min(to_upper, to_upper_left) ? left : second;
}

void UndoPaeth(const PixelRun& run, std::uint32_t border) {
  std::uint8_t left[kPixelBytes], upper_left[kPixelBytes];
  std::memcpy(left, &border, kPixelBytes);
  std::memcpy(upper_left, &border, kPixelBytes);
  for (std::size_t x = 0; x < run.count * run.step; x += run.step)
    for (std::size_t c = 0; c < kPixelBytes; ++c) {
      const std::uint8_t upper = run.above[x + c];
      left[c] = run.to[x + c] =
          static_cast<std::uint8_t>(run.to[x + c] + PaethPredictor(left[c], upper, upper_left[c]));
      upper_left[c] = upper;
    }
}

using Undo = void (*)(const PixelRun& run, std::uint32_t border);
constexpr Undo kUndo[] = {nullptr, UndoSub, UndoUp, UndoAverage, UndoPaeth};
// The row above the first is the border; Up adds nothing then, and Paeth always takes the pixel to the left.
constexpr Undo kUndoOnTop[] = {nullptr, UndoSub, nullptr, UndoAverageOnTop, UndoSub};

}  // namespace

const PixelFormat* FindPixelFormat(Long color_type, Long depth) {
  const auto format =
      std::find_if(std::begin(kFormats), std::end(kFormats), [&](const PixelFormat& candidate) {
        return candidate.color_type == color_type && candidate.depth == depth;
      });
  return format == std::end(kFormats) ? nullptr : format;
}

void UnfilterToBgra(const PixelFormat& format, std::uint8_t filter, const std::uint8_t* scanline,
                    const PixelRun& run) {
  const Undo* const known = run.above ? kUndo : kUndoOnTop;
  const Undo undo = filter < std::size(kUndo) ? known[filter] : nullptr;
  format.spread(scanline, undo ? 0 : format.border, run);
  if (undo) undo(run, format.border);
}

}  // namespace marklet::png
