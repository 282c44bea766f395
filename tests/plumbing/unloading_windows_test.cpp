// What thunks need of the module: nothing where they are machine code, else that it stays, and a safe end
// when it or the thread goes.
#include "plumbing/unloading.h"

#include <memory>
#include <thread>

#include "plumbing/plumbing_test.h"

namespace marklet::plumbing {
namespace {

constexpr UINT kListed = WM_USER + 1;
constexpr bool kNeeded = !kIs32Bit;

TEST(ThunkUnloading, TheModuleStaysWhileAWindowMayCallIt) {
  EXPECT_FALSE(ThunksNeedModule());
  TestWindow window;
  Watcher watcher;
  CSubClassAsm subclasser;
  ASSERT_TRUE(SubclassWith(subclasser, window, &watcher));
  EXPECT_EQ(kNeeded, ThunksNeedModule());
  subclasser.ssc_UnSubclass(window);
  EXPECT_EQ(kNeeded, ThunksNeedModule()) << "the window has had no message yet";
  window.Send(kListed);
  EXPECT_FALSE(ThunksNeedModule()) << "what waits for its timer here is ended by the question";
  PumpFor(150);
}

TEST(ThunkUnloading, TheModuleStaysForHooksAndCallbacks) {
  Watcher watcher;
  CSubClassAsm subclasser;
  bool unicode = true;
  ASSERT_TRUE(
      subclasser.shk_SetHook(WH_CALLWNDPROC, false, kWhenBefore, 0, kWatcherHooks, &watcher, true, unicode));
  EXPECT_EQ(kNeeded, ThunksNeedModule());
  subclasser.shk_UnHook(WH_CALLWNDPROC);
  EXPECT_FALSE(ThunksNeedModule());
  ASSERT_NE(0, subclasser.scb_SetCallbackAddr(2, kWindowMethod, nullptr, true, false));
  EXPECT_EQ(kNeeded, ThunksNeedModule());
  subclasser.scb_ReleaseCallback(kWindowMethod, nullptr);
  EXPECT_FALSE(ThunksNeedModule());
}

TEST(ThunkUnloading, AnotherThreadsTimerKeepsTheModule) {
  Watcher watcher;
  TestWindow mine;
  bool needed = false, needed_after = true;
  std::thread([&] {
    CSubClassAsm subclasser;
    Watcher other;
    {
      TestWindow window;
      SubclassWith(subclasser, window, &other);
    }
    std::thread([&] { needed = ThunksNeedModule(); }).join();
    EndThunksOfThread();
    needed_after = ThunksNeedModule();
  }).join();
  EXPECT_EQ(kNeeded, needed);
  EXPECT_FALSE(needed_after);
}

// Such a thread can't tell any more whose the window was.
TEST(ThunkUnloading, AThreadThatEndsLeavesWhatWaitsOnAnotherOneForItsTimer) {
  CSubClassAsm subclasser;
  Watcher watcher;
  {
    TestWindow window;
    ASSERT_TRUE(SubclassWith(subclasser, window, &watcher));
  }
  std::thread([] { EndThunksOfThread(); }).join();
  PumpFor(150);  // into the thunk that waits
  EXPECT_FALSE(ThunksNeedModule());
}

#ifdef _WIN64

TEST(ThunkUnloading, AThreadThatEndsTakesItsThunksAlong) {
  std::thread([] {
    TestWindow window;
    const LONG_PTR original = ProcedureOf(window);
    Watcher watcher, second_watcher;
    CSubClassAsm subclasser, second;
    ASSERT_TRUE(SubclassWith(subclasser, window, &watcher));
    ASSERT_TRUE(SubclassWith(second, window, &second_watcher));
    EndThunksOfThread();
    EXPECT_EQ(original, ProcedureOf(window));
    EXPECT_FALSE(ThunksNeedModule());
    window.Send(kListed);
    EXPECT_EQ(std::vector<UINT>{kListed}, window.seen);
  }).join();
}

TEST(ThunkUnloading, AnEndOfAllLeavesOtherThreadsWindowsWithTheirProcedures) {
  TestWindow window;
  const LONG_PTR original = ProcedureOf(window);
  Watcher watcher;
  CSubClassAsm subclasser;
  ASSERT_TRUE(SubclassWith(subclasser, window, &watcher));
  std::thread([] { EndThunksOfThread(); }).join();
  EXPECT_NE(original, ProcedureOf(window)) << "not that thread's";
  std::thread([] { EndAllThunks(); }).join();
  EXPECT_EQ(original, ProcedureOf(window));
  EXPECT_FALSE(ThunksNeedModule());
}

// Somebody who was before it kept its address.
TEST(ThunkUnloading, ALateCallGoesToTheDefaultProcedure) {
  TestWindow window;
  Watcher watcher;
  CSubClassAsm subclasser;
  ASSERT_TRUE(SubclassWith(subclasser, window, &watcher));
  const auto thunk = PointerIn<WNDPROC>(ProcedureOf(window));
  EndAllThunks();
  EXPECT_EQ(4, ::CallWindowProcW(thunk, window, WM_GETTEXTLENGTH, 0, 0));
  EXPECT_TRUE(window.seen.empty());
}

TEST(ThunkUnloading, AWindowTakesThirtyTwoThunks) {
  TestWindow window;
  Watcher watcher;
  std::vector<std::unique_ptr<CSubClassAsm>> subclassers;
  for (int i = 0; i < 33; ++i) {
    subclassers.push_back(std::make_unique<CSubClassAsm>());
    EXPECT_EQ(i < 32, SubclassWith(*subclassers.back(), window, &watcher)) << i;
    subclassers.back()->ssc_AddMsg(window, kWhenBefore, {Long{kListed}});
  }
  window.Send(kListed);
  EXPECT_EQ(32u, watcher.calls.size());
  window.Destroy();
  EXPECT_FALSE(ThunksNeedModule());
}

#endif  // _WIN64

}  // namespace
}  // namespace marklet::plumbing
