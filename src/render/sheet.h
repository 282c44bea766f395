// Several controls on one picture, for galleries.
//
//   { "columns": 3, "margin": 24, "gap": 16, "background": "#FFFFFF",
//     "properties": { "FontName": "Tahoma" },          every control's, before its own
//     "images": { "logo": "logo.png" },                file names as seen from the sheet
//     "items": [ { "heading": "Effects" },             starts a row of its own
//                { "title": "Stroke", "size": "240x48", "span": 1, "hover": false,
//                  "properties": { "Caption": "Text", "TextEffect": "effectStroke" } } ] }
//
// Everything but "items" may be left out. Lengths are in 96ths of an inch. Headings and titles are captions
// themselves and may hold markup. Values are texts, whole numbers or Booleans. Rows are filled from the left.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "render/picture.h"
#include "render/render_control.h"

namespace marklet {

class Sheet {
 public:
  // Reads a description in JSON, from the file of that name, and paints every control. Throws RenderError.
  Sheet(std::string_view json, double scale, const std::string& file = {});

  // Paints every control again.
  void Redraw();
  Picture Compose() const;

 private:
  struct Placed {
    std::unique_ptr<RenderedControl> control;
    Long x, y;
  };
  class Layout;

  std::vector<Placed> placed_;
  Long width_ = 0, height_ = 0;  // pixels
  COLORREF background_ = 0;
};

}  // namespace marklet
