// What a command-line program asks of the platform.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace marklet {

// The arguments after the program's name, in UTF-8.
std::vector<std::string> ProgramArguments(int argc, char** argv);

// Runs `paint` and gives the platform calls that it made, one line each; none, and nothing run, on a platform
// that keeps no such log.
std::optional<std::vector<std::string>> LogPlatformCalls(const std::function<void()>& paint);

}  // namespace marklet
