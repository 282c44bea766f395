// A memory context: what is selected in it, and the modes that text and lines are drawn in.
#pragma once

#include <array>
#include <cstdint>
#include <memory>

#include "platform/headless/pixels/objects.h"
#include "platform/headless/pixels/surface.h"
#include "platform/headless/text/font.h"
#include "platform/types.h"

namespace marklet {

namespace headless {
struct StockObjects;  // what a new context holds; one set a thread, kept by its contexts
}

struct DeviceContextHandle {
  DeviceContextHandle();
  DeviceContextHandle(const DeviceContextHandle&) = delete;
  DeviceContextHandle& operator=(const DeviceContextHandle&) = delete;
  ~DeviceContextHandle();

  // Null when the object refuses: a bitmap stands in one context at a time.
  HGDIOBJ Select(HGDIOBJ object);
  HGDIOBJ Selected(GdiObjectHandle::Kind kind) const { return selected_[static_cast<std::size_t>(kind)]; }

  headless::Font& SelectedFont() const { return *font_; }
  COLORREF PenColour() const;

  headless::Surface surface;  // of the selected bitmap
  COLORREF text_colour = 0x000000;
  COLORREF bk_colour = 0xFFFFFF;
  int bk_mode = 2;
  int stretch_mode = 1;
  std::uint32_t text_align = 0;
  Long pen_x = 0, pen_y = 0;

 private:
  void Hold(HGDIOBJ object);

  std::shared_ptr<headless::StockObjects> stock_;
  std::array<HGDIOBJ, 4> selected_{};  // by kind
  headless::Font* font_ = nullptr;     // the selected font again, for the text calls
};

}  // namespace marklet
