// AutoSize and Resize. Extents depend on fonts, so the expected sizes come from the platform's own measuring
// of the same text.
#include <gtest/gtest.h>

#include "base/rounding.h"
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

struct Sizing : ::testing::Test {
  FixedSystem windows7;
  HostedControl hosted;

  void SetUp() override {
    hosted.Init();
    hosted.host.on_resize = [this] { hosted.control.Resize(); };
  }
  RECT Measured(std::u16string_view text, Long right, std::uint32_t flags) {
    RECT rect = {0, 0, right, 0};
    DrawTextW(hosted.host.Surface().hDC(), text, rect, DT_CALCRECT | flags);
    return rect;
  }
  void Caption(const char16_t* text) { hosted.State().Caption = text; }
  void SwitchOn() { hosted.Set("AutoSize", true); }
};

constexpr const char16_t* kLong = u"A caption that is longer than the control is wide, by far";

TEST_F(Sizing, WrappedKeepsTheWidthAndSetsTheHeight) {
  Caption(kLong);
  const RECT expected = Measured(kLong, 100, DT_WORDBREAK);
  ASSERT_GT(expected.bottom, 15);
  SwitchOn();
  EXPECT_EQ(hosted.host.scale_width, 100);
  EXPECT_EQ(hosted.host.scale_height, expected.bottom);
}

TEST_F(Sizing, UnwrappedSetsBoth) {
  hosted.State().WordWrap = false;
  Caption(kLong);
  const RECT expected = Measured(kLong, 100, DT_SINGLELINE);
  ASSERT_GT(expected.right, 100);
  SwitchOn();
  EXPECT_EQ(hosted.host.scale_width, expected.right);
  EXPECT_EQ(hosted.host.scale_height, expected.bottom);
}

TEST_F(Sizing, UnwrappedALineBreakIsIgnored) {
  hosted.State().WordWrap = false;
  const RECT one_line = Measured(u"one", 100, DT_SINGLELINE);
  Caption(u"one\r\ntwo");
  SwitchOn();
  EXPECT_EQ(hosted.host.scale_height, one_line.bottom);
}

TEST_F(Sizing, AnImageAddsItsPixelsToTheWidthAndNothingToTheHeight) {
  hosted.State().WordWrap = false;
  Caption(u"Caption");
  const RECT expected = Measured(u"Caption", 100, DT_SINGLELINE);
  hosted.Set("ImageSize", Long{4});
  hosted.State().ImageKey = u"not even in the list";
  SwitchOn();
  EXPECT_EQ(hosted.host.scale_width, expected.right + 72);
  EXPECT_EQ(hosted.host.scale_height, expected.bottom);
}

TEST_F(Sizing, PaddingCountsTwice) {
  hosted.State().WordWrap = false;
  hosted.State().Padding = 7;
  Caption(u"Caption");
  const RECT expected = Measured(u"Caption", 86, DT_SINGLELINE);
  SwitchOn();
  EXPECT_EQ(hosted.host.scale_width, expected.right + 14);
  EXPECT_EQ(hosted.host.scale_height, expected.bottom + 14);
}

TEST_F(Sizing, AnEmptyCaptionKeepsTheSizeAndTheSetterAloneRepaints) {
  SwitchOn();
  EXPECT_EQ(hosted.host.log, (Log{"hDC", "PropertyChanged(AutoSize)"}));
  EXPECT_EQ(hosted.host.scale_height, 50);
}

TEST_F(Sizing, TagsAreMeasuredAsTheyAreWritten) {
  hosted.State().WordWrap = false;
  Caption(u"<b></b>");
  const RECT expected = Measured(u"<b></b>", 100, DT_SINGLELINE);
  SwitchOn();
  EXPECT_EQ(hosted.host.scale_width, expected.right);
}

TEST_F(Sizing, ANegativeRightEdgeIsMeasuredWith) {
  hosted.host.scale_width = 10;
  hosted.State().Padding = 20;
  Caption(u"one two");
  const RECT expected = Measured(u"one two", -30, DT_WORDBREAK);
  SwitchOn();
  EXPECT_EQ(hosted.host.scale_height, expected.bottom + 40);
}

TEST_F(Sizing, EachSizeSetRepaintsBeforeTheRoutinesOwnRepaint) {
  hosted.State().WordWrap = false;
  Caption(u"Caption");
  SwitchOn();
  Log shape;
  for (const std::string& line : hosted.host.log) shape.push_back(line.substr(0, line.find('(')));
  EXPECT_EQ(shape, (Log{"hDC",            // measured
                        "Width", "hDC",   // Resize repaints
                        "Height", "hDC",  // Resize repaints
                        "hDC",            // RecomputeAutoSize's own
                        "hDC",            // the setter's
                        "PropertyChanged"}));
}

TEST_F(Sizing, SizesAreGivenInTwips) {
  hosted.host.twips_per_pixel = 10;  // 144 pixels per inch
  hosted.State().WordWrap = false;
  Caption(u"Caption");
  const RECT expected = Measured(u"Caption", 100, DT_SINGLELINE);
  SwitchOn();
  char line[32];
  std::snprintf(line, sizeof line, "Width(%d)", expected.right * 10);
  EXPECT_EQ(hosted.host.log[1], line);
}

TEST_F(Sizing, AFailedMeasurementSetsTwiceThePadding) {
  hosted.State().WordWrap = false;
  hosted.State().Padding = 6;
  Caption(u"Caption");
  hosted.host.has_surface = false;
  SwitchOn();
  EXPECT_EQ(hosted.host.scale_width, 12);
  EXPECT_EQ(hosted.host.scale_height, 12);
}

TEST_F(Sizing, AnAutoSizeThatIsOffOnlyRedraws) {
  Caption(u"Caption");
  hosted.control.RecomputeAutoSize();
  EXPECT_EQ(hosted.host.log, (Log{"hDC"}));
}

TEST(SizingOnOldSystems, AWidthMeasuredFromBytesIsStretchedForTextsBeyondPlainLatin) {
  const FixedSystem windows98(4, 10, 1);
  for (const bool beyond : {false, true}) {
    PlacedControl hosted;
    hosted.State().WordWrap = false;
    const std::u16string text = beyond ? u"caf\u00E9" : u"cafe";
    hosted.State().Caption = text;
    RECT rect = {0, 0, 100, 0};
    DrawTextA(hosted.host.Surface().hDC(), WideCharToMultiByte(CP_ACP, text), rect,
              DT_CALCRECT | DT_SINGLELINE);
    hosted.Set("AutoSize", true);
    EXPECT_EQ(hosted.host.scale_width, beyond ? RoundHalfEven(rect.right * 1.3) : rect.right);
    EXPECT_EQ(hosted.host.scale_height, rect.bottom);
  }
}

// --- Resize -----------------------------------------------------------------------------------------------

TEST(Resize, MarksGrowAndNeverShrink) {
  PlacedControl hosted;
  EXPECT_EQ(hosted.State().MaxWidth, 0);
  hosted.control.Resize();
  EXPECT_EQ(hosted.State().MaxWidth, 100);
  EXPECT_EQ(hosted.State().MaxHeight, 50);
  hosted.host.scale_width = 40.6;
  hosted.host.scale_height = 60.5;
  hosted.control.Resize();
  EXPECT_EQ(hosted.State().MaxWidth, 100);
  EXPECT_EQ(hosted.State().MaxHeight, 60) << "halves to even";
}

TEST(Resize, RebuildsThePictureAtTheSizeOfTheMoment) {
  for (const bool user_mode : {false, true}) {
    HostedControl hosted;
    hosted.host.ambient.user_mode = user_mode;
    hosted.Init();
    hosted.control.Resize();
    EXPECT_EQ(hosted.State().BackBuffer->Width(), 100);
    hosted.host.scale_width = 33.5;
    hosted.host.scale_height = 21.5;
    hosted.control.Resize();
    EXPECT_EQ(hosted.State().BackBuffer->Width(), 34);
    EXPECT_EQ(hosted.State().BackBuffer->Height(), 22);
    EXPECT_EQ(hosted.host.Paints(), 2);
  }
}

}  // namespace
}  // namespace marklet
