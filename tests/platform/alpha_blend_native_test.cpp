// The blend of the platform in memory, which rounds once.
#include <array>
#include <cstdlib>
#include <random>

#include "platform/test_picture.h"

namespace marklet {
namespace {

constexpr unsigned kWhole = 255 * 255;

// Whether `got` is the nearest number to s * c + d * (1 - alpha * c). There are no ties, as 255 is odd.
bool IsNearest(unsigned got, unsigned d, unsigned s, unsigned alpha, unsigned constant) {
  const unsigned exact = s * constant * 255 + d * (kWhole - alpha * constant);
  const auto miss = std::abs(static_cast<int>(got * kWhole) - static_cast<int>(exact));
  return static_cast<unsigned>(miss) * 2 < kWhole || (got == 255 && exact > 255 * kWhole);
}

// Blends every destination, from left to right, with every alpha, from top to bottom. The three colours of
// each source pixel are `colour` and the two after it, whether or not alpha allows for them.
class Table {
 public:
  void ExpectNearest(unsigned colour, std::uint8_t constant, bool use_alpha) {
    Prepare(colour);
    ASSERT_TRUE(
        AlphaBlend(to_.Context(), 0, 0, 256, 256, from_.Context(), 0, 0, 256, 256, constant, use_alpha));
    for (Long y = 0; y < 256; ++y) Check(y, colour, use_alpha ? static_cast<unsigned>(y) : 255, constant);
  }

 private:
  void Prepare(unsigned colour) {
    for (Long y = 0; y < 256; ++y) {
      std::uint8_t *to = to_.At(0, y), *from = from_.At(0, y);
      for (unsigned x = 0; x < 256; ++x, to += 3, from += 4) {
        to[0] = to[1] = to[2] = static_cast<std::uint8_t>(x);
        for (unsigned channel = 0; channel < 3; ++channel)
          from[channel] = static_cast<std::uint8_t>(colour + channel);
        from[3] = static_cast<std::uint8_t>(y);
      }
    }
  }
  void Check(Long y, unsigned colour, unsigned alpha, unsigned constant) {
    const std::uint8_t* got = to_.At(0, y);
    for (unsigned x = 0; x < 256; ++x, got += 3)
      for (unsigned channel = 0; channel < 3; ++channel)
        ASSERT_TRUE(IsNearest(got[channel], x, (colour + channel) & 0xFF, alpha, constant))
            << unsigned{got[channel]} << " of " << x << " below " << ((colour + channel) & 0xFF) << " with "
            << alpha << " at " << constant;
  }

  TestPicture to_{256, 256, 24}, from_{256, 256, 32};
};

TEST(SlowAlphaBlendInMemory, GivesTheNearestOfEveryTriple) {
  Table table;
  for (const std::uint8_t constant :
       {std::uint8_t{1}, std::uint8_t{128}, std::uint8_t{254}, std::uint8_t{255}})
    for (unsigned colour = 0; colour < 256; colour += 3) table.ExpectNearest(colour, constant, true);
}

TEST(SlowAlphaBlendInMemory, GivesTheNearestAtEveryConstant) {
  std::mt19937 random(5);
  Table table;
  for (unsigned constant = 0; constant < 256; ++constant)
    for (const bool use_alpha : {true, false})
      table.ExpectNearest(random() % 256, static_cast<std::uint8_t>(constant), use_alpha);
}

TEST(AlphaBlendInMemory, GivesTheNearestAlphaToo) {
  TestPicture to(256, 256, 32), from(256, 256, 32);
  for (unsigned constant = 0; constant < 256; constant += 5) {
    for (Long y = 0; y < 256; ++y)
      for (Long x = 0; x < 256; ++x) {
        to.At(x, y)[3] = static_cast<std::uint8_t>(x);
        from.At(x, y)[3] = static_cast<std::uint8_t>(y);
      }
    AlphaBlend(to.Context(), 0, 0, 256, 256, from.Context(), 0, 0, 256, 256,
               static_cast<std::uint8_t>(constant), true);
    for (unsigned y = 0; y < 256; ++y)
      for (unsigned x = 0; x < 256; ++x)
        ASSERT_TRUE(IsNearest(to.At(static_cast<Long>(x), static_cast<Long>(y))[3], x, y, y, constant));
  }
}

}  // namespace
}  // namespace marklet
