// The calls of the manual route, step by step: what is measured, what is drawn and where.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "base/rounding.h"
#include "markup/canvas.h"
#include "platform/headless/recorder/recorder.h"
#include "text/system_fixture.h"

namespace marklet {
namespace {

using Lines = std::vector<std::string>;

enum Align { kLeft, kCenter, kRight };

// Digits are all of one width and wider than a blank, so that it is known which line is too long.
class ManualText : public SystemTest {
 protected:
  ManualText() {
    ConfiguredLocales() = {1025};
    ArabicLocaleInstalled();
  }

  Long Width(std::string_view text) { return Extent(text).cx; }
  Long Height() { return Extent("0").cy; }
  SIZE Extent(std::string_view text) {
    return canvas_.Measure(StdFont(), std::u16string(text.begin(), text.end()));
  }

  // A rectangle in which a line as wide as `line` just fits.
  void MakeRoomFor(std::string_view line) { rect_.right = rect_.left + Width(line); }

  Lines Draw(std::u16string_view text, Align align = kLeft, bool center_vertically = false) {
    recorder_.Clear();
    DrawTextManual(canvas_.dc(), rect_, text, center_vertically, align == kCenter, align == kRight);
    return recorder_.Lines();
  }

  Lines Drawn(std::u16string_view text, Align align = kLeft, bool center_vertically = false) {
    Draw(text, align, center_vertically);
    return recorder_.Lines("TextOutW");
  }

  static std::string Measured(const std::string& text) { return "GetTextExtentPoint32W(\"" + text + "\")"; }
  static Lines Measured(const Lines& texts) {
    Lines lines;
    for (const std::string& text : texts) lines.push_back(Measured(text));
    return lines;
  }
  // At the rectangle's left edge, `row` lines down.
  std::string AtLeft(Long row, const std::string& piece) {
    return At(rect_.left, rect_.top + row * Height(), piece);
  }
  static std::string At(Long x, Long y, const std::string& piece) {
    return "TextOutW(" + std::to_string(x) + "," + std::to_string(y) + ",\"" + piece + "\")";
  }

  Canvas canvas_{400, 200};
  RECT rect_{7, 11, 391, 152};
  Recorder recorder_;
};

TEST_F(ManualText, TheFontOfTheTracesHasDigitsOfOneWidthAndNarrowerBlanks) {
  for (const char* digit : {"1", "2", "3", "4", "5", "6", "7", "8", "9"}) EXPECT_EQ(Width(digit), Width("0"));
  EXPECT_LT(Width(" "), Width("0"));
  EXPECT_GT(Width(" "), 0);
  EXPECT_EQ(Width("12 34"), 4 * Width("0") + Width(" "));
}

// ---- Traces ----

TEST_F(ManualText, ADoubledMarkPrintsOnce) {
  EXPECT_EQ(Draw(u"Save && Exit"), (Lines{Measured("Save & Exit"), AtLeft(0, "Save & Exit")}));
}

TEST_F(ManualText, AMarkBeforeALetterIsLeftOut) {
  EXPECT_EQ(Draw(u"&Save"), (Lines{Measured("Save"), AtLeft(0, "Save")}));
}

TEST_F(ManualText, ThreeMarksAreOneAndAMnemonic) {
  EXPECT_EQ(Draw(u"&&&Save"), (Lines{Measured("&Save"), AtLeft(0, "&Save")}));
}

TEST_F(ManualText, TheMarkersOwnCharactersPrintAsAMark) {
  EXPECT_EQ(Draw(u"1@#$%2"), (Lines{Measured("1&2"), AtLeft(0, "1&2")}));
  EXPECT_EQ(Draw(u"1@#&$%2"), (Lines{Measured("1&2"), AtLeft(0, "1&2")})) << "also once its own mark is out";
}

TEST_F(ManualText, NothingIsDrawnAsNothing) {
  EXPECT_EQ(Draw(u""), (Lines{Measured(""), AtLeft(0, "")}));
  EXPECT_EQ(Draw(u"&"), (Lines{Measured(""), AtLeft(0, "")}));
}

TEST_F(ManualText, ABlankThatNoLongerFitsEndsItsLine) {
  MakeRoomFor("12 34");
  EXPECT_EQ(Draw(u"12 34 56"), (Lines{Measured("12 34 56"), Measured("1"), Measured("12"), Measured("12 "),
                                      Measured("12 3"), Measured("12 34"), Measured("12 34 "),
                                      AtLeft(0, "12 34 "), Measured("5"), Measured("56"), AtLeft(1, "56")}));
}

TEST_F(ManualText, AWordThatOverflowsTheFirstLineIsNotDrawnThereAndTheLastCharactersAreLost) {
  MakeRoomFor("12345");
  EXPECT_EQ(Draw(u"1234567"), (Lines{Measured("1234567"), Measured("1"), Measured("12"), Measured("123"),
                                     Measured("1234"), Measured("12345"), Measured("123456"), AtLeft(0, ""),
                                     Measured("1234567"), AtLeft(1, "1")}));
}

TEST_F(ManualText, AfterTheFirstLineABreakIsOneCharacterAtATime) {
  MakeRoomFor("12 34");
  EXPECT_EQ(Draw(u"12 345678"),
            (Lines{Measured("12 345678"), Measured("1"), Measured("12"), Measured("12 "), Measured("12 3"),
                   Measured("12 34"), Measured("12 345"), AtLeft(0, "12 "), Measured("3456"),
                   Measured("34567"), AtLeft(1, "3"), Measured("45678"), AtLeft(2, "4")}));
}

TEST_F(ManualText, ABreakFurtherOnCountsFromTheStartOfTheTextAndTakesTheWholeLine) {
  MakeRoomFor("12 34");
  // The second blank is the seventh character: seven characters of "345 67" are all of it.
  EXPECT_EQ(
      Draw(u"12 345 678"),
      (Lines{Measured("12 345 678"), Measured("1"), Measured("12"), Measured("12 "), Measured("12 3"),
             Measured("12 34"), Measured("12 345"), AtLeft(0, "12 "), Measured("345 "), Measured("345 6"),
             Measured("345 67"), AtLeft(1, "345 67"), Measured("8"), AtLeft(2, "8")}));
}

TEST_F(ManualText, ALineEndWithoutABlankBeforeItMovesTheWordDown) {
  MakeRoomFor("1234");
  EXPECT_EQ(Draw(u"12\r34"), (Lines{Measured("12\\u000D34"), Measured("1"), Measured("12"), AtLeft(0, ""),
                                    Measured("123"), Measured("1234"), AtLeft(1, "1234")}));
}

TEST_F(ManualText, ALineEndDrawsUpToTheLastBlank) {
  EXPECT_EQ(Draw(u"1 2\r\r3"),
            (Lines{Measured("1 2\\u000D\\u000D3"), Measured("1"), Measured("1 "), Measured("1 2"),
                   AtLeft(0, "1 "), AtLeft(1, "2"), Measured("3"), AtLeft(2, "3")}));
}

TEST_F(ManualText, TwoLineEndsInARowAdvanceByOneHeightForTheEmptyLine) {
  EXPECT_EQ(Draw(u"1 \r\r2"), (Lines{Measured("1 \\u000D\\u000D2"), Measured("1"), Measured("1 "),
                                     AtLeft(0, "1 "), Measured("2"), AtLeft(2, "2")}));
}

TEST_F(ManualText, ALineEndAtTheStartAdvancesByTheHeightOfTheWholeText) {
  EXPECT_EQ(Draw(u"\r12"), (Lines{Measured("\\u000D12"), Measured("1"), Measured("12"), AtLeft(1, "12")}));
}

TEST_F(ManualText, LineFeedsAndOtherControlCharactersAreDropped) {
  EXPECT_EQ(Draw(u"1 2\r\n3\t4\x001F\x0001"
                 u"5"),
            (Lines{Measured("1 2\\u000D\\u000A3\\u00094\\u001F\\u00015"), Measured("1"), Measured("1 "),
                   Measured("1 2"), AtLeft(0, "1 "), Measured("23"), Measured("234"), Measured("2345"),
                   AtLeft(1, "2345")}));
}

TEST_F(ManualText, WhatTheCodePageLacksIsNoControlCharacter) {
  EXPECT_EQ(Draw(u"1 \u05D0\r\u4E2D"),
            (Lines{Measured("1 \u05D0\\u000D\u4E2D"), Measured("1"), Measured("1 "), Measured("1 \u05D0"),
                   AtLeft(0, "1 "), Measured("\u05D0\u4E2D"), AtLeft(1, "\u05D0\u4E2D")}));
}

TEST_F(ManualText, ALineBeforeAControlCharacterAtTheEndIsNotDrawn) {
  EXPECT_EQ(Draw(u"1 2\r3\n"), (Lines{Measured("1 2\\u000D3\\u000A"), Measured("1"), Measured("1 "),
                                      Measured("1 2"), AtLeft(0, "1 "), Measured("23")}));
}

TEST_F(ManualText, ControlCharactersStayInATextThatFitsInOneLine) {
  EXPECT_EQ(Draw(u"1\n2"), (Lines{Measured("1\\u000A2"), AtLeft(0, "1\\u000A2")}));
}

TEST_F(ManualText, ACentredLineStandsAQuarterOfItsWidthBeforeTheMiddle) {
  rect_.right = 392;
  const Long x = RoundHalfEven(7 + 385 / 2.0 - Width("123") / 4.0);
  EXPECT_EQ(Draw(u"123", kCenter), (Lines{Measured("123"), At(x, 11, "123")}));
}

TEST_F(ManualText, ALineAtTheRightEndsWhereBothEdgesAddUp) {
  EXPECT_EQ(Draw(u"123", kRight), (Lines{Measured("123"), At(7 + 391 - Width("123"), 11, "123")}));
}

TEST_F(ManualText, CentredPiecesAreCentredByTheWidthOfTheirLine) {
  MakeRoomFor("12 34");
  const Long middle = (rect_.left + rect_.right) / 2;
  EXPECT_EQ(Drawn(u"12 345 6", kCenter), (Lines{At(middle - Width("12 345") / 2, 11, "12 "),
                                                At(middle - Width("345 6") / 2, 11 + Height(), "345 6")}));
}

TEST_F(ManualText, PiecesAtTheRightArePlacedByTheWidthOfTheirLine) {
  MakeRoomFor("12 34");
  const Long edges = rect_.left + rect_.right;
  EXPECT_EQ(Drawn(u"12 345 6", kRight), (Lines{At(edges - Width("12 345"), 11, "12 "),
                                               At(edges - Width("345 6"), 11 + Height(), "345 6")}));
}

TEST_F(ManualText, AtTheRightGoesBeforeCentred) {
  DrawTextManual(canvas_.dc(), rect_, u"123", false, true, true);
  EXPECT_EQ(recorder_.Lines("TextOutW"), Lines{At(7 + 391 - Width("123"), 11, "123")});
}

TEST_F(ManualText, AVerticallyCentredLineHangsBelowTheMiddle) {
  // 11 + 70.5 is no whole number; the even one next to it is 82.
  EXPECT_EQ(Draw(u"123", kLeft, true), (Lines{Measured("123"), Measured("123"), At(7, 82, "123")}));
}

TEST_F(ManualText, AVerticallyCentredTextIsMeasuredFirstAndStartsAThirdOfItsLastLinesTopAboveTheMiddle) {
  MakeRoomFor("12 34");
  const Lines measures = Measured(Lines{"12 34 56", "1", "12", "12 ", "12 3", "12 34", "12 34 ", "5", "56"});
  const Long last_top = 11 + 141 / 2 - Height() / 2 + Height();
  const Long top = RoundHalfEven(11 + 141 / 2.0 - last_top / 3.0);
  Lines expected = measures;
  expected.insert(expected.end(), measures.begin(), measures.end());
  expected.insert(expected.begin() + 9 + 7, At(7, top, "12 34 "));
  expected.push_back(At(7, top + Height(), "56"));
  EXPECT_EQ(Draw(u"12 34 56", kLeft, true), expected);
}

TEST_F(ManualText, MeasuringMakesTheSameMeasuresAndDrawsNothing) {
  MakeRoomFor("12 34");
  const Long second_row = rect_.top + Height();
  recorder_.Clear();
  EXPECT_EQ(MeasureWrappedText(canvas_.dc(), rect_, u"12& 34 56", false, false, false), second_row);
  EXPECT_EQ(recorder_.Lines(),
            Measured(Lines{"12 34 56", "1", "12", "12 ", "12 3", "12 34", "12 34 ", "5", "56"}));
}

// ---- The whole route against its rules written out with plain strings ----

class PlainRules {
 public:
  PlainRules(HDC dc, RECT rect, Align align) : dc_(dc), rect_(rect), align_(align) {}

  // How far down the drawn text reached; 0 after one in a single line.
  Long Reach() const { return reach_; }

  Lines Draw(std::u16string text) {
    reach_ = 0;
    Measure(text);
    const Long limit = rect_.right - rect_.left;
    const Long x = align_ == kCenter ? RoundHalfEven(rect_.left + limit / 2.0 - size_.cx / 4.0) : rect_.left;
    if (size_.cx <= limit && text.find(u'\r') == text.npos)
      return {Output(align_ == kRight ? rect_.left + rect_.right - size_.cx : x, rect_.top, text)};
    Lines out;
    std::u16string line;
    std::size_t break_at = 0;
    Long y = rect_.top;
    const auto place = [&] {
      if (align_ == kRight) return rect_.left + rect_.right - size_.cx;
      return align_ == kCenter ? (rect_.left + rect_.right) / 2 - size_.cx / 2 : x;
    };
    for (std::size_t i = 1; i <= text.size(); ++i) {
      const char16_t ch = text[i - 1];
      if (ch > 31) {
        line += ch;
        if (ch == u' ') break_at = i;
        Measure(line);
        if (size_.cx <= limit) {
          if (i < text.size()) continue;
          out.push_back(Output(place(), y, line));
          break;
        }
      } else if (ch != u'\r') {
        continue;
      } else if (line.empty()) {
        y += size_.cy;
        continue;
      }
      const std::u16string piece = line.substr(0, break_at);
      out.push_back(Output(place(), y, piece));
      y += size_.cy;
      line = line.substr(piece.size());
      break_at = 1;
    }
    reach_ = y;
    return out;
  }

 private:
  void Measure(const std::u16string& text) { GetTextExtentPoint32W(dc_, text, size_); }
  static std::string Output(Long x, Long y, const std::u16string& piece) {
    return "TextOutW(" + std::to_string(x) + "," + std::to_string(y) + ",\"" +
           std::string(piece.begin(), piece.end()) + "\")";
  }

  HDC dc_;
  RECT rect_;
  Align align_;
  SIZE size_;
  Long reach_ = 0;
};

TEST_F(ManualText, FollowsItsRulesOnRandomTextsAndWidths) {
  std::mt19937 random(20);
  constexpr std::u16string_view kUnits = u"0123456789abcWi.    \r\r\n";
  for (int round = 0; round < 400; ++round) {
    std::u16string text(random() % 40, u'\0');
    for (char16_t& unit : text) unit = kUnits[random() % kUnits.size()];
    rect_.right = rect_.left + static_cast<Long>(random() % 150);
    const Align align = static_cast<Align>(random() % 3);
    PlainRules rules(canvas_.dc(), rect_, align);
    Lines expected = rules.Draw(text);
    for (std::string& line : expected)
      for (std::size_t at; (at = line.find('\n')) != line.npos;) line.replace(at, 1, "\\u000A");
    EXPECT_EQ(Drawn(text, align), expected) << "round " << round;
    EXPECT_EQ(MeasureWrappedText(canvas_.dc(), rect_, text, false, align == kCenter, align == kRight),
              rules.Reach())
        << "round " << round;
  }
}

// ---- The locales ----

TEST_F(ManualText, ArabicLocalesAreAskedForInTheirOrderUntilOneIsThere) {
  ForgetArabicLocale();
  ConfiguredLocales() = {2049};
  recorder_.Clear();
  EXPECT_TRUE(ArabicLocaleInstalled());
  EXPECT_EQ(recorder_.Lines(), (Lines{"IsValidLocale(1025,0x1)", "IsValidLocale(15361,0x1)",
                                      "IsValidLocale(3073,0x1)", "IsValidLocale(2049,0x1)"}));
}

TEST_F(ManualText, WithoutAnArabicLocaleAllFifteenAreAskedForOnce) {
  ForgetArabicLocale();
  ConfiguredLocales() = {1033, 1037};
  recorder_.Clear();
  EXPECT_FALSE(ArabicLocaleInstalled());
  EXPECT_FALSE(ArabicLocaleInstalled());
  Lines expected;
  for (const int locale :
       {1025, 15361, 3073, 2049, 11265, 13313, 12289, 4097, 6145, 8193, 16385, 10241, 7169, 14337, 9217})
    expected.push_back("IsValidLocale(" + std::to_string(locale) + ",0x1)");
  EXPECT_EQ(recorder_.Lines(), expected);
}

TEST_F(ManualText, AsksForTheLocaleFirstAndDrawsTheSameWhateverTheAnswer) {
  ForgetArabicLocale();
  ConfiguredLocales() = {9217};
  const Lines with = Draw(u"123");
  ASSERT_EQ(with.size(), 17u);
  EXPECT_EQ(with[14], "IsValidLocale(9217,0x1)");
  ForgetArabicLocale();
  recorder_.Fail("IsValidLocale");
  const Lines without = Draw(u"123");
  EXPECT_EQ(without, with);
}

// ---- Failing calls ----

TEST_F(ManualText, AMeasureThatFailsLeavesTheFormerExtentInUse) {
  MakeRoomFor("12");
  const Long x = rect_.left + rect_.right - Width("123"), h = Height();
  recorder_.Fail("GetTextExtentPoint32W", 1);
  EXPECT_EQ(Drawn(u"123", kRight), (Lines{At(x, 11, ""), At(x, 11 + h, "1"), At(x, 11 + 2 * h, "2")}));
}

TEST_F(ManualText, WithoutAnyMeasureEveryTextFitsAndIsZeroWide) {
  MakeRoomFor("12");
  recorder_.Fail("GetTextExtentPoint32W");
  EXPECT_EQ(Drawn(u"12345", kRight), Lines{At(rect_.left + rect_.right, 11, "12345")});
  EXPECT_EQ(Drawn(u"1 2\r\r3"), (Lines{At(7, 11, "1 "), At(7, 11, "2"), At(7, 11, "3")}));
}

TEST_F(ManualText, ADrawingThatFailsIsPassedOver) {
  MakeRoomFor("12 34");
  const Lines whole = Draw(u"12 345 678");
  recorder_.Fail("TextOutW");
  EXPECT_EQ(Draw(u"12 345 678"), whole);
}

// ---- Long lines ----

TEST_F(ManualText, ALineBeyondFiveHundredUnitsIsMeasuredByItsCharacters) {
  std::u16string text(2000, u'5');
  text[700] = u' ';
  MakeRoomFor(std::string(900, '5'));
  EXPECT_EQ(Drawn(text).front(), AtLeft(0, std::string(700, '5') + ' '));
  const Lines measures = recorder_.Lines("GetTextExtentPoint32W");
  EXPECT_EQ(measures[512], Measured(std::string(512, '5')));
  EXPECT_EQ(measures[513], Measured("5"));
}

TEST_F(ManualText, TheUnitsMeasuredOfALongTextGrowWithItsLengthWhereverItsLinesEnd) {
  constexpr std::size_t kLength = 13'000, kLine = 100;
  MakeRoomFor(std::string(kLine, '5'));
  const Lines drawn = Drawn(std::u16string(kLength, u'5'));
  ASSERT_EQ(drawn.size(), kLength - kLine);
  EXPECT_EQ(drawn.front(), AtLeft(0, ""));
  for (std::size_t i = 1; i < drawn.size(); ++i) ASSERT_EQ(drawn[i], AtLeft(static_cast<Long>(i), "5"));
  std::size_t units = 0;
  for (const std::string& measured : recorder_.Lines("GetTextExtentPoint32W"))
    units += measured.size() - Measured("").size();
  EXPECT_LT(units, (std::size_t{1} << 20) + 4 * kLength) << "and not a line of it at each step";
}

TEST_F(ManualText, PairsAreMeasuredAsOneCharacterThere) {
  std::u16string text = u"\r";
  for (int i = 0; i < 300; ++i) text += u"\U0001F600";
  rect_.right = rect_.left + 1'000'000;
  Draw(text);
  const Lines measures = recorder_.Lines("GetTextExtentPoint32W");
  ASSERT_EQ(measures.size(), 1 + 512 + 300u);
  for (std::size_t i = 513; i < measures.size(); ++i) EXPECT_EQ(measures[i], Measured("\U0001F600"));
}

}  // namespace
}  // namespace marklet
