// Colour arithmetic and the drawing of filled and framed rectangles.
#pragma once

#include <array>

#include "platform/types.h"

namespace marklet {

// Mixes two colours, system colours taken through GetSysColor: second * (255 - weight) / 255 + first * weight
// / 255 in each channel, both quotients truncated. `swap` exchanges the two.
COLORREF BlendColours(OLE_COLOR first, OLE_COLOR second, int weight, bool swap = false);

// Fills a rectangle with a gradient, left to right when `horizontal`, else top to bottom; with equal colours
// solidly.
void GradientRect(HDC dc, OLE_COLOR first, OLE_COLOR second, Long x, Long y, Long width, Long height,
                  bool horizontal);

// A frame one pixel wide in an RGB colour.
void FrameRectangle(HDC dc, COLORREF colour, Long x, Long y, Long width, Long height);

// The system colours whose change a control has to notice, by index, in order. The first and fifth are the
// same.
inline constexpr std::array<int, 6> kWatchedSystemColours = {15, 13, 5, 8, 15, 18};
// Whether any of them differs from the snapshot.
bool SystemColoursChanged(const std::array<COLORREF, 6>& snapshot);

}  // namespace marklet
