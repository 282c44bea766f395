// Fills, lines and the focus frame on a context.
#include <algorithm>
#include <cstdlib>

#include "platform/gdi.h"
#include "platform/headless/pixels/device_context.h"
#include "platform/headless/pixels/raster.h"
#include "platform/headless/recorder/hook.h"

namespace marklet {
namespace {

using headless::Box;
using headless::Operation;
using headless::Refused;
using headless::Surface;

void InvertBox(const Surface& surface, const Box& box) {
  const Box visible = Intersect(box, surface.Bounds());
  for (std::int64_t y = visible.top; y < visible.bottom; ++y)
    for (std::int64_t x = visible.left + ((visible.left + y + 1) & 1); x < visible.right; x += 2)
      for (int i = 0; i < 3; ++i) surface.At(x, y)[i] ^= 0xFF;
}

// From `start` up to, and without, `end`, whichever way it runs, as an ordered half-open range.
struct Range {
  std::int64_t low, high;
};
Range StepsBetween(std::int64_t start, std::int64_t end) {
  return start <= end ? Range{start, end} : Range{end + 1, start + 1};
}

// A slanting line: one pixel for each step along the longer axis, the other axis rounded to nearest.
// Coordinates end at 27 bits here, as GDI's do, so that products stay small.
void DrawSlant(const Surface& surface, Long from_x, Long from_y, Long to_x, Long to_y, COLORREF colour) {
  constexpr std::int64_t kFar = 1 << 27;
  std::int64_t from[2] = {from_x, from_y}, to[2] = {to_x, to_y};
  for (int axis = 0; axis < 2; ++axis) {
    from[axis] = std::clamp(from[axis], -kFar, kFar);
    to[axis] = std::clamp(to[axis], -kFar, kFar);
  }
  const int major = std::abs(to[0] - from[0]) >= std::abs(to[1] - from[1]) ? 0 : 1, minor = 1 - major;
  const std::int64_t length = std::abs(to[major] - from[major]), rise = std::abs(to[minor] - from[minor]);
  if (length == 0) return;
  const std::int64_t limit = major == 0 ? surface.width : surface.height;
  const Range steps = StepsBetween(from[major], to[major]);
  for (std::int64_t at = std::max<std::int64_t>(steps.low, 0); at < std::min(steps.high, limit); ++at) {
    const std::int64_t climbed = (2 * std::abs(at - from[major]) * rise + length - 1) / (2 * length);
    const std::int64_t across = to[minor] >= from[minor] ? from[minor] + climbed : from[minor] - climbed;
    const std::int64_t x = major == 0 ? at : across, y = major == 0 ? across : at;
    FillBox(surface, {x, y, x + 1, y + 1}, colour);
  }
}

}  // namespace

bool FillRect(HDC dc, const RECT& rect, HBRUSH brush) {
  if (Refused(Operation::kFillRect, dc, rect, brush)) return false;
  const headless::Brush* paint = headless::AsBrush(brush);
  if (dc == nullptr || paint == nullptr) return false;
  FillBox(dc->surface, headless::BoxOf(rect), paint->colour);
  return true;
}

bool MoveToEx(HDC dc, Long x, Long y) {
  if (Refused(Operation::kMoveToEx, dc, x, y)) return false;
  if (dc == nullptr) return false;
  dc->pen_x = x;
  dc->pen_y = y;
  return true;
}

bool LineTo(HDC dc, Long x, Long y) {
  if (Refused(Operation::kLineTo, dc, x, y)) return false;
  if (dc == nullptr) return false;
  const Long from_x = dc->pen_x, from_y = dc->pen_y;
  const COLORREF colour = dc->PenColour();
  dc->pen_x = x;
  dc->pen_y = y;
  const Range across = StepsBetween(from_x, x), down = StepsBetween(from_y, y);
  if (from_y == y)
    FillBox(dc->surface, {across.low, y, across.high, std::int64_t{y} + 1}, colour);
  else if (from_x == x)
    FillBox(dc->surface, {x, down.low, std::int64_t{x} + 1, down.high}, colour);
  else
    DrawSlant(dc->surface, from_x, from_y, x, y, colour);
  return true;
}

bool DrawFocusRect(HDC dc, const RECT& rect) {
  if (Refused(Operation::kDrawFocusRect, dc, rect)) return false;
  if (dc == nullptr) return false;
  const Box box = headless::BoxOf(rect);
  if (box.Empty()) return true;
  InvertBox(dc->surface, {box.left, box.top, box.right, box.top + 1});
  if (box.Height() > 1) InvertBox(dc->surface, {box.left, box.bottom - 1, box.right, box.bottom});
  InvertBox(dc->surface, {box.left, box.top + 1, box.left + 1, box.bottom - 1});
  if (box.Width() > 1) InvertBox(dc->surface, {box.right - 1, box.top + 1, box.right, box.bottom - 1});
  return true;
}

}  // namespace marklet
