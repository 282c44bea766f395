// Numbers out of bytes that may end anywhere or hold anything.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "base/rounding.h"

namespace marklet {

// Numbers stand low byte first. Asking for more than is left gives zeros and nothing, takes what is left, and
// marks the reader.
class ByteReader {
 public:
  explicit ByteReader(std::span<const std::uint8_t> bytes) : rest_(bytes) {}

  std::span<const std::uint8_t> Take(std::size_t count) {
    if (count > rest_.size()) {
      overran_ = true;
      rest_ = {};
      return {};
    }
    const auto taken = rest_.first(count);
    rest_ = rest_.subspan(count);
    return taken;
  }
  std::span<const std::uint8_t> TakeRest() { return Take(rest_.size()); }
  std::uint8_t U8() { return static_cast<std::uint8_t>(Number(1)); }
  std::uint16_t U16() { return static_cast<std::uint16_t>(Number(2)); }
  std::uint32_t U32() { return Number(4); }
  Long I32() { return static_cast<Long>(Number(4)); }

  std::size_t Left() const { return rest_.size(); }
  bool Overran() const { return overran_; }

 private:
  std::uint32_t Number(std::size_t size) {
    std::uint32_t number = 0;
    unsigned shift = 0;
    for (const std::uint8_t byte : Take(size)) {
      number |= std::uint32_t{byte} << shift;
      shift += 8;
    }
    return number;
  }

  std::span<const std::uint8_t> rest_;
  bool overran_ = false;
};

}  // namespace marklet
