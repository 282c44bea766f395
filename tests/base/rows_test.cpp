#include "base/rows.h"

#include <gtest/gtest.h>

#include <utility>

namespace marklet {
namespace {

TEST(DibStride, IsWholeGroupsOfFourBytes) {
  for (const auto& [bits, bytes] : {std::pair{0, 0}, {1, 4}, {32, 4}, {33, 8}, {64, 8}, {65, 12}})
    EXPECT_EQ(DibStride(bits, 1), bytes) << bits;
}

TEST(DibStride, CountsPixelsByTheirDepth) {
  EXPECT_EQ(DibStride(1, 24), 4);
  EXPECT_EQ(DibStride(3, 24), 12);
  EXPECT_EQ(DibStride(5, 32), 20);
  EXPECT_EQ(DibStride(9, 4), 8);
}

TEST(DibStride, HoldsTheLongestRows) { EXPECT_EQ(DibStride(0x7FFFFFFF, 32), 0x1FFFFFFFCLL); }

}  // namespace
}  // namespace marklet
