#include <algorithm>
#include <array>
#include <cstring>

#include "base/rounding.h"
#include "bitmaps/cdib24.h"
#include "bitmaps/cdib32.h"
#include "bitmaps/key_out.h"
#include "bitmaps/nearest_axis.h"
#include "bitmaps/pixel_loops.h"

namespace marklet {
namespace {

// The mean of three bytes by their sum.
const std::array<std::uint8_t, 3 * 255 + 1>& Means() {
  static const auto means = [] {
    std::array<std::uint8_t, 3 * 255 + 1> table{};
    for (std::size_t sum = 0; sum < table.size(); ++sum) {
      table[sum] = static_cast<std::uint8_t>(RoundHalfEven(static_cast<double>(sum) / 3.0));
    }
    return table;
  }();
  return means;
}

void NearestStrip(const PixelView& source, const PixelView& destination, Long begin) {
  const Long count = std::min(kStripColumns, destination.width - begin);
  std::array<Long, kStripColumns> offsets;
  const NearestAxis columns(source.width, destination.width);
  for (Long i = 0; i < count; ++i) {
    offsets[static_cast<std::size_t>(i)] = columns.At(begin + i) * kBytesPerPixel;
  }
  const NearestAxis rows(source.height, destination.height);
  const std::uint8_t* former_in = nullptr;
  const std::uint8_t* former_out = nullptr;
  for (Long y = 0; y < destination.height; ++y) {
    const std::uint8_t* in = source.Row(rows.At(y));
    std::uint8_t* out = destination.Row(y) + static_cast<std::ptrdiff_t>(begin) * kBytesPerPixel;
    if (in == former_in) {
      std::memcpy(out, former_out, static_cast<std::size_t>(count) * kBytesPerPixel);
    } else {
      std::uint8_t* pixel = out;
      for (Long i = 0; i < count; ++i, pixel += kBytesPerPixel) {
        std::memcpy(pixel, in + offsets[static_cast<std::size_t>(i)], kBytesPerPixel);
      }
    }
    former_in = in;
    former_out = out;
  }
}

}  // namespace

void CDib24::Grayscale(COLORREF& key) {
  if (key == CLR_INVALID) key = KeyColour;
  if (Bits() == nullptr) return;
  GdiFlush();
  const auto& means = Means();
  const PixelView pixels = View();
  for (Long y = 0; y < Height(); ++y) {
    std::uint8_t* pixel = pixels.Row(y);
    const std::uint8_t* end = pixel + static_cast<std::ptrdiff_t>(Width()) * kBytesPerPixel;
    for (; pixel != end; pixel += kBytesPerPixel) {
      // Always KeyColour's own bytes, never the argument's: images mark their transparent pixels with these.
      if (IsKeyPixel(pixel)) continue;
      const std::uint8_t grey = means[static_cast<std::size_t>(pixel[0] + pixel[1] + pixel[2])];
      pixel[0] = pixel[1] = pixel[2] = grey;
    }
  }
}

void CDib24::KeyOutCorner() {
  if (Bits() != nullptr) KeyOut<CDib32::SameValue>(View());
}
void CDib24::KeyOutCornerFuzzy() {
  if (Bits() != nullptr) KeyOut<CDib32::WithinTolerance>(View());
}

std::unique_ptr<CDib24> CDib24::ResampleNearest(Long new_width, Long new_height) const {
  auto resampled = std::make_unique<CDib24>();
  if (!resampled->Create(new_width, new_height) || Bits() == nullptr) return resampled;
  GdiFlush();
  const PixelView from = View(), to = resampled->View();
  for (Long begin = 0; begin < new_width; begin += kStripColumns) NearestStrip(from, to, begin);
  return resampled;
}

}  // namespace marklet
