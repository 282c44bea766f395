// The ends of the per-thread values (`thread_local`) of this module. The C++ library's own way to them locks
// the module until every thread that used it has ended, and then lets it go while its code still runs; so the
// function that the compiler's code registers them with is replaced here. A thread's values end with the
// thread. What is left when the module is unloaded ends then, that of threads that go on included.
#include <cxxabi.h>

#include <cstdlib>

#include "activex/com/com.h"

namespace marklet::activex {
namespace {

// In 32 bits destructors have the calling convention of members, which the compiler doesn't expect here.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wattributes"
using Destructor = void(_GLIBCXX_CDTOR_CALLABI*)(void*);
#pragma GCC diagnostic pop

struct Ending {
  DWORD thread;
  Destructor destroy;
  void* value;
  Ending* next;
};

// Plain values all: this runs before the module's own are made and after they have gone.
SRWLOCK lock = SRWLOCK_INIT;
Ending* newest = nullptr;
constexpr DWORD kAnyThread = 0;

bool Add(Destructor destroy, void* value) {
  auto* const ending = static_cast<Ending*>(std::malloc(sizeof(Ending)));
  if (!ending) return false;
  ::AcquireSRWLockExclusive(&lock);
  *ending = {::GetCurrentThreadId(), destroy, value, newest};
  newest = ending;
  ::ReleaseSRWLockExclusive(&lock);
  return true;
}

// The newest one of the thread, out of the list; null when it has none.
Ending* Take(DWORD thread) {
  ::AcquireSRWLockExclusive(&lock);
  Ending** place = &newest;
  while (*place && thread != kAnyThread && (*place)->thread != thread) place = &(*place)->next;
  Ending* const taken = *place;
  if (taken) *place = taken->next;
  ::ReleaseSRWLockExclusive(&lock);
  return taken;
}

// The lock isn't held inside a destructor.
void Run(DWORD thread) {
  while (Ending* const ending = Take(thread)) {
    ending->destroy(ending->value);
    std::free(ending);
  }
}

// `process_ends`: every other thread has been stopped wherever it was, and the system takes all back.
void WINAPI OnNotification(void*, DWORD reason, void* process_ends) {
  if (reason == DLL_THREAD_DETACH) Run(::GetCurrentThreadId());
  if (reason == DLL_PROCESS_DETACH && !process_ends) Run(kAnyThread);
}

}  // namespace
}  // namespace marklet::activex

// Among the loader's callbacks of the module this one stands before the thread library's, which frees the
// memory that the values are in.
extern "C" {
extern const PIMAGE_TLS_CALLBACK marklet_thread_values;
[[gnu::section(".CRT$XLB"), gnu::used]] const PIMAGE_TLS_CALLBACK marklet_thread_values =
    marklet::activex::OnNotification;
}

int abi::__cxa_thread_atexit(marklet::activex::Destructor destroy, void* value, void*) noexcept {
  return marklet::activex::Add(destroy, value) ? 0 : -1;
}
