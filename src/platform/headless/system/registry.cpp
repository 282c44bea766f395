#include "platform/headless/system/registry.h"

#include <algorithm>
#include <new>

#include "platform/headless/recorder/hook.h"
#include "platform/registry.h"

namespace marklet {

using headless::Operation;
using headless::Refused;

struct RegistryKeyHandle {
  std::string path;
};

namespace headless {

RegistryValues& Registry() {
  thread_local RegistryValues values;
  return values;
}

}  // namespace headless

bool RegOpenKeyExA(std::uint32_t hive, std::string_view subkey, RegistryKeyHandle*& key) {
  key = nullptr;
  if (Refused(Operation::kRegOpenKeyExA, hive, subkey) || hive != kCurrentUserHive) return false;
  const auto& values = headless::Registry();
  const bool exists = std::any_of(values.begin(), values.end(),
                                  [subkey](const auto& value) { return value.first.first == subkey; });
  if (exists) key = new RegistryKeyHandle{std::string(subkey)};
  return exists;
}

bool RegQueryValueExA(RegistryKeyHandle* key, std::string_view name, char* buffer, std::uint32_t& size) {
  if (Refused(Operation::kRegQueryValueExA, name, size) || key == nullptr) return false;
  const auto found = headless::Registry().find({key->path, std::string(name)});
  if (found == headless::Registry().end()) return false;
  const std::string& bytes = found->second;
  const bool fits = buffer == nullptr || bytes.size() <= size;
  if (buffer != nullptr && fits) bytes.copy(buffer, bytes.size());
  size = static_cast<std::uint32_t>(bytes.size());
  return fits;
}

bool RegCloseKey(RegistryKeyHandle* key) {
  if (Refused(Operation::kRegCloseKey) || key == nullptr) return false;
  delete key;
  return true;
}

}  // namespace marklet
