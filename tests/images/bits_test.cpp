#include "images/bits.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "bitmaps/pixel_context.h"

namespace marklet {
namespace {

using Bytes = std::vector<std::uint8_t>;

void Number(const PixelContext& context) {
  GdiFlush();
  for (Long y = 0; y < context.Height(); ++y)
    for (Long x = 0; x < context.Width(); ++x)
      for (int i = 0; i < context.Bytes(); ++i)
        context.At(x, y)[i] = static_cast<std::uint8_t>(100 * i + 10 * y + x);
}

TEST(GetBits, GivesBottomRowFirstAndChannelsFastest) {
  const PixelContext context(2, 2, 32);
  Number(context);
  const ByteArray four = GetBits(context.Get(), 0, 0, 2, 2, 4);
  EXPECT_EQ(four.bounds, (std::vector<ByteArray::Bound>{{0, 4}, {0, 2}, {0, 2}}));
  EXPECT_EQ(four.bytes, (Bytes{10, 110, 210, 54, 11, 111, 211, 55, 0, 100, 200, 44, 1, 101, 201, 45}));
  const ByteArray three = GetBits(context.Get(), 0, 0, 2, 2, 3);
  EXPECT_EQ(three.bounds, (std::vector<ByteArray::Bound>{{0, 3}, {0, 2}, {0, 2}}));
  EXPECT_EQ(three.bytes, (Bytes{10, 110, 210, 11, 111, 211, 0, 100, 200, 1, 101, 201}));
}

TEST(GetBits, HasNoPaddingAndAlphaZeroFrom24Bits) {
  const PixelContext context(3, 2, 24);
  Number(context);
  EXPECT_EQ(GetBits(context.Get(), 1, 1, 2, 1, 3).bytes, (Bytes{11, 111, 211, 12, 112, 212}));
  EXPECT_EQ(GetBits(context.Get(), 2, 0, 1, 1, 4).bytes, (Bytes{2, 102, 202, 0}));
}

TEST(GetBits, TakesKeyColourForWhatLiesOutside) {
  const PixelContext context(1, 1, 24);
  Number(context);
  EXPECT_EQ(GetBits(context.Get(), 0, 0, 2, 1, 3).bytes, (Bytes{0, 100, 200, 253, 3, 254}));
  EXPECT_EQ(GetBits(context.Get(), -1, -1, 2, 2, 3).bytes,
            (Bytes{253, 3, 254, 0, 100, 200, 253, 3, 254, 253, 3, 254}));
  EXPECT_EQ(GetBits(context.Get(), 0, 0, 2, 1, 4).bytes, (Bytes{0, 100, 200, 0, 0, 0, 0, 0}));
  EXPECT_EQ(GetBits(context.Get(), 2147483647, 2147483647, 1, 1, 3).bytes, (Bytes{253, 3, 254}));
  EXPECT_EQ(GetBits(nullptr, 0, 0, 1, 1, 3).bytes, (Bytes{253, 3, 254}));
  EXPECT_EQ(GetBits(context.Get(), 0, 0, 0, 5, 3), ByteArray{});
  EXPECT_EQ(GetBits(context.Get(), 0, 0, 5, -1, 3), ByteArray{});
}

TEST(PutBits, IsTheOppositeOfGetBits) {
  for (const Long channels : {3, 4}) {
    const PixelContext from(8, 5, channels == 3 ? 24 : 32), to(8, 5, channels == 3 ? 24 : 32);
    Number(from);
    EXPECT_TRUE(PutBits(to.Get(), 0, 0, 8, 5, GetBits(from.Get(), 0, 0, 8, 5, channels), channels));
    for (Long y = 0; y < 5; ++y)
      EXPECT_EQ(std::memcmp(from.At(0, y), to.At(0, y), static_cast<std::size_t>(8 * channels)), 0);
  }
}

TEST(PutBits, GoesToItsPlaceAndIsCutAtTheEdges) {
  const PixelContext from(4, 2, 32), to(4, 4, 32);
  Number(from);
  const ByteArray bytes = GetBits(from.Get(), 0, 0, 4, 2, 4);
  EXPECT_TRUE(PutBits(to.Get(), 2, 3, 4, 2, bytes, 4));
  EXPECT_TRUE(PutBits(to.Get(), -3, -1, 4, 2, bytes, 4));
  EXPECT_EQ(to.At(2, 3)[0], 0);
  EXPECT_EQ(to.At(3, 3)[0], 1);
  EXPECT_EQ(to.At(0, 0)[0], 13);
  EXPECT_EQ(to.At(1, 1)[0], 0);
}

TEST(PutBits, TakesTheBytesAsTheyAreWhateverTheirBounds) {
  const PixelContext to(4, 1, 24);
  const ByteArray flat = OneDimension({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13});
  EXPECT_TRUE(PutBits(to.Get(), 0, 0, 4, 1, flat, 3));
  EXPECT_EQ(to.At(3, 0)[2], 12);
}

TEST(PutBits, OfTooFewBytesWritesNothing) {
  const PixelContext to(4, 4, 32);
  ByteArray bytes = GetBits(to.Get(), 0, 0, 4, 4, 4);
  std::fill(bytes.bytes.begin(), bytes.bytes.end(), std::uint8_t{9});
  bytes.bytes.pop_back();
  EXPECT_FALSE(PutBits(to.Get(), 0, 0, 4, 4, bytes, 4));
  EXPECT_FALSE(PutBits(to.Get(), 0, 0, 4, 4, {}, 4));
  EXPECT_FALSE(PutBits(to.Get(), 0, 0, 2147483647, 2147483647, bytes, 4));
  EXPECT_FALSE(PutBits(to.Get(), 0, 0, 0, 4, bytes, 4));
  EXPECT_FALSE(PutBits(nullptr, 0, 0, 1, 1, bytes, 4));
  for (Long y = 0; y < 4; ++y) EXPECT_EQ(to.At(3, y)[3], 0);
}

TEST(PutBits, OfThreeChannelsLeavesNoAlpha) {
  const PixelContext to(1, 1, 32);
  to.At(0, 0)[3] = 200;
  EXPECT_TRUE(PutBits(to.Get(), 0, 0, 1, 1, OneDimension({1, 2, 3, 4}), 3));
  EXPECT_EQ(to.At(0, 0)[2], 3);
  EXPECT_EQ(to.At(0, 0)[3], 0);
}

}  // namespace
}  // namespace marklet
