// The platform calls of each numbered route.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "markup/canvas.h"
#include "platform/headless/recorder/recorder.h"
#include "text/system_fixture.h"
#include "text/unicode_text_render.h"

namespace marklet {
namespace {

using namespace std::string_literals;
using Lines = std::vector<std::string>;

class RoutedRender : public CUnicodeTextRender {
 public:
  int route = 0;

 protected:
  int RenderRoute() const override { return route; }
};

class NumberedRoutes : public SystemTest {
 protected:
  Lines Drawn(int route, std::uint32_t format = 0, bool rtl = false, bool mark_route = false) {
    render_.route = route;
    text_ = original_;
    recorder_.Clear();
    render_.DrawText(canvas_.dc(), text_, -1, rect_, format, MakeRgb(1, 2, 3), rtl, mark_route);
    return recorder_.Lines();
  }

  Canvas canvas_{300, 40};
  RoutedRender render_;
  std::u16string original_ = u"Total", text_;
  RECT rect_{5, 6, 200, 30};
  Recorder recorder_;
};

TEST_F(NumberedRoutes, OneIsDrawTextW) {
  EXPECT_EQ(Drawn(1),
            (Lines{"SetTextColor(#010203)", "DrawTextW(\"Total<DrawTextW>\",[5,6,200,30],0x40020)"}));
  EXPECT_EQ(text_, u"Total<DrawTextW>");
}

TEST_F(NumberedRoutes, AFormatThatIsNotZeroStandsAsItIs) {
  EXPECT_EQ(Drawn(1, 0x12, true, true).back(), "DrawTextW(\"Total<DrawTextW><map>\",[5,6,200,30],0x12)");
  EXPECT_EQ(text_, u"Total<DrawTextW><map>");
}

TEST_F(NumberedRoutes, TwoIsExtTextOutW) {
  EXPECT_EQ(Drawn(2),
            (Lines{"SetTextColor(#010203)", "SetTextAlign(0x18)",
                   "ExtTextOutW(5,19,0x0,[5,6,200,30],\"Total<ExtTextOutW>\")", "SetTextAlign(0x0)"}));
  EXPECT_EQ(Drawn(2, 0, true)[1], "SetTextAlign(0x118)");
}

TEST_F(NumberedRoutes, ThreeIsShapingBetweenTwoAlignments) {
  const Lines lines = Drawn(3, 0, true);
  ASSERT_GE(lines.size(), 3u);
  EXPECT_EQ(lines[0], "SetTextColor(#010203)");
  EXPECT_EQ(lines[1], "SetTextAlign(0x118)");
  EXPECT_EQ(lines.back(), "SetTextAlign(0x0)");
  EXPECT_EQ(text_, u"Total<Uniscribe>");
  EXPECT_TRUE(recorder_.Lines("DrawTextW").empty());
}

TEST_F(NumberedRoutes, ThreeDropsByThirteenAndTakesNothingButTheRightAlignment) {
  Drawn(3);
  EXPECT_EQ(recorder_.Lines("ScriptStringOut").at(0),
            "ScriptStringOut(analysis(\"Total<Uniscribe>\"),5,19,0x0,[5,19,200,30],0,0,0)");
  Drawn(3, DT_RIGHT | DT_CENTER, true);
  EXPECT_EQ(recorder_.Lines("ScriptStringOut").at(0),
            "ScriptStringOut(analysis(\"Total<Uniscribe>\"),200,19,0x0,[5,19,200,30],0,0,0)");
  EXPECT_EQ(rect_, (RECT{5, 6, 200, 30})) << "the drop is a copy's";
}

TEST_F(NumberedRoutes, ThreeCanBeTakenAgainAfterAFailure) {
  recorder_.Fail("ScriptStringAnalyse");
  Drawn(3);
  recorder_.Fail("ScriptStringAnalyse", 1000);
  Drawn(3);
  EXPECT_FALSE(recorder_.Lines("ScriptStringOut").empty());
}

TEST_F(NumberedRoutes, FourIsTheUnicodeLayer) {
  EXPECT_EQ(Drawn(4).back(), "DrawTextW(\"Total<UNICOWS>\",[5,6,200,30],0x40020)");
}

TEST_F(NumberedRoutes, AnyOtherIsDrawTextWWhereTheSystemHasUnicode) {
  for (const int route : {0, 5, -1, 100}) {
    Play(kXp);
    EXPECT_EQ(Drawn(route).back(), "DrawTextW(\"Total<!DrawTextW!>\",[5,6,200,30],0x40020)") << route;
  }
}

TEST_F(NumberedRoutes, AnyOtherIsTheUnicodeLayerWhereThatLoads) {
  Play(kWindows98);
  Configuration().libraries["UNICOWS"] = true;
  EXPECT_EQ(Drawn(0).back(), "DrawTextW(\"Total<!UNICOWS!>\",[5,6,200,30],0x40020)");
}

TEST_F(NumberedRoutes, AnyOtherIsDrawTextAElseAndGivesTheDrawnFormBack) {
  Play(kWindows98);
  Configuration().libraries["UNICOWS"] = false;
  original_ = u"\u4E2D 5\u20AC";
  const Lines lines = Drawn(0);
  EXPECT_EQ(text_, u"? 5\u20AC<!!!!!DrawTextA!!!!!>");
  EXPECT_EQ(recorder_.Lines("DrawTextW"), Lines{});
  ASSERT_EQ(recorder_.Lines("DrawTextA").size(), 1u);
  EXPECT_NE(lines.back().find("<!!!!!DrawTextA!!!!!>"), lines.back().npos);
}

TEST_F(NumberedRoutes, ATextEndsAtItsFirstNullWhereThePlatformReadsItSo) {
  original_ = u"To\0tal"s;
  EXPECT_EQ(Drawn(1).back(), "DrawTextW(\"To\",[5,6,200,30],0x40020)");
  EXPECT_EQ(text_, u"To\0tal<DrawTextW>"s);
}

TEST_F(NumberedRoutes, MeasuringUnderCalcRectChangesTheCallersRectangle) {
  Drawn(1, 0x420);
  EXPECT_NE(rect_, (RECT{5, 6, 200, 30}));
  EXPECT_EQ(rect_.left, 5);
}

TEST_F(NumberedRoutes, ThePrefixesOfALongTextAreNotAllMeasured) {
  Play(kXp);
  recorder_.Clear();
  render_.FitLength(canvas_.dc(), std::u16string(5000, u'x'), 200);
  EXPECT_LT(recorder_.Lines("GetTextExtentPoint32W").size(), 100u);
}

}  // namespace
}  // namespace marklet
