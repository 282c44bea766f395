// Copies between rectangles of different sizes.
#include "platform/test_picture.h"

namespace marklet {
namespace {

constexpr int kAveraging = 4;

void Fill(const TestPicture& picture, const RECT& rect, COLORREF colour) {
  const ObjectRef brush(CreateSolidBrush(colour));
  FillRect(picture.Context(), rect, brush.get());
}

class StretchBltFrom : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(Depths, StretchBltFrom, testing::Values(24, 32));

TEST_P(StretchBltFrom, KeepsTheColoursOfPlainAreas) {
  for (const int depth : {24, 32}) {
    TestPicture from(8, 8, GetParam()), larger(40, 24, depth), smaller(2, 2, depth);
    Fill(from, {0, 0, 4, 8}, 0x0000FF);
    Fill(from, {4, 0, 8, 8}, 0xFF8000);
    for (const TestPicture* to : {&larger, &smaller}) {
      EXPECT_NE(SetStretchBltMode(to->Context(), kAveraging), 0);
      ASSERT_TRUE(
          StretchBlt(to->Context(), 0, 0, to->Width(), to->Height(), from.Context(), 0, 0, 8, 8, SRCCOPY));
      for (Long y = 0; y < to->Height(); ++y) {
        EXPECT_EQ(to->Pixel(0, y), 0x0000FFu);
        EXPECT_EQ(to->Pixel(to->Width() - 1, y), 0xFF8000u);
      }
    }
  }
}

TEST_P(StretchBltFrom, TakesAPartAndGoesToItsPlace) {
  TestPicture from(8, 8, GetParam()), to(10, 10);
  Fill(from, {0, 0, 8, 8}, 0x00FF00);
  Fill(from, {2, 3, 4, 6}, 0x0000FF);
  ASSERT_TRUE(StretchBlt(to.Context(), 3, 2, 6, 9, from.Context(), 2, 3, 2, 3, SRCCOPY));
  for (Long y = 0; y < 10; ++y)
    for (Long x = 0; x < 10; ++x)
      EXPECT_EQ(to.Pixel(x, y), x >= 3 && x < 9 && y >= 2 ? 0x0000FFu : 0u) << x << ',' << y;
}

TEST_P(StretchBltFrom, CombinesAsTheOperationSays) {
  TestPicture from(2, 2, GetParam()), to(4, 4);
  Fill(from, {0, 0, 2, 2}, 0x0FF055);
  Fill(to, {0, 0, 4, 4}, 0x3C3C3C);
  ASSERT_TRUE(StretchBlt(to.Context(), 0, 0, 4, 4, from.Context(), 0, 0, 2, 2, SRCINVERT));
  EXPECT_EQ(to.Pixel(3, 3), 0x33CC69u);
  ASSERT_TRUE(StretchBlt(to.Context(), 0, 0, 4, 4, from.Context(), 0, 0, 2, 2, SRCAND));
  EXPECT_EQ(to.Pixel(3, 3), 0x03C041u);
}

TEST(StretchBlt, LeavesOutWhatLiesOutsideTheDestination) {
  TestPicture from(2, 2), to(4, 4);
  from.Fill(0xFF);
  EXPECT_TRUE(StretchBlt(to.Context(), -6, 3, 8, 8, from.Context(), 0, 0, 2, 2, SRCCOPY));
  EXPECT_EQ(InkOf(to, 0), (RECT{0, 3, 2, 4}));
}

TEST(StretchBlt, OfANegativeSizeDrawsNothing) {
  TestPicture from(4, 4), to(4, 4);
  from.Fill(0xFF);
  EXPECT_FALSE(StretchBlt(to.Context(), 3, 0, -4, 4, from.Context(), 0, 0, 4, 4, SRCCOPY));
  EXPECT_FALSE(StretchBlt(to.Context(), 0, 0, 4, 4, from.Context(), 0, 3, 4, -4, SRCCOPY));
  EXPECT_FALSE(StretchBlt(to.Context(), 0, 0, 4, 4, from.Context(), -1, 0, 4, 4, SRCCOPY));
  EXPECT_TRUE(StretchBlt(to.Context(), 0, 0, 0, 4, from.Context(), 0, 0, 4, 4, SRCCOPY));
  EXPECT_TRUE(StretchBlt(to.Context(), 0, 0, 4, 4, from.Context(), 0, 0, 0, 4, SRCCOPY));
  EXPECT_EQ(InkOf(to, 0), RECT{});
}

TEST(StretchBlt, NeedsTwoContexts) {
  TestPicture picture(4, 4);
  EXPECT_FALSE(StretchBlt(nullptr, 0, 0, 4, 4, picture.Context(), 0, 0, 4, 4, SRCCOPY));
  EXPECT_FALSE(StretchBlt(picture.Context(), 0, 0, 4, 4, nullptr, 0, 0, 4, 4, SRCCOPY));
  EXPECT_EQ(SetStretchBltMode(nullptr, kAveraging), 0);
}

TEST(SetStretchBltMode, ReturnsTheFormerMode) {
  TestPicture picture(1, 1);
  EXPECT_EQ(SetStretchBltMode(picture.Context(), kAveraging), 1);
  EXPECT_EQ(SetStretchBltMode(picture.Context(), 1), kAveraging);
}

}  // namespace
}  // namespace marklet
