// What the server exports.
#include "activex/boundary.h"
#include "activex/class_factory.h"
#include "activex/guid.h"
#include "activex/module.h"
#include "activex/registration.h"

using namespace marklet::activex;

extern "C" {

STDAPI DllGetClassObject(REFCLSID class_id, REFIID iid, void** object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  return Guarded([&]() -> HRESULT {
    if (class_id != kClassGuid) return CLASS_E_CLASSNOTAVAILABLE;
    return CreateClassFactory(iid, object);
  });
}

STDAPI DllCanUnloadNow() { return ModuleIsUnused() ? marklet::activex::S_OK : marklet::activex::S_FALSE; }

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

}  // extern "C"
