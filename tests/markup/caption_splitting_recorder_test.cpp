// How complex words that are too wide are cut.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "markup/markup_caption_fixture.h"

namespace marklet {
namespace {

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

TEST_F(MarkupSplit, LeavesThePenPastTheLastPiece) {
  // All but the first letter fit, and a dot fits after them.
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
  // What is left is measured as nothing, so that the word's last line is only as high as its last letter.
  EXPECT_EQ(runs_.back().text, "x");
  EXPECT_EQ(runs_.back().rect.top, static_cast<Long>(kWord.size()) * Step() + Height(u"x"));
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
  EXPECT_EQ(Lines("MoveToEx").front(), "MoveToEx(200," + std::to_string(10 + 2 * Step() - 1) + ")");
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

}  // namespace
}  // namespace marklet
