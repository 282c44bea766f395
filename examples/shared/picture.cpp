#include "picture.h"

#include <cstdint>
#include <cstdio>
#include <vector>

#include "platform/win32/sdk.h"
#include "render/png_writer.h"

namespace example {
namespace {

// Pixels of the screen, top row first, four bytes each: blue, green, red and one unused.
std::vector<std::uint8_t> ReadPixels(POINT corner, SIZE size) {
  std::vector<std::uint8_t> pixels(static_cast<std::size_t>(size.cx) * static_cast<std::size_t>(size.cy) * 4);
  BITMAPINFO info = {};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = size.cx;
  info.bmiHeader.biHeight = -size.cy;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  const HDC source = GetDC(nullptr);
  const HDC memory = CreateCompatibleDC(source);
  const HBITMAP bitmap = CreateCompatibleBitmap(source, size.cx, size.cy);
  const HGDIOBJ old = SelectObject(memory, bitmap);
  BitBlt(memory, 0, 0, size.cx, size.cy, source, corner.x, corner.y, marklet::SRCCOPY);
  SelectObject(memory, old);
  GetDIBits(memory, bitmap, 0, static_cast<UINT>(size.cy), pixels.data(), &info, DIB_RGB_COLORS);
  DeleteObject(bitmap);
  DeleteDC(memory);
  ReleaseDC(nullptr, source);
  return pixels;
}

}  // namespace

bool SavePicture(HWND window, const std::wstring& file) {
  RECT inside;
  if (!GetClientRect(window, &inside)) return false;
  MapWindowPoints(window, nullptr, reinterpret_cast<POINT*>(&inside), 2);
  return SavePicture(inside, file);
}

bool SavePicture(const RECT& part, const std::wstring& file) {
  const SIZE size = {part.right - part.left, part.bottom - part.top};
  const std::vector<std::uint8_t> pixels = ReadPixels({part.left, part.top}, size);
  marklet::Picture picture;
  picture.width = size.cx;
  picture.height = size.cy;
  for (std::size_t i = 0; i < pixels.size(); i += 4)
    picture.rgb.insert(picture.rgb.end(), {pixels[i + 2], pixels[i + 1], pixels[i]});
  const std::vector<std::uint8_t> png = marklet::EncodePng(picture, 3780);
  std::FILE* const output = _wfopen(file.c_str(), L"wb");
  if (!output) return false;
  const bool written = std::fwrite(png.data(), 1, png.size(), output) == png.size();
  return std::fclose(output) == 0 && written;
}

}  // namespace example
