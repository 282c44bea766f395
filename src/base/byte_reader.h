// Numbers out of bytes that may end anywhere or hold anything.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

#include "base/byte_order.h"
#include "base/rounding.h"

namespace marklet {

// Bytes of which any may be asked for: those past the end are 0.
class PaddedBytes {
 public:
  explicit PaddedBytes(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

  std::size_t Size() const { return bytes_.size(); }
  std::uint8_t U8(std::size_t at) const { return at < bytes_.size() ? bytes_[at] : std::uint8_t{0}; }
  // Low byte first.
  std::uint16_t U16(std::size_t at) const { return Number<std::endian::little, std::uint16_t>(at); }
  std::uint32_t U32(std::size_t at) const { return Number<std::endian::little, std::uint32_t>(at); }
  Long I32(std::size_t at) const { return static_cast<Long>(U32(at)); }
  // High byte first.
  std::uint16_t BigU16(std::size_t at) const { return Number<std::endian::big, std::uint16_t>(at); }
  std::uint32_t BigU32(std::size_t at) const { return Number<std::endian::big, std::uint32_t>(at); }
  Long BigI32(std::size_t at) const { return static_cast<Long>(BigU32(at)); }

 private:
  template <std::endian order, typename Kind>
  Kind Number(std::size_t at) const {
    std::uint8_t number[sizeof(Kind)] = {};
    if (at < bytes_.size()) std::memcpy(number, &bytes_[at], std::min(sizeof number, bytes_.size() - at));
    return LoadNumber<order, Kind>(number);
  }

  std::span<const std::uint8_t> bytes_;
};

// One number after the other, low byte first. Asking for more than is left gives zeros and nothing, takes
// what is left, and marks the reader.
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
  std::uint8_t U8() { return Number<std::uint8_t>(); }
  std::uint16_t U16() { return Number<std::uint16_t>(); }
  std::uint32_t U32() { return Number<std::uint32_t>(); }
  Long I32() { return static_cast<Long>(U32()); }

  std::size_t Left() const { return rest_.size(); }
  bool Overran() const { return overran_; }

 private:
  template <typename Kind>
  Kind Number() {
    const auto taken = Take(sizeof(Kind));
    return taken.empty() ? Kind{0} : LoadLittleEndian<Kind>(taken.data());
  }

  std::span<const std::uint8_t> rest_;
  bool overran_ = false;
};

}  // namespace marklet
