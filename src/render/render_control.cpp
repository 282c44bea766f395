#include "render/render_control.h"

#include "platform/rounding.h"
#include "platform/system.h"
#include "render/property_text.h"
#include "render/render_error.h"

namespace marklet {

Long ScaledPixels(double units, double scale) { return RoundHalfEven(units * scale); }

RenderedControl::RenderedControl(SIZE size, const PropertyTexts& properties, double scale)
    : host_(ScaledPixels(size.cx, scale), ScaledPixels(size.cy, scale), ScaledPixels(96, scale)),
      control_(host_, host_) {
  host_.Attach(control_);
  control_.InitProperties();
  SetAll(properties);
  // Properties that only saved forms hold have been set past their setters.
  if (control_.State().AutoSize) control_.RecomputeAutoSize();
  control_.RedrawNow();
  if (Surface().Bits() == nullptr) throw RenderError("the control has come out empty or too large to draw");
}

void RenderedControl::SetAll(const PropertyTexts& properties) {
  for (const auto& [name, text] : properties) AssignProperty(control_, name, text);
}

void RenderedControl::PaintTo(HDC dc, Long x, Long y) const {
  // A control paints at the origin of a context: its own surface is copied to where it belongs.
  BitBlt(dc, x, y, Width(), Height(), Surface().hDC(), 0, 0, SRCCOPY);
}

ScaledScreen::ScaledScreen(double scale) : former_(Configuration().pixels_per_inch) {
  Configuration().pixels_per_inch = ScaledPixels(96, scale);
}

ScaledScreen::~ScaledScreen() { Configuration().pixels_per_inch = former_; }

}  // namespace marklet
