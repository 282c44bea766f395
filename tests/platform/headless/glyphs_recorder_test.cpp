// How text looks with the pinned fonts.
#include <ctime>
#include <set>
#include <string>

#include "platform/test_picture.h"
#include "platform/uniscribe.h"

namespace marklet {
namespace {

constexpr COLORREF kPaper = 0xFFFFFF;

class Glyphs : public testing::Test {
 protected:
  static LOGFONTW Record(const char16_t* name = u"Tahoma") {
    LOGFONTW record;
    record.lfHeight = -16;
    record.lfFaceName = name;
    return record;
  }
  // The pixels of a text at (10, 5).
  std::vector<COLORREF> Drawn(std::u16string_view text, const LOGFONTW& record = Record(),
                              std::uint32_t align = 0) {
    Prepare(record);
    SetTextAlign(picture_.Context(), align);
    TextOutW(picture_.Context(), 10, 5, text);
    return picture_.Colours();
  }
  RECT InkOfText(std::u16string_view text, const LOGFONTW& record = Record()) {
    Drawn(text, record);
    return InkOf(picture_, kPaper);
  }
  Long WidthOf(std::u16string_view text, const LOGFONTW& record = Record()) {
    Prepare(record);
    return picture_.Extent(text).cx;
  }
  void Prepare(const LOGFONTW& record) {
    picture_.Fill(0xFF);
    picture_.UseFont(record);
    SetBkMode(picture_.Context(), TRANSPARENT);
  }
  // How dark the text is in all.
  std::int64_t InkIn(const std::vector<COLORREF>& colours) {
    std::int64_t ink = 0;
    for (const COLORREF colour : colours) ink += 255 - GreenOf(colour);
    return ink;
  }

  TestPicture picture_{240, 40};
};

// It is shaped by itself, and only once.
TEST_F(Glyphs, OfABlankAfterAWordTakeTheRoomOfABlankEachTime) {
  for (const std::u16string word : {u"\u05D0", u"\u05D1\u05D2", u"\u0628", u"\u05D0\u0628", u"\u05D3"}) {
    EXPECT_EQ(WidthOf(word + u" "), WidthOf(word) + WidthOf(u" ")) << testing::PrintToString(word);
    const SCRIPT_STRING_ANALYSIS analysis =
        ScriptStringAnalyse(picture_.Context(), word + u" ", SSA_CLIP | SSA_BREAK, WidthOf(word), {}, {}, {});
    EXPECT_EQ(*ScriptString_pcOutChars(analysis), static_cast<Long>(word.size())) << "it is the last";
    ScriptStringFree(analysis);
  }
}

TEST_F(Glyphs, OfAFaceThatIsNotThereAreThoseOfNoFace) {
  const std::vector<COLORREF> none = Drawn(u"Total \u05D0 \u4E2D", Record(u""));
  for (const char16_t* name : {u"no such face", u"1", u",", u" x, y ", u"\xD800", u"\u4E2D\u6587"}) {
    EXPECT_EQ(Drawn(u"Total \u05D0 \u4E2D", Record(name)), none)
        << testing::PrintToString(std::u16string(name));
  }
}

TEST_F(Glyphs, OfThousandsOfFacesThatAreNotThereAreFoundAtOnce) {
  const std::clock_t start = std::clock();
  for (int number = 0; number < 5000; ++number) {
    const std::string digits = std::to_string(number);
    const LOGFONTW record = Record(std::u16string(digits.begin(), digits.end()).c_str());
    ASSERT_GT(WidthOf(u"x", record), 0);
  }
  EXPECT_LT(std::clock() - start, CLOCKS_PER_SEC);
}

TEST_F(Glyphs, OfAFaceAreItsOwnHoweverItsNameIsWritten) {
  const std::vector<COLORREF> none = Drawn(u"Total", Record(u""));
  const std::vector<COLORREF> mono = Drawn(u"Total", Record(u"DejaVu Sans Mono"));
  EXPECT_NE(mono, none);
  for (const char16_t* name : {u"dejavu sans mono", u"DejaVuSansMono", u"DEJAVU SANS MONO"}) {
    EXPECT_EQ(Drawn(u"Total", Record(name)), mono) << testing::PrintToString(std::u16string(name));
  }
  EXPECT_EQ(Drawn(u"Total", Record(u"Courier New")), mono) << "by a rule for substitutes";
  EXPECT_EQ(Drawn(u"Total", Record(u"Times New Roman")), Drawn(u"Total", Record(u"DejaVu Serif")));
}

TEST_F(Glyphs, OfAFaceThatIsNotThereAreOfTheKindThatItsRuleNames) {
  EXPECT_EQ(Drawn(u"Total", Record(u"Teletype")), Drawn(u"Total", Record(u"DejaVu Sans Mono")));
}

TEST_F(Glyphs, StandOneAfterTheOther) {
  const std::vector<COLORREF> whole = Drawn(u"Total");
  Prepare(Record());
  Long x = 10;
  for (const char16_t character : {u'T', u'o', u't', u'a', u'l'}) {
    TextOutW(picture_.Context(), x, 5, {&character, 1});
    x += picture_.Extent({&character, 1}).cx;
  }
  EXPECT_EQ(picture_.Colours(), whole);
}

TEST_F(Glyphs, OfEveryDepthAreTheSame) {
  const std::vector<COLORREF> three_bytes = Drawn(u"Total \u05E9\u05DC \u4E2D");
  TestPicture deep(240, 40, 32);
  deep.Fill(0xFF);
  deep.UseFont(Record());
  SetBkMode(deep.Context(), TRANSPARENT);
  TextOutW(deep.Context(), 10, 5, u"Total \u05E9\u05DC \u4E2D");
  EXPECT_EQ(deep.Colours(), three_bytes);
  EXPECT_EQ(deep.At(10, 10)[3], 0xFF) << "text leaves alpha alone";
}

TEST_F(Glyphs, MixColoursByTheirCoverage) {
  const std::vector<COLORREF> black = Drawn(u"Sage");
  Prepare(Record());
  picture_.Fill(0x40);
  SetTextColor(picture_.Context(), 0xE08020);
  TextOutW(picture_.Context(), 10, 5, u"Sage");
  const std::vector<COLORREF> coloured = picture_.Colours();
  SetTextColor(picture_.Context(), 0);
  std::set<unsigned> coverages;
  for (std::size_t i = 0; i < black.size(); ++i) {
    const unsigned coverage = 255 - GreenOf(black[i]);
    coverages.insert(coverage);
    for (int shift = 0; shift < 24; shift += 8) {
      const unsigned wanted = 0xE08020u >> shift & 0xFF;
      const double expected = 0x40 + (double(wanted) - 0x40) * coverage / 255;
      ASSERT_NEAR(coloured[i] >> shift & 0xFF, expected, 0.5 + 1e-9);
    }
  }
  EXPECT_GT(coverages.size(), 10u) << "edges are smooth";
}

TEST_F(Glyphs, OfBoldTextAreHeavier) {
  LOGFONTW bold = Record();
  bold.lfWeight = 700;
  EXPECT_GT(InkIn(Drawn(u"Total", bold)), InkIn(Drawn(u"Total")) * 5 / 4);
}

TEST_F(Glyphs, OfItalicTextLean) {
  LOGFONTW italic = Record();
  italic.lfItalic = true;
  Drawn(u"l", italic);
  const RECT ink = InkOf(picture_, kPaper);
  Long top = 0, bottom = 0;
  for (Long x = ink.left; x < ink.right; ++x) {
    if (GreenOf(picture_.Pixel(x, ink.top)) < 128) top = x;
    if (GreenOf(picture_.Pixel(x, ink.bottom - 1)) < 128) bottom = x;
  }
  EXPECT_GT(top, bottom);
}

// The ideographs come from a typeface with one cut only.
TEST_F(Glyphs, WithoutABoldOrItalicCutAreMadeBoldAndLeaning) {
  LOGFONTW bold = Record(), italic = Record();
  bold.lfWeight = 700;
  italic.lfItalic = true;
  EXPECT_GT(InkIn(Drawn(u"\u4E2D\u6587", bold)), InkIn(Drawn(u"\u4E2D\u6587")) * 11 / 10);
  EXPECT_NE(Drawn(u"\u4E2D", italic), Drawn(u"\u4E2D"));
}

TEST_F(Glyphs, ComeFromOtherTypefacesWhereTheirsLacksThem) {
  const std::vector<COLORREF> missing = Drawn(u"\xFFFF");
  for (const std::u16string_view text : {u"\u03A9", u"\u0416", u"\u05D0", u"\u0627", u"\u4E2D", u"\u3042"})
    EXPECT_NE(Drawn(text), missing);
}

TEST_F(Glyphs, ThatNoTypefaceHasAreOneBox) {
  const std::vector<COLORREF> missing = Drawn(u"\xFFFF");
  EXPECT_NE(InkIn(missing), 0);
  using namespace std::string_literals;
  for (const std::u16string& text :
       {u"\xD800"s, u"\xDC00"s, u"\0"s, u"\xFFFE"s, u"\uFDD0"s, u"\uE800"s, u"\U000F1234"s, u"\U0001FFFE"s}) {
    EXPECT_EQ(Drawn(text), missing);
    EXPECT_EQ(WidthOf(text), WidthOf(u"\xFFFF"));
  }
}

TEST_F(Glyphs, OfControlCharactersAreBlank) {
  for (char16_t c = 1; c < 0x20; ++c) {
    EXPECT_EQ(InkIn(Drawn({&c, 1})), 0);
    EXPECT_EQ(WidthOf({&c, 1}), WidthOf(u" "));
  }
}

TEST_F(Glyphs, OfAControlInShapedTextAreBlankToo) {
  EXPECT_EQ(Drawn(u"\u05D0\t\u05D1"), Drawn(u"\u05D0 \u05D1"));
}

TEST_F(Glyphs, OfHebrewRunFromRightToLeft) {
  // The same letters put down one by one, the last one first.
  const std::vector<COLORREF> whole = Drawn(u"\u05D0\u05D1\u05D2");
  Prepare(Record());
  Long x = 10;
  for (const char16_t letter : {u'\u05D2', u'\u05D1', u'\u05D0'}) {
    TextOutW(picture_.Context(), x, 5, {&letter, 1});
    x += picture_.Extent({&letter, 1}).cx;
  }
  EXPECT_EQ(picture_.Colours(), whole);
}

TEST_F(Glyphs, OfHebrewInsideLatinTurnRoundAlone) {
  const std::vector<COLORREF> whole = Drawn(u"ab\u05D0\u05D1cd");
  Prepare(Record());
  Long x = 10;
  for (const char16_t letter : {u'a', u'b', u'\u05D1', u'\u05D0', u'c', u'd'}) {
    TextOutW(picture_.Context(), x, 5, {&letter, 1});
    x += picture_.Extent({&letter, 1}).cx;
  }
  EXPECT_EQ(picture_.Colours(), whole);
}

TEST_F(Glyphs, ReadFromRightToLeftPutTheFullStopFirst) {
  EXPECT_EQ(Drawn(u"Total.", Record(), TA_RTLREADING), Drawn(u".Total"));
  EXPECT_EQ(Drawn(u"Total", Record(), TA_RTLREADING), Drawn(u"Total"));
}

TEST_F(Glyphs, OfArabicJoin) {
  // Two letters that join are drawn in other forms than alone.
  EXPECT_NE(WidthOf(u"\u0628\u0628"), 2 * WidthOf(u"\u0628"));
}

TEST_F(Glyphs, OfMarksStandOnTheirLetter) {
  EXPECT_EQ(WidthOf(u"e\u0301"), WidthOf(u"e"));
  EXPECT_LT(InkOfText(u"e\u0301").top, InkOfText(u"e").top);
}

TEST_F(Glyphs, OfTahomaAreAboutAsWideAsTheFormsOfThatTypefaceExpect) {
  // The Tahoma that comes with Wine takes 218 pixels at this height.
  LOGFONTW tahoma = Record();
  tahoma.lfHeight = -11;
  EXPECT_NEAR(WidthOf(u"The quick brown fox jumps over the lazy dog", tahoma), 218, 15);
}

TEST_F(Glyphs, TellWhichCharacterAMarkUnderlinesInHebrew) {
  Prepare(Record());
  RECT rect = {10, 5, 200, 35};
  DrawTextW(picture_.Context(), u"&\u05D0\u05D1\u05D2", rect, DT_SINGLELINE);
  const std::vector<COLORREF> marked = picture_.Colours();
  const std::vector<COLORREF> plain = Drawn(u"\u05D0\u05D1\u05D2");
  Long left = 240;
  for (std::size_t i = 0; i < plain.size(); ++i)
    if (marked[i] != plain[i]) left = std::min(left, static_cast<Long>(i % 240));
  // The first letter stands last.
  EXPECT_EQ(left, 10 + WidthOf(u"\u05D1\u05D2"));
}

TEST_F(Glyphs, LetABlankHangOverTheEdgeWhereALineBreaks) {
  Prepare(Record());
  const Long width = picture_.Extent(u"alpha beta").cx;
  RECT rect = {0, 0, width, 100};
  DrawTextW(picture_.Context(), u"alpha beta gamma", rect, DT_WORDBREAK | DT_CALCRECT);
  EXPECT_EQ(rect.bottom, 2 * picture_.Extent(u"x").cy);
  EXPECT_EQ(rect.right, width);
}

struct Script {
  const char* name;
  const char16_t* text;
  Long complex;
};
class Scripts : public testing::TestWithParam<Script> {};

TEST_P(Scripts, NeedShapingOrNot) {
  EXPECT_EQ(ScriptIsComplex(GetParam().text, SIC_COMPLEX), GetParam().complex);
  const std::u16string inside = u"abc " + std::u16string(GetParam().text) + u" 123";
  EXPECT_EQ(ScriptIsComplex(inside, SIC_COMPLEX), GetParam().complex);
}

INSTANTIATE_TEST_SUITE_P(
    All, Scripts,
    testing::Values(Script{"Latin", u"Total", S_FALSE}, Script{"Accented", u"\u00C5\u00E9\u0151", S_FALSE},
                    Script{"Greek", u"\u0391\u03A9", S_FALSE}, Script{"Cyrillic", u"\u0416\u0451", S_FALSE},
                    Script{"Armenian", u"\u0531", S_FALSE}, Script{"Georgian", u"\u10D0", S_FALSE},
                    Script{"Ethiopic", u"\u1200", S_OK}, Script{"Chinese", u"\u4E2D\u6587", S_FALSE},
                    Script{"Kana", u"\u3042\u30A2", S_FALSE}, Script{"Hangul", u"\uAC00", S_OK},
                    Script{"Emoji", u"\U0001F600", S_OK}, Script{"LoneSurrogate", u"\xD800", S_OK},
                    Script{"Tab", u"\t", S_OK}, Script{"CR", u"\r", S_OK}, Script{"LF", u"\n", S_OK},
                    Script{"SoftHyphen", u"\u00AD", S_OK}, Script{"Joiners", u"\u200C", S_OK},
                    Script{"FormFeed", u"\f", S_FALSE}, Script{"Nothing", u"", S_FALSE},
                    Script{"Hebrew", u"\u05D0", S_OK}, Script{"Arabic", u"\u0627", S_OK},
                    Script{"ArabicForms", u"\uFE8D", S_OK}, Script{"Syriac", u"\u0710", S_OK},
                    Script{"Devanagari", u"\u0905", S_OK}, Script{"Tamil", u"\u0B85", S_OK},
                    Script{"Thai", u"\u0E01", S_OK}, Script{"Tibetan", u"\u0F40", S_OK},
                    Script{"Khmer", u"\u1780", S_OK}, Script{"Mongolian", u"\u1820", S_OK},
                    Script{"Combining", u"e\u0301", S_OK}, Script{"Joiner", u"\u200D", S_OK},
                    Script{"DirectionMark", u"\u200F", S_OK}, Script{"Embedding", u"\u202B", S_OK},
                    Script{"Adlam", u"\U0001E900", S_OK}, Script{"Brahmi", u"\U00011005", S_OK}),
    [](const auto& tested) { return tested.param.name; });

}  // namespace
}  // namespace marklet
