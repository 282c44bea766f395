// The addresses of the dispatcher that serve as hook procedures, one for each hook in use.
#include <array>
#include <utility>

#include "plumbing/dispatcher/bindings.h"
#include "plumbing/dispatcher/dispatch.h"

namespace marklet::plumbing {
namespace {

template <std::size_t slot>
LRESULT CALLBACK HookProcedure(int code, WPARAM wparam, LPARAM lparam) noexcept {
  Word* const block = BlockOfHook(slot);
  return block ? RunHook(block, code, wparam, lparam) : ::CallNextHookEx(nullptr, code, wparam, lparam);
}

template <std::size_t... slot>
constexpr std::array<HOOKPROC, sizeof...(slot)> ProceduresOf(std::index_sequence<slot...>) {
  return {&HookProcedure<slot>...};
}
constexpr auto kProcedures = ProceduresOf(std::make_index_sequence<kHooks>{});

}  // namespace

Word BindHookProcedure(Word* block) {
  const std::size_t slot = BindToHook(block);
  return slot < kHooks ? reinterpret_cast<Word>(kProcedures[slot]) : 0;
}

}  // namespace marklet::plumbing
