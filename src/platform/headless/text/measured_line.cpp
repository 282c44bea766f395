#include "platform/headless/text/measured_line.h"

#include <algorithm>

#include "platform/headless/text/complex_script.h"
#include "platform/headless/text/shaping.h"

namespace marklet::headless {
namespace {

bool IsLetterOrDigit(char16_t c) {
  return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9');
}

// Glyphs reach outside their advance by less than the line's height.
void DrawPlain(const Canvas& canvas, Face& face, std::u16string_view text, std::int64_t x,
               std::int64_t baseline) {
  const std::int64_t reach = face.Height();
  face.ForEachGlyph(text, [&](Glyph& glyph, std::size_t) {
    if (x + glyph.advance + reach > canvas.clip.left) face.Draw(canvas, glyph, x, baseline);
    x += glyph.advance;
    return x - reach < canvas.clip.right;
  });
}

}  // namespace

bool NeedsShaping(const TextLine& line) {
  if (IsComplex(line.text)) return true;
  return line.rtl && !std::all_of(line.text.begin(), line.text.end(), IsLetterOrDigit);
}

void DrawPlaces(const Canvas& canvas, Face& face, const ShapedText& shaped, std::int64_t x,
                std::int64_t baseline) {
  for (const ShapedText::Place& place : shaped.places)
    face.Draw(canvas, *place.glyph, x + place.x, baseline + place.y);
}

void FillBar(const Canvas& canvas, const Face::Bar& bar, std::int64_t x, std::int64_t baseline,
             std::int64_t width) {
  const std::int64_t top = baseline + bar.top;
  FillBox(canvas.surface, Intersect({x, top, x + width, top + bar.thickness}, canvas.clip), canvas.colour);
}

std::int64_t WidthOf(Font& font, const TextLine& line) {
  Face& face = font.RealFace();
  if (NeedsShaping(line)) return face.Shaped(line)->width;
  std::int64_t width = 0;
  face.ForEachGlyph(line.text, [&width](const Glyph& glyph, std::size_t) {
    width += glyph.advance;
    return true;
  });
  return width;
}

void UnitWidths(Font& font, const TextLine& line, std::vector<Long>& widths) {
  Face& face = font.RealFace();
  if (NeedsShaping(line)) {
    widths = face.Shaped(line)->unit_widths;
    return;
  }
  widths.clear();
  widths.reserve(line.text.size());
  face.ForEachGlyph(line.text, [&widths](const Glyph& glyph, std::size_t units) {
    widths.push_back(glyph.advance);
    if (units == 2) widths.push_back(0);
    return true;
  });
}

LineStretch StretchOf(Font& font, const TextLine& line, std::size_t unit) {
  if (NeedsShaping(line)) {
    const auto shaped = font.RealFace().Shaped(line);
    const std::int64_t left = shaped->unit_lefts[unit];
    return {left, left + shaped->unit_widths[unit]};
  }
  return {WidthOf(font, {line.text.substr(0, unit)}), WidthOf(font, {line.text.substr(0, unit + 1)})};
}

void DrawLine(const Canvas& canvas, Font& font, const TextLine& line, std::int64_t x, std::int64_t baseline,
              std::int64_t width) {
  if (canvas.clip.Empty()) return;
  Face& face = font.RealFace();
  if (NeedsShaping(line))
    DrawPlaces(canvas, face, *face.Shaped(line), x, baseline);
  else
    DrawPlain(canvas, face, line.text, x, baseline);
  if (font.record.lfUnderline) FillBar(canvas, face.Underline(), x, baseline, width);
  if (font.record.lfStrikeOut) FillBar(canvas, face.StrikeOut(), x, baseline, width);
}

}  // namespace marklet::headless
