// Pictures to decode, the same in every run, as PNG files.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace marklet::bench {

using Bytes = std::vector<std::uint8_t>;

enum class Subject {
  Icon,   // shapes with soft edges, gradients and a shadow, on a clear or white ground
  Photo,  // soft forms under fine grain
  Flat,   // a few areas of one colour each
};

struct PictureKind {
  Subject subject;
  bool alpha;
  bool interlaced;
};

// As in "icon/rgba/adam7".
std::string NameOf(const PictureKind& kind);

// Red, green, blue and with `kind.alpha` alpha, top row first, no padding.
Bytes PixelsOf(const PictureKind& kind, std::size_t size);
// The file that libpng and zlib write at their default settings.
Bytes FileOf(const PictureKind& kind, std::size_t size);

}  // namespace marklet::bench
