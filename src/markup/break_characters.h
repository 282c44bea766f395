// The characters at which a line may break, as a set that answers in one look-up.
#pragma once

#include <array>
#include <cstdint>

namespace marklet {

class BreakCharacterSet {
 public:
  constexpr bool Contains(char16_t ch) const { return (words_[ch >> 6] >> (ch & 63) & 1) != 0; }
  constexpr void Add(char16_t first, char16_t last) {
    for (std::uint32_t ch = first; ch <= last; ++ch) words_[ch >> 6] |= std::uint64_t{1} << (ch & 63);
  }

 private:
  std::array<std::uint64_t, 0x10000 / 64> words_{};
};

// With shaping the set is short, since shaping finds the breaks of scripts without spaces itself; without it
// such scripts break at every character.
const BreakCharacterSet& BreakCharacters(bool shaping);

}  // namespace marklet
