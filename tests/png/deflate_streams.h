// Random deflate streams of every kind that the format can spell, sound and broken.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include "png/png_files.h"

namespace marklet::png::test {

// The code lengths of a complete prefix code over `used` of `symbols` symbols.
inline std::vector<int> RandomCompleteCode(Random& random, std::size_t symbols, std::size_t used,
                                           int longest) {
  std::vector<int> leaves = {0};
  while (leaves.size() < used) {
    const std::size_t leaf = random.Below(static_cast<std::uint32_t>(leaves.size()));
    if (leaves[leaf] == longest) continue;
    leaves.push_back(++leaves[leaf]);
  }
  std::vector<int> lengths(symbols, 0);
  std::vector<std::size_t> order(symbols);
  for (std::size_t i = 0; i < symbols; ++i) order[i] = i;
  for (std::size_t i = symbols; i-- > 1;)
    std::swap(order[i], order[random.Below(static_cast<std::uint32_t>(i + 1))]);
  for (std::size_t i = 0; i < used; ++i) lengths[order[i]] = leaves[i];
  return lengths;
}

// Codes by symbol, for lengths that may be anything.
inline std::vector<std::uint32_t> CanonicalCodes(const std::vector<int>& lengths) {
  std::vector<std::uint32_t> codes(lengths.size());
  std::uint32_t code = 0;
  for (int length = 1; length <= 15; ++length, code <<= 1)
    for (std::size_t symbol = 0; symbol < lengths.size(); ++symbol)
      if (lengths[symbol] == length) codes[symbol] = code++;
  return codes;
}

class DeflateWriter {
 public:
  explicit DeflateWriter(Random& random) : random_(random) {}

  // One random block. `trouble` of 100 decisions go where a sound stream wouldn't.
  void Block(bool last, unsigned trouble) {
    trouble_ = trouble;
    bits_.Put(last, 1);
    const std::uint32_t type = Trouble() ? 3 : random_.Below(3);
    bits_.Put(type, 2);
    if (type == 0) Stored();
    if (type == 1) Fixed();
    if (type == 2) Dynamic();
  }

  const Bytes& bytes() const { return bits_.bytes(); }
  std::size_t written() const { return written_; }  // bytes that come out of the blocks so far

 private:
  bool Trouble() { return random_.Below(100) < trouble_; }

  void Stored() {
    const std::uint32_t length = random_.Below(4) == 0 ? 0 : random_.Below(300);
    bits_.ToByte().Put(length, 16).Put(Trouble() ? random_.Below(65536) : ~length & 0xFFFF, 16);
    for (std::uint32_t i = 0; i < length; ++i) bits_.Byte(random_.Byte());
    written_ += length;
  }

  void Fixed() {
    literal_lengths_.assign(288, 8);
    std::fill(literal_lengths_.begin() + 144, literal_lengths_.begin() + 256, 9);
    std::fill(literal_lengths_.begin() + 256, literal_lengths_.begin() + 280, 7);
    distance_lengths_.assign(32, 5);
    Symbols();
  }

  void Dynamic() {
    const std::size_t literals = 257 + random_.Below(32), distances = 1 + random_.Below(32);
    const int longest = 9 + static_cast<int>(random_.Below(7));
    literal_lengths_ = RandomCompleteCode(
        random_, literals, 2 + random_.Below(static_cast<std::uint32_t>(literals - 1)), longest);
    distance_lengths_ = RandomCompleteCode(
        random_, distances,
        std::min<std::size_t>(distances, 2 + random_.Below(static_cast<std::uint32_t>(distances))), longest);
    if (distances == 1) distance_lengths_ = {1};  // a gap: the block must be refused
    if (Trouble())
      literal_lengths_[random_.Below(static_cast<std::uint32_t>(literals))] =
          static_cast<int>(random_.Below(16));
    if (literal_lengths_[256] == 0 && !Trouble()) GiveEndACode();
    WriteLengths();
    Symbols();
  }

  void GiveEndACode() {
    for (int& length : literal_lengths_)
      if (length != 0) {
        std::swap(length, literal_lengths_[256]);
        return;
      }
  }

  void WriteLengths() {
    std::vector<int> all = literal_lengths_;
    all.insert(all.end(), distance_lengths_.begin(), distance_lengths_.end());
    std::vector<int> lengths = RandomCompleteCode(random_, 19, 19, 7);
    if (Trouble()) lengths[random_.Below(19)] = static_cast<int>(random_.Below(8));
    static constexpr std::array<std::size_t, 19> kOrder = {16, 17, 18, 0, 8,  7, 9,  6, 10, 5,
                                                           11, 4,  12, 3, 13, 2, 14, 1, 15};
    bits_.Put(static_cast<std::uint32_t>(literal_lengths_.size() - 257), 5);
    bits_.Put(static_cast<std::uint32_t>(distance_lengths_.size() - 1), 5);
    bits_.Put(15, 4);
    for (const std::size_t symbol : kOrder) bits_.Put(static_cast<std::uint32_t>(lengths[symbol]), 3);
    const auto codes = CanonicalCodes(lengths);
    const auto put = [&](std::size_t symbol) { bits_.Code(codes[symbol], lengths[symbol]); };
    for (std::size_t i = 0; i < all.size();) {
      std::size_t run = 1;
      while (i + run < all.size() && all[i + run] == all[i]) ++run;
      if (Trouble()) {
        put(16 + random_.Below(3));
        bits_.Put(random_.Below(128), 3);
        ++i;
      } else if (all[i] == 0 && run >= 11 && random_.Below(4) != 0) {
        run = std::min<std::size_t>(run, 138);
        put(18);
        bits_.Put(static_cast<std::uint32_t>(run - 11), 7);
        i += run;
      } else if (all[i] == 0 && run >= 3 && random_.Below(4) != 0) {
        run = std::min<std::size_t>(run, 10);
        put(17);
        bits_.Put(static_cast<std::uint32_t>(run - 3), 3);
        i += run;
      } else if (i > 0 && all[i] == all[i - 1] && run >= 3) {
        run = std::min<std::size_t>(run, 6);
        put(16);
        bits_.Put(static_cast<std::uint32_t>(run - 3), 2);
        i += run;
      } else {
        put(static_cast<std::size_t>(all[i++]));
      }
    }
  }

  void Symbols() {
    const auto literal_codes = CanonicalCodes(literal_lengths_),
               distance_codes = CanonicalCodes(distance_lengths_);
    const auto put = [&](std::size_t symbol) { bits_.Code(literal_codes[symbol], literal_lengths_[symbol]); };
    for (std::uint32_t count = random_.Below(400); count > 0; --count) {
      std::size_t symbol = random_.Below(static_cast<std::uint32_t>(literal_lengths_.size()));
      if (random_.Below(3) == 0)
        symbol = 257 + random_.Below(static_cast<std::uint32_t>(literal_lengths_.size() - 256));
      if (symbol >= literal_lengths_.size() || symbol == 256 || literal_lengths_[symbol] == 0) continue;
      if (symbol < 256) {
        put(symbol);
        ++written_;
        continue;
      }
      const unsigned distance_symbol = DistanceSymbol();
      if (distance_symbol == 32) continue;
      put(symbol);
      written_ += LengthAndExtra(symbol);
      bits_.Code(distance_codes[distance_symbol], distance_lengths_[distance_symbol]);
      bits_.Put(random_.Below(65536), distance_symbol < 4 ? 0 : static_cast<int>(distance_symbol / 2 - 1));
    }
    if (literal_lengths_[256] != 0) put(256);
  }

  // One that most likely reaches no further back than there is output; 32 if there is none.
  unsigned DistanceSymbol() {
    for (int attempt = 0; attempt < 20; ++attempt) {
      const unsigned symbol = random_.Below(static_cast<std::uint32_t>(distance_lengths_.size()));
      const std::size_t reach = std::size_t{1} << (symbol / 2 + 1);
      if (distance_lengths_[symbol] != 0 && (reach <= written_ || Trouble())) return symbol;
    }
    return 32;
  }

  std::size_t LengthAndExtra(std::size_t symbol) {
    const std::size_t index = symbol - 257;
    if (index > 28) return 0;
    if (index == 28) return 258;
    const int extra_bits = index < 8 ? 0 : static_cast<int>(index / 4 - 1);
    const std::uint32_t extra = random_.Below(1u << extra_bits);
    bits_.Put(extra, extra_bits);
    const std::size_t base = index < 8 ? index + 3 : ((4 + index % 4) << extra_bits) + 3;
    return base + extra;
  }

  Random& random_;
  BitWriter bits_;
  std::size_t written_ = 0;
  unsigned trouble_ = 0;
  std::vector<int> literal_lengths_, distance_lengths_;
};

struct RandomStream {
  Bytes bytes;
  std::size_t written = 0;  // bytes that a sound stream gives
};

inline RandomStream MakeRandomStream(Random& random, unsigned trouble) {
  DeflateWriter writer(random);
  const std::uint32_t blocks = 1 + random.Below(6);
  for (std::uint32_t block = 1; block <= blocks; ++block) writer.Block(block == blocks, trouble);
  Bytes bytes = writer.bytes();
  const bool checksum = trouble == 0 || random.Below(2) == 0;
  Append(bytes, random.Some(checksum ? 4 : random.Below(4)));
  if (trouble > 0 && random.Below(4) == 0)
    bytes.resize(random.Below(static_cast<std::uint32_t>(bytes.size() + 1)));
  return {bytes, writer.written()};
}

}  // namespace marklet::png::test
