// Fills, lines and the focus frame against loops that decide pixel by pixel.
#include <limits>

#include "platform/test_picture.h"

namespace marklet {
namespace {

constexpr Long kWidth = 23, kHeight = 17;
constexpr Long kMin = std::numeric_limits<Long>::min(), kMax = std::numeric_limits<Long>::max();

// Mostly near the picture, sometimes as far out as numbers go.
Long AnyCoordinate(std::mt19937& random) {
  switch (random() % 8) {
    case 0:
      return kMin + static_cast<Long>(random() % 3);
    case 1:
      return kMax - static_cast<Long>(random() % 3);
    default:
      return static_cast<Long>(random() % 40) - 8;
  }
}

bool Contains(const RECT& rect, Long x, Long y) {
  return rect.left <= x && x < rect.right && rect.top <= y && y < rect.bottom;
}

class FillRectOnDepth : public testing::TestWithParam<int> {};

TEST_P(FillRectOnDepth, FillsLeftAndTopUpToRightAndBottom) {
  std::mt19937 random(1);
  TestPicture picture(kWidth, kHeight, GetParam());
  for (int round = 0; round < 300; ++round) {
    picture.FillRandomly(random);
    std::vector<COLORREF> expected = picture.Colours();
    const RECT rect = {AnyCoordinate(random), AnyCoordinate(random), AnyCoordinate(random),
                       AnyCoordinate(random)};
    const COLORREF colour = random() & 0xFFFFFF;
    auto pixel = expected.begin();
    for (Long y = 0; y < kHeight; ++y)
      for (Long x = 0; x < kWidth; ++x, ++pixel)
        if (Contains(rect, x, y)) *pixel = colour;
    const HBRUSH brush = CreateSolidBrush(colour);
    EXPECT_TRUE(FillRect(picture.Context(), rect, brush));
    DeleteObject(brush);
    ASSERT_EQ(picture.Colours(), expected)
        << rect.left << "," << rect.top << "," << rect.right << "," << rect.bottom;
  }
}

INSTANTIATE_TEST_SUITE_P(Depths, FillRectOnDepth, testing::Values(24, 32));

TEST(FillRect, ClearsTheAlphaOfFourBytePixels) {
  TestPicture picture(4, 4, 32);
  picture.Fill(0xFF);
  const HBRUSH brush = CreateSolidBrush(0x123456);
  FillRect(picture.Context(), {0, 0, 2, 4}, brush);
  DeleteObject(brush);
  EXPECT_EQ(picture.At(0, 0)[3], 0);
  EXPECT_EQ(picture.At(2, 0)[3], 0xFF);
}

TEST(FillRect, NeedsAContextAndABrush) {
  TestPicture picture(4, 4);
  const HBRUSH brush = CreateSolidBrush(0xFFFFFF);
  EXPECT_FALSE(FillRect(nullptr, {0, 0, 4, 4}, brush));
  EXPECT_FALSE(FillRect(picture.Context(), {0, 0, 4, 4}, nullptr));
  EXPECT_EQ(picture.Pixel(0, 0), 0u);
  DeleteObject(brush);
}

class Lines : public testing::Test {
 protected:
  Lines() : pen_(CreatePen(1, kColour)), former_(SelectObject(picture_.Context(), pen_)) {}
  ~Lines() override {
    SelectObject(picture_.Context(), former_);
    DeleteObject(pen_);
  }
  void Draw(Long from_x, Long from_y, Long to_x, Long to_y) {
    EXPECT_TRUE(MoveToEx(picture_.Context(), from_x, from_y));
    EXPECT_TRUE(LineTo(picture_.Context(), to_x, to_y));
  }
  // The pixels that have the pen's colour, as "x,y" in reading order.
  std::string Drawn() const {
    std::string drawn;
    for (Long y = 0; y < kHeight; ++y)
      for (Long x = 0; x < kWidth; ++x)
        if (picture_.Pixel(x, y) == kColour) drawn += std::to_string(x) + "," + std::to_string(y) + " ";
    return drawn;
  }

  static constexpr COLORREF kColour = 0x0000FF;
  TestPicture picture_{kWidth, kHeight};
  HPEN pen_;
  HGDIOBJ former_;
};

TEST_F(Lines, LeaveOutTheLastPixel) {
  Draw(2, 3, 5, 3);
  EXPECT_EQ(Drawn(), "2,3 3,3 4,3 ");
}

TEST_F(Lines, RunInEveryDirection) {
  Draw(5, 5, 2, 5);
  EXPECT_EQ(Drawn(), "3,5 4,5 5,5 ");
  picture_.Fill(0);
  Draw(1, 1, 1, 3);
  EXPECT_EQ(Drawn(), "1,1 1,2 ");
  picture_.Fill(0);
  Draw(1, 3, 1, 1);
  EXPECT_EQ(Drawn(), "1,2 1,3 ");
}

TEST_F(Lines, WithoutLengthDrawNothing) {
  Draw(4, 4, 4, 4);
  EXPECT_EQ(Drawn(), "");
}

TEST_F(Lines, GoOnWhereTheLastOneEnded) {
  Draw(0, 0, 2, 0);
  EXPECT_TRUE(LineTo(picture_.Context(), 2, 2));
  EXPECT_EQ(Drawn(), "0,0 1,0 2,0 2,1 ");
}

TEST_F(Lines, OnTheDiagonalTouchEachColumnOnce) {
  Draw(1, 1, 4, 4);
  EXPECT_EQ(Drawn(), "1,1 2,2 3,3 ");
  picture_.Fill(0);
  Draw(4, 4, 1, 1);
  EXPECT_EQ(Drawn(), "2,2 3,3 4,4 ");
}

TEST_F(Lines, AreClippedToThePicture) {
  Draw(-100000, 2, 100000, 2);
  Draw(3, 100000, 3, -100000);
  for (Long x = 0; x < kWidth; ++x) EXPECT_EQ(picture_.Pixel(x, 2), kColour);
  for (Long y = 0; y < kHeight; ++y) EXPECT_EQ(picture_.Pixel(3, y), kColour);
  EXPECT_EQ(picture_.Pixel(4, 3), 0u);
}

TEST_F(Lines, FromTheEndsOfTheNumbersReturn) {
  Draw(kMin, kMin, kMax, kMax);
  Draw(kMax, kMin, kMin, kMax);
  Draw(kMin, 1, kMax, 1);
  Draw(2, kMax, 2, kMin);
  EXPECT_EQ(picture_.Pixel(0, 1), kColour);
  EXPECT_EQ(picture_.Pixel(2, 0), kColour);
}

TEST_F(Lines, NeedAContext) {
  EXPECT_FALSE(MoveToEx(nullptr, 0, 0));
  EXPECT_FALSE(LineTo(nullptr, 5, 5));
}

bool OnEdge(const RECT& rect, Long x, Long y) {
  return Contains(rect, x, y) &&
         (x == rect.left || x == rect.right - 1 || y == rect.top || y == rect.bottom - 1);
}

TEST(DrawFocusRect, InvertsTheEdgesPixelsWhoseCoordinatesHaveAnOddSum) {
  std::mt19937 random(2);
  TestPicture picture(kWidth, kHeight);
  for (int round = 0; round < 200; ++round) {
    picture.FillRandomly(random);
    std::vector<COLORREF> expected = picture.Colours();
    const auto near = [&random] { return static_cast<Long>(random() % 32) - 4; };
    const RECT rect = {near(), near(), near(), near()};
    auto pixel = expected.begin();
    for (Long y = 0; y < kHeight; ++y)
      for (Long x = 0; x < kWidth; ++x, ++pixel)
        if (OnEdge(rect, x, y) && (x + y) % 2 != 0) *pixel ^= 0xFFFFFF;
    EXPECT_TRUE(DrawFocusRect(picture.Context(), rect));
    ASSERT_EQ(picture.Colours(), expected)
        << rect.left << "," << rect.top << "," << rect.right << "," << rect.bottom;
  }
}

TEST(DrawFocusRect, TwiceLeavesNoTrace) {
  std::mt19937 random(3);
  TestPicture picture(kWidth, kHeight);
  picture.FillRandomly(random);
  const std::vector<COLORREF> before = picture.Colours();
  DrawFocusRect(picture.Context(), {2, 1, 15, 12});
  EXPECT_NE(picture.Colours(), before);
  DrawFocusRect(picture.Context(), {2, 1, 15, 12});
  EXPECT_EQ(picture.Colours(), before);
}

TEST(DrawFocusRect, ReachesToTheEndsOfTheNumbers) {
  TestPicture picture(kWidth, kHeight);
  EXPECT_TRUE(DrawFocusRect(picture.Context(), {kMin, 3, kMax, 6}));
  EXPECT_EQ(picture.Pixel(0, 3), 0xFFFFFFu);
  EXPECT_EQ(picture.Pixel(1, 3), 0u);
  EXPECT_EQ(picture.Pixel(0, 4), 0u);
  EXPECT_EQ(picture.Pixel(0, 5), 0xFFFFFFu);
}

}  // namespace
}  // namespace marklet
