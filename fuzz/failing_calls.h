// Makes a platform call fail for as long as the object lives, where the platform can do that.
#pragma once

#include <memory>
#include <string_view>

namespace marklet {

class FailingCalls {
 public:
  // Calls of `operation` fail after `good_calls` more that don't; none do for an empty name.
  FailingCalls(std::string_view operation, int good_calls);
  ~FailingCalls();
  FailingCalls(const FailingCalls&) = delete;
  FailingCalls& operator=(const FailingCalls&) = delete;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace marklet
