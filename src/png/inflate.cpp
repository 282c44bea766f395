#include "png/inflate.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace marklet::png {
namespace {

constexpr std::size_t kLiteralSymbols = 288, kDistanceSymbols = 32, kLengthSymbols = 19;

constexpr std::uint32_t Base(unsigned base, unsigned extra_bits) {
  return kEntryMatch | base << kEntryValueShift | extra_bits;
}

// 286 and 287 keep the length 0.
constexpr auto kLiteralMeanings = [] {
  std::array<std::uint32_t, kLiteralSymbols> meanings{};
  for (unsigned byte = 0; byte < 256; ++byte) meanings[byte] = kEntryLiteral | byte << kEntryValueShift;
  meanings[256] = kEntryEnd;
  unsigned base = 3;
  for (unsigned index = 0; index < 28; ++index) {
    const unsigned extra_bits = index < 8 ? 0 : index / 4 - 1;
    meanings[257 + index] = Base(base, extra_bits);
    base += 1u << extra_bits;
  }
  meanings[285] = Base(258, 0);
  meanings[286] = meanings[287] = Base(0, 0);
  return meanings;
}();

// 30 and 31, which the format leaves out, go on with 14 extra bits.
constexpr auto kDistanceMeanings = [] {
  std::array<std::uint32_t, kDistanceSymbols> meanings{};
  unsigned base = 1;
  for (unsigned index = 0; index < kDistanceSymbols; ++index) {
    const unsigned extra_bits = index < 4 ? 0 : index / 2 - 1;
    meanings[index] = Base(base, extra_bits);
    base += 1u << extra_bits;
  }
  return meanings;
}();

constexpr auto kLengthMeanings = [] {
  std::array<std::uint32_t, kLengthSymbols> meanings{};
  for (unsigned symbol = 0; symbol < kLengthSymbols; ++symbol)
    meanings[symbol] = kEntryLiteral | symbol << kEntryValueShift;
  return meanings;
}();

constexpr std::array<std::uint8_t, kLengthSymbols> kCodeLengthOrder = {16, 17, 18, 0, 8,  7, 9,  6, 10, 5,
                                                                       11, 4,  12, 3, 13, 2, 14, 1, 15};

constexpr int kLiteralRootBits = 11, kDistanceRootBits = 8, kLengthRootBits = 7;

struct FixedTables {
  static constexpr int kLongestLiteral = 9, kLongestDistance = 5;
  CodeTable literals, distances;

  FixedTables() {
    std::array<std::uint8_t, kLiteralSymbols> lengths;
    std::fill_n(lengths.begin(), 144, std::uint8_t{8});
    std::fill_n(lengths.begin() + 144, 112, std::uint8_t{9});
    std::fill_n(lengths.begin() + 256, 24, std::uint8_t{7});
    std::fill_n(lengths.begin() + 280, 8, std::uint8_t{8});
    int longest = 0;
    literals.Build(lengths, kLiteralMeanings, kLiteralRootBits, longest);
    std::fill_n(lengths.begin(), kDistanceSymbols, std::uint8_t{5});
    distances.Build(std::span(lengths).first(kDistanceSymbols), kDistanceMeanings, kDistanceRootBits,
                    longest);
  }
};

const FixedTables& Fixed() {
  static const FixedTables tables;
  return tables;
}

template <typename T>
inline T Load(const std::uint8_t* bytes) {
  T value;
  std::memcpy(&value, bytes, sizeof value);
  return value;
}

template <typename T>
inline void Store(std::uint8_t* bytes, T value) {
  std::memcpy(bytes, &value, sizeof value);
}

inline std::uint64_t LittleEndian(std::uint64_t value) {
  return std::endian::native == std::endian::little ? value : __builtin_bswap64(value);
}
inline std::uint64_t LoadLittleEndian(const std::uint8_t* bytes) {
  return LittleEndian(Load<std::uint64_t>(bytes));
}
inline void StoreLittleEndian(std::uint8_t* bytes, std::uint64_t value) { Store(bytes, LittleEndian(value)); }

// The value of an entry with its extra bits, which follow the code in `bits`.
inline std::uint32_t ValueWithExtra(std::uint32_t entry, std::uint64_t bits) {
  const std::uint64_t taken = bits & ((std::uint64_t{1} << EntryTaken(entry)) - 1);
  return EntryValue(entry) + static_cast<std::uint32_t>(taken >> EntryLength(entry));
}

// Repeats the last `distance` bytes, 1 to 7 of them: eight bytes hold the pattern, and each step writes as
// many as keep it in phase. Reading bytes back that were only just written would stall the processor.
inline void RepeatShort(std::uint8_t* out, std::size_t distance, std::size_t length) {
  static constexpr std::uint64_t kCopies[8] = {
      0,           ~0ull / 0xFF,   ~0ull / 0xFFFF, 0x0001000001000001,
      0x100000001, 1ull << 40 | 1, 1ull << 48 | 1, 1ull << 56 | 1};
  static constexpr std::uint8_t kSteps[8] = {0, 8, 8, 6, 8, 5, 6, 7};
  const std::uint64_t last = LoadLittleEndian(out - distance) & ((std::uint64_t{1} << 8 * distance) - 1);
  const std::uint64_t pattern = last * kCopies[distance];
  const std::size_t step = kSteps[distance];
  const std::uint8_t* const end = out + length;
  do {
    StoreLittleEndian(out, pattern);
    out += step;
  } while (out < end);
}

// Writes up to kSpill bytes more than it should.
inline void CopyMatchFast(std::uint8_t* out, std::size_t distance, std::size_t length) {
  struct Block {
    std::uint64_t low, high;
  };
  if (distance < 8) return RepeatShort(out, distance, length);
  const std::uint8_t* from = out - distance;
  const std::uint8_t* const end = out + length;
  if (distance < sizeof(Block)) {
    for (; out < end; out += 8, from += 8) Store(out, Load<std::uint64_t>(from));
    return;
  }
  do {
    Store(out, Load<Block>(from));
    out += sizeof(Block);
    from += sizeof(Block);
  } while (out < end);
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
  stored_left_ = stream_[input_position_] | std::size_t{stream_[input_position_ + 1]} << 8;
  input_position_ += 4;  // the complement behind the length may say what it likes
  bit_buffer_ = 0;
  bit_count_ = 0;
  const bool fits = stored_left_ <= stream_.size() - input_position_ && stored_left_ <= RoomToEnd(window);
  return fits ? Step::kStored : Step::kFinish;
}

Inflater::Step Inflater::StartFixed(const InflateWindow&) {
  const bool again = fixed_tables_built_;
  longest_literal_ = again ? Fixed().kLongestLiteral : std::max(longest_literal_, Fixed().kLongestLiteral);
  longest_distance_ =
      again ? Fixed().kLongestDistance : std::max(longest_distance_, Fixed().kLongestDistance);
  fixed_tables_built_ = true;
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

  std::array<std::uint8_t, kLengthSymbols> code_lengths{};
  for (std::size_t index = 0; index < length_count; ++index) {
    std::uint32_t length;
    if (!GetBits(3, length)) return Step::kFinish;
    code_lengths[kCodeLengthOrder[index]] = static_cast<std::uint8_t>(length);
  }
  int longest = 0;
  CodeTable length_table;
  if (length_table.Build(code_lengths, kLengthMeanings, kLengthRootBits, longest) != 0)
    return Step::kBadTables;

  std::array<std::uint8_t, kLiteralSymbols + kDistanceSymbols> storage;
  const std::span<std::uint8_t> lengths = std::span(storage).first(literal_count + distance_count);
  if (const Step failure = ReadCodeLengths(length_table, longest, lengths); failure != Step::kSymbols)
    return failure;
  if (own_literals_.Build(lengths.first(literal_count), kLiteralMeanings, kLiteralRootBits,
                          longest_literal_) != 0)
    return Step::kBadTables;
  // A lone distance code of one bit is refused here like any other gap.
  if (own_distances_.Build(lengths.subspan(literal_count), kDistanceMeanings, kDistanceRootBits,
                           longest_distance_) != 0)
    return Step::kBadTables;
  literals_ = &own_literals_;
  distances_ = &own_distances_;
  return Step::kSymbols;
}

// Gives kSymbols when all lengths are there.
Inflater::Step Inflater::ReadCodeLengths(const CodeTable& table, int longest,
                                         std::span<std::uint8_t> lengths) {
  struct Repeat {
    int extra_bits;
    std::uint32_t base;
  };
  static constexpr Repeat kRepeats[] = {{2, 3}, {3, 3}, {7, 11}};  // symbols 16, 17 and 18
  std::size_t position = 0;
  while (position < lengths.size()) {
    const std::uint32_t symbol = EntryValue(DecodeSymbol(table, longest));
    if (symbol < 16) {
      lengths[position++] = static_cast<std::uint8_t>(symbol);
      continue;
    }
    const Repeat& repeat = kRepeats[symbol - 16];
    std::uint32_t count;
    if (symbol == 16 && position == 0) return Step::kBadTables;
    if (!GetBits(repeat.extra_bits, count)) return Step::kFinish;
    count += repeat.base;
    if (count > lengths.size() - position) return Step::kBadTables;
    const std::uint8_t value = symbol == 16 ? lengths[position - 1] : std::uint8_t{0};
    std::fill_n(lengths.begin() + static_cast<std::ptrdiff_t>(position), count, value);
    position += count;
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

// Far from both ends: eight bytes of input at a time, and no look at the limits but where a match could pass
// them. True when the block has ended; otherwise the next symbol is for DecodeExactly.
bool Inflater::RunFast(InflateWindow& window) {
  // The decoder may be ahead of the codes by three bytes, and a stored block asks about five more.
  constexpr std::size_t kInputMargin = 16;
  constexpr std::size_t kMostLiterals = 3;  // in a row, between two looks at the limits
  const std::uint64_t room = RoomToEnd(window);
  if (stream_.size() - input_position_ < kInputMargin || room <= kMostLiterals ||
      window.position >= window.full)
    return false;

  const std::uint32_t* const literals = literals_->roots();
  const std::uint32_t* const distances = distances_->roots();
  const std::size_t literal_mask = literals_->root_mask(), distance_mask = distances_->root_mask();
  const std::uint8_t* in = stream_.data() + input_position_;
  const std::uint8_t* const in_end = stream_.data() + stream_.size() - kInputMargin;
  std::uint8_t* out = window.data + window.position;
  const std::uint64_t to_full = window.full - window.position;
  const std::uint8_t* const out_end = out + std::min(to_full, room - kMostLiterals);
  const std::uint8_t* const out_limit = out + std::min(to_full + InflateWindow::kLongestMatch, room);
  std::uint64_t bits = bit_buffer_;
  unsigned count = static_cast<unsigned>(bit_count_);
  bool ended = false;

  // At least 56 bits afterwards. Those above `count` are the stream's own too, and are loaded again.
  const auto refill = [&] {
    bits |= LoadLittleEndian(in) << count;
    in += (63 - count) >> 3;
    count |= 56;
  };
  const auto take = [&](unsigned taken) {
    bits >>= taken;
    count -= taken;
  };
  const auto put_literal = [&](std::uint32_t entry) {
    take(EntryTaken(entry));
    *out++ = static_cast<std::uint8_t>(EntryValue(entry));
    return literals[static_cast<std::size_t>(bits) & literal_mask];
  };

  refill();
  std::uint32_t entry = literals[static_cast<std::size_t>(bits) & literal_mask];
  while (in <= in_end && out < out_end) {
    if (entry & kEntryLiteral) {
      entry = put_literal(entry);
      if (entry & kEntryLiteral) {
        entry = put_literal(entry);
        if (entry & kEntryLiteral) {
          entry = put_literal(entry);
          refill();
          continue;
        }
      }
    }
    const std::uint64_t bits_before = bits;
    const unsigned count_before = count;
    const std::uint8_t* const in_before = in;
    if (!(entry & kEntryMatch)) {
      if (entry == 0) entry = literals_->FindLong(bits);
      if (entry & kEntryLiteral) {
        entry = put_literal(entry);
        refill();
        continue;
      }
      if (entry & kEntryEnd) {
        take(EntryTaken(entry));
        ended = true;
        break;
      }
    }
    const std::size_t length = ValueWithExtra(entry, bits);
    take(EntryTaken(entry));
    refill();
    std::uint32_t distance_entry = distances[static_cast<std::size_t>(bits) & distance_mask];
    if (distance_entry == 0) distance_entry = distances_->FindLong(bits);
    const std::size_t distance = ValueWithExtra(distance_entry, bits);
    take(EntryTaken(distance_entry));
    if (distance > static_cast<std::size_t>(out - window.data) ||
        length > static_cast<std::size_t>(out_limit - out)) {
      bits = bits_before;
      count = count_before;
      in = in_before;
      break;
    }
    refill();
    entry = literals[static_cast<std::size_t>(bits) & literal_mask];
    CopyMatchFast(out, distance, length);
    out += length;
  }

  // Whole bytes that were read ahead go back.
  in -= count / 8;
  count %= 8;
  input_position_ = static_cast<std::size_t>(in - stream_.data());
  bit_buffer_ = static_cast<std::uint32_t>(bits & ((1u << count) - 1u));
  bit_count_ = static_cast<int>(count);
  window.position = static_cast<std::size_t>(out - window.data);
  return ended;
}

// Symbol by symbol, with every limit looked at. Ends the block, or stops where RunFast may be worth while
// again.
Inflater::Step Inflater::DecodeExactly(InflateWindow& window) {
  while (window.position < window.full) {
    const bool exhausted = Exhausted();
    const std::uint32_t entry = DecodeSymbol(*literals_, longest_literal_);
    if (entry & kEntryLiteral) {
      // Behind the stream's end the same literal would come for ever.
      if (exhausted || RoomToEnd(window) == 0) return Step::kFinish;
      window.data[window.position++] = static_cast<std::uint8_t>(EntryValue(entry));
      continue;
    }
    if (entry & kEntryEnd) return EndBlock();
    std::uint32_t length, distance;
    if (!GetExtraBits(entry, length)) return Step::kFinish;
    if (!GetExtraBits(DecodeSymbol(*distances_, longest_distance_), distance)) return Step::kFinish;
    if (!CopyMatch(length, distance, window)) return Step::kFinish;
  }
  return Step::kFull;
}

// False where the stream ends here: a match that goes on behind the limit, or reaches before the first byte.
bool Inflater::CopyMatch(std::uint32_t length, std::uint32_t distance, InflateWindow& window) {
  const std::uint64_t room = RoomToEnd(window);
  if (distance > window.position && length > 0 && room > 0) return false;
  for (std::uint64_t count = std::min<std::uint64_t>(length, room); count > 0; --count, ++window.position)
    window.data[window.position] = window.data[window.position - distance];
  if (length <= room) return true;
  --window.position;  // the last byte that was let through doesn't count
  return false;
}

bool InflateAll(Inflater& inflater, std::span<const std::uint8_t> stream, std::size_t size,
                std::vector<std::uint8_t>& output) {
  const std::uint64_t most = std::min<std::uint64_t>(size, MostInflated(stream.size()));
  output.resize(static_cast<std::size_t>(most) + Inflater::kSlack + 1 + InflateWindow::kSpill);
  InflateWindow window;
  window.data = output.data();
  window.full = output.size();
  inflater.Start(stream, most);
  const bool decoded = inflater.Run(window) == Inflater::Outcome::kFinished;
  output.resize(decoded ? window.position : 0);
  return decoded;
}

}  // namespace marklet::png
