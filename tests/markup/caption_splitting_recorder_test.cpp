// How complex words that are too wide are cut.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "markup/markup_caption_fixture.h"
#include "support/processor_time.h"

namespace marklet {
namespace {

class MarkupSplit : public MarkupCaption {
 protected:
  static constexpr std::u16string_view kWord = u"\u05D0\u05D1\u05D2\u05D3\u05D4\u05D5";  // complex script
  Long Step() const { return Height(kWord); }

  struct Expected {
    std::u16string_view text;
    Long left, top;
  };
  // The pieces of a word of Hebrew letters, by the widths of its beginnings.
  std::vector<Expected> Pieces(std::u16string_view word) const {
    const Long available = rect_.right - rect_.left;
    Long x = rect_.left, y = rect_.top, width = Width(word);
    std::vector<Expected> pieces;
    if (x + width < available) return {{word, x, y}};
    do {
      std::size_t fitting = 0;
      while (fitting < word.size() && Width(word.substr(0, fitting + 1)) <= rect_.right - x) ++fitting;
      if (fitting == 0) fitting = 1;
      pieces.push_back({word.substr(0, fitting), x, y});
      y += Height(word.substr(0, fitting));
      word.remove_prefix(fitting);
      width = Width(word);
      x = 0;  // no line has been wrapped yet
    } while (!word.empty() && x + width > available);
    // A second line feed; of nothing when nothing is left.
    pieces.push_back({word, rect_.left, y + Height(word)});
    return pieces;
  }
  void ExpectPieces(std::u16string_view word) {
    Draw(std::u16string(u"<b></b>") + std::u16string(word));
    std::vector<Expected> pieces = Pieces(word);
    if (pieces.back().text.empty()) pieces.pop_back();
    ASSERT_EQ(runs_.size(), pieces.size());
    for (std::size_t at = 0; at < pieces.size(); ++at) {
      EXPECT_EQ(runs_[at].text, WideCharToMultiByte(CP_UTF8, pieces[at].text)) << at;
      EXPECT_EQ(runs_[at].rect.left, pieces[at].left) << at;
      EXPECT_EQ(runs_[at].rect.top, pieces[at].top) << at;
      EXPECT_EQ(runs_[at].rect.right, rect_.right) << at;
    }
  }
};

TEST_F(MarkupSplit, LeavesAComplexWordThatFitsWhole) {
  Draw(std::u16string(u"<b></b>") + std::u16string(kWord));
  ASSERT_EQ(runs_.size(), 1u);
  EXPECT_EQ(runs_[0].rect.top, 0);
}

TEST_F(MarkupSplit, CutsAComplexWordWhereEachLineIsFullAndPutsTheLastPieceTwoLinesBelow) {
  // Two letters fit each time; the last two fit the width exactly, which is enough here.
  const std::u16string word(6, u'\u05D0');
  rect_ = {0, 10, Width(u"\u05D0\u05D0"), 300};
  Draw(u"<b></b>" + word);
  ASSERT_EQ(runs_.size(), 3u);
  const Long step = Height(word);
  for (const DrawnRun& run : runs_) EXPECT_EQ(run.text, "\u05D0\u05D0");
  EXPECT_EQ(runs_[0].rect.top, 10);
  EXPECT_EQ(runs_[1].rect.top, 10 + step);
  EXPECT_EQ(runs_[2].rect.top, 10 + 3 * step);
}

TEST_F(MarkupSplit, CutsWordsOfAnyLengthAtAnyWidth) {
  const std::u16string word = u"\u05D0\u05D9\u05DE\u05D5\u05DF\u05E9\u05D9\u05D5\u05DD\u05D6";
  for (std::size_t length = 1; length <= word.size(); ++length)
    for (const Long left : {0, 7, 30})
      for (Long right = 0; right <= 120; right += 9) {
        SCOPED_TRACE(testing::Message() << length << ' ' << left << ' ' << right);
        rect_ = {left, 10, right, 300};
        ExpectPieces(std::u16string_view(word).substr(0, length));
      }
}

TEST_F(MarkupSplit, DrawsTheFirstPieceAtThePenAndTheNextAtTheLineStart) {
  const Long letter = Width(u"\u05D0");
  rect_ = {30, 0, 30 + 2 * letter, 300};
  const auto whole_line = static_cast<std::size_t>(rect_.right / letter);
  Draw(u"<b></b>" + std::u16string(2 + whole_line + 2, u'\u05D0'));
  ASSERT_EQ(runs_.size(), 3u);
  EXPECT_EQ(runs_[0].text, "\u05D0\u05D0");
  EXPECT_EQ(runs_[0].rect.left, 30);
  EXPECT_EQ(runs_[1].rect.left, 0) << "no line has been wrapped yet";
  EXPECT_EQ(runs_.back().rect.left, 30) << "the last piece takes a new line";
}

TEST_F(MarkupSplit, LeavesThePenPastTheLastPiece) {
  // All but the last letter fit, and a dot fits after it.
  rect_ = {0, 0, Width(kWord), 300};
  Draw(u"<b></b>" + std::u16string(kWord) + u"\u05D6<b></b>.");
  ASSERT_EQ(runs_.size(), 3u);
  EXPECT_EQ(runs_[0].text, WideCharToMultiByte(CP_UTF8, kWord));
  EXPECT_EQ(runs_[1].text, "\u05D6");
  EXPECT_EQ(runs_[2].text, ".");
  EXPECT_EQ(runs_[2].rect.left, Width(u"\u05D6"));
  EXPECT_EQ(runs_[2].rect.top, runs_[1].rect.top);
}

TEST_F(MarkupSplit, CountsWhatTheWholeWordHangsOverOnceAfterItsLastPiece) {
  style_.Font = FontOf(30);
  const Long trail = canvas_.Trail(*FontOf(30), 'f');
  ASSERT_NE(trail, 0);
  rect_ = {0, 0, Width(u"ii\u05D0\u05D0", 30), 300};
  Draw(u"<b></b>ii\u05D0\u05D0if<i>.</i>x");
  ASSERT_EQ(runs_.size(), 4u);
  EXPECT_EQ(runs_[1].text, "if");
  EXPECT_EQ(runs_[2].rect.left, Width(u"if", 30) + trail)
      << "though the piece is too short to be asked for it";
}

TEST_F(MarkupSplit, CutsThaiBetweenItsWords) {
  // "Hello" and a particle of politeness, of which half would fit.
  rect_ = {0, 0, Width(u"\u0E2A\u0E27\u0E31\u0E2A\u0E14\u0E35\u0E04\u0E23"), 300};
  Draw(u"<b></b>\u0E2A\u0E27\u0E31\u0E2A\u0E14\u0E35\u0E04\u0E23\u0E31\u0E1A");
  ASSERT_EQ(runs_.size(), 2u);
  EXPECT_EQ(runs_[0].text, "\u0E2A\u0E27\u0E31\u0E2A\u0E14\u0E35");
  EXPECT_EQ(runs_[1].text, "\u0E04\u0E23\u0E31\u0E1A");
}

TEST_F(MarkupSplit, TakesOneUnitWhereNothingFitsOrTheProcessorFails) {
  rect_ = {30, 0, 10, 300};  // nothing ever fits
  Draw(std::u16string(u"<b></b>") + std::u16string(kWord) + u"<b>x");
  ASSERT_EQ(runs_.size(), kWord.size() + 1);
  for (std::size_t at = 0; at < kWord.size(); ++at)
    EXPECT_EQ(runs_[at].rect.top, static_cast<Long>(at) * Step());
  // What is left is measured as nothing, so that the word's last line is only as high as its last letter.
  EXPECT_EQ(runs_.back().text, "x");
  EXPECT_EQ(runs_.back().rect.top, static_cast<Long>(kWord.size()) * Step() + Height(u"x"));
  rect_ = {0, 0, Width(kWord.substr(0, 3)), 300};
  Recorder recorder;
  recorder.Fail("ScriptStringAnalyse");
  DrawRecorded(std::u16string(u"<b></b>") + std::u16string(kWord), recorder);
  EXPECT_EQ(runs_.front().text, "\u05D0");
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

TEST_F(MarkupSplit, AnalysesWhatIsLeftThenMeasuresThePieceAndTheRest) {
  rect_ = {30, 0, 10, 300};
  Draw(u"<b></b>\u05D0\u05D1");
  std::vector<std::string> calls;
  for (const std::string& line : lines_)
    if (line.starts_with("GetTextExtentPoint32W(") || line.starts_with("ScriptStringAnalyse("))
      calls.push_back(line);
  calls.erase(calls.begin());  // the sentinel's
  EXPECT_EQ(calls, (std::vector<std::string>{
                       "GetTextExtentPoint32W(\"\u05D0\u05D1\")",
                       "ScriptStringAnalyse(\"\u05D0\u05D1\",0x4E6,-20)", "GetTextExtentPoint32W(\"\u05D0\")",
                       "GetTextExtentPoint32W(\"\u05D1\")", "ScriptStringAnalyse(\"\u05D1\",0x4E6,10)",
                       "GetTextExtentPoint32W(\"\u05D1\")", "GetTextExtentPoint32W(\"\")"}));
}

TEST_F(MarkupSplit, CutsALatinWordThatEndsInATabLikeAComplexOne) {
  const std::u16string word = u"WWWW\t";
  rect_ = {0, 0, Width(u"WW"), 300};
  Draw(u"<b></b>" + word);
  ASSERT_GE(runs_.size(), 2u);
  EXPECT_EQ(runs_[0].text, "WW");
  EXPECT_EQ(runs_[1].rect.top, Step());
  Draw(u"<b></b>WWWW");
  EXPECT_EQ(runs_.size(), 1u) << "without it the word stays whole";
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
  rect_ = {0, 0, 12, 300};
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
  const Canvas tall(200, 1000);
  rect_ = {0, 0, 12, 1000};
  const auto drawn = [&](std::size_t length) {
    tall.Fill(0xFF);
    Recorder recorder;
    RECT rect = rect_;
    DrawMarkupCaption(tall.dc(), u"<b></b>" + std::u16string(length, u'\u05D0'), rect, style_);
    lines_ = recorder.Lines();
    return DrawnRuns(recorder);
  };
  const std::vector<DrawnRun> whole = drawn(50), in_part = drawn(5000);
  ASSERT_GT(whole.size(), 40u);
  for (std::size_t at = 0; at + 1 < whole.size(); ++at) EXPECT_EQ(in_part.at(at).rect, whole[at].rect) << at;
  EXPECT_GE(in_part.at(in_part.size() - 2).rect.top, 1000 - 2 * Step()) << "down to the end of the surface";
  std::size_t units = 0;
  for (const std::string& line : Lines("GetTextExtentPoint32W")) units += line.size() / 2;
  EXPECT_LT(units, 5000u * 30) << "not all that is left for each of dozens of pieces";
}

TEST(SlowMarkupSplit, OfAHundredThousandLettersTakesATimeLinearInThem) {
  const PlayedSystem system(generation::kVista);
  const Canvas canvas(400, 300);
  CaptionStyle style;
  style.Font = FontOf(10);
  const auto seconds = [&](std::size_t length) {
    const std::u16string caption = u"<b></b>" + std::u16string(length, u'\u05D0');
    RECT rect = {0, 0, 100, 300};
    const double start = ProcessorSeconds();
    DrawMarkupCaption(canvas.dc(), caption, rect, style);
    return ProcessorSeconds() - start;
  };
  seconds(1'000);
  EXPECT_LT(seconds(100'000), 10);
}

}  // namespace
}  // namespace marklet
