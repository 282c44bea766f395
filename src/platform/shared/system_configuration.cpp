#include "platform/locale.h"
#include "platform/system.h"

namespace marklet {

SystemConfiguration& Configuration() {
  thread_local SystemConfiguration configuration;
  return configuration;
}

std::optional<std::vector<std::uint32_t>>& ConfiguredLocales() {
  thread_local std::optional<std::vector<std::uint32_t>> locales;
  return locales;
}

}  // namespace marklet
