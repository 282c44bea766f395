// What a program knows of itself.
#pragma once

#include <string>
#include <vector>

namespace example {

// The words of the command line after the program's name.
std::vector<std::wstring> Arguments();

// The full name of a file in the program's own folder.
std::wstring BesideProgram(const std::wstring& file);

// Handles messages for a while.
void HandleMessagesFor(unsigned long milliseconds);

}  // namespace example
