// A control's start, the defaults of a new one, re-entry and failing hosts.
#include <gtest/gtest.h>

#include <stdexcept>

#include "support/fake_host.h"

namespace marklet {
namespace {

using testing::FakeHost;
using testing::HostedControl;
using Log = FakeHost::Log;

TEST(Initialize, SetsSixFieldsAndTellsNobody) {
  HostedControl hosted;
  const MarkletState& state = hosted.State();
  EXPECT_TRUE(state.SafeForScripting);
  EXPECT_TRUE(state.SafeForInitializing);
  EXPECT_EQ(state.Caption, u"");
  EXPECT_EQ(state.ImagePixels, 16);
  ASSERT_TRUE(state.Images);
  EXPECT_EQ(state.Images->Count(), 0);
  ASSERT_TRUE(state.BackBuffer);
  EXPECT_EQ(state.BackBuffer->hDC(), nullptr) << "an empty surface";
  EXPECT_TRUE(state.UsesSystemColors);
  EXPECT_FALSE(state.Hover);
  EXPECT_FALSE(state.DesignMode);
  EXPECT_TRUE(hosted.host.log.empty());
}

TEST(InitProperties, RunsItsSettersInOrderAndAnnouncesNothingBeyondThem) {
  HostedControl hosted;
  hosted.host.ambient.display_name = u"Marklet1";
  hosted.control.InitProperties();
  EXPECT_EQ(hosted.host.log,
            (Log{"hDC", "PropertyChanged(Appearance)",         //
                 "hDC", "PropertyChanged(BorderStyle)",        //
                 "hDC", "PropertyChanged(Caption)", "Change",  // no keys: UseMnemonic is set later
                 "Font", "hDC", "PropertyChanged(Font)",       //
                 "Enabled(1)", "AccessKeys()"}));              // they agree with the caption in the end
}

TEST(InitProperties, GivesEveryPropertyItsInitialValue) {
  HostedControl hosted;
  FakeHost& host = hosted.host;
  host.ambient.display_name = u"Marklet1";
  host.ambient.back_color = 0x00C0FFEE;
  host.ambient.fore_color = 0x00123456;
  host.ambient.right_to_left = true;
  host.ambient.font->PutName(u"Georgia");
  host.ambient.font->PutSize(11.25);
  host.enabled = false;
  hosted.Init();
  EXPECT_FALSE(hosted.Flag("AutoSize"));
  EXPECT_EQ(hosted.Number("BackColor"), 0x00C0FFEE);
  EXPECT_EQ(hosted.Number("BackStyle"), 1);
  EXPECT_EQ(hosted.Number("Appearance"), 1);
  EXPECT_EQ(hosted.Number("BorderStyle"), 0);
  EXPECT_EQ(hosted.Text("Caption"), u"Marklet1");
  EXPECT_EQ(hosted.Text("FontName"), u"Georgia");
  EXPECT_EQ(host.font->Size(), 11.25);
  EXPECT_NE(host.font, host.ambient.font) << "a copy of the ambient font";
  EXPECT_EQ(hosted.Number("ForeColor"), 0x00123456);
  EXPECT_EQ(static_cast<OLE_COLOR>(hosted.Number("EffectColor")), 0x80000010u);
  EXPECT_EQ(hosted.Text("ImageKey"), u"");
  EXPECT_EQ(hosted.Text("ImageKeyhover"), u"");
  EXPECT_TRUE(hosted.Flag("UseMnemonic"));
  EXPECT_EQ(hosted.Text("UniToolTipText"), u"");
  EXPECT_EQ(hosted.Number("TextEffect"), 0);
  EXPECT_TRUE(hosted.Flag("Enabled"));
  EXPECT_TRUE(hosted.Flag("WordWrap"));
  EXPECT_EQ(hosted.Number("ImageAlignment"), 0);
  EXPECT_EQ(hosted.Number("ImageSize"), 0);
  EXPECT_EQ(hosted.State().Padding, 0);
  EXPECT_TRUE(hosted.State().RightToLeft);
  EXPECT_EQ(hosted.State().Alignment, 0);
  EXPECT_EQ(hosted.State().VerticalAlignment, 0);
  EXPECT_EQ(host.back_color, 0u) << "the host's own colour isn't touched";
  EXPECT_TRUE(hosted.State().UsesSystemColors) << "as Initialize left it, though no system colour is used";
}

TEST(InitProperties, DesignModeIsWrittenOnceAndNeverFollows) {
  HostedControl hosted;
  hosted.host.ambient.user_mode = false;
  hosted.Init();
  EXPECT_TRUE(hosted.State().DesignMode);
  hosted.host.ambient.user_mode = true;
  hosted.Set("Caption", std::u16string(u"x"));
  EXPECT_TRUE(hosted.State().DesignMode);
}

// --- Re-entry ---------------------------------------------------------------------------------------------

TEST(Reentry, AHandlerOfChangeMaySetTheCaption) {
  HostedControl hosted;
  hosted.Init();
  hosted.host.on_change = [&] {
    if (hosted.State().Caption.size() < 5) hosted.Set("Caption", hosted.State().Caption + u"x");
  };
  hosted.Set("Caption", std::u16string(u"a"));
  EXPECT_EQ(hosted.State().Caption, u"axxxx");
  EXPECT_EQ(std::count(hosted.host.log.begin(), hosted.host.log.end(), "Change"), 5);
}

TEST(Reentry, AHandlerOfPropertyChangedMaySetEveryOtherProperty) {
  HostedControl hosted;
  hosted.Init();
  int depth = 0;
  hosted.host.on_property_changed = [&](std::string_view) {
    if (++depth > 1) return;
    for (const PropertyRow& row : Properties()) hosted.control.Set(row, hosted.control.Get(row));
  };
  hosted.Set("BackColor", Long{0x00FF00});
  EXPECT_EQ(hosted.host.Pixel(3, 3), 0x00FF00u);
}

// The question whether the host is enabled comes from inside the drawing of the caption.
TEST(Reentry, APictureDroppedWhileItIsBuiltLeavesTheNewerOne) {
  HostedControl hosted;
  hosted.Init();
  bool nested = false;
  hosted.host.on_enabled_asked = [&] {
    if (nested) return;
    nested = true;
    hosted.Set("BackColor", Long{0x0000FF});
  };
  hosted.Set("BackColor", Long{0x00FF00});
  EXPECT_TRUE(nested);
  ASSERT_TRUE(hosted.State().BackBuffer);
  EXPECT_EQ(hosted.host.Pixel(3, 3), 0x0000FFu) << "the later setter's picture stays";
}

TEST(Reentry, APictureTakenAwayWhileItIsBuiltIsNotCopied) {
  HostedControl hosted;
  hosted.Init();
  hosted.host.Surface().Clear(0x123456);
  hosted.host.on_enabled_asked = [&] { hosted.State().BackBuffer.reset(); };
  hosted.Set("BackColor", Long{0x00FF00});
  EXPECT_FALSE(hosted.State().BackBuffer);
  EXPECT_EQ(hosted.host.Pixel(3, 3), 0x123456u);
}

TEST(Reentry, ManySettersInsideOnePaintEnd) {
  HostedControl hosted;
  hosted.Init();
  int depth = 0;
  hosted.host.on_enabled_asked = [&] {
    if (++depth < 50) hosted.Set("ForeColor", Long{depth});
  };
  hosted.control.RedrawNow();
  EXPECT_EQ(depth, 50);
  EXPECT_TRUE(hosted.State().BackBuffer);
}

// --- Hosts that fail --------------------------------------------------------------------------------------

TEST(FailingHost, AnAnnouncementThatThrowsIsSkippedAndChangeIsStillRaised) {
  HostedControl hosted;
  hosted.Init();
  hosted.host.on_property_changed = [](std::string_view) { throw std::runtime_error("no"); };
  hosted.host.on_change = [] { throw std::runtime_error("no"); };
  hosted.Set("Caption", std::u16string(u"x"));
  EXPECT_EQ(hosted.State().Caption, u"x");
  EXPECT_EQ(hosted.host.log.back(), "Change");
}

TEST(FailingHost, APaintThatThrowsIsSkippedAndTheRestRuns) {
  HostedControl hosted;
  hosted.Init();
  hosted.host.on_enabled_asked = [] { throw std::runtime_error("no"); };
  hosted.Set("BackColor", Long{0x00FF00});
  EXPECT_EQ(hosted.host.Pixel(3, 3), 0x00FF00u) << "the background is drawn, the caption isn't";
  EXPECT_EQ(hosted.host.Announced(), (Log{"BackColor"}));
}

TEST(FailingHost, NowhereToPaintIsNoError) {
  HostedControl hosted;
  hosted.host.has_surface = false;
  hosted.Init();
  hosted.Set("Caption", std::u16string(u"<b>x</b> y"));
  EXPECT_EQ(hosted.host.log.back(), "Change");
}

TEST(FailingHost, AbsurdSizesBuildNothingAndCopyNothing) {
  for (const double size : {0.0, -5.0, 1e300, -1e300}) {
    HostedControl hosted;
    hosted.host.has_surface = false;
    hosted.host.scale_width = hosted.host.scale_height = size;
    hosted.Init();
    hosted.Set("Caption", std::u16string(u"<b>x</b> y"));
    EXPECT_EQ(hosted.host.log.back(), "Change") << size;
  }
}

}  // namespace
}  // namespace marklet
