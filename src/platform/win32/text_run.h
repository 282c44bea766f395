// One line of text of any length in a font of any size. The platform's own calls have limits on the count of
// units, and draw what lies outside the clip as slowly as what lies inside.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/win32/handles.h"

namespace marklet::win32 {

// Up to this many units and this height of a line in pixels the platform's own calls do.
constexpr std::size_t kPlainUnits = 1000;
constexpr int kPlainHeight = 1000;

TEXTMETRICW MetricsOf(::HDC dc);

// The number of units of `text` to hand over at once: never the half of a surrogate pair.
std::size_t PieceLength(std::u16string_view text);

// Width in pixels. False when the platform refuses.
bool WidthOf(::HDC dc, std::u16string_view text, std::int64_t& width);

// The width of each unit in pixels, 0 where the platform refuses.
void UnitWidths(::HDC dc, std::u16string_view text, std::vector<Long>& widths);

// Draws with the top left corner at a point, in the context's colours, whatever SetTextAlign says. With
// `rtl` what comes first stands at the right.
bool DrawRun(::HDC dc, std::int64_t x, std::int64_t y, std::u16string_view text, bool rtl);

}  // namespace marklet::win32
