#include "activex/server/registration.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "activex/com/guid.h"
#include "activex/com/module.h"
#include "activex/server/registration_data.h"

namespace marklet::activex {
namespace {

// A value under the classes root. An empty name is the key's default value.
struct Row {
  std::wstring key;
  std::wstring name;
  std::wstring value;
};

const std::wstring kSystem = sizeof(void*) == 8 ? L"win64" : L"win32";

struct Names {
  std::wstring class_key = L"CLSID\\" + Wide(library::kClass.guid);
  std::wstring page_key = L"CLSID\\" + Wide(library::kImagePageClass.guid);
  std::wstring prog_id = Wide(library::kName) + L"." + Wide(library::kClass.name);
  std::wstring library = Wide(library::kGuid);
  std::wstring version =
      std::to_wstring(library::kMajorVersion) + L"." + std::to_wstring(library::kMinorVersion);
  std::wstring library_key = L"TypeLib\\" + library;
  std::wstring version_key = library_key + L"\\" + version;
};

// Hosts look a library up by their own language first and by none at last.
const wchar_t* const kLocales[] = {L"0", L"409"};

std::wstring InterfaceKey(const Identity& identity) { return L"Interface\\" + Wide(identity.guid); }

constexpr wchar_t kControlCategory[] = L"{40FC6ED4-2438-11CF-A3DB-080036F12502}";
constexpr wchar_t kProgrammableCategory[] = L"{40FC6ED5-2438-11CF-A3DB-080036F12502}";
constexpr wchar_t kSafeForScriptingCategory[] = L"{7DD95801-9882-11CF-9FA9-00AA006C42C4}";
constexpr wchar_t kSafeForInitializingCategory[] = L"{7DD95802-9882-11CF-9FA9-00AA006C42C4}";

// Name, flags of the menu entry, attributes: as the system reads the verbs of a class.
std::wstring VerbText(const Verb& verb) {
  return Wide(verb.name) + L"," + std::to_wstring(verb.menu_flags) + L"," + std::to_wstring(verb.attributes);
}

void AddClassRows(const Names& names, const std::wstring& module, std::vector<Row>& rows) {
  const std::wstring& key = names.class_key;
  rows.insert(rows.end(), {
                              {key, L"", names.prog_id},
                              {key + L"\\Control", L"", L""},
                              {key + L"\\InprocServer32", L"", module},
                              {key + L"\\InprocServer32", L"ThreadingModel", Wide(kThreadingModel)},
                              {key + L"\\MiscStatus", L"", L"0"},
                              {key + L"\\MiscStatus\\1", L"", std::to_wstring(kMiscStatus)},
                              {key + L"\\ProgID", L"", names.prog_id},
                              {key + L"\\Programmable", L"", L""},
                              {key + L"\\ToolboxBitmap32", L"", module + L", 101"},
                              {key + L"\\TypeLib", L"", names.library},
                              {key + L"\\Version", L"", names.version},
                          });
  for (const wchar_t* category :
       {kControlCategory, kProgrammableCategory, kSafeForScriptingCategory, kSafeForInitializingCategory})
    rows.push_back({key + L"\\Implemented Categories\\" + category, L"", L""});
  for (const Verb& verb : kVerbs)
    rows.push_back({key + L"\\Verb\\" + std::to_wstring(verb.number), L"", VerbText(verb)});
  rows.push_back({names.prog_id, L"", names.prog_id});
  rows.push_back({names.prog_id + L"\\CLSID", L"", Wide(library::kClass.guid)});
}

// Designers create it by its class, which the control names: it needs no other name.
void AddPageRows(const Names& names, const std::wstring& module, std::vector<Row>& rows) {
  const std::wstring& key = names.page_key;
  rows.insert(rows.end(), {
                              {key, L"", Wide(library::kName) + L"." + Wide(library::kImagePageClass.name)},
                              {key + L"\\InprocServer32", L"", module},
                              {key + L"\\InprocServer32", L"ThreadingModel", Wide(kThreadingModel)},
                              {key + L"\\TypeLib", L"", names.library},
                              {key + L"\\Version", L"", names.version},
                          });
}

void AddLibraryRows(const Names& names, const std::wstring& module, std::vector<Row>& rows) {
  rows.push_back({names.version_key, L"", Wide(library::kHelp)});
  for (const wchar_t* locale : kLocales)
    rows.push_back({names.version_key + L"\\" + locale + L"\\" + kSystem, L"", module});
  rows.push_back({names.version_key + L"\\FLAGS", L"", std::to_wstring(LIBFLAG_FCONTROL)});
  rows.push_back({names.version_key + L"\\HELPDIR", L"", module.substr(0, module.find_last_of(L'\\'))});
  for (const auto& [identity, proxy] : kInterfaces) {
    const std::wstring key = InterfaceKey(identity);
    rows.push_back({key, L"", Wide(identity.name)});
    rows.push_back({key + L"\\ProxyStubClsid32", L"", Wide(proxy)});
    rows.push_back({key + L"\\TypeLib", L"", names.library});
    rows.push_back({key + L"\\TypeLib", L"Version", names.version});
  }
}

// A key that closes itself.
class Key {
 public:
  ~Key() {
    if (key_) ::RegCloseKey(key_);
  }
  Key() = default;
  Key(const Key&) = delete;
  Key& operator=(const Key&) = delete;
  HKEY* Out() { return &key_; }
  HKEY Get() const { return key_; }

 private:
  HKEY key_ = nullptr;
};

HRESULT OpenClassesRoot(RegistrationScope scope, Key& root) {
  const HKEY hive = scope == RegistrationScope::User ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
  return HRESULT_FROM_WIN32(static_cast<unsigned long>(::RegCreateKeyExW(
      hive, L"Software\\Classes", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, root.Out(), nullptr)));
}

HRESULT WriteRow(HKEY root, const Row& row) {
  Key key;
  LSTATUS status =
      ::RegCreateKeyExW(root, row.key.c_str(), 0, nullptr, 0, KEY_SET_VALUE, nullptr, key.Out(), nullptr);
  if (status == ERROR_SUCCESS) {
    const auto bytes = static_cast<DWORD>((row.value.size() + 1) * sizeof(wchar_t));
    status = ::RegSetValueExW(key.Get(), row.name.c_str(), 0, REG_SZ,
                              reinterpret_cast<const BYTE*>(row.value.c_str()), bytes);
  }
  return HRESULT_FROM_WIN32(static_cast<unsigned long>(status));
}

HRESULT DeleteTree(HKEY root, const std::wstring& key) {
  const LSTATUS status = ::RegDeleteTreeW(root, key.c_str());
  if (status == ERROR_FILE_NOT_FOUND) return S_OK;
  return HRESULT_FROM_WIN32(static_cast<unsigned long>(status));
}

bool HasSubkeys(HKEY root, const std::wstring& path) {
  Key key;
  DWORD count = 0;
  return ::RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, key.Out()) == ERROR_SUCCESS &&
         ::RegQueryInfoKeyW(key.Get(), nullptr, nullptr, nullptr, &count, nullptr, nullptr, nullptr, nullptr,
                            nullptr, nullptr, nullptr) == ERROR_SUCCESS &&
         count != 0;
}

// Both bitnesses share the type library's key, each with its own file below every locale.
bool OtherBitnessRemains(HKEY root, const Names& names) {
  return std::any_of(std::begin(kLocales), std::end(kLocales), [&](const wchar_t* locale) {
    return HasSubkeys(root, names.version_key + L"\\" + locale);
  });
}

}  // namespace

HRESULT RegisterServer(RegistrationScope scope) {
  Key root;
  HRESULT result = OpenClassesRoot(scope, root);
  if (FAILED(result)) return result;
  const Names names;
  const std::wstring module = ModulePath();
  std::vector<Row> rows;
  AddClassRows(names, module, rows);
  AddPageRows(names, module, rows);
  AddLibraryRows(names, module, rows);
  for (const Row& row : rows) {
    result = WriteRow(root.Get(), row);
    if (FAILED(result)) {
      UnregisterServer(scope);
      return SELFREG_E_CLASS;
    }
  }
  return S_OK;
}

HRESULT UnregisterServer(RegistrationScope scope) {
  Key root;
  HRESULT result = OpenClassesRoot(scope, root);
  if (FAILED(result)) return result;
  const Names names;
  const auto remove = [&](const std::wstring& key) {
    const HRESULT step = DeleteTree(root.Get(), key);
    if (FAILED(step)) result = step;
  };
  remove(names.class_key);
  remove(names.page_key);
  for (const RemoteInterface& row : kInterfaces) remove(InterfaceKey(row.identity));
  for (const wchar_t* locale : kLocales) remove(names.version_key + L"\\" + locale + L"\\" + kSystem);
  if (OtherBitnessRemains(root.Get(), names)) return result;
  // What leads to either bitness goes with the last one.
  remove(names.prog_id);
  remove(names.version_key);
  if (!HasSubkeys(root.Get(), names.library_key)) remove(names.library_key);
  return result;
}

}  // namespace marklet::activex
