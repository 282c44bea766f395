#include "plumbing/csubclass_asm.h"
#include "plumbing/entry_points.h"

namespace marklet::plumbing {

void CSubClassAsm::scb_ReleaseCallback(Long nOrdinal, CallbackObject* oCallback) {
  const std::string key = ThunkKey(oCallback ? oCallback : this, nOrdinal);
  if (const Thunk* const thunk = callbacks_.Find(key)) {
    UnbindCallback(thunk->block);
    ReleaseBlock(thunk->block);
  }
  callbacks_.Remove(key);
}

void CSubClassAsm::scb_TerminateCallbacks() {
  for (const Thunk& thunk : callbacks_.FromTheLast()) {
    UnbindCallback(thunk.block);
    ReleaseBlock(thunk.block);
  }
  callbacks_.Clear();
}

}  // namespace marklet::plumbing
