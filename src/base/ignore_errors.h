// The rule for failures: a failing step is skipped and the next one runs.
#pragma once

#include <utility>

namespace marklet {

// Runs one step and swallows what it throws; whether it ran to its end. Skipped on purpose: no property,
// paint, load or notification reports an error to the host.
template <class Step>
bool IgnoreErrors(Step&& step) noexcept {
  try {
    std::forward<Step>(step)();
    return true;
  } catch (...) {
    return false;
  }
}

}  // namespace marklet
