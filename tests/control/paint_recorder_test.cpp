// The platform calls of a paint: their order and their arguments.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "markup/drawn_runs.h"
#include "platform/headless/recorder/recorder.h"
#include "platform/system.h"
#include "platform/text.h"
#include "support/fake_host.h"

namespace marklet {
namespace {

using testing::FakeHost;
using testing::FixedSystem;
using testing::HostedControl;
using testing::PlacedControl;
using Log = FakeHost::Log;

struct PaintCalls : ::testing::Test {
  FixedSystem windows7;
  HostedControl hosted;

  void SetUp() override {
    Configuration().system_colours = {{15, 0xC0C0C0}, {5, 0xFFFFFF}, {16, 0x808080}, {18, 0x111111}};
    hosted.Init();
    for (const char* name : {"BackColor", "ForeColor", "EffectColor"}) hosted.Set(name, Long{0x0000FF});
    hosted.Set("BackColor", Long{0xF0E0D0});
    hosted.control.RedrawNow();
  }
  // All lines of a redraw, or those of one operation.
  Log Redraw(std::string_view operation = {}) {
    const Recorder recorder;
    hosted.control.RedrawNow();
    return operation.empty() ? recorder.Lines() : recorder.Lines(operation);
  }
  void Caption(const char16_t* text) { hosted.State().Caption = text; }
  // The rectangle that the only DrawTextW of a redraw is given.
  std::string TextRect() {
    const Log lines = Redraw("DrawTextW");
    if (lines.size() != 1) return "not one text";
    const std::size_t open = lines[0].rfind('['), close = lines[0].rfind(']');
    return lines[0].substr(open, close + 1 - open);
  }
};

std::size_t IndexOf(const Log& lines, std::string_view start, std::size_t from = 0) {
  for (std::size_t i = from; i < lines.size(); ++i)
    if (lines[i].starts_with(start)) return i;
  return lines.size();
}

TEST_F(PaintCalls, AnUnchangedRepaintIsOneBlockCopy) {
  Caption(u"<b>bold</b> text");
  hosted.control.RedrawNow();
  const Recorder recorder;
  hosted.control.PaintControl(nullptr);
  EXPECT_EQ(recorder.Lines(), (Log{"BitBlt(0,0,100,50,0,0,0xCC0020)"}));
}

TEST_F(PaintCalls, WithSystemColoursItAlsoLooksAtTheSix) {
  hosted.Set("ForeColor", static_cast<Long>(0x80000012));
  const Recorder recorder;
  hosted.control.PaintControl(nullptr);
  EXPECT_EQ(recorder.Lines(), (Log{"GetSysColor(15)", "GetSysColor(13)", "GetSysColor(5)", "GetSysColor(8)",
                                   "GetSysColor(15)", "GetSysColor(18)", "BitBlt(0,0,100,50,0,0,0xCC0020)"}));
}

// An image that shows in the recording when it is asked to draw, and where it was told to.
struct Marked final : CIconBytes {
  void Render(HDC dc, Long, Long, Long x, Long y, bool, OLE_COLOR, Long) override {
    DrawFocusRect(dc, {x, y, x + 16, y + 16});
  }
};

TEST_F(PaintCalls, LayersComeInOrderBackgroundBorderImageCaptionCopy) {
  hosted.Set("Appearance", Long{0});
  hosted.Set("BorderStyle", Long{1});
  hosted.State().Images->Add(u"key", std::make_shared<Marked>());
  hosted.State().ImageKey = u"key";
  Caption(u"text");
  const Log lines = Redraw();
  const std::size_t background = IndexOf(lines, "FillRect([0,0,100,50]");
  const std::size_t border = IndexOf(lines, "LineTo(");
  const std::size_t image = IndexOf(lines, "DrawFocusRect([2,2,18,18])");
  const std::size_t caption = IndexOf(lines, "DrawTextW(");
  ASSERT_LT(caption, lines.size());
  EXPECT_LT(background, border);
  EXPECT_LT(border, image);
  EXPECT_LT(image, caption);
  EXPECT_EQ(lines.back(), "BitBlt(0,0,100,50,0,0,0xCC0020)");
}

TEST_F(PaintCalls, TheFlatFrameGoesAroundInBlackFromTheBottomLeft) {
  hosted.Set("Appearance", Long{0});
  hosted.Set("BorderStyle", Long{1});
  const Log lines = Redraw();
  const std::size_t pen = IndexOf(lines, "CreatePen(1,#000000)");
  const std::size_t start = IndexOf(lines, "MoveToEx(0,49)", pen);
  ASSERT_LT(start + 4, lines.size());
  const Log sides(lines.begin() + static_cast<std::ptrdiff_t>(start),
                  lines.begin() + static_cast<std::ptrdiff_t>(start) + 5);
  EXPECT_EQ(sides, (Log{"MoveToEx(0,49)", "LineTo(0,0)", "LineTo(99,0)", "LineTo(99,49)", "LineTo(0,49)"}));
}

TEST_F(PaintCalls, TheCaptionLayerSelectsDrawsAndPutsBack) {
  Caption(u"Total");
  hosted.Set("FontSize", Long{9});
  hosted.Set("TextEffect", Long{0});
  const Log lines = Redraw();
  const std::size_t first = IndexOf(lines, "SelectObject(font(\"Tahoma\",-12,400,\"\"))");
  ASSERT_LT(first + 4, lines.size());
  EXPECT_EQ(lines[first + 1], "SetTextAlign(0x0)");
  EXPECT_EQ(lines[first + 2], "SetBkMode(2)");
  EXPECT_EQ(lines[first + 3], "MoveToEx(0,0)");
  const Log last(lines.end() - 6, lines.end());
  EXPECT_TRUE(last[0].starts_with("DrawTextW(\"Total\",[0,0,100,50],0x40010)")) << last[0];
  EXPECT_TRUE(last[1].starts_with("SelectObject(font(")) << last[1];
  EXPECT_EQ(last[2], "SetBkMode(2)") << "the mode of a new context";
  EXPECT_EQ(last[3], "SetBkColor(#000000)");
  EXPECT_EQ(last[4], "SetTextColor(#000000)");
  EXPECT_TRUE(last[5].starts_with("BitBlt("));
}

TEST_F(PaintCalls, TheBackgroundModeIsTheBackStyleAndOne) {
  Caption(u"x");
  for (const auto& [style, mode] : {std::pair<Long, const char*>{0, "SetBkMode(1)"},
                                    {1, "SetBkMode(2)"},
                                    {7, "SetBkMode(8)"},
                                    {2147483647, "SetBkMode(-2147483648)"}}) {
    hosted.State().BackStyle = style;
    EXPECT_EQ(Redraw("SetBkMode").front(), mode);
  }
}

TEST_F(PaintCalls, AnEmptyCaptionStillPassesThroughItsLayer) {
  Caption(u"");
  const Log lines = Redraw();
  EXPECT_LT(IndexOf(lines, "SetTextAlign(0x0)"), lines.size());
  EXPECT_LT(IndexOf(lines, "SetTextColor(#000000)"), lines.size());
  EXPECT_EQ(IndexOf(lines, "DrawTextW("), lines.size());
}

// --- The rectangle of the text ----------------------------------------------------------------------------

TEST_F(PaintCalls, PaddingTenOnAHundredByFifty) {
  Caption(u"x");
  hosted.State().Padding = 10;
  EXPECT_EQ(TextRect(), "[10,10,80,30]");
}

TEST_F(PaintCalls, NegativePaddingIsNone) {
  Caption(u"x");
  hosted.State().Padding = -10;
  EXPECT_EQ(TextRect(), "[0,0,100,50]");
}

TEST_F(PaintCalls, ABorderTakesTwoPixelsOnEachSideAndPaddingComesOnTop) {
  Caption(u"x");
  hosted.State().BorderStyle = 1;
  EXPECT_EQ(TextRect(), "[2,2,98,48]");
  hosted.State().Padding = 5;
  EXPECT_EQ(TextRect(), "[7,7,88,38]");
}

struct Blank final : CIconBytes {
  void Render(HDC, Long, Long, Long, Long, bool, OLE_COLOR, Long) override {}
};

TEST_F(PaintCalls, AnImageTakesItsPixelsAndOneOnItsSide) {
  Caption(u"x");
  hosted.State().Images->Add(u"key", std::make_shared<Blank>());
  hosted.State().ImageKey = u"key";
  EXPECT_EQ(TextRect(), "[17,0,100,50]");
  hosted.State().ImageAlignment = 1;
  EXPECT_EQ(TextRect(), "[0,0,83,50]");
  hosted.State().RightToLeft = true;
  EXPECT_EQ(TextRect(), "[17,0,100,50]");
}

TEST_F(PaintCalls, ACentredImageDoesNotMoveTheText) {
  Caption(u"x");
  hosted.State().Images->Add(u"key", std::make_shared<Blank>());
  hosted.State().ImageKey = u"key";
  hosted.State().ImageAlignment = 2;
  EXPECT_EQ(TextRect(), "[0,0,100,50]");
}

TEST_F(PaintCalls, AnUnknownImageLeavesTheRectangleWhole) {
  Caption(u"x");
  hosted.State().ImageKey = u"key";
  EXPECT_EQ(TextRect(), "[0,0,100,50]");
}

TEST_F(PaintCalls, TheRectangleBeforePaddingIsWhereThePenGoes) {
  Caption(u"x");
  hosted.State().Padding = 10;
  hosted.State().Images->Add(u"key", std::make_shared<Blank>());
  hosted.State().ImageKey = u"key";
  const Log lines = Redraw("MoveToEx");
  EXPECT_EQ(lines, (Log{"MoveToEx(17,0)"}));
}

// --- The style --------------------------------------------------------------------------------------------

TEST_F(PaintCalls, WordWrapAlignmentsAndReadingDirectionReachTheFlags) {
  Caption(u"x");
  const auto flags = [&] {
    const Log lines = Redraw("DrawTextW");
    return lines.empty() ? "none" : lines[0].substr(lines[0].rfind(',') + 1);
  };
  EXPECT_EQ(flags(), "0x40010)");
  hosted.State().WordWrap = false;
  EXPECT_EQ(flags(), "0x40020)");
  hosted.State().Alignment = 2;
  EXPECT_EQ(flags(), "0x40021)");
  hosted.State().VerticalAlignment = 3;
  EXPECT_EQ(flags(), "0x40029)");
  hosted.State().RightToLeft = true;
  hosted.State().Alignment = 0;
  EXPECT_EQ(flags(), "0x6002A)");
}

Log ColoursOf(const Log& lines) {
  Log result;
  for (const std::string& line : lines)
    if (line.starts_with("SetTextColor(")) result.push_back(line.substr(13, 7));
  return result;
}

TEST_F(PaintCalls, AnEnabledControlsTextHasItsForeColor) {
  Caption(u"x");
  EXPECT_EQ(ColoursOf(Redraw()).front(), "#FF0000");
}

TEST_F(PaintCalls, ADisabledControlOnButtonFaceOrWindowHasTheShadowColour) {
  Caption(u"x");
  hosted.host.enabled = false;
  for (const OLE_COLOR back : {0x8000000Fu, 0x80000005u}) {
    hosted.State().BackColor = back;
    EXPECT_EQ(ColoursOf(Redraw()).front(), "#808080");
  }
}

// 92 parts of the text's colour to 163 of the background's, in 255ths.
TEST_F(PaintCalls, ADisabledControlOnAnyOtherColourHasABlend) {
  Caption(u"x");
  hosted.host.enabled = false;
  hosted.State().ForeColor = MakeRgb(255, 0, 10);
  hosted.State().BackColor = MakeRgb(0, 255, 200);
  EXPECT_EQ(std::lround(255 * 92 / 255.0), 92);
  EXPECT_EQ(std::lround(255 * 163 / 255.0), 163);
  EXPECT_EQ(std::lround(200 * 163 / 255.0 + 10 * 92 / 255.0), 131);
  EXPECT_EQ(ColoursOf(Redraw()).front(), "#5CA383");
  hosted.State().BackColor = 0x80000012;  // another system colour is like any other: #111111 here
  hosted.State().ForeColor = 0x00111111;
  EXPECT_EQ(ColoursOf(Redraw()).front(), "#111111");
}

TEST_F(PaintCalls, TheEffectAndItsColourReachTheLayers) {
  Caption(u"x");
  hosted.State().TextEffect = 1;
  hosted.State().EffectColor = MakeRgb(1, 2, 3);
  const Log colours = ColoursOf(Redraw());
  EXPECT_EQ(std::count(colours.begin(), colours.end(), "#010203"), 15);
  hosted.State().TextEffect = 5;  // hollow: the face takes the background's colour
  const Log hollow = ColoursOf(Redraw());
  EXPECT_EQ(std::count(hollow.begin(), hollow.end(), "#D0E0F0"), 1);
}

TEST_F(PaintCalls, TheEffectOfADisabledControlDiffersInTheFaceAlone) {
  Caption(u"x");
  hosted.State().BackColor = 0x8000000F;
  for (const Long effect : {1, 3, 4}) {  // stroke, emboss, engrave: faces of the text's colour
    hosted.State().TextEffect = effect;
    std::vector<DrawnRun> layers[2];
    for (const bool enabled : {false, true}) {
      hosted.host.enabled = enabled;
      const Recorder recorder;
      hosted.control.RedrawNow();
      layers[enabled] = DrawnRuns(recorder);
      ASSERT_GE(layers[enabled].size(), 5u);
      EXPECT_EQ(layers[enabled].back().colour, enabled ? "#FF0000" : "#808080") << "the face";
      layers[enabled].pop_back();
    }
    ASSERT_EQ(layers[0].size(), layers[1].size());
    for (std::size_t i = 0; i < layers[0].size(); ++i) {
      EXPECT_EQ(layers[0][i].colour, layers[1][i].colour) << effect << ", layer " << i;
      EXPECT_EQ(layers[0][i].rect, layers[1][i].rect) << effect << ", layer " << i;
    }
  }
}

TEST_F(PaintCalls, ColoursThatAreNoneBecomeMinusOneAndAreDrawnAsGiven) {
  Caption(u"x");
  hosted.State().ForeColor = 0x7F000000;
  EXPECT_EQ(Redraw("DrawTextW").size(), 1u);
}

// --- Failing calls ----------------------------------------------------------------------------------------

TEST_F(PaintCalls, WithoutASurfaceNothingIsDrawnAndNothingCopied) {
  Caption(u"<b>x</b> y");
  hosted.host.Surface().Clear(0x00445566);
  Recorder recorder;
  recorder.Fail("CreateDIBSection");
  hosted.control.RedrawNow();
  recorder.FailNothing();
  EXPECT_EQ(hosted.host.Pixel(3, 3), 0x00445566u);
  EXPECT_TRUE(recorder.Lines("FillRect").empty());
  ASSERT_TRUE(hosted.State().BackBuffer);
  hosted.control.PaintControl(nullptr);
  EXPECT_EQ(recorder.Lines("CreateDIBSection").size(), 1u) << "tried again only when the picture is dropped";
}

TEST_F(PaintCalls, EachFailingCallLeavesTheRestOfThePaint) {
  Caption(u"<b>bold</b> <c=FF0000>red</c> text");
  hosted.Set("Appearance", Long{0});
  hosted.Set("BorderStyle", Long{1});
  for (const char* operation :
       {"CreateSolidBrush", "FillRect", "CreatePen", "MoveToEx", "LineTo", "SelectObject", "SetTextAlign",
        "SetBkMode", "SetBkColor", "SetTextColor", "GetTextColor", "GetTextExtentPoint32W",
        "GetTextExtentPoint32A", "GetCharABCWidthsA", "CreateFontIndirectW", "GetSysColor"}) {
    Recorder recorder;
    recorder.Fail(operation);
    hosted.control.RedrawNow();
    EXPECT_FALSE(recorder.Lines("DrawTextW").empty()) << operation;
    EXPECT_EQ(recorder.Lines("BitBlt").size(), 1u) << operation;
  }
}

TEST_F(PaintCalls, APaintLeavesNoObjectBehind) {
  Caption(u"<b>bold</b> text");
  hosted.Set("Appearance", Long{0});
  hosted.Set("BorderStyle", Long{1});
  hosted.control.RedrawNow();
  const Recorder recorder;
  hosted.control.RedrawNow();
  const std::size_t made = recorder.Lines("CreateSolidBrush").size() + recorder.Lines("CreatePen").size() +
                           recorder.Lines("CreateDIBSection").size();
  EXPECT_EQ(recorder.Lines("DeleteObject").size(), made);
  EXPECT_EQ(recorder.Lines("DeleteDC").size(), recorder.Lines("CreateCompatibleDC").size());
}

// --- AutoSize's flags -------------------------------------------------------------------------------------

TEST_F(PaintCalls, AutoSizeMeasuresWithTwoSetsOfFlags) {
  Caption(u"x");
  hosted.State().AutoSize = true;
  hosted.State().Padding = 3;
  for (const auto& [wrap, expected] :
       {std::pair<bool, const char*>{true, "DrawTextW(\"x\",[0,0,94,0],0x410)"},
        {false, "DrawTextW(\"x\",[0,0,94,0],0x420)"}}) {
    hosted.host.scale_width = 100;
    hosted.State().WordWrap = wrap;
    const Recorder recorder;
    hosted.control.RecomputeAutoSize();
    EXPECT_EQ(recorder.Lines("DrawTextW").front(), expected);
  }
}

TEST(PaintCallsOnOldSystems, AutoSizeMeasuresBytes) {
  const FixedSystem windows98(4, 10, 1);
  PlacedControl hosted;
  hosted.State().Caption = u"caf\u00E9";
  hosted.State().AutoSize = true;
  const Recorder recorder;
  hosted.control.RecomputeAutoSize();
  EXPECT_EQ(recorder.Lines("DrawTextA").size(), 1u);
}

}  // namespace
}  // namespace marklet
