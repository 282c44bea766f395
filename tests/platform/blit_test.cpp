// Copies and blends between contexts against loops that go pixel by pixel.
#include <algorithm>
#include <limits>

#include "platform/test_picture.h"

namespace marklet {
namespace {

constexpr Long kMin = std::numeric_limits<Long>::min(), kMax = std::numeric_limits<Long>::max();

struct Area {
  Long x, y, width, height, source_x, source_y;
};

Area RandomArea(std::mt19937& random) {
  const auto near = [&random] { return static_cast<Long>(random() % 30) - 8; };
  return {near(), near(), near(), near(), near(), near()};
}

COLORREF Combined(std::uint32_t rop, COLORREF d, COLORREF s) {
  if (rop == SRCAND) return d & s;
  if (rop == SRCINVERT) return d ^ s;
  if (rop == NOTSRCCOPY) return s ^ 0xFFFFFF;
  return s;
}

// What a copy must give: every source pixel is read before any is written.
std::vector<COLORREF> ExpectedCopy(const TestPicture& to, const TestPicture& from, const Area& area,
                                   std::uint32_t rop) {
  std::vector<COLORREF> result = to.Colours();
  auto pixel = result.begin();
  for (Long y = 0; y < to.Height(); ++y)
    for (Long x = 0; x < to.Width(); ++x, ++pixel) {
      const Long source_x = x - area.x + area.source_x, source_y = y - area.y + area.source_y;
      const bool inside = x >= area.x && x < area.x + area.width && y >= area.y && y < area.y + area.height;
      if (!inside || !from.Inside(source_x, source_y)) continue;
      *pixel = Combined(rop, to.Pixel(x, y), from.Pixel(source_x, source_y));
    }
  return result;
}

bool Copy(const TestPicture& to, const TestPicture& from, const Area& area, std::uint32_t rop) {
  return BitBlt(to.Context(), area.x, area.y, area.width, area.height, from.Context(), area.source_x,
                area.source_y, rop);
}

std::string Told(const Area& area, std::uint32_t rop) {
  std::string told = "rop " + std::to_string(rop) + ":";
  for (const Long number : {area.x, area.y, area.width, area.height, area.source_x, area.source_y})
    told += " " + std::to_string(number);
  return told;
}

constexpr std::uint32_t kRops[] = {SRCCOPY, SRCAND, SRCINVERT, NOTSRCCOPY};

struct Depths {
  int to, from;
};
class BitBltBetween : public testing::TestWithParam<Depths> {};

TEST_P(BitBltBetween, CombinesWhatLiesOnBoth) {
  std::mt19937 random(1);
  TestPicture to(19, 13, GetParam().to), from(16, 21, GetParam().from);
  for (int round = 0; round < 400; ++round) {
    to.FillRandomly(random);
    from.FillRandomly(random);
    const Area area = RandomArea(random);
    const std::uint32_t rop = kRops[random() % 4];
    const std::vector<COLORREF> expected = ExpectedCopy(to, from, area, rop);
    EXPECT_TRUE(Copy(to, from, area, rop));
    ASSERT_EQ(to.Colours(), expected) << Told(area, rop);
  }
}

INSTANTIATE_TEST_SUITE_P(AllDepths, BitBltBetween,
                         testing::Values(Depths{24, 24}, Depths{32, 32}, Depths{24, 32}, Depths{32, 24}),
                         [](const auto& depths) {
                           return std::to_string(depths.param.from) + "To" + std::to_string(depths.param.to);
                         });

class BitBltWithin : public testing::TestWithParam<int> {};

TEST_P(BitBltWithin, OverlapsWithoutReadingWhatItWrote) {
  std::mt19937 random(2);
  TestPicture picture(19, 13, GetParam());
  for (int round = 0; round < 400; ++round) {
    picture.FillRandomly(random);
    const Area area = RandomArea(random);
    const std::uint32_t rop = kRops[random() % 4];
    const std::vector<COLORREF> expected = ExpectedCopy(picture, picture, area, rop);
    EXPECT_TRUE(Copy(picture, picture, area, rop));
    ASSERT_EQ(picture.Colours(), expected) << Told(area, rop);
  }
}

INSTANTIATE_TEST_SUITE_P(Depths, BitBltWithin, testing::Values(24, 32));

TEST(BitBlt, CarriesAlphaBetweenFourBytePixels) {
  TestPicture to(2, 1, 32), from(2, 1, 32);
  from.Fill(0x80);
  EXPECT_TRUE(Copy(to, from, {0, 0, 2, 1, 0, 0}, SRCCOPY));
  EXPECT_EQ(to.At(1, 0)[3], 0x80);
}

TEST(BitBlt, StandsTheEndsOfTheNumbers) {
  TestPicture to(4, 4), from(4, 4);
  from.Fill(0x77);
  EXPECT_TRUE(Copy(to, from, {kMin, kMin, kMax, kMax, kMax, kMax}, SRCCOPY));
  EXPECT_TRUE(Copy(to, from, {kMax, kMax, kMax, kMax, 0, 0}, SRCCOPY));
  EXPECT_TRUE(Copy(to, from, {0, 0, kMin, kMin, 0, 0}, SRCCOPY));
  EXPECT_EQ(InkOf(to, 0), RECT{});
  EXPECT_TRUE(Copy(to, from, {1, 1, kMax, kMax, 0, 0}, SRCCOPY));
  EXPECT_EQ(InkOf(to, 0), (RECT{1, 1, 4, 4}));
}

TEST(BitBlt, FromTheLowestCoordinatesOnStaysInPlace) {
  TestPicture to(4, 4), from(4, 4);
  from.Fill(0x77);
  EXPECT_TRUE(Copy(to, from, {-1000, -1000, 1002, 1003, -1000, -1000}, SRCCOPY));
  EXPECT_EQ(InkOf(to, 0), (RECT{0, 0, 2, 3}));
}

TEST(BitBlt, NeedsTwoContexts) {
  TestPicture picture(4, 4);
  EXPECT_FALSE(BitBlt(nullptr, 0, 0, 4, 4, picture.Context(), 0, 0, SRCCOPY));
  EXPECT_FALSE(BitBlt(picture.Context(), 0, 0, 4, 4, nullptr, 0, 0, SRCCOPY));
}

// d := s * c + d * (1 - s.alpha * c), in real numbers.
double Blended(double d, double s, double alpha, double constant) {
  return s * constant / 255 + d * (1 - alpha / 255 * constant / 255);
}

// A pixel whose channels don't exceed its alpha.
void FillPremultiplied(TestPicture& picture, std::mt19937& random) {
  for (Long y = 0; y < picture.Height(); ++y)
    for (Long x = 0; x < picture.Width(); ++x) {
      std::uint8_t* pixel = picture.At(x, y);
      const unsigned kind = random() % 4;
      pixel[3] = static_cast<std::uint8_t>(kind == 0 ? 0 : kind == 1 ? 255 : random());
      for (int i = 0; i < 3; ++i) pixel[i] = static_cast<std::uint8_t>(random() % (pixel[3] + 1u));
    }
}

// Three products may be rounded on their own where alpha and constant both count.
double MostRounded(bool use_alpha, std::uint8_t constant) {
  return use_alpha && constant != 255 ? 3 * 0.5 : 0.5;
}

class AlphaBlendOnto : public testing::TestWithParam<int> {};

TEST_P(AlphaBlendOnto, FollowsTheFormulaButForItsRoundings) {
  std::mt19937 random(3);
  TestPicture to(16, 16, GetParam()), from(16, 16, 32);
  for (int round = 0; round < 60; ++round) {
    to.FillRandomly(random);
    FillPremultiplied(from, random);
    const auto constant = static_cast<std::uint8_t>(round == 0 ? 0 : round == 1 ? 255 : random());
    const bool use_alpha = random() % 2 == 0;
    const std::vector<COLORREF> before = to.Colours();
    ASSERT_TRUE(AlphaBlend(to.Context(), 0, 0, 16, 16, from.Context(), 0, 0, 16, 16, constant, use_alpha));
    auto pixel = before.begin();
    for (Long y = 0; y < 16; ++y)
      for (Long x = 0; x < 16; ++x, ++pixel) {
        const COLORREF d = *pixel, s = from.Pixel(x, y), got = to.Pixel(x, y);
        const double alpha = use_alpha ? from.At(x, y)[3] : 255;
        for (int shift = 0; shift < 24; shift += 8)
          ASSERT_NEAR(got >> shift & 0xFF, Blended(d >> shift & 0xFF, s >> shift & 0xFF, alpha, constant),
                      MostRounded(use_alpha, constant));
      }
  }
}

INSTANTIATE_TEST_SUITE_P(Depths, AlphaBlendOnto, testing::Values(24, 32));

TEST(AlphaBlend, IsExactAtTheEndsOfTheScale) {
  std::mt19937 random(4);
  TestPicture to(8, 8), from(8, 8, 32);
  to.FillRandomly(random);
  from.FillRandomly(random);
  const std::vector<COLORREF> before = to.Colours();
  AlphaBlend(to.Context(), 0, 0, 8, 8, from.Context(), 0, 0, 8, 8, 0, false);
  EXPECT_EQ(to.Colours(), before);
  AlphaBlend(to.Context(), 0, 0, 8, 8, from.Context(), 0, 0, 8, 8, 255, false);
  EXPECT_EQ(to.Colours(), from.Colours());
}

TEST(AlphaBlend, LeavesOutWhatLiesOutsideTheDestination) {
  TestPicture to(4, 4), from(8, 8, 32);
  from.Fill(0xFF);
  EXPECT_TRUE(AlphaBlend(to.Context(), -2, 3, 8, 8, from.Context(), 0, 0, 8, 8, 255, true));
  EXPECT_EQ(InkOf(to, 0), (RECT{0, 3, 4, 4}));
}

TEST(AlphaBlend, RefusesToReadOutsideTheSource) {
  TestPicture to(4, 4), from(4, 4, 32);
  from.Fill(0xFF);
  EXPECT_FALSE(AlphaBlend(to.Context(), 0, 0, 5, 4, from.Context(), 0, 0, 5, 4, 255, true));
  EXPECT_FALSE(AlphaBlend(to.Context(), 0, 0, 2, 2, from.Context(), 3, 0, 2, 2, 255, true));
  EXPECT_FALSE(AlphaBlend(to.Context(), 0, 0, 2, 2, from.Context(), -1, 0, 2, 2, 255, true));
  EXPECT_EQ(InkOf(to, 0), RECT{});
}

TEST(AlphaBlend, RefusesAlphaFromASourceThatHasNone) {
  TestPicture to(4, 4), from(4, 4, 24);
  from.Fill(0xFF);
  EXPECT_FALSE(AlphaBlend(to.Context(), 0, 0, 4, 4, from.Context(), 0, 0, 4, 4, 255, true));
  EXPECT_TRUE(AlphaBlend(to.Context(), 0, 0, 4, 4, from.Context(), 0, 0, 4, 4, 255, false));
}

TEST(AlphaBlend, SamplesTheNearestPixelWhereSizesDiffer) {
  std::mt19937 random(5);
  TestPicture to(6, 6), from(8, 8, 32);
  to.FillRandomly(random);
  from.FillRandomly(random);
  const std::vector<COLORREF> before = to.Colours();
  ASSERT_TRUE(AlphaBlend(to.Context(), 1, -2, 4, 6, from.Context(), 3, 2, 2, 3, 255, false));
  for (Long y = 0; y < 6; ++y)
    for (Long x = 0; x < 6; ++x) {
      const bool inside = x >= 1 && x < 5 && y < 4;
      EXPECT_EQ(to.Pixel(x, y), inside ? from.Pixel(3 + (x - 1) / 2, 2 + (y + 2) / 2)
                                       : before[static_cast<std::size_t>(y * 6 + x)])
          << x << ", " << y;
    }
}

TEST(AlphaBlend, OfNothingDrawsNothing) {
  TestPicture to(4, 4), from(4, 4, 32);
  from.Fill(0xFF);
  AlphaBlend(to.Context(), 0, 0, 0, 4, from.Context(), 0, 0, 4, 4, 255, false);
  AlphaBlend(to.Context(), 0, 0, 4, 4, from.Context(), 0, 0, 4, 0, 255, false);
  EXPECT_FALSE(AlphaBlend(to.Context(), 0, 0, 4, 4, from.Context(), 0, 0, -1, 4, 255, false));
  EXPECT_FALSE(AlphaBlend(to.Context(), 0, 0, -4, 4, from.Context(), 0, 0, 4, 4, 255, false));
  EXPECT_EQ(InkOf(to, 0), RECT{});
}

TEST(AlphaBlend, NeedsTwoContexts) {
  TestPicture picture(4, 4, 32);
  EXPECT_FALSE(AlphaBlend(nullptr, 0, 0, 4, 4, picture.Context(), 0, 0, 4, 4, 255, true));
  EXPECT_FALSE(AlphaBlend(picture.Context(), 0, 0, 4, 4, nullptr, 0, 0, 4, 4, 255, true));
}

}  // namespace
}  // namespace marklet
