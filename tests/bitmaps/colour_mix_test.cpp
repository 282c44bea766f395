#include "bitmaps/colour_mix.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <vector>

namespace marklet {
namespace {

Long RoundedMix(float t, int from, int to) {
  const double mix = (1.0 - t) * from + static_cast<double>(t) * to;
  const double below = std::floor(mix);
  const auto whole = static_cast<Long>(below);
  if (mix - below == 0.5) return whole + whole % 2;
  return mix - below < 0.5 ? whole : whole + 1;
}

// Ratios whose mixes are halves, nearly halves, and anything.
std::vector<float> Ratios() {
  std::vector<float> ratios = {0.0f,     1.0f,     0x1p-23f, 0x1p-40f, 1.0f - 0x1p-24f,
                               1.0f / 3, 2.0f / 3, 0.1f,     0.7f};
  for (int i = 1; i < 32; ++i) ratios.push_back(static_cast<float>(i) / 32);
  for (const int odd : {1, 3, 5, 7, 51, 85, 127, 255}) {
    const float half = 0.5f / static_cast<float>(odd);
    for (const float near : {half, std::nextafter(half, 0.0f), std::nextafter(half, 1.0f)})
      ratios.push_back(near);
  }
  return ratios;
}

PixelPair PairOf(int left, int right) {
  const auto grey = [](int level) { return static_cast<PixelPair>(level) * 0x010101; };
  return grey(left) | grey(right) << 24;
}

std::array<std::uint8_t, 3> BytesOf(const MixedColour& colour) {
  std::array<std::uint8_t, 3> bytes;
  Mix(colour, colour, MixRatio(0), bytes.data());
  return bytes;
}

TEST(SlowColourMix, BetweenRowsRoundsExactlyForEveryPairOfBytes) {
  const KeyPair key(CLR_INVALID);
  for (const float t : Ratios()) {
    const MixRatio ratio(t);
    for (int from = 0; from < 256; ++from) {
      for (int to = 0; to < 256; ++to) {
        const MixedPair mixed = Mix(PairOf(from, to), PairOf(to, from), ratio, key);
        const auto left = BytesOf(mixed.left), right = BytesOf(mixed.right);
        ASSERT_EQ(left[0], RoundedMix(t, from, to)) << from << " to " << to << " by " << t;
        ASSERT_EQ(right[2], RoundedMix(t, to, from)) << to << " to " << from << " by " << t;
        ASSERT_TRUE(left[1] == left[0] && left[2] == left[0] && right[1] == right[2] && right[0] == right[2]);
      }
    }
  }
}

TEST(SlowColourMix, BetweenColumnsRoundsExactlyForEveryPairOfBytes) {
  const KeyPair key(CLR_INVALID);
  for (const float t : Ratios()) {
    const MixRatio ratio(t);
    for (int from = 0; from < 256; ++from) {
      for (int to = 0; to < 256; ++to) {
        const MixedPair pair = Mix(PairOf(from, to), PairOf(from, to), MixRatio(0), key);
        std::array<std::uint8_t, 3> bytes;
        Mix(pair.left, pair.right, ratio, bytes.data());
        ASSERT_EQ(bytes[1], RoundedMix(t, from, to)) << from << " to " << to << " by " << t;
      }
    }
  }
}

TEST(ColourMix, SeesTheKeyInEitherPixelAndInTheMix) {
  constexpr COLORREF kKey = MakeRgb(30, 20, 10);
  constexpr PixelPair kKeyPixel = 0x1E140A, kOther = 0x1E140B;
  const auto keyed = [](PixelPair from, PixelPair to, float t, COLORREF key) {
    const MixedPair mixed = Mix(from, to, MixRatio(t), KeyPair(key));
    return std::array{mixed.left_keyed != 0, mixed.right_keyed != 0};
  };
  using Answer = std::array<bool, 2>;
  EXPECT_EQ(keyed(kKeyPixel | kOther << 24, kOther | kOther << 24, 1, kKey), (Answer{true, false}));
  EXPECT_EQ(keyed(kOther | kKeyPixel << 24, kOther | kOther << 24, 1, kKey), (Answer{false, true}));
  EXPECT_EQ(keyed(kOther | kOther << 24, kKeyPixel | kOther << 24, 0, kKey), (Answer{true, false}));
  EXPECT_EQ(keyed(kOther | kOther << 24, kOther | kKeyPixel << 24, 0, kKey), (Answer{false, true}));
  EXPECT_EQ(keyed(0x1C1208, 0x20160C, 0.5f, kKey), (Answer{true, false}));
  EXPECT_EQ(keyed(PixelPair{0x1C1208} << 24, PixelPair{0x20160C} << 24, 0.5f, kKey), (Answer{false, true}));
  EXPECT_EQ(keyed(kKeyPixel, kKeyPixel, 0.5f, kKey | 0x01000000), (Answer{false, false}));
  EXPECT_EQ(keyed(0xFFFFFF, 0xFFFFFF, 0.5f, CLR_INVALID), (Answer{false, false}));
}

}  // namespace
}  // namespace marklet
