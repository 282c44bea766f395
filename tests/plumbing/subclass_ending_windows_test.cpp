// How a thunk ends: by whom, when its memory goes, and that it never goes under a call.
#include <algorithm>
#include <array>
#include <memory>
#include <optional>

#include "plumbing/plumbing_test.h"

namespace marklet::plumbing {
namespace {

using namespace subclass_block;

constexpr UINT kListed = WM_USER + 1, kOther = WM_USER + 2;
constexpr DWORD kLongAfterTheTimer = 250;  // milliseconds

class SubclassEnding : public ::testing::Test {
 protected:
  SubclassEnding() : subclasser_(std::make_unique<CSubClassAsm>()), original_(ProcedureOf(window_)) {
    EXPECT_TRUE(SubclassWith(*subclasser_, window_, &watcher_));
    subclasser_->ssc_AddMsg(window_, kWhenBefore | kWhenAfter, {Long{kListed}});
    window_.Send(kListed);
    block_ = watcher_.block;
    watcher_.calls.clear();
    window_.seen.clear();
  }

  TestWindow window_;
  Watcher watcher_;
  std::unique_ptr<CSubClassAsm> subclasser_;
  LONG_PTR original_;
  Word* block_ = nullptr;
};

TEST_F(SubclassEnding, ComesWithTheNextMessageAfterUnsubclassing) {
  subclasser_->ssc_UnSubclass(window_);
  EXPECT_NE(original_, ProcedureOf(window_));
  EXPECT_EQ(kUnsubclassed, zData(kState, block_));
  window_.Send(kListed);
  EXPECT_TRUE(watcher_.calls.empty());
  EXPECT_EQ(std::vector<UINT>{kListed}, window_.seen);
  EXPECT_EQ(original_, ProcedureOf(window_));
  EXPECT_TRUE(IsMemory(block_)) << "its timer has not come yet";
  EXPECT_NE(0, zData(kTimer, block_));
  EXPECT_TRUE(IsReleased(block_));
}

// Timers come in the order in which they are due.
TEST_F(SubclassEnding, ItsMemoryGoesATenthOfASecondLater) {
  static Word* block;
  static std::vector<bool> there;
  block = block_;
  there.clear();
  struct Looker {
    static void CALLBACK Look(::HWND, UINT, UINT_PTR timer, DWORD) {
      ::KillTimer(nullptr, timer);
      there.push_back(IsMemory(block));
    }
  };
  subclasser_->ssc_UnSubclass(window_);
  window_.Send(kListed);
  for (const UINT delay : {60u, 180u}) ::SetTimer(nullptr, 0, delay, &Looker::Look);
  for (int i = 0; i < 100 && there.size() < 2; ++i) PumpFor(10);
  EXPECT_EQ((std::vector<bool>{true, false}), there);
}

TEST_F(SubclassEnding, LeavesTheBlockWhereNoMessageComes) {
  subclasser_->ssc_UnSubclass(window_);
  PumpFor(kLongAfterTheTimer);
  EXPECT_TRUE(IsMemory(block_));
  window_.Send(WM_NULL);
  EXPECT_TRUE(IsReleased(block_));
}

TEST_F(SubclassEnding, TakesAWindowAgainAtOnce) {
  subclasser_->ssc_UnSubclass(window_);
  EXPECT_TRUE(SubclassWith(*subclasser_, window_, &watcher_));
  subclasser_->ssc_AddMsg(window_, kWhenBefore, {Long{kListed}});
  window_.Send(kListed);
  EXPECT_EQ(1u, watcher_.calls.size());
}

TEST_F(SubclassEnding, TakesAWindowAgainManyTimesBeforeAnyTimerComes) {
  for (int i = 0; i < 70; ++i) {
    subclasser_->ssc_UnSubclass(window_);
    window_.Send(kListed);
    ASSERT_TRUE(SubclassWith(*subclasser_, window_, &watcher_)) << i;
  }
  EXPECT_TRUE(watcher_.calls.empty());
  subclasser_->ssc_AddMsg(window_, kWhenBefore, {Long{kListed}});
  window_.Send(kListed);
  EXPECT_EQ(1u, watcher_.calls.size());
}

TEST_F(SubclassEnding, ComesWithTheWindowsOwnEnd) {
  window_.Destroy();
  EXPECT_EQ(kWindowGone, zData(kState, block_));
  EXPECT_TRUE(IsReleased(block_));
}

TEST_F(SubclassEnding, AWindowThatIsGoneIsUnknown) {
  window_.Destroy();
  ASSERT_TRUE(IsReleased(block_));
  EXPECT_EQ(0, subclasser_->ssc_CallOrigWndProc(window_, kListed, 0, 0));
  subclasser_->ssc_AddMsg(window_, kWhenBefore, {Long{kListed}});
  subclasser_->ssc_UnSubclass(window_);
  subclasser_->ssc_Terminate();
}

// The memory of a block that ended may be anything by the time at which its window is named again.
TEST_F(SubclassEnding, TheMemoryOfAnEndedBlockIsLeftToWhoeverHasIt) {
  const auto key = reinterpret_cast<Word>(static_cast<::HWND>(window_));
  const auto object = reinterpret_cast<Word>(static_cast<CallbackObject*>(&watcher_));
  window_.Destroy();
  ASSERT_TRUE(IsReleased(block_));
  constexpr DWORD size = kWords * sizeof(Word);
  ASSERT_EQ(block_, ::VirtualAlloc(block_, size, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
  for (const bool other_window : {true, false}) {
    std::fill_n(block_, kWords, 7);
    zData(kWindow, block_) = other_window ? 7 : key;
    zData(kObject, block_) = other_window ? object : 7;
    const std::vector<Word> content(block_, block_ + kWords);
    subclasser_->ssc_AddMsg(window_, kWhenBefore | kWhenAfter, {Long{-1}});
    subclasser_->zSet_lParamUser(key, kSubclassThunk, 9);
    EXPECT_EQ(content, std::vector<Word>(block_, block_ + kWords)) << other_window;
  }
  const std::vector<Word> content(block_, block_ + kWords);
  subclasser_->ssc_UnSubclass(window_);
  EXPECT_EQ(content, std::vector<Word>(block_, block_ + kWords));
  ::VirtualFree(block_, 0, MEM_RELEASE);
}

TEST_F(SubclassEnding, AnApiWindowThatIsUnsubclassedStays) {
  TestWindow window;
  bool unicode = true;
  ASSERT_TRUE(subclasser_->ssc_Subclass(window, 0, 1, &watcher_, true, unicode, true));
  subclasser_->ssc_UnSubclass(window);
  window.Send(kListed);
  EXPECT_EQ(original_, ProcedureOf(window));
  EXPECT_TRUE(::IsWindow(window));
}

TEST_F(SubclassEnding, NeedsNeitherTheSubclasserNorTheObject) {
  TestWindow other;
  Word* block = nullptr;
  {
    CSubClassAsm subclasser;
    Watcher watcher;
    ASSERT_TRUE(SubclassWith(subclasser, other, &watcher));
    subclasser.ssc_AddMsg(other, kWhenBefore | kWhenAfter, {Long{-1}});
    other.Send(kListed);
    block = watcher.block;
    subclasser.ssc_UnSubclass(other);
  }
  EXPECT_EQ(0, other.Send(kOther));
  EXPECT_EQ((std::vector<UINT>{kListed, kOther}), other.seen);
  EXPECT_TRUE(IsReleased(block));
}

TEST_F(SubclassEnding, ComesWithTheSubclassersEnd) {
  subclasser_.reset();
  EXPECT_EQ(kUnsubclassed, zData(kState, block_));
  window_.Send(kListed);
  EXPECT_TRUE(watcher_.calls.empty());
  EXPECT_TRUE(IsReleased(block_));
}

TEST_F(SubclassEnding, TerminateEndsEveryWindow) {
  TestWindow second;
  ASSERT_TRUE(SubclassWith(*subclasser_, second, &watcher_));
  subclasser_->ssc_AddMsg(second, kWhenBefore, {Long{kListed}});
  subclasser_->ssc_Terminate();
  window_.Send(kListed);
  second.Send(kListed);
  EXPECT_TRUE(watcher_.calls.empty());
  EXPECT_EQ(original_, ProcedureOf(window_));
  EXPECT_EQ(original_, ProcedureOf(second));
}

// --- Inside the method
// --------------------------------------------------------------------------------------

TEST_F(SubclassEnding, UnsubclassingInsideTheMethodLeavesTheCallAfterOut) {
  watcher_.action = [&](SubclassCall& call) {
    subclasser_->ssc_UnSubclass(window_);
    EXPECT_EQ(1, zData(kCounter, block_));
    EXPECT_TRUE(call.bBefore);
  };
  window_.Send(kListed);
  EXPECT_EQ(1u, watcher_.calls.size());
  EXPECT_EQ(std::vector<UINT>{kListed}, window_.seen);
  EXPECT_EQ(original_, ProcedureOf(window_));
  EXPECT_TRUE(IsReleased(block_));
}

TEST_F(SubclassEnding, TheWindowMayGoInsideTheMethod) {
  watcher_.action = [&](SubclassCall& call) {
    if (call.bBefore) window_.Destroy();
  };
  window_.Send(kListed);
  EXPECT_FALSE(::IsWindow(window_));
  EXPECT_TRUE(IsReleased(block_));
}

TEST_F(SubclassEnding, ItsUserValueOutlivesAReleaseInsideTheMethod) {
  watcher_.action = [&](SubclassCall& call) {
    subclasser_->ssc_UnSubclass(window_);
    PumpFor(kLongAfterTheTimer);
    call.lParamUser = 17;
    EXPECT_EQ(17, zData(kUser, block_));
  };
  window_.Send(kListed);
  EXPECT_TRUE(IsReleased(block_));
}

TEST_F(SubclassEnding, NeverComesWhileTheCounterIsUp) {
  watcher_.action = [&](SubclassCall& call) {
    if (!call.bBefore) return;
    subclasser_->ssc_UnSubclass(window_);
    // Messages to the window end nothing below the outermost call.
    for (int i = 0; i < 3; ++i) window_.Send(kOther);
    EXPECT_EQ(1, zData(kCounter, block_));
    EXPECT_EQ(0, zData(kTimer, block_));
    EXPECT_NE(original_, ProcedureOf(window_));
    PumpFor(kLongAfterTheTimer);
    EXPECT_TRUE(IsMemory(block_));
  };
  window_.Send(kListed);
  EXPECT_EQ(original_, ProcedureOf(window_));
  EXPECT_TRUE(IsReleased(block_));
}

TEST_F(SubclassEnding, TenNestedCallsEndWithTheOutermost) {
  int depth = 0, deepest = 0;
  watcher_.action = [&](SubclassCall& call) {
    if (!call.bBefore) return;
    ++depth;
    deepest = std::max(deepest, depth);
    EXPECT_EQ(depth, zData(kCounter, block_));
    if (depth < 10)
      window_.Send(kListed);
    else
      subclasser_->ssc_UnSubclass(window_);
    EXPECT_NE(original_, ProcedureOf(window_));
    EXPECT_EQ(0, zData(kTimer, block_));
    --depth;
  };
  window_.Send(kListed);
  EXPECT_EQ(10, deepest);
  EXPECT_EQ(10u, watcher_.calls.size()) << "none after its procedure, since the tables are empty by then";
  EXPECT_EQ(10u, window_.seen.size());
  EXPECT_EQ(original_, ProcedureOf(window_));
  EXPECT_TRUE(IsReleased(block_));
}

TEST_F(SubclassEnding, TheObjectMayGoInsideItsMethod) {
  for (const bool before : {true, false}) {
    TestWindow window;
    CSubClassAsm subclasser;
    auto watcher = std::make_unique<Watcher>();
    ASSERT_TRUE(SubclassWith(subclasser, window, watcher.get()));
    subclasser.ssc_AddMsg(window, kWhenBefore | kWhenAfter, {Long{kListed}});
    Word* block = nullptr;
    watcher->action = [&](SubclassCall& call) {
      if (call.bBefore != before) return;
      block = watcher->block;
      subclasser.ssc_UnSubclass(window);
      watcher.reset();
    };
    window.answer = [](UINT, WPARAM, LPARAM) { return LRESULT{5}; };
    EXPECT_EQ(5, window.Send(kListed)) << before;
    EXPECT_EQ(nullptr, watcher);
    EXPECT_TRUE(IsReleased(block));
  }
}

TEST_F(SubclassEnding, TheSubclasserMayGoInsideItsOwnMethod) {
  struct Owner : SubclassOwner {
    void SubclassMessage(SubclassCall&) override { subclasser.reset(); }
    std::unique_ptr<CSubClassAsm> subclasser = std::make_unique<CSubClassAsm>();
  } owner;
  TestWindow window;
  owner.subclasser->SetOwner(&owner);
  ASSERT_TRUE(SubclassWith(*owner.subclasser, window, nullptr));
  owner.subclasser->ssc_AddMsg(window, kWhenBefore | kWhenAfter, {Long{kListed}});
  window.Send(kListed);
  EXPECT_EQ(nullptr, owner.subclasser);
  EXPECT_EQ(original_, ProcedureOf(window));
}

TEST_F(SubclassEnding, TheObjectMayGoWhileTheProcedureRuns) {
  std::optional<Watcher> watcher(std::in_place);
  TestWindow window;
  CSubClassAsm subclasser;
  ASSERT_TRUE(SubclassWith(subclasser, window, &*watcher));
  subclasser.ssc_AddMsg(window, kWhenAfter, {Long{kListed}});
  window.answer = [&](UINT, WPARAM, LPARAM) {
    subclasser.ssc_UnSubclass(window);
    watcher.reset();
    return LRESULT{3};
  };
  EXPECT_EQ(3, window.Send(kListed));
}

TEST_F(SubclassEnding, WhatAMethodThrowsStaysInIt) {
  watcher_.action = [](SubclassCall&) { throw 1; };
  EXPECT_EQ(0, window_.Send(kListed));
  EXPECT_EQ(2u, watcher_.calls.size());
  EXPECT_EQ(0, zData(kCounter, block_));
}

// --- Several on one window
// ----------------------------------------------------------------------------------

TEST_F(SubclassEnding, TheNewerOfTwoMayLeaveFirst) {
  CSubClassAsm second;
  Watcher newer;
  ASSERT_TRUE(SubclassWith(second, window_, &newer));
  second.ssc_AddMsg(window_, kWhenBefore, {Long{kListed}});
  window_.Send(kListed);
  EXPECT_EQ(1u, newer.calls.size());
  EXPECT_EQ(2u, watcher_.calls.size());

  second.ssc_UnSubclass(window_);
  window_.Send(kListed);
  EXPECT_TRUE(IsReleased(newer.block));
  EXPECT_EQ(1u, newer.calls.size());
  EXPECT_EQ(4u, watcher_.calls.size());

  subclasser_->ssc_UnSubclass(window_);
  window_.Send(kListed);
  EXPECT_EQ(original_, ProcedureOf(window_));
  EXPECT_TRUE(IsReleased(block_));
}

// The older one gives the window the procedure from before both, which cuts the newer one off.
TEST_F(SubclassEnding, TheOlderOfTwoTakesTheNewerAlong) {
  CSubClassAsm second;
  Watcher newer;
  ASSERT_TRUE(SubclassWith(second, window_, &newer));
  second.ssc_AddMsg(window_, kWhenBefore, {Long{kListed}});
  subclasser_->ssc_UnSubclass(window_);
  window_.Send(kListed);
  EXPECT_EQ(1u, newer.calls.size());
  EXPECT_TRUE(watcher_.calls.empty());
  EXPECT_EQ(original_, ProcedureOf(window_));

  window_.Send(kListed);
  EXPECT_EQ(1u, newer.calls.size()) << "no message comes to it any more";
  EXPECT_TRUE(IsReleased(block_));
  second.ssc_UnSubclass(window_);
  window_.Send(kListed);
  EXPECT_TRUE(IsMemory(newer.block)) << "the window has no further message for it";
  EXPECT_EQ(3u, window_.seen.size());
}

TEST_F(SubclassEnding, BothEndWithTheWindow) {
  CSubClassAsm second;
  Watcher newer;
  ASSERT_TRUE(SubclassWith(second, window_, &newer));
  second.ssc_AddMsg(window_, kWhenBefore, {Long{kListed}});
  window_.Send(kListed);
  window_.Destroy();
  EXPECT_TRUE(IsReleased(block_));
  EXPECT_TRUE(IsReleased(newer.block));
}

// Somebody else's procedure, put before a thunk in the plain way.
struct Foreign {
  explicit Foreign(::HWND window)
      : before(::SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Procedure))) {
    calls = 0;
    original = before;
  }
  static LRESULT CALLBACK Procedure(::HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    ++calls;
    return ::CallWindowProcW(PointerIn<WNDPROC>(original), window, message, wparam, lparam);
  }
  LONG_PTR before;
  static inline LONG_PTR original = 0;
  static inline int calls = 0;
};

TEST_F(SubclassEnding, AForeignProcedureBeforeItIsServed) {
  const Foreign foreign(window_);
  window_.Send(kListed);
  EXPECT_EQ(1, Foreign::calls);
  EXPECT_EQ(2u, watcher_.calls.size());
  EXPECT_EQ(std::vector<UINT>{kListed}, window_.seen);
}

TEST_F(SubclassEnding, AForeignProcedureBeforeItIsCutOff) {
  const Foreign foreign(window_);
  subclasser_->ssc_UnSubclass(window_);
  window_.Send(kListed);
  EXPECT_EQ(1, Foreign::calls);
  EXPECT_EQ(original_, ProcedureOf(window_));
  window_.Send(kListed);
  EXPECT_EQ(1, Foreign::calls);
  EXPECT_EQ((std::vector<UINT>{kListed, kListed}), window_.seen);
  EXPECT_TRUE(IsReleased(block_));
}

TEST_F(SubclassEnding, AForeignProcedureBeforeItStaysToTheWindowsEnd) {
  const Foreign foreign(window_);
  window_.Destroy();
  EXPECT_GE(Foreign::calls, 2);
  EXPECT_TRUE(IsReleased(block_));
}

TEST_F(SubclassEnding, AForeignProcedureThatWentFirstChangesNothing) {
  const Foreign foreign(window_);
  ::SetWindowLongPtrW(window_, GWLP_WNDPROC, foreign.before);
  window_.Send(kListed);
  EXPECT_EQ(2u, watcher_.calls.size());
  subclasser_->ssc_UnSubclass(window_);
  window_.Send(kListed);
  EXPECT_TRUE(IsReleased(block_));
}

// It saved the thunk's address and calls it once more while the timer runs.
TEST_F(SubclassEnding, ACallBeforeTheTimerPutsItOff) {
  const LONG_PTR thunk = ProcedureOf(window_);
  subclasser_->ssc_UnSubclass(window_);
  window_.Send(kListed);
  const Word first_timer = zData(kTimer, block_);
  ASSERT_NE(0, first_timer);
  bool inside = false;
  window_.answer = [&](UINT, WPARAM, LPARAM) {
    inside = true;
    EXPECT_EQ(0, zData(kTimer, block_));
    PumpFor(kLongAfterTheTimer);
    EXPECT_TRUE(IsMemory(block_));
    return LRESULT{0};
  };
  ::CallWindowProcW(PointerIn<WNDPROC>(thunk), window_, kOther, 0, 0);
  EXPECT_TRUE(inside);
  EXPECT_NE(0, zData(kTimer, block_));
  EXPECT_TRUE(IsReleased(block_));
}

// --- Code that vanishes, and the design environment
// ---------------------------------------------------------

// A method in memory of its own, which can be taken away.
class LoneMethod : public CallbackObject {
 public:
  LoneMethod() : LoneMethod(::VirtualAlloc(nullptr, kSize, MEM_COMMIT, PAGE_EXECUTE_READWRITE)) {}
  ~LoneMethod() { Vanish(); }
  void Vanish() {
    if (std::exchange(vanished_, true)) return;
    ::VirtualFree(reinterpret_cast<void*>(methods_[0]), 0, MEM_RELEASE);
  }

 private:
  static constexpr SIZE_T kSize = 4096;
  explicit LoneMethod(void* code) : CallbackObject(methods_) {
    // ret, which on 32-bit systems takes the nine arguments along.
    constexpr std::array<std::uint8_t, 3> kReturn = {kIs32Bit ? 0xC2 : 0xC3, 9 * 4, 0};
    std::copy(kReturn.begin(), kReturn.end(), static_cast<std::uint8_t*>(code));
    methods_[0] = reinterpret_cast<Method>(code);
  }
  Method methods_[1] = {};
  bool vanished_ = false;
};

// The block of a window that nothing but the thunk's own address leads to: the newest one.
class VanishingMethod : public ::testing::TestWithParam<bool> {
 protected:
  void Begin(Long when) {
    bool unicode = true;
    ASSERT_TRUE(subclasser_.ssc_Subclass(window_, 0, 1, &object_, true, unicode, GetParam()));
    subclasser_.ssc_AddMsg(window_, when, {Long{kListed}});
    ASSERT_NE(original_, ProcedureOf(window_));
  }
  void ExpectTheEnd() {
    const bool is_api_window = GetParam();
    EXPECT_EQ(!is_api_window, ::IsWindow(window_) != 0);
    EXPECT_EQ(is_api_window ? 0 : original_, ProcedureOf(window_));
  }

  TestWindow window_;
  const LONG_PTR original_ = ProcedureOf(window_);
  CSubClassAsm subclasser_;
  LoneMethod object_;
};

TEST_P(VanishingMethod, EndsTheThunkAndAnApiWindow) {
  Begin(kWhenBefore | kWhenAfter);
  window_.Send(kListed);
  object_.Vanish();
  // In neither table: the method is looked at before every message.
  window_.Send(kOther);
  ExpectTheEnd();
  EXPECT_EQ(kOther, window_.seen[1]);
}

TEST_P(VanishingMethod, EndsTheThunkFromInsideTheProcedure) {
  Begin(kWhenAfter);
  window_.answer = [&](UINT, WPARAM, LPARAM) {
    object_.Vanish();
    return LRESULT{8};
  };
  EXPECT_EQ(8, window_.Send(kListed));
  ExpectTheEnd();
}

INSTANTIATE_TEST_SUITE_P(Windows, VanishingMethod, ::testing::Bool());

Long mode_answer = 1;
Long CALLBACK AnswerMode() { return mode_answer; }

TEST_F(SubclassEnding, TheDesignEnvironmentsModeDecides) {
  zData(kEbMode, block_) = reinterpret_cast<Word>(&AnswerMode);
  mode_answer = 1;
  window_.Send(kListed);
  EXPECT_EQ(2u, watcher_.calls.size());
  mode_answer = 2;
  window_.Send(kListed);
  EXPECT_EQ(2u, watcher_.calls.size()) << "nothing is called in a break";
  EXPECT_EQ(kRunning, zData(kState, block_));
  mode_answer = 1;
  window_.Send(kListed);
  EXPECT_EQ(4u, watcher_.calls.size());
  mode_answer = 0;
  window_.Send(kListed);
  EXPECT_EQ(4u, watcher_.calls.size());
  EXPECT_EQ(4u, window_.seen.size());
  EXPECT_EQ(kMethodGone, zData(kState, block_));
  EXPECT_EQ(original_, ProcedureOf(window_));
  EXPECT_TRUE(IsReleased(block_));
}

// --- Memory
// -------------------------------------------------------------------------------------------------

TEST_F(SubclassEnding, ExecutablePagesAreThereOnlyWhileAThunkLives) {
  constexpr int count = 20;
  constexpr int each = kIs32Bit ? 1 : 0;
  const int before = CountExecutableRegions();
  std::vector<std::unique_ptr<TestWindow>> windows;
  CSubClassAsm subclasser;
  for (int i = 0; i < count; ++i) {
    windows.push_back(std::make_unique<TestWindow>());
    ASSERT_TRUE(SubclassWith(subclasser, *windows.back(), &watcher_));
  }
  EXPECT_EQ(before + each * count, CountExecutableRegions());
  windows.clear();
  PumpFor(kLongAfterTheTimer);
  EXPECT_EQ(before, CountExecutableRegions());
}

// Each round leaves its block to the timer.
TEST(SlowSubclassEnding, ManyRoundsLeaveNoMemory) {
  constexpr int rounds = 100000, batch = 5000;
  TestWindow window;
  Watcher watcher;
  CSubClassAsm subclasser;
  const LONG_PTR original = ProcedureOf(window);
  int after_first_batch = 0;
  for (int i = 1; i <= rounds; ++i) {
    ASSERT_TRUE(SubclassWith(subclasser, window, &watcher)) << i;
    subclasser.ssc_AddMsg(window, kWhenBefore, {Long{kListed}});
    subclasser.ssc_UnSubclass(window);
    window.Send(kOther);
    if (i % batch != 0) continue;
    window.seen.clear();
    PumpFor(150);
    if (i == batch) after_first_batch = CountPrivateRegions();
  }
  EXPECT_EQ(original, ProcedureOf(window));
  EXPECT_TRUE(watcher.calls.empty());
  EXPECT_NEAR(after_first_batch, CountPrivateRegions(), 20);
}

}  // namespace
}  // namespace marklet::plumbing
