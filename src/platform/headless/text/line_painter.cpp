#include "platform/headless/text/line_painter.h"

#include "platform/text.h"

namespace marklet::headless {

void DrawLineInContext(const DeviceContextHandle& dc, const Box& clip, const TextLine& line, std::int64_t x,
                       std::int64_t y, std::int64_t width) {
  if (dc.surface.bits == nullptr) return;
  const Canvas canvas(dc.surface, clip, dc.text_colour);
  Font& font = dc.SelectedFont();
  const Face& face = font.RealFace();
  const std::int64_t bottom = y + face.Height();
  if (dc.bk_mode == OPAQUE)
    FillBox(canvas.surface, Intersect({x, y, x + width, bottom}, canvas.clip), dc.bk_colour);
  // Marks above and below a line stay within another line's height.
  if (canvas.clip.bottom <= y - face.Height() || canvas.clip.top >= bottom + face.Height()) return;
  DrawLine(canvas, font, line, x, y + face.Ascent(), width);
}

}  // namespace marklet::headless
