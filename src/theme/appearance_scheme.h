// The desktop's colour scheme as the user's settings name it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace marklet {

// The scheme's name; empty where the desktop has none, or none with a name. Throws std::bad_alloc.
std::u16string AppearanceScheme();

// A value below a hive, whatever its type, as text in the system code page; one NUL at its end is left out.
// Empty when it can't be read. Throws std::bad_alloc.
std::u16string ReadRegistryString(std::uint32_t hive, std::string_view subkey, std::string_view name);

}  // namespace marklet
