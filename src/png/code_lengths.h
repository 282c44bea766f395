// The code lengths of a block's two codes while they come: of the literals, then of the distances.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "png/code_table.h"
#include "png/deflate_symbols.h"
#include "png/fast_bits.h"

namespace marklet::png {

class CodeLengths {
 public:
  explicit CodeLengths(std::size_t total) : total_(total) {}

  std::size_t left() const { return total_ - place_.count; }
  std::span<const std::uint8_t> all() const { return std::span(lengths_).first(total_); }
  LengthCounts CountsWithout(const LengthCounts& part) const;

  // Whether `entry`, one of kLengthMeanings in a table, repeats a length where there is none yet.
  bool LacksLast(std::uint32_t entry) const { return RepeatsLast(entry) && place_.count == 0; }
  // Adds what `entry` says, `value` being its value with extra bits. False when that breaks a rule.
  bool Add(std::uint32_t entry, std::uint32_t value);
  // Adds as many as `bits` allow, but for the very last one. `table` may have pairs.
  bool AddMany(const CodeTable& table, FastBits& bits);

 private:
  static constexpr std::size_t kFewRepeats = 16;  // always written, to spare a jump that can't be foreseen
  // How far they have come.
  struct Place {
    std::size_t count = 0;
    unsigned last = 0;  // the last length
  };

  static bool RepeatsLast(std::uint32_t entry) { return (entry & (kEntryMatch | kEntryEnd)) == kEntryMatch; }
  bool AddAt(Place& place, std::uint32_t entry, std::uint32_t value);
  bool AddManyInline(const CodeTable& table, FastBits& bits);
  bool AddManyPlain(const CodeTable& table, FastBits& bits);
  bool AddManyBmi2(const CodeTable& table, FastBits& bits);

  std::size_t total_;
  Place place_;
  // The second of a pair is counted apart: a number that was only just stored is slow to read.
  LengthCounts counts_{}, second_counts_{};
  std::array<std::uint8_t, kLiteralSymbols + kDistanceSymbols + kFewRepeats> lengths_;
};

}  // namespace marklet::png
