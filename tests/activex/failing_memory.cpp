#include "activex/failing_memory.h"

#include <cstdlib>

namespace ocx_test {
namespace {

int count = 0, fail_at = 0;
bool fail_on = false, failed = false;

bool Fails() {
  ++count;
  const bool fails =
      fail_at > 0 && (count == fail_at || (fail_on && count > fail_at && (count - fail_at) % 2 == 0));
  failed = failed || fails;
  return fails;
}

void* Malloc(std::size_t size) { return Fails() ? nullptr : std::malloc(size); }
void* Calloc(std::size_t items, std::size_t size) { return Fails() ? nullptr : std::calloc(items, size); }
void* Realloc(void* block, std::size_t size) { return Fails() ? nullptr : std::realloc(block, size); }
LPVOID WINAPI TaskAlloc(SIZE_T size) { return Fails() ? nullptr : CoTaskMemAlloc(size); }
BSTR WINAPI StringLen(const OLECHAR* text, UINT length) {
  return Fails() ? nullptr : SysAllocStringLen(text, length);
}

}  // namespace

FailingMemory::FailingMemory()
    : patch_(Server::Get().Module(), {{"malloc", Address(Malloc)},
                                      {"calloc", Address(Calloc)},
                                      {"realloc", Address(Realloc)},
                                      {"CoTaskMemAlloc", Address(TaskAlloc)},
                                      {"SysAllocStringLen", Address(StringLen)}}) {
  EXPECT_GE(patch_.Count(), 4u);
  Stop();
}

FailingMemory::~FailingMemory() { Stop(); }

void FailingMemory::FailAt(int number, bool and_on) {
  count = 0;
  failed = false;
  fail_at = number;
  fail_on = and_on;
}

void FailingMemory::Stop() { fail_at = 0; }

bool FailingMemory::HasFailed() const { return failed; }

}  // namespace ocx_test
