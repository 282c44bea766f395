// A container hides the control and shows it again, on the same window or on another one.
#include <cstdint>
#include <string>

#include "activex/container.h"

namespace ocx_test {
namespace {

using Log = std::vector<std::string>;

// What shows a hidden control again.
struct Way {
  const char* name;
  HRESULT (*show)(Container& container);
};

HRESULT SetRects(Container& container) {
  return As<IOleInPlaceObject>(container.Object())->SetObjectRects(&container.position, &container.clip);
}

const Way kVerbs[] = {
    {"show", [](Container& c) { return c.Activate(OLEIVERB_SHOW); }},
    {"primary", [](Container& c) { return c.Activate(OLEIVERB_PRIMARY); }},
    {"activate", [](Container& c) { return c.Activate(OLEIVERB_INPLACEACTIVATE); }},
    {"activate with user interface", [](Container& c) { return c.Activate(OLEIVERB_UIACTIVATE); }},
    {"open", [](Container& c) { return c.Activate(OLEIVERB_OPEN); }},
};
const Way kRects = {"set rectangles", SetRects};

class Hiding : public ::testing::Test {
 protected:
  void SetUp() override {
    container_.Host();
    ASSERT_EQ(S_OK, container_.Activate());
    window_ = container_.ControlWindow();
    ASSERT_TRUE(IsWindowVisible(window_));
  }
  void Hide() {
    EXPECT_EQ(S_OK, container_.Activate(OLEIVERB_HIDE));
    EXPECT_FALSE(IsWindowVisible(window_));
    EXPECT_EQ(window_, container_.ControlWindow()) << "hidden, and still active";
  }
  void ReplaceParent() {
    DestroyWindow(container_.Window());
    ASSERT_FALSE(IsWindow(window_));
    ASSERT_FALSE(container_.ControlWindow());
    container_.NewWindow();
  }

  Container container_;
  HWND window_ = nullptr;
};

TEST_F(Hiding, EndsWithEachVerbThatShowsAndWithRectangles) {
  for (const Way& way : kVerbs) {
    SCOPED_TRACE(way.name);
    Hide();
    EXPECT_EQ(S_OK, way.show(container_));
    EXPECT_TRUE(IsWindowVisible(window_));
    EXPECT_EQ(window_, container_.ControlWindow()) << "the same window";
  }
  Hide();
  EXPECT_EQ(S_OK, SetRects(container_));
  EXPECT_TRUE(IsWindowVisible(window_));
}

TEST_F(Hiding, TheContainerIsToldWhenTheControlIsThereAgain) {
  Hide();
  container_.log.clear();
  EXPECT_EQ(S_OK, container_.Activate(OLEIVERB_SHOW));
  EXPECT_EQ(Log{"ShowObject"}, container_.log);
  container_.log.clear();
  EXPECT_EQ(S_OK, container_.Activate(OLEIVERB_SHOW));
  EXPECT_EQ(Log{}, container_.log) << "it is there";
}

// Every pair and many a longer sequence of what hides and what shows.
TEST_F(Hiding, ComesAndGoesInEveryOrder) {
  constexpr std::size_t kCount = std::size(kVerbs);
  std::uint32_t state = 1;
  bool visible = true;
  for (int turn = 0; turn < 100; ++turn) {
    for (std::size_t step = 0; step < kCount + 3; ++step) {
      state = state * 1664525 + 1013904223;
      const std::size_t what = (state >> 16) % (kCount + 3);
      if (what < kCount) {
        EXPECT_EQ(S_OK, kVerbs[what].show(container_));
        visible = true;
      } else if (what == kCount) {
        EXPECT_EQ(S_OK, SetRects(container_));
        visible = true;
      } else {
        EXPECT_EQ(S_OK, container_.Activate(OLEIVERB_HIDE));
        visible = false;
      }
      ASSERT_EQ(visible, IsWindowVisible(window_) != FALSE) << "turn " << turn << ", " << what;
      ASSERT_EQ(window_, container_.ControlWindow());
    }
  }
  EXPECT_EQ(1, container_.Count("OnInPlaceActivate"));
  EXPECT_EQ(0, container_.Count("OnInPlaceDeactivate"));
}

TEST_F(Hiding, GivesUpTheUserInterfaceTheFocusAndTheMouse) {
  EXPECT_EQ(S_OK, container_.Activate(OLEIVERB_UIACTIVATE));
  ASSERT_EQ(window_, GetFocus());
  SendMessageW(window_, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(2, 2));
  ASSERT_EQ(window_, GetCapture());
  Hide();
  EXPECT_EQ(1, container_.Count("OnUIDeactivate"));
  EXPECT_NE(window_, GetFocus());
  EXPECT_NE(window_, GetCapture());
  EXPECT_EQ(S_OK, container_.Activate(OLEIVERB_UIACTIVATE));
  EXPECT_EQ(2, container_.Count("OnUIActivate"));
  EXPECT_EQ(window_, GetFocus());
}

TEST_F(Hiding, TheVerbForTheUserInterfaceBringsTheFocusBack) {
  EXPECT_EQ(S_OK, container_.Activate(OLEIVERB_UIACTIVATE));
  SetFocus(container_.Window());
  EXPECT_EQ(S_OK, container_.Activate(OLEIVERB_UIACTIVATE));
  EXPECT_EQ(window_, GetFocus());
  EXPECT_EQ(1, container_.Count("OnUIActivate")) << "it has had it all the time";
}

TEST_F(Hiding, EndsWithTheNextActivation) {
  Hide();
  EXPECT_EQ(S_OK, As<IOleInPlaceObject>(container_.Object())->InPlaceDeactivate());
  EXPECT_EQ(S_OK, container_.Activate());
  EXPECT_TRUE(IsWindowVisible(container_.ControlWindow()));
}

TEST_F(Hiding, AWindowThatTheContainerHidItselfIsShownToo) {
  ShowWindow(window_, SW_HIDE);
  EXPECT_EQ(S_OK, container_.Activate(OLEIVERB_SHOW));
  EXPECT_TRUE(IsWindowVisible(window_));
}

// A container answers the wish for another size with rectangles, which are no wish to see the control.
TEST_F(Hiding, LastsWhenTheControlSizesItself) {
  const auto object = container_.Dispatch();
  EXPECT_EQ(S_OK, PutByName(object.Get(), L"WordWrap", Variant::Bool(false)));
  EXPECT_EQ(S_OK, PutByName(object.Get(), L"AutoSize", Variant::Bool(true)));
  Hide();
  container_.log.clear();
  PutText(object.Get(), L"Caption", L"another width");
  EXPECT_FALSE(container_.log.empty()) << "the container was asked for it";
  EXPECT_FALSE(IsWindowVisible(window_));
}

TEST_F(Hiding, LastsWhenTheRectanglesShowNothing) {
  Hide();
  const RECT beside = {500, 500, 600, 600}, nothing = {};
  EXPECT_EQ(S_OK, As<IOleInPlaceObject>(container_.Object())->SetObjectRects(&container_.position, &beside));
  EXPECT_FALSE(IsWindowVisible(window_));
  EXPECT_EQ(S_OK, As<IOleInPlaceObject>(container_.Object())->SetObjectRects(&nothing, &container_.clip));
  EXPECT_FALSE(IsWindowVisible(window_));
}

TEST_F(Hiding, MayComeInTheMiddleOfActivation) {
  EXPECT_EQ(S_OK, As<IOleInPlaceObject>(container_.Object())->InPlaceDeactivate());
  for (const char* when : {"OnInPlaceActivate", "GetWindow", "GetWindowContext", "ShowObject"}) {
    SCOPED_TRACE(when);
    container_.on_call = [&](const std::string& call) {
      if (call == when) container_.Activate(OLEIVERB_HIDE);
    };
    container_.log.clear();
    EXPECT_EQ(S_OK, container_.Activate());
    container_.on_call = nullptr;
    EXPECT_EQ(when == std::string("ShowObject"), container_.Count("ShowObject") == 1) << "nothing is shown";
    ASSERT_TRUE(container_.ControlWindow());
    EXPECT_FALSE(IsWindowVisible(container_.ControlWindow()));
    EXPECT_EQ(S_OK, container_.Activate(OLEIVERB_SHOW));
    EXPECT_TRUE(IsWindowVisible(container_.ControlWindow()));
    EXPECT_EQ(S_OK, As<IOleInPlaceObject>(container_.Object())->InPlaceDeactivate());
  }
}

// The container may have thought better of it when it hears that the user interface goes.
TEST_F(Hiding, EndsWithAVerbThatShowsInTheMiddleOfIt) {
  EXPECT_EQ(S_OK, container_.Activate(OLEIVERB_UIACTIVATE));
  container_.on_call = [&](const std::string& call) {
    if (call == "OnUIDeactivate") container_.Activate(OLEIVERB_SHOW);
  };
  EXPECT_EQ(S_OK, container_.Activate(OLEIVERB_HIDE));
  EXPECT_EQ(1, container_.Count("OnUIDeactivate"));
  EXPECT_TRUE(IsWindowVisible(window_));
}

TEST_F(Hiding, SaysNothingToTheSiteOfAnInactiveControl) {
  EXPECT_EQ(S_OK, As<IOleInPlaceObject>(container_.Object())->InPlaceDeactivate());
  container_.log.clear();
  EXPECT_EQ(S_OK, container_.Activate(OLEIVERB_HIDE));
  EXPECT_EQ(Log{}, container_.log);
  EXPECT_FALSE(container_.ControlWindow());
}

// --- Another parent ---------------------------------------------------------------------------------------

TEST_F(Hiding, EachVerbThatShowsMakesAWindowInANewParent) {
  for (const Way& way : kVerbs)
    for (const bool hidden : {false, true}) {
      SCOPED_TRACE(std::string(way.name) + (hidden ? ", from hidden" : ""));
      EXPECT_EQ(S_OK, SetRects(container_));
      if (hidden) Hide();
      ReplaceParent();
      container_.position = {5, 6, 105, 36};
      EXPECT_EQ(S_OK, way.show(container_));
      window_ = container_.ControlWindow();
      ASSERT_TRUE(window_);
      EXPECT_EQ(container_.Window(), GetParent(window_));
      EXPECT_TRUE(IsWindowVisible(window_));
      EXPECT_EQ(HandleToLong(window_), GetNumber(container_.Dispatch().Get(), L"hwnd"));
      RECT rect = {};
      GetWindowRect(window_, &rect);
      MapWindowPoints(nullptr, container_.Window(), reinterpret_cast<POINT*>(&rect), 2);
      EXPECT_TRUE(EqualRect(&container_.position, &rect)) << "where the site says";
      EXPECT_EQ(1, container_.Count("OnInPlaceActivate")) << "active all the time";
    }
  container_.Close();
  EXPECT_EQ(1, container_.Count("OnInPlaceDeactivate"));
}

TEST_F(Hiding, AWindowThatGoesTakesTheUserInterfaceWithIt) {
  EXPECT_EQ(S_OK, container_.Activate(OLEIVERB_UIACTIVATE));
  ReplaceParent();
  EXPECT_EQ(S_OK, container_.Activate(OLEIVERB_SHOW));
  EXPECT_EQ(1, container_.Count("OnUIDeactivate"));
  EXPECT_EQ(1, container_.Count("SetActiveObject(none)"));
  EXPECT_EQ(S_OK, container_.Activate(OLEIVERB_UIACTIVATE));
  EXPECT_EQ(2, container_.Count("OnUIActivate"));
}

TEST_F(Hiding, ANewWindowHasTheFocusThatTheVerbAsksFor) {
  EXPECT_EQ(S_OK, container_.Activate(OLEIVERB_UIACTIVATE));
  ReplaceParent();
  EXPECT_EQ(S_OK, container_.Activate(OLEIVERB_UIACTIVATE));
  ASSERT_TRUE(container_.ControlWindow());
  EXPECT_EQ(container_.ControlWindow(), GetFocus());
}

TEST_F(Hiding, WithoutAParentShowingFailsUntilThereIsOne) {
  DestroyWindow(container_.Window());
  EXPECT_EQ(E_FAIL, container_.Activate(OLEIVERB_SHOW));
  EXPECT_FALSE(container_.ControlWindow());
  EXPECT_EQ(0, container_.Count("OnInPlaceDeactivate"));
  container_.NewWindow();
  EXPECT_EQ(S_OK, container_.Activate(OLEIVERB_SHOW));
  EXPECT_TRUE(IsWindowVisible(container_.ControlWindow()));
}

TEST_F(Hiding, AWindowMayBeMadeAndUnmadeAHundredTimes) {
  for (int i = 0; i < 100; ++i) {
    ReplaceParent();
    ASSERT_EQ(S_OK, kVerbs[static_cast<std::size_t>(i) % std::size(kVerbs)].show(container_));
    window_ = container_.ControlWindow();
    ASSERT_TRUE(IsWindowVisible(window_)) << i;
  }
  container_.Close();
  EXPECT_EQ(1, container_.Count("OnInPlaceActivate"));
  EXPECT_EQ(1, container_.Count("OnInPlaceDeactivate"));
}

// Whatever the container does inside a call that showing makes.
TEST_F(Hiding, AnythingMayHappenWhileTheControlIsShownAgain) {
  using Act = void (*)(Container&);
  const Act acts[] = {
      [](Container& c) { As<IOleInPlaceObject>(c.Object())->InPlaceDeactivate(); },
      [](Container& c) { As<IOleObject>(c.Object())->Close(OLECLOSE_NOSAVE); },
      [](Container& c) { As<IOleObject>(c.Object())->SetClientSite(nullptr); },
      [](Container& c) { c.Drop(); },
      [](Container& c) { c.Activate(OLEIVERB_HIDE); },
      [](Container& c) { c.Activate(OLEIVERB_UIACTIVATE); },
      [](Container& c) { As<IOleInPlaceObject>(c.Object())->UIDeactivate(); },
      [](Container& c) { DestroyWindow(c.Window()); },
      [](Container& c) { SetRects(c); },
  };
  for (const Act act : acts)
    for (const char* when : {"GetWindow", "GetWindowContext", "ShowObject", "OnUIActivate", "OnFocus",
                             "SetActiveObject", "SetActiveObject(none)", "OnUIDeactivate"}) {
      SCOPED_TRACE(when);
      Container container;
      container.Host();
      ASSERT_EQ(S_OK, container.Activate());
      DestroyWindow(container.Window());
      container.NewWindow();
      bool once = true;
      container.on_call = [&](const std::string& call) {
        if (call != when || !once || !container.Object()) return;
        once = false;
        act(container);
      };
      container.Activate(OLEIVERB_UIACTIVATE);
      if (container.Object()) container.Activate(OLEIVERB_HIDE);
      if (container.Object()) container.Activate(OLEIVERB_SHOW);
    }
  PumpMessages();
  container_.Close();
  EXPECT_EQ(S_OK, Server::Get().CanUnloadNow());
}

}  // namespace
}  // namespace ocx_test
