#include "png/scanlines.h"

#include <algorithm>
#include <cstdlib>

namespace marklet::png {
namespace {

using Row = std::span<std::uint8_t>;
using PreviousRow = std::span<const std::uint8_t>;

constexpr std::uint8_t Sum(int a, int b) { return static_cast<std::uint8_t>(a + b); }

// The neighbour that left + upper - upper_left comes nearest to; on a tie the one named first.
int PaethPredictor(int left, int upper, int upper_left) {
  const int to_left = std::abs(upper - upper_left);
  const int to_upper = std::abs(left - upper_left);
  const int to_upper_left = std::abs(left + upper - 2 * upper_left);
  if (to_left <= to_upper && to_left <= to_upper_left) return left;
  return to_upper <= to_upper_left ? upper : upper_left;
}

void UndoSub(Row row, PreviousRow, std::size_t distance) {
  for (std::size_t x = distance; x < row.size(); ++x) row[x] = Sum(row[x], row[x - distance]);
}

void UndoUp(Row row, PreviousRow previous, std::size_t) {
  for (std::size_t x = 0; x < row.size(); ++x) row[x] = Sum(row[x], previous[x]);
}

void UndoAverage(Row row, PreviousRow previous, std::size_t distance) {
  for (std::size_t x = 0; x < row.size(); ++x) {
    const int left = x < distance ? 0 : row[x - distance];
    row[x] = Sum(row[x], (left + previous[x]) >> 1);
  }
}

void UndoPaeth(Row row, PreviousRow previous, std::size_t distance) {
  for (std::size_t x = 0; x < row.size(); ++x) {
    const int left = x < distance ? 0 : row[x - distance];
    const int upper_left = x < distance ? 0 : previous[x - distance];
    row[x] = Sum(row[x], PaethPredictor(left, previous[x], upper_left));
  }
}

// Spreads samples of 1, 2 or 4 bits over a byte each, the high bits of a byte first.
void UnpackRow(PreviousRow row, int depth, Row samples) {
  const auto per_byte = static_cast<std::size_t>(8 / depth);
  const int mask = (1 << depth) - 1;
  for (std::size_t x = 0; x < samples.size(); ++x) {
    const int shift = 8 - depth * static_cast<int>(x % per_byte + 1);
    samples[x] = static_cast<std::uint8_t>(row[x / per_byte] >> shift & mask);
  }
}

// Puts the pixels of a pass's row where they belong in the picture.
void ScatterRow(PreviousRow pixels, std::size_t pitch, std::size_t step, std::uint8_t* to) {
  for (; !pixels.empty(); pixels = pixels.subspan(pitch), to += step * pitch)
    std::copy_n(pixels.begin(), pitch, to);
}

struct PassLayout {
  std::size_t width, height;  // pixels and rows
  std::size_t row_bytes;      // without the filter byte
};

PassLayout LayoutOf(const Adam7Pass& pass, const ScanlineLayout& layout) {
  const auto width = static_cast<std::size_t>(pass.Width(layout.width));
  const auto height = static_cast<std::size_t>(pass.Height(layout.height));
  const std::size_t row_bytes = (width * static_cast<std::size_t>(layout.BitsPerPixel()) + 7) / 8;
  return {width, row_bytes == 0 ? 0 : height, row_bytes};
}

std::size_t InterlacedBytes(const ScanlineLayout& layout) {
  std::size_t total = 0;
  for (const Adam7Pass& pass : kAdam7Passes) {
    const PassLayout rows = LayoutOf(pass, layout);
    total += rows.height * (rows.row_bytes + 1);
  }
  return total;
}

}  // namespace

const std::array<Adam7Pass, 7> kAdam7Passes = {
    {{0, 0, 8, 8}, {4, 0, 8, 8}, {0, 4, 4, 8}, {2, 0, 4, 4}, {0, 2, 2, 4}, {1, 0, 2, 2}, {0, 1, 1, 2}}};

std::int64_t Adam7Pass::Width(Long picture_width) const {
  return picture_width <= x_start ? 0 : (std::int64_t{picture_width} - x_start + x_step - 1) / x_step;
}

std::int64_t Adam7Pass::Height(Long picture_height) const {
  return picture_height <= y_start ? 0 : (std::int64_t{picture_height} - y_start + y_step - 1) / y_step;
}

std::int64_t ScanlineLayout::BitsPerPixel() const {
  constexpr std::int64_t kSamples[] = {1, 0, 3, 1, 2, 0, 4};  // by colour type
  return color_type >= 0 && color_type <= 6 ? depth * kSamples[color_type] : 0;
}

std::int64_t ScanlineLayout::BytesPerPixel() const { return std::max<std::int64_t>(1, BitsPerPixel() / 8); }

std::int64_t ScanlineLayout::RowBytes() const { return (width * BitsPerPixel() + 7) / 8 + 1; }

void UnfilterRow(Row row, PreviousRow previous, std::uint8_t filter, std::size_t distance) {
  using Undo = void (*)(Row, PreviousRow, std::size_t);
  constexpr Undo kUndo[] = {nullptr, UndoSub, UndoUp, UndoAverage, UndoPaeth};
  if (filter > 0 && filter < std::size(kUndo)) kUndo[filter](row, previous, distance);
}

std::vector<std::uint8_t> WithoutLowBytes(std::vector<std::uint8_t> data, const ScanlineLayout& layout,
                                          bool interlaced) {
  std::size_t from = 0, to = 0;
  const auto take = [&](std::size_t rows, std::size_t row_bytes) {
    for (; rows > 0 && data.size() - from > row_bytes; --rows) {
      data[to++] = data[from++];
      for (const std::size_t end = from + row_bytes; from < end; from += 2) data[to++] = data[from];
    }
    return rows == 0;
  };
  bool enough = true;
  if (!interlaced)
    enough = take(static_cast<std::size_t>(layout.height), static_cast<std::size_t>(layout.RowBytes()) - 1);
  else
    for (const Adam7Pass& pass : kAdam7Passes) {
      const PassLayout rows = LayoutOf(pass, layout);
      enough = enough && take(rows.height, rows.row_bytes);
    }
  data.resize(enough ? to : 0);
  return data;
}

std::vector<std::uint8_t> UnfilterImage(std::vector<std::uint8_t> data, const ScanlineLayout& layout) {
  const auto row_bytes = static_cast<std::size_t>(layout.RowBytes()) - 1;
  const auto height = static_cast<std::size_t>(layout.height);
  if (data.size() / (row_bytes + 1) < height) return {};
  const std::vector<std::uint8_t> zeros(row_bytes);
  PreviousRow previous = zeros;
  for (std::size_t y = 0; y < height; ++y) {
    const std::uint8_t* const source = data.data() + y * (row_bytes + 1);
    const std::uint8_t filter = *source;
    const Row row = Row(data).subspan(y * row_bytes, row_bytes);
    std::copy_n(source + 1, row_bytes, row.begin());  // downwards by y + 1 bytes
    UnfilterRow(row, previous, filter, static_cast<std::size_t>(layout.BytesPerPixel()));
    previous = row;
  }
  data.resize(height * row_bytes);
  return data;
}

std::vector<std::uint8_t> Deinterlace(std::vector<std::uint8_t> data, const ScanlineLayout& layout) {
  if (data.size() < InterlacedBytes(layout)) return {};
  const auto pitch = static_cast<std::size_t>(layout.BytesPerPixel());
  const std::size_t stride = static_cast<std::size_t>(layout.width) * pitch;
  const auto height = static_cast<std::size_t>(layout.height);
  std::vector<std::uint8_t> image;
  image.reserve((stride + 3) / 4 * 4 * height);  // as long as the bitmap's rows will be
  image.resize(stride * height);
  Row source(data);
  for (const Adam7Pass& pass : kAdam7Passes) {
    const PassLayout rows = LayoutOf(pass, layout);
    const std::vector<std::uint8_t> zeros(rows.row_bytes);
    std::vector<std::uint8_t> samples(layout.BitsPerPixel() < 8 ? rows.width : 0);
    PreviousRow previous = zeros;
    for (std::size_t y = 0; y < rows.height; ++y, source = source.subspan(rows.row_bytes + 1)) {
      const Row row = source.subspan(1, rows.row_bytes);
      UnfilterRow(row, previous, source[0], pitch);
      previous = row;
      if (!samples.empty()) UnpackRow(row, layout.depth, samples);
      const std::size_t to_row =
          static_cast<std::size_t>(pass.y_start) + y * static_cast<std::size_t>(pass.y_step);
      ScatterRow(samples.empty() ? row : Row(samples), pitch, static_cast<std::size_t>(pass.x_step),
                 image.data() + to_row * stride + static_cast<std::size_t>(pass.x_start) * pitch);
    }
  }
  return image;
}

}  // namespace marklet::png
