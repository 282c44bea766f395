#include "platform/registry.h"

#include <string>

#include "platform/win32/sdk.h"

namespace marklet {
namespace {

::HKEY Native(RegistryKeyHandle* key) { return reinterpret_cast<::HKEY>(key); }

// Hives are numbers that count as handles, widened with their sign.
::HKEY HiveOf(std::uint32_t hive) {
  // NOLINTNEXTLINE(performance-no-int-to-ptr): the platform has it so
  return reinterpret_cast<::HKEY>(static_cast<LONG_PTR>(static_cast<LONG>(hive)));
}

}  // namespace

bool RegOpenKeyExA(std::uint32_t hive, std::string_view subkey, RegistryKeyHandle*& key) {
  ::HKEY opened = nullptr;
  const bool is_open = ::RegOpenKeyExA(HiveOf(hive), std::string(subkey).c_str(), 0, KEY_QUERY_VALUE,
                                       &opened) == ERROR_SUCCESS;
  key = is_open ? reinterpret_cast<RegistryKeyHandle*>(opened) : nullptr;
  return is_open;
}

bool RegQueryValueExA(RegistryKeyHandle* key, std::string_view name, char* buffer, std::uint32_t& size) {
  if (!key) return false;
  DWORD bytes = size;
  const LSTATUS status = ::RegQueryValueExA(Native(key), std::string(name).c_str(), nullptr, nullptr,
                                            reinterpret_cast<BYTE*>(buffer), &bytes);
  if (status == ERROR_SUCCESS || status == ERROR_MORE_DATA) size = bytes;
  return status == ERROR_SUCCESS;
}

bool RegCloseKey(RegistryKeyHandle* key) { return key && ::RegCloseKey(Native(key)) == ERROR_SUCCESS; }

}  // namespace marklet
