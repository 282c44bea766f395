#include "plumbing/dispatcher/dispatch.h"

namespace marklet::plumbing {
namespace {

using namespace hook_block;
using CallNextHookExType = LRESULT(CALLBACK*)(Word hook, int, WPARAM, LPARAM);
using UnhookWindowsHookExType = BOOL(CALLBACK*)(Word hook);
using HookMethodType = void(CALLBACK*)(Word object, Long, Long*, Word*, Long, WPARAM, LPARAM, Long, Word*);

// One call of the hook on its way.
class Passage {
 public:
  Passage(Word* block, int code, WPARAM wparam, LPARAM lparam)
      : block_(block), code_(code), wparam_(wparam), lparam_(lparam) {}

  LRESULT Run() {
    ++Field(kCounter);
    if (MayCallMethod())
      CallAll();
    else
      CallNext();
    if (--Field(kCounter) == 0 && Field(kShutdown) != 0)
      PointerIn<UnhookWindowsHookExType>(Field(kUnhookWindowsHookEx))(Field(kHook));
    return result_;
  }

 private:
  Word& Field(std::size_t index) { return zData(index, block_); }

  bool MayCallMethod() {
    if (Field(kShutdown) != 0) return false;
    Long mode = 0;
    if (!CodeIsBad(Field(kIsBadCodePtr), Field(kMethod)) && (Field(kEbMode) == 0 || ObjectLives()))
      mode = AskMode(Field(kEbMode));
    if (mode == 0) Field(kShutdown) = 1;
    return mode == 1;
  }

  bool ObjectLives() {
    if (CodeIsBad(Field(kIsBadCodePtr), Field(kObject))) return false;
    return LifeAt(PointerIn<const void*>(Field(kObject))) == static_cast<std::uint32_t>(Field(kLife));
  }

  void CallAll() {
    if (Field(kBefore) != 0) CallMethod(-1);
    if (handled_ != 0) return;
    CallNext();
    if (Field(kAfter) == 0) return;
    // The code may have gone during the call.
    if (CodeIsBad(Field(kIsBadCodePtr), Field(kMethod)))
      Field(kShutdown) = 1;
    else
      CallMethod(0);
  }

  void CallMethod(Long before) {
    PointerIn<HookMethodType>(Field(kMethod))(Field(kObject), before, &handled_, &result_, code_, wparam_,
                                              lparam_, static_cast<Long>(Field(kHookType)), &Field(kUser));
  }

  void CallNext() {
    result_ = PointerIn<CallNextHookExType>(Field(kCallNextHookEx))(Field(kHook), code_, wparam_, lparam_);
  }

  Word* block_;
  int code_;
  WPARAM wparam_;
  LPARAM lparam_;
  Long handled_ = 0;
  Word result_ = 0;
};

}  // namespace

LRESULT RunHook(Word* block, int code, WPARAM wparam, LPARAM lparam) noexcept {
  return Passage(block, code, wparam, lparam).Run();
}

}  // namespace marklet::plumbing
