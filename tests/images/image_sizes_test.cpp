#include "images/image_sizes.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace marklet {
namespace {

TEST(ImageSizes, HaveAnIndexAndBack) {
  const std::vector<Long> pixels = {16, 24, 32, 48, 72, 96, 128, 256};
  for (Long index = 0; index < 8; ++index) {
    EXPECT_EQ(SizeFromIndex(index), pixels[static_cast<std::size_t>(index)]);
    EXPECT_EQ(SizeIndex(pixels[static_cast<std::size_t>(index)]), index);
  }
  for (const Long index : {-1, 8, 2147483647}) EXPECT_EQ(SizeFromIndex(index), 0);
  for (const Long other : {0, 1, 64, 20, -16, 257}) EXPECT_EQ(SizeIndex(other), 0);
}

TEST(ImageSizes, DepthsGoByBitsAPixel) {
  for (const auto& [bits, index] : std::vector<std::pair<Long, Long>>{{0, 0},
                                                                      {1, 0},
                                                                      {3, 0},
                                                                      {4, 1},
                                                                      {7, 1},
                                                                      {8, 2},
                                                                      {15, 2},
                                                                      {16, 3},
                                                                      {24, 3},
                                                                      {31, 3},
                                                                      {32, 4},
                                                                      {21060, 4}})
    EXPECT_EQ(DepthIndex(bits), index) << bits;
}

TEST(ImageSizes, NormalisedByBandsThatAreNotHalfway) {
  for (const auto& [pixels, size] : std::vector<std::pair<Long, Long>>{{0, 16},
                                                                       {22, 16},
                                                                       {23, 24},
                                                                       {27, 24},
                                                                       {28, 32},
                                                                       {41, 32},
                                                                       {42, 48},
                                                                       {64, 48},
                                                                       {67, 48},
                                                                       {68, 72},
                                                                       {91, 72},
                                                                       {92, 96},
                                                                       {126, 96},
                                                                       {127, 128},
                                                                       {249, 128},
                                                                       {250, 256},
                                                                       {65536, 256}})
    EXPECT_EQ(NormalisedSize(pixels), size) << pixels;
}

TEST(ImageSizes, PaddedWidthNeedsNoPaddingOfItsRows) {
  for (Long width = 0; width < 40; ++width) {
    Long expected = width;
    while (expected * 3 % 4 != 0) ++expected;
    EXPECT_EQ(PaddedWidth(width), expected);
  }
}

}  // namespace
}  // namespace marklet
