// A picture in memory to draw captions on.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/gdi.h"
#include "platform/shared/std_font.h"
#include "platform/text.h"

namespace marklet {

class Canvas {
 public:
  Canvas(Long width, Long height) : dc_(CreateCompatibleDC(nullptr)) {
    bitmap_ = CreateDIBSection(dc_, width, height, 24, bits_);
    old_bitmap_ = SelectObject(dc_, bitmap_);
    old_font_ = SelectObject(dc_, StdFont().hFont());
    SetBkMode(dc_, TRANSPARENT);
  }
  ~Canvas() {
    SelectObject(dc_, old_font_);
    SelectObject(dc_, old_bitmap_);
    DeleteObject(bitmap_);
    DeleteDC(dc_);
  }
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;

  HDC dc() const { return dc_; }

  void Fill(std::uint8_t level) const {
    PixelView view;
    if (!PixelsOf(dc_, view)) return;
    std::fill_n(view.bits, static_cast<std::size_t>(view.stride) * static_cast<std::size_t>(view.height),
                level);
  }

  std::vector<std::uint8_t> Pixels() const {
    PixelView view;
    if (!PixelsOf(dc_, view)) return {};
    return {view.bits, view.bits + std::size_t(view.stride) * std::size_t(view.height)};
  }

  // Extent in another font than the one selected, which stays.
  SIZE Measure(const StdFont& font, std::u16string_view text) const {
    const HGDIOBJ former = SelectObject(dc_, font.hFont());
    SIZE size;
    GetTextExtentPoint32W(dc_, text, size);
    SelectObject(dc_, former);
    return size;
  }

  // The trail of a character in a font, 0 for a font without outlines.
  Long Trail(const StdFont& font, char ch) const {
    const HGDIOBJ former = SelectObject(dc_, font.hFont());
    ABC widths;
    GetCharABCWidthsA(dc_, static_cast<unsigned char>(ch), widths);
    SelectObject(dc_, former);
    return widths.abcC;
  }

 private:
  HDC dc_;
  HBITMAP bitmap_ = nullptr;
  std::uint8_t* bits_ = nullptr;
  HGDIOBJ old_bitmap_ = nullptr, old_font_ = nullptr;
};

}  // namespace marklet
