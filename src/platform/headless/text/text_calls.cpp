// The text modes of a context, extents, and text at a point.
#include "platform/text.h"

#include <algorithm>
#include <utility>

#include "platform/headless/pixels/device_context.h"
#include "platform/headless/recorder/hook.h"
#include "platform/headless/text/line_painter.h"
#include "platform/shared/aligned_corner.h"
#include "platform/shared/saturated.h"
#include "platform/system.h"

namespace marklet {
namespace {

using headless::Box;
using headless::Operation;
using headless::Refused;

bool MeasureLine(HDC dc, std::u16string_view text, SIZE& size) {
  if (dc == nullptr) return false;
  if (text.empty()) {
    size = {};
    return true;
  }
  headless::Font& font = dc->SelectedFont();
  size = {Saturated(WidthOf(font, {text})), font.RealFace().Height()};
  return true;
}

bool DrawAt(HDC dc, Long x, Long y, const Box& clip, std::u16string_view text) {
  const headless::TextLine line = {text, (dc->text_align & TA_RTLREADING) != 0};
  headless::Font& font = dc->SelectedFont();
  const headless::Face& face = font.RealFace();
  const std::int64_t width = WidthOf(font, line);
  const LineCorner corner = AlignedCorner(dc->text_align, x, y, {width, face.Height(), face.Ascent()});
  DrawLineInContext(*dc, clip, line, corner.x, corner.y, width);
  return true;
}

}  // namespace

Long PixelsPerInch(HDC dc) {
  if (Refused(Operation::kPixelsPerInch, dc)) return 0;
  return Configuration().pixels_per_inch.value_or(96);
}

COLORREF SetTextColor(HDC dc, COLORREF colour) {
  if (Refused(Operation::kSetTextColor, dc, colour) || dc == nullptr) return CLR_INVALID;
  return std::exchange(dc->text_colour, colour);
}

COLORREF GetTextColor(HDC dc) {
  if (Refused(Operation::kGetTextColor, dc) || dc == nullptr) return CLR_INVALID;
  return dc->text_colour;
}

COLORREF SetBkColor(HDC dc, COLORREF colour) {
  if (Refused(Operation::kSetBkColor, dc, colour) || dc == nullptr) return CLR_INVALID;
  return std::exchange(dc->bk_colour, colour);
}

int SetBkMode(HDC dc, int mode) {
  if (Refused(Operation::kSetBkMode, dc, mode) || dc == nullptr) return 0;
  return std::exchange(dc->bk_mode, mode);
}

std::uint32_t SetTextAlign(HDC dc, std::uint32_t align) {
  if (Refused(Operation::kSetTextAlign, dc, align) || dc == nullptr) return 0;
  return std::exchange(dc->text_align, align);
}

bool GetTextExtentPoint32W(HDC dc, std::u16string_view text, SIZE& size) {
  if (Refused(Operation::kGetTextExtentPoint32W, dc, text)) return false;
  return MeasureLine(dc, text, size);
}

bool GetTextExtentPoint32A(HDC dc, std::string_view text, Long count, SIZE& size) {
  if (Refused(Operation::kGetTextExtentPoint32A, dc, text, count)) return false;
  const auto bytes = std::min(text.size(), static_cast<std::size_t>(std::max(count, 0)));
  return MeasureLine(dc, MultiByteToWideChar(CP_ACP, text.substr(0, bytes)), size);
}

bool GetCharABCWidthsA(HDC dc, unsigned code, ABC& widths) {
  if (Refused(Operation::kGetCharABCWidthsA, dc, code)) return false;
  if (dc == nullptr || code > 0xFF) return false;
  const char byte = static_cast<char>(code);
  headless::Face& face = dc->SelectedFont().RealFace();
  face.ForEachGlyph(MultiByteToWideChar(CP_ACP, {&byte, 1}), [&](const headless::Glyph& glyph, std::size_t) {
    const headless::Ink ink = face.InkOf(glyph);
    // The black box of a blank is one pixel.
    const bool blank = ink.right <= ink.left;
    const Long lead = blank ? 0 : ink.left, box = blank ? 1 : ink.right - ink.left;
    widths = {lead, static_cast<std::uint32_t>(box), glyph.advance - lead - box};
    return true;
  });
  return true;
}

bool TextOutW(HDC dc, Long x, Long y, std::u16string_view text) {
  if (Refused(Operation::kTextOutW, dc, x, y, text)) return false;
  return dc != nullptr && DrawAt(dc, x, y, dc->surface.Bounds(), text);
}

bool ExtTextOutW(HDC dc, Long x, Long y, std::uint32_t options, const RECT* rect, std::u16string_view text) {
  if (Refused(Operation::kExtTextOutW, dc, x, y, options, rect, text)) return false;
  if (dc == nullptr) return false;
  return DrawAt(dc, x, y, headless::RoomFor(*dc, options, rect), text);
}

}  // namespace marklet
