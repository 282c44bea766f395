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

// The kind of a file whose claims hold against its size. None for any other, and for formats that aren't
// read.
std::optional<PictureKind> CheckPictureFile(std::span<const std::uint8_t> file);

// Cuts a GIF after its first frame, so that a loader has no others to decode.
void KeepFirstFrame(std::vector<std::uint8_t>& gif);

}  // namespace marklet
