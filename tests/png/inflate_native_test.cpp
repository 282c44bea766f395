// Deflate streams that zlib made, against what went into them.
#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <string>

#include "png/inflate.h"
#include "png/plain_inflate.h"
#include "png/png_files.h"
#include "support/processor_forms.h"

namespace marklet::png::test {
namespace {

// Bytes of one of the kinds that make encoders do different things.
Bytes RandomContent(Random& random, std::size_t length) {
  const std::uint32_t kind = random.Below(6);
  const std::uint32_t alphabet = 1 + random.Below(256), period = 1 + random.Below(40);
  Bytes bytes;
  for (std::size_t i = 0; i < length; ++i) {
    const std::uint8_t noise = static_cast<std::uint8_t>(random.Below(alphabet));
    switch (kind) {
      case 0:
        bytes.push_back(random.Byte());
        break;
      case 1:
        bytes.push_back(noise);
        break;
      case 2:  // runs
        bytes.push_back(i > 0 && random.Below(20) != 0 ? bytes.back() : noise);
        break;
      case 3:  // nearly periodic
        bytes.push_back(i >= period && random.Below(30) != 0 ? bytes[i - period] : noise);
        break;
      case 4:  // many small values, few large
        bytes.push_back(static_cast<std::uint8_t>(random.Below(alphabet) * random.Below(alphabet) / 256));
        break;
      default:  // far repeats
        bytes.push_back(i >= 30000 && random.Below(100) != 0 ? bytes[i - 30000] : random.Byte());
    }
  }
  return bytes;
}

struct Settings {
  int level, memory_level, strategy, flush;
};

Bytes Deflated(const Bytes& content, const Settings& settings, Random& random) {
  z_stream stream{};
  EXPECT_EQ(deflateInit2(&stream, settings.level, Z_DEFLATED, -15, settings.memory_level, settings.strategy),
            Z_OK);
  Bytes out(content.size() + content.size() / 2 + 20000);
  stream.next_out = out.data();
  stream.avail_out = static_cast<uInt>(out.size());
  stream.next_in = const_cast<Bytef*>(content.data());
  std::size_t left = content.size();
  while (left > 0) {  // in pieces, with a flush after each
    stream.avail_in = static_cast<uInt>(std::min<std::size_t>(left, 1 + random.Below(60000)));
    left -= stream.avail_in;
    deflate(&stream, settings.flush);
    EXPECT_EQ(stream.avail_in, 0u);
  }
  EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
  out.resize(stream.total_out);
  deflateEnd(&stream);
  Append(out, {1, 2, 3, 4});
  return out;
}

class SlowInflateNative : public ProcessorFormTest {};

MARKLET_FOR_PROCESSOR_FORMS(SlowInflateNative);

TEST_P(SlowInflateNative, StreamsOfEveryLevelStrategyAndFlush) {
  Random random(11);
  for (int level = 0; level <= 9; ++level)
    for (const int strategy : {Z_DEFAULT_STRATEGY, Z_FILTERED, Z_HUFFMAN_ONLY, Z_RLE, Z_FIXED})
      for (const int flush : {Z_NO_FLUSH, Z_PARTIAL_FLUSH, Z_SYNC_FLUSH, Z_FULL_FLUSH, Z_BLOCK})
        for (int round = 0; round < 3; ++round) {
          const Bytes content = RandomContent(random, random.Below(round == 0 ? 150000 : 3000));
          const Bytes stream =
              Deflated(content, {level, 1 + static_cast<int>(random.Below(9)), strategy, flush}, random);
          Inflater inflater;
          Bytes output;
          ASSERT_TRUE(InflateAll(inflater, stream, content.size(), output));
          ASSERT_EQ(output, content) << level << ' ' << strategy << ' ' << flush;
        }
}

// Where both decoders take a stream they must agree. Ours stops early for some faults and not at all for
// others.
TEST_P(SlowInflateNative, DamagedStreamsThatZlibStillTakes) {
  Random random(12);
  int taken = 0;
  for (int round = 0; round < 10000; ++round) {
    const Bytes content = RandomContent(random, 1 + random.Below(600));
    Bytes stream = Deflated(
        content, {1 + static_cast<int>(random.Below(9)), 8, static_cast<int>(random.Below(5)), Z_NO_FLUSH},
        random);
    stream[random.Below(static_cast<std::uint32_t>(stream.size()))] ^=
        static_cast<std::uint8_t>(1u << random.Below(8));
    Bytes expected(4000);
    z_stream zlib{};
    inflateInit2(&zlib, -15);
    zlib.next_in = stream.data();
    zlib.avail_in = static_cast<uInt>(stream.size());
    zlib.next_out = expected.data();
    zlib.avail_out = static_cast<uInt>(expected.size());
    const int result = inflate(&zlib, Z_FINISH);
    expected.resize(zlib.total_out);
    inflateEnd(&zlib);
    Inflater inflater;
    Bytes output;
    const bool decoded = InflateAll(inflater, stream, 4000, output);
    if (result != Z_STREAM_END) continue;
    if (!decoded) {  // zlib takes a lone distance code, and none
      ASSERT_TRUE(plain::Inflate().Run(stream, 4000).failed_tables);
      continue;
    }
    ++taken;
    ASSERT_EQ(output, expected);
  }
  EXPECT_GT(taken, 500);
}

}  // namespace
}  // namespace marklet::png::test
