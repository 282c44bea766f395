// A registry in memory: what the keys of the headless platform hold. Empty but in tests.
#pragma once

#include <map>
#include <string>
#include <utility>

namespace marklet::headless {

// The bytes of a value by key and name, on this thread. Case counts here.
using RegistryValues = std::map<std::pair<std::string, std::string>, std::string>;
RegistryValues& Registry();

}  // namespace marklet::headless
