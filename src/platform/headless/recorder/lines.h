// Recorded calls as lines of text.
#pragma once

#include <string>

#include "platform/headless/recorder/recording.h"

namespace marklet::headless {

// "Name(arguments)", in the form that the operation's row gives and recorder.h tells.
std::string LineOf(const Recording& recording, const RecordedCall& call);

}  // namespace marklet::headless
