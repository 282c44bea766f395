#include "platform/shared/picture_header.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <string_view>
#include <utility>

#include "base/byte_reader.h"
#include "base/rows.h"

namespace marklet {
namespace {

bool StartsWith(std::span<const std::uint8_t> file, std::string_view text) {
  return file.size() >= text.size() &&
         std::equal(text.begin(), text.end(), file.begin(),
                    [](char a, std::uint8_t b) { return static_cast<std::uint8_t>(a) == b; });
}

bool IsPlausible(std::int64_t width, std::int64_t height, std::size_t bytes) {
  if (width < 1 || height < 1 || width > kMostPixels / height) return false;
  return width * height <= std::max(kFreePixels, kPixelsPerByte * static_cast<std::int64_t>(bytes));
}

// --- BMP --------------------------------------------------------------------------------------------------

// Loaders take memory by these too.
bool CheckBmpOffsets(const PaddedBytes& file) {
  constexpr std::size_t kPixels = 10, kHeader = 14, kColoursUsed = 46;
  const bool old = file.U32(kHeader) < kColoursUsed + 4 - kHeader;
  return file.U32(kPixels) <= file.Size() && file.U32(kHeader) <= file.Size() &&
         (old || file.U32(kColoursUsed) <= file.Size());
}

bool CheckBmp(const PaddedBytes& file) {
  constexpr std::size_t kInfo = 14;
  constexpr std::uint32_t kCoreHeader = 12, kInfoHeader = 40, kPlain = 0, kBitFields = 3;
  const std::uint32_t header = file.U32(kInfo);
  const bool core = header == kCoreHeader;
  if ((!core && header < kInfoHeader) || !CheckBmpOffsets(file)) return false;
  const std::int64_t width = core ? file.U16(kInfo + 4) : file.I32(kInfo + 4);
  const std::int64_t height = core ? file.U16(kInfo + 6) : std::abs(std::int64_t{file.I32(kInfo + 8)});
  const unsigned bits = file.U16(kInfo + (core ? 10u : 14u));
  const std::uint32_t compression = core ? kPlain : file.U32(kInfo + 16);
  if (!IsPlausible(width, height, file.Size())) return false;
  if (compression != kPlain && compression != kBitFields) return true;
  return DibStride(width, bits) * height <= static_cast<std::int64_t>(file.Size());
}

// --- GIF --------------------------------------------------------------------------------------------------

constexpr unsigned kGifExtension = 0x21, kGifImage = 0x2C, kGifTrailer = 0x3B;

std::size_t ColourTableBytes(unsigned flags) {
  return (flags & 0x80) != 0 ? std::size_t{3} << ((flags & 7) + 1) : 0;
}

std::size_t PastSubBlocks(const PaddedBytes& file, std::size_t at) {
  while (file.U8(at) != 0) at += std::size_t{file.U8(at)} + 1;
  return at + 1;
}

// Where the parts of a GIF stand up to its first frame's end, as far as they lie in the file.
struct GifParts {
  std::size_t tables_end;      // of the header and the table of all frames
  std::size_t control;         // the last one in front of the frame that is sound; 0 without
  std::size_t frame;           // the file's size if there is none
  std::int64_t width, height;  // of the screen, and of the frame where that is larger
};

// What says which colour is transparent, and nothing else.
bool IsControl(const PaddedBytes& file, std::size_t at) {
  constexpr unsigned kControl = 0xF9, kSize = 4;
  return file.U8(at + 1) == kControl && file.U8(at + 2) == kSize && file.U8(at + 3 + kSize) == 0;
}
constexpr std::size_t kControlBytes = 8;

GifParts PartsOf(const PaddedBytes& file) {
  GifParts parts{13 + ColourTableBytes(file.U8(10)), 0, 0, 0, 0};
  std::size_t at = parts.tables_end;
  for (; file.U8(at) == kGifExtension; at = PastSubBlocks(file, at + 2))
    if (IsControl(file, at)) parts.control = at;
  parts.frame = file.U8(at) == kGifImage ? at : file.Size();
  parts.width = std::max<std::int64_t>(file.U16(6), file.U16(at + 1) + file.U16(at + 5));
  parts.height = std::max<std::int64_t>(file.U16(8), file.U16(at + 3) + file.U16(at + 7));
  return parts;
}

bool CheckGif(const PaddedBytes& file) {
  const GifParts parts = PartsOf(file);
  return parts.frame < file.Size() && IsPlausible(parts.width, parts.height, file.Size());
}

// Moves bytes towards the start of the file; where they end now.
std::size_t MoveDown(std::vector<std::uint8_t>& file, std::size_t from, std::size_t end, std::size_t to) {
  const auto at = [&](std::size_t place) { return file.begin() + static_cast<std::ptrdiff_t>(place); };
  std::copy(at(from), at(end), at(to));
  return to + (end - from);
}

// The same for the blocks that begin at `from`, which become as long as blocks may be.
std::size_t MergeBlocksDown(std::vector<std::uint8_t>& file, std::size_t from, std::size_t to) {
  constexpr std::uint8_t kLongest = 255;
  std::size_t length_at = to++;
  std::uint8_t length = 0;
  while (file[from] != 0) {
    const std::size_t end = from + 1 + file[from];
    while (++from < end) {
      if (length == kLongest) {
        file[length_at] = std::exchange(length, std::uint8_t{0});
        length_at = to++;
      }
      file[to++] = file[from];
      ++length;
    }
  }
  file[length_at] = length;
  if (length != 0) file[to++] = 0;
  return to;
}

// --- JPG --------------------------------------------------------------------------------------------------

constexpr unsigned kJpegStart = 0xD8, kJpegEnd = 0xD9, kJpegScan = 0xDA, kFirstArithmeticFrame = 0xC9;

bool IsStartOfFrame(unsigned marker) {
  return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

// Restarts, starts and ends stand for themselves, as do the numbers that mean nothing.
bool HasSegment(unsigned marker) {
  constexpr unsigned kFirstRestart = 0xD0;
  return marker >= 0xC0 && (marker < kFirstRestart || marker > kJpegEnd);
}

// The place of the next marker's number, past stray bytes, coded data and fillers; the file's size without
// one.
std::size_t FindMarker(const PaddedBytes& file, std::size_t at) {
  for (; at + 1 < file.Size(); ++at)
    if (file.U8(at) == 0xFF && file.U8(at + 1) != 0xFF && file.U8(at + 1) != 0) return at + 1;
  return file.Size();
}

// Calls `visit` with the place of each marker's number up to the picture's end, as long as it answers true.
template <class Visit>
void ForEachMarker(const PaddedBytes& file, Visit visit) {
  for (std::size_t at = FindMarker(file, 2); at < file.Size();) {
    if (file.U8(at) == kJpegEnd || !visit(at)) return;
    at = FindMarker(file, at + 1 + (HasSegment(file.U8(at)) ? std::size_t{file.BigU16(at + 1)} : 0));
  }
}

std::optional<JpegClaims> ClaimsOf(const PaddedBytes& file) {
  std::optional<JpegClaims> claims;
  bool sound = true;
  ForEachMarker(file, [&](std::size_t at) {
    const unsigned marker = file.U8(at);
    const bool frame = IsStartOfFrame(marker), scan = marker == kJpegScan;
    sound = marker != kJpegStart && !(frame && claims) && !(scan && !claims);
    if (frame) claims = {file.BigU16(at + 6), file.BigU16(at + 4), 0, marker >= kFirstArithmeticFrame};
    if (scan && claims) ++claims->scans;
    return sound;
  });
  return sound ? claims : std::nullopt;
}

bool CheckJpeg(const PaddedBytes& file) {
  const auto claims = ClaimsOf(file);
  if (!claims || !IsPlausible(claims->width, claims->height, file.Size())) return false;
  const std::int64_t pixels = claims->width * claims->height, work = pixels * claims->scans;
  const auto bytes = static_cast<std::int64_t>(file.Size());
  if (!claims->arithmetic && pixels > std::max(kFreePixels, kHuffmanPixelsPerByte * bytes)) return false;
  return claims->scans <= kMostScans &&
         work <= std::min(kMostScannedPixels, std::max(kFreePixels, kPixelsPerByte * bytes));
}

// --- CUR --------------------------------------------------------------------------------------------------

// A cursor's image is a bitmap of twice its height, or a whole PNG.
bool CheckCursorImage(const PaddedBytes& file, std::size_t at) {
  constexpr std::uint32_t kInfoHeader = 40, kPng = 0x474E5089;
  constexpr std::int64_t kLongestSide = 256;
  const bool png = file.U32(at) == kPng;
  if (!png && file.U32(at) != kInfoHeader) return false;
  const std::int64_t width = png ? std::int64_t{file.BigU32(at + 16)} : file.I32(at + 4);
  const std::int64_t height = png ? file.BigU32(at + 20) : std::abs(std::int64_t{file.I32(at + 8)}) / 2;
  return width >= 1 && height >= 1 && width <= kLongestSide && height <= kLongestSide;
}

bool CheckCursor(const PaddedBytes& file) {
  const unsigned count = file.U16(4);
  if (count == 0 || 6 + std::size_t{16} * count > file.Size()) return false;
  for (unsigned i = 0; i < count; ++i) {
    const std::size_t entry = 6 + std::size_t{16} * i;
    const std::size_t size = file.U32(entry + 8), offset = file.U32(entry + 12);
    if (offset > file.Size() || size > file.Size() - offset) return false;
    if (!CheckCursorImage(file, offset)) return false;
  }
  return true;
}

// --- All --------------------------------------------------------------------------------------------------

struct Format {
  std::string_view signature;
  PictureKind kind;
  bool (*check)(const PaddedBytes& file);
};
constexpr Format kFormats[] = {
    {"BM", PictureKind::kBmp, CheckBmp},
    {"GIF87a", PictureKind::kGif, CheckGif},
    {"GIF89a", PictureKind::kGif, CheckGif},
    {"\xFF\xD8", PictureKind::kJpeg, CheckJpeg},
    {std::string_view("\0\0\1\0", 4), PictureKind::kCursor, CheckCursor},
    {std::string_view("\0\0\2\0", 4), PictureKind::kCursor, CheckCursor},
};

}  // namespace

bool HasPictureSignature(std::span<const std::uint8_t> file) {
  return std::any_of(std::begin(kFormats), std::end(kFormats),
                     [&](const Format& format) { return StartsWith(file, format.signature); });
}

std::optional<PictureKind> CheckPictureFile(std::span<const std::uint8_t> file) {
  const PaddedBytes bytes(file);
  for (const Format& format : kFormats)
    if (StartsWith(file, format.signature) && format.check(bytes)) return format.kind;
  return std::nullopt;
}

std::optional<JpegClaims> ReadJpegClaims(std::span<const std::uint8_t> file) {
  return ClaimsOf(PaddedBytes(file));
}

std::int64_t KeepFirstFrame(std::vector<std::uint8_t>& gif) {
  const PaddedBytes file(gif);
  const GifParts parts = PartsOf(file);
  if (parts.frame >= gif.size()) return 0;
  const std::size_t blocks = parts.frame + 10 + ColourTableBytes(file.U8(parts.frame + 9)) + 1;
  if (PastSubBlocks(file, blocks) >= gif.size()) return 0;
  std::size_t end = parts.tables_end;
  if (parts.control != 0) end = MoveDown(gif, parts.control, parts.control + kControlBytes, end);
  end = MoveDown(gif, parts.frame, blocks, end);
  end = MergeBlocksDown(gif, blocks, end);
  gif.resize(end);
  gif.push_back(kGifTrailer);
  return parts.width * parts.height;
}

}  // namespace marklet
