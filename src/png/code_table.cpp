#include "png/code_table.h"

#include <algorithm>
#include <bit>

namespace marklet::png {
namespace {

constexpr std::uint32_t WithLength(std::uint32_t meaning, int length) {
  return meaning + static_cast<std::uint32_t>(length) * ((1u << kEntryLengthShift) + 1u);
}

// The next code of the same length, both written with their first bit lowest. 0 behind the last one.
constexpr unsigned NextReversed(unsigned code, int length) {
  const unsigned free_bits = ~code & ((1u << length) - 1u);
  if (free_bits == 0) return 0;
  const unsigned top = std::bit_floor(free_bits);
  return (code & (top - 1u)) | top;
}

template <typename Counts>
int LongestLength(const Counts& counts) {
  int longest = kMaxCodeLength;
  while (longest > 0 && counts[static_cast<std::size_t>(longest)] == 0) --longest;
  return longest;
}

// What is left of the code space: 0 when the code is complete, negative at the first length with too many.
template <typename Counts>
int Remainder(const Counts& counts) {
  int remainder = 1;
  for (std::size_t length = 1; length <= kMaxCodeLength && remainder >= 0; ++length)
    remainder = 2 * remainder - counts[length];
  return remainder;
}

}  // namespace

int CodeTable::Build(std::span<const std::uint8_t> lengths, std::span<const std::uint32_t> meanings,
                     int max_root_bits, int& longest) {
  counts_.fill(0);
  for (const std::uint8_t length : lengths) ++counts_[length];
  counts_[0] = 0;
  const int own_longest = LongestLength(counts_);
  longest = std::max(longest, own_longest);
  if (const int remainder = Remainder(counts_); remainder != 0) return remainder;
  SortSymbols(lengths, meanings);
  FillRoots(std::min({own_longest, max_root_bits, kMaxRootBits}));
  return 0;
}

void CodeTable::SortSymbols(std::span<const std::uint8_t> lengths, std::span<const std::uint32_t> meanings) {
  Counts next{};
  for (std::size_t length = 1; length < kMaxCodeLength; ++length)
    next[length + 1] = static_cast<std::uint16_t>(next[length] + counts_[length]);
  for (std::size_t symbol = 0; symbol < lengths.size(); ++symbol) {
    const std::uint8_t length = lengths[symbol];
    if (length != 0) sorted_[next[length]++] = WithLength(meanings[symbol], length);
  }
}

// Codes come in rising length, so all that is known about codes of n bits holds for both values of the bit
// behind them: the table is doubled with each length, and each symbol is written once.
void CodeTable::FillRoots(int root_bits) {
  const std::uint32_t* symbol = sorted_.data();
  std::size_t size = 1;
  unsigned code = 0;
  roots_[0] = 0;
  for (int length = 1; length <= root_bits; ++length, size *= 2) {
    std::copy_n(roots_.data(), size, roots_.data() + size);
    for (unsigned count = counts_[static_cast<std::size_t>(length)]; count > 0; --count) {
      roots_[code] = *symbol++;
      code = NextReversed(code, length);
    }
  }
  root_mask_ = size - 1;
}

std::uint32_t CodeTable::FindLong(std::uint64_t bits) const {
  const std::uint32_t* first = sorted_.data();  // of the length at hand
  unsigned code = 0, first_code = 0;
  for (std::size_t length = 1; length <= kMaxCodeLength; ++length) {
    code = code << 1 | static_cast<unsigned>(bits & 1);
    bits >>= 1;
    const unsigned count = counts_[length];
    if (code - first_code < count) return first[code - first_code];
    first += count;
    first_code = (first_code + count) << 1;
  }
  return *sorted_.data();  // not reached: the code is complete
}

}  // namespace marklet::png
