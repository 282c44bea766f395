// The checksum of PNG chunks and saved forms: CRC-32, as zip files have it too.
#pragma once

#include <cstdint>
#include <span>

namespace marklet {

std::uint32_t Crc32(std::span<const std::uint8_t> bytes);

}  // namespace marklet
