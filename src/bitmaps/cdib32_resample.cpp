#include <cstddef>
#include <limits>

#include "bitmaps/alpha_resample.h"
#include "bitmaps/cdib32.h"
#include "bitmaps/pixel_loops.h"

namespace marklet {

std::unique_ptr<CDib32> CDib32::ResampleNearest(Long new_width, Long new_height) const {
  if (new_width == 0 && new_height == 0) return nullptr;
  if (new_width == 0) new_width = Width();
  if (new_height == 0) new_height = Height();
  auto resampled = std::make_unique<CDib32>();
  if (!resampled->Create(new_width, new_height) || !HasPixels()) return resampled;
  GdiFlush();
  CopyNearest(View(), resampled->View());
  return resampled;
}

std::unique_ptr<CDib32> CDib32::ResampleArea(Long new_width) const {
  if (Width() == 0) return nullptr;
  auto resampled = std::make_unique<CDib32>();
  const std::int64_t area = std::int64_t{Height()} * new_width;
  const std::int64_t new_height = area / Width() + (area % Width() != 0 ? 1 : 0);
  const bool fits = new_height <= std::numeric_limits<Long>::max();
  if (!fits || !resampled->Create(new_width, static_cast<Long>(new_height)) || !HasPixels()) return resampled;
  GdiFlush();
  AverageArea(View(), resampled->View());
  return resampled;
}

std::unique_ptr<CDib32> CDib32::FlipVertical() const {
  auto flipped = std::make_unique<CDib32>();
  if (!flipped->Create(Width(), Height()) || !HasPixels()) return flipped;
  GdiFlush();
  const PixelView from = View(), to = flipped->View();
  for (Long y = 0; y < from.height; ++y) {
    const std::uint8_t* in = from.Row(y);
    std::uint8_t* out = to.Row(from.height - 1 - y);
    for (Long x = 0; x < from.width; ++x, in += kBytesPerAlphaPixel, out += kBytesPerAlphaPixel) {
      out[0] = in[3];  // the source's blue is lost
      out[1] = in[1], out[2] = in[2], out[3] = in[3];
    }
  }
  return flipped;
}

}  // namespace marklet
