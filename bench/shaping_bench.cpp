// Wrapped paragraphs of justified and complex text: a line analysed twice by the script processor, against
// one Pango layout of the whole paragraph.
#include <benchmark/benchmark.h>
#include <pango/pangocairo.h>

#include <string>

#include "bitmaps/cdib24.h"
#include "captions.h"
#include "paragraphs.h"
#include "platform/gdi.h"
#include "platform/shared/std_font.h"
#include "platform/system.h"
#include "platform/text.h"
#include "text/shaping.h"

namespace marklet::bench {
namespace {

void Marklet(benchmark::State& state, const Paragraph& paragraph, std::size_t length) {
  CDib24 surface;
  surface.Create(kColumn, kVisible);
  StdFont font;
  font.PutName(u"DejaVu Sans");
  font.PutSize(kFontPoints);
  const HGDIOBJ former = SelectObject(surface.hDC(), font.hFont());
  SetBkMode(surface.hDC(), 1);
  const std::u16string text = TextOf(paragraph, length);
  while (state.KeepRunning()) {
    SetTextAlign(surface.hDC(), 0);
    DrawScriptString(surface.hDC(), 4, {0, 0, kColumn, kVisible}, text, 0, 0,
                     {.rtl = paragraph.rtl, .justified = paragraph.justified});
  }
  SelectObject(surface.hDC(), former);
}

void Pango(benchmark::State& state, const Paragraph& paragraph, std::size_t length) {
  cairo_surface_t* const surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, kColumn, kVisible);
  cairo_t* const cairo = cairo_create(surface);
  PangoLayout* const layout = pango_cairo_create_layout(cairo);
  PangoFontDescription* const font = pango_font_description_from_string(kFamily);
  pango_font_description_set_absolute_size(font, kFontPixels * PANGO_SCALE);
  pango_layout_set_font_description(layout, font);
  pango_font_description_free(font);
  pango_layout_set_width(layout, kColumn * PANGO_SCALE);
  pango_layout_set_justify(layout, paragraph.justified);
  const std::string text = WideCharToMultiByte(CP_UTF8, TextOf(paragraph, length));
  while (state.KeepRunning()) {
    pango_layout_set_text(layout, "", 0);
    pango_layout_set_text(layout, text.data(), static_cast<int>(text.size()));
    cairo_move_to(cairo, 0, 0);
    pango_cairo_show_layout(cairo, layout);
  }
  g_object_unref(layout);
  cairo_destroy(cairo);
  cairo_surface_destroy(surface);
}

void Register(const Paragraph& paragraph, std::size_t length) {
  const std::string name = std::string("paragraph/") + paragraph.name + "/" + std::to_string(length) + "/";
  benchmark::RegisterBenchmark((name + "marklet").c_str(), [&paragraph, length](benchmark::State& state) {
    Marklet(state, paragraph, length);
  });
  benchmark::RegisterBenchmark((name + "pango").c_str(), [&paragraph, length](benchmark::State& state) {
    Pango(state, paragraph, length);
  });
}

const bool kRegistered = [] {
  for (const Paragraph& paragraph : kParagraphs)
    for (const std::size_t length : kParagraphLengths) Register(paragraph, length);
  return true;
}();

}  // namespace
}  // namespace marklet::bench
