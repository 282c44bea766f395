#include "plumbing/dispatcher/bindings.h"
#include "plumbing/dispatcher/dispatch.h"

namespace marklet::plumbing {
namespace {

using namespace subclass_block;
using CallWindowProcType = LRESULT(CALLBACK*)(WNDPROC, ::HWND, UINT, WPARAM, LPARAM);
using SetWindowLongType = Word(CALLBACK*)(::HWND, int, Word);
using SubclassMethodType = void(CALLBACK*)(Word object, Long, Long*, Word*, ::HWND, UINT, WPARAM, LPARAM,
                                           Word*);
using DestroyWindowType = BOOL(CALLBACK*)(::HWND);

constexpr UINT kReleaseDelay = 100;  // milliseconds

bool IsListed(const Word* table, UINT message) {
  const Word count = table[0];
  if (count < 0) return true;
  for (Word slot = 1; slot <= count; ++slot)
    if (static_cast<UINT>(table[slot]) == message) return true;
  return false;
}

void KillPendingTimer(Word* block) {
  const Word timer = zData(kTimer, block);
  if (timer == 0) return;
  zData(kTimer, block) = 0;
  ForgetEnding(timer);
  ::KillTimer(nullptr, static_cast<UINT_PTR>(timer));
}

// A timer that was killed on its way here finds nothing.
void CALLBACK OnTimer(::HWND, UINT, UINT_PTR timer, DWORD) {
  if (Word* const block = FindEnding(static_cast<Word>(timer))) ReleaseSubclass(block);
}

void StartTimer(Word* block) {
  KillPendingTimer(block);
  const auto timer = static_cast<Word>(::SetTimer(nullptr, 0, kReleaseDelay, OnTimer));
  // Without a place in the list the timer would find nothing.
  if (timer == 0) return;
  if (!RememberEnding(timer, block)) {
    ::KillTimer(nullptr, static_cast<UINT_PTR>(timer));
    return;
  }
  zData(kTimer, block) = timer;
}

// One message on its way.
class Passage {
 public:
  Passage(Word* block, ::HWND window, UINT message, WPARAM wparam, LPARAM lparam)
      : block_(block), window_(window), message_(message), wparam_(wparam), lparam_(lparam) {}

  LRESULT Run() {
    ++Field(kCounter);
    if (MayCallMethod())
      CallAll();
    else
      CallOriginal();
    --Field(kCounter);
    if (message_ == WM_NCDESTROY) Field(kState) = kWindowGone;
    if (Field(kCounter) == 0 && Field(kState) != kRunning) End();
    return result_;
  }

 private:
  Word& Field(std::size_t index) { return zData(index, block_); }

  bool MayCallMethod() {
    if (Field(kState) != kRunning) return false;
    Long mode = 0;
    if (!CodeIsBad(Field(kIsBadCodePtr), Field(kMethod))) mode = AskMode(Field(kEbMode));
    if (mode == 0) Field(kState) = kMethodGone;
    return mode == 1;
  }

  void CallAll() {
    if (IsListed(TableAt(kBeforeTable), message_)) CallMethod(-1);
    if (handled_ != 0) return;
    CallOriginal();
    if (!IsListed(TableAt(kAfterTable), message_)) return;
    // The code may have gone during the call.
    if (CodeIsBad(Field(kIsBadCodePtr), Field(kMethod)))
      Field(kState) = kMethodGone;
    else
      CallMethod(0);
  }

  const Word* TableAt(std::size_t index) { return PointerIn<const Word*>(Field(index)); }

  void CallMethod(Long before) {
    PointerIn<SubclassMethodType>(Field(kMethod))(Field(kObject), before, &handled_, &result_, window_,
                                                  message_, wparam_, lparam_, &Field(kUser));
  }

  void CallOriginal() {
    KillPendingTimer(block_);
    result_ = PointerIn<CallWindowProcType>(Field(kCallWindowProc))(PointerIn<WNDPROC>(Field(kOriginal)),
                                                                    window_, message_, wparam_, lparam_);
  }

  // The last call out of the thunk. Whoever subclassed the window after us is cut off with us.
  void End() {
    const auto window = PointerIn<::HWND>(Field(kWindow));
    PointerIn<SetWindowLongType>(Field(kSetWindowLong))(window, GWLP_WNDPROC, Field(kOriginal));
    if (Field(kState) == kMethodGone && Field(kDestroyWindow) != 0)
      PointerIn<DestroyWindowType>(Field(kDestroyWindow))(window);
    StartTimer(block_);
  }

  Word* block_;
  ::HWND window_;
  UINT message_;
  WPARAM wparam_;
  LPARAM lparam_;
  Long handled_ = 0;
  Word result_ = 0;
};

}  // namespace

void ReleaseSubclass(Word* block) noexcept {
  KillPendingTimer(block);
  UnbindWindowProcedure(block);
  ReleaseBlock(block);
}

bool CodeIsBad(Word is_bad_code_ptr, Word code) noexcept {
  return PointerIn<BOOL(CALLBACK*)(Word)>(is_bad_code_ptr)(code) != 0;
}

Long AskMode(Word eb_mode) noexcept { return eb_mode == 0 ? 1 : PointerIn<Long(CALLBACK*)()>(eb_mode)(); }

LRESULT RunSubclass(Word* block, ::HWND window, UINT message, WPARAM wparam, LPARAM lparam) noexcept {
  return Passage(block, window, message, wparam, lparam).Run();
}

}  // namespace marklet::plumbing
