// marklet-render as a function, for the program and for tests.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace marklet {

// Does what the arguments (UTF-8) say. Returns the exit code: 0, or 2 with one line on `err` and no file
// written.
int RunMarkletRender(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err);

}  // namespace marklet
