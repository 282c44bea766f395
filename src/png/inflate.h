// Undoes a deflate stream (RFC 1951) piece by piece.
//
// The decoder is stricter than the standard in one way (every code must be complete, a single distance code
// included) and looser in others: the length symbols 286 and 287 stand for nothing, the distance symbols 30
// and 31 have bases of their own, distances reach back as far as 65536 bytes, and a stored block whose two
// lengths disagree is copied all the same. Past the end of the stream codes are read as zero bits.
//
// No stream makes it read or write outside the memory it was given. Where a stream asks for bits past its
// end, for bytes before its first or beyond the limit, decoding finishes with what there is.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "png/code_lengths.h"
#include "png/code_table.h"
#include "png/fast_bits.h"

namespace marklet::png {

// Where output goes: a piece of memory whose front may be dropped from time to time.
struct InflateWindow {
  // Matches reach back at most this far, so this much must stay when the front is dropped.
  static constexpr std::size_t kHistory = 65536;
  // A match may run less than this far past `full`.
  static constexpr std::size_t kLongestMatch = 258;
  // Memory that must follow the last byte that counts: copies in wide steps run over by less than this.
  static constexpr std::size_t kSpill = 64;

  std::uint8_t* data = nullptr;
  std::size_t position = 0;   // of the next byte
  std::size_t full = 0;       // at or past this position the decoder stops and asks for room
  std::uint64_t dropped = 0;  // bytes that stood before data[0]
};

class Inflater {
 public:
  Inflater() {}  // leaves the tables as they are
  Inflater(const Inflater&) = delete;
  Inflater& operator=(const Inflater&) = delete;

  // Bytes of output that are let through beyond the expected size.
  static constexpr std::size_t kSlack = 100;

  enum class Outcome {
    kFull,       // the window is full; make room and run again
    kFinished,   // the stream has ended, well or badly; the output is what the window got
    kBadTables,  // a block described no usable code: the stream counts as not decoded at all
  };

  // `size` is the number of bytes the caller expects. A match that goes on more than kSlack bytes past them
  // ends the stream there.
  void Start(std::span<const std::uint8_t> stream, std::uint64_t size);
  // The window must be the one of the run before, moved or not, with at least its last kHistory bytes kept.
  Outcome Run(InflateWindow& window);
  // Makes this decoder treat the next stream as the other would. Streams that it decoded leave their traces.
  void TakeTraces(const Inflater& other) { traces_ = other.traces_; }

 private:
  // What to do next.
  enum class Step { kHeader, kStored, kSymbols, kFull, kFinish, kBadTables };

  void FillBits(int count);
  bool GetBits(int count, std::uint32_t& value);
  void DropBits(int count);
  std::uint32_t DecodeSymbol(const CodeTable& table, int longest);
  bool GetExtraBits(std::uint32_t entry, std::uint32_t& value);
  bool Exhausted() const { return input_position_ == stream_.size() && bit_count_ <= 0; }
  std::uint64_t RoomToEnd(const InflateWindow& window) const;

  const std::uint8_t* FastEnd() const;
  bool FarFromEnd() const;
  FastBits TakeBits() const;
  void GiveBack(FastBits bits);

  Step StartBlock(const InflateWindow& window);
  Step StartStored(const InflateWindow& window);
  Step StartFixed(const InflateWindow& window);
  Step StartDynamic(const InflateWindow& window);
  Step StartReserved(const InflateWindow&) { return Step::kFinish; }
  Step ReadCodeLengths(const CodeTable& table, int longest, CodeLengths& lengths);
  bool BuildTables(const CodeLengths& lengths, std::size_t literal_count);
  Step EndBlock() const { return final_block_ ? Step::kFinish : Step::kHeader; }

  Step CopyStored(InflateWindow& window);
  Step DecodeSymbols(InflateWindow& window);
  Step DecodeExactly(InflateWindow& window);
  bool CopyMatch(std::uint32_t length, std::uint32_t distance, InflateWindow& window);
  bool RunFast(InflateWindow& window);

  std::span<const std::uint8_t> stream_;
  std::size_t input_position_ = 0;  // of the next byte that isn't in bit_buffer_
  std::uint32_t bit_buffer_ = 0;    // unread bits, the next one lowest; zeros above
  int bit_count_ = 0;               // below zero once codes were read past the stream's end
  std::uint64_t end_ = 0;           // of the output: no byte is written at or past this offset
  bool final_block_ = false;
  std::size_t stored_left_ = 0;
  Step step_ = Step::kFinish;

  // The longest lengths rise only, but for the second use of the fixed tables. How far the decoder reads
  // ahead depends on them, and on that whether a stored block at the very end is taken.
  struct Traces {
    int longest_literal = 0, longest_distance = 0;
    bool fixed_tables_built = false;
  };
  Traces traces_;
  const CodeTable* literals_ = nullptr;
  const CodeTable* distances_ = nullptr;
  CodeTable own_literals_, own_distances_;
};

// How many bytes a stream gives, found without keeping them, and `inflater` as it leaves it; none if it
// counts as not decoded. `size` is what the caller expects.
std::optional<std::size_t> Measure(Inflater& inflater, std::span<const std::uint8_t> stream,
                                   std::size_t size);

// The whole of a short stream at once. False when a block described no usable code.
bool InflateAll(Inflater& inflater, std::span<const std::uint8_t> stream, std::size_t size,
                std::vector<std::uint8_t>& output);

// No stream of `length` bytes yields more than this.
constexpr std::uint64_t MostInflated(std::size_t length) {
  // The shortest match takes two bits and gives 258 bytes. One more may start in the last bits.
  return (std::uint64_t{length} * 4 + 2) * 258;
}

}  // namespace marklet::png
