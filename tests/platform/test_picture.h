// A context with pixels to look at.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "platform/gdi.h"
#include "platform/text.h"

namespace marklet {

class TestPicture {
 public:
  TestPicture(Long width, Long height, int depth = 24)
      : width_(width), height_(height), bytes_(depth / 8), stride_((width * (depth / 8) + 3) / 4 * 4) {
    dc_ = CreateCompatibleDC(nullptr);
    bitmap_ = CreateDIBSection(dc_, width, height, depth, bits_);
    former_ = SelectObject(dc_, bitmap_);
  }
  ~TestPicture() {
    if (former_font_ != nullptr) SelectObject(dc_, former_font_);
    SelectObject(dc_, former_);
    DeleteObject(bitmap_);
    DeleteDC(dc_);
    for (const HFONT font : fonts_) DeleteObject(font);
  }
  TestPicture(const TestPicture&) = delete;
  TestPicture& operator=(const TestPicture&) = delete;

  HDC Context() const { return dc_; }
  HBITMAP Bitmap() const { return bitmap_; }
  Long Width() const { return width_; }
  Long Height() const { return height_; }
  int Bytes() const { return bytes_; }

  // The bytes of a pixel at picture coordinates.
  std::uint8_t* At(Long x, Long y) const {
    GdiFlush();
    return bits_ + std::ptrdiff_t{height_ - 1 - y} * stride_ + std::ptrdiff_t{x} * bytes_;
  }
  COLORREF Pixel(Long x, Long y) const {
    const std::uint8_t* bytes = At(x, y);
    return MakeRgb(bytes[2], bytes[1], bytes[0]);
  }
  bool Inside(std::int64_t x, std::int64_t y) const { return x >= 0 && y >= 0 && x < width_ && y < height_; }

  void Fill(std::uint8_t value) {
    GdiFlush();
    std::memset(bits_, value, static_cast<std::size_t>(stride_) * static_cast<std::size_t>(height_));
  }
  void FillRandomly(std::mt19937& random) {
    GdiFlush();
    for (Long i = 0; i < stride_ * height_; ++i) bits_[i] = static_cast<std::uint8_t>(random());
  }

  // Red, green and blue of every pixel, row by row from the top.
  std::vector<COLORREF> Colours() const {
    std::vector<COLORREF> colours;
    colours.reserve(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_));
    for (Long y = 0; y < height_; ++y)
      for (Long x = 0; x < width_; ++x) colours.push_back(Pixel(x, y));
    return colours;
  }

  // A new font, selected; it lives as long as the picture.
  void UseFont(const LOGFONTW& record) {
    fonts_.push_back(CreateFontIndirectW(record));
    const HGDIOBJ former = SelectObject(dc_, fonts_.back());
    if (former_font_ == nullptr) former_font_ = former;
  }
  void UseTahoma(Long pixels) {
    LOGFONTW record;
    record.lfHeight = -pixels;
    record.lfFaceName = u"Tahoma";
    UseFont(record);
  }
  // White, and ready for small text without a box.
  void LayOutPaper() {
    Fill(0xFF);
    UseTahoma(13);
    SetBkMode(dc_, TRANSPARENT);
  }

  SIZE Extent(std::u16string_view text) const {
    SIZE size;
    EXPECT_TRUE(GetTextExtentPoint32W(dc_, text, size));
    return size;
  }

 private:
  Long width_, height_;
  int bytes_;
  Long stride_;
  HDC dc_ = nullptr;
  std::uint8_t* bits_ = nullptr;
  HBITMAP bitmap_ = nullptr;
  HGDIOBJ former_ = nullptr, former_font_ = nullptr;
  std::vector<HFONT> fonts_;
};

// The box around all pixels that aren't of the background; empty (all 0) when there are none.
inline RECT InkOf(const TestPicture& picture, COLORREF background) {
  RECT ink{picture.Width(), picture.Height(), 0, 0};
  for (Long y = 0; y < picture.Height(); ++y)
    for (Long x = 0; x < picture.Width(); ++x) {
      if (picture.Pixel(x, y) == background) continue;
      ink = {std::min(ink.left, x), std::min(ink.top, y), std::max(ink.right, x + 1),
             std::max(ink.bottom, y + 1)};
    }
  return ink.right == 0 ? RECT{} : ink;
}

}  // namespace marklet
