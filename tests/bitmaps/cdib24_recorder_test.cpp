// The platform calls of CDib24 and of the colour functions, and what they do when one of them fails.
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "bitmaps/cdib24.h"
#include "bitmaps/colour.h"
#include "bitmaps/pixels.h"
#include "bitmaps/recorded_handles.h"
#include "platform/system.h"

namespace marklet {
namespace {

constexpr COLORREF kKey = MakeRgb(255, 0, 255), kRed = MakeRgb(255, 0, 0), kGrey = MakeRgb(9, 10, 11);

TEST(CDib24Handles, DetachKeepsTheBitmap) {
  Recorder recorder;
  CDib24 surface;
  surface.Create(5, 3);
  recorder.Clear();
  const HBITMAP bitmap = surface.Detach();
  EXPECT_EQ(recorder.Lines(), (Lines{"SelectObject(bitmap(1x1x1))", "DeleteDC()"}));
  DeleteObject(bitmap);
}

TEST(CDib24Handles, ClearOnAnEmptySurfaceMakesNoCall) {
  Recorder recorder;
  CDib24 surface;
  surface.Clear(kRed);
  EXPECT_EQ(recorder.Lines(), Lines{});
}

TEST(CDib24Handles, ClearMakesOneBrushAndDeletesIt) {
  CDib24 surface;
  surface.Create(5, 3);
  Recorder recorder;
  surface.Clear(kRed);
  EXPECT_EQ(recorder.Lines(), (Lines{"CreateSolidBrush(#FF0000)", "FillRect([0,0,5,3],brush(#FF0000))",
                                     "DeleteObject(brush(#FF0000))"}));
}

TEST(CDib24Handles, BlitsCarryTheirNumbersAndOperation) {
  CDib24 surface, other;
  surface.Create(5, 3);
  other.Create(5, 3);
  Recorder recorder;
  surface.LoadFromDC(other.hDC(), 1, 2, 3, 4, SRCAND);
  surface.PaintTo(other.hDC(), 1, 2, 3, 4, 5, 6, SRCINVERT);
  surface.PaintTo(other.hDC(), 1, 2, -1, -1, 0, 0, SRCCOPY);
  surface.AlphaPaint(other.hDC(), 1, 2, 3, -4, 5, 6, 77, true);
  EXPECT_EQ(recorder.Lines(), (Lines{"BitBlt(0,0,3,4,1,2,0x8800C6)", "BitBlt(1,2,3,4,5,6,0x660046)",
                                     "BitBlt(1,2,5,3,0,0,0xCC0020)", "AlphaBlend(1,2,3,3,5,6,3,3,77,1)"}));
}

TEST(CDib24Handles, ResizeKeyedWithTheSameSizeIsOneBlit) {
  CDib24 surface;
  surface.Create(5, 3);
  Recorder recorder;
  { const auto resized = surface.ResizeKeyed(3, 5, KeyColour); }
  EXPECT_EQ(recorder.Lines("BitBlt"), Lines{"BitBlt(0,0,5,3,0,0,0xCC0020)"});
  ExpectNoLeak(recorder);
}

TEST(CDib24Handles, AResizeWithoutMemoryIsNothingOrEmptyAndLeaksNothing) {
  CDib24 surface;
  surface.Create(5, 3);
  Recorder recorder;
  recorder.Fail("CreateDIBSection");
  EXPECT_EQ(surface.ResizeKeyed(7, 7, KeyColour), nullptr);
  const auto resampled = surface.ResampleNearest(7, 7);
  ASSERT_NE(resampled, nullptr);
  EXPECT_EQ(resampled->hDC(), nullptr);
  EXPECT_EQ(Names(recorder), (Lines{"CreateCompatibleDC", "CreateDIBSection", "DeleteDC",
                                    "CreateCompatibleDC", "CreateDIBSection", "DeleteDC"}));
}

// A context whose pixels aren't ours, as a window's.
class KeyedCopyFromAndToWindows : public testing::Test {
 protected:
  KeyedCopyFromAndToWindows() {
    source_.Create(4, 3);
    target_.Create(6, 5);
    Random random(31);
    FillWithNoise(source_, random, kKey);
    FillWithNoise(target_, random, kKey);
    expected_.Create(6, 5);
    expected_.LoadFromDC(target_.hDC(), 0, 0, 6, 5, SRCCOPY);
  }

  // The copy once between pixels of ours and once with a `PixelsOf` that refuses after `good_calls`.
  void ExpectSame(int good_calls, Long x, Long y, Long width, Long height, Long source_x, Long source_y) {
    TransparentCopy(expected_.hDC(), x, y, width, height, source_.hDC(), source_x, source_y, kKey);
    Recorder recorder;
    recorder.Fail("PixelsOf", good_calls);
    EXPECT_EQ(TransparentCopy(target_.hDC(), x, y, width, height, source_.hDC(), source_x, source_y, kKey),
              0);
    ExpectNoLeak(recorder);
    EXPECT_EQ(Colours(target_), Colours(expected_));
  }

  CDib24 source_, target_, expected_;
};

TEST_F(KeyedCopyFromAndToWindows, BothForeign) {
  ExpectSame(0, 1, 1, 4, 3, 0, 0);
  ExpectSame(0, -2, 3, 9, 9, 1, -1);
}

TEST_F(KeyedCopyFromAndToWindows, ForeignDestination) {
  ExpectSame(1, 1, 1, 4, 3, 0, 0);
  ExpectSame(1, -2, 3, 9, 9, 1, -1);
}

TEST_F(KeyedCopyFromAndToWindows, EveryOffset) {
  for (Long x = -5; x <= 7; ++x) {
    for (Long source_x = -5; source_x <= 5; ++source_x) ExpectSame(0, x, -x, 5, 4, source_x, source_x);
  }
}

TEST_F(KeyedCopyFromAndToWindows, WithoutMemoryForACopyNothingHappens) {
  for (const int good_calls : {0, 1}) {
    const auto before = Colours(target_);
    Recorder recorder;
    recorder.Fail("PixelsOf");
    recorder.Fail("CreateDIBSection", good_calls);
    EXPECT_EQ(TransparentCopy(target_.hDC(), 0, 0, 4, 3, source_.hDC(), 0, 0, kKey), 7);
    EXPECT_EQ(Colours(target_), before);
  }
}

TEST_F(KeyedCopyFromAndToWindows, UnboundedRectanglesReportOutOfMemory) {
  Recorder recorder;
  recorder.Fail("PixelsOf");
  EXPECT_EQ(TransparentCopy(target_.hDC(), 0, 0, 0x7FFFFFFF, 0x7FFFFFFF, source_.hDC(), 0, 0, kKey), 7);
}

TEST(ColourCalls, GradientBandsMakesAndDeletesABrushPerBand) {
  CDib24 surface;
  surface.Create(20, 20);
  Recorder recorder;
  GradientRect(surface.hDC(), kRed, 0, 1, 2, 3, 10, false);
  EXPECT_EQ(recorder.Lines("FillRect").size(), 11u);
  EXPECT_EQ(recorder.Lines("FillRect").front(), "FillRect([1,2,4,3],brush(#FF0000))");
  EXPECT_EQ(recorder.Lines("FillRect").back(), "FillRect([1,12,4,13],brush(#000000))");
  EXPECT_EQ(recorder.Lines("CreateSolidBrush").size(), 11u);
  ExpectNoLeak(recorder);
}

TEST(ColourCalls, GradientBandsWithEqualColoursNeverRuns) {
  CDib24 surface;
  surface.Create(20, 20);
  Recorder recorder;
  GradientRect(surface.hDC(), kRed, kRed, 1, 2, 3, 10, false);
  EXPECT_EQ(recorder.Lines(), (Lines{"CreateSolidBrush(#FF0000)", "FillRect([1,2,4,12],brush(#FF0000))",
                                     "DeleteObject(brush(#FF0000))"}));
}

TEST(ColourCalls, GradientBandsReachesFarInAWindow) {
  CDib24 surface;
  surface.Create(2, 2);
  Recorder recorder;
  recorder.Fail("PixelsOf");
  GradientBands(surface.hDC(), {0, -20, 1, 300}, kRed, kGrey, true);
  EXPECT_EQ(recorder.Lines("FillRect").size(), 321u);
}

TEST(ColourCalls, FrameRectangleIsFourLinesOfOnePen) {
  CDib24 surface;
  surface.Create(20, 20);
  Recorder recorder;
  FrameRectangle(surface.hDC(), kRed, 2, 3, 5, 6);
  const Lines lines = recorder.Lines();
  ASSERT_EQ(lines.size(), 9u);
  EXPECT_EQ((Lines{lines.begin(), lines.begin() + 7}),
            (Lines{"CreatePen(1,#FF0000)", "SelectObject(pen(#FF0000))", "MoveToEx(2,8)", "LineTo(2,3)",
                   "LineTo(6,3)", "LineTo(6,8)", "LineTo(2,8)"}));
  EXPECT_EQ(lines[7].substr(0, 13), "SelectObject(");
  EXPECT_EQ(lines[8], "DeleteObject(pen(#FF0000))");
}

TEST(ColourCalls, SystemColoursChangedStopsAtTheFirstDifference) {
  Recorder recorder;
  std::array<COLORREF, 6> snapshot{};
  for (std::size_t i = 0; i < 6; ++i) snapshot[i] = GetSysColor(kWatchedSystemColours[i]);
  recorder.Clear();
  EXPECT_FALSE(SystemColoursChanged(snapshot));
  EXPECT_EQ(recorder.Lines(), (Lines{"GetSysColor(15)", "GetSysColor(13)", "GetSysColor(5)", "GetSysColor(8)",
                                     "GetSysColor(15)", "GetSysColor(18)"}));
  recorder.Clear();
  snapshot[1] ^= 1;
  EXPECT_TRUE(SystemColoursChanged(snapshot));
  EXPECT_EQ(recorder.Lines(), (Lines{"GetSysColor(15)", "GetSysColor(13)"}));
}

}  // namespace
}  // namespace marklet
