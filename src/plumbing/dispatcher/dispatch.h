// What a thunk does with a call, in functions that serve the fields of its block. The machine code of 32-bit
// systems takes the same steps (machine_code/thunks.S).
#pragma once

#include "plumbing/thunk_block.h"

namespace marklet::plumbing {

// A method's code may have gone with its module.
bool CodeIsBad(Word is_bad_code_ptr, Word code) noexcept;

// What the design environment says of itself: 0 stopped, 1 running, 2 in a break. The address is 0 outside
// it, where everything runs.
Long AskMode(Word eb_mode) noexcept;

LRESULT RunSubclass(Word* block, ::HWND window, UINT message, WPARAM wparam, LPARAM lparam) noexcept;
void ReleaseSubclass(Word* block) noexcept;  // with its timer, which is this thread's
LRESULT RunHook(Word* block, int code, WPARAM wparam, LPARAM lparam) noexcept;
// `arguments` has as many words as the block's parameter count.
Word RunCallback(Word* block, const Word* arguments) noexcept;

}  // namespace marklet::plumbing
