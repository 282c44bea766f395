// The addresses that the platform calls. On 32-bit systems each is machine code inside its block
// (machine_code/); on others it is one of many equal functions of ours that finds the block (dispatcher/).
#pragma once

#include "plumbing/thunk_block.h"

namespace marklet::plumbing {

// What the memory of a block must be allowed to do.
DWORD BlockProtection();

// The address for the use of the block, whose fields name the window, or the parameter count, by then. 0 when
// there is none left (so many live at once that this is a fault somewhere else), or for more parameters than
// can be passed on.
Word BindWindowProcedure(Word* block);
Word BindHookProcedure(Word* block);
Word BindCallback(Word* block);

// The address that BindCallback gave.
Word CallbackAddress(Word* block);

// Before a block is released from outside: the platform knows the address no more.
void UnbindWindowProcedure(Word* block);
void UnbindHookProcedure(Word* block);
void UnbindCallback(Word* block);

}  // namespace marklet::plumbing
