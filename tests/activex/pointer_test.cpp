// The mouse over the control, where it isn't the control's alone: context menus and designers.
#include <bit>
#include <string>

#include "activex/container.h"

namespace ocx_test {
namespace {

using Log = std::vector<std::string>;

// Notes the messages of one kind that a window gets.
class Watch {
 public:
  Watch(HWND window, UINT message) : window_(window) {
    message_ = message;
    seen_.clear();
    former_ = std::bit_cast<WNDPROC>(
        SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Procedure)));
  }
  ~Watch() { SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(former_)); }
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;
  static const std::vector<MSG>& Seen() { return seen_; }

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == message_) {
      seen_.push_back({window, message, wparam, lparam, 0, {}});
      return message == WM_SETCURSOR ? TRUE : 0;
    }
    return CallWindowProcW(former_, window, message, wparam, lparam);
  }
  HWND window_;
  static inline UINT message_ = 0;
  static inline WNDPROC former_ = nullptr;
  static inline std::vector<MSG> seen_;
};

class Pointer : public ::testing::Test {
 protected:
  void SetUp() override {
    container_.Host();
    ASSERT_EQ(S_OK, container_.Activate());
    object_ = container_.Dispatch();
    window_ = container_.ControlWindow();
    PumpMessages();
    ASSERT_EQ(S_OK, events_.ConnectEvents(object_.Get()));
  }
  void TearDown() override { events_.Disconnect(); }
  void Send(UINT message, WPARAM keys = 0) { SendMessageW(window_, message, keys, MAKELPARAM(5, 6)); }
  void Tell(DISPID id) { EXPECT_EQ(S_OK, As<IOleControl>(object_)->OnAmbientPropertyChange(id)); }

  Container container_;
  Sink events_;
  ComPtr<IDispatch> object_;
  HWND window_ = nullptr;
};

// --- Context menus ----------------------------------------------------------------------------------------

TEST_F(Pointer, ARightClickReachesTheContainerAsACallForTheContextMenu) {
  const Watch watch(container_.Window(), WM_CONTEXTMENU);
  Send(WM_RBUTTONDOWN, MK_RBUTTON);
  EXPECT_EQ(0u, Watch::Seen().size());
  Send(WM_RBUTTONUP);
  ASSERT_EQ(1u, Watch::Seen().size());
  POINT place = {5, 6};
  ClientToScreen(window_, &place);
  EXPECT_EQ(reinterpret_cast<WPARAM>(window_), Watch::Seen()[0].wParam);
  EXPECT_EQ(MAKELPARAM(place.x, place.y), Watch::Seen()[0].lParam) << "where it was, on the screen";
  EXPECT_EQ((Log{"MouseDown(2,0,5,6)", "MouseUp(2,0,5,6)", "Click"}), events_.log);
}

TEST_F(Pointer, TheMenuIsCalledForAfterTheEvents) {
  const Watch watch(container_.Window(), WM_CONTEXTMENU);
  std::size_t menus = 0;
  events_.on_event = [&](const std::string&) { menus += Watch::Seen().size(); };
  Send(WM_RBUTTONDOWN, MK_RBUTTON);
  Send(WM_RBUTTONUP);
  EXPECT_EQ(0u, menus);
  EXPECT_EQ(1u, Watch::Seen().size());
}

TEST_F(Pointer, OtherButtonsCallForNoMenu) {
  const Watch watch(container_.Window(), WM_CONTEXTMENU);
  for (const UINT message : {WM_LBUTTONDOWN, WM_LBUTTONUP, WM_MBUTTONDOWN, WM_MBUTTONUP, WM_MOUSEMOVE})
    Send(message);
  EXPECT_EQ(0u, Watch::Seen().size());
}

TEST_F(Pointer, TheKeyForTheContextMenuReachesTheContainer) {
  const Watch watch(container_.Window(), WM_CONTEXTMENU);
  SendMessageW(window_, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(window_), -1);
  ASSERT_EQ(1u, Watch::Seen().size());
  EXPECT_EQ(-1, Watch::Seen()[0].lParam);
}

TEST_F(Pointer, TheControlMayEndInsideTheRightClick) {
  for (const char* when : {"MouseDown(2,0,5,6)", "MouseUp(2,0,5,6)", "Click"}) {
    Container container;
    Sink events;
    container.Host();
    ASSERT_EQ(S_OK, container.Activate());
    ASSERT_EQ(S_OK, events.ConnectEvents(container.Object()));
    const Watch watch(container.Window(), WM_CONTEXTMENU);
    events.on_event = [&](const std::string& event) {
      if (event != when || !container.Object()) return;
      events.Disconnect();
      container.Close();
    };
    const HWND window = container.ControlWindow();
    SendMessageW(window, WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(5, 6));
    SendMessageW(window, WM_RBUTTONUP, 0, MAKELPARAM(5, 6));
    EXPECT_FALSE(container.Object()) << when;
    EXPECT_EQ(0u, Watch::Seen().size()) << "there is nothing left to have a menu";
  }
}

// --- Designers --------------------------------------------------------------------------------------------

constexpr UINT kMouseMessages[] = {WM_MOUSEMOVE, WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK,
                                   WM_LBUTTONUP, WM_RBUTTONDOWN, WM_RBUTTONUP, WM_RBUTTONDBLCLK,
                                   WM_RBUTTONUP, WM_MBUTTONDOWN, WM_MBUTTONUP, WM_MBUTTONDBLCLK,
                                   WM_MBUTTONUP, WM_MOUSEMOVE};

// What takes the mouse from the control.
struct Taker {
  const char* name;
  DISPID id;
  void (*take)(AmbientValues& ambients, bool taken);
};
const Taker kTakers[] = {
    {"design mode", DISPID_AMBIENT_USERMODE, [](AmbientValues& a, bool taken) { a.user_mode = !taken; }},
    {"a dead user interface", DISPID_AMBIENT_UIDEAD, [](AmbientValues& a, bool taken) { a.ui_dead = taken; }},
};

TEST_F(Pointer, IsTheDesigners) {
  for (const Taker& taker : kTakers)
    for (const bool told : {true, false}) {
      SCOPED_TRACE(std::string(taker.name) + (told ? ", told" : ""));
      taker.take(container_.ambients, true);
      if (told) Tell(taker.id);
      for (const UINT message : kMouseMessages) {
        Send(message, MK_LBUTTON);
        EXPECT_NE(window_, GetCapture()) << message;
      }
      EXPECT_EQ(Log{}, events_.log);
      taker.take(container_.ambients, false);
      if (told) Tell(taker.id);
      Send(WM_LBUTTONDOWN, MK_LBUTTON);
      EXPECT_EQ(window_, GetCapture());
      Send(WM_LBUTTONUP);
      EXPECT_EQ((Log{"MouseDown(1,0,5,6)", "MouseUp(1,0,5,6)", "Click"}), events_.log);
      events_.log.clear();
    }
}

TEST_F(Pointer, IsTheDesignersFromTheStart) {
  for (const Taker& taker : kTakers) {
    Container container;
    Sink events;
    taker.take(container.ambients, true);
    container.Host();
    ASSERT_EQ(S_OK, container.Activate());
    ASSERT_EQ(S_OK, events.ConnectEvents(container.Object()));
    for (const UINT message : kMouseMessages)
      SendMessageW(container.ControlWindow(), message, MK_LBUTTON, MAKELPARAM(5, 6));
    EXPECT_EQ(Log{}, events.log);
  }
}

TEST_F(Pointer, ADesignersContextMenuReachesIt) {
  for (const Taker& taker : kTakers) {
    taker.take(container_.ambients, true);
    Tell(taker.id);
    const Watch watch(container_.Window(), WM_CONTEXTMENU);
    Send(WM_RBUTTONDOWN, MK_RBUTTON);
    Send(WM_RBUTTONUP);
    EXPECT_EQ(1u, Watch::Seen().size()) << taker.name;
    taker.take(container_.ambients, false);
  }
  EXPECT_EQ(Log{}, events_.log);
}

// A press that began in run mode is over when the designer takes the mouse.
TEST_F(Pointer, GoesToTheDesignerInTheMiddleOfAPress) {
  for (const Taker& taker : kTakers) {
    SCOPED_TRACE(taker.name);
    Send(WM_LBUTTONDOWN, MK_LBUTTON);
    ASSERT_EQ(window_, GetCapture());
    events_.log.clear();
    taker.take(container_.ambients, true);
    Tell(taker.id);
    EXPECT_NE(window_, GetCapture());
    Send(WM_LBUTTONUP);
    taker.take(container_.ambients, false);
    Tell(taker.id);
    Send(WM_LBUTTONUP);
    EXPECT_EQ(Log{"MouseUp(1,0,5,6)"}, events_.log) << "no click without its press";
  }
}

// Not every host tells.
TEST_F(Pointer, IsLetGoAtTheNextMessageInTheMiddleOfAPress) {
  for (const Taker& taker : kTakers) {
    SCOPED_TRACE(taker.name);
    Send(WM_LBUTTONDOWN, MK_LBUTTON);
    ASSERT_EQ(window_, GetCapture());
    taker.take(container_.ambients, true);
    Send(WM_MOUSEMOVE, MK_LBUTTON);
    EXPECT_NE(window_, GetCapture());
    taker.take(container_.ambients, false);
  }
}

TEST_F(Pointer, ADesignerShapesItItself) {
  PutNumber(object_.Get(), L"MousePointer", 2);
  const auto set_cursor = [&] {
    SetCursor(LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW)));
    SendMessageW(window_, WM_SETCURSOR, reinterpret_cast<WPARAM>(window_),
                 MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
    return GetCursor();
  };
  const HCURSOR cross = LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_CROSS));
  const Watch watch(container_.Window(), WM_SETCURSOR);
  EXPECT_EQ(cross, set_cursor());
  EXPECT_EQ(0u, Watch::Seen().size());
  for (const Taker& taker : kTakers) {
    taker.take(container_.ambients, true);
    EXPECT_NE(cross, set_cursor()) << taker.name;
    taker.take(container_.ambients, false);
  }
  EXPECT_EQ(2u, Watch::Seen().size()) << "the container is asked";
}

}  // namespace
}  // namespace ocx_test
