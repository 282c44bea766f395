#include "png/inflate.h"

#include <algorithm>
#include <cstring>
#include <optional>

#include "png/code_lengths.h"
#include "png/deflate_symbols.h"
#include "png/fast_bits.h"
#include "png/inflate_fast.h"

namespace marklet::png {
namespace {

constexpr int kLiteralRootBits = 11, kDistanceRootBits = 8, kLengthRootBits = 7;
// For a few bytes of input a big table costs more than it saves.
constexpr int kShortLiteralRootBits = 10, kShortDistanceRootBits = 7;
constexpr std::size_t kShortInput = 1500;

// The bytes before the stream's end that are left to the exact decoder, so that no result shows that others
// were decoded fast. How far the exact one has read ahead shows in one place: it refuses a stored block when
// fewer than five bytes follow what it has read. Where the fast decoder stops, the exact one would have read
// no further than this margin: every code is looked up, with as many bits as the longest one has, within the
// bits that the last refill was sure of. From there on it reads nothing until both have read alike. Four
// bytes aren't enough, and more than five only cost. In the last block nothing asks.
constexpr std::size_t kMargin = 5;

struct FixedTables {
  static constexpr int kLongestLiteral = 9, kLongestDistance = 5;
  CodeTable literals, distances;

  FixedTables() {
    std::array<std::uint8_t, kLiteralSymbols + CodeTable::kSpill> lengths;
    std::fill_n(lengths.begin(), 144, std::uint8_t{8});
    std::fill_n(lengths.begin() + 144, 112, std::uint8_t{9});
    std::fill_n(lengths.begin() + 256, 24, std::uint8_t{7});
    std::fill_n(lengths.begin() + 280, 8, std::uint8_t{8});
    int longest = 0;
    literals.Build(std::span(lengths).first(kLiteralSymbols), kLiteralMeanings, kLiteralRootBits, longest);
    std::fill_n(lengths.begin(), kDistanceSymbols, std::uint8_t{5});
    distances.Build(std::span(lengths).first(kDistanceSymbols), kDistanceMeanings, kDistanceRootBits,
                    longest);
  }
};

const FixedTables& Fixed() {
  static const FixedTables tables;
  return tables;
}

}  // namespace

void Inflater::Start(std::span<const std::uint8_t> stream, std::uint64_t size) {
  stream_ = stream;
  input_position_ = 0;
  bit_buffer_ = 0;
  bit_count_ = 0;
  end_ = size + kSlack + 1;
  step_ = Step::kHeader;
}

Inflater::Outcome Inflater::Run(InflateWindow& window) {
  for (;;) {
    switch (step_) {
      case Step::kHeader:
        step_ = StartBlock(window);
        break;
      case Step::kStored:
      case Step::kSymbols: {
        const Step next = step_ == Step::kStored ? CopyStored(window) : DecodeSymbols(window);
        if (next == Step::kFull) return Outcome::kFull;
        step_ = next;
        break;
      }
      case Step::kBadTables:
        return Outcome::kBadTables;
      case Step::kFull:
      case Step::kFinish:
        return Outcome::kFinished;
    }
  }
}

// ---- bits, exactly as far ahead as the results depend on it ----

void Inflater::FillBits(int count) {
  if (bit_count_ >= count) return;
  const auto wanted = static_cast<std::size_t>(count - bit_count_ + 7) / 8;
  if (stream_.size() - input_position_ >= sizeof(std::uint64_t)) {
    const auto next = LoadLittleEndian<std::uint32_t>(stream_.data() + input_position_);
    bit_buffer_ |= (next & ((1u << 8 * wanted) - 1u)) << bit_count_;
    input_position_ += wanted;
    bit_count_ += static_cast<int>(8 * wanted);
    return;
  }
  while (bit_count_ < count && input_position_ < stream_.size()) {
    bit_buffer_ |= std::uint32_t{stream_[input_position_++]} << bit_count_;
    bit_count_ += 8;
  }
}

// False at the end of the stream.
bool Inflater::GetBits(int count, std::uint32_t& value) {
  FillBits(count);
  if (bit_count_ < count) return false;
  value = bit_buffer_ & ((1u << count) - 1u);
  DropBits(count);
  return true;
}

void Inflater::DropBits(int count) {
  bit_buffer_ >>= count;
  bit_count_ -= count;
}

std::uint32_t Inflater::DecodeSymbol(const CodeTable& table, int longest) {
  FillBits(longest);
  const std::uint32_t entry = table.Find(bit_buffer_);
  DropBits(static_cast<int>(EntryLength(entry)));
  return entry;
}

bool Inflater::GetExtraBits(std::uint32_t entry, std::uint32_t& value) {
  std::uint32_t extra;
  if (!GetBits(static_cast<int>(EntryTaken(entry) - EntryLength(entry)), extra)) return false;
  value = EntryValue(entry) + extra;
  return true;
}

// ---- bits for those who take many ----

const std::uint8_t* Inflater::FastEnd() const {
  return stream_.data() + stream_.size() - (final_block_ ? 0 : kMargin);
}

bool Inflater::FarFromEnd() const {
  return stream_.size() >= kMargin + sizeof(std::uint64_t) && stream_.size() - input_position_ >= kMargin;
}

FastBits Inflater::TakeBits() const {
  return {bit_buffer_, static_cast<unsigned>(bit_count_), stream_.data() + input_position_, FastEnd()};
}

void Inflater::GiveBack(FastBits bits) {
  bits.Settle();
  input_position_ = static_cast<std::size_t>(bits.in() - stream_.data());
  bit_buffer_ = static_cast<std::uint32_t>(bits.bits());
  bit_count_ = static_cast<int>(bits.count());
}

std::uint64_t Inflater::RoomToEnd(const InflateWindow& window) const {
  return end_ - (window.dropped + window.position);
}

// ---- block headers ----

Inflater::Step Inflater::StartBlock(const InflateWindow& window) {
  using Starter = Step (Inflater::*)(const InflateWindow&);
  static constexpr Starter kStarters[] = {&Inflater::StartStored, &Inflater::StartFixed,
                                          &Inflater::StartDynamic, &Inflater::StartReserved};
  std::uint32_t final_block, type;
  if (!GetBits(1, final_block) || !GetBits(2, type)) return Step::kFinish;
  final_block_ = final_block != 0;
  return (this->*kStarters[type])(window);
}

Inflater::Step Inflater::StartStored(const InflateWindow& window) {
  // Bytes read ahead count as gone here, though they are given back below.
  if (input_position_ + 4 >= stream_.size()) return Step::kFinish;
  input_position_ -= static_cast<std::size_t>(bit_count_ / 8);
  stored_left_ = LoadLittleEndian<std::uint16_t>(&stream_[input_position_]);
  input_position_ += 4;  // the complement after the length may say what it likes
  bit_buffer_ = 0;
  bit_count_ = 0;
  const bool fits = stored_left_ <= stream_.size() - input_position_ && stored_left_ <= RoomToEnd(window);
  return fits ? Step::kStored : Step::kFinish;
}

Inflater::Step Inflater::StartFixed(const InflateWindow&) {
  const bool again = traces_.fixed_tables_built;
  traces_.longest_literal =
      again ? Fixed().kLongestLiteral : std::max(traces_.longest_literal, Fixed().kLongestLiteral);
  traces_.longest_distance =
      again ? Fixed().kLongestDistance : std::max(traces_.longest_distance, Fixed().kLongestDistance);
  traces_.fixed_tables_built = true;
  literals_ = &Fixed().literals;
  distances_ = &Fixed().distances;
  return Step::kSymbols;
}

Inflater::Step Inflater::StartDynamic(const InflateWindow&) {
  std::uint32_t literal_count, distance_count, length_count;
  if (!GetBits(5, literal_count) || !GetBits(5, distance_count) || !GetBits(4, length_count))
    return Step::kFinish;
  literal_count += 257;
  distance_count += 1;
  length_count += 4;

  std::array<std::uint8_t, kLengthSymbols + CodeTable::kSpill> storage{};
  const std::span<std::uint8_t> code_lengths = std::span(storage).first(kLengthSymbols);
  for (std::size_t index = 0; index < length_count; ++index) {
    std::uint32_t length;
    if (!GetBits(3, length)) return Step::kFinish;
    code_lengths[kCodeLengthOrder[index]] = static_cast<std::uint8_t>(length);
  }
  int longest = 0;
  CodeTable length_table;
  if (length_table.Build(code_lengths, kLengthMeanings, kLengthRootBits, longest) != 0)
    return Step::kBadTables;

  CodeLengths lengths(literal_count + distance_count);
  if (const Step failure = ReadCodeLengths(length_table, longest, lengths); failure != Step::kSymbols)
    return failure;
  return BuildTables(lengths, literal_count) ? Step::kSymbols : Step::kBadTables;
}

bool Inflater::BuildTables(const CodeLengths& lengths, std::size_t literal_count) {
  const std::size_t left = stream_.size() - input_position_;  // all of it, though there may be more blocks
  const int literal_bits = left < kShortInput ? kShortLiteralRootBits : kLiteralRootBits;
  const std::span<const std::uint8_t> all = lengths.all();
  if (own_literals_.Build(all.first(literal_count), kLiteralMeanings, literal_bits,
                          traces_.longest_literal) != 0)
    return false;
  // A lone distance code of one bit is refused here like any other gap.
  if (own_distances_.Build(all.subspan(literal_count), kDistanceMeanings,
                           left < kShortInput ? kShortDistanceRootBits : kDistanceRootBits,
                           traces_.longest_distance) != 0)
    return false;
  literals_ = &own_literals_;
  distances_ = &own_distances_;
  return true;
}

// The symbols are next when all lengths are there.
Inflater::Step Inflater::ReadCodeLengths(const CodeTable& table, int longest, CodeLengths& lengths) {
  if (FarFromEnd()) {
    FastBits bits = TakeBits();
    if (!lengths.AddMany(table, bits)) return Step::kBadTables;
    GiveBack(bits);
  }
  while (lengths.left() > 0) {
    const std::uint32_t entry = DecodeSymbol(table, longest);
    if (lengths.LacksLast(entry)) return Step::kBadTables;
    std::uint32_t value = 0;
    if ((entry & kEntryMatch) != 0 && !GetExtraBits(entry, value)) return Step::kFinish;
    if (!lengths.Add(entry, value)) return Step::kBadTables;
  }
  return Step::kSymbols;
}

// ---- output ----

Inflater::Step Inflater::CopyStored(InflateWindow& window) {
  const std::size_t room = window.full > window.position ? window.full - window.position : 0;
  const std::size_t count = std::min(stored_left_, room);
  if (count > 0) std::memcpy(window.data + window.position, stream_.data() + input_position_, count);
  window.position += count;
  input_position_ += count;
  stored_left_ -= count;
  return stored_left_ > 0 ? Step::kFull : EndBlock();
}

Inflater::Step Inflater::DecodeSymbols(InflateWindow& window) {
  return RunFast(window) ? EndBlock() : DecodeExactly(window);
}

// True when the block has ended; otherwise the next symbol is for DecodeExactly.
bool Inflater::RunFast(InflateWindow& window) {
  const std::uint64_t room = RoomToEnd(window);
  if (!FarFromEnd() || room <= FastRun::kMostLiterals || window.position >= window.full) return false;
  std::uint8_t* const out = window.data + window.position;
  const std::uint64_t to_full = window.full - window.position;
  FastRun run = {*literals_,
                 *distances_,
                 TakeBits(),
                 out,
                 window.data,
                 out + std::min(to_full, room - FastRun::kMostLiterals),
                 out + std::min(to_full + InflateWindow::kLongestMatch, room)};
  const bool ended = run.Run();
  GiveBack(run.bits);
  window.position = static_cast<std::size_t>(run.out - window.data);
  return ended;
}

// Symbol by symbol, with every limit looked at. Ends the block, or stops where RunFast may be worth while
// again.
Inflater::Step Inflater::DecodeExactly(InflateWindow& window) {
  while (window.position < window.full) {
    const bool exhausted = Exhausted();
    const std::uint32_t entry = DecodeSymbol(*literals_, traces_.longest_literal);
    if (entry & kEntryLiteral) {
      // Past the stream's end the same literal would come for ever.
      if (exhausted || RoomToEnd(window) == 0) return Step::kFinish;
      window.data[window.position++] = static_cast<std::uint8_t>(EntryValue(entry));
      continue;
    }
    if (entry & kEntryEnd) return EndBlock();
    std::uint32_t length, distance;
    if (!GetExtraBits(entry, length)) return Step::kFinish;
    if (!GetExtraBits(DecodeSymbol(*distances_, traces_.longest_distance), distance)) return Step::kFinish;
    if (!CopyMatch(length, distance, window)) return Step::kFinish;
  }
  return Step::kFull;
}

// False where the stream ends here: a match that goes on past the limit, or reaches before the first byte.
bool Inflater::CopyMatch(std::uint32_t length, std::uint32_t distance, InflateWindow& window) {
  const std::uint64_t room = RoomToEnd(window);
  if (distance > window.position && length > 0 && room > 0) return false;
  for (std::uint64_t count = std::min<std::uint64_t>(length, room); count > 0; --count, ++window.position)
    window.data[window.position] = window.data[window.position - distance];
  if (length <= room) return true;
  --window.position;  // the last byte that was let through doesn't count
  return false;
}

std::optional<std::size_t> Measure(Inflater& inflater, std::span<const std::uint8_t> stream,
                                   std::size_t size) {
  constexpr std::size_t kPiece = InflateWindow::kHistory / 2, kFull = InflateWindow::kHistory + kPiece;
  std::vector<std::uint8_t> memory(kFull + InflateWindow::kLongestMatch + InflateWindow::kSpill);
  InflateWindow window{memory.data(), 0, kFull, 0};
  inflater.Start(stream, size);
  for (;;) {
    const Inflater::Outcome outcome = inflater.Run(window);
    if (outcome == Inflater::Outcome::kBadTables) return std::nullopt;
    if (outcome == Inflater::Outcome::kFinished)
      return static_cast<std::size_t>(window.dropped) + window.position;
    const std::size_t drop = window.position - InflateWindow::kHistory;
    std::memmove(window.data, window.data + drop, InflateWindow::kHistory);
    window.position -= drop;
    window.dropped += drop;
  }
}

// What a stream claims to hold may never come, so memory for much of it is taken once it is known how much
// there is: twice the time is cheaper here than twice the memory.
bool InflateAll(Inflater& inflater, std::span<const std::uint8_t> stream, std::size_t size,
                std::vector<std::uint8_t>& output) {
  constexpr std::size_t kMuch = 2 * InflateWindow::kHistory;
  const auto expected = static_cast<std::size_t>(std::min<std::uint64_t>(size, MostInflated(stream.size())));
  const std::size_t limit = expected + Inflater::kSlack + 1;
  std::size_t room = limit;
  if (limit > kMuch) {
    Inflater measuring;
    measuring.TakeTraces(inflater);
    const std::optional<std::size_t> measured = Measure(measuring, stream, expected);
    if (!measured) {
      inflater.TakeTraces(measuring);
      return false;
    }
    room = std::min(limit, *measured + 1);
  }
  output.resize(room + InflateWindow::kLongestMatch + InflateWindow::kSpill);
  // The decoder must find its limit itself, so a window that holds everything never gets full.
  InflateWindow window{output.data(), 0, room == limit ? limit + InflateWindow::kLongestMatch : room, 0};
  inflater.Start(stream, expected);
  const bool decoded = inflater.Run(window) == Inflater::Outcome::kFinished;
  output.resize(decoded ? window.position : 0);
  return decoded;
}

}  // namespace marklet::png
