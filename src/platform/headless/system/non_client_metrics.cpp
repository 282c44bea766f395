#include "platform/non_client_metrics.h"

#include "platform/headless/recorder/hook.h"
#include "platform/shared/configured_non_client.h"

namespace marklet {

bool SystemParametersInfoA(std::uint32_t action, std::uint32_t size, void* record, std::uint32_t flags) {
  if (headless::Refused(headless::Operation::kSystemParametersInfoA, action, size, flags)) return false;
  return IsNonClientQuestion(action, size, record) && CopyConfiguredNonClient(action, record);
}

}  // namespace marklet
