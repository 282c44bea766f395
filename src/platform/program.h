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

// A character of each block of 128, in their order, that no font had since the last call on this thread and
// for which the sign of missing characters was drawn; none on a platform that doesn't tell.
std::vector<char32_t> TakeMissingCharacters();

}  // namespace marklet
