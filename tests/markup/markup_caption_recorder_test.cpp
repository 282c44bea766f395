// What a caption does to its surroundings, with switches and sizes, and when calls fail.
#include <gtest/gtest.h>

#include <string>

#include "markup/markup_caption_fixture.h"

namespace marklet {
namespace {

// --- The way in ---

TEST_F(MarkupCaption, DrawsNothingWhenEmpty) {
  Draw(u"");
  EXPECT_TRUE(lines_.empty());
}

TEST_F(MarkupCaption, HandsACaptionWithoutMarkupOverWhole) {
  rect_ = {7, 8, 90, 50};
  style_.Alignment = 2;
  style_.SingleLine = false;
  Draw(u"one two</b> <a>three</a>");
  ASSERT_EQ(runs_.size(), 1u);
  EXPECT_EQ(runs_[0].text, "one two</b> <a>three</a>");
  EXPECT_EQ(runs_[0].rect, rect_);
  EXPECT_EQ(runs_[0].flags, 0x40011u) << "centred, wrapped, word ellipsis";
  EXPECT_TRUE(Lines("SelectObject").empty());
}

TEST_F(MarkupCaption, WithoutMarkupChangesTheCallersStyleAndRectangle) {
  const PlayedSystem xp(generation::kXP);
  style_.Alignment = 3;
  style_.VerticalAlignment = 3;
  RECT rect = rect_;
  DrawMarkupCaption(canvas_.dc(), u"plain", rect, style_);
  EXPECT_EQ(style_.TextHeight, Height(u"plain"));
  EXPECT_EQ(rect.top, rect_.bottom - style_.TextHeight) << "the shaping route moves it";
}

TEST_F(MarkupCaption, LeavesTheStyleAndTheFontOfTheCallerAlone) {
  Draw(u"<b><i><c=FF0000><f=Arial>x<sub>y");
  EXPECT_EQ(style_.ForeColor, MakeRgb(0x11, 0x22, 0x33));
  EXPECT_EQ(style_.TextHeight, 0);
  EXPECT_EQ(style_.Font->Name(), u"Tahoma");
  EXPECT_EQ(style_.Font->Size(), 10);
  EXPECT_FALSE(style_.Font->Bold());
}

TEST_F(MarkupCaption, LeavesTheLastFontSelected) {
  Draw(u"x<b>");
  StdFont bold = *FontOf(10);
  bold.PutBold(true);
  ASSERT_FALSE(Lines("SelectObject").empty());
  EXPECT_EQ(Lines("SelectObject").back(), "SelectObject(" + FontLine(bold) + ")");
}

TEST_F(MarkupCaption, MakesTheCallsOfAWordInTheirOrder) {
  Draw(u"<b>word");
  const std::string font = FontLine(*FontOf(10)), small = FontLine(*FontOf(6));
  StdFont bold = *FontOf(10);
  bold.PutBold(true);
  const RECT run = runs_.at(0).rect;
  const std::string place = "[" + std::to_string(run.left) + "," + std::to_string(run.top) + "," +
                            std::to_string(run.right) + "," + std::to_string(run.bottom) + "]";
  EXPECT_EQ(lines_,
            (std::vector<std::string>{
                "SelectObject(" + small + ")", "GetTextExtentPoint32W(\"Ab\")", "SelectObject(" + font + ")",
                "SelectObject(" + FontLine(bold) + ")", "GetTextExtentPoint32W(\"word\")",
                "GetCharABCWidthsA(119)", "GetCharABCWidthsA(100)", "SetBkMode(0)", "SetTextColor(#112233)",
                "GetTextExtentPoint32A(\"word\",4)", "DrawTextW(\"word\"," + place + ",0x40020)"}));
}

// --- Switches ---

TEST_F(MarkupCaption, TurnsBoldOffOnABoldFont) {
  style_.Font->PutBold(true);
  Draw(u"<b>x</b>y");
  ASSERT_EQ(runs_.size(), 2u);
  StdFont regular = *style_.Font;
  regular.PutBold(false);
  EXPECT_EQ(runs_[0].font, FontLine(regular));
  EXPECT_EQ(runs_[1].font, FontLine(*style_.Font));
}

TEST_F(MarkupCaption, TurnsBoldOnWithACloserAlone) {
  Draw(u"<p></b>x");
  StdFont bold = *style_.Font;
  bold.PutBold(true);
  ASSERT_EQ(runs_.size(), 1u);
  EXPECT_EQ(runs_[0].font, FontLine(bold));
}

TEST_F(MarkupCaption, SwitchesItalicUnderlineAndStrikeOutOverWithEitherForm) {
  Draw(u"<i>1<u>2<s>3<i>4</u>5</s>6</i>7<u>8");
  const char* expected[] = {"i", "iu", "iuk", "uk", "k", "", "i", "iu"};
  ASSERT_EQ(runs_.size(), std::size(expected));
  for (std::size_t at = 0; at < runs_.size(); ++at) {
    EXPECT_EQ(runs_[at].font, "font(\"Tahoma\",-13,400,\"" + std::string(expected[at]) + "\")") << at;
  }
}

TEST_F(MarkupCaption, TakesTagsWithRegardToCase) {
  Draw(u"<b></b><B>x");
  ASSERT_EQ(runs_.size(), 2u);
  EXPECT_EQ(runs_[0].text, "<B>");
  EXPECT_EQ(runs_[0].font, FontLine(*FontOf(10)));
}

TEST_F(MarkupCaption, TakesForATagOnlyWhatIsOneToTheLetter) {
  using namespace std::string_view_literals;
  for (const std::u16string_view word :
       {u"<\0b>"sv, u"<b\0>"sv, u"<\u0001sub>"sv, u"<subs>"sv, u"<bb>"sv, u"b>"sv, u">"sv, u"</>"sv}) {
    Draw(u"<b></b>" + std::u16string(word) + u"<u></u>x");
    ASSERT_FALSE(runs_.empty());
    for (const DrawnRun& run : runs_) EXPECT_EQ(run.font, FontLine(*FontOf(10)));
    EXPECT_EQ(runs_.back().text, "x") << testing::PrintToString(std::u16string(word));
  }
}

TEST_F(MarkupCaption, PrintsTheBreakTag) {
  Draw(u"a<br>b");
  ASSERT_EQ(runs_.size(), 1u);
  EXPECT_EQ(runs_[0].text, "a<br>b");
}

// --- Size ---

TEST_F(MarkupCaption, DrawsAFractionalSizeRoundedOnlyWithMarkup) {
  Configuration().pixels_per_inch = 192;  // so that a quarter of a point shows
  style_.Font->PutSize(8.25);
  SelectObject(canvas_.dc(), style_.Font->hFont());
  Draw(u"<b></b>x");
  ASSERT_EQ(runs_.size(), 1u);
  EXPECT_EQ(runs_[0].font, "font(\"Tahoma\",-21,400,\"\")") << "8 points";
  Draw(u"x");
  ASSERT_EQ(runs_.size(), 1u);
  EXPECT_EQ(runs_[0].font, "") << "the caller's, of 8.25 points";
}

TEST_F(MarkupCaption, RoundsHalfSizesToEven) {
  for (const auto& [points, pixels] : {std::pair{8.5, 11}, {9.5, 13}, {10.5, 13}, {11.5, 16}}) {
    style_.Font = FontOf(points);
    Draw(u"<b></b>x");
    ASSERT_EQ(runs_.size(), 1u);
    EXPECT_EQ(runs_[0].font, "font(\"Tahoma\",-" + std::to_string(pixels) + ",400,\"\")") << points;
  }
}

TEST_F(MarkupCaption, ShrinksByTheRoundedSizeButFromTheUnrounded) {
  Configuration().pixels_per_inch = 720;  // ten pixels a point
  // The first selection is that of the sentinel, which sees the caption's own size.
  for (const auto& [points, pixels] : {std::pair{8.0, 56},
                                       {9.0, 63},
                                       {9.4, 66},
                                       {9.5, 57},
                                       {10.0, 60},
                                       {12.0, 72},
                                       {12.4, 74},
                                       {12.6, 63},
                                       {13.0, 65},
                                       {20.0, 100}}) {
    style_.Font = FontOf(points);
    Draw(u"<b>");
    ASSERT_FALSE(Lines("SelectObject").empty());
    EXPECT_EQ(Lines("SelectObject")[0],
              "SelectObject(font(\"Tahoma\",-" + std::to_string(pixels) + ",400,\"\"))")
        << points;
  }
}

TEST_F(MarkupCaption, DropsASubscriptByAThirdOfItsHeight) {
  Draw(u"<b></b>a<sub>b</sub>c");
  ASSERT_EQ(runs_.size(), 3u);
  EXPECT_EQ(runs_[0].rect.top, 0);
  EXPECT_EQ(runs_[1].rect.top, Height(u"Ab", 6) / 3);
  EXPECT_GT(runs_[1].rect.top, 0);
  EXPECT_EQ(runs_[1].font, FontLine(*FontOf(6)));
  EXPECT_EQ(runs_[1].flags, kRunFlags | DT_BOTTOM);
  EXPECT_EQ(runs_[1].rect.bottom, runs_[1].rect.top + Height(u"b", 6) + 3);
  EXPECT_EQ(runs_[2].rect.top, 0);
  EXPECT_EQ(runs_[2].font, FontLine(*FontOf(10)));
  EXPECT_EQ(runs_[2].flags, kRunFlags);
}

TEST_F(MarkupCaption, DrawsASuperscriptSmallAtTheTopOfTheLine) {
  Draw(u"<b></b>a<sup>b</sup>");
  ASSERT_EQ(runs_.size(), 2u);
  EXPECT_EQ(runs_[1].rect.top, 0);
  EXPECT_EQ(runs_[1].font, FontLine(*FontOf(6)));
  EXPECT_EQ(runs_[1].flags, kRunFlags);
}

TEST_F(MarkupCaption, IgnoresASubscriptInsideASuperscript) {
  Draw(u"<b></b><sup>x<sub>y</sub>z</sup>w");
  ASSERT_EQ(runs_.size(), 4u);
  EXPECT_EQ(runs_[1].font, FontLine(*FontOf(6)));
  EXPECT_EQ(runs_[1].rect.top, 0);
  EXPECT_EQ(runs_[1].flags, kRunFlags);
  EXPECT_EQ(runs_[2].font, FontLine(*FontOf(10)));
  EXPECT_EQ(runs_[3].font, FontLine(*FontOf(10)));
}

TEST_F(MarkupCaption, KeepsTheDropOfASubscriptThatASuperscriptCloses) {
  Draw(u"<b></b><sub>x</sup>y</sub>z");
  ASSERT_EQ(runs_.size(), 3u);
  EXPECT_EQ(runs_[1].font, FontLine(*FontOf(10)));
  EXPECT_EQ(runs_[1].rect.top, Height(u"Ab", 6) / 3);
  EXPECT_EQ(runs_[1].flags, kRunFlags | DT_BOTTOM);
  EXPECT_EQ(runs_[2].rect.top, runs_[1].rect.top) << "the closer finds no level open and does nothing";
}

// --- Failing calls ---

TEST_F(MarkupCaption, SkipsAFailedMeasureAndGoesOn) {
  Recorder recorder;
  recorder.Fail("GetTextExtentPoint32W");
  DrawRecorded(u"<b></b>one two", recorder);
  ASSERT_EQ(runs_.size(), 2u);
  EXPECT_EQ(runs_[1].rect, (RECT{0, 0, 400, 3}));
}

TEST_F(MarkupCaption, SkipsARunThatFailsAndMovesThePenAllTheSame) {
  const PlayedSystem xp(generation::kXP);
  Recorder recorder;
  recorder.Fail("ScriptIsComplex", 1);
  DrawRecorded(u"<b></b>one two three", recorder);
  ASSERT_EQ(runs_.size(), 1u);
  EXPECT_EQ(Lines("SetTextColor").size(), 3u);
  recorder.FailNothing();
  recorder.Clear();
  DrawRecorded(u"<b></b>one two three", recorder);
  ASSERT_EQ(runs_.size(), 3u);
}

TEST_F(MarkupCaption, LeavesAPlainCaptionOutWhoseScriptTestFails) {
  const PlayedSystem xp(generation::kXP);
  Recorder recorder;
  recorder.Fail("ScriptIsComplex");
  EXPECT_NO_THROW(DrawRecorded(u"one", recorder));
  EXPECT_TRUE(runs_.empty());
  EXPECT_EQ(Lines("ScriptIsComplex").size(), 1u);
}

TEST_F(MarkupCaption, DrawsWithoutAFont) {
  style_.Font = nullptr;
  Draw(u"<b>x<sub>y</sub><f=Arial>z</f>");
  EXPECT_EQ(runs_.size(), 3u);
  EXPECT_TRUE(Lines("SelectObject").empty());
}

TEST_F(MarkupCaption, MeasuresTheTextHeightOnceForAllRuns) {
  Draw(u"<b></b>one <sup>two</sup> three");
  EXPECT_EQ(Lines("GetTextExtentPoint32A").size(), 1u);
}

}  // namespace
}  // namespace marklet
