#include "platform/locale.h"
#include "platform/non_client_metrics.h"
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

NonClientConfiguration& ConfiguredNonClient() {
  thread_local NonClientConfiguration configuration;
  return configuration;
}

}  // namespace marklet
