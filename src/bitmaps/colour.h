// Colour arithmetic and the drawing of filled and framed rectangles.
#pragma once

#include <array>

#include "platform/system_colours.h"
#include "platform/types.h"

namespace marklet {

// Mixes two colours, system colours taken through GetSysColor: second * (255 - weight) / 255 + first * weight
// / 255 in each channel, both quotients truncated. `swap` exchanges the two.
COLORREF BlendColours(OLE_COLOR first, OLE_COLOR second, int weight, bool swap = false);

// Fills a rectangle with a gradient, left to right when `horizontal`, else top to bottom; with equal colours
// solidly. Takes system colours.
void GradientRect(HDC dc, OLE_COLOR first, OLE_COLOR second, Long x, Long y, Long width, Long height,
                  bool horizontal);

// The same between two RGB colours. The modes are the platform's for gradients.
enum class GradientMode : Long { Horizontal = 0, Vertical = 1 };
void GradientFillRect(HDC dc, const RECT& rect, COLORREF first, COLORREF second, GradientMode mode);
// A gradient of solid bands one pixel wide. There is one more than the rectangle has room for: the last, in
// the second colour, lies at its bottom or right coordinate.
void GradientBands(HDC dc, const RECT& rect, COLORREF first, COLORREF second, bool vertical);
void FillBand(HDC dc, Long x, Long y, Long width, Long height, HBRUSH brush);

// A frame one pixel wide in an RGB colour.
void FrameRectangle(HDC dc, COLORREF colour, Long x, Long y, Long width, Long height);

// The system colours whose change a control has to notice, by index, in order. The first and fifth are the
// same.
inline constexpr std::array<int, 6> kWatchedSystemColours = {
    COLOR_BTNFACE, COLOR_HIGHLIGHT, COLOR_WINDOW, COLOR_WINDOWTEXT, COLOR_BTNFACE, COLOR_BTNTEXT};
// Whether any of them differs from the snapshot.
bool SystemColoursChanged(const std::array<COLORREF, 6>& snapshot);

}  // namespace marklet
