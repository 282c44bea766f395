#include "fuzz/failing_calls.h"
#include "platform/headless/recorder/recorder.h"

namespace marklet {

struct FailingCalls::State {
  Recorder recorder;
};

FailingCalls::FailingCalls(std::string_view operation, int good_calls) : state_(std::make_unique<State>()) {
  if (!operation.empty()) state_->recorder.Fail(operation, good_calls);
}

FailingCalls::~FailingCalls() = default;

}  // namespace marklet
