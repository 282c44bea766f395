// Windows' own calls can't be made to fail: inputs that ask for it run without.
#include "fuzz/failing_calls.h"

namespace marklet {

struct FailingCalls::State {};

FailingCalls::FailingCalls(std::string_view, int) {}
FailingCalls::~FailingCalls() = default;

}  // namespace marklet
