// The registry, of which single values are read.
#pragma once

#include <cstdint>
#include <string_view>

namespace marklet {

struct RegistryKeyHandle;
using HKEY = RegistryKeyHandle*;

constexpr std::uint32_t kCurrentUserHive = 0x80000001;

// Opens a key, below one of the hives, for the reading of its values. False, and `key` null, when it can't be
// opened; otherwise RegCloseKey is due.
bool RegOpenKeyExA(std::uint32_t hive, std::string_view subkey, HKEY& key);

// Reads a value of any type as bytes. `size` holds the size of the buffer and receives that of the value;
// without a buffer only the latter happens. False when there is no such value, or more of it than room.
bool RegQueryValueExA(HKEY key, std::string_view name, char* buffer, std::uint32_t& size);

bool RegCloseKey(HKEY key);

}  // namespace marklet
