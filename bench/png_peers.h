// The decoders that ours is held against. Each takes a whole file from memory to pixels of four bytes in
// memory of its own, and leaves the checksums alone where it can be told to: that is what ours does.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace marklet::bench {

struct PngPeer {
  const char* name;
  bool (*decode)(std::span<const std::uint8_t> file);  // false if it gave no picture
};

std::span<const PngPeer> PngPeers();

// libdeflate's inflate alone, of a file's zlib stream into memory that is there: what is left to win.
std::vector<std::uint8_t> StreamOf(std::span<const std::uint8_t> file);
bool InflateWithLibdeflate(std::span<const std::uint8_t> stream, std::span<std::uint8_t> memory);

}  // namespace marklet::bench
