// Hover, from the first move to the leave, and the events of the pointer that the host passes on.
#include <gtest/gtest.h>

#include "platform/shared/os_tests.h"
#include "support/fake_host.h"
#include "support/memory_bag.h"

namespace marklet {
namespace {

using testing::FixedSystem;
using testing::HostedControl;
using Log = testing::FakeHost::Log;

struct Hovered : HostedControl {
  Hovered() { Init(); }
  void Tip(std::u16string text) {
    Set("UniToolTipText", std::move(text));
    host.TakeLog();
  }
  Log Move() {
    host.TakeLog();
    control.MouseMove(0, 0, 5, 6);
    return host.TakeLog();
  }
  Log Leave() {
    control.EndHover();
    control.MouseLeave();
    return host.TakeLog();
  }
};

// --- Entry and leave --------------------------------------------------------------------------------------

TEST(Hover, EntryTracksShowsTheTipRepaintsAndIsToldBeforeTheMove) {
  Hovered hosted;
  hosted.Tip(u"tip");
  EXPECT_EQ(hosted.Move(), (Log{"TrackMouseEvent", "CreateTooltip", "ToolText(tip)", "hDC", "MouseEnter",
                                "MouseMove(0,0,5,6)"}));
  EXPECT_EQ(hosted.Move(), Log{"MouseMove(0,0,5,6)"}) << "once";
}

TEST(Hover, TheLeaveRepaintsAndIsTold) {
  Hovered hosted;
  hosted.Move();
  EXPECT_TRUE(hosted.State().Hover);
  EXPECT_EQ(hosted.Leave(), (Log{"hDC", "MouseLeave"}));
  EXPECT_FALSE(hosted.State().Hover);
}

TEST(Hover, TheNextEntryTracksAgain) {
  Hovered hosted;
  hosted.Move();
  hosted.Leave();
  EXPECT_EQ(hosted.Move(), (Log{"TrackMouseEvent", "hDC", "MouseEnter", "MouseMove(0,0,5,6)"}));
}

TEST(Hover, WithoutALeaveItIsEnteredOnce) {
  Hovered hosted;
  hosted.Move();
  for (int i = 0; i < 3; ++i) EXPECT_EQ(hosted.Move(), Log{"MouseMove(0,0,5,6)"});
  EXPECT_TRUE(hosted.State().Hover);
}

TEST(Hover, ALeaveWithoutAnEntryIsToldToo) {
  Hovered hosted;
  EXPECT_EQ(hosted.Leave(), (Log{"hDC", "MouseLeave"}));
}

TEST(Hover, ButtonsAloneDoNotBeginIt) {
  Hovered hosted;
  hosted.control.MouseDown(1, 0, 5, 6);
  hosted.control.MouseUp(1, 0, 5, 6);
  EXPECT_FALSE(hosted.State().Hover);
  EXPECT_EQ(hosted.host.TakeLog(), (Log{"MouseDown(1,0,5,6)", "MouseUp(1,0,5,6)"}));
}

TEST(Hover, APictureOfItIsThereBeforeMouseEnter) {
  Hovered hosted;
  bool hover = false;
  std::shared_ptr<CDib24> before = hosted.State().BackBuffer, inside;
  hosted.host.on_mouse_enter = [&] {
    hover = hosted.State().Hover;
    inside = hosted.State().BackBuffer;
  };
  hosted.Move();
  EXPECT_TRUE(hover);
  EXPECT_TRUE(inside);
  EXPECT_NE(before, inside) << "built anew";
}

TEST(Hover, AHandlerOfMouseEnterMaySetProperties) {
  Hovered hosted;
  hosted.host.on_mouse_enter = [&] { hosted.Set("Caption", std::u16string(u"in")); };
  const Log log = hosted.Move();
  EXPECT_EQ(log.back(), "MouseMove(0,0,5,6)");
  EXPECT_EQ(hosted.Text("Caption"), u"in");
}

TEST(Hover, OfAWindowThatGoesStartsAnewOverTheNextOne) {
  Hovered hosted;
  hosted.Tip(u"tip");
  hosted.Move();
  hosted.control.WindowGone();
  EXPECT_EQ(hosted.host.TakeLog(), Log{"TooltipGone"}) << "no event and no picture of a window that is gone";
  EXPECT_EQ(hosted.Move(), (Log{"TrackMouseEvent", "CreateTooltip", "ToolText(tip)", "hDC", "MouseEnter",
                                "MouseMove(0,0,5,6)"}));
}

// --- The tip ----------------------------------------------------------------------------------------------

TEST(HoverTip, AnEmptyTextMakesNoneAndALaterOneCountsFromTheNextEntry) {
  Hovered hosted;
  EXPECT_EQ(hosted.Move(), (Log{"TrackMouseEvent", "hDC", "MouseEnter", "MouseMove(0,0,5,6)"}));
  hosted.Tip(u"late");
  EXPECT_EQ(hosted.Move(), Log{"MouseMove(0,0,5,6)"});
  hosted.Leave();
  EXPECT_EQ(hosted.Move(), (Log{"TrackMouseEvent", "CreateTooltip", "ToolText(late)", "hDC", "MouseEnter",
                                "MouseMove(0,0,5,6)"}));
}

TEST(HoverTip, IsMadeOnce) {
  Hovered hosted;
  hosted.Tip(u"tip");
  hosted.Move();
  hosted.Leave();
  EXPECT_EQ(hosted.Move(), (Log{"TrackMouseEvent", "hDC", "MouseEnter", "MouseMove(0,0,5,6)"}));
}

TEST(HoverTip, FollowsItsTextAndGoesWithIt) {
  Hovered hosted;
  hosted.Tip(u"tip");
  hosted.Move();
  hosted.Set("UniToolTipText", std::u16string(u"other"));
  EXPECT_EQ(hosted.host.TakeLog(), (Log{"ToolText(other)", "PropertyChanged(UniTooltipText)"}));
  hosted.Set("UniToolTipText", std::u16string());
  EXPECT_EQ(hosted.host.TakeLog(), (Log{"TooltipGone", "PropertyChanged(UniTooltipText)"}));
  hosted.Set("UniToolTipText", std::u16string(u"again"));
  EXPECT_EQ(hosted.host.TakeLog(), Log{"PropertyChanged(UniTooltipText)"}) << "until the next entry";
}

// Also one that came past the setter.
TEST(HoverTip, ItsTextIsDecoded) {
  Hovered hosted;
  hosted.State().UniToolTipText = u"\u00C3\u00A9 tip";
  EXPECT_EQ(hosted.Move()[2], "ToolText(? tip)") << "one letter from two bytes of UTF-8";
}

TEST(HoverTip, WhereNoneCanBeHadTheEventsComeAllTheSame) {
  Hovered hosted;
  hosted.host.has_tooltips = false;
  hosted.Tip(u"tip");
  EXPECT_EQ(hosted.Move(),
            (Log{"TrackMouseEvent", "CreateTooltip", "hDC", "MouseEnter", "MouseMove(0,0,5,6)"}));
}

// --- Extended buttons -------------------------------------------------------------------------------------

TEST(ExtendedButtons, HaveNumbersOfTheirOwnAndTheKeysOfTheMessages) {
  Hovered hosted;
  hosted.control.ExtendedMouseDown(32, 4, 1.5f, 2);
  hosted.control.ExtendedMouseUp(64, 8, 3, 4);
  hosted.control.ExtendedMouseDown(96, 12, 5, 6);
  hosted.control.ExtendedMouseUp(0, 0, 7, 8);
  EXPECT_EQ(hosted.host.TakeLog(),
            (Log{"MouseDown(4,4,1.5,2)", "MouseUp(8,8,3,4)", "MouseDown(16,12,5,6)", "MouseUp(16,0,7,8)"}));
  EXPECT_FALSE(hosted.State().Hover);
}

TEST(ExtendedButtons, PositionsAreTakenForTwips) {
  Hovered hosted;
  EXPECT_EQ(hosted.control.ScaleXValue(30), 2.0f);
  EXPECT_EQ(hosted.control.ScaleXValue(6), 0.4f);
  EXPECT_EQ(hosted.control.ScaleXValue(-15), -1.0f);
}

// --- The window's text ------------------------------------------------------------------------------------

TEST(CaptionAsWindowText, IsCopiedWithoutRegardToItsRoom) {
  Hovered hosted;
  hosted.State().Caption = u"<b>x</b>";
  char16_t text[12] = u"...........";
  EXPECT_EQ(hosted.control.CopyCaption(3, text), 3u) << "the room";
  EXPECT_EQ(std::u16string_view(text, 11), u"<b>x</b>...") << "all of it, without a NUL";
  EXPECT_EQ(hosted.control.CopyCaption(8, nullptr), 8u) << "nowhere to copy";
  EXPECT_EQ(hosted.control.CopyCaption(9, nullptr), 9u) << "with its NUL";
  EXPECT_EQ(hosted.control.CopyCaption(100, nullptr), 9u);
}

// --- Subclassing ------------------------------------------------------------------------------------------

TEST(StartSubclass, ComesOfALoadInRunModeAndTheFirstOneHasNoExtendedButtons) {
  const FixedSystem system(5, 1);
  const auto load = [](bool user_mode) {
    HostedControl hosted;
    hosted.host.ambient.user_mode = user_mode;
    testing::MemoryBag bag;
    hosted.control.ReadProperties(bag);
    Log starts;
    for (const std::string& line : hosted.host.TakeLog())
      if (line.starts_with("StartSubclass")) starts.push_back(line);
    return starts;
  };
  EXPECT_EQ(load(false), Log{}) << "a designer's control isn't";
  EXPECT_EQ(load(true), Log{"StartSubclass(0)"}) << "the first answer is no on any system";
  EXPECT_EQ(load(true), Log{"StartSubclass(1)"});
  const FixedSystem later(6, 1);
  load(true);
  EXPECT_EQ(load(true), Log{"StartSubclass(0)"}) << "a later family hasn't got them";
}

TEST(StartSubclass, DoesNotComeOfANewControl) {
  HostedControl hosted;
  hosted.control.InitProperties();
  for (const std::string& line : hosted.host.TakeLog()) EXPECT_FALSE(line.starts_with("StartSubclass"));
}

// --- Drag and drop ----------------------------------------------------------------------------------------

TEST(DragEvents, PassArgumentsOnAndEffectsBack) {
  Hovered hosted;
  hosted.host.effect_left = 1;
  Long over = 7, drop = 7, start = 0, feedback = 2, complete = 2;
  bool default_cursors = true;
  hosted.control.OLEDragOver(nullptr, over, {1, 2, 3, 4}, 2);
  hosted.control.OLEDragDrop(nullptr, drop, {1, 2, 3, 4});
  hosted.control.OLEStartDrag(nullptr, start);
  hosted.control.OLESetData(nullptr, 13);
  hosted.control.OLEGiveFeedback(feedback, default_cursors);
  hosted.control.OLECompleteDrag(complete);
  EXPECT_EQ(hosted.host.TakeLog(),
            (Log{"OLEDragOver(7,1,2,3,4,2)", "OLEDragDrop(7,1,2,3,4)", "OLEStartDrag(0)", "OLESetData(13)",
                 "OLEGiveFeedback(2,1)", "OLECompleteDrag(2)"}));
  EXPECT_EQ(over, 1);
  EXPECT_EQ(drop, 1);
  EXPECT_EQ(start, 1);
  EXPECT_FALSE(default_cursors);
}

}  // namespace
}  // namespace marklet
