// DrawTextW: each layout is compared with the same lines put at worked out points by TextOutW.
#include <limits>

#include "platform/test_picture.h"

namespace marklet {
namespace {

constexpr COLORREF kPaper = 0xFFFFFF;
constexpr Long kWidth = 240, kHeight = 120;

class TextBoxes : public testing::Test {
 protected:
  TextBoxes() {
    picture_.LayOutPaper();
    expected_.LayOutPaper();
    height_ = picture_.Extent(u"x").cy;
  }

  Long WidthOf(std::u16string_view text) const { return picture_.Extent(text).cx; }
  int Draw(std::u16string_view text, RECT rect, std::uint32_t flags) {
    clip_ = (flags & DT_NOCLIP) != 0 ? RECT{0, 0, kWidth, kHeight} : rect;
    return DrawTextW(picture_.Context(), text, rect, flags);
  }
  // The line at this point, as far as the rectangle of the last Draw lets it be seen.
  void Expect(Long x, Long y, std::u16string_view text) {
    constexpr std::uint32_t kClipped = 4;
    ExtTextOutW(expected_.Context(), x, y, kClipped, &clip_, text);
  }
  void ExpectBar(Long left, Long top, Long right) {
    const HBRUSH brush = CreateSolidBrush(0);
    FillRect(expected_.Context(), {left, top, right, top + 1}, brush);
    DeleteObject(brush);
  }
  void ExpectSame() {
    EXPECT_NE(InkOf(expected_, kPaper), RECT{});
    EXPECT_EQ(picture_.Colours(), expected_.Colours());
  }
  // Broken into two lines that are placed by their own widths.
  void ExpectCentredAndRightLines(std::u16string_view text, Long width, std::u16string_view first,
                                  std::u16string_view second) {
    for (const std::uint32_t flag : {DT_CENTER, DT_RIGHT}) {
      picture_.Fill(0xFF);
      expected_.Fill(0xFF);
      Draw(text, {20, 10, 20 + width, 110}, DT_WORDBREAK | flag);
      const auto x = [&](std::u16string_view line) {
        return flag == DT_RIGHT ? 20 + width - WidthOf(line) : (40 + width - WidthOf(line)) / 2;
      };
      Expect(x(first), 10, first);
      Expect(x(second), 10 + height_, second);
      ExpectSame();
    }
  }
  Long Baseline(std::u16string_view text) {
    TestPicture scratch(kWidth, kHeight);
    scratch.LayOutPaper();
    TextOutW(scratch.Context(), 0, 0, text);
    return InkOf(scratch, kPaper).bottom;
  }
  // What DT_CALCRECT makes of a rectangle `width` wide at (30, 40).
  RECT Calculated(std::u16string_view text, Long width, std::uint32_t flags) {
    RECT rect = {30, 40, 30 + width, 45};
    const int returned = DrawTextW(picture_.Context(), text, rect, flags | DT_CALCRECT);
    EXPECT_EQ(returned, rect.bottom - rect.top);
    EXPECT_EQ(rect.left, 30);
    EXPECT_EQ(rect.top, 40);
    EXPECT_EQ(InkOf(picture_, kPaper), RECT{}) << "measuring draws nothing";
    return rect;
  }
  Long LinesOf(std::u16string_view text, Long width, std::uint32_t flags) {
    const RECT rect = Calculated(text, width, flags);
    EXPECT_EQ((rect.bottom - rect.top) % height_, 0);
    return (rect.bottom - rect.top) / height_;
  }

  TestPicture picture_{kWidth, kHeight}, expected_{kWidth, kHeight};
  RECT clip_;
  Long height_ = 0;
};

struct Placement {
  std::uint32_t flags;
  int across, down;  // of the room that is left: 0 none, 1 half, 2 all
};

class PlacedText : public TextBoxes, public testing::WithParamInterface<Placement> {};

TEST_P(PlacedText, StandsInItsPlace) {
  const RECT rect = {20, 10, 201, 71};
  EXPECT_EQ(Draw(u"Total", rect, GetParam().flags | DT_SINGLELINE), height_);
  const Long across = rect.right - rect.left - WidthOf(u"Total");
  const Long x = rect.left + (GetParam().across == 1 ? across / 2 : GetParam().across * across / 2);
  const Long y = GetParam().down == 1   ? rect.top + (rect.bottom - rect.top) / 2 - height_ / 2
                 : GetParam().down == 2 ? rect.bottom - height_
                                        : rect.top;
  // Half a pixel may fall to either side.
  const Long odd = GetParam().across == 1 ? (rect.left + rect.right - WidthOf(u"Total")) / 2 - x : 0;
  Expect(x + odd, y, u"Total");
  ExpectSame();
}

INSTANTIATE_TEST_SUITE_P(Flags, PlacedText,
                         testing::Values(Placement{0, 0, 0}, Placement{DT_CENTER, 1, 0},
                                         Placement{DT_RIGHT, 2, 0}, Placement{DT_VCENTER, 0, 1},
                                         Placement{DT_BOTTOM, 0, 2}, Placement{DT_CENTER | DT_VCENTER, 1, 1},
                                         Placement{DT_RIGHT | DT_BOTTOM, 2, 2},
                                         Placement{DT_WORDBREAK | DT_RIGHT, 2, 0}));

TEST_F(TextBoxes, IgnoresVerticalPlacesOfSeveralLines) {
  Draw(u"Total", {20, 10, 200, 100}, DT_VCENTER);
  Expect(20, 10, u"Total");
  ExpectSame();
  picture_.Fill(0xFF);
  Draw(u"Total", {20, 10, 200, 100}, DT_BOTTOM);
  ExpectSame();
}

TEST_F(TextBoxes, OfNothingReturnsZeroAndLeavesTheRectangle) {
  RECT rect = {1, 2, 3, 4};
  EXPECT_EQ(DrawTextW(picture_.Context(), u"", rect, DT_CALCRECT), 0);
  EXPECT_EQ(rect, (RECT{1, 2, 3, 4}));
  EXPECT_EQ(InkOf(picture_, kPaper), RECT{});
}

TEST_F(TextBoxes, BreaksLinesAtCrAndLf) {
  EXPECT_EQ(Draw(u"One\r\nTwo\nThree\rFour", {20, 10, 200, 110}, 0), 4 * height_);
  Long y = 10;
  for (const std::u16string_view line : {u"One", u"Two", u"Three", u"Four"}) {
    Expect(20, y, line);
    y += height_;
  }
  ExpectSame();
}

struct LineCount {
  const char16_t* text;
  Long lines;
};
class LineEnds : public TextBoxes, public testing::WithParamInterface<LineCount> {};

TEST_P(LineEnds, AreCounted) {
  EXPECT_EQ(LinesOf(GetParam().text, 200, 0), GetParam().lines);
  EXPECT_EQ(LinesOf(GetParam().text, 200, DT_WORDBREAK), GetParam().lines);
}

INSTANTIATE_TEST_SUITE_P(Texts, LineEnds,
                         testing::Values(LineCount{u"a", 1}, LineCount{u"a\n", 1}, LineCount{u"\n", 1},
                                         LineCount{u"a\nb", 2}, LineCount{u"a\r\nb", 2},
                                         LineCount{u"a\n\rb", 2}, LineCount{u"a\n\nb", 3},
                                         LineCount{u"a\r\rb", 3}, LineCount{u"\r\rb", 3},
                                         LineCount{u"a\r\n\r\nb", 3}, LineCount{u"\r\n\r\na", 3}));

TEST_F(TextBoxes, OnASingleLineBreaksNothing) {
  EXPECT_EQ(LinesOf(u"a\r\nb", 200, DT_SINGLELINE), 1);
  EXPECT_EQ(LinesOf(u"many words in a row", 20, DT_SINGLELINE | DT_WORDBREAK), 1);
}

TEST_F(TextBoxes, WithoutWordBreakRunsPastTheRectangle) {
  EXPECT_EQ(LinesOf(u"many words in a row", 20, 0), 1);
  EXPECT_EQ(Calculated(u"many words in a row", 20, 0).right, 30 + WidthOf(u"many words in a row"));
}

TEST_F(TextBoxes, CalculatesTheWidestLine) {
  EXPECT_EQ(Calculated(u"One\nThree\nTwo", 200, 0).right, 30 + WidthOf(u"Three"));
  EXPECT_EQ(Calculated(u"Total", 200, DT_RIGHT).right, 30 + WidthOf(u"Total"));
}

TEST_F(TextBoxes, BreaksBetweenWordsThatDontFit) {
  const Long width = WidthOf(u"alpha beta ");
  EXPECT_EQ(Draw(u"alpha beta gamma", {20, 10, 20 + width, 110}, DT_WORDBREAK), 2 * height_);
  Expect(20, 10, u"alpha beta");
  Expect(20, 10 + height_, u"gamma");
  ExpectSame();
}

TEST_F(TextBoxes, BreaksBeforeAWordThatIsOnePixelTooWide) {
  EXPECT_EQ(LinesOf(u"alpha beta", WidthOf(u"alpha beta"), DT_WORDBREAK), 1);
  EXPECT_EQ(LinesOf(u"alpha beta", WidthOf(u"alpha beta") - 1, DT_WORDBREAK), 2);
}

TEST_F(TextBoxes, LeavesTheBlankAtABreakOutOfCentredAndRightLines) {
  ExpectCentredAndRightLines(u"alpha beta", WidthOf(u"alpha beta") - 1, u"alpha", u"beta");
}

TEST_F(TextBoxes, KeepsAWordWholeThatIsWiderThanTheRectangle) {
  const Long width = WidthOf(u"incomp");
  EXPECT_EQ(LinesOf(u"an incomprehensibility is", width, DT_WORDBREAK), 3);
  EXPECT_EQ(Calculated(u"an incomprehensibility is", width, DT_WORDBREAK).right,
            30 + WidthOf(u"incomprehensibility"));
}

TEST_F(TextBoxes, BreaksBetweenIdeographs) {
  const Long width = WidthOf(u"\u4E2D\u6587") + 1;
  EXPECT_EQ(LinesOf(u"\u4E2D\u6587\u5B57\u4F53", width, DT_WORDBREAK), 2);
}

struct TwoLines {
  std::string name;
  std::u16string_view text, fits;  // the rectangle is as wide as `fits`
  std::u16string_view first, second;
};
class WordBreaks : public TextBoxes, public testing::WithParamInterface<TwoLines> {};

TEST_P(WordBreaks, AreTheSameOnAllPlatforms) {
  const TwoLines& it = GetParam();
  const RECT rect = {20, 10, 20 + WidthOf(it.fits), 110};
  EXPECT_EQ(Draw(it.text, rect, DT_WORDBREAK | DT_NOCLIP), 2 * height_);
  Expect(20, 10, it.first);
  Expect(20, 10 + height_, it.second);
  ExpectSame();
}

INSTANTIATE_TEST_SUITE_P(
    Texts, WordBreaks,
    testing::Values(
        TwoLines{"AfterAHyphen", u"one well-known", u"one well-kn", u"one well-", u"known"},
        TwoLines{"AfterASlash", u"one either/or", u"one either/o", u"one either/", u"or"},
        TwoLines{"AfterAnExclamation", u"one al!pha", u"one al!ph", u"one al!", u"pha"},
        TwoLines{"AfterATab", u"one al\tpha", u"one al\tph", u"one al\t", u"pha"},
        TwoLines{"AfterASoftHyphen", u"one al\u00ADpha", u"one al\u00ADph", u"one al\u00AD", u"pha"},
        TwoLines{"AfterAWideBlank", u"one al\u3000pha", u"one al\u3000ph", u"one al\u3000", u"pha"},
        TwoLines{"AfterADash", u"one al\u2014pha", u"one al\u2014ph", u"one al\u2014", u"pha"},
        TwoLines{"NotInANumber", u"one 1,200", u"one 1,2", u"one ", u"1,200"},
        TwoLines{"NotAfterAPercentSign", u"one 50%alpha", u"one 50%al", u"one ", u"50%alpha"},
        TwoLines{"NotAfterAComma", u"one al,pha", u"one al,ph", u"one ", u"al,pha"},
        TwoLines{"NotAtAFixedBlank", u"one al\u00A0pha", u"one al\u00A0ph", u"one ", u"al\u00A0pha"},
        TwoLines{"AtTheBlankAfterATooWideWord", u"incomprehensibility-of is", u"incomp",
                 u"incomprehensibility-of", u"is"},
        TwoLines{"NotBeforeAFullStop", u"\u4E2D\u6587\u3002", u"\u4E2D\u6587", u"\u4E2D", u"\u6587\u3002"},
        TwoLines{"NotAfterAnOpeningSign", u"\u4E2D\u300C\u6587", u"\u4E2D\u300C", u"\u4E2D", u"\u300C\u6587"},
        TwoLines{"BetweenLettersAndIdeographs", u"ab\u4E2D", u"ab", u"ab", u"\u4E2D"},
        TwoLines{"KeepTwoBlanksThatFit", u"one alpha  beta", u"one alpha  be", u"one alpha  ", u"beta"}),
    [](const auto& tested) { return tested.param.name; });

TEST_F(TextBoxes, DropsOnlyTheLastOfTheBlanksThatFitInCentredAndRightLines) {
  ExpectCentredAndRightLines(u"alpha   beta", WidthOf(u"alpha   be"), u"alpha  ", u"beta");
}

TEST_F(TextBoxes, BreaksNothingButBlanksWhereNoCharacterFits) {
  EXPECT_EQ(LinesOf(u"\u4E2D\u6587\u5B57", 0, DT_WORDBREAK), 1);
  EXPECT_EQ(LinesOf(u"one two", 0, DT_WORDBREAK), 2);
  EXPECT_EQ(LinesOf(u" one", 0, DT_WORDBREAK), 2) << "the blank has a line of its own";
}

TEST_F(TextBoxes, LayOutALineThatBeginsAtTheBottom) {
  EXPECT_EQ(Draw(u"One\nTwo\nThree", {20, 10, 200, 10}, 0), height_);
  EXPECT_EQ(Draw(u"One\nTwo\nThree", {20, 10, 200, 10 + height_ - 1}, 0), height_);
  EXPECT_EQ(Draw(u"One\nTwo\nThree", {20, 10, 200, 10 + height_}, 0), 2 * height_);
}

TEST_F(TextBoxes, EndsATooNarrowLineInThreeDotsAlone) {
  EXPECT_EQ(Calculated(u"Total", 3, DT_SINGLELINE | DT_WORD_ELLIPSIS).right, 30 + WidthOf(u"..."));
}

TEST_F(TextBoxes, EndsATooWideLineInThreeDots) {
  const Long width = WidthOf(u"Tot...");
  Draw(u"Totally out of bounds", {20, 10, 20 + width, 40}, DT_SINGLELINE | DT_WORD_ELLIPSIS);
  Expect(20, 10, u"Tot...");
  ExpectSame();
}

TEST_F(TextBoxes, DropsACharacterForEachPixelThatIsMissing) {
  const Long width = WidthOf(u"Tot...") - 1;
  Draw(u"Totally out of bounds", {20, 10, 20 + width, 40}, DT_SINGLELINE | DT_WORD_ELLIPSIS);
  Expect(20, 10, u"To...");
  ExpectSame();
}

TEST_F(TextBoxes, ThatJustFitsHasNoDots) {
  Draw(u"Totally", {20, 10, 20 + WidthOf(u"Totally"), 40}, DT_SINGLELINE | DT_WORD_ELLIPSIS);
  Expect(20, 10, u"Totally");
  ExpectSame();
}

TEST_F(TextBoxes, PlacesTheShortenedLine) {
  const Long width = WidthOf(u"Tot...") + 1;
  Draw(u"Totally out of bounds", {20, 10, 20 + width, 40}, DT_SINGLELINE | DT_WORD_ELLIPSIS | DT_RIGHT);
  Expect(21, 10, u"Tot...");
  ExpectSame();
}

TEST_F(TextBoxes, ShortensOnlyTheWordThatIsTooWide) {
  const Long width = WidthOf(u"incomp");
  const RECT rect = {20, 10, 20 + width, 110};
  Draw(u"an incomprehensibility is", rect, DT_WORDBREAK | DT_WORD_ELLIPSIS);
  Expect(20, 10, u"an");
  std::u16string shortened = u"incomp...";
  while (WidthOf(shortened) > width) shortened.erase(shortened.size() - 4, 1);
  Expect(20, 10 + height_, shortened);
  Expect(20, 10 + 2 * height_, u"is");
  ExpectSame();
}

TEST_F(TextBoxes, ClipsToTheRectangle) {
  const RECT rect = {25, 13, 45, 19};
  Draw(u"Totally", rect, DT_SINGLELINE);
  TextOutW(expected_.Context(), 25, 13, u"Totally");
  for (Long y = 0; y < kHeight; ++y)
    for (Long x = 0; x < kWidth; ++x) {
      const bool inside = x >= rect.left && x < rect.right && y >= rect.top && y < rect.bottom;
      ASSERT_EQ(picture_.Pixel(x, y), inside ? expected_.Pixel(x, y) : kPaper);
    }
}

TEST_F(TextBoxes, WithNoClipDrawsOutsideTheRectangle) {
  Draw(u"Totally", {25, 13, 26, 14}, DT_SINGLELINE | DT_NOCLIP);
  Expect(25, 13, u"Totally");
  ExpectSame();
}

TEST_F(TextBoxes, IntoAnInvertedRectangleLeavesNothing) {
  Draw(u"Totally", {100, 50, 60, 20}, DT_SINGLELINE);
  EXPECT_EQ(InkOf(picture_, kPaper), RECT{});
}

TEST_F(TextBoxes, UnderlinesTheCharacterAfterAnAmpersand) {
  Draw(u"Save &As", {20, 10, 200, 40}, DT_SINGLELINE);
  Expect(20, 10, u"Save As");
  const Long from = 20 + WidthOf(u"Save ");
  ExpectBar(from, 10 + Baseline(u"H") + 1, from + WidthOf(u"A") - 1);
  ExpectSame();
}

TEST_F(TextBoxes, UnderlinesOnlyTheLastMarkOfALine) {
  Draw(u"&Save &As", {20, 10, 200, 40}, DT_SINGLELINE);
  Expect(20, 10, u"Save As");
  const Long from = 20 + WidthOf(u"Save ");
  ExpectBar(from, 10 + Baseline(u"H") + 1, from + WidthOf(u"A") - 1);
  ExpectSame();
}

TEST_F(TextBoxes, UnderlinesOnEachLine) {
  Draw(u"&One\nT&wo", {20, 10, 200, 80}, 0);
  Expect(20, 10, u"One");
  ExpectBar(20, 10 + Baseline(u"H") + 1, 20 + WidthOf(u"O") - 1);
  Expect(20, 10 + height_, u"Two");
  const Long from = 20 + WidthOf(u"T");
  ExpectBar(from, 10 + height_ + Baseline(u"H") + 1, from + WidthOf(u"w") - 1);
  ExpectSame();
}

TEST_F(TextBoxes, DrawsOneOfTwoAmpersands) {
  Draw(u"a && b", {20, 10, 200, 40}, DT_SINGLELINE);
  Expect(20, 10, u"a & b");
  ExpectSame();
}

TEST_F(TextBoxes, DrawsAnAmpersandThatNothingFollows) {
  Draw(u"a&", {20, 10, 200, 40}, DT_SINGLELINE);
  Expect(20, 10, u"a&");
  ExpectSame();
}

TEST_F(TextBoxes, WithNoPrefixDrawsEveryAmpersand) {
  constexpr std::uint32_t kNoPrefix = 0x800;
  Draw(u"a && &b", {20, 10, 200, 40}, DT_SINGLELINE | kNoPrefix);
  Expect(20, 10, u"a && &b");
  ExpectSame();
}

TEST_F(TextBoxes, OfBytesDrawsTheirCharacters) {
  RECT rect = clip_ = {20, 10, 200, 40};
  EXPECT_EQ(DrawTextA(picture_.Context(), "Caf\xE9", rect, DT_SINGLELINE), height_);
  Expect(20, 10, u"Caf\u00E9");
  ExpectSame();
}

TEST_F(TextBoxes, StandOnTheirBackgroundLineByLine) {
  SetBkMode(picture_.Context(), OPAQUE);
  SetBkColor(picture_.Context(), 0x00FF00);
  SetTextColor(picture_.Context(), 0x00FF00);
  Draw(u"Hill\nill", {20, 10, 200, 80}, DT_NOCLIP);
  for (Long y = 0; y < kHeight; ++y)
    for (Long x = 0; x < kWidth; ++x) {
      const Long width = y < 10 || y >= 10 + 2 * height_ ? 0 : WidthOf(y < 10 + height_ ? u"Hill" : u"ill");
      ASSERT_EQ(picture_.Pixel(x, y), x >= 20 && x < 20 + width ? 0x00FF00u : kPaper) << x << "," << y;
    }
}

TEST_F(TextBoxes, StopsBelowTheRectangle) {
  std::u16string text;
  for (int i = 0; i < 100'000; ++i) text += u"line\n";
  Draw(text, {20, 10, 200, 40}, 0);
  RECT ink = InkOf(picture_, kPaper);
  EXPECT_LE(ink.bottom, 40);
}

}  // namespace
}  // namespace marklet
