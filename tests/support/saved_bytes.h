// Saved forms put together by hand, byte by byte and without the code that the control has for it.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <vector>

namespace marklet::testing {

inline std::vector<std::uint8_t> U32(std::uint32_t number) {
  return {static_cast<std::uint8_t>(number), static_cast<std::uint8_t>(number >> 8),
          static_cast<std::uint8_t>(number >> 16), static_cast<std::uint8_t>(number >> 24)};
}

inline std::vector<std::uint8_t> Join(std::initializer_list<std::vector<std::uint8_t>> parts) {
  std::vector<std::uint8_t> all;
  for (const auto& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

// The checksum, a bit at a time.
inline std::uint32_t PlainCrc32(const std::vector<std::uint8_t>& bytes) {
  std::uint32_t sum = 0xFFFFFFFFu;
  for (const std::uint8_t byte : bytes) {
    sum ^= byte;
    for (int bit = 0; bit < 8; ++bit) sum = (sum & 1) != 0 ? sum >> 1 ^ 0xEDB88320u : sum >> 1;
  }
  return ~sum;
}

// The records with header and checksum around them.
inline std::vector<std::uint8_t> Seal(const std::vector<std::uint8_t>& records, std::uint8_t major = 1,
                                      std::uint8_t minor = 1) {
  const auto form = Join({{'M', 'a', 'r', 'k', 'l', 'e', 't', 0x1A, major, 0, minor, 0},
                          U32(static_cast<std::uint32_t>(records.size())),
                          records});
  return Join({form, U32(PlainCrc32(form))});
}

}  // namespace marklet::testing
