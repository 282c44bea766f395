// A surface with a font, on which the engine draws a caption as the control does.
#pragma once

#include <string_view>

#include "bitmaps/cdib24.h"
#include "text/caption_style.h"

namespace marklet::bench {

class Label {
 public:
  Label(Long width, Long height);
  void Draw(std::u16string_view caption);
  CDib24& Surface() { return surface_; }

 private:
  CDib24 surface_;
  CaptionStyle style_;
};

}  // namespace marklet::bench
