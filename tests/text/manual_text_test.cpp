// The manual route by what it draws, and texts that nobody would write.
#include "text/manual_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

#include "base/rounding.h"
#include "markup/canvas.h"
#include "support/processor_time.h"
#include "text/emit_text_run.h"
#include "text/system_fixture.h"

namespace marklet {
namespace {

class ManualTextPicture : public SystemTest {
 protected:
  using Pixels = std::vector<std::uint8_t>;

  Pixels Manual(std::u16string_view text, bool center_vertically = false, bool center = false,
                bool right = false) {
    canvas_.Fill(255);
    DrawTextManual(canvas_.dc(), rect_, text, center_vertically, center, right);
    return canvas_.Pixels();
  }

  struct Piece {
    Long x, y;
    std::u16string_view text;
  };
  Pixels Pieces(const std::vector<Piece>& pieces) {
    canvas_.Fill(255);
    for (const Piece& piece : pieces) TextOutW(canvas_.dc(), piece.x, piece.y, piece.text);
    return canvas_.Pixels();
  }
  Pixels Empty() { return Pieces({}); }

  SIZE Extent(std::u16string_view text) const { return canvas_.Measure(StdFont(), text); }

  Canvas canvas_{300, 120};
  RECT rect_{7, 11, 291, 100};
};

TEST_F(ManualTextPicture, AShortTextIsOneLine) {
  const Pixels picture = Manual(u"&Save && Exit");
  EXPECT_EQ(picture, Pieces({{7, 11, u"Save & Exit"}}));
  EXPECT_NE(picture, Empty());
}

TEST_F(ManualTextPicture, AlignmentsPlaceALine) {
  const Long width = Extent(u"Total").cx;
  EXPECT_EQ(Manual(u"Total", false, false, true), Pieces({{7 + 291 - width, 11, u"Total"}}));
  EXPECT_EQ(Manual(u"Total", false, true), Pieces({{RoundHalfEven(149 - width / 4.0), 11, u"Total"}}));
  EXPECT_EQ(Manual(u"Total", true), Pieces({{7, 56, u"Total"}})) << "55.5, to the even";
}

TEST_F(ManualTextPicture, ATextThatIsTooWideIsWrapped) {
  rect_.right = 7 + Extent(u"one two").cx;
  const Long height = Extent(u"one").cy;
  EXPECT_EQ(Manual(u"one two six"), Pieces({{7, 11, u"one two "}, {7, 11 + height, u"six"}}));
}

TEST_F(ManualTextPicture, LinesBelowTheRectangleAreDrawnToo) {
  rect_.bottom = 12;
  rect_.right = 7 + Extent(u"one two").cx;
  const Long height = Extent(u"one").cy;
  EXPECT_EQ(Manual(u"one two six"), Pieces({{7, 11, u"one two "}, {7, 11 + height, u"six"}}));
}

TEST_F(ManualTextPicture, SystemsWithoutOtherRoutesDrawWithIt) {
  Play(kWindows98, false);
  CaptionStyle style;
  style.TextHeight = 13;
  RECT rect = rect_;
  canvas_.Fill(255);
  SetTextColor(canvas_.dc(), 0);
  EmitTextRun(canvas_.dc(), u"&Total", rect, style, false);
  const Pixels drawn = canvas_.Pixels();
  SetTextColor(canvas_.dc(), TranslateColor(style.ForeColor));
  EXPECT_EQ(drawn, Pieces({{7, 11, u"Total"}}));
  EXPECT_EQ(rect, rect_);
}

TEST_F(ManualTextPicture, MeasuringGivesTheTopOfTheLastLineOrNothing) {
  const auto measured = [this](std::u16string_view text, bool center_vertically) {
    return MeasureWrappedText(canvas_.dc(), rect_, text, center_vertically, false, false);
  };
  const Long height = Extent(u"one").cy;
  EXPECT_EQ(measured(u"one", false), 0);
  EXPECT_EQ(measured(u"one", true), 0);
  EXPECT_EQ(measured(u"", true), 0);
  EXPECT_EQ(measured(u"one \rtwo", false), 11 + height);
  EXPECT_EQ(measured(u"one \rtwo \rsix", false), 11 + 2 * height);
  EXPECT_EQ(measured(u"one \rtwo", true), 11 + 89 / 2 - height / 2 + height) << "half the height of one line";
}

TEST_F(ManualTextPicture, ABlankIsTheOnlyWrapPoint) {
  for (unsigned ch = 0; ch <= 0xFFFF; ++ch)
    ASSERT_EQ(IsWrapPoint(static_cast<char16_t>(ch)), ch == 0x20) << ch;
}

TEST_F(ManualTextPicture, ARectangleAtTheEndsOfTheCoordinatesIsTaken) {
  constexpr Long kMost = std::numeric_limits<Long>::max(), kLeast = std::numeric_limits<Long>::min();
  for (const RECT& rect : {RECT{kLeast, kLeast, kMost, kMost}, RECT{kMost, kMost, kLeast, kLeast},
                           RECT{kMost, 0, kMost, kMost}, RECT{kLeast, kMost, kMost, kLeast}}) {
    for (const std::u16string_view text : {u"one two", u"one \rtwo\r\r", u""}) {
      for (const bool flag : {false, true}) {
        DrawTextManual(canvas_.dc(), rect, text, flag, flag, !flag);
        DrawTextManual(canvas_.dc(), rect, text, flag, flag, false);
      }
    }
  }
}

TEST_F(ManualTextPicture, WithoutAContextNothingHappens) {
  DrawTextManual(nullptr, rect_, u"one \rtwo", true, true, false);
  EXPECT_EQ(MeasureWrappedText(nullptr, rect_, u"one two", true, false, false), 0);
}

// ---- Texts that nobody would write ----

class SlowManualText : public ManualTextPicture {
 protected:
  void Take(std::u16string_view text, Long width) {
    const double start = ProcessorSeconds();
    rect_.right = rect_.left + width;
    DrawTextManual(canvas_.dc(), rect_, text, false, true, false);
    EXPECT_LT(ProcessorSeconds() - start, 60) << text.size() << " units in " << width;
  }
};

TEST_F(SlowManualText, AMegabyteWithoutABlankIsDrawnInTimeThatGrowsWithItsLength) {
  Take(std::u16string(1'000'000, u'x'), 40);
}

TEST_F(SlowManualText, AMegabyteInOneLineIsMeasuredInTimeThatGrowsWithItsLength) {
  std::u16string text(1'000'000, u'x');
  text.back() = u'\r';
  Take(text, std::numeric_limits<Long>::max() - 100);
}

TEST_F(SlowManualText, AMillionCombiningMarksAndLettersAfterThem) {
  std::u16string text(1'000'000, u'\u0301');
  std::fill(text.begin() + 700'000, text.end(), u'W');
  Take(text, 40);
}

TEST_F(SlowManualText, AHundredThousandLines) {
  std::u16string text;
  for (int i = 0; i < 100'000; ++i) text += u"line \r";
  Take(text, 200);
}

TEST_F(SlowManualText, LettersThatJoinInLinesAsWideAsAScreenTakeNoMore) {
  Take(std::u16string(1'000'000, u'\u0628'), 240 * Extent(u"\u0628\u0628\u0628\u0628").cx / 4);
}

TEST_F(SlowManualText, AMegabyteOfArabicWrapsInTimeThatGrowsWithItsLength) {
  std::u16string text;
  while (text.size() < 500'000) text += u"\u0628\u0639\u0644\u0645\u0645\u0645 ";
  Take(text, 40);
}

}  // namespace
}  // namespace marklet
