// TextOutW and ExtTextOutW: alignment, background, clip.
#include <limits>

#include "platform/test_picture.h"

namespace marklet {
namespace {

constexpr COLORREF kPaper = 0xFFFFFF;
constexpr Long kMin = std::numeric_limits<Long>::min(), kMax = std::numeric_limits<Long>::max();

class TextAtPoint : public testing::TestWithParam<int> {
 protected:
  TextAtPoint() {
    for (TestPicture* picture : {&picture_, &expected_}) {
      picture->LayOutPaper();
      SetTextColor(picture->Context(), 0x204080);
    }
    size_ = picture_.Extent(u"Total");
  }
  HDC Context() const { return picture_.Context(); }
  void ExpectTotalAt(Long x, Long y) {
    TextOutW(expected_.Context(), x, y, u"Total");
    EXPECT_NE(InkOf(expected_, kPaper), RECT{});
    EXPECT_EQ(picture_.Colours(), expected_.Colours());
  }

  // Draws "Total" with this and without; the ink without.
  RECT DrawWith(bool LOGFONTW::*style) {
    LOGFONTW record;
    record.lfHeight = -13;
    record.lfFaceName = u"Tahoma";
    record.*style = true;
    picture_.UseFont(record);
    TextOutW(Context(), 20, 10, u"Total");
    TextOutW(expected_.Context(), 20, 10, u"Total");
    return InkOf(expected_, kPaper);
  }
  // Whether one of the rows from `top` to before `bottom` is of ink as wide as "Total".
  bool HasBarBetween(Long top, Long bottom) const {
    for (Long y = top; y < bottom; ++y) {
      Long covered = 0;
      for (Long x = 20; x < 20 + size_.cx; ++x) covered += picture_.Pixel(x, y) == 0x204080;
      if (covered == size_.cx) return true;
    }
    return false;
  }

  TestPicture picture_{120, 60, GetParam()}, expected_{120, 60, GetParam()};
  SIZE size_;
};

INSTANTIATE_TEST_SUITE_P(Depths, TextAtPoint, testing::Values(24, 32));

TEST_P(TextAtPoint, StandsWithItsUpperLeftCornerThere) {
  EXPECT_TRUE(TextOutW(Context(), 20, 10, u"Total"));
  const RECT ink = InkOf(picture_, kPaper);
  EXPECT_GE(ink.left, 19);
  EXPECT_LE(ink.right, 20 + size_.cx + 1);
  EXPECT_GE(ink.top, 10);
  EXPECT_LE(ink.bottom, 10 + size_.cy);
}

TEST_P(TextAtPoint, EndsThereWhenAlignedRight) {
  EXPECT_EQ(SetTextAlign(Context(), TA_RIGHT), 0u);
  EXPECT_TRUE(TextOutW(Context(), 20 + size_.cx, 10, u"Total"));
  ExpectTotalAt(20, 10);
}

TEST_P(TextAtPoint, HasItsMiddleThereWhenCentred) {
  SetTextAlign(Context(), TA_CENTER);
  EXPECT_TRUE(TextOutW(Context(), 20 + size_.cx / 2, 10, u"Total"));
  ExpectTotalAt(20, 10);
}

TEST_P(TextAtPoint, StandsOnItWhenAlignedToTheBaseline) {
  EXPECT_TRUE(TextOutW(Context(), 20, 10, u"H"));
  const Long baseline = InkOf(picture_, kPaper).bottom;  // letters without descenders stand on it
  picture_.Fill(0xFF);
  SetTextAlign(Context(), TA_BASELINE);
  EXPECT_TRUE(TextOutW(Context(), 20, baseline, u"Total"));
  ExpectTotalAt(20, 10);
}

TEST_P(TextAtPoint, MovesItsPixelsWithIt) {
  EXPECT_TRUE(TextOutW(Context(), 20, 10, u"Total"));
  EXPECT_TRUE(TextOutW(expected_.Context(), 31, 17, u"Total"));
  for (Long y = 0; y < 40; ++y)
    for (Long x = 0; x < 100; ++x) ASSERT_EQ(picture_.Pixel(x, y), expected_.Pixel(x + 11, y + 7));
}

TEST_P(TextAtPoint, HasTheTextColourWhereItCovers) {
  picture_.UseTahoma(32);
  SetTextColor(Context(), 0x0000FF);
  TextOutW(Context(), 20, 10, u"HH");
  bool full = false;
  for (const COLORREF colour : picture_.Colours()) {
    EXPECT_EQ(RedOf(colour), 0xFFu);
    EXPECT_EQ(GreenOf(colour), BlueOf(colour));
    full |= colour == 0x0000FF;
  }
  EXPECT_TRUE(full);
}

TEST_P(TextAtPoint, StandsOnABoxInTheBackgroundColourInModeTwo) {
  SetBkMode(Context(), OPAQUE);
  SetBkColor(Context(), 0x00FF00);
  SetTextColor(Context(), 0x00FF00);
  const SIZE size = picture_.Extent(u"Hill");  // whose letters stay inside their widths
  TextOutW(Context(), 20, 10, u"Hill");
  EXPECT_EQ(InkOf(picture_, kPaper), (RECT{20, 10, 20 + size.cx, 10 + size.cy}));
}

TEST_P(TextAtPoint, StandsOnNoBoxInModeZero) {
  SetBkMode(Context(), OPAQUE);
  SetBkColor(Context(), 0x00FF00);
  SetBkMode(Context(), 0);
  EXPECT_TRUE(TextOutW(Context(), 20, 10, u"Total"));
  ExpectTotalAt(20, 10);
}

TEST_P(TextAtPoint, IsCutAtTheEdgesOfThePicture) {
  for (const Long x : {-10, -3, 100, 118})
    for (const Long y : {-9, -2, 50, 58}) EXPECT_TRUE(TextOutW(Context(), x, y, u"Total"));
  // A piece of the same text on a larger picture.
  TestPicture larger(320, 260, GetParam());
  larger.LayOutPaper();
  SetTextColor(larger.Context(), 0x204080);
  for (const Long x : {-10, -3, 100, 118})
    for (const Long y : {-9, -2, 50, 58}) TextOutW(larger.Context(), 100 + x, 100 + y, u"Total");
  for (Long y = 0; y < 60; ++y)
    for (Long x = 0; x < 120; ++x) ASSERT_EQ(picture_.Pixel(x, y), larger.Pixel(x + 100, y + 100));
}

TEST_P(TextAtPoint, IsClippedToTheRectangleWithOptionFour) {
  const RECT clip = {25, 13, 33, 19};
  EXPECT_TRUE(ExtTextOutW(Context(), 20, 10, 4, &clip, u"Total"));
  TextOutW(expected_.Context(), 20, 10, u"Total");
  for (Long y = 0; y < 60; ++y)
    for (Long x = 0; x < 120; ++x) {
      const bool inside = x >= clip.left && x < clip.right && y >= clip.top && y < clip.bottom;
      ASSERT_EQ(picture_.Pixel(x, y), inside ? expected_.Pixel(x, y) : kPaper) << x << "," << y;
    }
}

TEST_P(TextAtPoint, FillsTheRectangleFirstWithOptionTwo) {
  SetBkColor(Context(), 0x00FF00);
  SetTextColor(Context(), 0x00FF00);
  const RECT box = {5, 6, 80, 40};
  EXPECT_TRUE(ExtTextOutW(Context(), 20, 10, 2, &box, u"Total"));
  EXPECT_EQ(InkOf(picture_, kPaper), box);
}

TEST_P(TextAtPoint, IgnoresARectangleWithoutOptions) {
  const RECT box = {90, 50, 91, 51};
  EXPECT_TRUE(ExtTextOutW(Context(), 20, 10, 0, &box, u"Total"));
  ExpectTotalAt(20, 10);
}

TEST_P(TextAtPoint, FarAwayLeavesNothing) {
  for (const Long x : {kMin, kMin / 2, kMax / 2, kMax})
    for (const Long y : {kMin, 10, kMax}) TextOutW(Context(), x, y, u"Total");
  EXPECT_EQ(InkOf(picture_, kPaper), RECT{});
}

TEST_P(TextAtPoint, LeavesTheContextsModesAlone) {
  TextOutW(Context(), 20, 10, u"Total");
  EXPECT_EQ(GetTextColor(Context()), 0x204080u);
  EXPECT_EQ(SetTextAlign(Context(), 0), 0u);
  EXPECT_EQ(SetBkMode(Context(), TRANSPARENT), 1);
}

TEST_P(TextAtPoint, UnderlinedHasABarBelowTheBaseline) {
  const RECT letters = DrawWith(&LOGFONTW::lfUnderline);
  EXPECT_TRUE(HasBarBetween(letters.bottom, 10 + size_.cy));
}

TEST_P(TextAtPoint, StruckOutHasABarThroughItsLetters) {
  const RECT letters = DrawWith(&LOGFONTW::lfStrikeOut);
  EXPECT_TRUE(HasBarBetween(letters.top + 1, letters.bottom));
}

}  // namespace
}  // namespace marklet
