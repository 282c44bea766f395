// Registers a server, removes it, or creates what is registered: registrar SERVER COMMAND..., each command
// register, unregister, install-user, uninstall-user, create, or has HIVE KEY. Prints the result of each in a
// line.
#include <cstdio>
#include <string>

#include "platform/win32/sdk_ole.h"

namespace {

using Entry = HRESULT(WINAPI*)();
using InstallEntry = HRESULT(WINAPI*)(BOOL, PCWSTR);

// As a script host does it: by the identifier, whatever is registered.
HRESULT Create() {
  CLSID class_id;
  const HRESULT found = CLSIDFromProgID(L"zvsMarklet.Marklet", &class_id);
  if (FAILED(found)) return found;
  IDispatch* control = nullptr;
  const HRESULT created = CoCreateInstance(class_id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                                           reinterpret_cast<void**>(&control));
  if (control) control->Release();
  return created;
}

HRESULT Has(const std::wstring& hive, const wchar_t* path) {
  HKEY key = nullptr;
  const LSTATUS status =
      RegOpenKeyExW(hive == L"user" ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE,
                    (std::wstring(L"Software\\Classes\\") + path).c_str(), 0, KEY_READ, &key);
  if (key) RegCloseKey(key);
  return status == ERROR_SUCCESS ? HRESULT{0} : HRESULT{1};
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
  if (count < 3) return 2;
  CoInitialize(nullptr);
  const HMODULE server = LoadLibraryW(arguments[1]);
  if (!server) return 3;
  const auto entry = [server](const char* name) {
    return reinterpret_cast<void*>(GetProcAddress(server, name));
  };
  const auto install = reinterpret_cast<InstallEntry>(entry("DllInstall"));
  for (int i = 2; i < count; ++i) {
    const std::wstring command = arguments[i];
    HRESULT result = E_INVALIDARG;
    if (command == L"register") result = reinterpret_cast<Entry>(entry("DllRegisterServer"))();
    if (command == L"unregister") result = reinterpret_cast<Entry>(entry("DllUnregisterServer"))();
    if (command == L"install-user") result = install(TRUE, L"user");
    if (command == L"uninstall-user") result = install(FALSE, L"user");
    if (command == L"create") result = Create();
    if (command == L"has" && i + 2 < count) {
      result = Has(arguments[i + 1], arguments[i + 2]);
      i += 2;
    }
    std::printf("%08lX\n", static_cast<unsigned long>(result));
  }
  return 0;
}
