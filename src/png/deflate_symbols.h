// What the symbols of a deflate stream stand for, as entries of code tables without a code's length.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "png/code_table.h"

namespace marklet::png {

constexpr std::size_t kLiteralSymbols = 288, kDistanceSymbols = 32, kLengthSymbols = 19;

constexpr std::uint32_t MatchBase(unsigned base, unsigned extra_bits) {
  return kEntryMatch | base << kEntryValueShift | extra_bits;
}

// 286 and 287 keep the length 0.
inline constexpr auto kLiteralMeanings = [] {
  std::array<std::uint32_t, kLiteralSymbols> meanings{};
  for (unsigned byte = 0; byte < 256; ++byte) meanings[byte] = kEntryLiteral | byte << kEntryValueShift;
  meanings[256] = kEntryEnd;
  unsigned base = 3;
  for (unsigned index = 0; index < 28; ++index) {
    const unsigned extra_bits = index < 8 ? 0 : index / 4 - 1;
    meanings[257 + index] = MatchBase(base, extra_bits);
    base += 1u << extra_bits;
  }
  meanings[285] = MatchBase(258, 0);
  meanings[286] = meanings[287] = MatchBase(0, 0);
  return meanings;
}();

// 30 and 31, which the format leaves out, go on with 14 extra bits.
inline constexpr auto kDistanceMeanings = [] {
  std::array<std::uint32_t, kDistanceSymbols> meanings{};
  unsigned base = 1;
  for (unsigned index = 0; index < kDistanceSymbols; ++index) {
    const unsigned extra_bits = index < 4 ? 0 : index / 2 - 1;
    meanings[index] = MatchBase(base, extra_bits);
    base += 1u << extra_bits;
  }
  return meanings;
}();

// A code length, or how many times one comes, to which extra bits are added: the last one again, or with
// kEntryEnd the length 0.
inline constexpr auto kLengthMeanings = [] {
  std::array<std::uint32_t, kLengthSymbols> meanings{};
  for (unsigned length = 0; length < 16; ++length)
    meanings[length] = kEntryLiteral | length << kEntryValueShift;
  meanings[16] = MatchBase(3, 2);
  meanings[17] = MatchBase(3, 3) | kEntryEnd;
  meanings[18] = MatchBase(11, 7) | kEntryEnd;
  return meanings;
}();

inline constexpr std::array<std::uint8_t, kLengthSymbols> kCodeLengthOrder = {
    16, 17, 18, 0, 8, 7, 9, 6, 10, 5, 11, 4, 12, 3, 13, 2, 14, 1, 15};

}  // namespace marklet::png
