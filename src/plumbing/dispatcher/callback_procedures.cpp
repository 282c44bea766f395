// The addresses of the dispatcher that serve as other callbacks, one for each in use.
#include <cstdarg>

#include "plumbing/dispatcher/bindings.h"
#include "plumbing/dispatcher/dispatch.h"
#include "plumbing/dispatcher/numbered.h"

namespace marklet::plumbing {
namespace {

// No code stands here on 64-bit systems; the address that was handed out is kept instead.
constexpr std::size_t kAddress = 5;

// Callers pass as many words as they agreed on. The convention of 64-bit Windows lets one function take any
// number of them: all have their place on the stack, and nobody but the caller cleans it up.
template <std::size_t slot>
Word CALLBACK CallbackProcedure(Word first, ...) noexcept {
  Word* const block = BlockOfCallback(slot);
  if (!block) return 0;
  Word arguments[kMostParameters] = {first};
  va_list rest;
  va_start(rest, first);
  for (Word i = 1; i < zData(callback_block::kParameterCount, block); ++i) arguments[i] = va_arg(rest, Word);
  va_end(rest);
  return RunCallback(block, arguments);
}

using Procedure = Word(CALLBACK*)(Word, ...);
constexpr auto kProcedures = Numbered<Procedure, kCallbacks>(
    [](auto slot) -> Procedure { return &CallbackProcedure<decltype(slot)::value>; });

}  // namespace

Word BindCallback(Word* block) {
  if (zData(callback_block::kParameterCount, block) > static_cast<Word>(kMostParameters)) return 0;
  const std::size_t slot = BindToCallback(block);
  if (slot == kCallbacks) return 0;
  zData(callback_block::kBlock, block) = reinterpret_cast<Word>(block);
  return zData(kAddress, block) = reinterpret_cast<Word>(kProcedures[slot]);
}

Word CallbackAddress(Word* block) { return zData(kAddress, block); }

}  // namespace marklet::plumbing
