#include "platform/shared/picture_header.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <string_view>

namespace marklet {
namespace {

// A file of which any byte may be asked for: those behind its end are 0.
class Reader {
 public:
  explicit Reader(std::span<const std::uint8_t> file) : file_(file) {}

  std::size_t Size() const { return file_.size(); }
  unsigned Byte(std::size_t at) const { return at < file_.size() ? file_[at] : 0; }
  unsigned Word(std::size_t at) const { return Byte(at) | Byte(at + 1) << 8; }
  unsigned BigWord(std::size_t at) const { return Byte(at) << 8 | Byte(at + 1); }
  std::uint32_t Dword(std::size_t at) const { return Word(at) | Word(at + 2) << 16; }
  std::int64_t Signed(std::size_t at) const { return static_cast<std::int32_t>(Dword(at)); }
  bool StartsWith(std::string_view text) const {
    return file_.size() >= text.size() &&
           std::equal(text.begin(), text.end(), file_.begin(),
                      [](char a, std::uint8_t b) { return static_cast<std::uint8_t>(a) == b; });
  }

 private:
  std::span<const std::uint8_t> file_;
};

bool IsPlausible(std::int64_t width, std::int64_t height, std::size_t bytes) {
  if (width < 1 || height < 1 || width > kMostPixels / height) return false;
  return width * height <= std::max(kFreePixels, kPixelsPerByte * static_cast<std::int64_t>(bytes));
}

// --- BMP --------------------------------------------------------------------------------------------------

// Loaders take memory by these too.
bool CheckBmpOffsets(const Reader& file) {
  constexpr std::size_t kPixels = 10, kHeader = 14, kColoursUsed = 46;
  const bool old = file.Dword(kHeader) < kColoursUsed + 4 - kHeader;
  return file.Dword(kPixels) <= file.Size() && file.Dword(kHeader) <= file.Size() &&
         (old || file.Dword(kColoursUsed) <= file.Size());
}

bool CheckBmp(const Reader& file) {
  constexpr std::size_t kInfo = 14;
  constexpr std::uint32_t kCoreHeader = 12, kInfoHeader = 40, kPlain = 0, kBitFields = 3;
  const std::uint32_t header = file.Dword(kInfo);
  const bool core = header == kCoreHeader;
  if ((!core && header < kInfoHeader) || !CheckBmpOffsets(file)) return false;
  const std::int64_t width = core ? file.Word(kInfo + 4) : file.Signed(kInfo + 4);
  const std::int64_t height = core ? file.Word(kInfo + 6) : std::abs(file.Signed(kInfo + 8));
  const unsigned bits = file.Word(kInfo + (core ? 10u : 14u));
  const std::uint32_t compression = core ? kPlain : file.Dword(kInfo + 16);
  if (!IsPlausible(width, height, file.Size())) return false;
  if (compression != kPlain && compression != kBitFields) return true;
  return (width * bits + 31) / 32 * 4 * height <= static_cast<std::int64_t>(file.Size());
}

// --- GIF --------------------------------------------------------------------------------------------------

constexpr unsigned kGifExtension = 0x21, kGifImage = 0x2C, kGifTrailer = 0x3B;

std::size_t ColourTableBytes(unsigned flags) {
  return (flags & 0x80) != 0 ? std::size_t{3} << ((flags & 7) + 1) : 0;
}

std::size_t BehindSubBlocks(const Reader& file, std::size_t at) {
  while (file.Byte(at) != 0) at += file.Byte(at) + 1;
  return at + 1;
}

// Where the first frame begins; the file's size if it has none.
std::size_t FindFrame(const Reader& file) {
  std::size_t at = 13 + ColourTableBytes(file.Byte(10));
  while (file.Byte(at) == kGifExtension) at = BehindSubBlocks(file, at + 2);
  return file.Byte(at) == kGifImage ? at : file.Size();
}

bool CheckGif(const Reader& file) {
  const std::size_t frame = FindFrame(file);
  if (frame >= file.Size()) return false;
  const std::int64_t width = std::max(file.Word(6), file.Word(frame + 1) + file.Word(frame + 5));
  const std::int64_t height = std::max(file.Word(8), file.Word(frame + 3) + file.Word(frame + 7));
  return IsPlausible(width, height, file.Size());
}

// --- JPG --------------------------------------------------------------------------------------------------

bool IsStartOfFrame(unsigned marker) {
  return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

// Every scan goes over all pixels, and can be a few bytes long.
bool HasFewScans(const Reader& file, std::size_t at) {
  constexpr int kMostScans = 256;
  int scans = 0;
  for (; at < file.Size(); ++at)
    if (file.Byte(at) == 0xFF && file.Byte(at + 1) == 0xDA) ++scans;
  return scans <= kMostScans;
}

bool CheckJpeg(const Reader& file) {
  for (std::size_t at = 2; at + 9 <= file.Size();) {
    if (file.Byte(at) != 0xFF) return false;
    const unsigned marker = file.Byte(at + 1);
    if (marker == 0xFF) {  // a filler
      ++at;
      continue;
    }
    if (IsStartOfFrame(marker))
      return IsPlausible(file.BigWord(at + 7), file.BigWord(at + 5), file.Size()) && HasFewScans(file, at);
    at += 2 + file.BigWord(at + 2);
  }
  return false;
}

// --- CUR --------------------------------------------------------------------------------------------------

// A cursor's image is a bitmap of twice its height, or a whole PNG.
bool CheckCursorImage(const Reader& file, std::size_t at) {
  constexpr std::uint32_t kInfoHeader = 40, kPng = 0x474E5089;
  constexpr std::int64_t kLongestSide = 256;
  const bool png = file.Dword(at) == kPng;
  if (!png && file.Dword(at) != kInfoHeader) return false;
  const std::int64_t width = png ? file.BigWord(at + 16) << 16 | file.BigWord(at + 18) : file.Signed(at + 4);
  const std::int64_t height =
      png ? file.BigWord(at + 20) << 16 | file.BigWord(at + 22) : std::abs(file.Signed(at + 8)) / 2;
  return width >= 1 && height >= 1 && width <= kLongestSide && height <= kLongestSide;
}

bool CheckCursor(const Reader& file) {
  const unsigned count = file.Word(4);
  if (count == 0 || 6 + std::size_t{16} * count > file.Size()) return false;
  for (unsigned i = 0; i < count; ++i) {
    const std::size_t entry = 6 + std::size_t{16} * i;
    const std::size_t size = file.Dword(entry + 8), offset = file.Dword(entry + 12);
    if (offset > file.Size() || size > file.Size() - offset) return false;
    if (!CheckCursorImage(file, offset)) return false;
  }
  return true;
}

// --- All --------------------------------------------------------------------------------------------------

struct Format {
  std::string_view signature;
  PictureKind kind;
  bool (*check)(const Reader& file);
};
constexpr Format kFormats[] = {
    {"BM", PictureKind::kBmp, CheckBmp},
    {"GIF87a", PictureKind::kGif, CheckGif},
    {"GIF89a", PictureKind::kGif, CheckGif},
    {"\xFF\xD8\xFF", PictureKind::kJpeg, CheckJpeg},
    {std::string_view("\0\0\1\0", 4), PictureKind::kCursor, CheckCursor},
    {std::string_view("\0\0\2\0", 4), PictureKind::kCursor, CheckCursor},
};

}  // namespace

std::optional<PictureKind> CheckPictureFile(std::span<const std::uint8_t> file) {
  const Reader reader(file);
  for (const Format& format : kFormats)
    if (reader.StartsWith(format.signature) && format.check(reader)) return format.kind;
  return std::nullopt;
}

void KeepFirstFrame(std::vector<std::uint8_t>& gif) {
  const Reader file(gif);
  const std::size_t frame = FindFrame(file);
  if (frame >= gif.size()) return;
  const std::size_t pixels = frame + 10 + ColourTableBytes(file.Byte(frame + 9)) + 1;
  const std::size_t end = BehindSubBlocks(file, pixels);
  if (end >= gif.size()) return;
  gif.resize(end);
  gif.push_back(kGifTrailer);
}

}  // namespace marklet
