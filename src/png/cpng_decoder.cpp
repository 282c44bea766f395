#include "png/cpng_decoder.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <stdexcept>
#include <utility>

#include "base/rows.h"
#include "platform/file.h"
#include "png/indexed.h"

namespace marklet {
namespace {

using png::InflateWindow;

constexpr std::size_t kZlibHeader = 2;
constexpr std::int64_t kLongest = std::numeric_limits<Long>::max();

// Memory for inflated rows: all of them if they are few; otherwise a piece of them at a time, small enough to
// stay in the processor's cache.
class RowMemory {
 public:
  RowMemory(std::size_t size, std::size_t longest_scanline)
      : kept_(std::max(InflateWindow::kHistory, longest_scanline)),
        full_(std::min(size, kept_ + std::max(kPiece, longest_scanline))) {
    const std::size_t bytes = full_ + InflateWindow::kLongestMatch + InflateWindow::kSpill;
    if (bytes > small_.size()) memory_.reset(new (std::nothrow) std::uint8_t[bytes]);
    // The decoder must find its limit itself, so a window that holds everything never gets full.
    window_.full = full_ == size ? size + InflateWindow::kLongestMatch : full_;
    window_.data = bytes > small_.size() ? memory_.get() : small_.data();
  }
  bool allocated() const { return window_.data != nullptr; }
  InflateWindow& window() { return window_; }
  std::span<const std::uint8_t> unread() const { return {window_.data + read_, window_.position - read_}; }
  void MarkRead(std::size_t bytes) { read_ += bytes; }
  // Drops what neither a match nor a reader can want.
  void MakeRoom() {
    const std::size_t keep = std::max(InflateWindow::kHistory, window_.position - read_);
    if (keep >= window_.position) return;
    const std::size_t drop = window_.position - keep;
    std::memmove(window_.data, window_.data + drop, keep);
    window_.position = keep;
    window_.dropped += drop;
    read_ -= drop;
  }

 private:
  static constexpr std::size_t kPiece = 2 * InflateWindow::kHistory;

  std::size_t kept_, full_;
  std::unique_ptr<std::uint8_t[]> memory_;
  std::array<std::uint8_t, 5000> small_;  // instead, for an icon of 32 pixels
  InflateWindow window_;
  std::size_t read_ = 0;  // bytes of the window that became pixels
};

}  // namespace

void CPngDecoder::LoadFromFile(std::u16string_view path) {
  std::vector<std::uint8_t> file;
  if (ReadOrCreateFile(path, file, png::HasSignature)) LoadFromMemory(file);
}

// What can't be had memory for is no picture.
void CPngDecoder::LoadFromMemory(Bytes file) {
  try {
    Decode(file);
  } catch (const std::bad_alloc&) {
  } catch (const std::length_error&) {
  }
  fields_.IdatBytes = {};
}

void CPngDecoder::ReleaseBitmap() { DetachBitmap().reset(); }

ObjectRef CPngDecoder::DetachBitmap() {
  bits_ = nullptr;
  return ObjectRef(std::exchange(bitmap_, nullptr));
}

void CPngDecoder::Decode(Bytes file) {
  fields_.HasTransparency = false;
  if (png::WalkChunks(file, inflater_, fields_)) DecodeImage();
}

png::ScanlineLayout CPngDecoder::Layout() const {
  return {fields_.Width, fields_.Height, fields_.ColorType, fields_.BitDepth};
}

// The bytes that the rows are expected to take, or a bound of them.
std::int64_t CPngDecoder::InflatedSize() const {
  const std::int64_t rows = Layout().RowBytes() * fields_.Height;
  switch (fields_.InterlaceMethod) {
    case 0:
      return rows;
    case 1:
      return rows + fields_.Height;
    default:
      return 0;
  }
}

void CPngDecoder::DecodeImage() {
  const std::int64_t width = fields_.Width, height = fields_.Height;
  if (fields_.IdatBytes.size() <= kZlibHeader || width < 1 || height < 1) return;
  if (Layout().RowBytes() + 4 > kLongest / (height + 1)) return;  // more than numbers and memory are made for
  const Bytes stream = fields_.IdatBytes.subspan(kZlibHeader);    // the header may say what it likes
  ReleaseBitmap();
  if (const png::PixelFormat* format = png::FindPixelFormat(fields_.ColorType, fields_.BitDepth))
    DecodeTrueColour(stream, *format);
  else
    DecodeOther(stream);
}

// ---- pictures that reach a caller ----

void CPngDecoder::DecodeTrueColour(Bytes stream, const png::PixelFormat& format) {
  constexpr png::RowOrder kOrders[] = {png::RowOrder::kPlain, png::RowOrder::kAdam7, png::RowOrder::kBare};
  png::TrueColourPicture picture(format, fields_.Width, fields_.Height,
                                 kOrders[std::min<Long>(fields_.InterlaceMethod, 2)]);
  // A size that the data can't reach costs nothing.
  if (picture.total_bytes() > png::MostInflated(stream.size())) return;
  if (!DataReach(stream, picture.total_bytes())) return;
  const bool inflated = fields_.CompressionMethod == 0 && InflateRows(stream, picture);
  // A stream without usable codes goes on as it is, like one of an unknown method.
  if (!inflated && picture.total_bytes() <= stream.size() && StartPicture(picture)) picture.Take(stream);
  if (!picture.complete()) return ReleaseBitmap();

  // The last byte of the bitmap's data is lost on the way, and stays 0. With alpha that is the top right
  // pixel's; without, the data are three bytes a pixel from the top on, and a row may end in padding instead.
  const auto pixels = static_cast<std::size_t>(fields_.Width) * static_cast<std::size_t>(fields_.Height);
  if (format.has_alpha)
    bits_[4 * pixels - 1] = 0;
  else if (fields_.Width % 4 == 0)
    bits_[4 * static_cast<std::size_t>(fields_.Width) - 2] = 0;
}

// Whether a stream of far fewer bytes than rows holds them all. Memory is taken for the whole picture, so
// that it is counted first: twice the time is cheaper here than memory for what never comes.
bool CPngDecoder::DataReach(Bytes stream, std::size_t rows) const {
  constexpr std::uint64_t kFree = std::uint64_t{16} << 20, kUsualRatio = 16;
  if (rows <= std::max(kFree, kUsualRatio * stream.size())) return true;
  if (fields_.CompressionMethod != 0) return false;
  png::Inflater counting;
  counting.TakeTraces(inflater_);
  const auto measured = png::Measure(counting, stream, static_cast<std::size_t>(InflatedSize()));
  return measured && *measured >= rows;
}

// False if the stream counts as not inflated at all.
bool CPngDecoder::InflateRows(Bytes stream, png::TrueColourPicture& picture) {
  using Outcome = png::Inflater::Outcome;
  const auto size = static_cast<std::size_t>(InflatedSize());
  RowMemory memory(size + png::Inflater::kSlack + 1, picture.longest_scanline());
  if (!memory.allocated()) return true;
  inflater_.Start(stream, size);
  for (;;) {
    const Outcome outcome = inflater_.Run(memory.window());
    if (outcome == Outcome::kBadTables) return false;
    const bool more = outcome == Outcome::kFull;
    if (!bits_) {
      const bool enough = more || memory.unread().size() >= picture.total_bytes();
      if (!enough || !StartPicture(picture)) return true;
    }
    memory.MarkRead(picture.Take(memory.unread()));
    if (!more) return true;
    memory.MakeRoom();
  }
}

bool CPngDecoder::StartPicture(png::TrueColourPicture& picture) {
  if (!bitmap_) bitmap_ = CreateDIBSection(nullptr, fields_.Width, fields_.Height, 32, bits_);
  if (bitmap_) picture.Start(bits_);
  return bitmap_ != nullptr;
}

// ---- pictures that don't ----

void CPngDecoder::DecodeOther(Bytes stream) {
  const png::ScanlineLayout layout = Layout();
  const bool indexed = png::IsIndexed(layout.color_type, layout.depth);
  const bool colour = layout.color_type == 2 || layout.color_type == 4 || layout.color_type == 6;
  const bool raw = colour && (layout.depth == 24 || layout.depth == 32);
  if (!indexed && !raw) return;

  std::vector<std::uint8_t> rows;
  const bool inflated = fields_.CompressionMethod == 0 &&
                        png::InflateAll(inflater_, stream, static_cast<std::size_t>(InflatedSize()), rows);
  if (!inflated) rows.assign(stream.begin(), stream.end());
  rows = BareRows(std::move(rows));
  if (rows.empty()) return;
  if (raw) return DeliverRaw(rows);
  png::BuildIndexed(std::move(rows), layout, fields_.InterlaceMethod == 1, fields_.PaletteBytes);
}

// Rows without filter bytes, and the high bytes alone of 16-bit samples; none if there are too few.
std::vector<std::uint8_t> CPngDecoder::BareRows(std::vector<std::uint8_t> rows) const {
  png::ScanlineLayout layout = Layout();
  const bool has_scanlines = fields_.InterlaceMethod <= 1, interlaced = fields_.InterlaceMethod == 1;
  if (layout.depth == 16) {
    layout.depth = 8;
    if (has_scanlines)
      rows = png::WithoutLowBytes(std::move(rows), Layout(), interlaced);
    else
      png::ReduceTo8Bits(rows);
  }
  if (!has_scanlines) return rows;
  return interlaced ? png::Deinterlace(std::move(rows), layout) : png::UnfilterImage(std::move(rows), layout);
}

// Depths of 24 and 32 bits don't exist for a sample, but a bitmap has them: the bytes become its rows as they
// are, top-down with 24 bits and bottom-up with 32.
void CPngDecoder::DeliverRaw(std::vector<std::uint8_t>& rows) {
  const auto height = static_cast<std::size_t>(fields_.Height);
  const auto stride = static_cast<std::size_t>(DibStride(fields_.Width, fields_.BitDepth));
  if (rows.size() / stride < height) return;
  bitmap_ = CreateDIBSection(nullptr, fields_.Width, fields_.Height, 32, bits_);
  if (!bitmap_) return;
  rows.back() = 0;  // lost like that of any other picture
  if (fields_.BitDepth == 32) {
    std::memcpy(bits_, rows.data(), stride * height);
    return;
  }
  const PixelView view = {bits_, fields_.Width, fields_.Height, 4 * fields_.Width, 32};
  for (Long y = 0; y < view.height; ++y) {
    const std::uint8_t* from = rows.data() + static_cast<std::size_t>(y) * stride;
    std::uint8_t* to = view.At(0, y);
    for (Long x = 0; x < view.width; ++x, from += 3, to += 4) {
      std::memcpy(to, from, 3);
      to[3] = 255;
    }
  }
}

}  // namespace marklet
