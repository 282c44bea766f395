#include "text/emit_text_run.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <string>

#include "markup/canvas.h"
#include "support/processor_time.h"
#include "text/system_fixture.h"

namespace marklet {
namespace {

using namespace std::string_view_literals;

constexpr Long kWidth = 240, kHeight = 120;
constexpr Long kMax = std::numeric_limits<Long>::max(), kMin = std::numeric_limits<Long>::min();

// Where anything other than the white ground stands, in coordinates of the picture; all zero for nowhere.
RECT InkOf(const Canvas& canvas) {
  PixelView view;
  PixelsOf(canvas.dc(), view);
  RECT ink{kMax, kMax, kMin, kMin};
  for (Long y = 0; y < view.height; ++y) {
    const std::uint8_t* row = view.bits + std::ptrdiff_t{view.height - 1 - y} * view.stride;
    for (Long x = 0; x < view.width; ++x) {
      const std::uint8_t* pixel = row + std::ptrdiff_t{x} * 3;
      if (pixel[0] == 255 && pixel[1] == 255 && pixel[2] == 255) continue;
      ink = {std::min(ink.left, x), std::min(ink.top, y), std::max(ink.right, x + 1),
             std::max(ink.bottom, y + 1)};
    }
  }
  return ink.left == kMax ? RECT{} : ink;
}

class EmitTextRunTest : public SystemTest {
 protected:
  EmitTextRunTest() {
    style_.ForeColor = 0;
    style_.SingleLine = true;
    style_.Font = std::make_shared<StdFont>();
    canvas_.Fill(255);
  }

  void Emit(std::u16string_view text) { EmitTextRun(canvas_.dc(), text, rect_, style_, false); }

  RECT Drawn(std::u16string_view text) {
    canvas_.Fill(255);
    Emit(text);
    return InkOf(canvas_);
  }

  Canvas canvas_{kWidth, kHeight};
  CaptionStyle style_;
  RECT rect_{0, 0, kWidth, kHeight};
};

using SlowEmitTextRunTest = EmitTextRunTest;

TEST_F(EmitTextRunTest, DrawsAWholeTextWhereItsAlignmentSays) {
  const RECT left = Drawn(u"Total");
  EXPECT_LT(left.left, 4);
  EXPECT_LT(left.right, kWidth / 2);
  style_.Alignment = 1;
  const RECT right = Drawn(u"Total");
  EXPECT_GT(right.left, kWidth / 2);
  EXPECT_GT(right.right, kWidth - 8);
  style_.Alignment = 2;
  const RECT center = Drawn(u"Total");
  EXPECT_NEAR(center.left + center.right, kWidth, 8);
}

TEST_F(EmitTextRunTest, RightToLeftExchangesLeftAndRight) {
  style_.RightToLeft = true;
  EXPECT_GT(Drawn(u"Total").left, kWidth / 2);
  style_.Alignment = 1;
  EXPECT_LT(Drawn(u"Total").right, kWidth / 2);
}

TEST_F(EmitTextRunTest, PlacesOneLineInItsRectangleVertically) {
  EXPECT_LT(Drawn(u"Total").bottom, kHeight / 2);
  style_.VerticalAlignment = 2;
  const RECT middle = Drawn(u"Total");
  EXPECT_NEAR(middle.top + middle.bottom, kHeight, 8);
  style_.VerticalAlignment = 3;
  EXPECT_GT(Drawn(u"Total").top, kHeight / 2);
}

TEST_F(EmitTextRunTest, CentresWrappedTextOnHalfOfTheBottomCoordinate) {
  style_.SingleLine = false;
  style_.TextHeight = 20;
  const RECT at_40 = (rect_ = {0, 40, kWidth, 120}, Drawn(u"Total"));
  rect_ = {0, 40, kWidth, 120};
  style_.VerticalAlignment = 2;
  const RECT centred = Drawn(u"Total");
  EXPECT_EQ(rect_, (RECT{0, 40, kWidth, 120})) << "the caller's rectangle stays";
  // 120 / 2 - 20 / 2, and not the 70 of the rectangle's middle.
  EXPECT_EQ(centred.top, at_40.top + 10);
  EXPECT_EQ(centred.bottom, at_40.bottom + 10);
  style_.VerticalAlignment = 3;
  EXPECT_EQ(Drawn(u"Total").top, at_40.top + 60);
}

TEST_F(EmitTextRunTest, WrapsUnlessSingleLine) {
  rect_.right = 60;
  const RECT one_line = Drawn(u"one two three four five");
  style_.SingleLine = false;
  EXPECT_GT(Drawn(u"one two three four five").bottom, one_line.bottom + 8);
}

TEST_F(EmitTextRunTest, ShortensAWordThatIsTooWide) {
  rect_.right = 40;
  EXPECT_LE(Drawn(u"Donaudampfschifffahrt").right, 40);
}

TEST_F(EmitTextRunTest, MarksMnemonicsAndPrintsADoubledMarkOnce) {
  const RECT plain = Drawn(u"Save");
  const RECT marked = Drawn(u"&Save");
  EXPECT_NEAR(marked.right, plain.right, 2) << "the mark itself takes no room";
  const auto one = canvas_.Measure(*style_.Font, u"S&E").cx;
  const RECT doubled = Drawn(u"S&&E");
  EXPECT_NEAR(doubled.right, one, 3);
}

TEST_F(EmitTextRunTest, KeepsTheHeightOfTheFirstRunWhateverTheFont) {
  Emit(u"Total");
  SIZE size;
  ASSERT_TRUE(GetTextExtentPoint32A(canvas_.dc(), "Total", 5, size));
  EXPECT_EQ(style_.TextHeight, size.cy);
  EXPECT_GT(size.cy, 5);
  StdFont big;
  big.PutSize(40);
  const HGDIOBJ former = SelectObject(canvas_.dc(), big.hFont());
  Emit(u"Total");
  SelectObject(canvas_.dc(), former);
  EXPECT_EQ(style_.TextHeight, size.cy);
}

TEST_F(EmitTextRunTest, AnEffectMeasuresItsOwnCopy) {
  style_.TextEffect = effectShadow;
  Emit(u"Total");
  EXPECT_EQ(style_.TextHeight, 0);
}

TEST_F(EmitTextRunTest, ALayerOfAnEffectIsDrawnPlainly) {
  canvas_.Fill(255);
  Emit(u"Total");
  const auto plain = canvas_.Pixels();
  style_.TextEffect = effectStroke;
  style_.EffectColor = MakeRgb(255, 0, 0);
  canvas_.Fill(255);
  EmitTextRun(canvas_.dc(), u"Total", rect_, style_, true);
  EXPECT_EQ(canvas_.Pixels(), plain);
}

TEST_F(EmitTextRunTest, SetsTheTextColour) {
  style_.ForeColor = MakeRgb(1, 2, 3);
  Emit(u"Total");
  EXPECT_EQ(GetTextColor(canvas_.dc()), MakeRgb(1, 2, 3));
  Configuration().system_colours[8] = MakeRgb(4, 5, 6);
  style_.ForeColor = 0x80000008;
  Emit(u"Total");
  EXPECT_EQ(GetTextColor(canvas_.dc()), MakeRgb(4, 5, 6));
}

TEST(CaptionStyle, IsEmptyAtFirstButForTheColourOfTheText) {
  const CaptionStyle style;
  EXPECT_FALSE(style.RightToLeft);
  EXPECT_FALSE(style.SingleLine);
  EXPECT_EQ(style.Alignment, 0);
  EXPECT_EQ(style.VerticalAlignment, 0);
  EXPECT_EQ(style.ForeColor, 0x80000008u);
  EXPECT_EQ(style.BackColor, 0u);
  EXPECT_EQ(style.EffectColor, 0u);
  EXPECT_EQ(style.Font, nullptr);
  EXPECT_EQ(style.TextEffect, effectNone);
  EXPECT_EQ(style.SurfaceDC, nullptr);
  EXPECT_EQ(style.TextHeight, 0);
}

TEST_F(EmitTextRunTest, LeavesNoBoxBehindTheTextOfAnOpaqueContext) {
  SetBkMode(canvas_.dc(), OPAQUE);
  SetBkColor(canvas_.dc(), MakeRgb(255, 255, 0));
  Emit(u"Total");
  EXPECT_NE(InkOf(canvas_), RECT{});
  const auto pixels = canvas_.Pixels();
  for (std::size_t i = 0; i + 2 < std::size_t{kWidth} * kHeight * 3; i += 3) {
    const bool yellow = pixels[i] == 0 && pixels[i + 1] == 255 && pixels[i + 2] == 255;
    ASSERT_FALSE(yellow) << i / 3;
  }
}

TEST_F(EmitTextRunTest, ATextEndsAtItsFirstNull) {
  canvas_.Fill(255);
  Emit(u"ab");
  const auto expected = canvas_.Pixels();
  canvas_.Fill(255);
  Emit(u"ab\0cd"sv);
  EXPECT_EQ(canvas_.Pixels(), expected);
}

TEST_F(EmitTextRunTest, AnEmptyTextDrawsNothing) { EXPECT_EQ(Drawn(u""), RECT{}); }

// The route that shapes moves the rectangle; on the others it stays.
TEST_F(EmitTextRunTest, TheShapingRoutePlacesTheTextInTheCallersRectangle) {
  Play(kXp, true);
  style_.Alignment = 3;
  style_.TextHeight = 15;
  const auto top_for = [&](Long vertical, Long bottom) {
    rect_ = {0, 5, kWidth, bottom};
    style_.VerticalAlignment = vertical;
    Emit(u"Total");
    return rect_.top;
  };
  EXPECT_EQ(top_for(0, 101), 5);
  EXPECT_EQ(top_for(2, 101), 50 - 7) << "each half is truncated";
  EXPECT_EQ(top_for(2, -101), -50 - 7) << "towards zero";
  EXPECT_EQ(top_for(3, 101), 86);
  EXPECT_EQ(top_for(1, 101), 5);
  EXPECT_EQ(top_for(3, kMin), kMax - 14) << "wraps, and harms nothing";
}

TEST_F(SlowEmitTextRunTest, TakesAnyNumbersAndAnyText) {
  const std::u16string broken[] = {std::u16string(u"\xD800"), std::u16string(u"a\xDC00\xDC00z"),
                                   std::u16string(u"\0\x0001\x001F\xFFFF"sv), std::u16string(3000, u'&'),
                                   std::u16string(3000, u'\xD83D')};
  const RECT rects[] = {
      {0, 0, 0, 0}, {5, 5, -5, -5}, {kMin, kMin, kMax, kMax}, {kMax, kMax, kMin, kMin}, {kMax, 0, kMax, 1}};
  for (const OSVERSIONINFOA& version : {kWindows98, kXp, kWindows10}) {
    Play(version, true);
    for (const std::u16string& text : broken) {
      for (const RECT& rect : rects) {
        for (const Long number : {0, 1, 2, 3, 7, -1, kMin, kMax}) {
          CaptionStyle style;
          style.Alignment = style.VerticalAlignment = style.TextHeight = number;
          style.SingleLine = number % 2 == 0;
          style.RightToLeft = number % 3 == 0;
          RECT place = rect;
          EmitTextRun(canvas_.dc(), text, place, style, false);
        }
      }
    }
  }
  RECT place = rect_;
  EmitTextRun(nullptr, u"Total", place, style_, false);
}

TEST_F(SlowEmitTextRunTest, AMillionCharactersTakeBoundedTimeOnEveryRoute) {
  struct System {
    OSVERSIONINFOA version;
    bool has_script_processor;
    Long alignment;
  };
  // By DrawTextW, the script processor for either reason, and by hand.
  const System systems[] = {{kWindows10, true, 0},
                            {kWindows10, true, 3},
                            {kXp, true, 0},
                            {kWindows98, true, 2},
                            {kWindows98, false, 0}};
  for (const std::u16string_view piece :
       {u"\u0301"sv, u"\u0628\u0639\u0644 "sv, u"\u0645"sv, u"line \r\n"sv}) {
    std::u16string text = u"x";
    while (text.size() < 1'000'000) text += piece;
    for (const System& system : systems) {
      Play(system.version, system.has_script_processor);
      style_.Alignment = system.alignment;
      style_.SingleLine = false;
      style_.TextHeight = 0;
      RECT rect = rect_;
      const double start = ProcessorSeconds();
      EmitTextRun(canvas_.dc(), text, rect, style_, false);
      // Bounded generously: sanitizers and Wine are slow, a quadratic time would be an hour.
      EXPECT_LT(ProcessorSeconds() - start, 60)
          << testing::PrintToString(std::u16string(piece)) << " on " << system.version.dwMajorVersion << ' '
          << system.has_script_processor << ' ' << system.alignment;
    }
  }
}

TEST_F(EmitTextRunTest, MeasuresByTheCallOfTheSystem) {
  // A character that the code page doesn't have is measured as what stands in for it.
  const std::u16string_view chinese = u"\u4E2D\u6587";
  SIZE wide, bytes;
  ASSERT_TRUE(GetTextExtentPoint32W(canvas_.dc(), chinese, wide));
  ASSERT_TRUE(GetTextExtentPoint32A(canvas_.dc(), "??", 2, bytes));
  ASSERT_NE(wide.cx, bytes.cx);
  for (const OSVERSIONINFOA& version : {kNt4, kWindows2000, kXp, kVista, kWindows10}) {
    Play(version);
    EXPECT_EQ(MeasureString(canvas_.dc(), chinese), wide);
  }
  for (const OSVERSIONINFOA& version : {kWindows95, kWindows98, kNt351}) {
    Play(version);
    EXPECT_EQ(MeasureString(canvas_.dc(), chinese), bytes);
  }
}

TEST_F(EmitTextRunTest, MeasuresNothingAsZeroWide) {
  EXPECT_EQ(MeasureString(canvas_.dc(), u"").cx, 0);
  EXPECT_EQ(MeasureString(nullptr, u"Total"), SIZE{});
}

TEST_F(EmitTextRunTest, TranslatesColours) {
  EXPECT_EQ(TranslateColor(MakeRgb(1, 2, 3)), MakeRgb(1, 2, 3));
  Configuration().system_colours[15] = MakeRgb(7, 8, 9);
  EXPECT_EQ(TranslateColor(0x8000000F), MakeRgb(7, 8, 9));
  EXPECT_EQ(TranslateColor(0x44000000), CLR_INVALID);
  EXPECT_EQ(TranslateColor(0xFFFFFFFF), static_cast<COLORREF>(-1));
}

}  // namespace
}  // namespace marklet
