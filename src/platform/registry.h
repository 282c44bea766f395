// The registry, of which single values are read. Nothing here calls back into the program.
#pragma once

#include <cstdint>
#include <string_view>

namespace marklet {

struct RegistryKeyHandle;

constexpr std::uint32_t kCurrentUserHive = 0x80000001;

// Opens a key, below one of the hives, for the reading of its values. False, and `key` null, when it can't be
// opened; otherwise RegCloseKey is due.
bool RegOpenKeyExA(std::uint32_t hive, std::string_view subkey, RegistryKeyHandle*& key);

// Reads a value of any type as bytes. `size` holds the size of the buffer and receives that of the value;
// without a buffer only the latter happens. False when there is no such value, or more of it than room.
bool RegQueryValueExA(RegistryKeyHandle* key, std::string_view name, char* buffer, std::uint32_t& size);

// Closes a key. False for null.
bool RegCloseKey(RegistryKeyHandle* key);

}  // namespace marklet
