// The rule for failures: a failing step is skipped and the next one runs.
#pragma once

#include <utility>

namespace marklet {

// Runs one step and swallows what it throws.
template <class Step>
void IgnoreErrors(Step&& step) noexcept {
  try {
    std::forward<Step>(step)();
  } catch (...) {
    // Skipped on purpose: no property, paint, load or notification reports an error to the host.
  }
}

}  // namespace marklet
