// Where the tokens of a caption are placed.
#include <gtest/gtest.h>

#include <string>

#include "markup/markup_caption_fixture.h"

namespace marklet {
namespace {

// --- Lines ---

TEST_F(MarkupCaption, HonoursAParagraphAtTheVeryStart) {
  rect_ = {5, 20, 400, 300};
  Draw(u"<p>x");
  ASSERT_EQ(runs_.size(), 1u);
  EXPECT_EQ(runs_[0].rect.top, 20 + ParagraphStep());
}

TEST_F(MarkupCaption, MovesDownByAParagraphAndALine) {
  Draw(u"a<.>b<p>c");
  ASSERT_EQ(runs_.size(), 3u);
  EXPECT_EQ(runs_[1].rect.top, LineStep());
  EXPECT_EQ(runs_[2].rect.top, LineStep() + ParagraphStep());
}

TEST_F(MarkupCaption, MeasuresALineAndAParagraphInTheFontInForce) {
  Draw(u"<sup><p>a<.>b");
  ASSERT_EQ(runs_.size(), 2u);
  EXPECT_EQ(runs_[0].rect.top, Height(u" ", 6) + LineStep(6));
  EXPECT_EQ(runs_[1].rect.top, Height(u" ", 6) + 2 * LineStep(6));
  ASSERT_GE(Lines("GetTextExtentPoint32W").size(), 3u);
  EXPECT_EQ(Lines("GetTextExtentPoint32W")[1], "GetTextExtentPoint32W(\" \")");
  EXPECT_EQ(Lines("GetTextExtentPoint32W")[2], "GetTextExtentPoint32W(\"\u00C5y\")");
}

TEST_F(MarkupCaption, ReturnsToZeroBeforeTheFirstWrapAndToTheLeftAfterIt) {
  rect_ = {30, 0, 400, 300};
  Draw(u"a<.>b<p>c");
  ASSERT_EQ(runs_.size(), 3u);
  EXPECT_EQ(runs_[0].rect.left, 30);
  EXPECT_EQ(runs_[1].rect.left, 0);
  EXPECT_EQ(runs_[2].rect.left, 0);

  rect_.right = 30 + 40;
  Draw(u"a<.>wwwwwwwwwwwwwwwwwwww<.>c");
  ASSERT_EQ(runs_.size(), 3u);
  EXPECT_EQ(runs_[1].rect.left, 30) << "wrapped";
  EXPECT_EQ(runs_[2].rect.left, 30);
}

TEST_F(MarkupCaption, PlacesTokensOneAfterTheOther) {
  rect_ = {3, 4, 390, 300};
  Draw(u"<b></b>one two");
  ASSERT_EQ(runs_.size(), 2u);
  EXPECT_EQ(runs_[0].text, "one ");
  EXPECT_EQ(runs_[0].rect, (RECT{3, 4, 390, 4 + Height(u"one ") + 3}));
  EXPECT_EQ(runs_[1].rect, (RECT{3 + Width(u"one "), 4, 390, 4 + Height(u"two") + 3}));
}

TEST_F(MarkupCaption, WrapsAWordOfExactlyTheRemainingWidth) {
  const Long both = Width(u"one ") + Width(u"two");
  rect_.right = both;
  Draw(u"<b></b>one two");
  ASSERT_EQ(runs_.size(), 2u);
  EXPECT_EQ(runs_[1].rect.left, 0);
  EXPECT_EQ(runs_[1].rect.top, Height(u"two"));

  rect_.right = both + 1;
  Draw(u"<b></b>one two");
  ASSERT_EQ(runs_.size(), 2u);
  EXPECT_EQ(runs_[1].rect.left, Width(u"one "));
  EXPECT_EQ(runs_[1].rect.top, 0);
}

TEST_F(MarkupCaption, WrapsEarlyByItsLeftEdge) {
  const Long both = Width(u"one ") + Width(u"two");
  rect_ = {20, 0, 20 + both + 1, 300};  // room for both, counted from its own left
  Draw(u"<b></b>one two");
  ASSERT_EQ(runs_.size(), 2u);
  EXPECT_EQ(runs_[1].rect.left, 20);
  EXPECT_EQ(runs_[1].rect.top, Height(u"two"));
}

TEST_F(MarkupCaption, HandsAWordThatIsTooWideOverWholeOnALineOfItsOwn) {
  rect_ = {2, 0, 42, 300};
  Draw(u"<b></b>a wwwwwwwwwwwwwwww b");
  ASSERT_EQ(runs_.size(), 3u);
  EXPECT_EQ(runs_[1].text, "wwwwwwwwwwwwwwww ");
  EXPECT_EQ(runs_[1].rect, (RECT{2, Height(u"w"), 42, 2 * Height(u"w") + 3}));
  EXPECT_EQ(runs_[2].rect.top, 2 * Height(u"w"));
}

TEST_F(MarkupCaption, StepsDownByTheHeightOfTheTokenThatWraps) {
  rect_.right = 40;
  Draw(u"<b></b>wwwwww <sup>wwwwwwwwww</sup>wwwwww");
  ASSERT_EQ(runs_.size(), 3u);
  EXPECT_EQ(runs_[0].rect.top, Height(u"w"));
  EXPECT_EQ(runs_[1].rect.top, Height(u"w") + Height(u"w", 6));
  EXPECT_EQ(runs_[2].rect.top, 2 * Height(u"w") + Height(u"w", 6));
}

TEST_F(MarkupCaption, KeepsDrawingBelowItsRectangle) {
  rect_.bottom = 10;
  Draw(u"a<p>b<p>c<p>d");
  ASSERT_EQ(runs_.size(), 4u);
  EXPECT_GT(runs_[3].rect.top, rect_.bottom);
}

TEST_F(MarkupCaption, MakesNoLineBreakOfLineEnds) {
  Draw(u"<b></b>a\r\nb");
  ASSERT_EQ(runs_.size(), 3u);
  for (const DrawnRun& run : runs_) EXPECT_EQ(run.rect.top, 0);
  EXPECT_EQ(runs_[0].text, "a\\u000D");
  EXPECT_EQ(runs_[1].text, "\\u000A");
}

TEST_F(MarkupCaption, HandsMarksAndEntitiesOverAsTheyStand) {
  EXPECT_EQ(TextsOf(u"<b></b>&a &amp; &&"), (Strings{"&a ", "&amp; ", "&&"}));
}

TEST_F(MarkupCaption, IgnoresWordWrapVerticalAndMostHorizontalAlignment) {
  rect_ = {10, 20, 60, 300};
  const auto plain = Draw(u"<b></b>one two three four");
  for (const Long alignment : {2, 3, 77}) {
    for (const Long vertical : {2, 3}) {
      style_.Alignment = alignment;
      style_.VerticalAlignment = vertical;
      style_.SingleLine = vertical == 2;
      Draw(u"<b></b>one two three four");
      ASSERT_EQ(runs_.size(), plain.size());
      for (std::size_t at = 0; at < runs_.size(); ++at) {
        EXPECT_EQ(runs_[at].rect, plain[at].rect);
        EXPECT_EQ(runs_[at].flags, plain[at].flags);
      }
    }
  }
}

TEST_F(MarkupCaption, GivesEachRightJustifiedTokenALineAtTheRightEdge) {
  rect_ = {10, 5, 200, 300};
  style_.Alignment = 1;
  Draw(u"<b></b>one two");
  ASSERT_EQ(runs_.size(), 2u);
  const Long height = Height(u"one");
  for (std::size_t at = 0; at < 2; ++at) {
    const Long top = 5 + (static_cast<Long>(at) + 1) * height;
    EXPECT_EQ(runs_[at].rect, (RECT{200, top, 200, top + height + 3})) << at;
    EXPECT_EQ(runs_[at].flags, kRunFlags);
  }
}

TEST_F(MarkupCaption, OutlinesEachRightJustifiedLineInRed) {
  rect_ = {10, 5, 200, 300};
  style_.Alignment = 1;
  Draw(u"<b></b>one two");
  const Long height = Height(u"one");
  EXPECT_EQ(Lines("CreatePen"), (std::vector<std::string>(2, "CreatePen(1,#FF0000)")));
  // From the lower left corner up, across, down and back; as wide as the right edge is far and as high as an
  // empty string, so that the lower edge runs above the upper one.
  std::vector<std::string> expected;
  for (const Long y : {5, 5 + height}) {
    const auto point = [](const char* call, Long x, Long at) {
      return std::string(call) + "(" + std::to_string(x) + "," + std::to_string(at) + ")";
    };
    expected.push_back(point("MoveToEx", 200, y - 1));
    expected.push_back(point("LineTo", 200, y));
    expected.push_back(point("LineTo", 399, y));
    expected.push_back(point("LineTo", 399, y - 1));
    expected.push_back(point("LineTo", 200, y - 1));
  }
  std::vector<std::string> drawn;
  for (const std::string& line : lines_)
    if (line.starts_with("MoveToEx(") || line.starts_with("LineTo(")) drawn.push_back(line);
  EXPECT_EQ(drawn, expected);
}

TEST_F(MarkupCaption, ReturnsToTheRightEdgeWithABreakTagWhenRightJustified) {
  rect_ = {10, 5, 200, 300};
  style_.Alignment = 1;
  Draw(u"<.>x");
  ASSERT_EQ(runs_.size(), 1u);
  EXPECT_EQ(runs_[0].rect.left, 200);
  EXPECT_EQ(runs_[0].rect.top, 5 + LineStep() + Height(u"x"));
}

TEST_F(MarkupCaption, FindsTheRightEdgeByTheSystemsOwnMeasure) {
  style_.Alignment = 1;
  Draw(u"<b></b>");
  EXPECT_EQ(Lines("GetTextExtentPoint32W").front(), "GetTextExtentPoint32W(\"\")");
  const PlayedSystem bytes(generation::kWindows95);
  Draw(u"<b></b>");
  EXPECT_EQ(Lines("GetTextExtentPoint32A"), std::vector<std::string>{"GetTextExtentPoint32A(\"\",0)"});
}

TEST_F(MarkupCaption, KeepsReadingRightToLeftInItsRuns) {
  style_.RightToLeft = true;
  Draw(u"<b></b>x");
  ASSERT_EQ(runs_.size(), 1u);
  EXPECT_EQ(runs_[0].flags, kRunFlags | DT_RIGHT | DT_RTLREADING);
}

// --- Tabs ---

TEST_F(MarkupCaption, AdvancesByTwoWidthsForATabOfItsOwn) {
  Draw(u"<b></b>\tx");
  ASSERT_EQ(runs_.size(), 1u);
  EXPECT_EQ(runs_[0].text, "x");
  EXPECT_EQ(runs_[0].rect.left, Width(u"WW"));
}

TEST_F(MarkupCaption, MeasuresATabInTheFontInForce) {
  Draw(u"<b></b><sup>\tx");
  ASSERT_EQ(runs_.size(), 1u);
  EXPECT_EQ(runs_[0].rect.left, Width(u"WW", 6));
}

TEST_F(MarkupCaption, HandsATabThatLeadsAWordOverWithoutShaping) {
  const PlayedSystem without_shaping(generation::kNT4);
  Draw(u"<b></b>a\tx");
  ASSERT_EQ(runs_.size(), 2u);
  EXPECT_EQ(runs_[1].text, "\\u0009x");
  EXPECT_EQ(runs_[1].rect.left, Width(u"a"));
}

TEST_F(MarkupCaption, HandsATabGluedToAWordOver) {
  Draw(u"<b></b>a\tx");
  ASSERT_EQ(runs_.size(), 2u);
  EXPECT_EQ(runs_[0].text, "a\\u0009");
  EXPECT_EQ(runs_[1].rect.left, Width(u"a\t"));
}

}  // namespace
}  // namespace marklet
