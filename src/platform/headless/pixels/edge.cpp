// The platform's own edge, in the system's colours.
#include <algorithm>
#include <array>

#include "platform/gdi.h"
#include "platform/headless/pixels/device_context.h"
#include "platform/headless/pixels/raster.h"
#include "platform/headless/recorder/hook.h"
#include "platform/shared/edge_lines.h"
#include "platform/shared/unrecorded.h"
#include "platform/system.h"
#include "platform/system_colours.h"

namespace marklet {
namespace {

using headless::Box;
using headless::Operation;
using headless::Refused;

COLORREF SystemShade(EdgeShade shade) {
  constexpr std::array<int, 4> kIndexes = {COLOR_BTNFACE, COLOR_3DDKSHADOW, COLOR_BTNHIGHLIGHT,
                                           COLOR_BTNSHADOW};  // in the order of EdgeShade
  return GetSysColor(kIndexes[static_cast<std::size_t>(shade)]);
}

// The pixels from one end of an upright or level line up to, and without, the other.
Box BoxOfLine(std::int64_t from_x, std::int64_t from_y, std::int64_t to_x, std::int64_t to_y) {
  if (from_y == to_y) return {std::min(from_x, to_x + 1), from_y, std::max(from_x + 1, to_x), from_y + 1};
  return {from_x, std::min(from_y, to_y + 1), from_x + 1, std::max(from_y + 1, to_y)};
}

void Shrink(RECT& rect, std::uint32_t edge, std::uint32_t flags) {
  const Long width = ((edge & BDR_OUTER) != 0 ? 1 : 0) + ((edge & BDR_INNER) != 0 ? 1 : 0);
  if ((flags & BF_LEFT) != 0) rect.left = WrapAdd(rect.left, width);
  if ((flags & BF_TOP) != 0) rect.top = WrapAdd(rect.top, width);
  if ((flags & BF_RIGHT) != 0) rect.right = WrapSub(rect.right, width);
  if ((flags & BF_BOTTOM) != 0) rect.bottom = WrapSub(rect.bottom, width);
}

}  // namespace

bool DrawEdge(HDC dc, RECT& rect, std::uint32_t edge, std::uint32_t flags) {
  if (Refused(Operation::kDrawEdge, dc, rect, edge, flags)) return false;
  if (dc == nullptr) return false;
  const UnrecordedScope own_calls;
  if ((flags & BF_MIDDLE) != 0) FillBox(dc->surface, headless::BoxOf(rect), SystemShade(EdgeShade::kFace));
  ForEachEdgeLine(rect, edge, flags, [dc](EdgeShade shade, Long from_x, Long from_y, Long to_x, Long to_y) {
    if (shade == EdgeShade::kNone || (from_x == to_x && from_y == to_y)) return;
    FillBox(dc->surface, BoxOfLine(from_x, from_y, to_x, to_y), SystemShade(shade));
  });
  if ((flags & BF_ADJUST) != 0) Shrink(rect, edge, flags);
  return true;
}

}  // namespace marklet
