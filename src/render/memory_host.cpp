#include "render/memory_host.h"

#include "base/rounding.h"

namespace marklet {

MemoryHost::MemoryHost(Long width, Long height, Long pixels_per_inch)
    : width_(width), height_(height), pixels_per_inch_(pixels_per_inch) {}

// The control's font stands in the context, as in a window's own: AutoSize measures with it.
HDC MemoryHost::hDC() {
  if (surface_width_ != width_ || surface_height_ != height_) {
    surface_width_ = width_;
    surface_height_ = height_;
    if (TooLarge() || !surface_.Create(width_, height_)) surface_.ClearUp();
  }
  SelectObject(surface_.hDC(), Font()->hFont());
  return surface_.hDC();
}

void MemoryHost::PutWidth(double twips) {
  width_ = RoundHalfEven(twips / TwipsPerPixelX());
  Resized();
}

void MemoryHost::PutHeight(double twips) {
  height_ = RoundHalfEven(twips / TwipsPerPixelY());
  Resized();
}

void MemoryHost::Resized() {
  if (control_) control_->Resize();
}

bool MemoryHost::PaintBehind(HDC dc) {
  if (backdrop_) PaintBackdrop(*backdrop_, dc);
  return backdrop_.has_value();
}

}  // namespace marklet
