#include "bitmaps/smooth_stretch.h"

#include <algorithm>
#include <cmath>

#include "bitmaps/pixels.h"
#include "support/stretch_share.h"

namespace marklet {
namespace {

void FillWithNoise(const CDib24& surface, unsigned seed) {
  Random random(seed);
  for (Long row = 0; row < surface.Height(); ++row)
    for (Long x = 0; x < surface.Width(); ++x)
      PutColour(surface, x, row, static_cast<COLORREF>(Between(random, 0, 0xFFFFFF)));
}

// A channel of a cell, both counted from the top left.
double Expected(const CDib24& picture, const StretchSize& size, Long x, Long y, int channel) {
  double sum = 0;
  for (Long row = 0; row < picture.Height(); ++row) {
    const double down = StretchShare(picture.Height(), size.height, y, row);
    if (down <= 0) continue;
    for (Long column = 0; column < picture.Width(); ++column)
      sum += down * StretchShare(picture.Width(), size.width, x, column) *
             PixelAt(picture, column, picture.Height() - 1 - row)[channel];
  }
  return sum;
}

std::uint8_t Channel(const CDib24& part, Long x, Long y, int channel) {
  return PixelAt(part, x, part.Height() - 1 - y)[channel];
}

void ExpectPart(const CDib24& picture, const StretchSize& size, const CDib24& part, Long left, Long top) {
  double worst = 0;
  for (Long y = 0; y < part.Height(); ++y)
    for (Long x = 0; x < part.Width(); ++x)
      for (int channel = 0; channel < 3; ++channel) {
        const Long from_left = size.mirrored ? size.width - 1 - (left + x) : left + x;
        const Long from_top = size.upside_down ? size.height - 1 - (top + y) : top + y;
        const double exact = Expected(picture, size, from_left, from_top, channel);
        worst = std::max(worst, std::abs(exact - Channel(part, x, y, channel)));
      }
  EXPECT_LE(worst, 0.501) << size.width << " by " << size.height;
}

constexpr Long kSizes[][2] = {{1, 1},   {9, 7},   {10, 7}, {18, 14}, {19, 14}, {20, 15},
                              {38, 28}, {57, 42}, {19, 5}, {5, 28},  {130, 3}, {7, 90}};

TEST(SmoothStretch, AveragesWhatShrinksAndBlendsWhatGrows) {
  CDib24 picture;
  ASSERT_TRUE(picture.Create(19, 14));
  FillWithNoise(picture, 1);
  for (const auto& [width, height] : kSizes) {
    CDib24 whole;
    ASSERT_TRUE(whole.Create(width, height));
    StretchSmooth(picture, {width, height}, 0, 0, whole);
    ExpectPart(picture, {width, height}, whole, 0, 0);
  }
}

TEST(SmoothStretch, GivesAnyPartOfTheWhole) {
  CDib24 picture, part;
  ASSERT_TRUE(picture.Create(19, 14));
  FillWithNoise(picture, 2);
  ASSERT_TRUE(part.Create(6, 3));
  for (const auto& [width, height] : kSizes) {
    if (width < 6 || height < 3) continue;
    for (const Long left : {Long{0}, width - 6})
      for (const Long top : {Long{0}, height - 3}) {
        StretchSmooth(picture, {width, height}, left, top, part);
        ExpectPart(picture, {width, height}, part, left, top);
      }
  }
}

TEST(SmoothStretch, TurnsThePictureOver) {
  CDib24 picture, whole;
  ASSERT_TRUE(picture.Create(19, 14));
  FillWithNoise(picture, 3);
  ASSERT_TRUE(whole.Create(11, 30));
  for (const bool mirrored : {false, true})
    for (const bool upside_down : {false, true}) {
      const StretchSize size = {11, 30, mirrored, upside_down};
      StretchSmooth(picture, size, 0, 0, whole);
      ExpectPart(picture, size, whole, 0, 0);
    }
}

TEST(SmoothStretch, LeavesAPictureOfTheSameSizeAndAnEvenColourAsTheyAre) {
  CDib24 picture, same, other;
  ASSERT_TRUE(picture.Create(19, 14));
  FillWithNoise(picture, 4);
  ASSERT_TRUE(same.Create(19, 14));
  StretchSmooth(picture, {19, 14}, 0, 0, same);
  EXPECT_EQ(Colours(picture), Colours(same));
  picture.Clear(MakeRgb(255, 1, 128));
  for (const auto& [width, height] : kSizes) {
    ASSERT_TRUE(other.Create(width, height));
    StretchSmooth(picture, {width, height}, 0, 0, other);
    const std::vector<COLORREF> colours = Colours(other);
    EXPECT_EQ(std::vector<COLORREF>(colours.size(), MakeRgb(255, 1, 128)), colours);
  }
}

// Every second line black: at half the size all is grey, whichever lines a choice of lines would take.
TEST(SmoothStretch, DropsNoLine) {
  CDib24 picture, half;
  ASSERT_TRUE(picture.Create(20, 20));
  for (Long row = 0; row < 20; ++row)
    for (Long x = 0; x < 20; ++x) PutColour(picture, x, row, row % 2 ? 0xFFFFFF : 0);
  ASSERT_TRUE(half.Create(10, 10));
  StretchSmooth(picture, {10, 10}, 0, 0, half);
  EXPECT_EQ(std::vector<COLORREF>(100, 0x808080), Colours(half));
}

// A page of a printer of fine dots, of which only a corner is asked for.
TEST(SmoothStretch, ReachesFarSizes) {
  CDib24 picture, part;
  ASSERT_TRUE(picture.Create(3000, 2));
  FillWithNoise(picture, 5);
  ASSERT_TRUE(part.Create(2, 2));
  constexpr Long kFar = 0x7FFFFFFF;
  StretchSmooth(picture, {kFar, kFar}, kFar - 2, kFar - 2, part);
  const COLORREF corner = ColourAt(picture, 2999, 0);
  EXPECT_EQ(std::vector<COLORREF>(4, corner), Colours(part));
}

}  // namespace
}  // namespace marklet
