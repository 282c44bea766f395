#include <utility>

#include "plumbing/dispatcher/bindings.h"
#include "plumbing/dispatcher/dispatch.h"
#include "plumbing/dispatcher/numbered.h"

namespace marklet::plumbing {
namespace {

using namespace callback_block;
using KillTimerType = BOOL(CALLBACK*)(Word window, Word timer);

// Calls a method with as many words as there are places.
template <std::size_t... place>
void CallWith(Word method, Word object, const Word* arguments, Word* result, std::index_sequence<place...>) {
  using Type = void(CALLBACK*)(Word, decltype(arguments[place] + 0)..., Word*);
  PointerIn<Type>(method)(object, arguments[place]..., result);
}

using Caller = void (*)(Word method, Word object, const Word* arguments, Word* result);
template <std::size_t count>
void CallWithCount(Word method, Word object, const Word* arguments, Word* result) {
  CallWith(method, object, arguments, result, std::make_index_sequence<count>{});
}

constexpr auto kCallers = Numbered<Caller, kMostParameters + 1>(
    [](auto count) -> Caller { return &CallWithCount<decltype(count)::value>; });

// Its callback has the window first and the timer third.
void KillTimerOf(Word* block, const Word* arguments) {
  if (const Word kill_timer = zData(kKillTimer, block))
    PointerIn<KillTimerType>(kill_timer)(arguments[0], arguments[2]);
}

}  // namespace

Word RunCallback(Word* block, const Word* arguments) noexcept {
  constexpr Long running = 1, on_break = 2;
  Long mode = 0;
  if (!CodeIsBad(zData(kIsBadCodePtr, block), zData(kMethod, block))) mode = AskMode(zData(kEbMode, block));
  Word result = 0;
  if (mode == running)
    kCallers[static_cast<std::size_t>(zData(kParameterCount, block))](
        zData(kMethod, block), zData(kObject, block), arguments, &result);
  else if (mode != on_break)
    KillTimerOf(block, arguments);
  return result;
}

}  // namespace marklet::plumbing
