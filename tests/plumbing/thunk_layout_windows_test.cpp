// The machine code's blocks of 32-bit systems, word by word. Debuggers and other tools know these places.
#include "plumbing/plumbing_test.h"

#ifndef _WIN64

#include <cstring>

namespace marklet::plumbing {
namespace {

constexpr UINT kListed = WM_USER + 1;

Word FunctionAt(const char* module, const char* name) {
  return reinterpret_cast<Word>(::GetProcAddress(::GetModuleHandleA(module), name));
}

// The 32 bits at a byte of a block.
Word At(const Word* block, std::size_t byte) {
  Word word = 0;
  std::memcpy(&word, reinterpret_cast<const char*>(block) + byte, sizeof word);
  return word;
}

Word AddressOf(const Word* block, std::size_t byte = 0) {
  return reinterpret_cast<Word>(block) + static_cast<Word>(byte);
}

TEST(ThunkLayout, OfASubclassBlock) {
  TestWindow window;
  const Word original = ::GetWindowLongW(window, GWL_WNDPROC);
  Watcher watcher;
  CSubClassAsm subclasser;
  bool unicode = true;
  ASSERT_TRUE(subclasser.ssc_Subclass(window, 77, kWatcherMessages, &watcher, true, unicode, true));
  subclasser.ssc_AddMsg(window, kWhenBefore, {Long{20}, Long{kListed}});
  subclasser.ssc_AddMsg(window, kWhenAfter, {Long{675}, Long{794}, Long{791}});
  watcher.action = [](SubclassCall& call) { call.bHandled = 1; };
  window.Send(kListed);
  const Word* const block = watcher.block;

  MEMORY_BASIC_INFORMATION memory = {};
  ::VirtualQuery(block, &memory, sizeof memory);
  EXPECT_EQ(block, memory.AllocationBase);
  EXPECT_EQ(DWORD{PAGE_EXECUTE_READWRITE}, memory.AllocationProtect);

  EXPECT_EQ(0, At(block, 0)) << "nesting counter";
  EXPECT_EQ(0, At(block, 4)) << "shutdown state";
  EXPECT_EQ(reinterpret_cast<Word>(static_cast<::HWND>(window)), At(block, 8));
  EXPECT_EQ(0, At(block, 12)) << "EbMode";
  EXPECT_EQ(FunctionAt("user32", "CallWindowProcW"), At(block, 16));
  EXPECT_EQ(FunctionAt("user32", "SetWindowLongW"), At(block, 20));
  EXPECT_EQ(FunctionAt("kernel32", "VirtualFree"), At(block, 24));
  EXPECT_EQ(FunctionAt("kernel32", "IsBadCodePtr"), At(block, 28));
  EXPECT_EQ(reinterpret_cast<Word>(static_cast<CallbackObject*>(&watcher)), At(block, 32));
  EXPECT_EQ(original, At(block, 36));
  EXPECT_EQ(reinterpret_cast<Word>(watcher.Methods().back()), At(block, 40));
  EXPECT_EQ(AddressOf(block, 432), At(block, 44)) << "Before table";
  EXPECT_EQ(AddressOf(block, 564), At(block, 48)) << "After table";
  EXPECT_EQ(77, At(block, 52)) << "lParamUser";
  EXPECT_EQ(FunctionAt("user32", "DestroyWindow"), At(block, 56));
  EXPECT_EQ(FunctionAt("user32", "SetTimer"), At(block, 60));
  EXPECT_EQ(FunctionAt("user32", "KillTimer"), At(block, 64));
  EXPECT_EQ(0, At(block, 68)) << "timer identifier";
  EXPECT_EQ(AddressOf(block), At(block, 80)) << "patched at index 20";
  EXPECT_EQ(AddressOf(block), At(block, 104)) << "patched at index 26";
  EXPECT_EQ(AddressOf(block, 96), ::GetWindowLongW(window, GWL_WNDPROC)) << "window procedure entry";
  EXPECT_EQ(0xFFFF, At(block, 428)) << "bUnicode, 16 bits";
  EXPECT_EQ(2, At(block, 432));
  EXPECT_EQ(20, At(block, 436));
  EXPECT_EQ(static_cast<Word>(kListed), At(block, 440));
  EXPECT_EQ(0, At(block, 444));
  EXPECT_EQ(3, At(block, 564));
  EXPECT_EQ(675, At(block, 568));
  EXPECT_EQ(794, At(block, 572));
  EXPECT_EQ(791, At(block, 576));
  EXPECT_EQ(0, At(block, 580));
  EXPECT_EQ(0, At(block, 692)) << "the last word";
}

TEST(ThunkLayout, OfASubclassBlockWithNarrowForms) {
  TestWindow window;
  Watcher watcher;
  CSubClassAsm subclasser;
  bool unicode = false;
  ASSERT_TRUE(subclasser.ssc_Subclass(window, 0, kWatcherMessages, &watcher, true, unicode, false));
  subclasser.ssc_AddMsg(window, kWhenBefore, {Long{kListed}});
  window.Send(kListed);
  const Word* const block = watcher.block;
  EXPECT_EQ(FunctionAt("user32", "CallWindowProcA"), At(block, 16));
  EXPECT_EQ(FunctionAt("user32", "SetWindowLongA"), At(block, 20));
  EXPECT_EQ(0, At(block, 56)) << "DestroyWindow is for windows of the API alone";
  EXPECT_EQ(0, At(block, 428)) << "bUnicode";
}

TEST(ThunkLayout, OfAHookBlock) {
  Watcher watcher;
  CSubClassAsm subclasser;
  bool unicode = true;
  ASSERT_TRUE(
      subclasser.shk_SetHook(WH_CALLWNDPROC, false, kWhenBefore, 55, kWatcherHooks, &watcher, true, unicode));
  TestWindow window;
  const Word* const block = watcher.block;
  ASSERT_NE(nullptr, block);
  EXPECT_EQ(0, At(block, 0)) << "nesting counter";
  EXPECT_EQ(0, At(block, 4)) << "shutdown flag";
  EXPECT_EQ(WH_CALLWNDPROC, At(block, 8));
  EXPECT_EQ(0, At(block, 12)) << "EbMode";
  EXPECT_EQ(FunctionAt("user32", "CallNextHookEx"), At(block, 16));
  EXPECT_EQ(FunctionAt("user32", "UnhookWindowsHookEx"), At(block, 20));
  EXPECT_EQ(reinterpret_cast<const Word*>(static_cast<CallbackObject*>(&watcher))[2], At(block, 24));
  EXPECT_EQ(FunctionAt("kernel32", "IsBadCodePtr"), At(block, 28));
  EXPECT_EQ(reinterpret_cast<Word>(static_cast<CallbackObject*>(&watcher)), At(block, 32));
  EXPECT_NE(0, At(block, 36)) << "hook handle";
  EXPECT_EQ(reinterpret_cast<Word>(watcher.Methods()[1]), At(block, 40));
  EXPECT_EQ(1, At(block, 44)) << "Before flag";
  EXPECT_EQ(0, At(block, 48)) << "After flag";
  EXPECT_EQ(55, At(block, 52)) << "lParamUser";
  EXPECT_EQ(AddressOf(block), At(block, 64)) << "patched at index 16";
}

class Summer : public CallbackObject {
 public:
  Summer() : CallbackObject(kMethods) {}

 private:
  Word Sum(Word a, Word b, Word c) { return a + b + c; }
  static inline const Method kMethods[] = {MethodOf<&Summer::Sum>()};
};

TEST(ThunkLayout, OfACallbackBlock) {
  Summer summer;
  CSubClassAsm subclasser;
  for (const bool timer : {false, true}) {
    const Word address = subclasser.scb_SetCallbackAddr(3, 1, &summer, true, timer);
    ASSERT_NE(0, address);
    const Word* const block = PointerIn<const Word*>(address - 20);
    MEMORY_BASIC_INFORMATION memory = {};
    ::VirtualQuery(block, &memory, sizeof memory);
    EXPECT_EQ(block, memory.AllocationBase);
    EXPECT_EQ(reinterpret_cast<Word>(static_cast<CallbackObject*>(&summer)), At(block, 0));
    EXPECT_EQ(reinterpret_cast<Word>(summer.Methods()[0]), At(block, 4));
    EXPECT_EQ(0, At(block, 8)) << "EbMode";
    EXPECT_EQ(FunctionAt("kernel32", "IsBadCodePtr"), At(block, 12));
    EXPECT_EQ(timer ? FunctionAt("user32", "KillTimer") : 0, At(block, 16));
    EXPECT_EQ(AddressOf(block), At(block, 24)) << "the block's own address";
    EXPECT_EQ(3, At(block, 72)) << "parameter count";
    EXPECT_EQ(12, At(block, 98) & 0xFFFF) << "what the return takes off the stack";
    EXPECT_EQ(0xC2, At(block, 97) & 0xFF);
    EXPECT_EQ(1, At(block, 144)) << "ordinal";
    subclasser.scb_ReleaseCallback(1, &summer);
  }
}

}  // namespace
}  // namespace marklet::plumbing

#endif  // _WIN64
