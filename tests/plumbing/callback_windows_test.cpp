// Other callbacks: any number of parameters, timers, and the two enumerations.
#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include "plumbing/plumbing_test.h"

namespace marklet::plumbing {
namespace {

using namespace callback_block;

// Its method number n, counted from the first, takes n words.
class Taker : public CallbackObject {
 public:
  Taker() : CallbackObject(kMethods) {}
  static Long OrdinalFor(int count) { return static_cast<Long>(std::size(kMethods)) - count; }
  std::vector<Word> taken;

 private:
  template <typename... Words>
  Word Take(Words... words) {
    taken = {words...};
    return 1000 + static_cast<Word>(sizeof...(words));
  }
  template <std::size_t>
  using WordAt = Word;
  template <std::size_t... place>
  static Method Taking(std::index_sequence<place...>) {
    return MethodOf<static_cast<Word (Taker::*)(WordAt<place>...)>(&Taker::Take<WordAt<place>...>)>();
  }
  template <std::size_t count>
  static Method Taking() {
    return Taking(std::make_index_sequence<count>{});
  }
  static inline const Method kMethods[] = {Taking<0>(), Taking<1>(), Taking<2>(), Taking<3>(),
                                           Taking<4>(), Taking<5>(), Taking<6>(), Taking<7>(),
                                           Taking<8>(), Taking<9>(), Taking<10>()};
};

// Calls an address as the platform would, with count words from 11 on.
template <std::size_t... place>
Word CallAs(Word address, std::index_sequence<place...>) {
  using Type = Word(CALLBACK*)(decltype(place + Word{})...);
  return PointerIn<Type>(address)(static_cast<Word>(11 + place)...);
}

class Callback : public ::testing::Test {
 protected:
  template <std::size_t count>
  void TakeWords() {
    const Word address =
        subclasser_.scb_SetCallbackAddr(count, Taker::OrdinalFor(count), &taker_, true, false);
    ASSERT_NE(0, address) << count;
    // A wrong number taken off the stack would show sooner or later in a loop.
    for (int i = 0; i < 100; ++i)
      ASSERT_EQ(static_cast<Word>(1000 + count), CallAs(address, std::make_index_sequence<count>{})) << count;
    std::vector<Word> expected;
    for (std::size_t i = 0; i < count; ++i) expected.push_back(static_cast<Word>(11 + i));
    EXPECT_EQ(expected, taker_.taken) << count;
  }

  Taker taker_;
  CSubClassAsm subclasser_;
};

TEST_F(Callback, TakesNoneToTenParameters) {
  TakeWords<0>();
  TakeWords<1>();
  TakeWords<2>();
  TakeWords<3>();
  TakeWords<4>();
  TakeWords<5>();
  TakeWords<6>();
  TakeWords<7>();
  TakeWords<8>();
  TakeWords<9>();
  TakeWords<10>();
}

TEST_F(Callback, HasOneAddressForAnObjectAndOrdinal) {
  const Word address = subclasser_.scb_SetCallbackAddr(2, Taker::OrdinalFor(2), &taker_, true, false);
  EXPECT_EQ(address, subclasser_.scb_SetCallbackAddr(9, Taker::OrdinalFor(2), &taker_, false, true));
  EXPECT_EQ(address, subclasser_.scb_SetCallbackAddr(-1, Taker::OrdinalFor(2), &taker_, false, true));
  EXPECT_NE(address, subclasser_.scb_SetCallbackAddr(3, Taker::OrdinalFor(3), &taker_, true, false));
  Taker other;
  EXPECT_NE(address, subclasser_.scb_SetCallbackAddr(2, Taker::OrdinalFor(2), &other, true, false));
}

TEST_F(Callback, RefusesANegativeCountAndAnUnknownMethod) {
  EXPECT_EQ(0, subclasser_.scb_SetCallbackAddr(-1, 1, &taker_, true, false));
  EXPECT_EQ(0, subclasser_.scb_SetCallbackAddr(2, 0, &taker_, true, false));
  EXPECT_EQ(0, subclasser_.scb_SetCallbackAddr(2, 12, &taker_, true, false));
  EXPECT_EQ(0, subclasser_.scb_SetCallbackAddr(100000, 1, &taker_, true, false));
}

TEST_F(Callback, ARefusedOneLeavesNoKey) {
  EXPECT_EQ(0, subclasser_.scb_SetCallbackAddr(100000, Taker::OrdinalFor(2), &taker_, true, false));
  EXPECT_NE(0, subclasser_.scb_SetCallbackAddr(2, Taker::OrdinalFor(2), &taker_, true, false));
}

// The memory with the machine code goes; a dispatcher's address stays, and leads to nothing.
TEST_F(Callback, IsReleasedByObjectAndOrdinal) {
  const int before = CountPrivateRegions();
  for (int i = 0; i < 1000; ++i) {
    ASSERT_NE(0, subclasser_.scb_SetCallbackAddr(2, Taker::OrdinalFor(2), &taker_, true, false)) << i;
    subclasser_.scb_ReleaseCallback(Taker::OrdinalFor(2), &taker_);
  }
  EXPECT_LT(CountPrivateRegions() - before, 100);
  subclasser_.scb_ReleaseCallback(Taker::OrdinalFor(2), &taker_);
}

TEST_F(Callback, AllAreReleasedTogether) {
  for (int i = 0; i < 1000; ++i) {
    ASSERT_NE(0, subclasser_.scb_SetCallbackAddr(1, Taker::OrdinalFor(1), &taker_, true, false)) << i;
    ASSERT_NE(0, subclasser_.scb_SetCallbackAddr(2, Taker::OrdinalFor(2), &taker_, true, false)) << i;
    subclasser_.scb_TerminateCallbacks();
  }
}

TEST_F(Callback, AllGoWithTheSubclasser) {
  const int before = CountPrivateRegions();
  for (int i = 0; i < 200; ++i) {
    CSubClassAsm subclasser;
    ASSERT_NE(0, subclasser.scb_SetCallbackAddr(1, Taker::OrdinalFor(1), &taker_, true, false)) << i;
  }
  EXPECT_LT(CountPrivateRegions() - before, 100);
}

// --- Timers
// -------------------------------------------------------------------------------------------------

class Clock : public CallbackObject {
 public:
  Clock() : CallbackObject(kMethods) {}
  int ticks = 0;

 private:
  Word OnTimer(::HWND, UINT message, UINT_PTR, DWORD) {
    EXPECT_EQ(UINT{WM_TIMER}, message);
    return ++ticks;
  }
  static inline const Method kMethods[] = {MethodOf<&Clock::OnTimer>()};
};

UINT_PTR StartTimer(Word address) { return ::SetTimer(nullptr, 0, 10, PointerIn<TIMERPROC>(address)); }

TEST_F(Callback, ServesATimer) {
  Clock clock;
  const UINT_PTR timer = StartTimer(subclasser_.scb_SetCallbackAddr(4, 1, &clock, true, true));
  for (int i = 0; i < 100 && clock.ticks < 3; ++i) PumpFor(10);
  EXPECT_GE(clock.ticks, 3);
  EXPECT_TRUE(::KillTimer(nullptr, timer));
}

// The method's address is in the block behind the callback's own on both kinds of system, but only the
// machine code's address tells where: so its object's memory goes instead.
class LoneClock : public CallbackObject {
 public:
  LoneClock() : CallbackObject(methods_) {
    code_ = ::VirtualAlloc(nullptr, kSize, MEM_COMMIT, PAGE_EXECUTE_READWRITE);
    // ret, which on 32-bit systems takes the object, four arguments and the result's address along.
    constexpr std::array<std::uint8_t, 3> kReturn = {kIs32Bit ? 0xC2 : 0xC3, 6 * 4, 0};
    std::copy(kReturn.begin(), kReturn.end(), static_cast<std::uint8_t*>(code_));
    methods_[0] = reinterpret_cast<Method>(code_);
  }
  void Vanish() { ::VirtualFree(code_, 0, MEM_RELEASE); }

 private:
  static constexpr SIZE_T kSize = 4096;
  Method methods_[1] = {};
  void* code_;
};

TEST_F(Callback, AVanishedMethodEndsItsTimer) {
  LoneClock clock;
  const UINT_PTR timer = StartTimer(subclasser_.scb_SetCallbackAddr(4, 1, &clock, true, true));
  PumpFor(50);
  clock.Vanish();
  PumpFor(50);
  EXPECT_FALSE(::KillTimer(nullptr, timer)) << "it was killed already";
}

TEST_F(Callback, AVanishedMethodThatServesNoTimerGivesZero) {
  LoneClock clock;
  const Word address = subclasser_.scb_SetCallbackAddr(4, 1, &clock, true, false);
  const UINT_PTR timer = StartTimer(address);
  clock.Vanish();
  EXPECT_EQ(0, CallAs(address, std::make_index_sequence<4>{}));
  PumpFor(50);
  EXPECT_TRUE(::KillTimer(nullptr, timer)) << "nobody else did";
}

// The block of an object's callback: memory of this process's own whose first words are the object and its
// method.
Word* BlockOf(const CallbackObject& object) {
  Word* block = nullptr;
  CountRegions([&](const MEMORY_BASIC_INFORMATION& region) {
    if (region.Protect != PAGE_READWRITE && region.Protect != PAGE_EXECUTE_READWRITE) return false;
    auto* const words = static_cast<Word*>(region.BaseAddress);
    const bool found = region.BaseAddress == region.AllocationBase &&
                       zData(kObject, words) == reinterpret_cast<Word>(&object) &&
                       zData(kMethod, words) == reinterpret_cast<Word>(object.Methods()[0]);
    if (found) block = words;
    return found;
  });
  return block;
}

Long mode_answer = 1;
Long CALLBACK AnswerMode() { return mode_answer; }

TEST_F(Callback, TheDesignEnvironmentsModeDecides) {
  Clock clock;
  const Word address = subclasser_.scb_SetCallbackAddr(4, 1, &clock, true, true);
  Word* const block = BlockOf(clock);
  ASSERT_TRUE(block);
  zData(kEbMode, block) = reinterpret_cast<Word>(&AnswerMode);
  const auto call = [&](Long mode, UINT_PTR timer) {
    mode_answer = mode;
    return PointerIn<Word(CALLBACK*)(::HWND, UINT, UINT_PTR, DWORD)>(address)(nullptr, WM_TIMER, timer, 0);
  };
  const UINT_PTR timer = ::SetTimer(nullptr, 0, 60000, nullptr);
  EXPECT_EQ(1, call(1, timer));
  EXPECT_EQ(0, call(2, timer)) << "nothing is called in a break";
  EXPECT_EQ(1, clock.ticks);
  EXPECT_EQ(2, call(1, timer));
  EXPECT_TRUE(::KillTimer(nullptr, timer)) << "and nothing ends";
  const UINT_PTR other = ::SetTimer(nullptr, 0, 60000, nullptr);
  EXPECT_EQ(0, call(0, other));
  EXPECT_EQ(2, clock.ticks);
  EXPECT_FALSE(::KillTimer(nullptr, other)) << "where it has stopped, the timer has too";
}

// --- Enumerations
// -------------------------------------------------------------------------------------------

struct Collector : SubclassEvents {
  void HookMessage(Long, Long, WPARAM, LPARAM) override {}
  void EnumCallback(std::u16string_view text) override { texts.emplace_back(text); }
  bool Has(std::u16string_view text) const {
    return std::find(texts.begin(), texts.end(), text) != texts.end();
  }
  std::vector<std::u16string> texts;
};

std::u16string HandleText(::HWND window) {
  char digits[32];
  const int length =
      std::snprintf(digits, sizeof digits, "&H%llX", reinterpret_cast<unsigned long long>(window));
  return {digits, digits + length};
}

TEST_F(Callback, EnumeratesTopLevelWindows) {
  Collector collector;
  subclasser_.SetEvents(&collector);
  const TestWindow first, second;
  EXPECT_TRUE(subclasser_.EnumWindowHandles(nullptr, 0));
  EXPECT_TRUE(collector.Has(HandleText(first)));
  EXPECT_TRUE(collector.Has(HandleText(second)));
}

TEST_F(Callback, EnumeratesFontFamilies) {
  Collector collector;
  subclasser_.SetEvents(&collector);
  const ::HDC context = ::GetDC(nullptr);
  EXPECT_TRUE(subclasser_.EnumFonts(context, nullptr, 0));
  ::ReleaseDC(nullptr, context);
  EXPECT_TRUE(collector.Has(u"Tahoma"));
  EXPECT_TRUE(std::none_of(collector.texts.begin(), collector.texts.end(), [](const std::u16string& name) {
    return name.empty() || name.find(u'\0') < name.size();
  }));
}

// Takes the first that comes.
class Stopper : public CallbackObject {
 public:
  Stopper() : CallbackObject(kMethods) {}
  int windows = 0, fonts = 0;

 private:
  Word OnFont(const LOGFONTA*, const TEXTMETRICA*, DWORD, LPARAM) { return ++fonts < 1; }
  Word OnWindow(::HWND, LPARAM) { return ++windows < 1; }
  static inline const Method kMethods[] = {MethodOf<&Stopper::OnFont>(), MethodOf<&Stopper::OnWindow>()};
};

TEST_F(Callback, EnumeratesToAnObjectsOwnMethod) {
  Stopper stopper;
  const TestWindow window;
  EXPECT_FALSE(subclasser_.EnumWindowHandles(&stopper, 1)) << "the method stopped it";
  EXPECT_EQ(1, stopper.windows);
  const ::HDC context = ::GetDC(nullptr);
  EXPECT_FALSE(subclasser_.EnumFonts(context, &stopper, 2));
  ::ReleaseDC(nullptr, context);
  EXPECT_EQ(1, stopper.fonts);
  EXPECT_FALSE(subclasser_.EnumWindowHandles(&stopper, 3)) << "no such method";
}

// The name is cut at its first NUL; a name as long as its field has none.
TEST_F(Callback, AFontsNameEndsAtItsFirstNulOrWithItsField) {
  Collector collector;
  subclasser_.SetEvents(&collector);
  const auto receive =
      PointerIn<FONTENUMPROCA>(subclasser_.scb_SetCallbackAddr(4, kFontMethod, nullptr, true, false));
  LOGFONTA font = {};
  std::fill(std::begin(font.lfFaceName), std::end(font.lfFaceName), 'x');
  EXPECT_EQ(1, receive(&font, nullptr, 0, 0));
  font.lfFaceName[3] = '\0';
  receive(&font, nullptr, 0, 0);
  EXPECT_EQ((std::vector<std::u16string>{std::u16string(32, u'x'), u"xxx"}), collector.texts);
}

}  // namespace
}  // namespace marklet::plumbing
