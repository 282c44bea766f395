// The chunk walker: what a PNG file says about its picture, and the compressed picture itself.
//
// It enforces no order, checks no CRC, skips what it doesn't know and reports nothing but what it finds.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "platform/types.h"
#include "png/inflate.h"

namespace marklet::png {

struct ChunkFields {
  Long Width = 0, Height = 0;  // as the file says: any value
  Long BitDepth = 0, ColorType = 0, CompressionMethod = 0, InterlaceMethod = 0;
  std::span<std::uint8_t> IdatBytes;            // all "IDAT" payloads in a row, inside the file's memory
  std::vector<std::uint8_t> PaletteBytes;       // of the last "PLTE": red, green, blue, ...
  std::vector<std::uint8_t> TransparencyBytes;  // of the last "tRNS"
  std::vector<std::uint8_t> BackgroundBytes;    // of the last "bKGD"
  COLORREF BackgroundColor = 0;                 // what "bKGD" meant when it came
  Long GammaValue = 0;                          // kept, never applied
  bool HasTransparency = false;
  // Kept, never read: each text, in the file's own bytes, with a NUL after it.
  std::string TextBlock, CompressedTextBlock;
};

// Whether a file begins as every PNG file does.
bool HasSignature(std::span<const std::uint8_t> file);

// Walks a whole file. True if the walk came to "IEND" and there is a picture to decode; otherwise `fields` is
// left as far as it got.
//
// `file` is used up: "IDAT" payloads that lie apart are moved together in it. `inflater` serves for
// compressed texts.
bool WalkChunks(std::span<std::uint8_t> file, Inflater& inflater, ChunkFields& fields);

}  // namespace marklet::png
