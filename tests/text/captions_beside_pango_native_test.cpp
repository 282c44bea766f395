// Plain captions in many scripts beside what Pango and Cairo alone draw of the same strings, in the same
// font.
#include <gtest/gtest.h>
#include <pango/pangocairo.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <ostream>
#include <string>
#include <vector>

#include "markup/canvas.h"
#include "markup/markup_caption.h"
#include "platform/system.h"
#include "text/system_fixture.h"

namespace marklet {
namespace {

constexpr Long kWidth = 260, kHeight = 40, kLeft = 10, kTop = 5;
constexpr int kPixels = 16;     // of the font's em
constexpr double kPoints = 12;  // the same at 96 dots per inch
constexpr char kFamily[] = "DejaVu Sans";

struct Script {
  const char* name;
  std::u16string_view caption;
  bool right_to_left = false;
  friend std::ostream& operator<<(std::ostream& out, const Script& script) { return out << script.name; }
};

constexpr Script kScripts[] = {
    {"Latin", u"Total of all orders"},
    {"Arabic", u"\u0645\u0631\u062D\u0628\u0627 \u0628\u0643"},
    {"ArabicLine", u"\u0645\u0631\u062D\u0628\u0627 123 (\u0646\u0635)", true},
    {"ArabicLigature", u"\u0623\u0647\u0644\u0627\u064B"},
    {"Hebrew", u"\u05E9\u05DC\u05D5\u05DD, \u05E2\u05D5\u05DC\u05DD 12"},
    {"HebrewLine", u"\u05E9\u05DC\u05D5\u05DD, \u05E2\u05D5\u05DC\u05DD 12", true},
    {"HebrewPoints", u"\u05E9\u05C1\u05B8\u05DC\u05D5\u05B9\u05DD"},
    {"Devanagari", u"\u0928\u092E\u0938\u094D\u0924\u0947"},
    {"Thai", u"\u0E2A\u0E27\u0E31\u0E2A\u0E14\u0E35"},
    {"Chinese", u"\u4F60\u597D"},
    {"Korean", u"\uC548\uB155"},
    {"Emoji", u"\U0001F600 x"},
    {"CombiningMarks", u"x\u0304 a\u0310"},
    {"BothDirections", u"The word \u05E9\u05DC\u05D5\u05DD means peace"},
    {"BothDirectionsLine", u"The word \u05E9\u05DC\u05D5\u05DD means peace", true},
};

// How much of each pixel is ink, 0 to 255, row by row from the top.
using Ink = std::vector<int>;

Ink InkOf(const Canvas& canvas) {
  PixelView view;
  PixelsOf(canvas.dc(), view);
  Ink ink;
  for (Long y = view.height - 1; y >= 0; --y)
    for (Long x = 0; x < view.width; ++x)
      ink.push_back(255 - view.bits[std::ptrdiff_t{y} * view.stride + std::ptrdiff_t{x} * 3]);
  return ink;
}

// What lies outside a caption's rectangle is cut off.
Ink Inside(Ink ink) {
  for (Long y = 0; y < kHeight; ++y)
    for (Long x = 0; x < kWidth; ++x)
      if (y < kTop || x < kLeft || x >= kWidth - kLeft)
        ink[static_cast<std::size_t>(y) * kWidth + static_cast<std::size_t>(x)] = 0;
  return ink;
}

// A picture, and what it takes to draw on it as text on a form is drawn: grey, slightly hinted, at whole
// pixels.
class PangoSheet {
 public:
  PangoSheet()
      : surface_(cairo_image_surface_create(CAIRO_FORMAT_A8, kWidth, kHeight)),
        cairo_(cairo_create(surface_)),
        map_(pango_cairo_font_map_new()),
        context_(pango_font_map_create_context(map_)) {
    cairo_font_options_t* const options = cairo_font_options_create();
    cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
    cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_SLIGHT);
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_ON);
    pango_cairo_context_set_font_options(context_, options);
    cairo_font_options_destroy(options);
    pango_cairo_context_set_resolution(context_, 96);
    pango_context_set_language(context_, pango_language_from_string("en"));
  }
  ~PangoSheet() {
    g_object_unref(context_);
    g_object_unref(map_);
    cairo_destroy(cairo_);
    cairo_surface_destroy(surface_);
  }
  PangoSheet(const PangoSheet&) = delete;
  PangoSheet& operator=(const PangoSheet&) = delete;

  Ink Draw(const Script& script, Long baseline) const;

 private:
  PangoLayout* LayOut(const Script& script) const;

  cairo_surface_t* const surface_;
  cairo_t* const cairo_;
  PangoFontMap* const map_;
  PangoContext* const context_;
};

PangoLayout* PangoSheet::LayOut(const Script& script) const {
  pango_context_set_base_dir(context_, script.right_to_left ? PANGO_DIRECTION_RTL : PANGO_DIRECTION_LTR);
  PangoLayout* const layout = pango_layout_new(context_);
  pango_layout_set_auto_dir(layout, FALSE);
  PangoFontDescription* const font = pango_font_description_new();
  pango_font_description_set_family(font, kFamily);
  pango_font_description_set_absolute_size(font, kPixels * PANGO_SCALE);
  pango_layout_set_font_description(layout, font);
  pango_font_description_free(font);
  // Letters of plain text stand at their advances.
  PangoAttrList* const attributes = pango_attr_list_new();
  pango_attr_list_insert(attributes, pango_attr_font_features_new("kern=0,liga=0,clig=0"));
  pango_layout_set_attributes(layout, attributes);
  pango_attr_list_unref(attributes);
  const std::string text = WideCharToMultiByte(CP_UTF8, script.caption);
  pango_layout_set_text(layout, text.data(), static_cast<int>(text.size()));
  return layout;
}

Ink PangoSheet::Draw(const Script& script, Long baseline) const {
  PangoLayout* const layout = LayOut(script);
  int width = 0;
  pango_layout_get_pixel_size(layout, &width, nullptr);
  cairo_move_to(cairo_, script.right_to_left ? kWidth - kLeft - width : kLeft, baseline);
  pango_cairo_show_layout_line(cairo_, pango_layout_get_line_readonly(layout, 0));
  g_object_unref(layout);
  cairo_surface_flush(surface_);
  const unsigned char* const bytes = cairo_image_surface_get_data(surface_);
  Ink ink;
  for (int y = 0; y < kHeight; ++y)
    for (int x = 0; x < kWidth; ++x) ink.push_back(bytes[y * cairo_image_surface_get_stride(surface_) + x]);
  return ink;
}

class CaptionsBesidePango : public SystemTest, public testing::WithParamInterface<Script> {
 protected:
  CaptionsBesidePango() {
    font_.PutName(u"DejaVu Sans");
    font_.PutSize(kPoints);
    former_ = SelectObject(canvas_.dc(), font_.hFont());
  }
  ~CaptionsBesidePango() override { SelectObject(canvas_.dc(), former_); }

  Ink Drawn() {
    canvas_.Fill(0xFF);
    SetTextAlign(canvas_.dc(), 0);
    CaptionStyle style;
    style.ForeColor = 0;
    style.SingleLine = true;
    style.RightToLeft = GetParam().right_to_left;
    RECT rect = {kLeft, kTop, kWidth - kLeft, kHeight};
    DrawMarkupCaption(canvas_.dc(), GetParam().caption, rect, style);
    return InkOf(canvas_);
  }
  // Below the last row of a letter that stands on it.
  Long Baseline() {
    canvas_.Fill(0xFF);
    SetTextColor(canvas_.dc(), 0);
    TextOutW(canvas_.dc(), kLeft, kTop, u"H");
    const Ink ink = InkOf(canvas_);
    const auto last = std::find_if(ink.rbegin(), ink.rend(), [](int level) { return level > 128; });
    return static_cast<Long>(last.base() - ink.begin() - 1) / kWidth + 1;
  }

  StdFont font_;
  Canvas canvas_{kWidth, kHeight};
  HGDIOBJ former_;
};

TEST_P(CaptionsBesidePango, AreTheSamePixelsOnEverySystem) {
  // Where the ink of two glyphs meets, Cairo adds it up, and a paint puts one on the other: a + b - ab. That
  // is less by a quarter at most, and rare.
  constexpr int kMostByOverlap = 64;
  const Ink expected = Inside(PangoSheet().Draw(GetParam(), Baseline()));
  const auto inked = std::count_if(expected.begin(), expected.end(), [](int level) { return level > 0; });
  ASSERT_GT(inked, 50);
  for (const OSVERSIONINFOA& version : {kWindows98, kNt4, kWindows2000, kXp, kVista, kWindows10}) {
    SCOPED_TRACE(std::to_string(version.dwMajorVersion) + '.' + std::to_string(version.dwMinorVersion));
    Play(version, true);
    const Ink drawn = Drawn();
    int differing = 0, most = 0;
    for (std::size_t i = 0; i < drawn.size(); ++i) {
      const int difference = std::abs(drawn[i] - expected[i]);
      differing += difference > 1;
      most = std::max(most, difference);
    }
    EXPECT_LE(most, kMostByOverlap);
    EXPECT_LE(differing, inked / 20);
  }
}

INSTANTIATE_TEST_SUITE_P(Scripts, CaptionsBesidePango, testing::ValuesIn(kScripts),
                         [](const auto& tested) { return std::string(tested.param.name); });

}  // namespace
}  // namespace marklet
