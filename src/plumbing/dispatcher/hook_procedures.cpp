// The addresses of the dispatcher that serve as hook procedures, one for each hook in use.
#include "plumbing/dispatcher/bindings.h"
#include "plumbing/dispatcher/dispatch.h"
#include "plumbing/dispatcher/numbered.h"

namespace marklet::plumbing {
namespace {

template <std::size_t slot>
LRESULT CALLBACK HookProcedure(int code, WPARAM wparam, LPARAM lparam) noexcept {
  Word* const block = BlockOfHook(slot);
  return block ? RunHook(block, code, wparam, lparam) : ::CallNextHookEx(nullptr, code, wparam, lparam);
}

constexpr auto kProcedures =
    Numbered<HOOKPROC, kHooks>([](auto slot) -> HOOKPROC { return &HookProcedure<decltype(slot)::value>; });

}  // namespace

Word BindHookProcedure(Word* block) {
  const std::size_t slot = BindToHook(block);
  return slot < kHooks ? reinterpret_cast<Word>(kProcedures[slot]) : 0;
}

}  // namespace marklet::plumbing
