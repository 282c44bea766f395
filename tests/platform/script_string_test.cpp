// Analyses of lines of text: what fits, where lines may end, how large a line is and where it is drawn.
#include <random>
#include <string>

#include "platform/test_picture.h"
#include "platform/uniscribe.h"

namespace marklet {
namespace {

using namespace std::string_literals;

constexpr COLORREF kPaper = 0xFFFFFF;
constexpr std::uint32_t kFlags = SSA_TAB | SSA_CLIP | SSA_FALLBACK | SSA_BREAK | SSA_GLYPHS | SSA_HOTKEY;
constexpr std::uint8_t kCharStop = 4;
constexpr Long kWide = 10'000;

class ScriptString : public testing::Test {
 protected:
  ScriptString() {
    for (TestPicture* picture : {&picture_, &expected_}) {
      picture->Fill(0xFF);
      LOGFONTW record;
      record.lfHeight = -16;
      record.lfFaceName = u"DejaVu Sans";
      picture->UseFont(record);
      SetBkMode(picture->Context(), 1);
    }
  }
  ~ScriptString() override { ScriptStringFree(analysis_); }

  SCRIPT_STRING_ANALYSIS Analyse(std::u16string_view text, Long width = kWide, std::uint32_t flags = kFlags) {
    ScriptStringFree(analysis_);
    analysis_ = ScriptStringAnalyse(Context(), text, flags, width, {}, {}, {});
    return analysis_;
  }
  Long Fitting(std::u16string_view text, Long width) {
    const Long* count = ScriptString_pcOutChars(Analyse(text, width));
    return count != nullptr ? *count : -1;
  }
  SIZE SizeOf(std::u16string_view text, Long width = kWide) {
    const SIZE* size = ScriptString_pSize(Analyse(text, width));
    return size != nullptr ? *size : SIZE{-1, -1};
  }
  Long WidthOf(std::u16string_view text) { return SizeOf(text).cx; }
  std::string Attributes(std::u16string_view text) {
    const std::uint8_t* bytes = ScriptString_pLogAttr(Analyse(text));
    std::string flags;
    for (std::size_t i = 0; i < text.size(); ++i)
      flags += (bytes[i] & 2) != 0 ? 'w' : (bytes[i] & 1) != 0 ? 's' : '-';
    return flags;
  }
  HDC Context() const { return picture_.Context(); }

  TestPicture picture_{200, 60}, expected_{200, 60};
  SCRIPT_STRING_ANALYSIS analysis_ = nullptr;
};

TEST_F(ScriptString, OfAnEmptyTextOrANullContextIsNull) {
  EXPECT_EQ(Analyse(u""), nullptr);
  EXPECT_EQ(ScriptStringAnalyse(nullptr, u"x", kFlags, 10, {}, {}, {}), nullptr);
}

TEST_F(ScriptString, AnswersNothingForNull) {
  EXPECT_EQ(ScriptString_pcOutChars(nullptr), nullptr);
  EXPECT_EQ(ScriptString_pSize(nullptr), nullptr);
  EXPECT_EQ(ScriptString_pLogAttr(nullptr), nullptr);
  EXPECT_FALSE(ScriptStringOut(nullptr, 0, 0, 0, nullptr, 0, 0, false));
  EXPECT_FALSE(ScriptStringFree(nullptr));
}

TEST_F(ScriptString, IsAsWideAndHighAsThePlainText) {
  for (const char16_t* text : {u"Mini", u"a", u"Hello world", u"\u05E9\u05DC\u05D5\u05DD", u"\u4E2D\u6587"})
    EXPECT_EQ(SizeOf(text), picture_.Extent(text)) << testing::PrintToString(std::u16string(text));
}

TEST_F(ScriptString, FitsAsManyCharactersAsTheWidthHolds) {
  const std::u16string_view text = u"Hello, world";
  for (Long width = -1; width <= WidthOf(text) + 1; ++width) {
    Long fitting = 0;
    for (std::size_t n = 1; n <= text.size(); ++n)
      if (WidthOf(text.substr(0, n)) <= width) fitting = static_cast<Long>(n);
    EXPECT_EQ(Fitting(text, width), fitting) << width;
  }
}

TEST_F(ScriptString, FitsAtAnyWidthWhatFitsWhenItStandsAlone) {
  std::mt19937 random(5);
  const std::u16string letters = u"abc \u05D0\u05D1\u0628\u0639\u0644\u064B\u0301-\u4E2D";
  for (int round = 0; round < 60; ++round) {
    std::u16string text = u"\u0628";
    while (text.size() < 20) text += letters[random() % letters.size()];
    const Long width = static_cast<Long>(random() % 160);
    const auto fitting = static_cast<std::size_t>(Fitting(text, width));
    ASSERT_LE(fitting, text.size());
    if (fitting == 0) continue;
    EXPECT_LE(WidthOf(std::u16string_view(text).substr(0, fitting)), width)
        << testing::PrintToString(text) << ' ' << width;
    if (fitting < text.size()) {
      EXPECT_GT(WidthOf(text), width);
    }
  }
}

TEST_F(ScriptString, FitsTheLongestPartOfWholeClustersInLinesOfAnyDirection) {
  std::mt19937 random(7);
  const std::u16string_view alphabets[] = {u"abcfiAVT, ", u"\u05D0\u05D1\u05B0\u05D2, ",
                                           u"\u0628\u0639\u0644\u0627\u064B ",
                                           u"abc12 \u05D0\u05D1\u0628\u0639\u0661-", u"\u4E2D\u6587\u3002"};
  for (int round = 0; round < 150; ++round) {
    const std::u16string_view letters = alphabets[random() % std::size(alphabets)];
    const std::uint32_t flags = kFlags | (random() % 2 != 0 ? SSA_RTL : 0);
    std::u16string text(5 + random() % 40, u' ');
    // A mark without a letter is another matter.
    for (std::size_t i = 0; i < text.size();) {
      const char16_t c = letters[random() % letters.size()];
      const bool mark = c == 0x05B0 || c == 0x064B;
      if (!mark || (i > 0 && text[i - 1] >= 0x05D0)) text[i++] = c;
    }
    const auto width = static_cast<Long>(random() % 200);
    const std::uint8_t* bytes = ScriptString_pLogAttr(Analyse(text, kWide, flags));
    std::vector<std::uint8_t> attributes(bytes, bytes + text.size());
    attributes.push_back(kCharStop);
    std::size_t longest = 0;
    for (std::size_t end = 1; end <= text.size(); ++end) {
      if ((attributes[end] & kCharStop) == 0) continue;
      Analyse(std::u16string_view(text).substr(0, end), kWide, flags);
      if (ScriptString_pSize(analysis_)->cx <= width) longest = end;
    }
    EXPECT_EQ(*ScriptString_pcOutChars(Analyse(text, width, flags)), static_cast<Long>(longest))
        << testing::PrintToString(text) << ' ' << width << ' ' << (flags & SSA_RTL);
  }
}

// How much is looked at follows from the line before; what fits must not.
TEST_F(ScriptString, FitsAlikeAfterLinesOfFewAndOfManyCharacters) {
  struct Kind {
    std::u16string_view letters;
    char16_t narrow, wide;
  };
  const Kind kinds[] = {{u"iWAVfa, ", u'i', u'W'},
                        {u"\u0628\u0639\u0644\u0627 ", u'\u0627', u'\u0634'},
                        {u"\u4E2D\u6587\u3002", u'\u3002', u'\u4E2D'}};
  std::mt19937 random(11);
  constexpr Long kWidth = 180;
  for (const Kind& kind : kinds)
    for (int round = 0; round < 25; ++round) {
      std::u16string text(150, u' ');
      for (char16_t& c : text) c = kind.letters[random() % kind.letters.size()];
      text.front() = kind.letters.front();
      const Long many = Fitting(std::u16string(300, kind.narrow), kWidth);
      const Long after_many = Fitting(text, kWidth);
      const Long few = Fitting(std::u16string(300, kind.wide), kWidth);
      EXPECT_LE(few, many);
      EXPECT_EQ(Fitting(text, kWidth), after_many) << testing::PrintToString(text);
    }
}

TEST_F(ScriptString, NeverEndsInsideAPairOrInFrontOfAMark) {
  const std::u16string text = u"e\u0301\U0001F600\u05D0\u05B0\u0628\u064B\u0631";
  const auto whole = [&](Long at) {
    for (const Long inside : {1, 3, 5, 7})
      if (at == inside) return false;
    return true;
  };
  for (Long width = 0; width <= WidthOf(text); ++width) EXPECT_TRUE(whole(Fitting(text, width))) << width;
}

TEST_F(ScriptString, EndsWithItsFirstLineEndAtTheLatest) {
  EXPECT_EQ(Fitting(u"ab\r\ncd", kWide), 4);
  EXPECT_EQ(Fitting(u"\r\n\r\n", kWide), 2);
  EXPECT_EQ(Fitting(u"ab\rcd\n", kWide), 6) << "only a pair ends a line";
}

TEST_F(ScriptString, HasAllOfTheTextWithoutClipping) {
  Analyse(u"Hello\r\nworld", 10, kFlags & ~SSA_CLIP);
  EXPECT_EQ(*ScriptString_pcOutChars(analysis_), 12);
  EXPECT_EQ(ScriptString_pSize(analysis_)->cx, picture_.Extent(u"Helloworld").cx);
}

TEST_F(ScriptString, LineEndsNulsAndSoftHyphensTakeNoRoom) {
  const Long width = WidthOf(u"ab");
  for (const std::u16string& text : {u"ab\r"s, u"\nab"s, u"a\u00AD\u0062"s, u"ab\0"s, u"\r\n"s + u""s})
    EXPECT_EQ(WidthOf(text), text[0] == u'\r' ? 0 : width) << testing::PrintToString(text);
}

TEST_F(ScriptString, TabsReachToTheNextStop) {
  const Long stop = WidthOf(u"\t");
  EXPECT_NEAR(stop, 8 * 9, 8) << "eight average characters";
  EXPECT_EQ(WidthOf(u"ab\t"), stop);
  EXPECT_EQ(WidthOf(u"ab\tc\t"), 2 * stop);
  EXPECT_EQ(WidthOf(u"ab\tc"), stop + WidthOf(u"c"));
}

TEST_F(ScriptString, LinesMayEndAtBlanksAndWhereWordsBegin) {
  EXPECT_EQ(Attributes(u"Hello world"), "-----ws----");
  EXPECT_EQ(Attributes(u"a  b"), "-wws");
  EXPECT_EQ(Attributes(u"a\u00A0\u0062"), "---") << "not at a no-break space";
  EXPECT_EQ(Attributes(u"\u4E2D\u6587\u4E2D"), "-ss");
}

TEST_F(ScriptString, ACaretStandsInFrontOfEachCluster) {
  const std::u16string_view text = u"a\u05D0\u05B0\u05D1";
  const std::uint8_t* bytes = ScriptString_pLogAttr(Analyse(text));
  std::string stops;
  for (std::size_t i = 0; i < text.size(); ++i) stops += (bytes[i] & 4) != 0 ? '|' : '.';
  EXPECT_EQ(stops, "||.|");
}

// Shaping may move letters closer together, as in "To".
TEST_F(ScriptString, IsDrawnAsThePlainTextIs) {
  ScriptStringOut(Analyse(u"Mini"), 20, 10, 0, nullptr, 0, 0, false);
  TextOutW(expected_.Context(), 20, 10, u"Mini");
  EXPECT_NE(InkOf(expected_, kPaper), RECT{});
  EXPECT_EQ(picture_.Colours(), expected_.Colours());
}

// Several items must move as one.
TEST_F(ScriptString, StandsAsAWholeWhereTheTextAlignmentPutsIt) {
  const std::u16string_view text = u"\u05D0\u05D1\u05D2 abc";
  const Long width = WidthOf(text);
  const auto drawn = [&](std::uint32_t align, Long x, Long y) {
    picture_.Fill(0xFF);
    SetTextAlign(Context(), align);
    EXPECT_TRUE(ScriptStringOut(Analyse(text), x, y, 0, nullptr, 0, 0, false));
    EXPECT_EQ(SetTextAlign(Context(), 0), align) << "it stays as it was";
    return picture_.Colours();
  };
  const std::vector<COLORREF> left = drawn(0, 50, 20);
  EXPECT_NE(InkOf(picture_, kPaper), RECT{});
  EXPECT_EQ(drawn(TA_RIGHT, 50 + width, 20), left);
  EXPECT_EQ(drawn(TA_CENTER, 50 + width / 2, 20), left);
  EXPECT_EQ(drawn(8, 50, 20 + SizeOf(text).cy), left);
}

TEST_F(ScriptString, IsClippedToTheRectangleOnRequest) {
  const RECT clip = {30, 0, 45, 60};
  EXPECT_TRUE(ScriptStringOut(Analyse(u"WWWWWW"), 10, 10, 4, &clip, 0, 0, false));
  const RECT ink = InkOf(picture_, kPaper);
  EXPECT_GE(ink.left, 30);
  EXPECT_LE(ink.right, 45);
  EXPECT_LT(ink.left, ink.right);
  picture_.Fill(0xFF);
  EXPECT_TRUE(ScriptStringOut(Analyse(u"WWWWWW"), 10, 10, 0, &clip, 0, 0, false));
  EXPECT_LT(InkOf(picture_, kPaper).left, 30) << "only then";
}

TEST_F(ScriptString, ShowsTheCharacterThatHangsOverTheEdge) {
  const Long width = WidthOf(u"ab");
  EXPECT_EQ(Fitting(u"ab\u2026", width), 2);
  EXPECT_EQ(ScriptString_pSize(analysis_)->cx, WidthOf(u"ab\u2026"));
  ScriptStringOut(Analyse(u"ab\u2026", width), 20, 10, 0, nullptr, 0, 0, false);
  TextOutW(expected_.Context(), 20, 10, u"ab\u2026");
  EXPECT_EQ(picture_.Colours(), expected_.Colours());
}

TEST_F(ScriptString, RunsFromRightToLeftOnRequest) {
  ScriptStringOut(Analyse(u"\u05D0 l", kWide, kFlags | SSA_RTL), 20, 10, 0, nullptr, 0, 0, false);
  ScriptStringFree(ScriptStringAnalyse(expected_.Context(), u"l", kFlags, kWide, {}, {}, {}));
  // The letter of the other script now stands first.
  TextOutW(expected_.Context(), 20, 10, u"l");
  const RECT letter = InkOf(expected_, kPaper), ink = InkOf(picture_, kPaper);
  EXPECT_EQ(ink.left, letter.left);
  for (Long x = letter.left; x < letter.right; ++x) EXPECT_EQ(picture_.Pixel(x, 18), expected_.Pixel(x, 18));
}

TEST_F(ScriptString, OfMarksWithNothingToStandOnComesThrough) {
  for (const char16_t* text : {u"\u05B0\u05D0", u"ab\u05B0\u05D0", u"\u064B\u0628", u"\u200B\u064B\u0628",
                               u"\u0301", u"\u093F\u0915", u"\u05B0\u05B0\u05D0\u05D1"}) {
    EXPECT_GT(Fitting(text, kWide), 0);
    EXPECT_TRUE(ScriptStringOut(Analyse(text), 20, 10, 0, nullptr, 0, 0, false));
  }
}

// A run that ends so is enough to end a program with Wine's own script processor.
TEST_F(ScriptString, OfAMarkOnALigatureComesThrough) {
  for (const std::u16string_view text :
       {u"\u0623\u0647\u0644\u0627\u064B", u"\u0644\u0627\u064B \u0628", u"\u0644\u0622\u064B\u060C",
        u"\u0644\u0627\u064B\u064B\u0628", u"a\u0644\u0627\u0653"}) {
    const Long size = static_cast<Long>(text.size());
    EXPECT_EQ(Fitting(text, kWide), size);
    for (Long width = 0; width < WidthOf(text); width += 3) EXPECT_LT(Fitting(text, width), size);
    EXPECT_TRUE(ScriptStringOut(Analyse(text), 20, 10, 0, nullptr, 0, 0, false));
  }
}

// What an alignment that a line has left set makes of text drawn after it.
TEST_F(ScriptString, TheAlignmentMovesTextInARectangleToo) {
  const Long width = picture_.Extent(u"Total").cx, ascent = 15;
  const auto drawn = [](TestPicture& picture, std::uint32_t align, Long left, Long top, std::uint32_t flags) {
    picture.Fill(0xFF);
    SetTextAlign(picture.Context(), align);
    RECT rect = {left, top, left + 100, top + 30};
    DrawTextW(picture.Context(), u"Total", rect, flags | DT_NOCLIP);
    SetTextAlign(picture.Context(), 0);
    return picture.Colours();
  };
  for (const std::uint32_t flags : {DT_SINGLELINE, DT_WORDBREAK}) {
    EXPECT_EQ(drawn(picture_, TA_RIGHT, 60 + width, 10, flags), drawn(expected_, 0, 60, 10, flags));
    EXPECT_EQ(drawn(picture_, TA_CENTER, 60 + width / 2, 10, flags), drawn(expected_, 0, 60, 10, flags));
    EXPECT_EQ(drawn(picture_, TA_BASELINE, 60, 10 + ascent, flags), drawn(expected_, 0, 60, 10, flags));
  }
  EXPECT_EQ(drawn(picture_, TA_RIGHT, 60 + width, 10, DT_SINGLELINE | DT_RIGHT),
            drawn(expected_, 0, 60, 10, DT_SINGLELINE | DT_RIGHT))
      << "also where the flags place the line";
}

TEST_F(ScriptString, TheAlignmentLeavesMeasuresAlone) {
  RECT plain = {5, 6, 50, 60}, aligned = plain;
  DrawTextW(Context(), u"Hello world", plain, DT_WORDBREAK | DT_CALCRECT);
  SetTextAlign(Context(), TA_RIGHT);
  DrawTextW(Context(), u"Hello world", aligned, DT_WORDBREAK | DT_CALCRECT);
  EXPECT_EQ(aligned, plain);
}

TEST_F(ScriptString, OfAHugeTextLooksAtNoMoreThanALine) {
  // A million characters, and yet a thousand analyses take no time to speak of.
  const std::u16string text(1'000'000, u'\u0628');
  for (int round = 0; round < 100; ++round) EXPECT_LT(Fitting(text, 100), 100);
}

TEST_F(ScriptString, OfMarksAloneStillEnds) {
  const std::u16string text(100'000, u'\u0301');
  const Long fitting = Fitting(text, 100);
  EXPECT_GT(fitting, 100);
  EXPECT_LT(fitting, 2'000);
}

TEST_F(ScriptString, InAFontOfAnySizeIsDrawn) {
  for (const Long height : {-1, -3000, -40000, 32767}) {
    LOGFONTW record;
    record.lfHeight = height;
    picture_.UseFont(record);
    picture_.Fill(0xFF);
    EXPECT_TRUE(ScriptStringOut(Analyse(u"W\u05D0", 2'000'000), 0, 0, 0, nullptr, 0, 0, false)) << height;
  }
}

}  // namespace
}  // namespace marklet
