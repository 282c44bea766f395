// What a picture file says of itself at its start, read before any loader gets to see it: a few bytes may
// claim any size, and loaders take memory by the claim.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace marklet {

enum class PictureKind { kBmp, kGif, kJpeg, kCursor };

// Up to kFreePixels any file may claim; above, no more than kPixelsPerByte for each of its bytes (what the
// best compressed GIF comes to), never more than kMostPixels, and all of them if they aren't compressed.
constexpr std::int64_t kFreePixels = 1 << 20, kPixelsPerByte = 4096, kMostPixels = 1 << 26;

// A JPG whose codes take a bit or more has one for each block of 64 pixels, so it can't hold more of them.
constexpr std::int64_t kHuffmanPixelsPerByte = 512;
// Each scan of a JPG goes over all of its pixels, and may be a few bytes long: scans times pixels obey the
// same bounds as pixels, but for the last. That is twelve scans of the largest picture; encoders make ten.
constexpr std::int64_t kMostScannedPixels = 12 * kMostPixels, kMostScans = 256;

// Whether a file begins like one of the formats.
bool HasPictureSignature(std::span<const std::uint8_t> file);

// The kind of a file whose claims hold against its size. None for any other, and for formats that aren't
// read.
std::optional<PictureKind> CheckPictureFile(std::span<const std::uint8_t> file);

// What the markers of a JPG say, told apart as decoders do: stray bytes, fillers and restarts between them
// are passed over, and nothing counts after the end of the picture. None without a frame, and where markers
// stand that no decoder takes: a second start or frame, or a scan in front of its frame.
struct JpegClaims {
  std::int64_t width, height, scans;
  bool arithmetic;  // coded in fractions of a bit
};
std::optional<JpegClaims> ReadJpegClaims(std::span<const std::uint8_t> file);

// Leaves of a GIF its first frame and what that needs, in blocks as long as they may be: no loader has other
// frames to decode, or millions of comments and blocks to pass. Returns the pixels of the screen, or of the
// frame where that is larger; 0, and nothing changed, where the file ends before or right after the frame.
std::int64_t KeepFirstFrame(std::vector<std::uint8_t>& gif);

}  // namespace marklet
