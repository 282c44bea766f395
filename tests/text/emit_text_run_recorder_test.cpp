// Which platform calls a run makes, on which system, in which order.
#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "base/rounding.h"
#include "markup/canvas.h"
#include "platform/headless/recorder/recorder.h"
#include "platform/uniscribe.h"
#include "text/emit_text_run.h"
#include "text/system_fixture.h"

namespace marklet {
namespace {

using namespace std::string_view_literals;
using Lines = std::vector<std::string>;

constexpr std::u16string_view kPlain = u"Total", kComplex = u"\u05E9\u05DC\u05D5\u05DD";
constexpr RECT kRect{4, 10, 204, 90};

class EmitTextRunCalls : public SystemTest {
 protected:
  EmitTextRunCalls() {
    style_.ForeColor = MakeRgb(1, 2, 3);
    style_.SingleLine = true;
    style_.TextHeight = 13;
  }

  Lines Emitted(std::u16string_view text) {
    recorder_.Clear();
    RECT rect = kRect;
    EmitTextRun(canvas_.dc(), text, rect, style_, false);
    return recorder_.Lines();
  }

  Canvas canvas_{220, 100};
  CaptionStyle style_;
  Recorder recorder_;
};

// ---- The choice of route ----

enum class Route { Shaping, DrawTextW, Manual };

std::ostream& operator<<(std::ostream& out, Route route) {
  constexpr const char* kNames[] = {"shaping", "DrawTextW", "manual"};
  return out << kNames[static_cast<std::size_t>(route)];
}

struct RouteRow {
  Generation generation;
  bool has_script_processor;
  Route plain, complex, justified;  // justified counts for both scripts
};

constexpr Route S = Route::Shaping, W = Route::DrawTextW, M = Route::Manual;
constexpr RouteRow kRoutes[] = {
    {{"95", kWindows95}, false, M, M, M},
    {{"95 with usp10", kWindows95}, true, S, S, S},
    {{"98", kWindows98}, false, M, M, M},
    {{"98 with usp10", kWindows98}, true, S, S, S},
    {{"NT 3.51", kNt351}, false, M, M, M},
    {{"NT 3.51 with usp10", kNt351}, true, S, S, S},
    {{"NT 4", kNt4}, false, W, W, W},
    {{"NT 4 with usp10", kNt4}, true, W, S, S},
    {{"2000", kWindows2000}, false, W, W, W},
    {{"2000 with usp10", kWindows2000}, true, W, S, S},
    {{"XP", kXp}, false, W, W, W},
    {{"XP with usp10", kXp}, true, W, S, S},
    {{"2003", kServer2003}, false, W, W, W},
    {{"2003 with usp10", kServer2003}, true, W, S, S},
    {{"Vista", kVista}, false, W, W, S},
    {{"Vista with usp10", kVista}, true, W, W, S},
    {{"7", kWindows7}, false, W, W, S},
    {{"7 with usp10", kWindows7}, true, W, W, S},
    {{"10", kWindows10}, false, W, W, S},
    {{"10 with usp10", kWindows10}, true, W, W, S},
};

class RouteTable : public EmitTextRunCalls {
 protected:
  // Only the shaping route moves the rectangle of a text aligned at the bottom, and only one calls DrawTextW.
  Route RouteOf(std::u16string_view text) {
    recorder_.Clear();
    style_.VerticalAlignment = 3;
    RECT rect = kRect;
    EmitTextRun(canvas_.dc(), text, rect, style_, false);
    if (rect.top != kRect.top) {
      EXPECT_EQ(rect.top, kRect.bottom - style_.TextHeight);
      EXPECT_TRUE(recorder_.Lines("DrawTextW").empty());
      return Route::Shaping;
    }
    if (recorder_.Lines("DrawTextW").empty()) {
      EXPECT_FALSE(recorder_.Lines("TextOutW").empty());
      return Route::Manual;
    }
    EXPECT_TRUE(recorder_.Lines("TextOutW").empty());
    return Route::DrawTextW;
  }
};

TEST_F(RouteTable, HoldsForEveryGenerationAlignmentAndScript) {
  for (const RouteRow& row : kRoutes) {
    SCOPED_TRACE(row.generation.name);
    for (const Long alignment : {0, 1, 2, 7, -1}) {
      style_.Alignment = alignment;
      Play(row.generation.version, row.has_script_processor);
      EXPECT_EQ(RouteOf(kPlain), row.plain) << alignment;
      EXPECT_EQ(RouteOf(kComplex), row.complex) << alignment;
      EXPECT_EQ(RouteOf(kPlain), row.plain) << alignment << ", once more";
    }
    style_.Alignment = 3;
    Play(row.generation.version, row.has_script_processor);
    EXPECT_EQ(RouteOf(kPlain), row.justified);
    EXPECT_EQ(RouteOf(kComplex), row.justified);
  }
}

TEST_F(RouteTable, IsTheSameInsideAnEffect) {
  for (const RouteRow& row : kRoutes) {
    SCOPED_TRACE(row.generation.name);
    Play(row.generation.version, row.has_script_processor);
    style_.TextEffect = effectShadow;
    style_.Alignment = 0;
    recorder_.Clear();
    RECT rect = kRect;
    EmitTextRun(canvas_.dc(), kPlain, rect, style_, false);
    EXPECT_EQ(recorder_.Lines("DrawTextW").size(), row.plain == Route::DrawTextW ? 4u : 0u);
    EXPECT_EQ(rect, kRect) << "layers have rectangles of their own";
  }
}

TEST_F(RouteTable, TheScriptIsOnlyAskedForWhereTheAnswerMatters) {
  const auto asked = [&](const OSVERSIONINFOA& version, bool has_script_processor, Long alignment) {
    Play(version, has_script_processor);
    style_.Alignment = alignment;
    Emitted(kPlain);
    return recorder_.Lines("ScriptIsComplex").size();
  };
  EXPECT_EQ(asked(kXp, true, 0), 1u);
  EXPECT_EQ(asked(kNt4, true, 2), 1u);
  EXPECT_EQ(asked(kXp, true, 3), 0u) << "justified text is shaped whatever its script";
  EXPECT_EQ(asked(kXp, false, 0), 0u);
  EXPECT_EQ(asked(kWindows98, true, 0), 0u);
  EXPECT_EQ(asked(kVista, true, 0), 0u);
  EXPECT_EQ(asked(kWindows10, true, 3), 0u);
}

TEST_F(RouteTable, AScriptTestThatFailsIsRaisedWithItsNumber) {
  Play(kXp, true);
  recorder_.Fail("ScriptIsComplex");
  RECT rect = kRect;
  try {
    EmitTextRun(canvas_.dc(), kPlain, rect, style_, false);
    FAIL() << "the run was drawn";
  } catch (const ScriptError& error) {
    EXPECT_NE(error.Code(), S_OK);
    EXPECT_NE(error.Code(), S_FALSE);
  }
  EXPECT_TRUE(recorder_.Lines("DrawTextW").empty());
  EXPECT_THROW(IsComplexText(kPlain), ScriptError);
}

TEST_F(RouteTable, JustifiedTextWithoutShapingIsDrawnLeftAligned) {
  Play(kXp, false);
  style_.Alignment = 3;
  EXPECT_EQ(Emitted(kPlain).back(), "DrawTextW(\"Total\",[4,10,204,90],0x40020)");
}

// ---- Calls and their order ----

TEST_F(EmitTextRunCalls, AKnownHeightMeansThreeCallsARun) {
  Play(kWindows10);
  EXPECT_EQ(Emitted(kPlain),
            (Lines{"SetBkMode(0)", "SetTextColor(#010203)", "DrawTextW(\"Total\",[4,10,204,90],0x40020)"}));
}

TEST_F(EmitTextRunCalls, AnUnknownHeightIsMeasuredByTheByteCallFirst) {
  Play(kWindows10);
  style_.TextHeight = 0;
  EXPECT_EQ(Emitted(kPlain),
            (Lines{"SetBkMode(0)", "SetTextColor(#010203)", "GetTextExtentPoint32A(\"Total\",5)",
                   "DrawTextW(\"Total\",[4,10,204,90],0x40020)"}));
  EXPECT_GT(style_.TextHeight, 0);
  EXPECT_EQ(Emitted(u"again").size(), 3u);
}

TEST_F(EmitTextRunCalls, AnyHeightButZeroIsKnown) {
  Play(kWindows10);
  style_.TextHeight = -5;
  EXPECT_EQ(Emitted(kPlain).size(), 3u);
  EXPECT_EQ(style_.TextHeight, -5);
}

TEST_F(EmitTextRunCalls, TheMeasuredLengthIsThatOfTheUnicodeText) {
  Play(kWindows10);
  style_.TextHeight = 0;
  Emitted(u"\xD83D\xDE00");
  const Lines lines = recorder_.Lines("GetTextExtentPoint32A");
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_EQ(lines[0].substr(lines[0].rfind(',')), ",2)");
}

TEST_F(EmitTextRunCalls, AFailedMeasureLeavesTheHeightUnknown) {
  Play(kWindows10);
  style_.TextHeight = 0;
  recorder_.Fail("GetTextExtentPoint32A");
  EXPECT_EQ(Emitted(kPlain).size(), 4u);
  EXPECT_EQ(style_.TextHeight, 0);
}

TEST_F(EmitTextRunCalls, AFailedCallIsPassedOver) {
  Play(kWindows10);
  recorder_.Fail("SetBkMode");
  recorder_.Fail("SetTextColor");
  EXPECT_EQ(Emitted(kPlain).size(), 3u);
}

TEST_F(EmitTextRunCalls, AColourThatCannotBeTranslatedReachesTheContextAsMinusOne) {
  Play(kWindows10);
  style_.ForeColor = 0x44000000;
  EXPECT_EQ(Emitted(kPlain)[1], "SetTextColor(0xFFFFFFFF)");
}

TEST_F(EmitTextRunCalls, AnEmptyStringNeverReachesDrawTextW) {
  for (const OSVERSIONINFOA& version : {kWindows95, kNt4, kXp, kVista, kWindows10}) {
    for (const bool has_script_processor : {false, true}) {
      for (const Long alignment : {0, 1, 2, 3}) {
        Play(version, has_script_processor);
        style_.Alignment = alignment;
        Emitted(u"");
        EXPECT_TRUE(recorder_.Lines("DrawTextW").empty());
        Emitted(u"\0Total"sv);
        EXPECT_TRUE(recorder_.Lines("DrawTextW").empty()) << "for the platform it ends before it begins";
      }
    }
  }
}

TEST_F(EmitTextRunCalls, AnEffectIsEnteredOncePerRun) {
  Play(kWindows10);
  style_.TextEffect = effectStroke;
  Emitted(kPlain);
  EXPECT_EQ(recorder_.Lines("DrawTextW").size(), 16u);
  EXPECT_EQ(recorder_.Lines("SetTextColor").size(), 17u) << "once before the effect and once a layer";
}

TEST_F(EmitTextRunCalls, AnEffectOfAnyOtherNumberDrawsNothing) {
  Play(kWindows10);
  for (const Long effect : {6, 7, -1}) {
    style_.TextEffect = effect;
    EXPECT_EQ(Emitted(kPlain), (Lines{"SetBkMode(0)", "SetTextColor(#010203)"})) << effect;
  }
}

// ---- The manual route ----

TEST_F(EmitTextRunCalls, TheManualRouteAsksForAnArabicLocaleOnce) {
  Play(kWindows98, false);
  ConfiguredLocales() = {1025};
  EXPECT_EQ(Emitted(kPlain), (Lines{"SetBkMode(0)", "SetTextColor(#010203)", "IsValidLocale(1025,0x1)",
                                    "GetTextExtentPoint32W(\"Total\")", "TextOutW(4,10,\"Total\")"}));
  EXPECT_EQ(Emitted(kPlain).size(), 4u);
}

TEST_F(EmitTextRunCalls, TheManualRouteCentresAndFlushesRightAsTheStyleSays) {
  Play(kWindows98, false);
  const Long width = MeasureString(canvas_.dc(), kPlain).cx;
  const auto drawn = [&](Long alignment, Long vertical) {
    style_.Alignment = alignment;
    style_.VerticalAlignment = vertical;
    return Emitted(kPlain).back();
  };
  const auto line = [](Long x, Long y) {
    return "TextOutW(" + std::to_string(x) + "," + std::to_string(y) + ",\"Total\")";
  };
  EXPECT_EQ(drawn(1, 0), line(4 + 204 - width, 10));
  EXPECT_EQ(drawn(2, 0), line(RoundHalfEven(4 + 100 - width / 4.0), 10)) << "a quarter of the width";
  EXPECT_EQ(drawn(0, 2), line(4, 50)) << "the text hangs below the middle";
}

TEST_F(EmitTextRunCalls, OnTheManualRouteBottomAndJustifiedAreAsTopAndLeft) {
  Play(kWindows98, false);
  for (const Long alignment : {0, 3}) {
    for (const Long vertical : {0, 3}) {
      style_.Alignment = alignment;
      style_.VerticalAlignment = vertical;
      EXPECT_EQ(Emitted(kPlain).back(), "TextOutW(4,10,\"Total\")");
    }
  }
}

// ---- The flags of DrawTextW ----

struct Horizontal {
  Long alignment;
  bool right_to_left;
  unsigned flags;
};

constexpr Horizontal kHorizontal[] = {
    {0, false, 0},      {3, false, 0}, {0, true, 0x20002}, {3, true, 0x20002}, {1, false, 2},
    {1, true, 0x20000}, {2, false, 1}, {2, true, 0x20001}, {7, false, 0},      {7, true, 0x20000},
};

struct Vertical {
  Long alignment;
  bool single_line;
  unsigned flags;
  Long top;
};

// In a rectangle from 10 to 90 with a text height of 13.
constexpr Vertical kVertical[] = {
    {0, true, 0x20, 10}, {0, false, 0x10, 10}, {2, true, 0x24, 10}, {2, false, 0x10, 45 - 6},
    {3, true, 0x28, 10}, {3, false, 0x10, 77}, {1, true, 0x20, 10}, {1, false, 0x10, 10},
};

TEST_F(EmitTextRunCalls, FlagsOfDrawTextW) {
  for (const Horizontal& horizontal : kHorizontal) {
    for (const Vertical& vertical : kVertical) {
      style_.Alignment = horizontal.alignment;
      style_.RightToLeft = horizontal.right_to_left;
      style_.VerticalAlignment = vertical.alignment;
      style_.SingleLine = vertical.single_line;
      recorder_.Clear();
      DrawTextUnicode(canvas_.dc(), kPlain, kRect, style_);
      char expected[80];
      std::snprintf(expected, sizeof expected, "DrawTextW(\"Total\",[4,%d,204,90],0x%X)", vertical.top,
                    horizontal.flags | vertical.flags | 0x40000);
      EXPECT_EQ(recorder_.Lines(), Lines{expected})
          << "alignment " << horizontal.alignment << (horizontal.right_to_left ? " right to left" : "")
          << ", vertical " << vertical.alignment << (vertical.single_line ? " in one line" : "");
    }
  }
}

TEST_F(EmitTextRunCalls, MeasuringTakesOneCall) {
  Play(kXp);
  recorder_.Clear();
  MeasureString(canvas_.dc(), u"Caf\u00E9");
  EXPECT_EQ(recorder_.Lines(), Lines{"GetTextExtentPoint32W(\"Caf\u00E9\")"});
  Play(kWindows98);
  recorder_.Clear();
  MeasureString(canvas_.dc(), u"Cafe");
  EXPECT_EQ(recorder_.Lines(), Lines{"GetTextExtentPoint32A(\"Cafe\",4)"});
}

}  // namespace
}  // namespace marklet
