#include "render/backdrop.h"

#include "base/rounding.h"
#include "bitmaps/cdib32.h"
#include "control/properties.h"
#include "platform/host_picture.h"
#include "platform/system.h"
#include "platform/text.h"
#include "png/cpng_decoder.h"
#include "render/files.h"
#include "render/property_text.h"
#include "render/render_error.h"
#include "render/text.h"

namespace marklet {
namespace {

constexpr COLORREF kWhite = 0xFFFFFF;

bool IsColour(const std::string& text) { return text.starts_with('#') || text.starts_with("0x"); }

COLORREF ReadColour(const std::string& text) {
  const Value value = ParseValue(*FindProperty("BackColor"), text);
  COLORREF colour = 0;
  OleTranslateColor(static_cast<OLE_COLOR>(std::get<Long>(value)), colour);
  return colour;
}

std::shared_ptr<CDib24> WhiteSurface(Long width, Long height) {
  auto surface = std::make_shared<CDib24>();
  if (!surface->Create(width, height)) return nullptr;
  surface->Clear(kWhite);
  return surface;
}

std::shared_ptr<CDib24> ReadPng(std::u16string_view path) {
  CPngDecoder decoder;
  decoder.LoadFromFile(path);
  CDib32 pixels;
  pixels.CreateFromBitmap(decoder.BitmapHandle());
  auto surface = WhiteSurface(pixels.Width(), pixels.Height());
  if (pixels.Bits() == nullptr || !surface) return nullptr;
  pixels.SoftwareAlphaPaint(surface->hDC(), 0, 0, 255);
  return surface;
}

std::shared_ptr<CDib24> ReadOther(std::u16string_view path) {
  const PictureRef picture = LoadPicture(path);
  const auto pixels = [](Long himetric) {
    return RoundHalfEven(himetric * static_cast<double>(PixelsPerInch(nullptr)) / 2540);
  };
  const SIZE size = PictureSize(picture);
  auto surface = picture ? WhiteSurface(pixels(size.cx), pixels(size.cy)) : nullptr;
  return surface && RenderPicture(picture, surface->hDC()) ? surface : nullptr;
}

}  // namespace

Backdrop ReadBackdrop(const std::string& text) {
  if (IsColour(text)) return {ReadColour(text)};
  RequireFile(text);
  const std::u16string path = FromUtf8(text);
  auto picture = ReadPng(path);
  if (!picture) picture = ReadOther(path);
  if (!picture)
    throw RenderError("there is no picture in " + Quoted(text) +
                      " that can lie behind a control: it is a PNG in colour, a BMP, GIF or JPG");
  return {kWhite, std::move(picture)};
}

void PaintBackdrop(const Backdrop& backdrop, HDC dc) {
  constexpr RECT kEverywhere = {0, 0, 0x7FFF, 0x7FFF};
  const ObjectRef brush(CreateSolidBrush(backdrop.colour));
  FillRect(dc, kEverywhere, brush.get());
  if (backdrop.picture) backdrop.picture->PaintTo(dc, 0, 0, -1, -1, 0, 0, SRCCOPY);
}

}  // namespace marklet
