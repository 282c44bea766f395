#include "platform/non_client_metrics.h"

#include <cstddef>

#include "platform/shared/configured_non_client.h"
#include "platform/win32/sdk.h"

namespace marklet {

static_assert(sizeof(LOGFONTA) == sizeof(::LOGFONTA));
static_assert(offsetof(LOGFONTA, lfFaceName) == offsetof(::LOGFONTA, lfFaceName));
// The record of newer systems has one field more at its end, and theirs takes the size for the older one.
static_assert(offsetof(NONCLIENTMETRICSA, lfMessageFont) == offsetof(::NONCLIENTMETRICSA, lfMessageFont));

bool SystemParametersInfoA(std::uint32_t action, std::uint32_t size, void* record, std::uint32_t flags) {
  if (!IsNonClientQuestion(action, size, record)) return false;
  return CopyConfiguredNonClient(action, record) || ::SystemParametersInfoA(action, size, record, flags) != 0;
}

}  // namespace marklet
