// DrawTextW: the shared layout on a memory context.
#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/headless/recorder/hook.h"
#include "platform/headless/text/line_painter.h"
#include "platform/shared/aligned_corner.h"
#include "platform/shared/saturated.h"
#include "platform/shared/text_layout.h"
#include "platform/system.h"
#include "platform/text.h"

namespace marklet {
namespace {

using headless::Operation;
using headless::Refused;

class ContextDevice final : public LineDevice {
 public:
  ContextDevice(const DeviceContextHandle& dc, const headless::Box& clip, bool rtl)
      : dc_(dc), font_(dc.SelectedFont()), clip_(clip), rtl_(rtl) {}

  Long LineHeight() override { return font_.RealFace().Height(); }
  Long Ascent() override { return font_.RealFace().Ascent(); }
  std::int64_t WidthOf(std::u16string_view line) override { return headless::WidthOf(font_, {line, rtl_}); }
  void UnitWidths(std::u16string_view line, std::vector<Long>& widths) override {
    headless::UnitWidths(font_, {line, rtl_}, widths);
  }
  LineStretch StretchOf(std::u16string_view line, std::size_t unit) override {
    return headless::StretchOf(font_, {line, rtl_}, unit);
  }
  void DrawLine(std::u16string_view line, std::int64_t x, std::int64_t y, std::int64_t width) override {
    const LineCorner corner =
        AlignedCorner(dc_.text_align, Saturated(x), Saturated(y), {width, LineHeight(), Ascent()});
    DrawLineInContext(dc_, clip_, {line, rtl_}, corner.x, corner.y, width);
  }
  void DrawBar(std::int64_t left, std::int64_t right, std::int64_t y) override {
    FillBox(dc_.surface, Intersect(clip_, {left, y, right, y + 1}), dc_.text_colour);
  }

 private:
  const DeviceContextHandle& dc_;
  headless::Font& font_;
  const headless::Box clip_;
  const bool rtl_;
};

int DrawInContext(HDC dc, std::u16string_view text, RECT& rect, std::uint32_t flags) {
  if (dc == nullptr) return 0;
  const bool clipped = (flags & DT_NOCLIP) == 0;
  ContextDevice device(*dc, clipped ? headless::BoxOf(rect) : dc->surface.Bounds(),
                       (flags & DT_RTLREADING) != 0);
  return DrawTextOn(device, text, rect, flags);
}

}  // namespace

int DrawTextW(HDC dc, std::u16string_view text, RECT& rect, std::uint32_t flags) {
  if (Refused(Operation::kDrawTextW, dc, text, rect, flags)) return 0;
  return DrawInContext(dc, text, rect, flags);
}

int DrawTextA(HDC dc, std::string_view text, RECT& rect, std::uint32_t flags) {
  if (Refused(Operation::kDrawTextA, dc, text, rect, flags)) return 0;
  return DrawInContext(dc, MultiByteToWideChar(CP_ACP, text), rect, flags);
}

}  // namespace marklet
