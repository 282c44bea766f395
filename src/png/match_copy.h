// Copies of what was written before, in steps wider than a byte.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "base/byte_order.h"

namespace marklet::png {

// Repeats the last `distance` bytes, 1 to 7 of them: eight bytes hold the pattern, and each step writes as
// many as keep it in phase. Reading bytes back that were only just written would stall the processor.
inline void RepeatShort(std::uint8_t* out, std::size_t distance, std::size_t length) {
  static constexpr std::uint64_t kCopies[8] = {
      0,           ~0ull / 0xFF,   ~0ull / 0xFFFF, 0x0001000001000001,
      0x100000001, 1ull << 40 | 1, 1ull << 48 | 1, 1ull << 56 | 1};
  static constexpr std::uint8_t kSteps[8] = {0, 8, 8, 6, 8, 5, 6, 7};
  const std::uint64_t last =
      LoadLittleEndian<std::uint64_t>(out - distance) & ((std::uint64_t{1} << 8 * distance) - 1);
  const std::uint64_t pattern = last * kCopies[distance];
  const std::size_t step = kSteps[distance];
  const std::uint8_t* const end = out + length;
  do {
    StoreLittleEndian(out, pattern);
    out += step;
  } while (out < end);
}

// Copies at least one step of kBytes bytes, which `distance` isn't below.
template <std::size_t kBytes>
inline void CopyInSteps(std::uint8_t* out, std::size_t distance, std::size_t length) {
  struct Step {
    std::uint8_t bytes[kBytes];
  };
  const std::uint8_t* const end = out + length;
  do {
    Step step;
    std::memcpy(&step, out - distance, sizeof step);
    std::memcpy(out, &step, sizeof step);
    out += sizeof step;
  } while (out < end);
}

// Writes up to InflateWindow::kSpill bytes more than it should.
inline void CopyMatchFast(std::uint8_t* out, std::size_t distance, std::size_t length) {
  if (distance >= 16) return CopyInSteps<16>(out, distance, length);
  if (distance >= 8) return CopyInSteps<8>(out, distance, length);
  RepeatShort(out, distance, length);
}

}  // namespace marklet::png
