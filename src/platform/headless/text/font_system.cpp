#include "platform/headless/text/font_system.h"

#include <pango/pangofc-fontmap.h>

namespace marklet::headless {
namespace {

// Everything is set, so that neither the desktop's settings nor its resolution change a picture.
PangoContext* MakeContext(PangoFontMap* map, cairo_hint_style_t style, cairo_hint_metrics_t metrics) {
  PangoContext* context = pango_font_map_create_context(map);
  cairo_font_options_t* options = cairo_font_options_create();
  cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
  cairo_font_options_set_subpixel_order(options, CAIRO_SUBPIXEL_ORDER_DEFAULT);
  cairo_font_options_set_hint_style(options, style);
  cairo_font_options_set_hint_metrics(options, metrics);
  pango_cairo_context_set_font_options(context, options);
  cairo_font_options_destroy(options);
  pango_cairo_context_set_resolution(context, 96);
  pango_context_set_language(context, pango_language_from_string("en"));
  return context;
}

}  // namespace

FontSystem::FontSystem()
    : map_(pango_cairo_font_map_new()),
      hinted_(MakeContext(map_, CAIRO_HINT_STYLE_SLIGHT, CAIRO_HINT_METRICS_ON)),
      linear_(MakeContext(map_, CAIRO_HINT_STYLE_NONE, CAIRO_HINT_METRICS_OFF)),
      families_(pango_fc_font_map_get_config(PANGO_FC_FONT_MAP(map_))),
      plain_advances_{pango_attr_font_features_new("-kern,-liga,-clig"), nullptr} {}

FontSystem::~FontSystem() {
  pango_attribute_destroy(static_cast<PangoAttribute*>(plain_advances_.data));
  g_object_unref(hinted_);
  g_object_unref(linear_);
  g_object_unref(map_);
}

std::shared_ptr<FontSystem> FontSystem::OfThread() {
  thread_local const auto system = std::make_shared<FontSystem>();
  return system;
}

}  // namespace marklet::headless
