#include "platform/headless/text/shaping.h"

#include <pango/pango.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "base/rounding.h"
#include "platform/headless/text/utf.h"

namespace marklet::headless {
namespace {

constexpr char32_t kNoCharacter = 0xFFFE;  // never in a font, so that it comes out as the missing glyph

// What the shaping engine is given for a character, so that it draws as in plain text.
char32_t Shapeable(char32_t c) {
  if (c == 0 || IsSurrogate(c)) return kNoCharacter;
  return c < 0x20 || (c >= 0x7F && c < 0xA0) ? U' ' : c;
}

// A text as the shaping engine reads it, and the code unit that each byte comes from.
struct EncodedText {
  explicit EncodedText(std::u16string_view text) {
    for (std::size_t i = 0; i < text.size();) {
      const std::size_t unit = i;
      AppendUtf8(bytes, Shapeable(NextCodePoint(text, i)));
      units.resize(bytes.size(), unit);
    }
  }
  std::string bytes;
  std::vector<std::size_t> units;
};

// From left to right: every stretch of items at a level or above is turned round, from the highest level down
// to the lowest that runs from right to left. (Pango's own pango_reorder_items takes quadratic time.)
std::vector<PangoItem*> InVisualOrder(const GList* logical) {
  std::vector<PangoItem*> items;
  int highest = 0;
  for (const GList* node = logical; node != nullptr; node = node->next) {
    items.push_back(static_cast<PangoItem*>(node->data));
    highest = std::max<int>(highest, items.back()->analysis.level);
  }
  for (int level = highest; level > 0; --level) {
    const auto below = [level](const PangoItem* item) { return item->analysis.level < level; };
    for (auto end = items.begin(); end != items.end();) {
      const auto start = std::find_if_not(end, items.end(), below);
      end = std::find_if(start, items.end(), below);
      std::reverse(start, end);
    }
  }
  return items;
}

class Shaper {
 public:
  Shaper(Face& face, const TextLine& line) : face_(face), encoded_(line.text), rtl_(line.rtl) {
    result_->unit_widths.resize(line.text.size());
    result_->unit_lefts.resize(line.text.size());
  }
  std::shared_ptr<const ShapedText> Run();

 private:
  void ShapeItem(PangoItem* item);
  void Place(PangoItem* item, const PangoGlyphInfo& info, int cluster);

  Face& face_;
  EncodedText encoded_;
  bool rtl_;
  double pen_ = 0;
  std::shared_ptr<ShapedText> result_ = std::make_shared<ShapedText>();
};

std::shared_ptr<const ShapedText> Shaper::Run() {
  const auto length = static_cast<int>(encoded_.bytes.size());
  PangoAttrList* attributes = pango_attr_list_new();
  // As in plain text, letters that need no joining stand at their advances.
  pango_attr_list_insert(attributes, pango_attr_font_features_new("kern=0,liga=0,clig=0"));
  GList* logical =
      pango_itemize_with_base_dir(face_.ShapingContext(), rtl_ ? PANGO_DIRECTION_RTL : PANGO_DIRECTION_LTR,
                                  encoded_.bytes.data(), 0, length, attributes, nullptr);
  pango_attr_list_unref(attributes);
  for (PangoItem* item : InVisualOrder(logical)) {
    ShapeItem(item);
    pango_item_free(item);
  }
  g_list_free(logical);
  result_->width = static_cast<std::int64_t>(std::llround(pen_));
  return std::move(result_);
}

void Shaper::ShapeItem(PangoItem* item) {
  PangoGlyphString* glyphs = pango_glyph_string_new();
  const PangoShapeFlags flags = face_.Scale() == 1 ? PANGO_SHAPE_ROUND_POSITIONS : PANGO_SHAPE_NONE;
  pango_shape_with_flags(encoded_.bytes.data() + item->offset, item->length, encoded_.bytes.data(),
                         static_cast<int>(encoded_.bytes.size()), &item->analysis, glyphs, flags);
  for (int i = 0; i < glyphs->num_glyphs; ++i) Place(item, glyphs->glyphs[i], glyphs->log_clusters[i]);
  pango_glyph_string_free(glyphs);
}

void Shaper::Place(PangoItem* item, const PangoGlyphInfo& info, int cluster) {
  const double pixel = face_.Scale() / PANGO_SCALE;
  const bool missing = (info.glyph & PANGO_GLYPH_UNKNOWN_FLAG) != 0;
  const double width = missing ? face_.MissingGlyph().advance : info.geometry.width * pixel;
  if (info.glyph != PANGO_GLYPH_EMPTY) {
    Glyph& glyph = missing ? face_.MissingGlyph() : face_.GlyphOf(item->analysis.font, info.glyph);
    result_->places.push_back({&glyph, std::llround(pen_ + info.geometry.x_offset * pixel),
                               std::llround(info.geometry.y_offset * pixel)});
  }
  const std::size_t unit =
      encoded_.units[static_cast<std::size_t>(item->offset) + static_cast<std::size_t>(cluster)];
  const std::int64_t before = std::llround(pen_);
  if (result_->unit_widths[unit] == 0) result_->unit_lefts[unit] = before;
  pen_ += width;
  result_->unit_widths[unit] += static_cast<Long>(std::llround(pen_) - before);
}

}  // namespace

std::shared_ptr<const ShapedText> Shape(Face& face, const TextLine& line) { return Shaper(face, line).Run(); }

}  // namespace marklet::headless
