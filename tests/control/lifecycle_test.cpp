// A control's start, the defaults of a new one, re-entry and failing hosts.
#include <gtest/gtest.h>

#include <stdexcept>

#include "support/fake_host.h"

namespace marklet {
namespace {

using testing::FakeHost;
using testing::HostedControl;
using testing::PlacedControl;
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
  PlacedControl hosted;
  hosted.host.on_change = [&] {
    if (hosted.State().Caption.size() < 5) hosted.Set("Caption", hosted.State().Caption + u"x");
  };
  hosted.Set("Caption", std::u16string(u"a"));
  EXPECT_EQ(hosted.State().Caption, u"axxxx");
  EXPECT_EQ(std::count(hosted.host.log.begin(), hosted.host.log.end(), "Change"), 5);
}

TEST(Reentry, AHandlerOfPropertyChangedMaySetEveryOtherProperty) {
  PlacedControl hosted;
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
  PlacedControl hosted;
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
  PlacedControl hosted;
  hosted.host.Surface().Clear(0x123456);
  hosted.host.on_enabled_asked = [&] { hosted.State().BackBuffer.reset(); };
  hosted.Set("BackColor", Long{0x00FF00});
  EXPECT_FALSE(hosted.State().BackBuffer);
  EXPECT_EQ(hosted.host.Pixel(3, 3), 0x123456u);
}

TEST(Reentry, ManySettersInsideOnePaintEnd) {
  PlacedControl hosted;
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
  PlacedControl hosted;
  hosted.host.on_property_changed = [](std::string_view) { throw std::runtime_error("no"); };
  hosted.host.on_change = [] { throw std::runtime_error("no"); };
  hosted.Set("Caption", std::u16string(u"x"));
  EXPECT_EQ(hosted.State().Caption, u"x");
  EXPECT_EQ(hosted.host.log.back(), "Change");
}

TEST(FailingHost, AStepOfAPaintThatThrowsIsSkippedAndTheNextRuns) {
  PlacedControl hosted;
  hosted.State().Caption = u"WWW";
  hosted.host.on_enabled_asked = [] { throw std::runtime_error("no"); };
  hosted.Set("BackColor", Long{0x00FF00});
  EXPECT_EQ(hosted.host.Pixel(99, 49), 0x00FF00u);
  int ink = 0;
  for (Long y = 0; y < 50; ++y)
    for (Long x = 0; x < 100; ++x) ink += hosted.host.Pixel(x, y) != 0x00FF00u;
  EXPECT_GT(ink, 0) << "the text is drawn, in whatever colour";
  EXPECT_EQ(hosted.host.Announced(), (Log{"BackColor"}));
}

// A host that answers nothing at all.
struct NoHost final : UserControl, MarkletEvents, Ambient {
  [[noreturn]] static void No() { throw std::runtime_error("no"); }
  Ambient& AmbientProperties() override { return *this; }
  bool UserMode() override { No(); }
  OLE_COLOR ForeColor() override { No(); }
  std::u16string DisplayName() override { No(); }
  bool RightToLeft() override { No(); }
  HWND hWnd() override { No(); }
  HDC hDC() override { No(); }
  double ScaleWidth() override { No(); }
  double ScaleHeight() override { No(); }
  double Width() override { No(); }
  double Height() override { No(); }
  void PutWidth(double) override { No(); }
  void PutHeight(double) override { No(); }
  double TwipsPerPixelX() override { No(); }
  double TwipsPerPixelY() override { No(); }
  bool Enabled() override { No(); }
  void PutEnabled(bool) override { No(); }
  FontRef Font() override { No(); }
  void PutFont(FontRef) override { No(); }
  OLE_COLOR BackColor() override { No(); }
  void PutBackColor(OLE_COLOR) override { No(); }
  HostObjectRef MouseIcon() override { No(); }
  void PutMouseIcon(HostObjectRef) override { No(); }
  Long MousePointer() override { No(); }
  void PutMousePointer(Long) override { No(); }
  std::u16string AccessKeys() override { No(); }
  void PutAccessKeys(std::u16string) override { No(); }
  void TrackMouseEvent() override { No(); }
  HostTooltipRef CreateTooltip() override { No(); }
  void StartSubclass(bool) override { No(); }
  HWND ContainerHwnd() override { No(); }
  NamedMembersRef Parent() override { No(); }
  NamedMembersRef Extender() override { No(); }
  bool PaintBehind(HDC) override { No(); }
  void PropertyChanged(std::string_view) override { No(); }
  void Change() override { No(); }
  void Click() override { No(); }
  void DblClick() override { No(); }
  void MouseDown(std::int16_t&, std::int16_t&, float&, float&) override { No(); }
  void MouseUp(std::int16_t&, std::int16_t&, float&, float&) override { No(); }
  void MouseMove(std::int16_t&, std::int16_t&, float&, float&) override { No(); }
  void MouseEnter() override { No(); }
  void MouseLeave() override { No(); }
  void OLECompleteDrag(Long&) override { No(); }
  void OLEDragDrop(const HostObjectRef&, Long&, PointerArguments&) override { No(); }
  void OLEDragOver(const HostObjectRef&, Long&, PointerArguments&, std::int16_t&) override { No(); }
  void OLEGiveFeedback(Long&, bool&) override { No(); }
  void OLESetData(const HostObjectRef&, std::int16_t&) override { No(); }
  void OLEStartDrag(const HostObjectRef&, Long&) override { No(); }
};

Value AValueFor(ValueType type) {
  switch (type) {
    case ValueType::Boolean:
      return true;
    case ValueType::Text:
      return std::u16string(u"<b>text</b>");
    case ValueType::Font:
      return std::make_shared<StdFont>();
    case ValueType::Picture:
      return HostObjectRef();
    default:
      return Long{1};
  }
}

TEST(FailingHost, WhereNothingWorksNoErrorGetsOutAndFieldsAreStillStored) {
  NoHost host;
  Marklet control(host, host);
  control.InitProperties();
  EXPECT_TRUE(control.State().WordWrap) << "after steps that failed";
  for (const auto& rows : {Properties(), HiddenProperties()})
    for (const PropertyRow& row : rows) {
      control.Set(row, AValueFor(row.type));
      control.Get(row);
    }
  EXPECT_EQ(control.State().Caption, u"<b>text</b>");
  EXPECT_EQ(control.State().ImageSize, 1);
  EXPECT_EQ(control.State().ImagePixels, 24);
  EXPECT_EQ(control.State().EffectColor, 1u);
  EXPECT_FALSE(control.State().UsesSystemColors);
  EXPECT_TRUE(control.LoadIconImageFromFile(u"no such file.bmp", u"key"));
  control.DeleteIconImage(u"key");
  control.Resize();
  control.PaintControl(nullptr);
  control.Click();
  control.DblClick();
  control.MouseDown(1, 0, 1, 1);
  control.MouseUp(1, 0, 1, 1);
  control.MouseMove(1, 0, 1, 1);
  EXPECT_TRUE(control.State().Hover) << "after steps that failed";
  control.EndHover();
  control.MouseLeave();
  control.ExtendedMouseDown(32, 0, 1, 1);
  control.ExtendedMouseUp(32, 0, 1, 1);
  Long effect = 7;
  bool default_cursors = true;
  control.OLEStartDrag(nullptr, effect);
  control.OLEDragOver(nullptr, effect, {}, 0);
  control.OLEGiveFeedback(effect, default_cursors);
  control.OLESetData(nullptr, 1);
  control.OLEDragDrop(nullptr, effect, {});
  control.OLECompleteDrag(effect);
  EXPECT_EQ(effect, 7);
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
