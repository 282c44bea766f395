#include "platform/win32/long_text.h"

#include "platform/shared/aligned_corner.h"
#include "platform/shared/text_layout.h"
#include "platform/win32/saved_state.h"
#include "platform/win32/text_run.h"

namespace marklet::win32 {
namespace {

class ContextDevice final : public LineDevice {
 public:
  ContextDevice(::HDC dc, bool rtl) : dc_(dc), metrics_(MetricsOf(dc)), rtl_(rtl) {}

  Long LineHeight() override { return metrics_.tmHeight; }
  Long Ascent() override { return metrics_.tmAscent; }
  std::int64_t WidthOf(std::u16string_view line) override {
    std::int64_t width = 0;
    win32::WidthOf(dc_, line, width);
    return width;
  }
  void UnitWidths(std::u16string_view line, std::vector<Long>& widths) override {
    win32::UnitWidths(dc_, line, widths);
  }
  LineStretch StretchOf(std::u16string_view line, std::size_t unit) override {
    const std::int64_t left = WidthOf(line.substr(0, unit)), right = WidthOf(line.substr(0, unit + 1));
    if (!rtl_) return {left, right};
    const std::int64_t width = WidthOf(line);
    return {width - right, width - left};
  }
  void DrawLine(std::u16string_view line, std::int64_t x, std::int64_t y, std::int64_t width) override {
    const LineCorner corner =
        AlignedCorner(GetTextAlign(dc_), Near(x), Near(y), {width, metrics_.tmHeight, metrics_.tmAscent});
    DrawRun(dc_, corner.x, corner.y, line, rtl_);
  }
  void DrawBar(std::int64_t left, std::int64_t right, std::int64_t y) override {
    const ::RECT bar = Native(RECT{Near(left), Near(y), Near(right), Near(y + 1)});
    SetDCBrushColor(dc_, ::GetTextColor(dc_));
    ::FillRect(dc_, &bar, static_cast<::HBRUSH>(GetStockObject(DC_BRUSH)));
  }

 private:
  ::HDC dc_;
  const TEXTMETRICW metrics_;
  const bool rtl_;
};

}  // namespace

int DrawLongText(HDC dc, std::u16string_view text, RECT& rect, std::uint32_t flags) {
  const SavedState state(Native(dc));
  if ((flags & (DT_NOCLIP | DT_CALCRECT)) == 0) ClipTo(Native(dc), rect);
  ContextDevice device(Native(dc), (flags & DT_RTLREADING) != 0);
  return DrawTextOn(device, text, rect, flags);
}

}  // namespace marklet::win32
