// Windows with a thunk: which messages come to the method, and what it can do with them.
#include "plumbing/plumbing_test.h"
#include "plumbing/unloading.h"

namespace marklet::plumbing {
namespace {

constexpr UINT kListed = WM_USER + 1, kOther = WM_USER + 2;

class Subclass : public ::testing::Test {
 protected:
  void Begin(Word user = 0) { ASSERT_TRUE(SubclassWith(subclasser_, window_, &watcher_, user)); }

  TestWindow window_;
  Watcher watcher_;
  CSubClassAsm subclasser_;
};

TEST_F(Subclass, CallsNothingBeforeMessagesAreAdded) {
  Begin();
  window_.Send(kListed);
  EXPECT_TRUE(watcher_.calls.empty());
  EXPECT_EQ(std::vector<UINT>{kListed}, window_.seen);
}

TEST_F(Subclass, CallsTheMethodBeforeAndAfterTheProcedure) {
  Begin();
  subclasser_.ssc_AddMsg(window_, kWhenBefore | kWhenAfter, {Long{kListed}});
  watcher_.action = [&](SubclassCall& call) {
    EXPECT_EQ(call.bBefore, window_.seen.empty());
    EXPECT_EQ(window_, call.hWnd);
  };
  window_.Send(kListed, 3, 4);
  EXPECT_EQ((std::vector<Watcher::Call>{{true, kListed, 3, 4}, {false, kListed, 3, 4}}), watcher_.calls);
  EXPECT_EQ(std::vector<UINT>{kListed}, window_.seen);
}

TEST_F(Subclass, OtherMessagesGoToTheProcedureAlone) {
  Begin();
  subclasser_.ssc_AddMsg(window_, kWhenBefore | kWhenAfter, {Long{kListed}});
  window_.Send(kOther);
  EXPECT_TRUE(watcher_.calls.empty());
  EXPECT_EQ(std::vector<UINT>{kOther}, window_.seen);
}

TEST_F(Subclass, EachTableIsItsOwn) {
  Begin();
  subclasser_.ssc_AddMsg(window_, kWhenBefore, {Long{kListed}});
  subclasser_.ssc_AddMsg(window_, kWhenAfter, {Long{kOther}});
  window_.Send(kListed);
  window_.Send(kOther);
  EXPECT_EQ((std::vector<Watcher::Call>{{true, kListed, 0, 0}, {false, kOther, 0, 0}}), watcher_.calls);
  subclasser_.ssc_DelMsg(window_, kWhenBefore, {Long{kListed}, Long{kOther}});
  window_.Send(kListed);
  window_.Send(kOther);
  EXPECT_EQ(3u, watcher_.calls.size());
}

TEST_F(Subclass, AHandledMessageDoesNotReachTheProcedure) {
  Begin();
  subclasser_.ssc_AddMsg(window_, kWhenBefore | kWhenAfter, {Long{kListed}});
  watcher_.action = [](SubclassCall& call) {
    EXPECT_EQ(0, call.lReturn);
    EXPECT_EQ(0, call.bHandled);
    call.bHandled = 1;
    call.lReturn = -1;
  };
  EXPECT_EQ(-1, window_.Send(kListed));
  EXPECT_TRUE(window_.seen.empty());
  EXPECT_EQ(1u, watcher_.calls.size()) << "not after it either";
}

TEST_F(Subclass, AnUnhandledMessageHasTheProceduresResult) {
  Begin();
  subclasser_.ssc_AddMsg(window_, kWhenBefore, {Long{kListed}});
  window_.answer = [](UINT, WPARAM, LPARAM) { return LRESULT{7}; };
  watcher_.action = [](SubclassCall& call) { call.lReturn = 5; };
  EXPECT_EQ(7, window_.Send(kListed));
}

TEST_F(Subclass, SeesAndReplacesTheResultAfter) {
  Begin();
  subclasser_.ssc_AddMsg(window_, kWhenAfter, {Long{kListed}});
  constexpr LRESULT wide = static_cast<LRESULT>(0x7FFFFFFF0000000Full);
  window_.answer = [](UINT, WPARAM, LPARAM) { return LRESULT{7}; };
  watcher_.action = [](SubclassCall& call) {
    EXPECT_EQ(7, call.lReturn);
    call.lReturn = wide;
  };
  EXPECT_EQ(wide, window_.Send(kListed));
}

TEST_F(Subclass, KeepsItsUserValue) {
  Begin(11);
  subclasser_.ssc_AddMsg(window_, kWhenBefore, {Long{kListed}});
  std::vector<Word> values;
  watcher_.action = [&](SubclassCall& call) { values.push_back(call.lParamUser++); };
  window_.Send(kListed);
  window_.Send(kListed);
  const auto key = reinterpret_cast<Word>(static_cast<::HWND>(window_));
  subclasser_.zSet_lParamUser(key, kSubclassThunk, 40);
  window_.Send(kListed);
  subclasser_.zSet_lParamUser(key, kCallbackThunk, 50);
  subclasser_.zSet_lParamUser(key, kHookThunk, 60);
  window_.Send(kListed);
  EXPECT_EQ((std::vector<Word>{11, 12, 40, 41}), values);
}

TEST_F(Subclass, TakesNumbersOfEveryWidthAndSkipsTheRest) {
  Begin();
  subclasser_.ssc_AddMsg(
      window_, kWhenBefore,
      {std::int16_t{0x500}, 1281.0, true, std::u16string_view(u"1282"), std::uint8_t{200}, Long{0x10000}});
  for (const UINT message : {0x500u, 1281u, 1282u, 200u, 0x10000u})
    ::CallWindowProcW(PointerIn<WNDPROC>(::GetWindowLongPtrW(window_, GWLP_WNDPROC)), window_, message, 0, 0);
  std::vector<UINT> messages;
  for (const Watcher::Call& call : watcher_.calls) messages.push_back(call.message);
  EXPECT_EQ((std::vector<UINT>{0x500u, 200u, 0x10000u}), messages);
}

TEST_F(Subclass, MinusOneBringsEveryMessage) {
  Begin();
  subclasser_.ssc_AddMsg(window_, kWhenBefore, {Long{kListed}, std::int16_t{-1}});
  for (const UINT message : {kListed, kOther, UINT{WM_SIZE}}) window_.Send(message);
  EXPECT_EQ(3u, watcher_.calls.size());
}

TEST_F(Subclass, AMessageAfterMinusOneComesAlone) {
  Begin();
  subclasser_.ssc_AddMsg(window_, kWhenBefore, {Long{-1}});
  subclasser_.ssc_AddMsg(window_, kWhenBefore, {Long{kListed}});
  for (const UINT message : {kListed, kOther, UINT{WM_SIZE}}) window_.Send(message);
  EXPECT_EQ((std::vector<Watcher::Call>{{true, kListed, 0, 0}}), watcher_.calls);
}

TEST_F(Subclass, TheThirtyThirdMessageStopsTheList) {
  Begin();
  std::vector<MessageEntry> messages;
  for (UINT i = 0; i < 33; ++i) messages.emplace_back(static_cast<Long>(WM_USER + 10 + i));
  // Would bring everything, but comes too late.
  messages.emplace_back(Long{-1});
  subclasser_.ssc_AddMsg(window_, kWhenBefore, messages);
  for (UINT i = 0; i < 34; ++i) window_.Send(WM_USER + 10 + i);
  EXPECT_EQ(32u, watcher_.calls.size());
  subclasser_.ssc_AddMsg(window_, kWhenAfter, messages);
  EXPECT_EQ(32, zData(subclass_block::kAfter, watcher_.block)) << "the other table has its own room";
}

TEST_F(Subclass, AHoleMatchesTheNullMessage) {
  Begin();
  subclasser_.ssc_AddMsg(window_, kWhenBefore, {Long{kListed}});
  window_.Send(WM_NULL);
  EXPECT_TRUE(watcher_.calls.empty());
  subclasser_.ssc_DelMsg(window_, kWhenBefore, {Long{kListed}});
  window_.Send(WM_NULL);
  EXPECT_EQ(1u, watcher_.calls.size());
}

TEST_F(Subclass, NamesTheMethodByItsPlaceFromTheEnd) {
  bool unicode = true;
  for (const Long ordinal : {0, -1, 4}) {
    EXPECT_FALSE(subclasser_.ssc_Subclass(window_, 0, ordinal, &watcher_, true, unicode, false)) << ordinal;
  }
  ASSERT_TRUE(subclasser_.ssc_Subclass(window_, 0, kWatcherFirst, &watcher_, true, unicode, false));
  subclasser_.ssc_AddMsg(window_, kWhenBefore, {Long{kListed}});
  window_.Send(kListed);
  EXPECT_EQ(1, watcher_.first_method_calls);
  EXPECT_TRUE(watcher_.calls.empty());
}

// The same methods with one more before them.
class LongerWatcher : public CallbackObject {
 public:
  LongerWatcher() : CallbackObject(kMethods) {}
  int added = 0, last = 0;

 private:
  void Added(SubclassCall&) { ++added; }
  void First(SubclassCall&) {}
  void OnHook(HookCall&) {}
  void Last(SubclassCall&) { ++last; }
  static inline const Method kMethods[] = {
      MethodOf<&LongerWatcher::Added>(), MethodOf<&LongerWatcher::First>(),
      MethodOf<&LongerWatcher::OnHook>(), MethodOf<&LongerWatcher::Last>()};
};

TEST_F(Subclass, OrdinalOneIsTheLastMethodThoughMethodsAreAdded) {
  LongerWatcher longer;
  ASSERT_TRUE(SubclassWith(subclasser_, window_, &longer));
  subclasser_.ssc_AddMsg(window_, kWhenBefore, {Long{kListed}});
  window_.Send(kListed);
  EXPECT_EQ(1, longer.last);
  EXPECT_EQ(0, longer.added);
}

TEST_F(Subclass, CallsTheOwnerWhenNoObjectIsGiven) {
  struct Owner : SubclassOwner {
    void SubclassMessage(SubclassCall& call) override { message = call.uMsg; }
    UINT message = 0;
  } owner;
  ASSERT_TRUE(SubclassWith(subclasser_, window_, nullptr));
  subclasser_.ssc_AddMsg(window_, kWhenAfter, {Long{kListed}});
  window_.Send(kListed);
  subclasser_.SetOwner(&owner);
  window_.Send(kListed);
  EXPECT_EQ(kListed, owner.message);
}

TEST_F(Subclass, RefusesWhatIsNoWindowOfThisProcess) {
  bool unicode = true;
  EXPECT_FALSE(subclasser_.ssc_Subclass(nullptr, 0, 1, &watcher_, true, unicode, false));
  EXPECT_FALSE(subclasser_.ssc_Subclass(::GetDesktopWindow(), 0, 1, &watcher_, true, unicode, false));
  TestWindow gone;
  gone.Destroy();
  EXPECT_FALSE(subclasser_.ssc_Subclass(gone, 0, 1, &watcher_, true, unicode, false));
}

TEST_F(Subclass, RefusesAWindowTheSecondTimeAndFreesTheBlock) {
  Begin();
  EXPECT_FALSE(SubclassWith(subclasser_, window_, &watcher_));
  const int before = CountPrivateRegions();
  for (int i = 0; i < 200; ++i) EXPECT_FALSE(SubclassWith(subclasser_, window_, &watcher_));
  EXPECT_LT(CountPrivateRegions() - before, 100);
  subclasser_.ssc_AddMsg(window_, kWhenBefore, {Long{kListed}});
  window_.Send(kListed);
  EXPECT_EQ(1u, watcher_.calls.size());
}

// This program's own way to the platform's function.
#ifdef _WIN64
extern void* set_window_long_slot asm("__imp_SetWindowLongPtrW");
#else
extern void* set_window_long_slot asm("__imp__SetWindowLongW@12");
#endif

LONG_PTR WINAPI RefuseToSet(::HWND, int, LONG_PTR) { return 0; }

void SetSlot(void* function) {
  DWORD protection = 0;
  ::VirtualProtect(&set_window_long_slot, sizeof set_window_long_slot, PAGE_READWRITE, &protection);
  set_window_long_slot = function;
  ::VirtualProtect(&set_window_long_slot, sizeof set_window_long_slot, protection, &protection);
}

TEST_F(Subclass, AWindowThatThePlatformRefusedCountsAsSubclassed) {
  void* const platforms = set_window_long_slot;
  SetSlot(reinterpret_cast<void*>(&RefuseToSet));
  const bool subclassed = SubclassWith(subclasser_, window_, &watcher_);
  SetSlot(platforms);
  EXPECT_FALSE(subclassed);
  EXPECT_FALSE(ThunksNeedModule()) << "the window can't call it";
  EXPECT_FALSE(SubclassWith(subclasser_, window_, &watcher_)) << "its key is still there";
  subclasser_.ssc_AddMsg(window_, kWhenBefore, {Long{kListed}});
  EXPECT_EQ(0, subclasser_.ssc_CallOrigWndProc(window_, kListed, 0, 0));
  subclasser_.ssc_Terminate();
  EXPECT_FALSE(SubclassWith(subclasser_, window_, &watcher_)) << "nor does the end of all take it";
  subclasser_.ssc_UnSubclass(window_);
  Begin();
}

TEST_F(Subclass, AsksForTheWideFormsAndIsToldWhatTheWindowHas) {
  bool unicode = true;
  ASSERT_TRUE(subclasser_.ssc_Subclass(window_, 0, 1, &watcher_, true, unicode, false));
  EXPECT_TRUE(unicode);
  EXPECT_TRUE(::IsWindowUnicode(window_));

  const ::HWND narrow =
      ::CreateWindowExA(0, "STATIC", "text", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
  ::SetWindowLongPtrA(narrow, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&::DefWindowProcA));
  ASSERT_FALSE(::IsWindowUnicode(narrow));
  ASSERT_TRUE(subclasser_.ssc_Subclass(narrow, 0, 1, &watcher_, true, unicode, false));
  EXPECT_FALSE(unicode);
  ::DestroyWindow(narrow);
}

TEST_F(Subclass, TakesTheNarrowFormsWhenNotAsked) {
  bool unicode = false;
  ASSERT_TRUE(subclasser_.ssc_Subclass(window_, 0, 1, &watcher_, true, unicode, false));
  EXPECT_FALSE(unicode);
  EXPECT_FALSE(::IsWindowUnicode(window_));
  // The text goes through the system code page to the method, and back to the window's own procedure.
  subclasser_.ssc_AddMsg(window_, kWhenBefore, {Long{WM_SETTEXT}});
  std::string text;
  watcher_.action = [&](SubclassCall& call) { text = PointerIn<const char*>(call.lParam); };
  ::SetWindowTextW(window_, L"narrow");
  EXPECT_EQ("narrow", text);
  wchar_t kept[16] = {};
  ::GetWindowTextW(window_, kept, 16);
  EXPECT_STREQ(L"narrow", kept);
}

TEST_F(Subclass, CallsTheOriginalProcedurePastTheMethod) {
  EXPECT_EQ(0, subclasser_.ssc_CallOrigWndProc(window_, kListed, 0, 0));
  Begin();
  subclasser_.ssc_AddMsg(window_, kWhenBefore, {Long{kListed}});
  window_.answer = [](UINT, WPARAM wparam, LPARAM lparam) { return static_cast<LRESULT>(wparam) + lparam; };
  EXPECT_EQ(7, subclasser_.ssc_CallOrigWndProc(window_, kListed, 3, 4));
  EXPECT_TRUE(watcher_.calls.empty());
}

TEST_F(Subclass, CallsTheOriginalProcedureInTheFormThatTheThunkHas) {
  for (const bool wide : {true, false}) {
    TestWindow window;
    CSubClassAsm subclasser;
    bool unicode = wide;
    ASSERT_TRUE(subclasser.ssc_Subclass(window, 0, 1, &watcher_, true, unicode, false));
    const void* const text = wide ? static_cast<const void*>(L"new") : "new";
    subclasser.ssc_CallOrigWndProc(window, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text));
    wchar_t kept[16] = {};
    ::DefWindowProcW(window, WM_GETTEXT, 16, reinterpret_cast<LPARAM>(kept));
    EXPECT_STREQ(L"new", kept) << wide;
  }
}

TEST_F(Subclass, WhatIsDoneToAnUnknownWindowDoesNothing) {
  TestWindow other;
  subclasser_.ssc_AddMsg(other, kWhenBefore, {Long{kListed}});
  subclasser_.ssc_DelMsg(other, kWhenBefore, {Long{kListed}});
  subclasser_.zSet_lParamUser(reinterpret_cast<Word>(static_cast<::HWND>(other)), kSubclassThunk, 1);
  subclasser_.ssc_UnSubclass(other);
  EXPECT_EQ(0, other.Send(kListed));
}

}  // namespace
}  // namespace marklet::plumbing
