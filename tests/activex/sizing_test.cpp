// The size that the control wishes for and the one that the container gives it.
#include <optional>
#include <string>

#include "activex/container.h"

namespace ocx_test {
namespace {

class Sizing : public ::testing::Test {
 protected:
  void SetUp() override {
    container_.Host();
    ASSERT_EQ(S_OK, container_.Activate());
    object_ = container_.Dispatch();
    EXPECT_EQ(S_OK, PutByName(object_.Get(), L"WordWrap", Variant::Bool(false)));
    PutText(object_.Get(), L"Caption", L"MMMMMMMMMMMMMMMMMMMMMMMMMMMMMM");
  }
  void Fit() { EXPECT_EQ(S_OK, PutByName(object_.Get(), L"AutoSize", Variant::Bool(true))); }
  SIZE Window() const {
    RECT client = {};
    GetClientRect(container_.ControlWindow(), &client);
    return {client.right, client.bottom};
  }
  SIZEL Extent() const {
    SIZEL size = {};
    EXPECT_EQ(S_OK, As<IOleObject>(object_)->GetExtent(DVASPECT_CONTENT, &size));
    return size;
  }
  // All that tells a size tells that of the window.
  void ExpectTruth() const {
    const HDC screen = GetDC(nullptr);
    const int per_inch = GetDeviceCaps(screen, LOGPIXELSX);
    ReleaseDC(nullptr, screen);
    const SIZE window = Window();
    const SIZEL extent = Extent();
    EXPECT_EQ(window.cx, MulDiv(extent.cx, per_inch, 2540));
    EXPECT_EQ(window.cy, MulDiv(extent.cy, per_inch, 2540));
    SIZEL view = {}, quick = {};
    EXPECT_EQ(S_OK, As<IViewObject2>(object_)->GetExtent(DVASPECT_CONTENT, -1, nullptr, &view));
    EXPECT_EQ(S_OK, As<IQuickActivate>(object_)->GetContentExtent(&quick));
    RECTL rect = {};
    EXPECT_EQ(S_OK, As<IViewObjectEx>(object_)->GetRect(DVASPECT_CONTENT, &rect));
    for (const SIZEL& told : {view, quick, SIZEL{rect.right, rect.bottom}}) {
      EXPECT_EQ(extent.cx, told.cx);
      EXPECT_EQ(extent.cy, told.cy);
    }
  }

  Container container_;
  ComPtr<IDispatch> object_;
};

TEST_F(Sizing, AContainerThatKeepsTheOldSizeIsBelieved) {
  const RECT old = container_.position;
  container_.place = [&](const RECT&) { return old; };
  Fit();
  EXPECT_EQ(200, Window().cx);
  EXPECT_EQ(60, Window().cy);
  ExpectTruth();
  EXPECT_EQ(2, static_cast<int>(
                   std::count_if(container_.log.begin(), container_.log.end(),
                                 [](const auto& call) { return call.starts_with("OnPosRectChange"); })))
      << "asked for the width and the height";
}

TEST_F(Sizing, AContainerThatGivesAnotherSizeIsBelieved) {
  container_.place = [](const RECT& wished) {
    return RECT{wished.left, wished.top, wished.left + 96, wished.top + 24};
  };
  Fit();
  EXPECT_EQ(96, Window().cx);
  EXPECT_EQ(24, Window().cy);
  ExpectTruth();
}

TEST_F(Sizing, AContainerThatSaysNoIsBelieved) {
  container_.place = [](const RECT&) { return std::nullopt; };
  container_.pos_rect_answer = E_FAIL;
  Fit();
  EXPECT_EQ(200, Window().cx);
  EXPECT_EQ(60, Window().cy);
  ExpectTruth();
}

TEST_F(Sizing, AContainerThatDoesNotAnswerGivesTheWish) {
  container_.place = [](const RECT&) { return std::nullopt; };
  for (const HRESULT answer : {S_OK, E_NOTIMPL}) {
    container_.pos_rect_answer = answer;
    PutText(object_.Get(), L"Caption", answer == S_OK ? L"MM" : L"MMMM");
    Fit();
    EXPECT_LT(Window().cy, 60);
    ExpectTruth();
  }
}

TEST_F(Sizing, ARefusalIsNoChange) {
  const RECT old = container_.position;
  container_.place = [&](const RECT&) { return old; };
  const SIZEL before = Extent();
  Fit();
  EXPECT_EQ(before.cx, Extent().cx);
  EXPECT_EQ(before.cy, Extent().cy);
}

// Nobody has to be asked then.
TEST_F(Sizing, AnInactiveControlHasTheSizeThatItWishes) {
  As<IOleInPlaceObject>(object_)->InPlaceDeactivate();
  const LONG before = Extent().cy;
  Fit();
  EXPECT_LT(Extent().cy, before);
}

TEST_F(Sizing, AnInactiveControlAsksForANewLayout) {
  As<IOleInPlaceObject>(object_)->InPlaceDeactivate();
  container_.log.clear();
  Fit();
  EXPECT_EQ(2, container_.Count("RequestNewObjectLayout")) << "for the width and for the height";
  container_.log.clear();
  Fit();
  EXPECT_EQ(0, container_.Count("RequestNewObjectLayout")) << "nothing has changed";
}

TEST_F(Sizing, AContainerMayLayOutAnewWhenItIsAskedTo) {
  As<IOleInPlaceObject>(object_)->InPlaceDeactivate();
  container_.on_call = [&](const std::string& call) {
    if (call == "RequestNewObjectLayout") container_.Activate();
  };
  Fit();
  container_.on_call = nullptr;
  ASSERT_TRUE(container_.ControlWindow());
  ExpectTruth();
}

// Every way in which a host takes a wish, and every place to wish from.
TEST_F(Sizing, AutoSizeAndTheHostAgreeInsideAndOutsideOfEvents) {
  using Place = std::optional<RECT> (*)(const RECT& wished);
  const Place places[] = {
      [](const RECT& wished) { return std::optional(wished); },
      [](const RECT&) {
        return std::optional(RECT{10, 20, 210, 80});
      },
      [](const RECT&) { return std::optional<RECT>(); },
      [](const RECT& wished) {
        return std::optional(RECT{wished.left, wished.top, wished.left + 144, wished.bottom + 12});
      },
  };
  for (const Place place : places)
    for (const HRESULT answer : {S_OK, E_FAIL})
      for (const bool in_event : {false, true}) {
        Container container;
        container.place = place;
        container.pos_rect_answer = answer;
        container.Host();
        ASSERT_EQ(S_OK, container.Activate());
        const ComPtr<IDispatch> object = container.Dispatch();
        PutByName(object.Get(), L"WordWrap", Variant::Bool(false));
        Sink sink;
        sink.ConnectEvents(object.Get());
        sink.on_event = [&](const std::string& event) {
          if (in_event && event == "Change") PutByName(object.Get(), L"AutoSize", Variant::Bool(true));
        };
        if (!in_event) PutByName(object.Get(), L"AutoSize", Variant::Bool(true));
        PutText(object.Get(), L"Caption", L"MM");
        RECT client = {};
        GetClientRect(container.ControlWindow(), &client);
        SIZEL extent = {};
        As<IOleObject>(object)->GetExtent(DVASPECT_CONTENT, &extent);
        const HDC screen = GetDC(nullptr);
        EXPECT_EQ(client.right, MulDiv(extent.cx, GetDeviceCaps(screen, LOGPIXELSX), 2540));
        EXPECT_EQ(client.bottom, MulDiv(extent.cy, GetDeviceCaps(screen, LOGPIXELSX), 2540));
        ReleaseDC(nullptr, screen);
        sink.Disconnect();
      }
}

TEST_F(Sizing, TheSizeIsToldWhileTheContainerIsAsked) {
  SIZEL before = Extent(), inside = {};
  container_.place = [&](const RECT& wished) {
    if (inside.cx == 0) inside = Extent();
    return wished;
  };
  Fit();
  EXPECT_EQ(before.cx, inside.cx) << "it is the old one still";
  ExpectTruth();
}

TEST_F(Sizing, AnythingMayHappenWhileTheContainerIsAsked) {
  using Act = void (*)(Container&);
  const Act acts[] = {
      [](Container& c) { As<IOleInPlaceObject>(c.Object())->InPlaceDeactivate(); },
      [](Container& c) { As<IOleObject>(c.Object())->SetClientSite(nullptr); },
      [](Container& c) { c.Close(); },
      [](Container& c) { c.Drop(); },
      [](Container& c) { DestroyWindow(c.Window()); },
      [](Container& c) { c.Activate(OLEIVERB_HIDE); },
  };
  for (const Act act : acts) {
    Container container;
    container.Host();
    ASSERT_EQ(S_OK, container.Activate());
    ComPtr<IDispatch> object = container.Dispatch();
    PutByName(object.Get(), L"WordWrap", Variant::Bool(false));
    PutText(object.Get(), L"Caption", L"MM");
    bool once = true;
    container.on_call = [&](const std::string& call) {
      if (!once || !call.starts_with("OnPosRectChange")) return;
      once = false;
      act(container);
    };
    EXPECT_EQ(S_OK, PutByName(object.Get(), L"AutoSize", Variant::Bool(true)));
    EXPECT_FALSE(once);
    SIZEL size = {};
    EXPECT_EQ(S_OK, As<IOleObject>(object)->GetExtent(DVASPECT_CONTENT, &size));
    EXPECT_GT(size.cx, 0);
  }
}

TEST_F(Sizing, TheAnswerMayComeLater) {
  const RECT old = container_.position;
  RECT wish = {};
  container_.place = [&](const RECT& wished) {
    wish = wished;
    return old;
  };
  Fit();
  EXPECT_EQ(S_OK, As<IOleInPlaceObject>(object_)->SetObjectRects(&wish, &container_.clip));
  EXPECT_EQ(wish.bottom - wish.top, Window().cy);
  ExpectTruth();
}

}  // namespace
}  // namespace ocx_test
