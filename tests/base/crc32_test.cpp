#include "base/crc32.h"

#include <gtest/gtest.h>

#include <random>

#include "support/saved_bytes.h"

namespace marklet {
namespace {

TEST(Crc32, HasThePublishedCheckValue) {
  const std::uint8_t digits[] = {'1', '2', '3', '4', '5', '6', '7', '8', '9'};
  EXPECT_EQ(Crc32(digits), 0xCBF43926u);
  EXPECT_EQ(Crc32({}), 0u);
}

TEST(Crc32, IsTheSameAtEveryLengthAndPlaceAsABitAtATime) {
  std::mt19937 random(1);
  std::vector<std::uint8_t> bytes(100);
  for (auto& byte : bytes) byte = static_cast<std::uint8_t>(random());
  for (std::size_t start = 0; start < 9; ++start)
    for (std::size_t size = 0; size < 80; ++size) {
      const auto part = std::span(bytes).subspan(start, size);
      EXPECT_EQ(Crc32(part), testing::PlainCrc32({part.begin(), part.end()})) << start << ' ' << size;
    }
}

}  // namespace
}  // namespace marklet
