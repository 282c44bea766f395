// The colours of a desktop's scheme, in the style of office menus and toolbars.
#pragma once

#include <array>
#include <cstddef>

#include "platform/types.h"

namespace marklet {

constexpr std::size_t kThemeColours = 44;
using ThemeColours = std::array<COLORREF, kThemeColours>;  // by slot; black where none is known

// The slots that somebody draws with. The others serve the computation of these.
constexpr std::size_t kStripFrame = 2;
constexpr std::size_t kSelectionFrame = 7;
constexpr std::size_t kSelectionBegin = 8, kSelectionEnd = 16;  // of a gradient
constexpr std::size_t kStripBegin = 11, kStripEnd = 12;

}  // namespace marklet
