#include "platform/headless/text/face.h"

#include <pango/pangocairo.h>
#include <pango/pangofc-font.h>

#include <algorithm>
#include <cmath>

#include "base/ascii.h"
#include "base/rounding.h"
#include "platform/headless/text/font_system.h"
#include "platform/headless/text/missing_characters.h"
#include "platform/headless/text/shaping.h"
#include "platform/headless/text/utf.h"

namespace marklet::headless {
namespace {

// Faces above the first size are made from the second and scaled, so that no size asks the font engine for
// more than it can do. Sizes end at the third.
constexpr Long kLargestHinted = 256, kOutlineSize = 1024, kLargestEm = 100'000;
constexpr Long kDefaultCell = 16;  // the cell height of a record that names none
// What one face keeps.
constexpr std::size_t kMostMaskBytes = 4 << 20, kMostShapedTexts = 256, kLongestShapedText = 256,
                      kMostLoneBlanks = 16;

// Families to look for in place of one that isn't there, by nearness of their widths.
struct Substitute {
  std::u16string_view name;
  const char* families;
};
constexpr Substitute kSubstitutes[] = {
    {u"Tahoma", "Tahoma,DejaVu Sans Condensed,sans"},     {u"Verdana", "Verdana,DejaVu Sans,sans"},
    {u"MS Sans Serif", "DejaVu Sans Condensed,sans"},     {u"MS Shell Dlg", "DejaVu Sans Condensed,sans"},
    {u"MS Shell Dlg 2", "DejaVu Sans Condensed,sans"},    {u"System", "DejaVu Sans Condensed,sans"},
    {u"Segoe UI", "Segoe UI,DejaVu Sans Condensed,sans"},
};

const Substitute* SubstituteFor(std::u16string_view name) {
  const auto found = std::find_if(std::begin(kSubstitutes), std::end(kSubstitutes),
                                  [name](const Substitute& row) { return SameWithoutCase(row.name, name); });
  return found == std::end(kSubstitutes) ? nullptr : found;
}

// A comma would separate families, and a NUL would end the name.
std::string FamilyOf(std::u16string_view name) {
  std::string family = ToUtf8(name.substr(0, name.find(u'\0')));
  std::replace(family.begin(), family.end(), ',', ' ');
  return family;
}

std::string FamiliesFor(std::u16string_view name) {
  if (const Substitute* substitute = SubstituteFor(name)) return substitute->families;
  const std::string family = FamilyOf(name);
  return family.empty() ? "sans" : family;
}

PangoFontDescription* Describe(const LOGFONTW& record) {
  PangoFontDescription* description = pango_font_description_new();
  pango_font_description_set_family(description, FamiliesFor(record.lfFaceName).c_str());
  const Long weight = record.lfWeight == 0 ? 400 : std::clamp(record.lfWeight, 100, 1000);
  pango_font_description_set_weight(description, static_cast<PangoWeight>(weight));
  pango_font_description_set_style(description, record.lfItalic ? PANGO_STYLE_ITALIC : PANGO_STYLE_NORMAL);
  return description;
}

bool IsNonCharacter(char32_t c) { return (c & 0xFFFE) == 0xFFFE || (c >= 0xFDD0 && c <= 0xFDEF); }
bool IsControl(char32_t c) { return c < 0x20 || (c >= 0x7F && c < 0xA0); }

cairo_scaled_font_t* ScaledFont(PangoFont* font) {
  return pango_cairo_font_get_scaled_font(reinterpret_cast<PangoCairoFont*>(font));
}

// In ems.
struct Proportions {
  double ascent = 0.75, descent = 0.25;
};

Proportions ProportionsOf(PangoFontset* fontset) {
  PangoFont* font = fontset != nullptr ? pango_fontset_get_font(fontset, 'x') : nullptr;
  if (font == nullptr) return {};
  cairo_font_extents_t extents{};
  cairo_scaled_font_extents(ScaledFont(font), &extents);
  g_object_unref(font);
  if (extents.ascent + extents.descent <= 0) return {};
  return {extents.ascent / kOutlineSize, extents.descent / kOutlineSize};
}

cairo_text_extents_t ExtentsOf(const Glyph& glyph) {
  cairo_glyph_t place = {glyph.index, 0, 0};
  cairo_text_extents_t extents{};
  if (glyph.font != nullptr) cairo_scaled_font_glyph_extents(glyph.font, &place, 1, &extents);
  return extents;
}

// Memory for one coverage mask, and a drawing context on it.
class CoveragePainter {
 public:
  CoveragePainter(int width, int height)
      : width_(width),
        height_(height),
        surface_(cairo_image_surface_create(CAIRO_FORMAT_A8, width, height)),
        cairo_(cairo_create(surface_)) {}
  ~CoveragePainter() {
    cairo_destroy(cairo_);
    cairo_surface_destroy(surface_);
  }
  CoveragePainter(const CoveragePainter&) = delete;
  CoveragePainter& operator=(const CoveragePainter&) = delete;

  cairo_t* Cairo() const { return cairo_; }
  // Valid as long as the painter; empty when there was no memory.
  Coverage Result() const {
    cairo_surface_flush(surface_);
    const unsigned char* rows = cairo_image_surface_get_data(surface_);
    if (rows == nullptr) return {};
    return {rows, width_, height_, cairo_image_surface_get_stride(surface_)};
  }

 private:
  int width_, height_;
  cairo_surface_t* surface_;
  cairo_t* cairo_;
};

// The part of a mask that isn't clear; empty, but inside, when all of it is.
Ink InkIn(const Coverage& mask) {
  Ink ink = {mask.width, mask.height, 0, 0};
  for (Long y = 0; y < mask.height; ++y)
    for (Long x = 0; x < mask.width; ++x) {
      if (mask.rows[y * mask.stride + x] == 0) continue;
      ink = {std::min(ink.left, x), std::min(ink.top, y), std::max(ink.right, x + 1),
             std::max(ink.bottom, y + 1)};
    }
  return ink.right == 0 ? Ink{} : ink;
}

// Copies a part of a mask, spread out for a depth; returns the bytes it takes.
std::size_t Spread(const Coverage& drawn, const Ink& part, int bytes_per_pixel, Glyph::Mask& mask) {
  const Long width = part.right - part.left, height = part.bottom - part.top;
  const std::ptrdiff_t stride = SpreadStride(width, bytes_per_pixel);
  const std::size_t bytes = static_cast<std::size_t>(stride) * static_cast<std::size_t>(height);
  mask.memory = std::make_unique<std::uint8_t[]>(bytes);
  mask.coverage = {mask.memory.get(), width, height, stride, bytes_per_pixel};
  for (Long y = 0; y < height; ++y)
    for (Long x = 0; x < width; ++x)
      std::fill_n(mask.memory.get() + y * stride + std::ptrdiff_t{x} * bytes_per_pixel, 3,
                  drawn.rows[(part.top + y) * drawn.stride + part.left + x]);
  return bytes;
}

Long Floor(double value) { return RoundHalfEven(std::floor(value)); }
Long Ceil(double value) { return RoundHalfEven(std::ceil(value)); }

}  // namespace

const Face::Page Face::kEmptyPage{};

bool Face::IsKnown(std::u16string_view name) {
  return SubstituteFor(name) != nullptr || FontSystem::OfThread()->Families().Has(FamilyOf(name));
}

Face::Face(const LOGFONTW& record) : system_(FontSystem::OfThread()), description_(Describe(record)) {
  pages_.fill(&kEmptyPage);
  Measure(record);
  missing_.kind = Glyph::Kind::kMissing;
  missing_.advance = std::max(3, em_ * 6 / 10);
  std::size_t at = 0;
  blank_.advance = Find(u" ", at).advance;
}

Face::~Face() {
  if (metrics_ != nullptr) pango_font_metrics_unref(metrics_);
  for (PangoFont* font : fonts_) g_object_unref(font);
  if (fontset_ != nullptr) g_object_unref(fontset_);
  pango_font_description_free(description_);
}

PangoContext* Face::ShapingContext() {
  PangoContext* context = scale_ == 1 ? system_->Hinted() : system_->Linear();
  pango_context_set_font_description(context, description_);
  return context;
}

void Face::LoadFonts(Long em, PangoContext* context) {
  if (fontset_ != nullptr) g_object_unref(fontset_);
  pango_font_description_set_absolute_size(description_, double{PANGO_SCALE} * em);
  fontset_ =
      pango_font_map_load_fontset(system_->Map(), context, description_, pango_language_from_string("en"));
}

// The height of a line follows from the outlines' proportions, without hints, which would add to it. A
// positive height is that of the cell, and gives the em by the same proportions.
void Face::Measure(const LOGFONTW& record) {
  constexpr Long kLargestCell = 2 * kLargestEm;
  LoadFonts(kOutlineSize, system_->Linear());
  const Proportions proportions = ProportionsOf(fontset_);
  const Long cell = record.lfHeight == 0 ? kDefaultCell : std::min(record.lfHeight, kLargestCell);
  const double em = cell < 0 ? -double(cell) : cell / (proportions.ascent + proportions.descent);
  em_ = RoundHalfEven(std::clamp(em, 1.0, double{kLargestEm}));
  descent_ = RoundHalfEven(proportions.descent * em_);
  ascent_ = cell > 0 ? std::max(0, cell - descent_) : RoundHalfEven(proportions.ascent * em_);
  if (em_ <= kLargestHinted)
    LoadFonts(em_, system_->Hinted());
  else
    scale_ = double(em_) / kOutlineSize;
}

Glyph& Face::Find(std::u16string_view text, std::size_t& position) {
  const char32_t c = NextCodePoint(text, position);
  if (c < 0x10000 && !IsSurrogate(c)) {
    std::unique_ptr<Page>& page = own_pages_[c >> 8];
    if (page == nullptr) {
      page = std::make_unique<Page>();
      pages_[c >> 8] = page.get();
    }
    return *((*page)[c & 0xFF] = &Resolve(c));
  }
  if (IsSurrogate(c)) return missing_;
  const auto [place, fresh] = astral_.try_emplace(c, nullptr);
  if (fresh) place->second = &Resolve(c);
  return *place->second;
}

Glyph& Face::Resolve(char32_t c) {
  if (c == 0 || IsNonCharacter(c) || fontset_ == nullptr) return missing_;
  if (IsControl(c)) return blank_;
  PangoFont* font = pango_fontset_get_font(fontset_, c);
  if (font == nullptr) {
    NoteMissing(c);
    return missing_;
  }
  const unsigned index = pango_fc_font_get_glyph(reinterpret_cast<PangoFcFont*>(font), c);
  Glyph& glyph = index != 0 ? GlyphOf(font, index) : missing_;
  g_object_unref(font);
  if (index == 0) NoteMissing(c);
  return glyph;
}

Glyph& Face::GlyphOf(PangoFont* font, unsigned index) {
  const auto [place, fresh] = glyphs_.try_emplace(GlyphKey{font, index});
  Glyph& glyph = place->second;
  if (!fresh) return glyph;
  if (std::find(fonts_.begin(), fonts_.end(), font) == fonts_.end())
    fonts_.push_back(static_cast<PangoFont*>(g_object_ref(font)));
  glyph.font = ScaledFont(font);
  glyph.index = index;
  const cairo_text_extents_t extents = ExtentsOf(glyph);
  glyph.kind = extents.width > 0 && extents.height > 0 ? Glyph::Kind::kInk : Glyph::Kind::kBlank;
  glyph.advance = std::max(0, RoundHalfEven(extents.x_advance * scale_));
  return glyph;
}

Ink Face::InkOf(const Glyph& glyph) const {
  if (glyph.kind == Glyph::Kind::kBlank) return {};
  if (glyph.kind == Glyph::Kind::kMissing) return {1, -ascent_ * 3 / 4, missing_.advance - 1, 0};
  const cairo_text_extents_t extents = ExtentsOf(glyph);
  return {Floor(extents.x_bearing * scale_), Floor(extents.y_bearing * scale_),
          Ceil((extents.x_bearing + extents.width) * scale_),
          Ceil((extents.y_bearing + extents.height) * scale_)};
}

void Face::Draw(const Canvas& canvas, Glyph& glyph, std::int64_t x, std::int64_t baseline) {
  switch (glyph.kind) {
    case Glyph::Kind::kBlank:
      return;
    case Glyph::Kind::kMissing:
      return DrawMissing(canvas, x, baseline);
    case Glyph::Kind::kInk:
      break;
  }
  if (scale_ != 1) return DrawOutline(canvas, glyph, x, baseline);
  const int depth = canvas.surface.bytes_per_pixel;
  Glyph::Mask& mask = glyph.masks[depth - 3];
  if (!mask.made) MakeMask(glyph, depth, mask);
  const std::int64_t left = x + mask.left, top = baseline + mask.top;
  if (left >= canvas.clip.left && left + mask.coverage.width <= canvas.clip.right && top >= canvas.clip.top &&
      top + mask.coverage.height <= canvas.clip.bottom)
    BlendSpread(canvas.surface, left, top, mask.coverage, canvas.colour_bytes);
  else
    BlendCoverage(canvas.surface, canvas.clip, left, top, mask.coverage, canvas.colour);
}

// A mask of the glyph at the face's own size, cut to what it covers.
void Face::MakeMask(const Glyph& glyph, int bytes_per_pixel, Glyph::Mask& mask) {
  if (mask_bytes_ > kMostMaskBytes) DropMasks();
  mask.made = true;
  const Ink ink = InkOf(glyph);
  // Hinting may move an edge past the ink that it reports, by a part of a pixel.
  const Long width = ink.right - ink.left + 2, height = ink.bottom - ink.top + 2;
  if (width > 4 * kLargestHinted || height > 4 * kLargestHinted) return;  // a broken font
  const CoveragePainter painter(width, height);
  cairo_set_scaled_font(painter.Cairo(), glyph.font);
  cairo_glyph_t place = {glyph.index, 1.0 - ink.left, 1.0 - ink.top};
  cairo_show_glyphs(painter.Cairo(), &place, 1);
  const Coverage drawn = painter.Result();
  const Ink tight = InkIn(drawn);
  mask.left = ink.left - 1 + tight.left;
  mask.top = ink.top - 1 + tight.top;
  mask_bytes_ += Spread(drawn, tight, bytes_per_pixel, mask);
}

void Face::DropMasks() {
  for (auto& [key, glyph] : glyphs_)
    for (Glyph::Mask& mask : glyph.masks) mask = {};
  mask_bytes_ = 0;
}

// A large glyph, never kept: its outline is filled where it can be seen.
void Face::DrawOutline(const Canvas& canvas, const Glyph& glyph, std::int64_t x, std::int64_t baseline) {
  const Ink ink = InkOf(glyph);
  const Box visible =
      Intersect({x + ink.left, baseline + ink.top, x + ink.right, baseline + ink.bottom}, canvas.clip);
  if (visible.Empty()) return;
  const auto width = static_cast<int>(visible.Width()), height = static_cast<int>(visible.Height());
  const CoveragePainter painter(width, height);
  cairo_t* cairo = painter.Cairo();
  cairo_translate(cairo, static_cast<double>(x - visible.left), static_cast<double>(baseline - visible.top));
  cairo_scale(cairo, scale_, scale_);
  cairo_set_scaled_font(cairo, glyph.font);
  cairo_glyph_t place = {glyph.index, 0, 0};
  cairo_glyph_path(cairo, &place, 1);
  cairo_fill(cairo);
  BlendCoverage(canvas.surface, canvas.clip, visible.left, visible.top, painter.Result(), canvas.colour);
}

// An upright box, one pixel thick or a sixteenth of the em.
void Face::DrawMissing(const Canvas& canvas, std::int64_t x, std::int64_t baseline) {
  const Ink ink = InkOf(missing_);
  const Box box = {x + ink.left, baseline + ink.top, x + ink.right, baseline + ink.bottom};
  const Long pen = std::max(1, em_ / 16);
  const auto fill = [&canvas](const Box& bar) {
    FillBox(canvas.surface, Intersect(bar, canvas.clip), canvas.colour);
  };
  fill({box.left, box.top, box.right, box.top + pen});
  fill({box.left, box.bottom - pen, box.right, box.bottom});
  fill({box.left, box.top, box.left + pen, box.bottom});
  fill({box.right - pen, box.top, box.right, box.bottom});
}

std::shared_ptr<const ShapedText> Face::Shaped(const TextLine& line) {
  if (line.text.size() > kLongestShapedText) return Shape(*this, line);
  auto& store = shaped_[line.rtl ? 1 : 0];
  if (const auto found = store.find(line.text); found != store.end()) return found->second;
  if (store.size() == kMostShapedTexts) store.clear();
  return store.emplace(line.text, Shape(*this, line)).first->second;
}

void Face::Keep(const LoneBlank& blank) {
  if (lone_blanks_.size() == kMostLoneBlanks) lone_blanks_.clear();
  lone_blanks_.push_back(blank);
}

const Face::LoneBlank* Face::KeptBlank(PangoFont* font, int script, int level) const {
  const auto found = std::find_if(lone_blanks_.begin(), lone_blanks_.end(), [&](const LoneBlank& blank) {
    return blank.font == font && blank.script == script && blank.level == level;
  });
  return found != lone_blanks_.end() ? &*found : nullptr;
}

PangoFontMetrics* Face::Metrics() {
  if (metrics_ == nullptr)
    metrics_ = pango_context_get_metrics(ShapingContext(), description_, pango_language_from_string("en"));
  return metrics_;
}

Face::Bar Face::Underline() {
  PangoFontMetrics* metrics = Metrics();
  const double pixel = scale_ / PANGO_SCALE;
  return {RoundHalfEven(-pango_font_metrics_get_underline_position(metrics) * pixel),
          std::max(1, RoundHalfEven(pango_font_metrics_get_underline_thickness(metrics) * pixel))};
}

Face::Bar Face::StrikeOut() {
  PangoFontMetrics* metrics = Metrics();
  const double pixel = scale_ / PANGO_SCALE;
  return {RoundHalfEven(-pango_font_metrics_get_strikethrough_position(metrics) * pixel),
          std::max(1, RoundHalfEven(pango_font_metrics_get_strikethrough_thickness(metrics) * pixel))};
}

}  // namespace marklet::headless
