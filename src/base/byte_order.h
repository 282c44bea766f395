// Numbers in bytes that are known to be there, low byte first or high byte first.
#pragma once

#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace marklet {

// The number whose bytes in memory stand in `order`.
template <std::endian order, std::unsigned_integral Number>
constexpr Number InByteOrder(Number number) {
  if constexpr (order == std::endian::native || sizeof number == 1)
    return number;
  else if constexpr (sizeof number == 2)
    return __builtin_bswap16(number);
  else if constexpr (sizeof number == 4)
    return __builtin_bswap32(number);
  else
    return __builtin_bswap64(number);
}

template <std::endian order, std::unsigned_integral Number>
inline Number LoadNumber(const std::uint8_t* bytes) {
  Number number;
  std::memcpy(&number, bytes, sizeof number);
  return InByteOrder<order>(number);
}
template <std::unsigned_integral Number>
inline Number LoadLittleEndian(const std::uint8_t* bytes) {
  return LoadNumber<std::endian::little, Number>(bytes);
}
template <std::unsigned_integral Number>
inline Number LoadBigEndian(const std::uint8_t* bytes) {
  return LoadNumber<std::endian::big, Number>(bytes);
}

inline void StoreLittleEndian(std::uint8_t* bytes, std::unsigned_integral auto number) {
  number = InByteOrder<std::endian::little>(number);
  std::memcpy(bytes, &number, sizeof number);
}

inline void AppendLittleEndian(std::vector<std::uint8_t>& bytes, std::unsigned_integral auto number) {
  for (std::size_t i = 0; i < sizeof number; ++i) bytes.push_back(static_cast<std::uint8_t>(number >> 8 * i));
}
inline void AppendBigEndian(std::vector<std::uint8_t>& bytes, std::unsigned_integral auto number) {
  for (std::size_t i = sizeof number; i-- > 0;) bytes.push_back(static_cast<std::uint8_t>(number >> 8 * i));
}

}  // namespace marklet
