// A laid out line drawn with the modes of a context.
#pragma once

#include <cstdint>

#include "platform/headless/pixels/device_context.h"
#include "platform/headless/text/measured_line.h"

namespace marklet::headless {

// What a text at a point may be drawn in under the options of ExtTextOutW; fills the rectangle when asked to.
Box RoomFor(const DeviceContextHandle& dc, std::uint32_t options, const RECT* rect);

// Fills the box of a line in the background colour when the context's mode asks for that. False when nothing
// of the line can show.
bool BeginLine(const Canvas& canvas, const DeviceContextHandle& dc, const Box& line);

// Draws `line`, `width` wide, with its upper left corner at (x, y), on a box in the background colour when
// the context's mode asks for one. Only what lies in `clip`.
void DrawLineInContext(const DeviceContextHandle& dc, const Box& clip, const TextLine& line, std::int64_t x,
                       std::int64_t y, std::int64_t width);

}  // namespace marklet::headless
