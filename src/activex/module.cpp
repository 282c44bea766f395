#include "activex/module.h"

#include <atomic>

#include "activex/window.h"

namespace marklet::activex {
namespace {

::HINSTANCE instance = nullptr;
// Each thread that creates controls has its own objects; only this count is everybody's.
std::atomic<long> references = 0;

}  // namespace

::HINSTANCE ModuleInstance() { return instance; }

std::wstring ModulePath() {
  std::wstring path(MAX_PATH, L'\0');
  while (true) {
    const DWORD length = ::GetModuleFileNameW(instance, path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) return path.substr(0, length);
    path.resize(path.size() * 2);
  }
}

void LockModule() { ++references; }
void UnlockModule() { --references; }
bool ModuleIsUnused() { return references == 0; }

}  // namespace marklet::activex

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, void* process_ends) {
  // Thread notifications stay on: the per-thread values end with them.
  if (reason == DLL_PROCESS_ATTACH) marklet::activex::instance = instance;
  // The system keeps the classes of modules that have gone.
  if (reason == DLL_PROCESS_DETACH && !process_ends) marklet::activex::UnregisterWindowClass();
  return TRUE;
}
