// Prefix codes of a deflate stream, as tables to look them up in.
//
// A table answers with an entry: one number that holds what a symbol stands for, how many bits of the stream
// it takes, and what kind it is.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace marklet::png {

constexpr int kMaxCodeLength = 15;

// Fields of an entry. `Taken` counts the code's bits and the extra bits after it; `Length` the code's alone.
constexpr std::uint32_t kEntryTakenMask = 0x3F;
constexpr int kEntryLengthShift = 8;
constexpr std::uint32_t kEntryLengthMask = 0xF;
constexpr std::uint32_t kEntryPair = 1u << 12;     // two literals, the second in the top byte
constexpr std::uint32_t kEntryEnd = 1u << 13;      // the end of the block
constexpr std::uint32_t kEntryMatch = 1u << 14;    // base of a length or distance
constexpr std::uint32_t kEntryLiteral = 1u << 15;  // one byte or code length, or a pair of bytes
constexpr int kEntryValueShift = 16;

constexpr unsigned EntryTaken(std::uint32_t entry) { return entry & kEntryTakenMask; }
constexpr unsigned EntryLength(std::uint32_t entry) { return entry >> kEntryLengthShift & kEntryLengthMask; }
constexpr unsigned EntryValue(std::uint32_t entry) { return entry >> kEntryValueShift; }
constexpr std::uint32_t PairBit(std::uint32_t entry) { return entry / kEntryPair & 1; }
// With the extra bits, which follow the code in `bits`.
constexpr std::uint32_t EntryValueWithExtra(std::uint32_t entry, std::uint64_t bits) {
  const std::uint64_t taken = bits & ((std::uint64_t{1} << EntryTaken(entry)) - 1);
  return EntryValue(entry) + static_cast<std::uint32_t>(taken >> EntryLength(entry));
}

// The entries that are found directly, for loops that keep them in registers. 0 where the code is longer.
struct RootEntries {
  const std::uint32_t* entries;
  std::size_t mask;
  std::uint32_t For(std::uint64_t bits) const { return entries[static_cast<std::size_t>(bits) & mask]; }
};

// A complete prefix code. Codes up to so many bits are found directly, two literals at once where both codes
// fit; for a longer one there is a search by length.
class CodeTable {
 public:
  static constexpr int kMaxRootBits = 11;

  CodeTable() {}  // leaves the arrays as they are: clearing them would cost more than a small picture

  // Takes the code lengths of symbols 0, 1, ... and what each symbol means: an entry without its code's
  // length. Up to kSpill bytes past the lengths are read. Returns 0 for a complete code, a negative number
  // for one with too many codes of some length, and a positive one for a code with gaps; the table is usable
  // after 0 only. `longest` rises to the longest length.
  static constexpr std::size_t kSpill = 63;
  int Build(std::span<const std::uint8_t> lengths, std::span<const std::uint32_t> meanings, int max_root_bits,
            int& longest);

  // `bits` holds the stream's next bits from its lowest bit up, at least the longest code's length of them.
  // Never a pair.
  std::uint32_t Find(std::uint64_t bits) const;
  std::uint32_t FindLong(std::uint64_t bits) const;  // where the root entry is 0

  RootEntries roots() const { return {roots_.data(), root_mask_}; }

 private:
  // How many symbols have a code of each length; nothing at 0.
  using LengthCounts = std::array<std::uint16_t, kMaxCodeLength + 1>;
  class Literals;

  static LengthCounts CountLengths(std::span<const std::uint8_t> lengths);
  void FillRoots(std::span<const std::uint8_t> lengths, std::span<const std::uint32_t> meanings,
                 int root_bits);
  void SortLong(std::span<const std::uint8_t> lengths, std::span<const std::uint32_t> meanings, int longest);

  static constexpr int kMaxSymbols = 288;

  std::size_t root_mask_ = 0;
  LengthCounts counts_;
  int root_bits_ = 0;
  unsigned root_end_code_ = 0;  // the code of so many bits that follows the last one in `roots_`
  std::array<std::uint32_t, kMaxSymbols> long_;  // entries of longer codes, in the order of the codes
  std::array<std::uint32_t, 1 << kMaxRootBits> roots_;
};

}  // namespace marklet::png
