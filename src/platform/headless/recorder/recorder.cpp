#include "platform/headless/recorder/recorder.h"

#include <stdexcept>

#include "platform/headless/recorder/lines.h"
#include "platform/headless/recorder/operations.h"
#include "platform/headless/recorder/player.h"
#include "platform/headless/recorder/recording.h"

namespace marklet {
namespace {

headless::Operation Known(std::string_view name) {
  const auto operation = headless::OperationNamed(name);
  if (!operation) throw std::invalid_argument("no platform operation " + std::string(name));
  return *operation;
}

}  // namespace

struct Recorder::State {
  headless::Recording recording;
};

Recorder::Recorder() : state_(std::make_unique<State>()) {
  if (headless::active_recording != nullptr) throw std::logic_error("a recorder is active on this thread");
  headless::active_recording = &state_->recording;
}

Recorder::~Recorder() { headless::active_recording = nullptr; }

std::vector<std::string> Recorder::Lines() const {
  std::vector<std::string> lines;
  lines.reserve(state_->recording.calls.size());
  for (const auto& call : state_->recording.calls) lines.push_back(LineOf(state_->recording, call));
  return lines;
}

std::vector<std::string> Recorder::Lines(std::string_view operation) const {
  const headless::Operation wanted = Known(operation);
  std::vector<std::string> lines;
  for (const auto& call : state_->recording.calls)
    if (call.operation == wanted) lines.push_back(LineOf(state_->recording, call));
  return lines;
}

void Recorder::Clear() { state_->recording.Clear(); }

void Recorder::Fail(std::string_view operation, int good_calls) {
  state_->recording.failures[Known(operation)] = good_calls < 0 ? 0 : good_calls;
}

void Recorder::FailNothing() { state_->recording.failures.clear(); }

void Recorder::Replay() const {
  headless::active_recording = nullptr;
  headless::Player(state_->recording).Play();
  headless::active_recording = &state_->recording;
}

}  // namespace marklet
