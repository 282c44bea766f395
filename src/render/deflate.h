// A small deflate encoder.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace marklet {

// A complete zlib stream of the bytes: fixed codes and matches over the last 32 KiB.
std::vector<std::uint8_t> ZlibCompress(std::span<const std::uint8_t> bytes);

}  // namespace marklet
