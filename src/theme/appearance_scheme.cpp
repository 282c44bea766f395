#include "theme/appearance_scheme.h"

#include "platform/registry.h"
#include "platform/system.h"

namespace marklet {
namespace {

class Key {
 public:
  Key(std::uint32_t hive, std::string_view subkey) { RegOpenKeyExA(hive, subkey, key_); }
  ~Key() {
    if (key_ != nullptr) RegCloseKey(key_);
  }
  Key(const Key&) = delete;
  Key& operator=(const Key&) = delete;
  RegistryKeyHandle* Get() const { return key_; }

 private:
  RegistryKeyHandle* key_ = nullptr;
};

}  // namespace

std::u16string ReadRegistryString(std::uint32_t hive, std::string_view subkey, std::string_view name) {
  const Key key(hive, subkey);
  std::uint32_t size = 0;
  if (key.Get() == nullptr || !RegQueryValueExA(key.Get(), name, nullptr, size)) return {};
  std::string buffer(std::size_t{size} + 1, '\0');
  size = static_cast<std::uint32_t>(buffer.size());
  if (!RegQueryValueExA(key.Get(), name, buffer.data(), size)) return {};
  buffer.resize(size);
  if (!buffer.empty() && buffer.back() == '\0') buffer.pop_back();
  return MultiByteToWideChar(CP_ACP, buffer);
}

std::u16string AppearanceScheme() {
  return ReadRegistryString(kCurrentUserHive, "Control Panel\\Appearance", "Current");
}

}  // namespace marklet
