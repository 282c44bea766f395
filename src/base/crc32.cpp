#include "base/crc32.h"

#include <array>
#include <cstddef>

#include "base/byte_order.h"

namespace marklet {
namespace {

// Eight bytes a step: table t holds what a byte does to the sum when t more bytes follow it.
constexpr std::size_t kStep = 8;
using Tables = std::array<std::array<std::uint32_t, 256>, kStep>;

constexpr Tables MakeTables() {
  Tables tables{};
  for (std::uint32_t byte = 0; byte < 256; ++byte) {
    std::uint32_t sum = byte;
    for (int bit = 0; bit < 8; ++bit) sum = (sum & 1) != 0 ? sum >> 1 ^ 0xEDB88320u : sum >> 1;
    tables[0][byte] = sum;
  }
  for (std::size_t t = 1; t < kStep; ++t)
    for (std::size_t byte = 0; byte < 256; ++byte) {
      const std::uint32_t before = tables[t - 1][byte];
      tables[t][byte] = before >> 8 ^ tables[0][before & 0xFF];
    }
  return tables;
}
constexpr Tables kTables = MakeTables();

}  // namespace

std::uint32_t Crc32(std::span<const std::uint8_t> bytes) {
  std::uint32_t sum = 0xFFFFFFFFu;
  for (; bytes.size() >= kStep; bytes = bytes.subspan(kStep)) {
    const std::uint32_t low = sum ^ LoadLittleEndian<std::uint32_t>(bytes.data()),
                        high = LoadLittleEndian<std::uint32_t>(bytes.data() + 4);
    sum = kTables[7][low & 0xFF] ^ kTables[6][low >> 8 & 0xFF] ^ kTables[5][low >> 16 & 0xFF] ^
          kTables[4][low >> 24] ^ kTables[3][high & 0xFF] ^ kTables[2][high >> 8 & 0xFF] ^
          kTables[1][high >> 16 & 0xFF] ^ kTables[0][high >> 24];
  }
  for (const std::uint8_t byte : bytes) sum = kTables[0][(sum ^ byte) & 0xFF] ^ sum >> 8;
  return ~sum;
}

}  // namespace marklet
