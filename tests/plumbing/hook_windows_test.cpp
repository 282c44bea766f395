// Hooks: what comes to the method, and that they may be removed from inside.
#include <memory>

#include "plumbing/plumbing_test.h"

namespace marklet::plumbing {
namespace {

using namespace hook_block;

// Keys come to the window with the focus; WH_CALLWNDPROC sees every message that is sent.
constexpr Long kSentMessages = WH_CALLWNDPROC;
constexpr UINT kMarked = WM_USER + 5;

// NOLINTNEXTLINE(clang-analyzer-core.uninitialized.UndefReturn): the analyser can't follow a bit_cast
UINT MessageOf(const HookCall& call) { return PointerIn<const CWPSTRUCT*>(call.lParam)->message; }

class Hook : public ::testing::Test {
 protected:
  bool Begin(Long when, Word user = 0) {
    bool unicode = true;
    return subclasser_->shk_SetHook(kSentMessages, false, when, user, kWatcherHooks, &watcher_, true,
                                    unicode);
  }
  // Only for the message that the test sends.
  void OnMarked(std::function<void(HookCall&)> action) {
    watcher_.hook_action = [action = std::move(action)](HookCall& call) {
      if (MessageOf(call) == kMarked) action(call);
    };
  }

  TestWindow window_;
  Watcher watcher_;
  std::unique_ptr<CSubClassAsm> subclasser_ = std::make_unique<CSubClassAsm>();
};

TEST_F(Hook, CallsTheMethodBeforeAndAfterTheNextHook) {
  ASSERT_TRUE(Begin(kWhenBefore | kWhenAfter, 5));
  std::vector<bool> sides;
  OnMarked([&](HookCall& call) {
    sides.push_back(call.bBefore);
    EXPECT_EQ(HC_ACTION, call.nCode);
    EXPECT_EQ(kSentMessages, call.lHookType);
    EXPECT_EQ(5, call.lParamUser);
    EXPECT_EQ(3u, PointerIn<const CWPSTRUCT*>(call.lParam)->wParam);
    EXPECT_EQ(1, zData(kCounter, watcher_.block));
  });
  window_.Send(kMarked, 3);
  EXPECT_EQ((std::vector<bool>{true, false}), sides);
  EXPECT_EQ(0, zData(kCounter, watcher_.block));
}

TEST_F(Hook, CallsOnlyTheSideThatWasAskedFor) {
  for (const Long when : {kWhenBefore, kWhenAfter}) {
    ASSERT_TRUE(Begin(when));
    std::vector<bool> sides;
    OnMarked([&](HookCall& call) { sides.push_back(call.bBefore); });
    window_.Send(kMarked);
    EXPECT_EQ(std::vector<bool>{when == kWhenBefore}, sides);
    EXPECT_TRUE(subclasser_->shk_UnHook(kSentMessages));
  }
}

TEST_F(Hook, KeepsItsUserValue) {
  ASSERT_TRUE(Begin(kWhenBefore, 1));
  std::vector<Word> values;
  OnMarked([&](HookCall& call) { values.push_back(call.lParamUser++); });
  window_.Send(kMarked);
  window_.Send(kMarked);
  subclasser_->zSet_lParamUser(kSentMessages, kHookThunk, 30);
  window_.Send(kMarked);
  EXPECT_EQ((std::vector<Word>{1, 2, 30}), values);
}

TEST_F(Hook, OneOfATypeAtATime) {
  ASSERT_TRUE(Begin(kWhenBefore));
  EXPECT_FALSE(Begin(kWhenBefore));
  EXPECT_TRUE(subclasser_->shk_UnHook(kSentMessages));
  EXPECT_FALSE(subclasser_->shk_UnHook(kSentMessages));
  EXPECT_TRUE(Begin(kWhenBefore));
}

TEST_F(Hook, IsReleasedAtOnceWhenNothingIsInside) {
  ASSERT_TRUE(Begin(kWhenBefore));
  window_.Send(kMarked);
  EXPECT_TRUE(IsMemory(watcher_.block));
  subclasser_->shk_UnHook(kSentMessages);
  EXPECT_FALSE(IsMemory(watcher_.block));
  int calls = 0;
  OnMarked([&](HookCall&) { ++calls; });
  window_.Send(kMarked);
  EXPECT_EQ(0, calls);
}

TEST_F(Hook, RemovedInsideItsOwnCallIsKeptUntilTheNextRemoval) {
  ASSERT_TRUE(Begin(kWhenBefore | kWhenAfter));
  int calls = 0;
  OnMarked([&](HookCall&) {
    ++calls;
    EXPECT_TRUE(subclasser_->shk_UnHook(kSentMessages));
    EXPECT_TRUE(IsMemory(watcher_.block));
  });
  window_.Send(kMarked);
  EXPECT_EQ(1, calls) << "not after the next hook";
  window_.Send(kMarked);
  EXPECT_EQ(1, calls);
  Word* const block = watcher_.block;
  EXPECT_EQ(1, zData(kShutdown, block));
  EXPECT_EQ(0, zData(kCounter, block));
  EXPECT_FALSE(Begin(kWhenBefore)) << "its key is still there";
  EXPECT_TRUE(subclasser_->shk_UnHook(kSentMessages));
  EXPECT_FALSE(IsMemory(block));
  EXPECT_TRUE(Begin(kWhenBefore));
}

TEST_F(Hook, RemovedDeepInsideNestedCallsEndsWithTheOutermost) {
  ASSERT_TRUE(Begin(kWhenBefore));
  int depth = 0, calls = 0;
  OnMarked([&](HookCall&) {
    ++calls;
    if (++depth < 10)
      window_.Send(kMarked);
    else
      EXPECT_TRUE(subclasser_->shk_UnHook(kSentMessages));
    EXPECT_EQ(depth--, zData(kCounter, watcher_.block));
  });
  window_.Send(kMarked);
  EXPECT_EQ(10, calls);
  EXPECT_EQ(0, zData(kCounter, watcher_.block));
}

TEST_F(Hook, TheSubclasserMayGoInsideItsHooksCall) {
  ASSERT_TRUE(Begin(kWhenBefore | kWhenAfter));
  int calls = 0;
  OnMarked([&](HookCall&) {
    ++calls;
    subclasser_.reset();
  });
  EXPECT_EQ(0, window_.Send(kMarked));
  window_.Send(kMarked);
  EXPECT_EQ(1, calls);
  EXPECT_TRUE(IsMemory(watcher_.block)) << "it was on the stack, and nobody has its key any more";
}

TEST_F(Hook, RefusesWhatThePlatformRefuses) {
  bool unicode = true;
  constexpr Long unknown = 99;
  EXPECT_FALSE(
      subclasser_->shk_SetHook(unknown, false, kWhenBefore, 0, kWatcherHooks, &watcher_, true, unicode));
  EXPECT_FALSE(subclasser_->shk_UnHook(unknown));
  EXPECT_FALSE(subclasser_->shk_SetHook(kSentMessages, false, kWhenBefore, 0, 7, &watcher_, true, unicode));
  const int before = CountPrivateRegions();
  for (int i = 0; i < 200; ++i)
    EXPECT_FALSE(
        subclasser_->shk_SetHook(unknown, false, kWhenBefore, 0, kWatcherHooks, &watcher_, true, unicode));
  EXPECT_LT(CountPrivateRegions() - before, 100);
}

TEST_F(Hook, TakesTheNarrowFormsWhenNotAsked) {
  bool unicode = false;
  ASSERT_TRUE(subclasser_->shk_SetHook(kSentMessages, false, kWhenBefore, 0, kWatcherHooks, &watcher_, true,
                                       unicode));
  EXPECT_FALSE(unicode);
  int calls = 0;
  OnMarked([&](HookCall&) { ++calls; });
  window_.Send(kMarked);
  EXPECT_EQ(1, calls);
}

// The keyboard's hook decides itself whether the next one and the window hear of a key.
TEST_F(Hook, AHandledCallHasTheMethodsResult) {
  bool unicode = true;
  ASSERT_TRUE(subclasser_->shk_SetHook(WH_GETMESSAGE, false, kWhenBefore, 0, kWatcherHooks, &watcher_, true,
                                       unicode));
  std::vector<UINT> seen;
  watcher_.hook_action = [&](HookCall& call) {
    auto* message = PointerIn<MSG*>(call.lParam);
    if (message->message != kMarked) return;
    seen.push_back(message->message);
    EXPECT_EQ(0, call.lReturn);
    message->message = WM_NULL;
    call.bHandled = 1;
  };
  ::PostMessageW(window_, kMarked, 0, 0);
  Pump();
  EXPECT_EQ(std::vector<UINT>{kMarked}, seen);
  EXPECT_TRUE(std::find(window_.seen.begin(), window_.seen.end(), kMarked) == window_.seen.end());
}

TEST_F(Hook, AHandledCallReachesNeitherTheNextHookNorTheMethodAgain) {
  CSubClassAsm older;
  Watcher next;
  bool unicode = true;
  ASSERT_TRUE(older.shk_SetHook(kSentMessages, false, kWhenBefore, 0, kWatcherHooks, &next, true, unicode));
  ASSERT_TRUE(Begin(kWhenBefore | kWhenAfter));
  int next_calls = 0;
  next.hook_action = [&](HookCall& call) { next_calls += MessageOf(call) == kMarked; };
  for (const bool handled : {false, true}) {
    std::vector<bool> sides;
    next_calls = 0;
    OnMarked([&](HookCall& call) {
      EXPECT_EQ(0, call.bHandled);
      sides.push_back(call.bBefore);
      call.bHandled = handled;
    });
    window_.Send(kMarked);
    EXPECT_EQ(handled ? 0 : 1, next_calls);
    EXPECT_EQ(handled ? std::vector<bool>{true} : std::vector<bool>({true, false}), sides);
  }
}

// The platform has this type for all threads together only.
TEST_F(Hook, AGlobalOneHearsOfKeys) {
  bool unicode = true;
  const auto begin = [&](bool global) {
    return subclasser_->shk_SetHook(WH_KEYBOARD_LL, global, kWhenBefore, 0, kWatcherHooks, &watcher_, true,
                                    unicode);
  };
  ASSERT_FALSE(begin(false));
  ASSERT_TRUE(begin(true)) << "what was refused left no key";
  std::vector<DWORD> keys;
  watcher_.hook_action = [&](HookCall& call) {
    EXPECT_EQ(WH_KEYBOARD_LL, call.lHookType);
    keys.push_back(PointerIn<const KBDLLHOOKSTRUCT*>(call.lParam)->vkCode);
  };
  ::keybd_event(VK_F13, 0, 0, 0);
  ::keybd_event(VK_F13, 0, KEYEVENTF_KEYUP, 0);
  Pump();
  EXPECT_EQ(std::vector<DWORD>(2, VK_F13), keys);
}

TEST_F(Hook, TheClassesOwnReceiverRaisesTheEvent) {
  struct Events : SubclassEvents {
    void HookMessage(Long type, Long code, WPARAM, LPARAM lparam) override {
      if (PointerIn<const CWPSTRUCT*>(lparam)->message == kMarked) calls.emplace_back(type, code);
    }
    void EnumCallback(std::u16string_view) override {}
    std::vector<std::pair<Long, Long>> calls;
  } events;
  bool unicode = true;
  ASSERT_TRUE(
      subclasser_->shk_SetHook(kSentMessages, false, kWhenBefore, 0, kHookMethod, nullptr, true, unicode));
  window_.Send(kMarked);
  subclasser_->SetEvents(&events);
  window_.Send(kMarked);
  EXPECT_EQ((std::vector<std::pair<Long, Long>>{{kSentMessages, HC_ACTION}}), events.calls);
}

Long mode_answer = 1;
Long CALLBACK AnswerMode() { return mode_answer; }

TEST_F(Hook, TheDesignEnvironmentsModeDecides) {
  ASSERT_TRUE(Begin(kWhenBefore | kWhenAfter));
  int calls = 0;
  OnMarked([&](HookCall&) { ++calls; });
  window_.Send(kMarked);
  EXPECT_EQ(2, calls);
  Word* const block = watcher_.block;
  zData(kEbMode, block) = reinterpret_cast<Word>(&AnswerMode);
  mode_answer = 1;
  window_.Send(kMarked);
  EXPECT_EQ(4, calls);
  mode_answer = 2;
  window_.Send(kMarked);
  EXPECT_EQ(4, calls);
  EXPECT_EQ(0, zData(kShutdown, block));
  mode_answer = 0;
  window_.Send(kMarked);
  EXPECT_EQ(4, calls);
  EXPECT_EQ(1, zData(kShutdown, block));
  mode_answer = 1;
  window_.Send(kMarked);
  EXPECT_EQ(4, calls) << "the platform calls it no more";
}

TEST_F(Hook, AnObjectThatChangedIsNotCalledInTheDesignEnvironment) {
  ASSERT_TRUE(Begin(kWhenBefore));
  int calls = 0;
  OnMarked([&](HookCall&) { ++calls; });
  window_.Send(kMarked);
  Word* const block = watcher_.block;
  zData(kLife, block) ^= 1;
  window_.Send(kMarked);
  EXPECT_EQ(2, calls) << "asked in the design environment alone";
  mode_answer = 1;
  zData(kEbMode, block) = reinterpret_cast<Word>(&AnswerMode);
  window_.Send(kMarked);
  EXPECT_EQ(2, calls);
  EXPECT_EQ(1, zData(kShutdown, block));
}

}  // namespace
}  // namespace marklet::plumbing
