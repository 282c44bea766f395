// The server as a loaded module: where it is, and whether anything of it is in use.
#pragma once

#include <string>

#include "activex/com/com.h"

namespace marklet::activex {

::HINSTANCE ModuleInstance();
void SetModuleInstance(::HINSTANCE module);  // once, as it is loaded
std::wstring ModulePath();

// Objects alive and locks held, of the whole server.
void LockModule();
void UnlockModule();
bool ModuleIsUnused();

// Counts the object that it is a member of.
class ModuleReference {
 public:
  ModuleReference() { LockModule(); }
  ~ModuleReference() { UnlockModule(); }
  ModuleReference(const ModuleReference&) = delete;
  ModuleReference& operator=(const ModuleReference&) = delete;
};

}  // namespace marklet::activex
