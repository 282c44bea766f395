// The platform's script processor. Nothing here calls back into the program.
#pragma once

#include <string_view>

#include "platform/types.h"

namespace marklet {

constexpr Long S_OK = 0;
constexpr Long S_FALSE = 1;
constexpr std::uint32_t SIC_COMPLEX = 1;

// Whether any character of the text needs shaping (right-to-left, joining or reordering scripts): S_OK when
// one does, S_FALSE when none does, another value when the platform fails. Windows counts most control
// characters, tabs and line ends among them, as complex; the headless platform doesn't.
Long ScriptIsComplex(std::u16string_view text, std::uint32_t flags);

}  // namespace marklet
