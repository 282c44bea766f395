#include "png/true_colour.h"

#include <algorithm>

#include "base/rows.h"
#include "png/scanlines.h"

namespace marklet::png {

TrueColourPicture::TrueColourPicture(const PixelFormat& format, Long width, Long height, RowOrder order)
    : format_(format),
      filter_bytes_(order == RowOrder::kBare ? 0 : 1),
      stride_(static_cast<std::size_t>(width) * kPixelBytes),
      height_(static_cast<std::size_t>(height)) {
  const auto size = [](auto number) { return static_cast<std::size_t>(number); };
  if (order != RowOrder::kAdam7) {
    AddPass({0, 0, 1, 1, size(width), height_});
    return;
  }
  for (const Adam7Pass& pass : kAdam7Passes)
    AddPass({size(pass.x_start), size(pass.y_start), size(pass.x_step), size(pass.y_step),
             size(pass.Width(width)), size(pass.Height(height))});
}

// A pass without pixels has no filter bytes either.
void TrueColourPicture::AddPass(const Pass& pass) {
  if (pass.width == 0 || pass.height == 0) return;
  passes_[pass_count_++] = pass;
  total_bytes_ += pass.height * ScanlineBytes(pass);
  longest_scanline_ = std::max(longest_scanline_, ScanlineBytes(pass));
}

void TrueColourPicture::Start(std::uint8_t* bits) {
  bits_ = bits;
  pass_ = 0;
  row_ = 0;
}

std::size_t TrueColourPicture::Take(std::span<const std::uint8_t> data) {
  std::size_t used = 0;
  for (; !complete(); ++pass_, row_ = 0) {
    const Pass& pass = passes_[pass_];
    const std::size_t scanline_bytes = ScanlineBytes(pass);
    while (row_ < pass.height) {
      const std::span<const std::uint8_t> rest = data.subspan(used);
      if (rest.size() < scanline_bytes) return used;
      const std::size_t rows = IsPaethPair(rest, pass) ? 2 : 1;
      rows == 2 ? TakePaethPair(rest.data(), pass) : TakeScanline(rest.data(), pass);
      row_ += rows;
      used += rows * scanline_bytes;
    }
  }
  return used;
}

bool TrueColourPicture::IsPaethPair(std::span<const std::uint8_t> data, const Pass& pass) const {
  const std::size_t scanline_bytes = ScanlineBytes(pass);
  return filter_bytes_ != 0 && row_ > 0 && pass.height - row_ >= 2 && data.size() >= 2 * scanline_bytes &&
         data[0] == kPaethFilter && data[scanline_bytes] == kPaethFilter;
}

PixelRun TrueColourPicture::NextRun(const Pass& pass) const {
  const std::size_t y = pass.y_start + row_ * pass.y_step;
  std::uint8_t* const to = LineFromTop(bits_, height_, stride_, y) + pass.x_start * kPixelBytes;
  return {to, row_ == 0 ? nullptr : to + pass.y_step * stride_, pass.width, pass.x_step * kPixelBytes};
}

void TrueColourPicture::TakeScanline(const std::uint8_t* scanline, const Pass& pass) {
  const std::uint8_t filter = filter_bytes_ == 0 ? std::uint8_t{0} : scanline[0];
  UnfilterToBgra(format_, filter, scanline + filter_bytes_, NextRun(pass));
}

void TrueColourPicture::TakePaethPair(const std::uint8_t* scanlines, const Pass& pass) {
  const std::uint8_t* const upper = scanlines + filter_bytes_;
  const PixelRun run = NextRun(pass);
  UnfilterPaethPairToBgra(format_, upper, upper + ScanlineBytes(pass), run, run.to - pass.y_step * stride_);
}

}  // namespace marklet::png
