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

// Bits of a root table's index in the other order.
constexpr auto kReversedRoots = [] {
  std::array<std::uint16_t, 1 << CodeTable::kMaxRootBits> reversed{};
  for (unsigned code = 0; code < reversed.size(); ++code)
    for (int bit = 0; bit < CodeTable::kMaxRootBits; ++bit)
      reversed[code] = static_cast<std::uint16_t>(reversed[code] * 2u + (code >> bit & 1));
  return reversed;
}();

// A code that is found directly, with its first bit lowest instead of highest, or the other way round.
constexpr unsigned Reversed(unsigned code, int length) {
  return unsigned{kReversedRoots[code]} >> (CodeTable::kMaxRootBits - length);
}

// Puts a copy after the first `size` entries, a power of two, eight at a time: up to seven more are written.
inline void DoubleTable(std::uint32_t* entries, std::size_t size) {
  for (std::size_t done = 0; done < size; done += 8) {
    std::uint32_t eight[8];
    std::memcpy(eight, entries + done, sizeof eight);
    std::memcpy(entries + size + done, eight, sizeof eight);
  }
}

// A bit for each of 64 symbols with codes of this length, the first one lowest.
inline std::uint64_t SymbolsOfLength(const std::uint8_t* lengths, int length) {
  const auto part = [&](std::size_t vector) {
    return std::uint64_t{EqualBytes(LoadBytes16(lengths + 16 * vector), static_cast<std::uint8_t>(length))}
           << 16 * vector;
  };
  return part(0) | part(1) | part(2) | part(3);
}

// Calls `visit` with each symbol of one code length, in order.
template <typename Visit>
inline void ForSymbolsOfLength(std::span<const std::uint8_t> lengths, int length, Visit visit) {
  for (std::size_t first = 0; first < lengths.size(); first += 64) {
    std::uint64_t found = SymbolsOfLength(&lengths[first], length);
    if (const std::size_t left = lengths.size() - first; left < 64) found &= (std::uint64_t{1} << left) - 1;
    for (; found != 0; found &= found - 1) visit(first + static_cast<std::size_t>(std::countr_zero(found)));
  }
}

// Numbers of symbols by the length of their codes.
using Counts = std::span<const std::uint16_t, kMaxCodeLength + 1>;

int LongestLength(Counts counts) {
  int longest = kMaxCodeLength;
  while (longest > 0 && counts[static_cast<std::size_t>(longest)] == 0) --longest;
  return longest;
}

int ShortestLength(Counts counts) {
  int shortest = 1;
  while (counts[static_cast<std::size_t>(shortest)] == 0) ++shortest;
  return shortest;
}

// What is left of the code space: 0 when the code is complete, negative at the first length with too many.
int Remainder(Counts counts) {
  int remainder = 1;
  for (std::size_t length = 1; length <= kMaxCodeLength && remainder >= 0; ++length)
    remainder = 2 * remainder - counts[length];
  return remainder;
}

}  // namespace

// A byte of a sum counts every sixteenth symbol, so it can't overflow.
CodeTable::LengthCounts CodeTable::CountLengths(std::span<const std::uint8_t> lengths) {
  constexpr std::size_t kLanes = 16, kAtOnce = 4;
  static_assert(kMaxSymbols / kLanes < 256);
  std::array<Bytes16, (kMaxSymbols / kLanes + kAtOnce - 1) / kAtOnce * kAtOnce> vectors;
  std::size_t count = 0;
  Bytes16 greatest{};
  for (; count < lengths.size() / kLanes; ++count) {
    vectors[count] = LoadBytes16(&lengths[kLanes * count]);
    greatest = Greater(greatest, vectors[count]);
  }
  if (const std::size_t rest = lengths.size() % kLanes; rest != 0) {
    vectors[count] = LoadBytes16(&lengths[kLanes * count]) & FirstBytes(rest);
    greatest = Greater(greatest, vectors[count++]);
  }
  while (count % kAtOnce != 0) vectors[count++] = Bytes16{};
  LengthCounts counts{};
  for (std::size_t length = GreatestByte(greatest); length > 0; --length) {
    const auto wanted = static_cast<std::uint8_t>(length);
    Bytes16 found{};  // less one for each
    for (std::size_t first = 0; first < count; first += kAtOnce)
      found += (Bytes16(vectors[first] == wanted) + Bytes16(vectors[first + 1] == wanted)) +
               (Bytes16(vectors[first + 2] == wanted) + Bytes16(vectors[first + 3] == wanted));
    counts[length] = SumOfBytes(-found);
  }
  return counts;
}

int CodeTable::Build(std::span<const std::uint8_t> lengths, std::span<const std::uint32_t> meanings,
                     int max_root_bits, int& longest) {
  counts_ = CountLengths(lengths);
  const int own_longest = LongestLength(counts_);
  longest = std::max(longest, own_longest);
  if (const int remainder = Remainder(counts_); remainder != 0) return remainder;
  FillRoots(lengths, meanings, std::min({own_longest, max_root_bits, kMaxRootBits}));
  SortLong(lengths, meanings, own_longest);
  return 0;
}

// The literals with short codes, by the length of these, to make pairs of.
class CodeTable::Literals {
 public:
  bool none() const { return count_ == 0; }
  // Takes those from a table that has the codes of this length, `first_code` to `end_code`. Lengths come one
  // after the other.
  void Add(int length, unsigned first_code, unsigned end_code, const std::uint32_t* table) {
    first_[static_cast<std::size_t>(length)] = count_;
    for (unsigned code = first_code; code < end_code; ++code) {
      const unsigned reversed = Reversed(code, length);
      const std::uint32_t entry = table[reversed];
      codes_[count_] = static_cast<std::uint16_t>(reversed);
      entries_[count_] = entry;
      as_second_[count_] = kEntryPair + (EntryValue(entry) << (kEntryValueShift + 8)) + EntryTaken(entry);
      count_ += (entry & kEntryLiteral) != 0 ? 1 : 0;  // anything else is overwritten by the next
    }
    first_[static_cast<std::size_t>(length) + 1] = count_;
  }
  // Puts all pairs whose codes have these lengths into a table.
  void Join(std::size_t first_length, std::size_t second_length, std::uint32_t* table) const {
    const std::size_t second_begin = first_[second_length], second_end = first_[second_length + 1],
                      first_end = first_[first_length + 1];
    for (std::size_t first = first_[first_length]; first < first_end; ++first) {
      const unsigned code = codes_[first];
      const std::uint32_t entry = entries_[first];
      for (std::size_t second = second_begin; second < second_end; ++second)
        table[code | unsigned{codes_[second]} << first_length] = entry + as_second_[second];
    }
  }

 private:
  std::size_t count_ = 0;
  std::array<std::size_t, kMaxRootBits + 2> first_;
  std::array<std::uint16_t, kMaxSymbols + 1> codes_;  // the first bit lowest
  std::array<std::uint32_t, kMaxSymbols + 1> entries_, as_second_;
};

// Codes come in rising length, so all that is known about codes of n bits holds for both values of the bit
// after them: the table is doubled with each length, and each symbol is written once. So is each pair of
// literals, which counts as a code of the length of both.
void CodeTable::FillRoots(std::span<const std::uint8_t> lengths, std::span<const std::uint32_t> meanings,
                          int root_bits) {
  Literals literals;
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
    const unsigned first_code = code;
    if (counts_[static_cast<std::size_t>(length)] != 0)
      ForSymbolsOfLength(lengths, length, [&](std::size_t symbol) {
        roots_[Reversed(code++, length)] = WithLength(meanings[symbol], length);
      });
    if (length + shortest <= root_bits) literals.Add(length, first_code, code, roots_.data());
    if (literals.none()) continue;
    for (int first = shortest; first <= length - shortest; ++first)
      literals.Join(static_cast<std::size_t>(first), static_cast<std::size_t>(length - first), roots_.data());
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
