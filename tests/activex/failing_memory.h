// Lets the server run out of memory at a chosen moment.
#pragma once

#include "activex/import_patch.h"

namespace ocx_test {

// While it lives, the server's own calls of the system's allocators are counted and can be made to fail. One
// at a time, on one thread.
class FailingMemory {
 public:
  FailingMemory();
  ~FailingMemory();
  FailingMemory(const FailingMemory&) = delete;
  FailingMemory& operator=(const FailingMemory&) = delete;

  // From now on the allocation with this number, counted from 1, fails, and all after it too when
  // `and_on`.
  void FailAt(int number, bool and_on);
  void Stop();
  // Whether an allocation has failed since FailAt.
  bool HasFailed() const;

 private:
  ImportPatch patch_;
};

}  // namespace ocx_test
