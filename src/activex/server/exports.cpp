// What the server exports, and its start and end.
#include "activex/com/boundary.h"
#include "activex/com/module.h"
#include "activex/control/window.h"
#include "activex/server/class_factory.h"
#include "activex/server/registration.h"
#include "plumbing/unloading.h"

using namespace marklet::activex;

extern "C" {

STDAPI DllGetClassObject(REFCLSID class_id, REFIID iid, void** object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  return Guarded([&] { return CreateClassFactory(class_id, iid, object); });
}

// A window that was subclassed may outlive the control that did it.
STDAPI DllCanUnloadNow() {
  const bool unused = ModuleIsUnused() && !marklet::plumbing::ThunksNeedModule();
  return unused ? marklet::activex::S_OK : marklet::activex::S_FALSE;
}

STDAPI DllRegisterServer() {
  return Guarded([] { return RegisterServer(RegistrationScope::Machine); });
}

STDAPI DllUnregisterServer() {
  return Guarded([] { return UnregisterServer(RegistrationScope::Machine); });
}

// "user" registers for this user alone, who needs no rights for it; anything else for the machine.
STDAPI DllInstall(BOOL install, PCWSTR command_line) {
  return Guarded([&] {
    const bool user = command_line && ::lstrcmpiW(command_line, L"user") == 0;
    const RegistrationScope scope = user ? RegistrationScope::User : RegistrationScope::Machine;
    return install ? RegisterServer(scope) : UnregisterServer(scope);
  });
}

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, void* process_ends) {
  // Thread notifications stay on: the per-thread values end with them.
  if (reason == DLL_PROCESS_ATTACH) SetModuleInstance(instance);
  if (reason == DLL_THREAD_DETACH) marklet::plumbing::EndThunksOfThread();
  if (reason == DLL_PROCESS_DETACH && !process_ends) {
    marklet::plumbing::EndAllThunks();
    // The system keeps the classes of modules that have gone.
    UnregisterWindowClass();
  }
  return TRUE;
}

}  // extern "C"
