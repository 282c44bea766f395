#include "plumbing/csubclass_asm.h"
#include "plumbing/entry_points.h"

namespace marklet::plumbing {
namespace {

using namespace hook_block;

void ResolveFunctions(Word* block, bool unicode) {
  zData(kIsBadCodePtr, block) = zFnAddr("kernel32", "IsBadCodePtr", unicode);
  zData(kCallNextHookEx, block) = zFnAddr("user32", "CallNextHookEx", unicode);
  zData(kUnhookWindowsHookEx, block) = zFnAddr("user32", "UnhookWindowsHookEx", unicode);
}

bool Install(Word* block, Long type, bool unicode, DWORD thread) {
  const auto procedure = PointerIn<HOOKPROC>(BindHookProcedure(block));
  if (!procedure) return false;
  const auto set_hook = unicode ? ::SetWindowsHookExW : ::SetWindowsHookExA;
  const ::HHOOK hook = set_hook(type, procedure, ::GetModuleHandleW(nullptr), thread);
  zData(kHook, block) = reinterpret_cast<Word>(hook);
  return hook != nullptr;
}

void Release(Word* block) {
  UnbindHookProcedure(block);
  ReleaseBlock(block);
}

}  // namespace

bool CSubClassAsm::shk_SetHook(Long HookType, bool bGlobal, Long When, Word lParamUser, Long nOrdinal,
                               CallbackObject* oCallback, bool /*bIdeSafety*/, bool& bUnicode) {
  CallbackObject& object = oCallback ? *oCallback : *this;
  const Word method = zAddressOf(object, nOrdinal);
  if (method == 0) return false;
  Word* const block = hooks_.NewBlock([&] { return ThunkKey(HookType); }, kWords, object);
  if (!block) return false;
  zData(kHookType, block) = HookType;
  zData(kObject, block) = reinterpret_cast<Word>(&object);
  zData(kMethod, block) = method;
  zData(kUser, block) = lParamUser;
  zData(kLife, block) = static_cast<Word>(LifeAt(&object));
  if (bUnicode) bUnicode = ::IsWindowUnicode(::GetDesktopWindow()) != 0;
  ResolveFunctions(block, bUnicode);
  zData(kBefore, block) = (When & kWhenBefore) != 0 ? 1 : 0;
  zData(kAfter, block) = (When & kWhenAfter) != 0 ? 1 : 0;
  if (Install(block, HookType, bUnicode, bGlobal ? 0 : ::GetCurrentThreadId())) return true;
  Release(block);
  hooks_.Remove(ThunkKey(HookType));
  return false;
}

bool CSubClassAsm::shk_UnHook(Long HookType) {
  const Thunk* const thunk = hooks_.Find(ThunkKey(HookType));
  if (!thunk) return false;
  Word* const block = thunk->block;
  if (zData(kShutdown, block) == 0) ::UnhookWindowsHookEx(PointerIn<::HHOOK>(zData(kHook, block)));
  if (zData(kCounter, block) != 0) {
    zData(kShutdown, block) = 1;
    zData(kBefore, block) = 0;
    zData(kAfter, block) = 0;
    return true;
  }
  Release(block);
  hooks_.Remove(ThunkKey(HookType));
  return true;
}

void CSubClassAsm::shk_TerminateHooks() {
  for (const Thunk& thunk : hooks_.FromTheLast())
    if (hooks_.Find(thunk.key)) shk_UnHook(static_cast<Long>(zData(kHookType, thunk.block)));
}

}  // namespace marklet::plumbing
