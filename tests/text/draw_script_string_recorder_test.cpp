// The wrap loop over the script processor: which analyses a line takes, where it ends and where it is drawn.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "markup/canvas.h"
#include "platform/headless/recorder/recorder.h"
#include "support/processor_time.h"
#include "text/emit_text_run.h"
#include "text/system_fixture.h"

namespace marklet {
namespace {

using Lines = std::vector<std::string>;

constexpr RECT kRect{4, 10, 204, 90};

class DrawScript : public SystemTest {
 protected:
  void Draw(std::u16string_view text, const RECT& rect, const ScriptAlignment& alignment = {}) {
    recorder_.Clear();
    DrawScriptString(canvas_.dc(), 4, rect, text, 0, 0, alignment);
  }
  // The texts of the lines that were drawn, and at which height.
  struct Line {
    std::string text;
    Long x = 0, y = 0;
  };
  std::vector<Line> Drawn() const {
    std::vector<Line> lines;
    for (const std::string& call : recorder_.Lines("ScriptStringOut")) {
      Line line;
      const std::size_t open = call.find('"'), close = call.rfind('"');
      if (open != call.npos) line.text = call.substr(open + 1, close - open - 1);
      std::sscanf(call.c_str() + (open != call.npos ? close + 2 : call.find(',')), ",%d,%d", &line.x,
                  &line.y);
      lines.push_back(line);
    }
    return lines;
  }
  Lines Texts() const {
    Lines texts;
    for (const Line& line : Drawn()) texts.push_back(line.text);
    return texts;
  }
  std::size_t Calls(std::string_view operation) const { return recorder_.Lines(operation).size(); }
  Long WidthOf(std::u16string_view text) {
    SIZE size;
    GetTextExtentPoint32W(canvas_.dc(), text, size);
    return size.cx;
  }
  // A rectangle just wide enough for a text.
  RECT WideAs(std::u16string_view text) { return {4, 10, 4 + WidthOf(text), 90}; }
  Long Height() {
    SIZE size;
    GetTextExtentPoint32W(canvas_.dc(), u"x", size);
    return size.cy;
  }

  Canvas canvas_{220, 100};
  Recorder recorder_;
};

TEST_F(DrawScript, TakesTwoAnalysesALineAndFreesEachAtOnce) {
  const std::string width = std::to_string(WidthOf(u"one tw"));
  const std::string rect = "[4,10," + std::to_string(4 + WidthOf(u"one tw")) + ",90]";
  const std::string second = std::to_string(10 + Height());
  const std::string rect2 = "[4," + second + "," + std::to_string(4 + WidthOf(u"one tw")) + ",90]";
  Draw(u"one two", WideAs(u"one tw"));
  const Lines lines = recorder_.Lines();
  Lines script;
  for (const std::string& line : lines)
    if (line.starts_with("Script")) script.push_back(line);
  EXPECT_EQ(
      script,
      (Lines{"ScriptStringAnalyse(\"one two\",0x4E6," + width + ")",
             "ScriptString_pcOutChars(analysis(\"one two\"))", "ScriptString_pLogAttr(analysis(\"one two\"))",
             "ScriptStringFree(analysis(\"one two\"))", "ScriptStringAnalyse(\"one \",0x4E6," + width + ")",
             "ScriptString_pcOutChars(analysis(\"one \"))", "ScriptString_pSize(analysis(\"one \"))",
             "ScriptStringOut(analysis(\"one \"),4,10,0x4," + rect + ",0,0,0)",
             "ScriptStringFree(analysis(\"one \"))", "ScriptStringAnalyse(\"two\",0x4E6," + width + ")",
             "ScriptString_pcOutChars(analysis(\"two\"))", "ScriptString_pLogAttr(analysis(\"two\"))",
             "ScriptStringFree(analysis(\"two\"))", "ScriptStringAnalyse(\"two\",0x4E6," + width + ")",
             "ScriptString_pcOutChars(analysis(\"two\"))", "ScriptString_pSize(analysis(\"two\"))",
             "ScriptStringOut(analysis(\"two\"),4," + second + ",0x4," + rect2 + ",0,0,0)",
             "ScriptStringFree(analysis(\"two\"))"}));
}

TEST_F(DrawScript, DrawsNothingOfAnEmptyText) {
  Draw(u"", kRect);
  EXPECT_EQ(recorder_.Lines(), Lines{});
}

TEST_F(DrawScript, AddsFlagsForJustifiedTextAndTextFromRightToLeft) {
  const auto flags = [&](const ScriptAlignment& alignment) {
    Draw(u"ab", kRect, alignment);
    const std::string line = recorder_.Lines("ScriptStringAnalyse").front();
    return line.substr(line.find("0x"), 5);
  };
  EXPECT_EQ(flags({}), "0x4E6");
  EXPECT_EQ(flags({.justified = true}), "0x4EE");
  EXPECT_EQ(flags({.rtl = true}), "0x5E6");
  EXPECT_EQ(flags({.rtl = true, .justified = true}), "0x5EE");
  EXPECT_EQ(flags({.right = true, .singleLine = true, .center = true}), "0x4E6");
}

// The last line is stretched too, and so is the one that ends in dots.
TEST_F(DrawScript, AnalysesEveryLineWithTheSameFlags) {
  const auto flags = [&] {
    Lines found;
    for (const std::string& line : recorder_.Lines("ScriptStringAnalyse"))
      found.push_back(line.substr(line.find(",0x") + 1, 5));
    return found;
  };
  Draw(u"ab\r\ncd", kRect, {.justified = true});
  EXPECT_EQ(flags(), Lines(4, "0x4EE"));
  Draw(u"mmmmmmm", WideAs(u"mmm"), {.rtl = true, .singleLine = true, .justified = true});
  EXPECT_EQ(flags(), Lines(3, "0x5EE"));
}

TEST_F(DrawScript, PassesTheSelectionAndTheOptionsOn) {
  DrawScriptString(canvas_.dc(), 7, kRect, u"ab", 1, 2, {});
  EXPECT_EQ(recorder_.Lines("ScriptStringOut"),
            Lines{R"(ScriptStringOut(analysis("ab"),4,10,0x7,[4,10,204,90],1,2,0))"});
}

// justified, center, right, rtl; the alignment that is set, none for "as found"; x in a rectangle from 5 to
// 204.
struct Aligned {
  bool justified, center, right, rtl;
  const char* set;
  Long x;
};
constexpr Long kMiddle = 204 / 2 + 5 / 2;  // each half truncated
constexpr Aligned kAlignments[] = {
    {false, false, false, false, "", 5},
    {false, false, false, true, "0x2", 204},
    {false, false, true, false, "0x2", 204},
    {false, false, true, true, "", 5},
    {false, true, false, false, "0x6", kMiddle},
    {false, true, false, true, "0x6", kMiddle},
    {false, true, true, false, "0x6", kMiddle},
    {false, true, true, true, "0x6", kMiddle},
    {true, false, false, false, "", 5},
    {true, false, false, true, "", 5},
    {true, false, true, false, "", 5},
    {true, false, true, true, "", 5},
    {true, true, false, false, "", 5},
    {true, true, false, true, "", 5},
    {true, true, true, false, "", 5},
    {true, true, true, true, "", 5},
};

TEST_F(DrawScript, AlignsByTheTable) {
  for (const Aligned& row : kAlignments) {
    SCOPED_TRACE(testing::Message() << row.justified << row.center << row.right << row.rtl);
    SetTextAlign(canvas_.dc(), 0);
    Draw(u"ab", {5, 10, 204, 90},
         {.rtl = row.rtl, .right = row.right, .center = row.center, .justified = row.justified});
    const Lines set = recorder_.Lines("SetTextAlign");
    EXPECT_EQ(set, *row.set ? Lines{"SetTextAlign(" + std::string(row.set) + ")"} : Lines{});
    ASSERT_EQ(Drawn().size(), 1u);
    EXPECT_EQ(Drawn()[0].x, row.x);
  }
}

TEST_F(DrawScript, LeavesTheAlignmentAsItsLastLineNeededIt) {
  Draw(u"ab", kRect, {.center = true});
  EXPECT_EQ(SetTextAlign(canvas_.dc(), 24), 6u);
  Draw(u"ab", kRect, {.justified = true});
  EXPECT_EQ(SetTextAlign(canvas_.dc(), 0), 24u) << "what isn't set stands as it was found";
}

TEST_F(DrawScript, HalvesNegativeEdgesTowardsZero) {
  Draw(u"ab", {-5, 10, 100, 90}, {.center = true});
  EXPECT_EQ(Drawn()[0].x, 50 - 2);
}

TEST_F(DrawScript, CutsAnUnbrokenRunAtTheLastCharacterThatFits) {
  Draw(u"mmmmmmm", WideAs(u"mmm"));
  EXPECT_EQ(Texts(), (Lines{"mmm", "mmm", "m"}));
}

TEST_F(DrawScript, PutsLinesOneBelowTheOther) {
  Draw(u"mmmmmmm", WideAs(u"mmm"));
  const std::vector<Line> lines = Drawn();
  for (std::size_t i = 0; i < lines.size(); ++i) EXPECT_EQ(lines[i].y, 10 + static_cast<Long>(i) * Height());
}

TEST_F(DrawScript, EndsALineAtALineEndWithTheLineFeedInTheNext) {
  Draw(u"ab\r\ncd", kRect);
  EXPECT_EQ(Texts(), (Lines{"ab\\u000D", "\\u000Acd"}));
  Draw(u"\r\n\r\nx", kRect);
  EXPECT_EQ(Texts(), (Lines{"\\u000D", "\\u000A\\u000D", "\\u000Ax"}));
}

TEST_F(DrawScript, EndsATooLongSingleLineInDots) {
  Draw(u"one two three", WideAs(u"one two t"), {.singleLine = true});
  EXPECT_EQ(Texts(), Lines{"one two\u2026\\u0000"}) << "in place of the blank at which it was cut";
  EXPECT_EQ(Calls("ScriptStringAnalyse"), 3u);
  EXPECT_EQ(Calls("ScriptStringFree"), 3u);
  Draw(u"mmmmmmm", WideAs(u"mmm"), {.singleLine = true});
  EXPECT_EQ(Texts(), Lines{"mm\u2026\\u0000"}) << "in place of its last fitting character";
}

TEST_F(DrawScript, LeavesASingleLineThatFitsAsItIs) {
  Draw(u"one two", WideAs(u"one two"), {.singleLine = true});
  EXPECT_EQ(Texts(), Lines{"one two"});
  EXPECT_EQ(Calls("ScriptStringAnalyse"), 2u);
}

TEST_F(DrawScript, EndsASingleLineAtALineEndInDots) {
  Draw(u"ab\r\ncd", kRect, {.singleLine = true});
  EXPECT_EQ(Texts(), Lines{"ab\u2026\\u0000"});
}

TEST_F(DrawScript, StopsAfter650Lines) {
  std::u16string text;
  for (int line = 0; line < 651; ++line) text += u"x\r\n";
  Draw(text, kRect);
  EXPECT_EQ(Calls("ScriptStringOut"), 650u);
  EXPECT_EQ(Drawn().back().y, 10 + 649 * Height());
}

TEST_F(DrawScript, TriesAsOftenWhereNothingFits) {
  Draw(u"x", {4, 10, 4, 90});
  EXPECT_EQ(Calls("ScriptStringAnalyse"), 1300u) << "a line of no characters has no second analysis";
  EXPECT_EQ(Calls("ScriptStringFree"), 650u);
  EXPECT_EQ(Calls("ScriptStringOut"), 0u);
}

TEST_F(DrawScript, TriesAsOftenWhenTheAnalysisFails) {
  recorder_.Fail("ScriptStringAnalyse");
  Draw(u"ab", kRect);
  EXPECT_EQ(Calls("ScriptStringAnalyse"), 650u);
  EXPECT_EQ(Calls("ScriptStringFree"), 0u);
}

TEST_F(DrawScript, GoesOnAfterAFailureInTheMiddle) {
  recorder_.Fail("ScriptStringAnalyse", 3);  // the second line's second analysis, and all after it
  Draw(u"ab\r\ncd", kRect);
  EXPECT_EQ(Texts(), Lines{"ab\\u000D"});
}

// What fits is told to be nothing then: a line without an end is drawn at no place.
TEST_F(DrawScript, FreesEachAnalysisOnceWhateverFails) {
  for (const char* operation : {"ScriptStringAnalyse", "ScriptString_pcOutChars", "ScriptString_pSize",
                                "ScriptString_pLogAttr", "ScriptStringOut", "SetTextAlign"}) {
    for (int good = 0; good < 9; ++good) {
      for (const bool single : {false, true}) {
        SCOPED_TRACE(testing::Message() << operation << ' ' << good << ' ' << single);
        recorder_.FailNothing();
        recorder_.Fail(operation, good);
        Draw(u"one two three", WideAs(u"one tw"), {.right = true, .singleLine = single});
        std::size_t made = Calls("ScriptStringAnalyse");
        if (std::string_view(operation) == "ScriptStringAnalyse")
          made = std::min<std::size_t>(made, static_cast<std::size_t>(good));
        // An analysis of no characters is null.
        for (const std::string& line : recorder_.Lines("ScriptStringAnalyse"))
          if (line.starts_with("ScriptStringAnalyse(\"\",")) --made;
        EXPECT_EQ(Calls("ScriptStringFree"), made);
        for (const std::string& line : recorder_.Lines("ScriptStringFree"))
          EXPECT_EQ(line.find("null"), line.npos);
      }
    }
  }
}

TEST_F(DrawScript, DrawsWithoutBreaksWhenTheAttributesCannotBeRead) {
  recorder_.Fail("ScriptString_pLogAttr");
  Draw(u"one two", WideAs(u"one t"));
  EXPECT_EQ(Texts(), (Lines{"one t", "wo"}));
}

TEST_F(DrawScript, EndsWhenTheRestGetsNoShorter) {
  // The fifth answer on is missing: a line is drawn that took nothing away.
  recorder_.Fail("ScriptString_pcOutChars", 1);
  Draw(u"one two", kRect);
  EXPECT_EQ(Calls("ScriptStringOut"), 1u);
}

// ---- Against the loop as it is told ----

// A text as the recorder writes it, back as it was.
std::u16string Unquoted(const std::string& line) {
  std::u16string text = MultiByteToWideChar(CP_UTF8, line);
  for (std::size_t at = 0; (at = text.find(u"\\u", at)) != text.npos; ++at) {
    const std::u16string digits = text.substr(at + 2, 4);
    const auto unit = std::stoul(std::string(digits.begin(), digits.end()), nullptr, 16);
    text.replace(at, 6, 1, static_cast<char16_t>(unit));
  }
  return text;
}

class NaiveLoop {
 public:
  NaiveLoop(HDC dc, Long width, bool single) : dc_(dc), width_(width), single_(single) {}

  std::vector<std::u16string> Lines(std::u16string text) {
    std::vector<std::u16string> lines;
    for (int round = 0; round < 650; ++round) {
      if (!Analyse(text)) continue;
      const Long position = FindBreakPosition(text, attrs_, out_);
      std::u16string line = text.substr(0, static_cast<std::size_t>(position));
      if (!Analyse(line)) continue;
      if (single_ && out_ < static_cast<Long>(text.size())) {
        line = text.substr(0, static_cast<std::size_t>(out_ - 1)) + u"\u2026";
        line.push_back(u'\0');
      }
      lines.push_back(line);
      const std::size_t before = text.size();
      text.erase(0, static_cast<std::size_t>(out_));
      if (single_ || text.size() == before || text.empty()) break;
    }
    return lines;
  }

 private:
  bool Analyse(const std::u16string& text) {
    const SCRIPT_STRING_ANALYSIS ssa = ScriptStringAnalyse(dc_, text, 0x4E6, width_, {}, {}, {});
    if (ssa == nullptr) return false;
    out_ = *ScriptString_pcOutChars(ssa);
    const std::uint8_t* bytes = ScriptString_pLogAttr(ssa);
    attrs_.assign(static_cast<std::size_t>(out_), {});
    for (std::size_t i = 0; i < attrs_.size(); ++i) {
      attrs_[i].fSoftBreak = bytes[i] & 1;
      attrs_[i].fWhiteSpace = bytes[i] >> 1 & 1;
    }
    ScriptStringFree(ssa);
    return true;
  }

  HDC dc_;
  Long width_;
  bool single_;
  Long out_ = 0;
  std::vector<LogAttr> attrs_;
};

TEST_F(DrawScript, WrapsRandomTextsAsTheLoopIsTold) {
  std::mt19937 random(3);
  const std::u16string letters = u"abcde fg-h  \u05D0\u05D1 \u0628\u0639\u0301\u4E2D\u6587";
  for (int round = 0; round < 150; ++round) {
    std::u16string text;
    for (std::size_t length = 1 + random() % 40; text.size() < length;)
      text += letters[random() % letters.size()];
    if (random() % 4 == 0) text.insert(random() % text.size(), u"\r\n");
    const auto width = static_cast<Long>(random() % 150);
    const bool single = random() % 3 == 0;
    Draw(text, {4, 10, 4 + width, 90}, {.singleLine = single});
    std::vector<std::u16string> drawn;
    for (const std::string& line : Texts()) drawn.push_back(Unquoted(line));
    EXPECT_EQ(drawn, NaiveLoop(canvas_.dc(), width, single).Lines(text))
        << testing::PrintToString(text) << ' ' << width << ' ' << single;
  }
}

// ---- The route of a run ----

TEST_F(DrawScript, IsReachedWithTheFiveFlagsOfTheStyle) {
  Play(kXp, true);
  CaptionStyle style;
  style.TextHeight = 13;
  style.SingleLine = true;
  const auto emitted = [&] {
    recorder_.Clear();
    RECT rect = kRect;
    EmitTextRun(canvas_.dc(), u"\u05D0", rect, style, false);
    return recorder_.Lines("ScriptStringOut").at(0);
  };
  EXPECT_EQ(emitted(), "ScriptStringOut(analysis(\"\u05D0\"),4,10,0x4,[4,10,204,90],0,0,0)");
  style.Alignment = 1;
  EXPECT_EQ(emitted(), "ScriptStringOut(analysis(\"\u05D0\"),204,10,0x4,[4,10,204,90],0,0,0)");
  style.RightToLeft = true;
  EXPECT_EQ(emitted(), "ScriptStringOut(analysis(\"\u05D0\"),4,10,0x4,[4,10,204,90],0,0,0)");
  style.Alignment = 0;
  EXPECT_EQ(emitted(), "ScriptStringOut(analysis(\"\u05D0\"),204,10,0x4,[4,10,204,90],0,0,0)");
  style.Alignment = 2;
  EXPECT_EQ(emitted(), "ScriptStringOut(analysis(\"\u05D0\"),104,10,0x4,[4,10,204,90],0,0,0)");
  style.VerticalAlignment = 2;
  EXPECT_EQ(emitted(), "ScriptStringOut(analysis(\"\u05D0\"),104,39,0x4,[4,39,204,90],0,0,0)");
  style.VerticalAlignment = 3;
  EXPECT_EQ(emitted(), "ScriptStringOut(analysis(\"\u05D0\"),104,77,0x4,[4,77,204,90],0,0,0)");
  style.Alignment = 3;
  emitted();
  EXPECT_NE(recorder_.Lines("ScriptStringAnalyse")[0].find("0x5EE"), std::string::npos);
}

TEST_F(DrawScript, DrawsNothingWhereThePlatformHasNoScriptProcessor) {
  Play(kVista, false);  // said to be there without a look
  CaptionStyle style;
  style.Alignment = alignJustified;
  style.TextHeight = 13;
  recorder_.Fail("ScriptStringAnalyse");
  RECT rect = kRect;
  EmitTextRun(canvas_.dc(), u"Total", rect, style, false);
  EXPECT_EQ(Calls("DrawTextW"), 0u);
  EXPECT_EQ(Calls("ScriptStringOut"), 0u);
}

TEST_F(DrawScript, FitsNothingOfAnEmptyTextOrAfterAFailure) {
  EXPECT_EQ(FitCharacters(canvas_.dc(), u"", 0, 100, 0, 20), 0);
  EXPECT_EQ(Calls("ScriptStringAnalyse"), 0u);
  recorder_.Fail("ScriptStringAnalyse");
  EXPECT_EQ(FitCharacters(canvas_.dc(), u"ab", 0, 100, 0, 20), 0);
}

TEST_F(DrawScript, FitsUpToTheBreakInWhatIsLeftOfTheLine) {
  const Long width = WidthOf(u"one tw");
  EXPECT_EQ(FitCharacters(canvas_.dc(), u"one two", 30, 30 + width, 0, 20), 4);
  EXPECT_EQ(FitCharacters(canvas_.dc(), u"mmmm", 30, 30 + WidthOf(u"mmm"), 0, 20), 3);
  EXPECT_EQ(FitCharacters(canvas_.dc(), u"mmmm", 30, 30, 0, 20), 0);
  EXPECT_EQ(FitCharacters(canvas_.dc(), u"mmmm", 30, 10, 0, 20), 0);
}

// ---- Long and hostile texts ----

TEST(SlowScriptTexts, OfAMillionCharactersTakeTheTimeOfTheirLines) {
  const std::u16string_view pieces[] = {u"\u0628\u0639\u0644 ",
                                        u"\u0628",
                                        u"\u0301",
                                        u"x\r\n",
                                        u"\r\n",
                                        u"\u05D0",
                                        u"\u0E01",
                                        u"word ",
                                        u"\r",
                                        u"\u200B",
                                        u"\U0001F600",
                                        u"&",
                                        u"\t",
                                        u"\xD800"};
  const Canvas canvas(220, 100);
  for (const std::u16string_view piece : pieces) {
    std::u16string text;
    while (text.size() < 1'000'000) text += piece;
    const double start = ProcessorSeconds();
    DrawScriptString(canvas.dc(), 4, kRect, text, 0, 0, {.justified = true});
    // Bounded generously: sanitizers are slow, a quadratic time would be minutes.
    EXPECT_LT(ProcessorSeconds() - start, 20) << testing::PrintToString(std::u16string(piece));
  }
}

}  // namespace
}  // namespace marklet
