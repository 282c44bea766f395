#include "platform/headless/text/shaping.h"

#include <pango/pango.h>

#include <algorithm>
#include <cmath>

#include "base/rounding.h"
#include "platform/headless/text/font_system.h"
#include "platform/headless/text/missing_characters.h"
#include "platform/headless/text/utf.h"

namespace marklet::headless {
namespace {

constexpr char32_t kNoCharacter = 0xFFFE;  // never in a font, so that it comes out as the missing glyph

bool Joins(const PangoItem* item) {
  switch (static_cast<GUnicodeScript>(item->analysis.script)) {
    case G_UNICODE_SCRIPT_ARABIC:
    case G_UNICODE_SCRIPT_SYRIAC:
    case G_UNICODE_SCRIPT_MONGOLIAN:
    case G_UNICODE_SCRIPT_NKO:
    case G_UNICODE_SCRIPT_MANDAIC:
    case G_UNICODE_SCRIPT_PHAGS_PA:
    case G_UNICODE_SCRIPT_ADLAM:
      return true;
    default:
      return false;
  }
}

// From each mark the shaping engine looks back for the letter that it stands on, past all the marks between
// them. That takes quadratic time, so that more marks than anybody can read on one letter are shaped apart.
constexpr int kMostMarks = 128;

// How many bytes of a text are shaped in one go.
int ShapedAtOnce(const char* text, int length) {
  if (length <= kMostMarks) return length;
  int marks = 0;
  for (const char* at = text; at < text + length; at = g_utf8_next_char(at)) {
    marks = g_unichar_ismark(g_utf8_get_char(at)) ? marks + 1 : 0;
    if (marks > kMostMarks) return static_cast<int>(at - text);
  }
  return length;
}

class Shaper {
 public:
  Shaper(Face& face, const EncodedText& text)
      : face_(face), text_(text), length_(static_cast<int>(text.bytes.size())) {}
  ShapedRuns Run(bool rtl);

 private:
  void ShapeItem(const PangoItem* item);
  void ShapeBlank(const PangoItem* item);
  void ShapePart(const PangoItem* item, int start, int length);
  Piece PieceOf(const PangoItem* item, const PangoGlyphInfo& info, int byte);
  std::size_t UnitAt(int byte) const { return text_.units[static_cast<std::size_t>(byte)]; }

  Face& face_;
  const EncodedText& text_;
  const int length_;
  ShapedRuns result_;
};

ShapedRuns Shaper::Run(bool rtl) {
  GList* logical =
      pango_itemize_with_base_dir(face_.ShapingContext(), rtl ? PANGO_DIRECTION_RTL : PANGO_DIRECTION_LTR,
                                  text_.bytes.data(), 0, length_, nullptr, nullptr);
  result_.pieces.reserve(text_.bytes.size());
  for (GList* node = logical; node != nullptr; node = node->next) {
    auto* item = static_cast<PangoItem*>(node->data);
    // Lent for the shaping; handed in with the text, it would be gone through there and copied to each item.
    item->analysis.extra_attrs = face_.System().PlainAdvances();
    ShapeItem(item);
    item->analysis.extra_attrs = nullptr;
    pango_item_free(item);
  }
  g_list_free(logical);
  return std::move(result_);
}

void Shaper::ShapeItem(const PangoItem* item) {
  if (item->length == 1 && text_.bytes[static_cast<std::size_t>(item->offset)] == ' ')
    return ShapeBlank(item);
  const int end = item->offset + item->length;
  for (int start = item->offset; start < end;) {
    const int length = ShapedAtOnce(text_.bytes.data() + start, end - start);
    ShapePart(item, start, length);
    start += length;
  }
}

// A word is often followed by a blank of its own, which comes out the same each time.
void Shaper::ShapeBlank(const PangoItem* item) {
  const PangoAnalysis& by = item->analysis;
  if (const Face::LoneBlank* kept = face_.KeptBlank(by.font, by.script, by.level)) {
    const std::size_t at = result_.pieces.size();
    result_.pieces.push_back({kept->glyph, UnitAt(item->offset), kept->advance, kept->x, kept->y});
    result_.runs.push_back({at, at + 1, by.level, Joins(item)});
    return;
  }
  ShapePart(item, item->offset, item->length);
  const PieceRun& run = result_.runs.back();
  if (run.past != run.first + 1) return;
  const Piece& piece = result_.pieces.back();
  if (piece.glyph != nullptr && piece.glyph != &face_.MissingGlyph())
    face_.Keep({by.font, by.script, by.level, piece.glyph, piece.advance, piece.x, piece.y});
}

void Shaper::ShapePart(const PangoItem* item, int start, int length) {
  PangoGlyphString* glyphs = pango_glyph_string_new();
  const PangoShapeFlags flags = face_.Scale() == 1 ? PANGO_SHAPE_ROUND_POSITIONS : PANGO_SHAPE_NONE;
  pango_shape_with_flags(text_.bytes.data() + start, length, text_.bytes.data(), length_, &item->analysis,
                         glyphs, flags);
  const std::size_t first = result_.pieces.size();
  for (int i = 0; i < glyphs->num_glyphs; ++i)
    result_.pieces.push_back(PieceOf(item, glyphs->glyphs[i], start + glyphs->log_clusters[i]));
  result_.runs.push_back({first, result_.pieces.size(), item->analysis.level, Joins(item)});
  pango_glyph_string_free(glyphs);
}

Piece Shaper::PieceOf(const PangoItem* item, const PangoGlyphInfo& info, int byte) {
  const double pixel = face_.Scale() / PANGO_SCALE;
  const bool missing = (info.glyph & PANGO_GLYPH_UNKNOWN_FLAG) != 0;
  Piece piece{nullptr, UnitAt(byte), info.geometry.width * pixel, info.geometry.x_offset * pixel,
              info.geometry.y_offset * pixel};
  if (missing) {
    NoteMissing(static_cast<char32_t>(info.glyph & ~PANGO_GLYPH_UNKNOWN_FLAG));
    piece.glyph = &face_.MissingGlyph();
    piece.advance = piece.glyph->advance;
  } else if (info.glyph != PANGO_GLYPH_EMPTY) {
    piece.glyph = &face_.GlyphOf(item->analysis.font, info.glyph);
  }
  return piece;
}

}  // namespace

char32_t ShapeableAs(char32_t c) {
  if (c == 0 || IsSurrogate(c)) return kNoCharacter;
  return c < 0x20 || (c >= 0x7F && c < 0xA0) ? U' ' : c;
}

ShapedRuns ShapeRuns(Face& face, const EncodedText& text, bool rtl) { return Shaper(face, text).Run(rtl); }

// Every stretch of runs at a level or above is turned round, from the highest level down to the lowest that
// runs from right to left. (Pango's own pango_reorder_items takes quadratic time.)
std::vector<PieceRun> InVisualOrder(std::vector<PieceRun> runs) {
  int highest = 0;
  for (const PieceRun& run : runs) highest = std::max(highest, run.level);
  for (int level = highest; level > 0; --level) {
    const auto below = [level](const PieceRun& run) { return run.level < level; };
    for (auto end = runs.begin(); end != runs.end();) {
      const auto start = std::find_if_not(end, runs.end(), below);
      end = std::find_if(start, runs.end(), below);
      std::reverse(start, end);
    }
  }
  return runs;
}

ShapedText Placed(const ShapedRuns& shaped, std::size_t units) {
  ShapedText result;
  result.unit_widths.resize(units);
  result.unit_lefts.resize(units);
  result.places.reserve(shaped.pieces.size());
  double pen = 0;
  for (const PieceRun& run : InVisualOrder(shaped.runs)) {
    for (std::size_t i = run.first; i < run.past; ++i) {
      const Piece& piece = shaped.pieces[i];
      if (piece.glyph != nullptr)
        result.places.push_back({piece.glyph, std::llround(pen + piece.x), std::llround(piece.y)});
      const std::int64_t before = std::llround(pen);
      if (result.unit_widths[piece.unit] == 0) result.unit_lefts[piece.unit] = before;
      pen += piece.advance;
      result.unit_widths[piece.unit] += static_cast<Long>(std::llround(pen) - before);
    }
  }
  result.width = static_cast<std::int64_t>(std::llround(pen));
  return result;
}

std::shared_ptr<const ShapedText> Shape(Face& face, const TextLine& line) {
  EncodedText encoded;
  encoded.bytes.reserve(line.text.size() * 3);
  encoded.units.reserve(line.text.size() * 3);
  for (std::size_t i = 0; i < line.text.size();) {
    const std::size_t unit = i;
    AppendUtf8(encoded.bytes, ShapeableAs(NextCodePoint(line.text, i)));
    encoded.units.resize(encoded.bytes.size(), unit);
  }
  return std::make_shared<const ShapedText>(Placed(ShapeRuns(face, encoded, line.rtl), line.text.size()));
}

}  // namespace marklet::headless
