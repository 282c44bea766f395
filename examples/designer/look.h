// Fonts and sizes of the designer's windows on a screen of so many pixels an inch.
#pragma once

#include <windows.h>

#include "place.h"

namespace designer {

class Look {
 public:
  explicit Look(int per_inch);
  ~Look();
  Look(const Look&) = delete;
  Look& operator=(const Look&) = delete;

  int PerInch() const { return per_inch_; }
  int Pixels(int at_96) const { return Scaled(at_96, per_inch_, 96); }
  HFONT Font() const { return font_; }
  HFONT Bold() const { return bold_; }
  int LineHeight() const { return line_height_; }  // of the font

 private:
  int per_inch_;
  HFONT font_, bold_;
  int line_height_ = 0;
};

// Of the screen.
int SystemPerInch();

}  // namespace designer
