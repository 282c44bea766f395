// The code lengths of a block's two codes, as they are read: of the literals, then of the distances.
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

  std::size_t left() const { return total_ - count_; }
  std::span<const std::uint8_t> all() const { return std::span(lengths_).first(total_); }

  // Whether `entry`, one of kLengthMeanings in a table, repeats a length where there is none yet.
  bool LacksLast(std::uint32_t entry) const { return RepeatsLast(entry) && count_ == 0; }
  // Adds what `entry`, not a pair, says, `value` being its value with extra bits. False when that breaks a
  // rule.
  bool Add(std::uint32_t entry, std::uint32_t value);
  // Adds as many as `bits` allow, but for the very last one.
  bool AddMany(const CodeTable& table, FastBits& bits);

 private:
  static constexpr std::size_t kFewRepeats = 16;  // always written, to spare a jump that can't be predicted

  static bool RepeatsLast(std::uint32_t entry) { return (entry & (kEntryMatch | kEntryEnd)) == kEntryMatch; }
  bool AddRun(std::size_t& count, std::uint32_t entry, std::size_t repeats);
  bool AddManyInline(const CodeTable& table, FastBits& bits);
  bool AddManyPlain(const CodeTable& table, FastBits& bits);
  bool AddManyBmi2(const CodeTable& table, FastBits& bits);

  std::size_t total_;
  std::size_t count_ = 0;  // of those that have come
  std::array<std::uint8_t, kLiteralSymbols + kDistanceSymbols + CodeTable::kSpill> lengths_;
};

}  // namespace marklet::png
