// Deflate undone the slow way, step by step: what the decoder's results are held against.
//
// Codes are found by trying one length after the other in sparse tables, bits come one byte at a time, and
// nothing is copied more than a byte at once. Where a stream asks for something that no reader can give (bits
// past its end, bytes before the first, room past the limit), `Unsettled` is thrown: no result is right
// or wrong then.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace marklet::png::plain {

using Bytes = std::vector<std::uint8_t>;

struct Unsettled {};

class Inflate {
 public:
  struct Result {
    Bytes data;      // the output, or the input itself when no table could be built
    int status = 0;  // 0, -1 or -2
    bool failed_tables = false;
  };

  // One object may run several times, and remembers the fixed tables and the longest lengths.
  Result Run(const Bytes& input, std::int64_t size) {
    in_ = input;
    limit_ = size + 100;
    out_.clear();
    in_pos_ = 0;
    bit_buffer_ = 0;
    bit_count_ = 0;
    status_ = 0;
    try {
      while (!Block()) {
      }
    } catch (const TableFailure&) {
      return {input, status_, true};
    }
    return {out_, status_, false};
  }

 private:
  struct TableFailure {};
  struct Table {
    std::vector<int> length, symbol;
  };

  int HighestInput() const { return static_cast<int>(in_.size()) - 1; }
  std::int64_t OutPos() const { return static_cast<std::int64_t>(out_.size()); }

  void FillBits(int n) {
    while (bit_count_ < n && in_pos_ <= HighestInput()) NextByte();
  }
  int GetBits(int n) {
    while (bit_count_ < n) {
      if (in_pos_ > HighestInput()) throw Unsettled();
      NextByte();
    }
    const int value = bit_buffer_ & ((1 << n) - 1);
    DropBits(n);
    return value;
  }
  void DropBits(int n) {
    bit_buffer_ /= 1 << n;
    bit_count_ -= n;
  }
  void NextByte() {
    bit_buffer_ += in_[static_cast<std::size_t>(in_pos_++)] * (1 << bit_count_);
    bit_count_ += 8;
  }

  int Probe(const Table& table, int shortest) {
    for (int length = shortest; length <= 16; ++length) {
      const auto index = static_cast<std::size_t>(bit_buffer_ & ((1 << length) - 1));
      if (index < table.length.size() && table.length[index] == length) {
        DropBits(length);
        return table.symbol[index];
      }
    }
    throw Unsettled();
  }

  // True when the stream is finished.
  bool Block() {
    const bool final_block = GetBits(1) != 0;
    const int type = GetBits(2);
    if (type == 3) {
      status_ = -1;
      return true;
    }
    if (type == 0) return Stored() || final_block;
    type == 1 ? FixedTables() : DynamicTables();
    return Symbols() || final_block;
  }

  bool Stored() {
    if (in_pos_ + 4 > HighestInput()) {
      status_ = -1;
      return true;
    }
    while (bit_count_ >= 8) {
      --in_pos_;
      bit_count_ -= 8;
    }
    const int length = ShortAt(in_pos_), complement = ShortAt(in_pos_ + 2);
    in_pos_ += 4;
    if (length != (~complement & 0xFFFF)) status_ = -2;
    if (in_pos_ + length - 1 > HighestInput() || OutPos() + length - 1 > limit_) {
      status_ = -1;
      return true;
    }
    for (int i = 0; i < length; ++i) out_.push_back(in_[static_cast<std::size_t>(in_pos_++)]);
    bit_buffer_ = 0;
    bit_count_ = 0;
    return false;
  }
  int ShortAt(int index) const {
    return in_[static_cast<std::size_t>(index)] + 256 * in_[static_cast<std::size_t>(index) + 1];
  }

  bool Symbols() {
    int idle = 0;  // literals from nothing but the zero bits past the end
    for (;;) {
      FillBits(literal_max_);
      idle = bit_count_ <= 0 ? idle + 1 : 0;
      const int symbol = Probe(literal_, literal_min_);
      if (symbol < 256) {
        if (OutPos() > limit_ || idle > 1) throw Unsettled();  // it would come for ever
        out_.push_back(static_cast<std::uint8_t>(symbol));
        continue;
      }
      if (symbol == 256) return false;
      if (Match(symbol - 257)) return true;
    }
  }

  bool Match(int index) {
    static constexpr int kExtra[31] = {0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2, 2,
                                       3, 3, 3, 3, 4, 4, 4, 4, 5, 5, 5, 5, 0, 0, 0};
    static constexpr int kBase[31] = {3,  4,  5,  6,  7,  8,  9,  10,  11,  13,  15,  17,  19,  23, 27, 31,
                                      35, 43, 51, 59, 67, 83, 99, 115, 131, 163, 195, 227, 258, 0,  0};
    static constexpr int kDistanceExtra[32] = {0, 0, 0, 0, 1, 1, 2,  2,  3,  3,  4,  4,  5,  5,  6,  6,
                                               7, 7, 8, 8, 9, 9, 10, 10, 11, 11, 12, 12, 13, 13, 14, 14};
    static constexpr int kDistanceBase[32] = {
        1,   2,   3,   4,   5,    7,    9,    13,   17,   25,   33,   49,    65,    97,    129,   193,
        257, 385, 513, 769, 1025, 1537, 2049, 3073, 4097, 6145, 8193, 12289, 16385, 24577, 32769, 49153};
    const int length = GetBits(kExtra[index]) + kBase[index];
    FillBits(distance_max_);
    const int code = Probe(distance_, distance_min_);
    const std::int64_t distance = GetBits(kDistanceExtra[code]) + kDistanceBase[code];
    for (int i = 0; i < length; ++i) {
      if (OutPos() > limit_) {
        out_.resize(static_cast<std::size_t>(limit_));
        return true;
      }
      if (distance > OutPos()) throw Unsettled();
      out_.push_back(out_[static_cast<std::size_t>(OutPos() - distance)]);
    }
    return false;
  }

  // What is left of the code space; the table is made whatever it is.
  static int BuildCodeTable(Table& table, const int* lengths, int symbols, int& longest, int& shortest) {
    std::array<int, 17> counts{};
    shortest = 16;
    for (int symbol = 0; symbol < symbols; ++symbol) {
      const int length = lengths[symbol];
      ++counts[static_cast<std::size_t>(length)];
      if (length > longest) longest = length;
      if (length != 0 && length < shortest) shortest = length;
    }
    int remainder = 1;
    for (int length = 1; length <= longest; ++length) {
      remainder = 2 * remainder - counts[static_cast<std::size_t>(length)];
      if (remainder < 0) return remainder;
    }
    table.length.assign(std::size_t{1} << longest, 0);
    table.symbol.assign(std::size_t{1} << longest, 0);
    std::array<int, 18> next{};
    counts[0] = 0;
    for (std::size_t length = 1; length <= 16; ++length)
      next[length] = (next[length - 1] + counts[length - 1]) * 2;
    for (int symbol = 0; symbol < symbols; ++symbol) {
      const int length = lengths[symbol];
      if (length == 0) continue;
      int code = next[static_cast<std::size_t>(length)]++, reversed = 0;
      for (int bit = 0; bit < length; ++bit, code /= 2) reversed = reversed * 2 + code % 2;
      table.length[static_cast<std::size_t>(reversed)] = length;
      table.symbol[static_cast<std::size_t>(reversed)] = symbol;
    }
    return remainder;
  }

  void FixedTables() {
    if (!fixed_built_) {
      std::array<int, 288> lengths;
      for (int symbol = 0; symbol < 288; ++symbol)
        lengths[static_cast<std::size_t>(symbol)] = symbol < 144   ? 8
                                                    : symbol < 256 ? 9
                                                    : symbol < 280 ? 7
                                                                   : 8;
      BuildCodeTable(fixed_literal_, lengths.data(), 288, literal_max_, literal_min_);
      lengths.fill(5);
      BuildCodeTable(fixed_distance_, lengths.data(), 32, distance_max_, distance_min_);
      fixed_built_ = true;
    } else {
      literal_min_ = 7;
      literal_max_ = 9;
      distance_min_ = distance_max_ = 5;
    }
    literal_ = fixed_literal_;
    distance_ = fixed_distance_;
  }

  void DynamicTables() {
    static constexpr std::size_t kOrder[19] = {16, 17, 18, 0, 8,  7, 9,  6, 10, 5,
                                               11, 4,  12, 3, 13, 2, 14, 1, 15};
    const int literals = GetBits(5) + 257, distances = GetBits(5) + 1, codes = GetBits(4) + 4;
    std::array<int, 320> lengths{};
    for (int i = 0; i < codes; ++i) lengths[kOrder[i]] = GetBits(3);
    Table table;
    int longest = 0, shortest = 0;
    if (BuildCodeTable(table, lengths.data(), 19, longest, shortest) != 0) throw TableFailure();
    lengths.fill(0);
    for (int n = 0; n < literals + distances;) {
      FillBits(longest);
      const int symbol = Probe(table, shortest);
      if (symbol < 16) {
        lengths[static_cast<std::size_t>(n++)] = symbol;
        continue;
      }
      if (symbol == 16 && n == 0) throw TableFailure();
      const int value = symbol == 16 ? lengths[static_cast<std::size_t>(n) - 1] : 0;
      const int count = symbol == 16 ? GetBits(2) + 3 : symbol == 17 ? GetBits(3) + 3 : GetBits(7) + 11;
      if (n + count > literals + distances) throw TableFailure();
      for (int i = 0; i < count; ++i) lengths[static_cast<std::size_t>(n++)] = value;
    }
    if (BuildCodeTable(literal_, lengths.data(), literals, literal_max_, literal_min_) != 0)
      throw TableFailure();
    if (BuildCodeTable(distance_, lengths.data() + literals, distances, distance_max_, distance_min_) != 0)
      throw TableFailure();
  }

  Bytes in_, out_;
  std::int64_t limit_ = 0;
  int in_pos_ = 0, bit_buffer_ = 0, bit_count_ = 0, status_ = 0;
  int literal_min_ = 0, literal_max_ = 0, distance_min_ = 0, distance_max_ = 0;
  bool fixed_built_ = false;
  Table literal_, distance_, fixed_literal_, fixed_distance_;
};

}  // namespace marklet::png::plain
