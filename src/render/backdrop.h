// What lies behind a transparent control.
#pragma once

#include <memory>
#include <string>

#include "bitmaps/cdib24.h"
#include "platform/types.h"

namespace marklet {

// A colour, and on it a picture from the control's top left corner on.
struct Backdrop {
  COLORREF colour = 0;
  std::shared_ptr<const CDib24> picture = nullptr;
};

// Reads a colour, as properties have them, or the file of that name: PNG in colour, BMP, GIF, JPG or CUR.
// What is transparent in it shows white. Nothing, black, for an empty text. Throws RenderError.
Backdrop ReadBackdrop(const std::string& text);

void PaintBackdrop(const Backdrop& backdrop, HDC dc);

}  // namespace marklet
