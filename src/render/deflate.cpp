#include "render/deflate.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "base/byte_order.h"

namespace marklet {
namespace {

constexpr std::size_t kWindow = 32768, kShortest = 3, kLongest = 258;
constexpr int kLongestChain = 64;  // how many earlier places are tried for a match

// Bits are packed from the low end of each byte; Huffman codes go in from their high end.
class BitWriter {
 public:
  explicit BitWriter(std::vector<std::uint8_t>& bytes) : bytes_(bytes) {}

  void Bits(unsigned value, int count) {
    pending_ |= std::uint64_t{value} << pending_count_;
    pending_count_ += count;
    for (; pending_count_ >= 8; pending_count_ -= 8, pending_ >>= 8)
      bytes_.push_back(static_cast<std::uint8_t>(pending_));
  }
  void Code(unsigned code, int count) {
    unsigned reversed = 0;
    for (int i = 0; i < count; ++i) reversed |= (code >> i & 1u) << (count - 1 - i);
    Bits(reversed, count);
  }
  void Flush() {
    if (pending_count_ > 0) bytes_.push_back(static_cast<std::uint8_t>(pending_));
    pending_ = 0;
    pending_count_ = 0;
  }

 private:
  std::vector<std::uint8_t>& bytes_;
  std::uint64_t pending_ = 0;
  int pending_count_ = 0;
};

// The fixed code of literals, lengths and the end of the block.
void WriteSymbol(BitWriter& out, unsigned symbol) {
  if (symbol < 144)
    out.Code(0x30 + symbol, 8);
  else if (symbol < 256)
    out.Code(0x190 + symbol - 144, 9);
  else if (symbol < 280)
    out.Code(symbol - 256, 7);
  else
    out.Code(0xC0 + symbol - 280, 8);
}

struct Range {
  unsigned base;
  int extra_bits;
};
constexpr Range kLengths[] = {{3, 0},   {4, 0},   {5, 0},   {6, 0},   {7, 0},  {8, 0},  {9, 0},  {10, 0},
                              {11, 1},  {13, 1},  {15, 1},  {17, 1},  {19, 2}, {23, 2}, {27, 2}, {31, 2},
                              {35, 3},  {43, 3},  {51, 3},  {59, 3},  {67, 4}, {83, 4}, {99, 4}, {115, 4},
                              {131, 5}, {163, 5}, {195, 5}, {227, 5}, {258, 0}};
constexpr Range kDistances[] = {{1, 0},     {2, 0},     {3, 0},     {4, 0},      {5, 1},      {7, 1},
                                {9, 2},     {13, 2},    {17, 3},    {25, 3},     {33, 4},     {49, 4},
                                {65, 5},    {97, 5},    {129, 6},   {193, 6},    {257, 7},    {385, 7},
                                {513, 8},   {769, 8},   {1025, 9},  {1537, 9},   {2049, 10},  {3073, 10},
                                {4097, 11}, {6145, 11}, {8193, 12}, {12289, 12}, {16385, 13}, {24577, 13}};

// The last range that starts at or below the value.
template <std::size_t N>
unsigned RangeOf(const Range (&ranges)[N], std::size_t value) {
  unsigned index = 0;
  while (index + 1 < N && ranges[index + 1].base <= value) ++index;
  return index;
}

void WriteMatch(BitWriter& out, std::size_t length, std::size_t distance) {
  const unsigned l = RangeOf(kLengths, length);
  WriteSymbol(out, 257 + l);
  out.Bits(static_cast<unsigned>(length) - kLengths[l].base, kLengths[l].extra_bits);
  const unsigned d = RangeOf(kDistances, distance);
  out.Code(d, 5);
  out.Bits(static_cast<unsigned>(distance) - kDistances[d].base, kDistances[d].extra_bits);
}

struct Match {
  std::size_t length = 0, distance = 0;
};

// The places where each group of three bytes was seen, newest first, as far back as a match may reach.
class MatchFinder {
 public:
  explicit MatchFinder(std::span<const std::uint8_t> bytes) : bytes_(bytes), earlier_(kWindow, kNone) {
    newest_.fill(kNone);
  }

  Match Longest(std::size_t position) const {
    Match best;
    if (position + kShortest > bytes_.size()) return best;
    std::size_t place = newest_[Hash(position)];
    for (int tries = 0; place != kNone && position - place <= kWindow && tries < kLongestChain; ++tries) {
      const std::size_t length = CommonLength(place, position);
      if (length > best.length) best = {length, position - place};
      place = earlier_[place % kWindow];
    }
    return best.length >= kShortest ? best : Match();
  }
  void Remember(std::size_t position) {
    if (position + kShortest > bytes_.size()) return;
    std::size_t& head = newest_[Hash(position)];
    earlier_[position % kWindow] = head;
    head = position;
  }

 private:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  static constexpr unsigned kHashBits = 14;

  std::size_t Hash(std::size_t at) const {
    const std::uint32_t three =
        bytes_[at] | std::uint32_t{bytes_[at + 1]} << 8 | std::uint32_t{bytes_[at + 2]} << 16;
    return three * 0x9E3779B1u >> (32 - kHashBits);
  }
  std::size_t CommonLength(std::size_t a, std::size_t b) const {
    const std::size_t most = std::min(kLongest, bytes_.size() - b);
    std::size_t length = 0;
    while (length < most && bytes_[a + length] == bytes_[b + length]) ++length;
    return length;
  }

  std::span<const std::uint8_t> bytes_;
  std::array<std::size_t, 1u << kHashBits> newest_;
  std::vector<std::size_t> earlier_;  // of the last places, in a ring
};

std::uint32_t Adler32(std::span<const std::uint8_t> bytes) {
  std::uint32_t a = 1, b = 0;
  for (const std::uint8_t byte : bytes) {
    a = (a + byte) % 65521;
    b = (b + a) % 65521;
  }
  return b << 16 | a;
}

}  // namespace

std::vector<std::uint8_t> ZlibCompress(std::span<const std::uint8_t> bytes) {
  std::vector<std::uint8_t> result = {0x78, 0x9C};
  BitWriter out(result);
  out.Bits(1, 1);  // the last block
  out.Bits(1, 2);  // with fixed codes
  MatchFinder finder(bytes);
  for (std::size_t position = 0; position < bytes.size();) {
    const Match match = finder.Longest(position);
    if (match.length > 0)
      WriteMatch(out, match.length, match.distance);
    else
      WriteSymbol(out, bytes[position]);
    const std::size_t end = position + std::max<std::size_t>(match.length, 1);
    for (; position < end; ++position) finder.Remember(position);
  }
  WriteSymbol(out, 256);
  out.Flush();
  AppendBigEndian(result, Adler32(bytes));
  return result;
}

}  // namespace marklet
