#include "render/png_writer.h"

#include <cstdlib>
#include <span>
#include <string_view>
#include <utility>

#include "base/byte_order.h"
#include "base/crc32.h"
#include "render/deflate.h"

namespace marklet {
namespace {

using Bytes = std::vector<std::uint8_t>;

void AppendChunk(Bytes& file, std::string_view type, const Bytes& data) {
  AppendBigEndian(file, static_cast<std::uint32_t>(data.size()));
  const std::size_t start = file.size();
  file.insert(file.end(), type.begin(), type.end());
  file.insert(file.end(), data.begin(), data.end());
  AppendBigEndian(file, Crc32(std::span(file).subspan(start)));
}

// --- Filters ----------------------------------------------------------------------------------------------

// What a filter subtracts, from the neighbours to the left, above, and above to the left.
using Predictor = int (*)(int left, int up, int up_left);
int PredictNone(int, int, int) { return 0; }
int PredictSub(int left, int, int) { return left; }
int PredictUp(int, int up, int) { return up; }
int PredictAverage(int left, int up, int) { return (left + up) / 2; }
int PredictPaeth(int left, int up, int up_left) {
  const int estimate = left + up - up_left;
  const int to_left = std::abs(estimate - left), to_up = std::abs(estimate - up),
            to_up_left = std::abs(estimate - up_left);
  if (to_left <= to_up && to_left <= to_up_left) return left;
  return to_up <= to_up_left ? up : up_left;
}
constexpr Predictor kPredictors[] = {PredictNone, PredictSub, PredictUp, PredictAverage, PredictPaeth};

// `step` is the bytes of a pixel.
Bytes Filter(Predictor predict, const Bytes& row, const Bytes& above, std::size_t step) {
  Bytes result(row.size());
  for (std::size_t i = 0; i < row.size(); ++i) {
    const bool first = i < step;
    const int left = first ? 0 : row[i - step];
    const int up = above.empty() ? 0 : above[i];
    const int up_left = first || above.empty() ? 0 : above[i - step];
    result[i] = static_cast<std::uint8_t>(row[i] - predict(left, up, up_left));
  }
  return result;
}

// The usual guess at what compresses best: bytes read as signed, the smaller their sum the better.
std::uint64_t Cost(const Bytes& filtered) {
  std::uint64_t sum = 0;
  for (const std::uint8_t byte : filtered) sum += byte < 128 ? byte : 256u - byte;
  return sum;
}

void AppendFiltered(Bytes& data, const Bytes& row, const Bytes& above, std::size_t step) {
  Bytes best;
  std::size_t best_filter = 0;
  for (std::size_t filter = 0; filter < std::size(kPredictors); ++filter) {
    Bytes filtered = Filter(kPredictors[filter], row, above, step);
    if (filter > 0 && Cost(filtered) >= Cost(best)) continue;
    best = std::move(filtered);
    best_filter = filter;
  }
  data.push_back(static_cast<std::uint8_t>(best_filter));
  data.insert(data.end(), best.begin(), best.end());
}

// A row as the file has it: with alpha, where there is any, after each pixel's colours.
Bytes RowOf(const Picture& picture, Long y) {
  const auto colours = picture.Row(y);
  if (picture.alpha.empty()) return {colours.begin(), colours.end()};
  Bytes row;
  const auto* alpha = picture.alpha.data() + static_cast<std::ptrdiff_t>(y) * picture.width;
  for (std::size_t at = 0; at < colours.size(); at += 3)
    row.insert(row.end(), {colours[at], colours[at + 1], colours[at + 2], *alpha++});
  return row;
}

Bytes FilteredRows(const Picture& picture) {
  Bytes data, above;
  const std::size_t step = picture.alpha.empty() ? 3 : 4;
  data.reserve(static_cast<std::size_t>(picture.height) *
               (static_cast<std::size_t>(picture.width) * step + 1));
  for (Long y = 0; y < picture.height; ++y) {
    Bytes row = RowOf(picture, y);
    AppendFiltered(data, row, above, step);
    above = std::move(row);
  }
  return data;
}

}  // namespace

Bytes EncodePng(const Picture& picture, std::uint32_t pixels_per_metre) {
  Bytes header;
  AppendBigEndian(header, static_cast<std::uint32_t>(picture.width));
  AppendBigEndian(header, static_cast<std::uint32_t>(picture.height));
  const std::uint8_t type = picture.alpha.empty() ? 2 : 6;
  header.insert(header.end(), {8, type, 0, 0, 0});  // 8 bits, deflate, the five filters, not interlaced
  Bytes density;
  AppendBigEndian(density, pixels_per_metre);
  AppendBigEndian(density, pixels_per_metre);
  density.push_back(1);  // the unit is the metre

  Bytes file = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
  AppendChunk(file, "IHDR", header);
  AppendChunk(file, "pHYs", density);
  AppendChunk(file, "IDAT", ZlibCompress(FilteredRows(picture)));
  AppendChunk(file, "IEND", {});
  return file;
}

}  // namespace marklet
