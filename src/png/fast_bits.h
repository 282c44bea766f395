// Bits of a deflate stream in a register, refilled eight bytes at a time.
#pragma once

#include <cstddef>
#include <cstdint>

#include "base/byte_order.h"

namespace marklet::png {

class FastBits {
 public:
  // Bits that are there at least after a refill far from the end.
  static constexpr unsigned kRefilled = 56;

  // `in` is the next byte after the `count` bits that were taken off the stream already. At least eight bytes
  // stand before `end`.
  FastBits(std::uint64_t bits, unsigned count, const std::uint8_t* in, const std::uint8_t* end)
      : bits_(bits), count_(count), in_(in), end_(end) {}

  // The next bits, lowest first. Above those that were refilled stand more of the stream's own, or zeros.
  std::uint64_t bits() const { return bits_; }

  // False if there are fewer than `needed` bits up to the end; at most kRefilled.
  [[gnu::always_inline]] bool Refill(unsigned needed) {
    if (end_ - in_ < static_cast<std::ptrdiff_t>(sizeof bits_)) [[unlikely]]
      return RefillNearEnd(needed);
    bits_ |= LoadLittleEndian<std::uint64_t>(in_) << (count_ & 63);
    in_ += (63 - count_) >> 3 & 7;
    count_ |= kRefilled;
    return true;
  }
  // `taken` in the lowest six bits, and anything above the lowest byte.
  [[gnu::always_inline]] void Drop(std::uint32_t taken) {
    bits_ >>= taken & 63;
    count_ -= taken;
  }
  // Gives whole bytes that were read ahead back, and leaves zeros above what is left.
  void Settle() {
    count_ &= 0xFF;
    in_ -= count_ / 8;
    count_ %= 8;
    bits_ &= (1u << count_) - 1u;
  }
  unsigned count() const { return count_; }  // after Settle
  const std::uint8_t* in() const { return in_; }

 private:
  // The last eight bytes hold all that is left.
  [[gnu::always_inline]] bool RefillNearEnd(unsigned needed) {
    count_ &= 0xFF;
    const auto left = static_cast<unsigned>(end_ - in_);
    const std::uint64_t rest = LoadLittleEndian<std::uint64_t>(end_ - 8) >> 8 * (7 - left) >> 8;
    bits_ |= rest << count_;
    const unsigned taken = left < (63 - count_) / 8 ? left : (63 - count_) / 8;
    in_ += taken;
    count_ += 8 * taken;
    return count_ >= needed;
  }

  std::uint64_t bits_;
  unsigned count_;  // in the lowest byte; what stands above it is of no account
  const std::uint8_t* in_;
  const std::uint8_t* end_;
};

}  // namespace marklet::png
