// One typeface at one size, weight and slant: its metrics, and its glyphs, each drawn once and then kept.
//
// Advances are whole pixels, as hinted text on a raster display has them, so that the width of a string is
// the sum of its characters. Characters that the typeface lacks come from the next font that has them; what
// no font has is drawn as a box.
#pragma once

#include <cairo.h>
#include <pango/pango.h>

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/headless/pixels/raster.h"
#include "platform/headless/pixels/surface.h"
#include "platform/text.h"

namespace marklet::headless {

class FontSystem;   // the font map of a thread
struct ShapedText;  // shaping.h
struct TextLine;    // measured_line.h

// Where to draw, and in which colour.
struct Canvas {
  Canvas(const Surface& its_surface, const Box& its_clip, COLORREF its_colour)
      : surface(its_surface),
        clip(Intersect(its_clip, its_surface.Bounds())),
        colour(its_colour),
        colour_bytes(its_colour, its_surface.bytes_per_pixel) {}

  Surface surface;
  Box clip;  // within the surface
  COLORREF colour;
  ColourBytes colour_bytes;
};

struct Glyph {
  enum class Kind : std::uint8_t { kInk, kBlank, kMissing };

  // Made when it is first drawn on a surface of its depth.
  struct Mask {
    bool made = false;
    Long left = 0, top = 0;  // of the first pixel, from the pen, y down from the baseline
    Coverage coverage;       // spread out for BlendSpread
    std::unique_ptr<std::uint8_t[]> memory;
  };

  Kind kind = Kind::kBlank;
  Long advance = 0;                     // pixels
  cairo_scaled_font_t* font = nullptr;  // kept alive by the face
  unsigned long index = 0;              // in that font
  Mask masks[2];                        // for three and for four bytes a pixel
};

struct Ink {
  Long left, top, right, bottom;  // from the pen, y down from the baseline; empty for a blank
};

class Face {
 public:
  explicit Face(const LOGFONTW& record);
  ~Face();
  Face(const Face&) = delete;
  Face& operator=(const Face&) = delete;

  // Whether a face of this name differs from one without a name.
  static bool IsKnown(std::u16string_view name);

  Long Ascent() const { return ascent_; }
  Long Descent() const { return descent_; }
  Long Height() const { return ascent_ + descent_; }

  struct Bar {
    Long top, thickness;  // pixels below the baseline
  };
  Bar Underline();
  Bar StrikeOut();

  // Calls `visit(glyph, units)` for each character of a text that needs no shaping, until it answers false.
  // `units` is how many code units the character has.
  template <typename Visit>
  void ForEachGlyph(std::u16string_view text, Visit&& visit) {
    for (std::size_t i = 0; i < text.size();) {
      const std::size_t start = i;
      Glyph* glyph = (*pages_[text[i] >> 8])[text[i] & 0xFF];
      if (glyph == nullptr) [[unlikely]]
        glyph = &Find(text, i);
      else
        ++i;
      if (!visit(*glyph, i - start)) return;
    }
  }

  // The glyph of a font that shaping has chosen.
  Glyph& GlyphOf(PangoFont* font, unsigned index);
  Glyph& MissingGlyph() { return missing_; }

  void Draw(const Canvas& canvas, Glyph& glyph, std::int64_t x, std::int64_t baseline);
  Ink InkOf(const Glyph& glyph) const;

  // A text in its shaped form. Short texts stay in a bounded store.
  std::shared_ptr<const ShapedText> Shaped(const TextLine& line);

  // For shaping: the context to itemise with, and by how much its results are to be multiplied.
  PangoContext* ShapingContext();
  double Scale() const { return scale_; }
  FontSystem& System() const { return *system_; }

  // What shaping has made of a blank that is an item of its own, as the one after a word is whose script runs
  // the other way.
  struct LoneBlank {
    PangoFont* font;
    int script, level;
    Glyph* glyph;
    double advance, x, y;
  };
  // The glyph must be one that GlyphOf gave for the blank's font.
  void Keep(const LoneBlank& blank);
  const LoneBlank* KeptBlank(PangoFont* font, int script, int level) const;

 private:
  using Page = std::array<Glyph*, 256>;
  static const Page kEmptyPage;

  Glyph& Find(std::u16string_view text, std::size_t& position);
  Glyph& Resolve(char32_t c);
  void LoadFonts(Long em, PangoContext* context);
  void Measure(const LOGFONTW& record);
  void MakeMask(const Glyph& glyph, int bytes_per_pixel, Glyph::Mask& mask);
  void DropMasks();
  void DrawOutline(const Canvas& canvas, const Glyph& glyph, std::int64_t x, std::int64_t baseline);
  void DrawMissing(const Canvas& canvas, std::int64_t x, std::int64_t baseline);
  PangoFontMetrics* Metrics();

  struct GlyphKey {
    const void* font;
    unsigned index;
    friend bool operator==(const GlyphKey&, const GlyphKey&) = default;
  };
  struct HashKey {
    std::size_t operator()(const GlyphKey& key) const {
      return std::hash<const void*>()(key.font) * 31 + key.index;
    }
  };

  struct HashText {
    using is_transparent = void;
    std::size_t operator()(std::u16string_view text) const { return std::hash<std::u16string_view>()(text); }
  };

  std::shared_ptr<FontSystem> system_;
  PangoFontDescription* description_ = nullptr;
  PangoFontset* fontset_ = nullptr;
  PangoFontMetrics* metrics_ = nullptr;
  std::vector<PangoFont*> fonts_;  // referenced, so that their scaled fonts stay
  Long em_ = 0;
  double scale_ = 1;  // pixels of this face to pixels of the font it is made from
  Long ascent_ = 0, descent_ = 0;

  std::array<const Page*, 256> pages_;  // by the high byte of a code unit; kEmptyPage until one is needed
  std::array<std::unique_ptr<Page>, 256> own_pages_;
  std::unordered_map<char32_t, Glyph*> astral_;
  std::unordered_map<GlyphKey, Glyph, HashKey> glyphs_;
  Glyph missing_, blank_;
  std::vector<LoneBlank> lone_blanks_;
  std::size_t mask_bytes_ = 0;
  // By text, from left to right and from right to left.
  std::unordered_map<std::u16string, std::shared_ptr<const ShapedText>, HashText, std::equal_to<>> shaped_[2];
};

}  // namespace marklet::headless
