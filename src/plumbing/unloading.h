// What lives on without the object that made it: a subclass thunk ends after its window's next message, maybe
// after everything else of this module. On 32-bit systems it needs nothing of the module, and these do
// nothing; on others its code is ours, so that the module must stay.
#pragma once

namespace marklet::plumbing {

// Whether the platform may still call into this module by way of a thunk. Ends first what only waits for its
// timer on this thread.
bool ThunksNeedModule();

// As a thread ends: its windows and timers go without a message.
void EndThunksOfThread();

// As the module is unloaded, asked or not: windows get back their procedures where ours are still in place.
void EndAllThunks();

}  // namespace marklet::plumbing
