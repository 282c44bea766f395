#include "png/code_table.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "png/lanes.h"

namespace marklet::png {
namespace {

constexpr std::uint32_t WithLength(std::uint32_t meaning, int length) {
  return meaning + static_cast<std::uint32_t>(length) * ((1u << kEntryLengthShift) + 1u);
}

constexpr auto kReversedBytes = [] {
  std::array<std::uint8_t, 256> reversed{};
  for (unsigned byte = 0; byte < 256; ++byte)
    for (unsigned bit = 0; bit < 8; ++bit)
      reversed[byte] = static_cast<std::uint8_t>(reversed[byte] * 2u + (byte >> bit & 1));
  return reversed;
}();

// A code of at most 15 bits with its first bit lowest instead of highest, or the other way round.
constexpr unsigned Reversed(unsigned code, int length) {
  const unsigned reversed = unsigned{kReversedBytes[code & 0xFF]} << 8 | kReversedBytes[code >> 8];
  return reversed >> (16 - length);
}

int LongestLength(const LengthCounts& counts) {
  int longest = kMaxCodeLength;
  while (longest > 0 && counts[static_cast<std::size_t>(longest)] == 0) --longest;
  return longest;
}

int ShortestLength(const LengthCounts& counts) {
  int shortest = 1;
  while (counts[static_cast<std::size_t>(shortest)] == 0) ++shortest;
  return shortest;
}

// Puts a copy behind the first `size` entries, a power of two, four at a time: up to three more are written.
inline void DoubleTable(std::uint32_t* entries, std::size_t size) {
  for (std::size_t done = 0; done < size; done += 4) {
    std::uint32_t four[4];
    std::memcpy(four, entries + done, sizeof four);
    std::memcpy(entries + size + done, four, sizeof four);
  }
}

// What is left of the code space: 0 when the code is complete, negative at the first length with too many.
int Remainder(const LengthCounts& counts) {
  int remainder = 1;
  for (std::size_t length = 1; length <= kMaxCodeLength && remainder >= 0; ++length)
    remainder = 2 * remainder - counts[length];
  return remainder;
}

// Calls `visit` with each symbol of one code length, in order.
template <typename Visit>
inline void ForSymbolsOfLength(std::span<const std::uint8_t> lengths, int length, Visit visit) {
  for (std::size_t first = 0; first < lengths.size(); first += 64) {
    const std::size_t count = std::min<std::size_t>(64, lengths.size() - first);
    std::uint64_t found = 0;
    for (std::size_t part = 0; part < count; part += 16)
      found |=
          std::uint64_t{EqualBytes(LoadBytes16(&lengths[first] + part), static_cast<std::uint8_t>(length))}
          << part;
    if (count < 64) found &= (std::uint64_t{1} << count) - 1;
    for (; found != 0; found &= found - 1) visit(first + static_cast<std::size_t>(std::countr_zero(found)));
  }
}

}  // namespace

LengthCounts CountLengths(std::span<const std::uint8_t> lengths) {
  LengthCounts counts{};
  for (const std::uint8_t length : lengths) ++counts[length];
  return counts;
}

int CodeTable::Build(std::span<const std::uint8_t> lengths, const LengthCounts& counts,
                     std::span<const std::uint32_t> meanings, int max_root_bits, int& longest) {
  const int own_longest = LongestLength(counts);
  longest = std::max(longest, own_longest);
  if (const int remainder = Remainder(counts); remainder != 0) return remainder;
  counts_ = counts;
  FillRoots(lengths, meanings, std::min({own_longest, max_root_bits, kMaxRootBits}));
  SortLong(lengths, meanings, own_longest);
  return 0;
}

// Codes come in rising length, so all that is known about codes of n bits holds for both values of the bit
// behind them: the table is doubled with each length, and each symbol is written once.
void CodeTable::FillRoots(std::span<const std::uint8_t> lengths, std::span<const std::uint32_t> meanings,
                          int root_bits) {
  const int shortest = ShortestLength(counts_);
  std::size_t size = std::size_t{1} << shortest;
  unsigned code = 0;
  std::fill_n(roots_.data(), size, 0u);
  for (int length = shortest; length <= root_bits; ++length) {
    if (length > shortest) {
      DoubleTable(roots_.data(), size);
      size *= 2;
    }
    code <<= 1;
    if (counts_[static_cast<std::size_t>(length)] == 0) continue;
    ForSymbolsOfLength(lengths, length, [&](std::size_t symbol) {
      roots_[Reversed(code++, length)] = WithLength(meanings[symbol], length);
    });
  }
  root_mask_ = size - 1;
  root_bits_ = root_bits;
  root_end_code_ = code;
}

void CodeTable::SortLong(std::span<const std::uint8_t> lengths, std::span<const std::uint32_t> meanings,
                         int longest) {
  std::uint32_t* next = long_.data();
  for (int length = root_bits_ + 1; length <= longest; ++length)
    ForSymbolsOfLength(lengths, length,
                       [&](std::size_t symbol) { *next++ = WithLength(meanings[symbol], length); });
}

// From the top down, so that what the second code is looked up in holds single literals still: it is the
// index without the bits of the first.
void CodeTable::JoinLiterals() {
  const auto root_bits = static_cast<unsigned>(root_bits_);
  for (std::size_t index = root_mask_ + 1; index-- > 0;) {
    const std::uint32_t first = roots_[index];
    if ((first & kEntryLiteral) == 0) continue;
    const std::uint32_t second = roots_[index >> EntryTaken(first)];
    if ((second & kEntryLiteral) == 0 || EntryTaken(first) + EntryTaken(second) > root_bits) continue;
    roots_[index] =
        (first | kEntryPair) + (EntryValue(second) << (kEntryValueShift + 8)) + EntryTaken(second);
  }
}

std::uint32_t CodeTable::Find(std::uint64_t bits) const {
  const std::uint32_t entry = roots_[static_cast<std::size_t>(bits) & root_mask_];
  if (entry == 0) return FindLong(bits);
  if ((entry & kEntryPair) == 0) return entry;
  constexpr std::uint32_t kSecond = 0xFF000000 | kEntryPair | kEntryTakenMask;
  return (entry & ~kSecond) + EntryLength(entry);
}

std::uint32_t CodeTable::FindLong(std::uint64_t bits) const {
  const std::uint32_t* first = long_.data();  // of the length at hand
  unsigned code = Reversed(static_cast<unsigned>(bits & root_mask_), root_bits_), first_code = root_end_code_;
  bits >>= root_bits_;
  for (std::size_t length = static_cast<std::size_t>(root_bits_) + 1; length <= kMaxCodeLength; ++length) {
    code = code << 1 | static_cast<unsigned>(bits & 1);
    bits >>= 1;
    first_code <<= 1;
    const unsigned count = counts_[length];
    if (code - first_code < count) return first[code - first_code];
    first += count;
    first_code += count;
  }
  return *long_.data();  // not reached: the code is complete
}

}  // namespace marklet::png
