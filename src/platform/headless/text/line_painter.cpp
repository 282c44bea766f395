#include "platform/headless/text/line_painter.h"

#include "platform/text.h"

namespace marklet::headless {

Box RoomFor(const DeviceContextHandle& dc, std::uint32_t options, const RECT* rect) {
  if (rect == nullptr) return dc.surface.Bounds();
  const Box box = BoxOf(*rect);
  if ((options & ETO_OPAQUE) != 0) FillBox(dc.surface, box, dc.bk_colour);
  return (options & ETO_CLIPPED) != 0 ? Intersect(dc.surface.Bounds(), box) : dc.surface.Bounds();
}

bool BeginLine(const Canvas& canvas, const DeviceContextHandle& dc, const Box& line) {
  if (dc.bk_mode == OPAQUE) FillBox(canvas.surface, Intersect(line, canvas.clip), dc.bk_colour);
  // Marks above and below a line stay within another line's height.
  const std::int64_t height = line.bottom - line.top;
  return canvas.clip.bottom > line.top - height && canvas.clip.top < line.bottom + height;
}

void DrawLineInContext(const DeviceContextHandle& dc, const Box& clip, const TextLine& line, std::int64_t x,
                       std::int64_t y, std::int64_t width) {
  if (dc.surface.bits == nullptr) return;
  const Canvas canvas(dc.surface, clip, dc.text_colour);
  Font& font = dc.SelectedFont();
  const Face& face = font.RealFace();
  if (BeginLine(canvas, dc, {x, y, x + width, y + face.Height()}))
    DrawLine(canvas, font, line, x, y + face.Ascent(), width);
}

}  // namespace marklet::headless
