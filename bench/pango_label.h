// The peer of a label: a caption in Pango's own markup, laid out and drawn by Cairo.
#pragma once

#include <pango/pangocairo.h>

#include <string>

#include "captions.h"

namespace marklet::bench {

struct PangoLabel {
  cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, kWidth, kHeight);
  cairo_t* context = cairo_create(surface);
  PangoLayout* layout = pango_cairo_create_layout(context);

  PangoLabel() {
    cairo_set_source_rgb(context, 1, 1, 1);
    cairo_paint(context);
    cairo_set_source_rgb(context, 0, 0, 0);
    PangoFontDescription* font = pango_font_description_from_string(kFamily);
    pango_font_description_set_absolute_size(font, kFontPixels * PANGO_SCALE);
    pango_layout_set_font_description(layout, font);
    pango_font_description_free(font);
    pango_layout_set_width(layout, kWidth * PANGO_SCALE);
  }
  ~PangoLabel() {
    g_object_unref(layout);
    cairo_destroy(context);
    cairo_surface_destroy(surface);
  }
  PangoLabel(const PangoLabel&) = delete;
  PangoLabel& operator=(const PangoLabel&) = delete;

  void SetMarkup(const std::string& markup) {
    pango_layout_set_markup(layout, markup.data(), static_cast<int>(markup.size()));
  }
  void Draw() {
    cairo_move_to(context, 0, 0);
    pango_cairo_show_layout(context, layout);
  }
};

}  // namespace marklet::bench
