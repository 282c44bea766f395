// The configured answer of SystemParametersInfoA.
#pragma once

#include <cstring>

#include "platform/non_client_metrics.h"

namespace marklet {

// What an action fills in, 0 for one that isn't ours.
constexpr std::uint32_t NonClientRecordSize(std::uint32_t action) {
  if (action == SPI_GETNONCLIENTMETRICS) return sizeof(NONCLIENTMETRICSA);
  return action == SPI_GETICONTITLELOGFONT ? sizeof(LOGFONTA) : 0;
}

// Whether the call is one of the two that are asked for.
inline bool IsNonClientQuestion(std::uint32_t action, std::uint32_t size, const void* record) {
  return record != nullptr && size != 0 && size == NonClientRecordSize(action);
}

// False where nothing is configured. The question must be one.
inline bool CopyConfiguredNonClient(std::uint32_t action, void* record) {
  const NonClientConfiguration& configured = ConfiguredNonClient();
  if (action == SPI_GETNONCLIENTMETRICS && configured.metrics) {
    std::memcpy(record, &*configured.metrics, sizeof(NONCLIENTMETRICSA));
    return true;
  }
  if (action == SPI_GETICONTITLELOGFONT && configured.icon_title) {
    std::memcpy(record, &*configured.icon_title, sizeof(LOGFONTA));
    return true;
  }
  return false;
}

}  // namespace marklet
