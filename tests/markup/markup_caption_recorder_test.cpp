// Where the tokens of a caption are placed, and what its tags do to font, colour and pen.
#include "markup/markup_caption.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

#include "markup/canvas.h"
#include "markup/drawn_runs.h"
#include "markup/played_system.h"
#include "text/emit_text_run.h"

namespace marklet {
namespace {

constexpr unsigned kRunFlags = 0x40020;  // single line, word ellipsis

// A face with outlines, whose letters hang over when they lean.
FontRef FontOf(double points, bool italic = false) {
  auto font = std::make_shared<StdFont>();
  font->PutSize(points);
  font->PutItalic(italic);
  return font;
}

class MarkupCaption : public testing::Test {
 protected:
  MarkupCaption() {
    style_.Font = FontOf(10);
    style_.ForeColor = MakeRgb(0x11, 0x22, 0x33);
    style_.SingleLine = true;
    style_.SurfaceDC = canvas_.dc();
    SelectObject(canvas_.dc(), style_.Font->hFont());
  }

  const std::vector<DrawnRun>& Draw(std::u16string_view caption) {
    Recorder recorder;
    return DrawRecorded(caption, recorder);
  }

  const std::vector<DrawnRun>& DrawRecorded(std::u16string_view caption, Recorder& recorder) {
    RECT rect = rect_;
    DrawMarkupCaption(canvas_.dc(), caption, rect, style_);
    lines_ = recorder.Lines();
    runs_ = DrawnRuns(recorder);
    return runs_;
  }

  std::vector<std::string> Lines(std::string_view start) const {
    std::vector<std::string> found;
    for (const std::string& line : lines_)
      if (line.starts_with(start)) found.push_back(line);
    return found;
  }

  SIZE Measure(std::u16string_view text, double points = 10) const {
    return canvas_.Measure(*FontOf(points), text);
  }
  Long Width(std::u16string_view text, double points = 10) const { return Measure(text, points).cx; }
  Long Height(std::u16string_view text, double points = 10) const { return Measure(text, points).cy; }

  // The pen height after <.> and <p>.
  Long LineStep(double points = 10) const { return Height(u"\u00C5y", points); }
  Long ParagraphStep() const { return Height(u" ") + LineStep(); }

  static std::string FontLine(const StdFont& font) {
    const auto pixels = std::lround(font.Size() * 96 / 72);
    std::string name(font.Name().begin(), font.Name().end());
    return "font(\"" + name + "\",-" + std::to_string(pixels) + "," + std::to_string(font.Weight()) + ",\"" +
           (font.Italic() ? "i" : "") + (font.Underline() ? "u" : "") + (font.Strikethrough() ? "k" : "") +
           "\")";
  }

  const PlayedSystem system_{generation::kVista};
  Canvas canvas_{400, 300};
  RECT rect_ = {0, 0, 400, 300};
  CaptionStyle style_;
  std::vector<std::string> lines_;
  std::vector<DrawnRun> runs_;
};

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

TEST_F(MarkupCaption, PlacesTokensOneBehindTheOther) {
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
  Draw(u"<b></b>&a &amp; &&");
  ASSERT_EQ(runs_.size(), 3u);
  EXPECT_EQ(runs_[0].text, "&a ");
  EXPECT_EQ(runs_[1].text, "&amp; ");
  EXPECT_EQ(runs_[2].text, "&&");
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
  const Long empty = canvas_.Measure(*style_.Font, u"").cy, height = Height(u"one");
  EXPECT_EQ(Lines("CreatePen"), (std::vector<std::string>(2, "CreatePen(1,#FF0000)")));
  // From the lower left corner up, across, down and back; as wide as the right edge is far.
  std::vector<std::string> expected;
  for (const Long y : {5, 5 + height}) {
    const auto point = [](const char* call, Long x, Long at) {
      return std::string(call) + "(" + std::to_string(x) + "," + std::to_string(at) + ")";
    };
    expected.push_back(point("MoveToEx", 200, y + empty - 1));
    expected.push_back(point("LineTo", 200, y));
    expected.push_back(point("LineTo", 399, y));
    expected.push_back(point("LineTo", 399, y + empty - 1));
    expected.push_back(point("LineTo", 200, y + empty - 1));
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

// --- Overhang ---

class MarkupOverhang : public MarkupCaption {
 protected:
  MarkupOverhang() { style_.Font = FontOf(30); }
  StdFont Italic() const { return *FontOf(30, true); }
};

TEST_F(MarkupOverhang, IsAskedForOfWordsOfThreeCharactersAndMore) {
  Draw(u"<b></b>a ab abc");
  // "ab " has three, the blank included.
  EXPECT_EQ(Lines("GetCharABCWidthsA"),
            (std::vector<std::string>{"GetCharABCWidthsA(97)", "GetCharABCWidthsA(32)",
                                      "GetCharABCWidthsA(97)", "GetCharABCWidthsA(99)"}));
}

TEST_F(MarkupOverhang, IsAskedForOnceWhenTheFirstCharacterHasNone) {
  Recorder recorder;
  recorder.Fail("GetCharABCWidthsA");
  DrawRecorded(u"<b></b>abc", recorder);
  EXPECT_EQ(Lines("GetCharABCWidthsA"), std::vector<std::string>{"GetCharABCWidthsA(97)"});
}

TEST_F(MarkupOverhang, MovesThePenBeforeAnItalicTag) {
  const Long trail = canvas_.Trail(*FontOf(30), 'f');
  ASSERT_NE(trail, 0);
  Draw(u"<b></b>iff<i>x</i>y");
  ASSERT_EQ(runs_.size(), 3u);
  EXPECT_EQ(runs_[1].rect.left, Width(u"iff", 30) + trail);
}

TEST_F(MarkupOverhang, IsLeftOutBeforeAnotherTag) {
  ASSERT_NE(canvas_.Trail(*FontOf(30), 'f'), 0);
  for (const char16_t* caption : {u"<b></b>iff<u>x", u"<b></b>iff</i>x", u"<b></b>iff<I>x"}) {
    Draw(caption);
    ASSERT_GE(runs_.size(), 2u);
    EXPECT_EQ(runs_[1].rect.left, Width(u"iff", 30));
  }
}

TEST_F(MarkupOverhang, IsLeftOutWhenTheLastCharacterHasNone) {
  ASSERT_NE(canvas_.Trail(*FontOf(30), 'f'), 0);
  Recorder recorder;
  recorder.Fail("GetCharABCWidthsA", 1);
  DrawRecorded(u"<b></b>iff<i>x</i>y", recorder);
  EXPECT_EQ(Lines("GetCharABCWidthsA").size(), 2u);
  ASSERT_EQ(runs_.size(), 3u);
  EXPECT_EQ(runs_[1].rect.left, Width(u"iff", 30));
}

TEST_F(MarkupOverhang, IsAskedForByTheCodePagesCodes) {
  Draw(u"<b></b>\u00E9b\u20AC \u03A9bc");
  EXPECT_EQ(Lines("GetCharABCWidthsA"),
            (std::vector<std::string>{"GetCharABCWidthsA(233)", "GetCharABCWidthsA(32)",
                                      "GetCharABCWidthsA(63)", "GetCharABCWidthsA(99)"}))
      << "a question mark stands for what the code page lacks";
  Draw(u"<b></b>ab\u20AC");
  EXPECT_EQ(Lines("GetCharABCWidthsA").back(), "GetCharABCWidthsA(128)");
}

TEST_F(MarkupOverhang, MovesThePenBehindTheLastTokenButOneInsideItalic) {
  const StdFont italic = Italic();
  const Long trail = canvas_.Trail(italic, ' ');
  const Long trail_f = canvas_.Trail(italic, 'f');
  ASSERT_NE(trail_f, 0);
  Draw(u"<b></b><i>off x");
  ASSERT_EQ(runs_.size(), 2u);
  EXPECT_EQ(runs_[1].rect.left, canvas_.Measure(italic, u"off ").cx + trail);
  // The last but one is a word here, with no blank behind it.
  Draw(u"<b></b><i>off<x>");
  ASSERT_EQ(runs_.size(), 2u);
  EXPECT_EQ(runs_[1].rect.left, canvas_.Measure(italic, u"off").cx + trail_f);
}

TEST_F(MarkupOverhang, IsLeftOutInTheMiddleOfItalicText) {
  const StdFont italic = Italic();
  Draw(u"<b></b><i>off<x>y z");
  ASSERT_EQ(runs_.size(), 4u);
  EXPECT_EQ(runs_[1].rect.left, canvas_.Measure(italic, u"off").cx);
}

TEST_F(MarkupOverhang, OfAnEarlierWordCountsNearTheEnd) {
  const StdFont italic = Italic();
  const Long trail = canvas_.Trail(italic, 'f');
  ASSERT_NE(trail, 0);
  Draw(u"<b></b><i>off<x>y z");
  ASSERT_EQ(runs_.size(), 4u);
  // "<x>" is three characters long and ends in ">": that one's trail is the last one asked for.
  const Long last = canvas_.Trail(italic, '>');
  EXPECT_EQ(runs_[3].rect.left - runs_[2].rect.left, canvas_.Measure(italic, u"y ").cx + last);
}

TEST_F(MarkupOverhang, OfAnEarlierWordDoesNotCountBeforeAnItalicTag) {
  ASSERT_NE(canvas_.Trail(*FontOf(30), 'f'), 0);
  Draw(u"<b></b>iff<u></u>ab<i>x</i>y");
  ASSERT_EQ(runs_.size(), 4u);
  EXPECT_EQ(runs_[2].rect.left - runs_[1].rect.left, Width(u"ab", 30)) << "too short to have one of its own";
}

TEST_F(MarkupOverhang, IsLeftOutBehindTheItalicCloser) {
  ASSERT_NE(canvas_.Trail(*FontOf(30), 'f'), 0);
  Draw(u"<i>a</i>off<x>");
  ASSERT_EQ(runs_.size(), 3u);
  EXPECT_EQ(runs_[2].rect.left - runs_[1].rect.left, Width(u"off", 30));
}

TEST_F(MarkupOverhang, NeedsItalicToBeOpenedByItsTag) {
  style_.Font = FontOf(30, true);  // an italic font isn't enough
  Draw(u"<b></b>off<x>");
  ASSERT_EQ(runs_.size(), 2u);
  EXPECT_EQ(runs_[1].rect.left, canvas_.Measure(Italic(), u"off").cx);
}

// --- Colour ---

TEST_F(MarkupCaption, ColoursRunsUntilTheCloser) {
  Draw(u"a<c=FF8000>b</c>c");
  ASSERT_EQ(runs_.size(), 3u);
  EXPECT_EQ(runs_[0].colour, "#112233");
  EXPECT_EQ(runs_[1].colour, "#FF8000");
  EXPECT_EQ(runs_[2].colour, "#112233");
}

TEST_F(MarkupCaption, BringsBackTheContextsColourAndNotTheCaptions) {
  SetTextColor(canvas_.dc(), MakeRgb(1, 2, 3));
  Draw(u"<c=FF8000>b</c>c");
  ASSERT_EQ(runs_.size(), 2u);
  EXPECT_EQ(runs_[1].colour, "#010203");
}

TEST_F(MarkupCaption, GoesBackOneColourOnly) {
  Draw(u"a<c=FF0000>b<c=00FF00>c</c>d</c>e");
  ASSERT_EQ(runs_.size(), 5u);
  EXPECT_EQ(runs_[3].colour, "#FF0000");
  EXPECT_EQ(runs_[4].colour, "#FF0000");
}

TEST_F(MarkupCaption, TurnsBlackWithAColourCloserAlone) {
  Draw(u"<p>a</c>b");
  ASSERT_EQ(runs_.size(), 2u);
  EXPECT_EQ(runs_[0].colour, "#112233");
  EXPECT_EQ(runs_[1].colour, "#000000");
}

TEST_F(MarkupCaption, DrawsAColourTagAtTheVeryEnd) {
  for (const char16_t* caption : {u"a <c=FF0000>", u"<c=FF0000>", u"a<c=FF0000>", u"<b></b><c=FF0000>"}) {
    Draw(caption);
    ASSERT_FALSE(runs_.empty());
    EXPECT_TRUE(runs_.back().text.ends_with("<c=FF0000>"));
    EXPECT_EQ(runs_.back().colour, "#112233");
  }
  // Any other length has the shape of a tag and no such exception.
  for (const char16_t* caption : {u"<b></b><c=FF000>", u"<b></b><c=FF00000>"}) {
    Draw(caption);
    EXPECT_TRUE(runs_.empty());
  }
}

TEST_F(MarkupCaption, TakesAWordForAColourTagWhenItHasTheShape) {
  {
    const PlayedSystem without_shaping(generation::kNT4);
    Draw(u"<b></b><c=12> x");
    ASSERT_EQ(runs_.size(), 1u);
    EXPECT_EQ(runs_[0].text, " x");
    EXPECT_EQ(runs_[0].colour, "#120000");
  }
  Draw(u"<b></b><c=12> x");  // the blank is glued to it
  ASSERT_EQ(runs_.size(), 2u);
  EXPECT_EQ(runs_[0].text, "<c=12> ");
  EXPECT_EQ(runs_[0].colour, "#112233");
}

TEST_F(MarkupCaption, ReadsSixCharactersOfAColourHashIncluded) {
  const PlayedSystem without_shaping(generation::kNT4);
  Draw(u"<b></b><c=#123456> x");  // a word of eleven characters that looks like a tag
  ASSERT_EQ(runs_.size(), 1u);
  EXPECT_EQ(runs_[0].colour, "#123405");
}

TEST_F(MarkupCaption, DrawsALinkBlueAndUnderlined) {
  Draw(u"<b></b>a<a>b</a>c");
  ASSERT_EQ(runs_.size(), 3u);
  EXPECT_EQ(runs_[1].colour, "#0000FF");
  EXPECT_EQ(runs_[1].font, "font(\"Tahoma\",-13,400,\"u\")");
  EXPECT_EQ(runs_[2].colour, "#112233");
  EXPECT_EQ(runs_[2].font, "font(\"Tahoma\",-13,400,\"\")");
}

TEST_F(MarkupCaption, TurnsTheUnderlineOffWithALinkOnAnUnderlinedFont) {
  style_.Font->PutUnderline(true);
  Draw(u"<b></b><a>b</a>c");
  ASSERT_EQ(runs_.size(), 2u);
  EXPECT_EQ(runs_[0].font, "font(\"Tahoma\",-13,400,\"\")");
  EXPECT_EQ(runs_[1].font, "font(\"Tahoma\",-13,400,\"u\")");
}

TEST_F(MarkupCaption, SharesOneSavedColourBetweenLinkAndColour) {
  Draw(u"a<c=FF0000>b<a>c</c>d</a>e");
  ASSERT_EQ(runs_.size(), 5u);
  EXPECT_EQ(runs_[2].colour, "#0000FF");
  EXPECT_EQ(runs_[3].colour, "#FF0000") << "what the link saved";
  EXPECT_EQ(runs_[3].font, "font(\"Tahoma\",-13,400,\"u\")") << "and its underline stays";
  EXPECT_EQ(runs_[4].colour, "#FF0000");
}

TEST_F(MarkupCaption, OpensAndClosesALinkInThisOrder) {
  Draw(u"<b></b><a></a>");
  const auto link = std::find(lines_.begin(), lines_.end(), "SelectObject(font(\"Tahoma\",-13,400,\"u\"))");
  ASSERT_NE(link, lines_.end());
  EXPECT_EQ(std::vector<std::string>(link + 1, lines_.end()),
            (std::vector<std::string>{"GetTextColor()", "SetTextColor(#0000FF)", "GetTextColor()",
                                      "SelectObject(font(\"Tahoma\",-13,400,\"\"))", "SetTextColor(#000000)",
                                      "GetTextColor()"}));
}

// --- Font names ---

std::string Named(const std::string& name) { return "font(\"" + name + "\",-13,400,\"\")"; }

TEST_F(MarkupCaption, SetsAFontNameWithItsSpaces) {
  Draw(u"<f=Times New Roman>x");
  ASSERT_EQ(runs_.size(), 1u);
  EXPECT_EQ(runs_[0].font, Named("Times New Roman"));
}

TEST_F(MarkupCaption, KeepsQuotesInAFontName) {
  Draw(u"<f='A'>x");
  ASSERT_EQ(runs_.size(), 1u);
  EXPECT_EQ(runs_[0].font, Named("'A'"));
}

TEST_F(MarkupCaption, GoesBackOneFontNameOnly) {
  Draw(u"<f=A><f=B>1</f>2</f>3");
  ASSERT_EQ(runs_.size(), 3u);
  EXPECT_EQ(runs_[0].font, Named("B"));
  EXPECT_EQ(runs_[1].font, Named("A"));
  EXPECT_EQ(runs_[2].font, Named("A"));
}

TEST_F(MarkupCaption, KeepsTheNameWithAFontCloserAlone) {
  Draw(u"<p></f>x");
  ASSERT_EQ(runs_.size(), 1u);
  EXPECT_EQ(runs_[0].font, Named("Tahoma"));
}

TEST_F(MarkupCaption, SetsAnEmptyNameInMidCaption) {
  Draw(u"<f=>xy");
  ASSERT_EQ(runs_.size(), 1u);
  EXPECT_EQ(runs_[0].font, Named(""));
}

TEST_F(MarkupCaption, TakesAWordForAFontTagAtTheVeryEnd) {
  Draw(u"x abc<f=>");
  ASSERT_EQ(runs_.size(), 1u) << "the word is not drawn";
  EXPECT_EQ(runs_[0].text, "x ");
  EXPECT_EQ(Lines("SelectObject").back(), "SelectObject(" + Named("abc") + ")");
}

TEST_F(MarkupCaption, TakesNoWordForAFontTagThatDoesNotEndInABracket) {
  const PlayedSystem without_shaping(generation::kNT4);
  Draw(u"<b></b>x\ta<f=Arial b<f=c");
  ASSERT_EQ(runs_.size(), 3u);
  EXPECT_EQ(runs_[1].text, "\\u0009a<f=Arial");
  EXPECT_EQ(runs_[2].text, " b<f=c");
  EXPECT_EQ(runs_[2].font, Named("Tahoma"));
}

TEST_F(MarkupCaption, LooksForAFontTagBeforeAColourTag) {
  Draw(u"x <c=<f=>");
  ASSERT_EQ(runs_.size(), 1u);
  EXPECT_EQ(Lines("SelectObject").back(), "SelectObject(" + Named("<c=") + ")");
}

TEST_F(MarkupCaption, TakesEveryOpenerAndBracketOutOfAFontName) {
  // Taken out once from left to right: what closes up to a new opener stays.
  Draw(u"<f=a<f=b<f<f==c>x");
  ASSERT_EQ(runs_.size(), 1u);
  EXPECT_EQ(runs_[0].font, Named("ab<f=c"));
}

TEST_F(MarkupCaption, LetsTagsOverlap) {
  Draw(u"<b><f=Arial>1</b>2</f>3");
  ASSERT_EQ(runs_.size(), 3u);
  EXPECT_EQ(runs_[0].font, "font(\"Arial\",-13,700,\"\")");
  EXPECT_EQ(runs_[1].font, "font(\"Arial\",-13,400,\"\")");
  EXPECT_EQ(runs_[2].font, "font(\"Tahoma\",-13,400,\"\")");
}

// --- Splitting ---

class MarkupSplit : public MarkupCaption {
 protected:
  static constexpr std::u16string_view kWord = u"\u05D0\u05D1\u05D2\u05D3\u05D4\u05D5";  // complex script
  Long Step() const { return Height(kWord); }
};

TEST_F(MarkupSplit, LeavesAComplexWordThatFitsWhole) {
  Draw(std::u16string(u"<b></b>") + std::u16string(kWord));
  ASSERT_EQ(runs_.size(), 1u);
  EXPECT_EQ(runs_[0].rect.top, 0);
}

TEST_F(MarkupSplit, CutsAComplexWordOnePieceALineAndTheLastTwoLinesBelow) {
  // One unit fits each time; the last four together fit the width exactly, which is enough here.
  rect_ = {0, 10, Width(kWord.substr(2)), 300};
  Draw(std::u16string(u"<b></b>") + std::u16string(kWord));
  ASSERT_EQ(runs_.size(), 3u);
  const Long first = Height(kWord.substr(0, 1)), second = Height(kWord.substr(1, 1)),
             rest = Height(kWord.substr(2));
  EXPECT_EQ(runs_[0].text, "\u05D0");
  EXPECT_EQ(runs_[0].rect.top, 10);
  EXPECT_EQ(runs_[1].text, "\u05D1");
  EXPECT_EQ(runs_[1].rect.top, 10 + first);
  EXPECT_EQ(runs_[2].text, "\u05D2\u05D3\u05D4\u05D5");
  EXPECT_EQ(runs_[2].rect.top, 10 + first + second + rest);
}

TEST_F(MarkupSplit, DrawsTheFirstPieceAtThePenAndTheNextAtTheLineStart) {
  rect_ = {30, 0, 50, 300};
  Draw(std::u16string(u"<b></b>") + std::u16string(kWord));
  ASSERT_GE(runs_.size(), 3u);
  EXPECT_EQ(runs_[0].rect.left, 30);
  EXPECT_EQ(runs_[1].rect.left, 0) << "no line has been wrapped yet";
  EXPECT_EQ(runs_.back().rect.left, 30) << "the last piece takes a new line";
}

TEST_F(MarkupSplit, LeavesThePenBehindTheLastPiece) {
  // All but the first letter fit, and a dot fits behind them.
  const Long rest = Width(kWord.substr(1));
  rect_ = {0, 0, rest + Width(u".") + 1, 300};
  ASSERT_GE(Width(kWord), rect_.right) << "the whole word doesn't fit";
  Draw(std::u16string(u"<b></b>") + std::u16string(kWord) + u"<b></b>.");
  ASSERT_EQ(runs_.size(), 3u);
  EXPECT_EQ(runs_[2].text, ".");
  EXPECT_EQ(runs_[2].rect.left, rest);
  EXPECT_EQ(runs_[2].rect.top, runs_[1].rect.top);
}

TEST_F(MarkupSplit, EndsWhenNothingIsLeft) {
  rect_ = {30, 0, 10, 300};  // nothing ever fits
  Draw(std::u16string(u"<b></b>") + std::u16string(kWord) + u"<b>x");
  ASSERT_EQ(runs_.size(), kWord.size() + 1);
  for (std::size_t at = 0; at < kWord.size(); ++at)
    EXPECT_EQ(runs_[at].rect.top, static_cast<Long>(at) * Step());
  EXPECT_EQ(runs_.back().text, "x");
}

TEST_F(MarkupSplit, CutsAtTheRightEdgeAndOutlinesOneLineWhenRightJustified) {
  rect_ = {0, 10, 200, 300};
  style_.Alignment = 1;
  Draw(u"<b></b>\u05D0\u05D1");
  // Nothing fits at the right edge before nothing is left, which then takes the new line.
  ASSERT_EQ(runs_.size(), 2u);
  for (Long at = 0; at < 2; ++at) {
    EXPECT_EQ(runs_[std::size_t(at)].rect.left, 200);
    EXPECT_EQ(runs_[std::size_t(at)].rect.top, 10 + at * Step());
  }
  EXPECT_EQ(Lines("CreatePen").size(), 1u);
  EXPECT_EQ(Lines("MoveToEx").front(),
            "MoveToEx(200," + std::to_string(10 + 2 * Step() + Height(u"") - 1) + ")");
}

TEST_F(MarkupSplit, MeasuresEachPieceAndThenWhatIsLeft) {
  rect_ = {30, 0, 10, 300};
  Draw(u"<b></b>\u05D0\u05D1\u05D2");
  std::vector<std::string> measures = Lines("GetTextExtentPoint32W");
  measures.erase(measures.begin());  // the sentinel's
  EXPECT_EQ(measures, (std::vector<std::string>{
                          "GetTextExtentPoint32W(\"\u05D0\u05D1\u05D2\")",
                          "GetTextExtentPoint32W(\"\u05D0\")", "GetTextExtentPoint32W(\"\u05D1\u05D2\")",
                          "GetTextExtentPoint32W(\"\u05D1\")", "GetTextExtentPoint32W(\"\u05D2\")",
                          "GetTextExtentPoint32W(\"\u05D2\")", "GetTextExtentPoint32W(\"\")"}));
}

TEST_F(MarkupSplit, LeavesAWordWholeWhenTheScriptTestFails) {
  rect_.right = 5;
  Recorder recorder;
  recorder.Fail("ScriptIsComplex");
  DrawRecorded(std::u16string(u"<b></b>") + std::u16string(kWord), recorder);
  ASSERT_EQ(runs_.size(), 1u);
  EXPECT_EQ(runs_[0].rect.top, Step());
}

TEST_F(MarkupSplit, LeavesAWordWholeWithoutShaping) {
  const PlayedSystem without_shaping(generation::kNT4);
  rect_.right = 5;
  Draw(std::u16string(u"<b></b>") + std::u16string(kWord));
  EXPECT_EQ(runs_.size(), 1u);
}

TEST_F(MarkupSplit, ShowsTheSamePictureWhetherOrNotItStopsBelowTheSurface) {
  // Long enough for the stop; the shorter one takes every step.
  rect_ = {0, 0, 30, 300};
  const std::u16string long_word(400, u'\u05D0');
  canvas_.Fill(0xFF);
  Draw(u"<b></b>" + long_word);
  const std::vector<std::uint8_t> stopped = canvas_.Pixels();
  EXPECT_LT(runs_.size(), 60u);
  canvas_.Fill(0xFF);
  Draw(u"<b></b>" + long_word.substr(0, 150));
  EXPECT_GT(runs_.size(), 140u);
  EXPECT_EQ(stopped, canvas_.Pixels());
}

TEST_F(MarkupSplit, CutsALongWordWhereItWouldCutAShortOne) {
  // The first words of the two captions differ in length alone, and only the long one is measured in part.
  const Canvas tall(200, 4000);
  rect_ = {0, 0, 200, 4000};
  const auto drawn = [&](std::size_t length) {
    tall.Fill(0xFF);
    Recorder recorder;
    RECT rect = rect_;
    DrawMarkupCaption(tall.dc(), u"<b></b>" + std::u16string(length, u'\u05D0'), rect, style_);
    lines_ = recorder.Lines();
    return DrawnRuns(recorder);
  };
  const std::vector<DrawnRun> whole = drawn(120), in_part = drawn(20000);
  const auto single = [](const DrawnRun& run) { return run.text == "\u05D0"; };
  ASSERT_GT(whole.size(), 50u);
  ASSERT_TRUE(std::all_of(whole.begin(), whole.end() - 1, single));
  for (std::size_t at = 0; at + 1 < whole.size(); ++at) EXPECT_EQ(in_part.at(at).rect, whole[at].rect) << at;
  EXPECT_GE(in_part.at(in_part.size() - 2).rect.top, 4000 - 2 * Step()) << "down to the end of the surface";
  std::size_t units = 0;
  for (const std::string& line : Lines("GetTextExtentPoint32W")) units += line.size() / 2;
  EXPECT_LT(units, 20000u * 30) << "not all that is left for each of hundreds of pieces";
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
