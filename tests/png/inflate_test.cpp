#include "png/inflate.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>

#include "base/processor.h"
#include "png/deflate_streams.h"
#include "png/plain_inflate.h"
#include "png/png_files.h"

namespace marklet::png::test {
namespace {

struct Inflated {
  Bytes data;
  bool bad_tables = false;
};

// Runs the decoder over a window of `piece` bytes beside the history that it needs, moving the window along.
Inflated InPieces(Inflater& inflater, const Bytes& stream, std::uint64_t size, std::size_t piece) {
  Bytes memory(InflateWindow::kHistory + piece + InflateWindow::kLongestMatch + InflateWindow::kSpill);
  InflateWindow window;
  window.data = memory.data();
  window.full = InflateWindow::kHistory + piece;
  Inflated result;
  std::size_t taken = 0;
  inflater.Start(stream, size);
  for (;;) {
    const Inflater::Outcome outcome = inflater.Run(window);
    if (outcome == Inflater::Outcome::kBadTables) return {{}, true};
    // The last byte may be taken back at the very end.
    const std::size_t sure = outcome == Inflater::Outcome::kFinished ? window.position : window.position - 1;
    result.data.insert(result.data.end(), memory.begin() + static_cast<std::ptrdiff_t>(taken),
                       memory.begin() + static_cast<std::ptrdiff_t>(std::max(taken, sure)));
    result.data.resize(static_cast<std::size_t>(window.dropped) + sure);
    taken = sure;
    if (outcome == Inflater::Outcome::kFinished) return result;
    const std::size_t drop = window.position - std::min(window.position, InflateWindow::kHistory);
    std::memmove(memory.data(), memory.data() + drop, window.position - drop);
    window.position -= drop;
    window.dropped += drop;
    taken -= drop;
  }
}

Inflated AtOnce(Inflater& inflater, const Bytes& stream, std::size_t size) {
  Inflated result;
  result.bad_tables = !InflateAll(inflater, stream, size, result.data);
  return result;
}

Inflated AtOnce(const Bytes& stream, std::size_t size) {
  Inflater inflater;
  return AtOnce(inflater, stream, size);
}

Bytes Text(std::string_view text) { return {text.begin(), text.end()}; }

// ---- blocks by hand ----

TEST(Inflate, StoredOnlyStream) {
  Bytes stream = StoredZlib(Text("stored bytes"));
  stream.erase(stream.begin(), stream.begin() + 2);
  EXPECT_EQ(AtOnce(stream, 12).data, Text("stored bytes"));
}

TEST(Inflate, StoredBlocksOfTheGreatestLength) {
  Random random(1);
  const Bytes data = random.Some(3 * 65535 + 5);
  Bytes stream = StoredZlib(data);
  stream.erase(stream.begin(), stream.begin() + 2);
  EXPECT_EQ(AtOnce(stream, data.size()).data, data);
  Inflater inflater;
  EXPECT_EQ(InPieces(inflater, stream, data.size(), 1000).data, data);
}

TEST(Inflate, StoredBlockWhoseLengthsDisagreeIsCopiedAllTheSame) {
  const Bytes stream = {1, 3, 0, 0x12, 0x34, 'a', 'b', 'c', 0, 0, 0, 0};
  EXPECT_EQ(AtOnce(stream, 3).data, Text("abc"));
}

TEST(Inflate, StoredBlockLongerThanTheStreamKeepsWhatCameBefore) {
  BitWriter bits;
  bits.Put(0, 1).Put(1, 2).Fixed('x').Fixed(256).Put(1, 1).Put(0, 2).ToByte();
  for (const unsigned byte : {9u, 0u, 0xF6u, 0xFFu, 1u, 2u, 3u, 4u, 5u, 6u, 7u, 8u}) bits.Byte(byte);
  EXPECT_EQ(AtOnce(bits.bytes(), 10).data, Text("x"));
}

TEST(Inflate, StoredBlockThatWouldPassTheLimitKeepsWhatCameBefore) {
  Bytes stream = StoredZlib(Bytes(200, 7));
  stream.erase(stream.begin(), stream.begin() + 2);
  EXPECT_EQ(AtOnce(stream, 99).data.size(), 200u)
      << "the limit lies 100 bytes past the size, and one is over";
  EXPECT_EQ(AtOnce(stream, 98).data.size(), 0u);
}

// What counts is how far the decoder has read ahead, not where the block begins.
TEST(Inflate, StoredBlockAtTheVeryEndNeedsAByteAfterItsHeader) {
  const Bytes whole = {1, 0, 0, 0xFF, 0xFF, 0};
  Bytes stream = {0, 1, 0, 0xFE, 0xFF, 'a'};
  Append(stream, whole);
  EXPECT_EQ(AtOnce(stream, 1).data, Text("a"));
  BitWriter
      ahead;  // an end code of 7 bits, for which 9 are read: two bits of the next byte are there already
  ahead.Put(0, 1).Put(1, 2).Fixed('a').Fixed(256).Put(1, 1).Put(0, 2).ToByte();
  for (const unsigned byte : {1u, 0u, 0xFEu, 0xFFu, unsigned{'b'}}) ahead.Byte(byte);
  EXPECT_EQ(AtOnce(ahead.bytes(), 2).data, plain::Inflate().Run(ahead.bytes(), 2).data);
}

TEST(Inflate, ReservedBlockTypeKeepsTheOutputSoFar) {
  BitWriter bits;
  bits.Put(0, 1).Put(1, 2).Fixed('o').Fixed('k').Fixed(256).Put(1, 1).Put(3, 2).Put(0, 32);
  const Inflated inflated = AtOnce(bits.bytes(), 10);
  EXPECT_FALSE(inflated.bad_tables);
  EXPECT_EQ(inflated.data, Text("ok"));
}

TEST(Inflate, SecondFixedBlockReusesTheTables) {
  BitWriter bits;
  bits.Put(0, 1).Put(1, 2).Fixed('a').Fixed(200).Fixed(256);
  bits.Put(1, 1).Put(1, 2).Fixed('b').Fixed(143).Fixed(144).Fixed(255).Fixed(256).Put(0, 32);
  EXPECT_EQ(AtOnce(bits.bytes(), 6).data, (Bytes{'a', 200, 'b', 143, 144, 255}));
}

TEST(Inflate, LengthCodeOf258TakesNoExtraBits) {
  BitWriter bits;
  bits.Put(1, 1).Put(1, 2).Fixed('z').Fixed(285).Code(0, 5).Fixed('y').Fixed(256).Put(0, 32);
  Bytes expected(259, 'z');
  expected.push_back('y');
  EXPECT_EQ(AtOnce(bits.bytes(), 260).data, expected);
}

TEST(Inflate, LengthSymbols286And287StandForNothing) {
  BitWriter bits;
  bits.Put(1, 1).Put(1, 2).Fixed('a').Fixed(286).Code(0, 5).Fixed(287).Code(29, 5).Put(0x1FFF, 13);
  bits.Fixed('b').Fixed(256).Put(0, 32);
  EXPECT_EQ(AtOnce(bits.bytes(), 2).data, Text("ab"));
}

// A stored block of `count` random bytes in front of a match of three from a distance symbol with its extra
// bits.
Bytes FarMatch(const Bytes& before, unsigned distance_symbol, std::uint32_t extra) {
  BitWriter bits;
  for (std::size_t position = 0; position < before.size();) {
    const std::size_t count = std::min<std::size_t>(65535, before.size() - position);
    bits.Put(0, 1).Put(0, 2).ToByte();
    bits.Put(static_cast<std::uint32_t>(count), 16).Put(~static_cast<std::uint32_t>(count) & 0xFFFF, 16);
    for (std::size_t i = 0; i < count; ++i) bits.Byte(before[position + i]);
    position += count;
  }
  bits.Put(1, 1).Put(1, 2).Fixed(257).Code(distance_symbol, 5).Put(extra, 14).Fixed(256).Put(0, 32);
  return bits.bytes();
}

TEST(Inflate, DistanceSymbols30And31HaveBases32769And49153) {
  Random random(2);
  const Bytes before = random.Some(70000);
  const struct {
    unsigned symbol;
    std::uint32_t extra, distance;
  } cases[] = {{30, 0, 32769}, {30, 16383, 49152}, {31, 0, 49153}, {31, 16383, 65536}};
  for (const auto& [symbol, extra, distance] : cases) {
    Bytes expected = before;
    for (int i = 0; i < 3; ++i) expected.push_back(expected[expected.size() - distance]);
    const Bytes stream = FarMatch(before, symbol, extra);
    EXPECT_EQ(AtOnce(stream, expected.size()).data, expected) << distance;
    Inflater inflater;
    EXPECT_EQ(InPieces(inflater, stream, expected.size(), 500).data, expected)
        << distance << " across a move";
  }
}

TEST(Inflate, DistanceBeforeTheFirstByteStopsDecoding) {
  BitWriter bits;
  bits.Put(1, 1).Put(1, 2).Fixed('a').Fixed(257).Code(1, 5).Fixed('b').Fixed(256).Put(0, 32);
  EXPECT_EQ(AtOnce(bits.bytes(), 5).data, Text("a"));
  EXPECT_EQ(AtOnce(FarMatch(Bytes(40000, 1), 31, 0), 40003).data.size(), 40000u);
}

TEST(Inflate, MatchStopsAtTheLimit) {
  BitWriter bits;
  bits.Put(1, 1).Put(1, 2).Fixed('a');
  for (int i = 0; i < 10; ++i) bits.Fixed(285).Code(0, 5);
  bits.Fixed(256).Put(0, 32);
  const Inflated inflated = AtOnce(bits.bytes(), 500);
  EXPECT_EQ(inflated.data, Bytes(600, 'a')) << "the limit is 100 bytes past the size";
}

// Codes past the end are read as zero bits; in the fixed code that is the end of the block.
TEST(Inflate, StreamThatEndsBeforeItsLastCodeReadsZeroBits) {
  BitWriter bits;
  bits.Put(1, 1).Put(1, 2).Fixed('a').Fixed('b');
  Bytes stream = bits.bytes();
  EXPECT_EQ(AtOnce(stream, 2).data, Text("ab"));
}

// ---- codes ----

// A dynamic block that starts with these code lengths.
Bytes DynamicBlock(const std::vector<int>& literals, const std::vector<int>& distances) {
  BitWriter bits;
  bits.Put(1, 1).Put(2, 2).Put(static_cast<std::uint32_t>(literals.size() - 257), 5);
  bits.Put(static_cast<std::uint32_t>(distances.size() - 1), 5).Put(15, 4);
  // Symbols 0 to 15 with four bits each.
  for (int i = 0; i < 19; ++i) bits.Put(i < 3 ? 0 : 4, 3);
  for (const int length : literals) bits.Code(static_cast<std::uint32_t>(length), 4);
  for (const int length : distances) bits.Code(static_cast<std::uint32_t>(length), 4);
  bits.Put(0, 32);
  return bits.bytes();
}

std::vector<int> LiteralLengths() {
  std::vector<int> lengths(257, 0);
  lengths['a'] = 2;
  lengths['b'] = 2;
  lengths[256] = 1;
  return lengths;
}

TEST(Inflate, CompleteCodesAreTaken) {
  EXPECT_FALSE(AtOnce(DynamicBlock(LiteralLengths(), {1, 1}), 10).bad_tables);
}

TEST(Inflate, SingleDistanceCodeIsRefused) {
  EXPECT_TRUE(AtOnce(DynamicBlock(LiteralLengths(), {1}), 10).bad_tables);
  EXPECT_TRUE(AtOnce(DynamicBlock(LiteralLengths(), {0}), 10).bad_tables) << "and so is none at all";
}

TEST(Inflate, IncompleteLiteralCodeIsRefused) {
  std::vector<int> lengths = LiteralLengths();
  lengths['b'] = 3;
  EXPECT_TRUE(AtOnce(DynamicBlock(lengths, {1, 1}), 10).bad_tables);
}

TEST(Inflate, OverSubscribedCodeIsRefused) {
  std::vector<int> lengths = LiteralLengths();
  lengths['c'] = 2;
  EXPECT_TRUE(AtOnce(DynamicBlock(lengths, {1, 1}), 10).bad_tables);
  EXPECT_TRUE(AtOnce(DynamicBlock(LiteralLengths(), {1, 1, 5}), 10).bad_tables) << "after a full set, too";
}

TEST(Inflate, CodeOfCodeLengthsMustBeComplete) {
  BitWriter bits;
  bits.Put(1, 1).Put(2, 2).Put(0, 5).Put(0, 5).Put(0, 4);
  for (int i = 0; i < 4; ++i) bits.Put(i == 3 ? 1 : 0, 3);
  bits.Put(0, 32);
  EXPECT_TRUE(AtOnce(bits.bytes(), 10).bad_tables);
}

TEST(Inflate, RepeatWithNothingBeforeItIsRefused) {
  BitWriter bits;
  bits.Put(1, 1).Put(2, 2).Put(0, 5).Put(0, 5).Put(0, 4);
  for (int i = 0; i < 4; ++i) bits.Put(i == 0 || i == 3 ? 1 : 0, 3);  // 16 and 0 with a bit each
  bits.Code(1, 1).Put(0, 2).Put(0, 32);
  EXPECT_TRUE(AtOnce(bits.bytes(), 10).bad_tables);
}

TEST(Inflate, RunThatPassesTheCodeLengthsIsRefused) {
  BitWriter bits;
  bits.Put(1, 1).Put(2, 2).Put(0, 5).Put(0, 5).Put(0, 4);
  for (int i = 0; i < 4; ++i) bits.Put(i == 2 || i == 3 ? 1 : 0, 3);  // 0 and 18
  bits.Code(1, 1).Put(127, 7).Code(1, 1).Put(127, 7).Put(0, 32);      // 276 of 258
  EXPECT_TRUE(AtOnce(bits.bytes(), 10).bad_tables);
}

TEST(Inflate, CodesOfFifteenBitsDecode) {
  // Lengths 1, 2, 3, ... 14, 15, 15.
  std::vector<int> lengths(257, 0);
  for (int i = 1; i <= 14; ++i) lengths[static_cast<std::size_t>('a' + i - 1)] = i;
  lengths['x'] = 15;
  lengths[256] = 15;
  const Bytes block = DynamicBlock(lengths, {1, 1});
  const auto codes = CanonicalCodes(lengths);
  // The symbols follow the header directly.
  const int header_bits = 17 + 57 + 259 * 4;
  BitWriter whole;
  for (int bit = 0; bit < header_bits; ++bit)
    whole.Put(block[static_cast<std::size_t>(bit / 8)] >> bit % 8 & 1, 1);
  Bytes expected;
  for (int round = 0; round < 20; ++round)
    for (const std::size_t symbol :
         {std::size_t{'x'}, std::size_t{'a'}, std::size_t{'n'}, std::size_t{'h'}}) {
      whole.Code(codes[symbol], lengths[symbol]);
      expected.push_back(static_cast<std::uint8_t>(symbol));
    }
  whole.Code(codes[256], 15).Put(0, 32);
  EXPECT_EQ(AtOnce(whole.bytes(), expected.size()).data, expected);
}

// A code of fifteen bits makes the decoder read ahead so far for every code. A stored block of one or two
// bytes that ends the data counts as missing then, since two bytes of its header have been read by that time,
// or one.
TEST(Inflate, StoredBlockThatEndsTheDataAfterCodesOfFifteenBits) {
  std::vector<int> lengths(257, 0);
  lengths[256] = 1;
  for (int i = 2; i <= 14; ++i) lengths['a' + static_cast<std::size_t>(i)] = i;
  lengths['x'] = lengths['y'] = 15;
  const Bytes block = DynamicBlock(lengths, {1, 1});
  const auto codes = CanonicalCodes(lengths);
  constexpr int kHeaderBits = 17 + 57 + 259 * 4;
  int lost[4] = {}, kept[4] = {};
  for (int symbols = 0; symbols < 60; ++symbols)
    for (unsigned stored = 0; stored < 4; ++stored) {
      BitWriter bits;
      bits.Put(0, 1);  // not the last block
      for (int bit = 1; bit < kHeaderBits; ++bit)
        bits.Put(block[static_cast<std::size_t>(bit / 8)] >> bit % 8 & 1, 1);
      for (int i = 0; i < symbols; ++i) bits.Code(codes['x'], 15);
      bits.Code(codes[256], 1).Put(1, 1).Put(0, 2).ToByte();
      for (const unsigned byte : {stored, 0u, ~stored & 0xFF, 0xFFu}) bits.Byte(byte);
      for (unsigned i = 0; i < stored; ++i) bits.Byte('s');
      const std::size_t size = static_cast<std::size_t>(symbols) + stored;
      const Bytes data = AtOnce(bits.bytes(), size).data;
      EXPECT_EQ(data, plain::Inflate().Run(bits.bytes(), static_cast<std::int64_t>(size)).data)
          << symbols << " and " << stored;
      ++(data.size() == size && stored > 0 ? kept : lost)[stored];
    }
  EXPECT_EQ(kept[1], 0);
  EXPECT_GT(kept[2], 0) << "where only one byte was read ahead";
  EXPECT_GT(lost[2], 0);
  EXPECT_EQ(lost[3], 0);
}

// A block without a literal: after its code lengths, for which up to fourteen bits are wanted, six bits are
// taken and none are wanted, so that the byte that was read ahead stays read.
Bytes StoredAfterCodeLengths(std::size_t single_zeros, std::size_t long_runs) {
  std::vector<int> code_lengths(19, 0);
  constexpr std::pair<std::size_t, int> kUsed[] = {{1, 1}, {0, 2}, {2, 3},  {3, 4},
                                                   {4, 5}, {5, 6}, {17, 7}, {18, 7}};
  for (const auto& [symbol, length] : kUsed) code_lengths[symbol] = length;
  const auto codes = CanonicalCodes(code_lengths);
  BitWriter bits;
  bits.Put(0, 1).Put(2, 2).Put(29, 5).Put(31, 5).Put(15, 4);
  for (const std::size_t symbol : kCodeLengthOrder)
    bits.Put(static_cast<std::uint32_t>(code_lengths[symbol]), 3);
  const auto put = [&](std::size_t symbol) { bits.Code(codes[symbol], code_lengths[symbol]); };
  const auto zeros = [&](std::size_t count) { put(18), bits.Put(static_cast<std::uint32_t>(count - 11), 7); };
  // The lengths of 318 symbols are 0, but for one, that of the block's end, and the last two distances.
  put(1);
  for (std::size_t i = 0; i < single_zeros; ++i) put(0);
  std::size_t left = 255 - single_zeros;
  for (; left > 138 + 11; left -= 138) zeros(138);
  zeros(left - 11), zeros(11);
  put(1);
  for (std::size_t i = 0; i + 1 < long_runs; ++i) zeros(11);
  zeros(59 - 11 * (long_runs - 1));
  put(1), put(1);
  bits.Code(1, 1).Put(1, 1).Put(0, 2).ToByte();  // the codes of the two literals are 0 and 1
  for (const unsigned byte : {1u, 0u, 0xFEu, 0xFFu, unsigned{'s'}}) bits.Byte(byte);
  return bits.bytes();
}

TEST(Inflate, StoredBlockThatEndsTheDataAfterCodeLengths) {
  int lost = 0, kept = 0;
  for (std::size_t single_zeros = 0; single_zeros < 60; ++single_zeros)
    for (std::size_t long_runs = 1; long_runs < 6; ++long_runs) {
      const Bytes stream = StoredAfterCodeLengths(single_zeros, long_runs);
      const Bytes data = AtOnce(stream, 1).data;
      ASSERT_EQ(data, plain::Inflate().Run(stream, 1).data) << single_zeros << " and " << long_runs;
      ++(data.empty() ? lost : kept);
    }
  EXPECT_GT(lost, 0);
  EXPECT_GT(kept, 0);
}

// ---- matches of every distance and length ----

TEST(Inflate, EveryDistanceAndLengthOverlapsRight) {
  Random random(3);
  const Bytes seed = random.Some(40);
  for (unsigned distance = 1; distance <= 40; ++distance) {
    BitWriter bits;
    bits.Put(1, 1).Put(1, 2);
    for (const std::uint8_t byte : seed) bits.Fixed(byte);
    Bytes expected = seed;
    unsigned code = 0, base = 1, extra_bits = 0;
    while (base + (1u << extra_bits) <= distance) {
      base += 1u << extra_bits;
      ++code;
      extra_bits = code < 4 ? 0 : code / 2 - 1;
    }
    for (unsigned length = 3; length <= 10; ++length) {
      bits.Fixed(254 + length).Code(code, 5).Put(distance - base, static_cast<int>(extra_bits));
      for (unsigned i = 0; i < length; ++i) expected.push_back(expected[expected.size() - distance]);
    }
    for (unsigned extra = 0; extra < 32; ++extra) {  // 131 to 162
      bits.Fixed(281).Put(extra, 5).Code(code, 5).Put(distance - base, static_cast<int>(extra_bits));
      for (unsigned i = 0; i < 131 + extra; ++i) expected.push_back(expected[expected.size() - distance]);
    }
    bits.Fixed(256).Put(0, 32);
    EXPECT_EQ(AtOnce(bits.bytes(), expected.size()).data, expected) << distance;
  }
}

// ---- against the slow decoder ----

// The decoder twice, and the slow one: each for a stream after the other, as texts and picture of one file
// are. Of the two one takes what the processor is best at, and the other, in turn, the plain form.
class Rivals {
 public:
  void Compare(const RandomStream& stream, std::size_t size, std::size_t piece) {
    const Inflated at_once = Run(plain_first_, [&] { return AtOnce(*whole_, stream.bytes, size); });
    const Inflated in_pieces =
        Run(!plain_first_, [&] { return InPieces(*in_pieces_, stream.bytes, size, piece); });
    plain_first_ = !plain_first_;
    try {
      const plain::Inflate::Result expected = plain_->Run(stream.bytes, static_cast<std::int64_t>(size));
      ExpectSame(at_once, expected);
      ExpectSame(in_pieces, expected);
      ++(expected.failed_tables ? refused_ : decoded_);
    } catch (const plain::Unsettled&) {
      StartAfresh();
    }
  }
  int decoded() const { return decoded_; }  // streams that gave output
  int refused() const { return refused_; }  // and streams without usable codes

 private:
  template <typename Decode>
  static Inflated Run(bool in_plain_form, Decode decode) {
    if (!in_plain_form) return decode();
    const ProcessorFormOverride plain_form(ProcessorForm::kPlain);
    return decode();
  }
  static void ExpectSame(const Inflated& actual, const plain::Inflate::Result& expected) {
    ASSERT_EQ(actual.bad_tables, expected.failed_tables);
    if (expected.failed_tables) return;
    ASSERT_EQ(actual.data, expected.data);
  }
  void StartAfresh() {
    whole_ = std::make_unique<Inflater>();
    in_pieces_ = std::make_unique<Inflater>();
    plain_ = std::make_unique<plain::Inflate>();
  }

  int decoded_ = 0, refused_ = 0;
  bool plain_first_ = false;
  std::unique_ptr<Inflater> whole_ = std::make_unique<Inflater>(), in_pieces_ = std::make_unique<Inflater>();
  std::unique_ptr<plain::Inflate> plain_ = std::make_unique<plain::Inflate>();
};

TEST(SlowInflate, SoundRandomStreamsGiveWhatTheSlowDecoderGives) {
  Rivals rivals;
  Random random(4);
  for (int round = 0; round < 1500; ++round) {
    SCOPED_TRACE(round);
    const RandomStream stream = MakeRandomStream(random, 0);
    rivals.Compare(stream, stream.written, 100 + random.Below(3000));
    if (HasFatalFailure()) return;
  }
  EXPECT_GT(rivals.decoded(), 1000);
  EXPECT_GT(rivals.refused(), 10);
}

TEST(SlowInflate, BrokenRandomStreamsGiveWhatTheSlowDecoderGives) {
  Random random(5);
  Rivals rivals;
  for (int round = 0; round < 6000; ++round) {
    SCOPED_TRACE(round);
    const RandomStream stream = MakeRandomStream(random, 1 + random.Below(4));
    // Too little or just enough is expected, or so much that it is measured first.
    const std::size_t sizes[] = {random.Below(2000), 200000, stream.written, stream.written};
    const std::size_t size = sizes[random.Below(4)];
    rivals.Compare(stream, size, 100 + random.Below(3000));
    if (HasFatalFailure()) return;
  }
  EXPECT_GT(rivals.decoded(), 1000);
  EXPECT_GT(rivals.refused(), 1000);
}

TEST(SlowInflate, TruncatedStreamsGiveWhatTheSlowDecoderGives) {
  Rivals rivals;
  Random random(6);
  for (int round = 0; round < 60; ++round) {
    RandomStream stream = MakeRandomStream(random, 0);
    stream.bytes.resize(std::min<std::size_t>(stream.bytes.size(), 400));
    for (; !stream.bytes.empty(); stream.bytes.pop_back()) {
      SCOPED_TRACE(round);
      rivals.Compare(stream, stream.written, 1000);
      if (HasFatalFailure()) return;
    }
  }
  EXPECT_GT(rivals.decoded(), 1000);
  EXPECT_GT(rivals.refused(), 1000);
}

TEST(Inflate, NoiseIsHarmless) {
  Rivals rivals;
  Random random(7);
  for (int round = 0; round < 3000; ++round) {
    SCOPED_TRACE(round);
    const RandomStream stream{random.Some(random.Below(200)), 0};
    rivals.Compare(stream, random.Below(1000), 1000);
    if (HasFatalFailure()) return;
  }
  EXPECT_GT(rivals.decoded(), 1000);
  EXPECT_GT(rivals.refused(), 100);
}

}  // namespace
}  // namespace marklet::png::test
