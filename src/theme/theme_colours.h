// The colours that the design-time page draws its strip with.
#pragma once

#include <array>
#include <cstddef>

#include "platform/types.h"

namespace marklet {

constexpr std::size_t kThemeColours = 44;
using ThemeColours = std::array<COLORREF, kThemeColours>;  // by slot; black where none is known

}  // namespace marklet
