// What only this platform's script processor does of what the contract promises, and how its calls are
// recorded.
#include <string>

#include "platform/headless/recorder/recorder.h"
#include "platform/test_picture.h"
#include "platform/uniscribe.h"

namespace marklet {
namespace {

using Lines = std::vector<std::string>;

constexpr COLORREF kPaper = 0xFFFFFF;
constexpr std::uint32_t kFlags = SSA_TAB | SSA_CLIP | SSA_FALLBACK | SSA_BREAK | SSA_GLYPHS | SSA_HOTKEY;

class Analyses : public testing::Test {
 protected:
  Analyses() {
    LOGFONTW record;
    record.lfHeight = -16;
    record.lfFaceName = u"DejaVu Sans";
    picture_.UseFont(record);
    SetBkMode(Context(), 1);
    picture_.Fill(0xFF);
  }
  HDC Context() const { return picture_.Context(); }
  SCRIPT_STRING_ANALYSIS Analysed(std::u16string_view text, Long width, std::uint32_t flags = kFlags) {
    return ScriptStringAnalyse(Context(), text, flags, width, {}, {}, {});
  }
  // Draws at (10, 5) and answers the line's width.
  Long Draw(std::u16string_view text, Long width, std::uint32_t flags = kFlags) {
    picture_.Fill(0xFF);
    const SCRIPT_STRING_ANALYSIS analysis = Analysed(text, width, flags);
    ScriptStringOut(analysis, 10, 5, 0, nullptr, 0, 0, false);
    const Long drawn = ScriptString_pSize(analysis)->cx;
    ScriptStringFree(analysis);
    return drawn;
  }
  Long WidthOf(std::u16string_view text) const { return picture_.Extent(text).cx; }
  Long Right() const { return InkOf(picture_, kPaper).right; }

  TestPicture picture_{240, 40};
};

TEST_F(Analyses, StretchALineToItsWidth) {
  for (const char16_t* text : {u"a b c", u"one two", u"\u05D0\u05D1 \u05D2\u05D3", u"abc \u05D0\u05D1 def"}) {
    EXPECT_EQ(Draw(text, 150, kFlags | SSA_FIT), 150);
    const Long right = Right();
    EXPECT_NEAR(right, 160, 2) << testing::PrintToString(std::u16string(text));
    Draw(text, 150);
    EXPECT_LT(Right(), right - 20) << "but not without the flag";
  }
}

TEST_F(Analyses, GiveEachBlankItsShareOfTheWidth) {
  const Long blank = WidthOf(u" "), word = WidthOf(u"l");
  const Long width = 3 * word + 2 * blank + 41;
  Draw(u"l l l", width, kFlags | SSA_FIT);
  const std::vector<COLORREF> stretched = picture_.Colours();
  picture_.Fill(0xFF);
  TextOutW(Context(), 10, 5, u"l");
  TextOutW(Context(), 10 + word + blank + 20, 5, u"l");
  TextOutW(Context(), 10 + 2 * word + 2 * blank + 41, 5, u"l");
  EXPECT_EQ(stretched, picture_.Colours());
}

TEST_F(Analyses, LetBlanksAtTheEndOfAStretchedLineHang) {
  Draw(u"a b", 100, kFlags | SSA_FIT);
  const std::vector<COLORREF> without = picture_.Colours();
  EXPECT_EQ(Draw(u"a b   ", 100, kFlags | SSA_FIT), 100);
  EXPECT_EQ(picture_.Colours(), without);
}

TEST_F(Analyses, SpreadTheLettersOfAWordThatStandsAlone) {
  Draw(u"ll", 100, kFlags | SSA_FIT);
  EXPECT_NEAR(Right(), 110, 3);
  Draw(u"\u4E2D\u6587\u4E2D", 100, kFlags | SSA_FIT);
  EXPECT_NEAR(Right(), 110, 3);
}

TEST_F(Analyses, LeaveAWordTogetherWhoseLettersJoin) {
  Draw(u"\u0628\u0639\u0644", 100);
  const std::vector<COLORREF> plain = picture_.Colours();
  Draw(u"\u0628\u0639\u0644", 100, kFlags | SSA_FIT);
  EXPECT_EQ(picture_.Colours(), plain);
}

TEST_F(Analyses, NeverNarrowALine) {
  EXPECT_EQ(Draw(u"Wide line", 20, (kFlags & ~SSA_CLIP) | SSA_FIT), WidthOf(u"Wide line"));
}

TEST_F(Analyses, UnderlineTheCharacterAfterAnAmpersand) {
  EXPECT_EQ(Draw(u"a&bc", 200), WidthOf(u"abc"));
  const std::vector<COLORREF> marked = picture_.Colours();
  picture_.Fill(0xFF);
  RECT rect = {10, 5, 200, 40};
  DrawTextW(Context(), u"a&bc", rect, DT_SINGLELINE);
  EXPECT_EQ(marked, picture_.Colours()) << "as in other text";
  EXPECT_EQ(Draw(u"a&bc", 200, kFlags & ~SSA_HOTKEY), WidthOf(u"a&bc"));
}

TEST_F(Analyses, DrawTwoAmpersandsAsOneAndTheLastAsItIs) {
  for (const char16_t* text : {u"Tom && Jerry", u"&Save && E&xit", u"R&&&D", u"last&", u"\u05D0&\u05D1 x"}) {
    Draw(text, 220);
    const std::vector<COLORREF> drawn = picture_.Colours();
    picture_.Fill(0xFF);
    RECT rect = {10, 5, 235, 40};
    DrawTextW(Context(), text, rect, DT_SINGLELINE | DT_NOCLIP);
    EXPECT_EQ(drawn, picture_.Colours()) << testing::PrintToString(std::u16string(text));
  }
}

TEST_F(Analyses, NeverPartAnAmpersandFromItsCharacter) {
  const std::u16string text = u"a &b\u4E2D&\u6587";
  for (Long width = 0; width < WidthOf(text); ++width) {
    const SCRIPT_STRING_ANALYSIS analysis = Analysed(text, width);
    const Long fitting = *ScriptString_pcOutChars(analysis);
    EXPECT_NE(fitting, 3) << width;
    EXPECT_NE(fitting, 6) << width;
    ScriptStringFree(analysis);
  }
  const SCRIPT_STRING_ANALYSIS analysis = Analysed(text, 200);
  EXPECT_EQ(ScriptString_pLogAttr(analysis)[6] & 1, 0) << "though a line may end between ideographs";
  ScriptStringFree(analysis);
}

TEST_F(Analyses, BreakThaiBetweenItsWords) {
  const std::u16string_view text = u"\u0E2A\u0E27\u0E31\u0E2A\u0E14\u0E35\u0E04\u0E23\u0E31\u0E1A";
  const SCRIPT_STRING_ANALYSIS analysis = Analysed(text, 1000);
  std::string breaks;
  for (std::size_t i = 0; i < text.size(); ++i)
    breaks += (ScriptString_pLogAttr(analysis)[i] & 1) != 0 ? '|' : '.';
  EXPECT_EQ(breaks, "......|...");
  ScriptStringFree(analysis);
}

TEST_F(Analyses, CountTabsAsBlanks) {
  const SCRIPT_STRING_ANALYSIS analysis = Analysed(u"a\tb", 1000);
  EXPECT_EQ(ScriptString_pLogAttr(analysis)[1] & 2, 2);
  ScriptStringFree(analysis);
}

TEST_F(Analyses, GiveNoAttributesOrGlyphsUnasked) {
  const SCRIPT_STRING_ANALYSIS analysis = Analysed(u"a b", 100, SSA_CLIP);
  EXPECT_EQ(ScriptString_pLogAttr(analysis), nullptr);
  EXPECT_FALSE(ScriptStringOut(analysis, 10, 5, 0, nullptr, 0, 0, false));
  EXPECT_EQ(InkOf(picture_, kPaper), RECT{});
  ScriptStringFree(analysis);
}

TEST_F(Analyses, KeepTheFontThatTheyWereMadeWith) {
  const SCRIPT_STRING_ANALYSIS analysis = Analysed(u"Total", 100);
  LOGFONTW other;
  other.lfHeight = -8;
  picture_.UseFont(other);
  ScriptStringOut(analysis, 10, 5, 0, nullptr, 0, 0, false);
  EXPECT_GT(Right(), 10 + WidthOf(u"Total"));
  ScriptStringFree(analysis);
}

TEST_F(Analyses, HaveTheLinesOfTheirFont) {
  LOGFONTW record;
  record.lfHeight = -16;
  record.lfUnderline = record.lfStrikeOut = true;
  picture_.UseFont(record);
  Draw(u"Total", 100);
  const std::vector<COLORREF> drawn = picture_.Colours();
  picture_.Fill(0xFF);
  TextOutW(Context(), 10, 5, u"Total");
  EXPECT_EQ(drawn, picture_.Colours());
}

TEST_F(Analyses, StandOnABoxInTheOpaqueMode) {
  SetBkMode(Context(), 2);
  SetBkColor(Context(), 0x00FFFF);
  Draw(u"Total", 100);
  const std::vector<COLORREF> drawn = picture_.Colours();
  picture_.Fill(0xFF);
  TextOutW(Context(), 10, 5, u"Total");
  EXPECT_EQ(drawn, picture_.Colours());
}

TEST_F(Analyses, AreRecordedWithTheTextThatTheyHold) {
  Recorder recorder;
  const RECT clip = {1, 2, 3, 4};
  const SCRIPT_STRING_ANALYSIS analysis = Analysed(u"Total", 100);
  ScriptString_pcOutChars(analysis);
  ScriptString_pSize(analysis);
  ScriptString_pLogAttr(analysis);
  ScriptStringOut(analysis, 5, 6, 4, &clip, 0, 0, false);
  ScriptStringFree(analysis);
  EXPECT_EQ(recorder.Lines(), (Lines{
                                  R"(ScriptStringAnalyse("Total",0x4E6,100))",
                                  R"(ScriptString_pcOutChars(analysis("Total")))",
                                  R"(ScriptString_pSize(analysis("Total")))",
                                  R"(ScriptString_pLogAttr(analysis("Total")))",
                                  R"(ScriptStringOut(analysis("Total"),5,6,0x4,[1,2,3,4],0,0,0))",
                                  R"(ScriptStringFree(analysis("Total")))",
                              }));
}

TEST_F(Analyses, AreMadeUsedAndFreedAgainByAReplay) {
  Recorder recorder;
  const SCRIPT_STRING_ANALYSIS analysis = Analysed(u"Total", 100);
  ScriptStringOut(analysis, 10, 5, 0, nullptr, 0, 0, false);
  ScriptStringFree(analysis);
  const SCRIPT_STRING_ANALYSIS kept = Analysed(u"kept", 100);
  const std::vector<COLORREF> drawn = picture_.Colours();
  picture_.Fill(0xFF);
  recorder.Replay();
  EXPECT_EQ(picture_.Colours(), drawn);
  ScriptStringFree(kept);
}

TEST_F(Analyses, FailOnRequest) {
  Recorder recorder;
  const SCRIPT_STRING_ANALYSIS analysis = Analysed(u"Total", 100);
  for (const char* operation : {"ScriptStringAnalyse", "ScriptString_pcOutChars", "ScriptString_pSize",
                                "ScriptString_pLogAttr", "ScriptStringOut", "ScriptStringFree"})
    recorder.Fail(operation);
  EXPECT_EQ(Analysed(u"x", 100), nullptr);
  EXPECT_EQ(ScriptString_pcOutChars(analysis), nullptr);
  EXPECT_EQ(ScriptString_pSize(analysis), nullptr);
  EXPECT_EQ(ScriptString_pLogAttr(analysis), nullptr);
  EXPECT_FALSE(ScriptStringOut(analysis, 10, 5, 0, nullptr, 0, 0, false));
  EXPECT_FALSE(ScriptStringFree(analysis));
  recorder.FailNothing();
  EXPECT_TRUE(ScriptStringFree(analysis)) << "it is still there";
}

}  // namespace
}  // namespace marklet
