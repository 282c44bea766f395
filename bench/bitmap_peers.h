// Other libraries' ways to lay pictures over each other and to change their size.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

namespace marklet::bench {

enum class Depth { k24, k32 };

struct PixelBlock {
  std::uint8_t* bits;
  int width, height, stride;
  Depth depth;
};

// Prepared once, called many times.
using Work = std::function<void()>;

struct Compositor {
  const char* name;
  bool bar;  // ours must be level with it
  // Lays a premultiplied picture of 32 bits over one of the same size.
  Work (*prepare)(const PixelBlock& source, const PixelBlock& target);
};
const std::vector<Compositor>& Compositors();

struct Resizer {
  const char* like;  // the operation of ours that it is held against
  const char* name;
  double bar;  // how many times its time ours may be; 0 for information
  bool only_256_to_48;
  // Fills a picture of 32 bits, as the source is one.
  Work (*prepare)(const PixelBlock& source, const PixelBlock& target);
};
const std::vector<Resizer>& Resizers();

}  // namespace marklet::bench
