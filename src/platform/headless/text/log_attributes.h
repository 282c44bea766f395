// What a line may do at each of its characters.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace marklet::headless {

// A byte for each of the first `count` code units, in the form of ScriptString_pLogAttr. The text after them
// counts as what follows them. With `marks` no line ends between an "&" and what it marks.
std::vector<std::uint8_t> LogAttributes(std::u16string_view text, std::size_t count, bool marks);

}  // namespace marklet::headless
