#include "activex/com/module.h"

#include <atomic>

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

void SetModuleInstance(::HINSTANCE module) { instance = module; }

void LockModule() { ++references; }
void UnlockModule() { --references; }
bool ModuleIsUnused() { return references == 0; }

}  // namespace marklet::activex
