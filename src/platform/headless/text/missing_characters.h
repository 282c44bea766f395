// Which characters of a text no font had.
#pragma once

#include <vector>

namespace marklet::headless {

// Notes a character for which the box of missing ones stands; those that no font can have don't count.
void NoteMissing(char32_t character);

// The first that was noted on this thread of each block of 128, in their order; forgets them.
std::vector<char32_t> TakeMissing();

}  // namespace marklet::headless
