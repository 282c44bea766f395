// The server goes when nothing of it is in use, and takes everything with it: from threads that end, from
// threads that go on, and from those that use it while others let go.
#include <bit>
#include <set>
#include <vector>

#include "activex/container.h"
#include "activex/loaded.h"
#include "activex/server_copy.h"
#include "support/gdi_handles.h"

namespace ocx_test {
namespace {

constexpr int kRounds = 5;
constexpr wchar_t kWindowClass[] = L"zvsMarklet.Marklet";

// A control's life from the copy: all that leaves something with its thread, fonts above all.
void UseControl(const ServerCopy& server) {
  Container container;
  const ComPtr<IUnknown> control = server.CreateControl();
  container.HostObject(control);
  EXPECT_EQ(S_OK, As<IPersistStreamInit>(control)->InitNew());
  EXPECT_EQ(S_OK, container.Activate());
  const auto object = container.Dispatch();
  PutText(object.Get(), L"Caption", L"<b>Bold</b> <i>italic</i> <f=DejaVu Serif>serif</f>");
  PutNumber(object.Get(), L"FontSize", 11);
  EXPECT_TRUE(UpdateWindow(container.ControlWindow()));
  PumpMessages();
  container.Close();
}

// The whole stay of a host thread that lets the server go before it ends.
void LoadUseAndUnload(ServerCopy& server) {
  const Apartment apartment;
  ASSERT_TRUE(server.Load());
  UseControl(server);
  EXPECT_EQ(S_OK, server.CanUnloadNow());
  server.Unload();
}

// The program's own server comes first, on the thread of the tests.
class Unloading : public ::testing::Test {
 protected:
  void SetUp() override { Server::Get(); }
};

TEST_F(Unloading, LeavesNothingOfItsThreadsThatEnd) {
  ServerCopy server(L"unload_threads.ocx");
  ASSERT_TRUE(RunOnThread([&] { LoadUseAndUnload(server); }));
  const int before = marklet::CountGdiHandles();
  for (int i = 0; i < kRounds; ++i) {
    ASSERT_TRUE(RunOnThread([&] { LoadUseAndUnload(server); })) << "the thread never ended";
    EXPECT_FALSE(server.IsLoaded());
  }
  EXPECT_EQ(before, marklet::CountGdiHandles());
}

TEST_F(Unloading, GoesAtOnceFromAThreadThatGoesOn) {
  ServerCopy server(L"unload_here.ocx");
  LoadUseAndUnload(server);
  EXPECT_FALSE(server.IsLoaded());
  const int before = marklet::CountGdiHandles();
  for (int i = 0; i < kRounds; ++i) {
    LoadUseAndUnload(server);
    EXPECT_FALSE(server.IsLoaded());
  }
  EXPECT_EQ(before, marklet::CountGdiHandles());
}

TEST_F(Unloading, AThreadThatEndsWhileTheServerStaysLeavesNothing) {
  ServerCopy server(L"unload_stays.ocx");
  ASSERT_TRUE(server.Load());
  const auto use = [&] {
    const Apartment apartment;
    UseControl(server);
  };
  ASSERT_TRUE(RunOnThread(use));
  const int before = marklet::CountGdiHandles();
  for (int i = 0; i < kRounds; ++i) ASSERT_TRUE(RunOnThread(use));
  EXPECT_EQ(before, marklet::CountGdiHandles());
  server.Unload();
  EXPECT_FALSE(server.IsLoaded());
}

// A thread that goes on after another one has let the server go for it: the fonts that the server kept for it
// go too.
TEST_F(Unloading, TakesWhatItKeptForThreadsThatGoOn) {
  ServerCopy server(L"unload_elsewhere.ocx");
  const auto unload_elsewhere = [&] {
    ASSERT_TRUE(server.Load());
    UseControl(server);
    EXPECT_EQ(S_OK, server.CanUnloadNow());
    ASSERT_TRUE(RunOnThread([&] { server.Unload(); }));
    EXPECT_FALSE(server.IsLoaded());
  };
  unload_elsewhere();
  const int before = marklet::CountGdiHandles();
  for (int i = 0; i < kRounds; ++i) unload_elsewhere();
  EXPECT_EQ(before, marklet::CountGdiHandles());
}

TEST_F(Unloading, GoesAfterAThousandControls) {
  ServerCopy server(L"unload_thousand.ocx");
  ASSERT_TRUE(server.Load());
  for (int i = 0; i < 1000; ++i) {
    const ComPtr<IUnknown> control = server.CreateControl();
    As<IPersistStreamInit>(control)->InitNew();
    PutText(As<IDispatch>(control).Get(), L"Caption", L"<i>one</i> of many");
  }
  EXPECT_EQ(S_OK, server.CanUnloadNow());
  server.Unload();
  EXPECT_FALSE(server.IsLoaded());
}

// Each of them in an apartment of its own, with fonts, surfaces and caches of its own.
TEST_F(Unloading, TwoThreadsPaintAtTheSameTime) {
  constexpr int kPaints = 150;
  constexpr SIZE kSize = {200, 60};
  const auto paint = [&](std::vector<COLORREF>& picture) {
    const Apartment apartment;
    Container container;
    container.Host();
    ASSERT_EQ(S_OK, container.Activate());
    const auto object = container.Dispatch();
    for (int i = 0; i <= kPaints; ++i) {
      PutNumber(object.Get(), L"TextEffect", i % 6);
      PutNumber(object.Get(), L"FontSize", 8 + i % 7);
      PutText(object.Get(), L"Caption", L"<b>Both</b> at <i>once</i> in <f=DejaVu Serif>threads</f>");
    }
    const HDC dc = GetDC(container.ControlWindow());
    for (int y = 0; y < kSize.cy; ++y)
      for (int x = 0; x < kSize.cx; ++x) picture.push_back(GetPixel(dc, x, y));
    ReleaseDC(container.ControlWindow(), dc);
    container.Close();
  };
  std::vector<COLORREF> alone, first, second;
  ASSERT_TRUE(RunOnThread([&] { paint(alone); }));
  {
    HostThread one([&] { paint(first); }), other([&] { paint(second); });
    ASSERT_TRUE(one.Join());
    ASSERT_TRUE(other.Join());
  }
  EXPECT_TRUE(alone == first);
  EXPECT_TRUE(alone == second);
  EXPECT_LT(1u, std::set<COLORREF>(alone.begin(), alone.end()).size()) << "nothing was painted";
  EXPECT_EQ(S_OK, Server::Get().CanUnloadNow());
}

TEST_F(Unloading, AThreadUsesControlsWhileAnotherLetsGo) {
  ServerCopy server(L"unload_shared.ocx");
  for (int i = 0; i < kRounds; ++i) {
    Signal in_use, let_go;
    ASSERT_TRUE(server.Load());
    HostThread other([&] {
      const Apartment apartment;
      ASSERT_TRUE(server.Load());
      const ComPtr<IUnknown> control = server.CreateControl();
      in_use.Give();
      EXPECT_TRUE(let_go.Wait());
      UseControl(server);
    });
    ASSERT_TRUE(in_use.Wait());
    UseControl(server);
    EXPECT_EQ(S_FALSE, server.CanUnloadNow()) << "the other thread has a control";
    server.Unload();
    EXPECT_TRUE(server.IsLoaded());
    let_go.Give();
    ASSERT_TRUE(other.Join());
    EXPECT_EQ(S_OK, server.CanUnloadNow());
    server.Unload();
    EXPECT_FALSE(server.IsLoaded());
  }
}

TEST_F(Unloading, TakesItsWindowClass) {
  ServerCopy server(L"unload_class.ocx");
  WNDCLASSEXW description = {};
  description.cbSize = sizeof description;
  ASSERT_TRUE(server.Load());
  UseControl(server);
  EXPECT_TRUE(GetClassInfoExW(server.Module(), kWindowClass, &description));
  server.Unload();
  EXPECT_FALSE(server.IsLoaded());
  EXPECT_FALSE(GetClassInfoExW(server.Module(), kWindowClass, &description));
}

// --- What windows were subclassed with --------------------------------------------------------------------

// A window's thunk ends after the window, by a timer of the thread that had it.
constexpr int kLongAfterTheTimer = 250;

// A loaded control's life, to its end.
void UseLoadedControl(const ServerCopy& server) {
  Loaded control(server.CreateControl());
  EXPECT_TRUE(control.IsSubclassed());
  control.events.Disconnect();
  control.container.Close();
}

TEST_F(Unloading, GoesAtOnceAfterAWindowThatWasSubclassed) {
  ServerCopy server(L"unload_subclassed.ocx");
  for (int i = 0; i < kRounds; ++i) {
    ASSERT_TRUE(server.Load());
    UseLoadedControl(server);
    EXPECT_EQ(S_OK, server.CanUnloadNow());
    server.Unload();
    EXPECT_FALSE(server.IsLoaded());
    Wait(kLongAfterTheTimer);  // what waits there can do without the server
  }
}

// Only machine code of its own could go on without the server.
TEST_F(Unloading, WaitsForTheThreadWhoseWindowWasSubclassed) {
  ServerCopy server(L"unload_waiting.ocx");
  ASSERT_TRUE(server.Load());
  Signal used, go_on;
  HostThread other([&] {
    const Apartment apartment;
    UseLoadedControl(server);
    used.Give();
    EXPECT_TRUE(go_on.Wait());
    Wait(kLongAfterTheTimer);
  });
  ASSERT_TRUE(used.Wait());
  EXPECT_EQ(sizeof(void*) == 4 ? S_OK : S_FALSE, server.CanUnloadNow());
  go_on.Give();
  ASSERT_TRUE(other.Join());
  EXPECT_EQ(S_OK, server.CanUnloadNow());
  server.Unload();
  EXPECT_FALSE(server.IsLoaded());
}

TEST_F(Unloading, AThreadThatEndsTakesWhatWaitsForItsTimer) {
  ServerCopy server(L"unload_ended.ocx");
  ASSERT_TRUE(server.Load());
  ASSERT_TRUE(RunOnThread([&] {
    const Apartment apartment;
    UseLoadedControl(server);
  }));
  EXPECT_EQ(S_OK, server.CanUnloadNow());
  server.Unload();
  EXPECT_FALSE(server.IsLoaded());
}

// A host that doesn't ask.
TEST_F(Unloading, GoesUnaskedAfterAWindowThatWasSubclassed) {
  ServerCopy server(L"unload_unasked.ocx");
  ASSERT_TRUE(server.Load());
  UseLoadedControl(server);
  server.Unload();
  EXPECT_FALSE(server.IsLoaded());
  Wait(kLongAfterTheTimer);
}

// Somebody who subclassed a window after the control did, and stays to its end.
struct Foreign {
  explicit Foreign(HWND window) {
    calls = 0;
    thunk = std::bit_cast<WNDPROC>(
        SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Procedure)));
  }
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    ++calls;
    return CallWindowProcW(thunk, window, message, wparam, lparam);
  }
  static inline WNDPROC thunk = nullptr;
  static inline int calls = 0;
};

TEST_F(Unloading, GoesAfterAWindowThatSomebodyElseSubclassedToo) {
  ServerCopy server(L"unload_foreign.ocx");
  ASSERT_TRUE(server.Load());
  {
    Loaded control(server.CreateControl());
    const Foreign foreign(control.Window());
    EXPECT_TRUE(control.IsSubclassed());
    control.events.Disconnect();
    control.container.Close();
    EXPECT_GT(Foreign::calls, 1);
  }
  EXPECT_EQ(S_OK, server.CanUnloadNow());
  server.Unload();
  EXPECT_FALSE(server.IsLoaded());
  Wait(kLongAfterTheTimer);
}

// --- From inside a handler --------------------------------------------------------------------------------

// The pointer comes in and leaves, then something is dragged in, across and out, and in again and dropped.
void PointAndDrag(HWND window) {
  SendMessageW(window, WM_MOUSEMOVE, 0, MAKELPARAM(5, 6));
  SendMessageW(window, WM_MOUSELEAVE, 0, 0);
  const ComPtr<IDropTarget> target = static_cast<IDropTarget*>(GetPropW(window, L"OleDropTargetInterface"));
  if (!target) return;
  POINT place = {5, 6};
  ClientToScreen(window, &place);
  const POINTL at = {place.x, place.y};
  DWORD effect = DROPEFFECT_COPY;
  for (const bool drops : {false, true}) {
    target->DragEnter(nullptr, MK_LBUTTON, at, &effect);
    target->DragOver(MK_LBUTTON, at, &effect);
    if (drops)
      target->Drop(nullptr, 0, at, &effect);
    else
      target->DragLeave();
  }
}

TEST_F(Unloading, InsideAHandlerWaitsForTheEndOfTheCall) {
  ServerCopy server(L"unload_inside.ocx");
  for (const char* const when : {"MouseEnter", "MouseMove(0,0,5,6)", "MouseLeave",
                                 "OLEDragOver(Nothing,1,1,0,5,6,0)", "OLEDragOver(Nothing,1,1,0,5,6,2)",
                                 "OLEDragOver(Nothing,0,1,0,5,6,1)", "OLEDragDrop(Nothing,1,0,0,5,6)"}) {
    SCOPED_TRACE(when);
    ASSERT_TRUE(server.Load());
    {
      Loaded control(server.CreateControl());
      int done = 0;
      control.events.on_event = [&](const std::string& event) {
        if (event != when || done++ > 0) return;
        control.events.Disconnect();
        control.container.Close();
        EXPECT_EQ(S_FALSE, server.CanUnloadNow());
      };
      PointAndDrag(control.Window());
      EXPECT_EQ(1, done);
      control.events.on_event = nullptr;
    }
    EXPECT_EQ(S_OK, server.CanUnloadNow());
    server.Unload();
    EXPECT_FALSE(server.IsLoaded());
    Wait(kLongAfterTheTimer);
  }
}

}  // namespace
}  // namespace ocx_test
