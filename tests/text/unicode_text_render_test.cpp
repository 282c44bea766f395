#include "text/unicode_text_render.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

#include "markup/canvas.h"
#include "support/processor_time.h"
#include "text/emit_text_run.h"
#include "text/system_fixture.h"

namespace marklet {
namespace {

using namespace std::string_view_literals;

class UnicodeTextRenderTest : public SystemTest {
 protected:
  Canvas canvas_{300, 40};
  CUnicodeTextRender render_;
};

// Tries each prefix, as the rule says.
Long NaiveFitLength(HDC dc, std::u16string_view text, Long max_width) {
  auto count = static_cast<Long>(text.size());
  if (MeasureString(dc, text).cx > max_width) {
    count = 0;
    for (std::size_t length = 1; length <= text.size(); ++length) {
      if (MeasureString(dc, text.substr(0, length)).cx <= max_width) count = static_cast<Long>(length);
    }
  }
  const auto line_break =
      std::find_if(text.begin(), text.end(), [](char16_t c) { return c == 10 || c == 13; });
  return line_break == text.end() ? count : static_cast<Long>(line_break - text.begin()) + 1;
}

using SlowUnicodeTextRenderTest = UnicodeTextRenderTest;

TEST_F(UnicodeTextRenderTest, FitLengthIsTheLongestPrefixThatFits) {
  constexpr std::u16string_view kTexts[] = {
      u"",
      u"x",
      u"Total amount",
      u"AVAVAVAVAV To Te Ty",
      u"fi ffi ffl",
      u"\u0645\u0631\u062D\u0628\u0627 \u0628\u0627\u0644\u0639\u0627\u0644\u0645",
      u"\u05E9\u05DC\u05D5\u05DD 12",
      u"e\u0301e\u0301e\u0301e\u0301",
      u"\xD83D\xDE00\xD83D\xDE00\xD83D",
      u"a\0b\x0001"sv,
      u"\u0928\u092E\u0938\u094D\u0924\u0947",
      u"iiiiiiiiiWWWWWWWW"};
  for (const std::u16string_view text : kTexts) {
    const Long width = MeasureString(canvas_.dc(), text).cx;
    for (Long max_width = -1; max_width <= width + 1; ++max_width) {
      ASSERT_EQ(render_.FitLength(canvas_.dc(), text, max_width),
                NaiveFitLength(canvas_.dc(), text, max_width))
          << "a text of " << text.size() << " in " << max_width;
    }
  }
}

TEST_F(SlowUnicodeTextRenderTest, FitLengthOfMixedTextsIsTheLongestPrefixThatFits) {
  std::mt19937 random(21);
  constexpr std::u16string_view kAlphabet = u"aAVWfil. \u0301\u05D0\u0627\u0644\u0645\u0644\u4E2D\x200D";
  for (int i = 0; i < 60; ++i) {
    std::u16string text;
    for (auto length = random() % 120; length > 0; --length) text += kAlphabet[random() % kAlphabet.size()];
    const auto max_width = static_cast<Long>(random() % 400);
    ASSERT_EQ(render_.FitLength(canvas_.dc(), text, max_width), NaiveFitLength(canvas_.dc(), text, max_width))
        << i;
  }
}

TEST_F(UnicodeTextRenderTest, FitLengthOfABrokenTextIsThePositionOfTheBreak) {
  EXPECT_EQ(render_.FitLength(canvas_.dc(), u"ab\r\ncd", 1000), 3);
  EXPECT_EQ(render_.FitLength(canvas_.dc(), u"ab\ncd\r", 1000), 3);
  EXPECT_EQ(render_.FitLength(canvas_.dc(), u"ab\ncd", 0), 3) << "whether that fits or not";
  EXPECT_EQ(render_.FitLength(canvas_.dc(), u"\n", 0), 1);
}

TEST_F(UnicodeTextRenderTest, FitLengthIsZeroWhenNoPrefixFits) {
  EXPECT_EQ(render_.FitLength(canvas_.dc(), u"Total", 0), 0);
  EXPECT_EQ(render_.FitLength(canvas_.dc(), u"Total", -5), 0);
}

TEST_F(UnicodeTextRenderTest, FitLengthOfALongTextTakesNoTime) {
  const double start = ProcessorSeconds();
  const Long count = render_.FitLength(canvas_.dc(), std::u16string(20000, u'x'), 300);
  EXPECT_GT(count, 10);
  EXPECT_LT(count, 300);
  EXPECT_LT(ProcessorSeconds() - start, 5);
}

TEST_F(UnicodeTextRenderTest, IsLineBreakForLineFeedAndCarriageReturn) {
  for (Long code = -2; code < 0x10000; ++code) {
    ASSERT_EQ(CUnicodeTextRender::IsLineBreak(code), code == 10 || code == 13 ? 1 : 0) << code;
  }
}

TEST_F(UnicodeTextRenderTest, TextAlignFlagsAreBaselineAndReadingOrder) {
  for (const std::uint32_t format : {0u, 2u, 0xFFFFFFFFu}) {
    EXPECT_EQ(CUnicodeTextRender::TextAlignFlags(format, false), 24u);
    EXPECT_EQ(CUnicodeTextRender::TextAlignFlags(format, true), 280u);
  }
}

TEST_F(UnicodeTextRenderTest, StripControlCodesHandsBackNothing) {
  EXPECT_EQ(CUnicodeTextRender::StripControlCodes(u"a\x0001"
                                                  u"b\u0330"),
            u"");
  EXPECT_EQ(CUnicodeTextRender::StripControlCodes(u"\x0001\u0330"), u"");
  EXPECT_EQ(CUnicodeTextRender::StripControlCodes(u""), u"");
}

TEST_F(UnicodeTextRenderTest, DrawTextLeavesTheTagOfItsRouteInTheCallersText) {
  RECT rect{0, 0, 300, 40};
  std::u16string text = u"Total";
  render_.DrawText(canvas_.dc(), text, -1, rect, 0, 0, false, false);
  EXPECT_EQ(text, u"Total<Uniscribe>");
  render_.DrawText(canvas_.dc(), text, -1, rect, 0, 0, false, true);
  EXPECT_EQ(text, u"Total<Uniscribe><Uniscribe><map>");
  EXPECT_EQ(rect, (RECT{0, 0, 300, 40}));
}

TEST_F(UnicodeTextRenderTest, DrawTextOnlyDrawsAWholeTextThatIsNotEmpty) {
  RECT rect{0, 0, 300, 40};
  SetTextColor(canvas_.dc(), MakeRgb(1, 2, 3));
  for (const Long length : {0, 1, 5, -2}) {
    std::u16string text = u"Total";
    render_.DrawText(canvas_.dc(), text, length, rect, 0, 0, false, true);
    EXPECT_EQ(text, u"Total") << length;
  }
  std::u16string empty;
  render_.DrawText(canvas_.dc(), empty, -1, rect, 0, 0, false, true);
  EXPECT_EQ(empty, u"");
  EXPECT_EQ(GetTextColor(canvas_.dc()), MakeRgb(1, 2, 3));
}

TEST_F(UnicodeTextRenderTest, DrawTextPutsTheAlignmentBack) {
  RECT rect{0, 0, 300, 40};
  SetTextAlign(canvas_.dc(), TA_RIGHT);
  std::u16string text = u"Total";
  render_.DrawText(canvas_.dc(), text, -1, rect, 0, 0, true, false);
  EXPECT_EQ(SetTextAlign(canvas_.dc(), 0), TA_RIGHT);
}

}  // namespace
}  // namespace marklet
