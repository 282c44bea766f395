// CIconBytes: from files to entries.
#include <array>
#include <memory>
#include <optional>

#include "base/ascii.h"
#include "base/ignore_errors.h"
#include "base/rounding.h"
#include "bitmaps/cdib24.h"
#include "bitmaps/cdib32.h"
#include "images/file_icon.h"
#include "images/icon_bytes.h"
#include "platform/system.h"
#include "platform/text.h"
#include "png/cpng_decoder.h"

namespace marklet {
namespace {

constexpr COLORREF kMagenta = MakeRgb(255, 0, 255);
// Neither icons nor pictures of this width have a place; PNG files do.
constexpr Long kRefusedWidth = 64;
constexpr Long kPictureDepthIndex = 3, kPictureBits = 24;

// The last three characters of a path.
std::u16string_view TypeOf(std::u16string_view path) {
  return path.substr(path.size() - std::min<std::size_t>(path.size(), 3));
}

void Complain(std::u16string_view text, std::u16string_view title) {
  MessageBoxW(text, title, MB_ICONEXCLAMATION);
}

// --- Icons ------------------------------------------------------------------------------------------------

// Which images of the file stay: of those that go to one entry, the last.
std::array<Long, kImageEntries> LastImages(const CFileIcon& icon) {
  std::array<Long, kImageEntries> images{};
  for (Long index = 1; index <= icon.ImageCount(); ++index) {
    const Long width = icon.ImageWidth(index), height = icon.ImageHeight(index);
    const Long depth_index = DepthIndex(icon.ImageBitCount(index));
    if (width == kRefusedWidth || width == 0 || height == 0 || depth_index == 0) continue;
    images[EntryIndex(SizeIndex(height), depth_index)] = index;
  }
  return images;
}

// Where the mask is white the key colour survives; elsewhere the colours stand.
void DrawMasked(const CFileIcon& icon, Long index, CDib32& surface) {
  surface.Clear(KeyColour);
  icon.DrawImage(surface.hDC(), index, false, 0, 0, 0, 0, SRCINVERT);
  icon.DrawImage(surface.hDC(), index, true, 0, 0, 0, 0, SRCAND);
  icon.DrawImage(surface.hDC(), index, false, 0, 0, 0, 0, SRCINVERT);
}

// --- Pictures ---------------------------------------------------------------------------------------------

Long PixelsOfHiMetric(Long himetric) {
  const double twips_per_pixel = 1440.0 / PixelsPerInch(nullptr);
  return RoundHalfEven(himetric / 2540.0 * (1440.0 / twips_per_pixel));
}

// Small pictures that aren't the size of an icon fill the top left of one.
bool IsSmall(SIZE size) {
  constexpr SIZE kSmall[] = {{16, 15}, {13, 13}, {16, 16}};
  for (const SIZE& small : kSmall)
    if (size == small) return true;
  return false;
}

}  // namespace

void CIconBytes::LoadFromFile(std::u16string_view path) {
  IgnoreErrors([&] {
    state_.IsPicture = false;
    state_.Picture = nullptr;
    const std::u16string_view type = TypeOf(path);
    if (SameWithoutCase(type, u"ico")) return LoadIcon(path);
    if (SameWithoutCase(type, u"png")) return LoadPng(path);
    const PictureRef picture = LoadPicture(path);
    if (picture == nullptr) return;
    state_.Picture = picture;
    LoadFromPictureObject(picture, SameWithoutCase(type, u"jpg"));
  });
}

void CIconBytes::LoadIcon(std::u16string_view path) {
  CFileIcon icon;
  icon.OpenIcon(path);
  for (const Long index : LastImages(icon))
    if (index != 0) IgnoreErrors([&] { LoadIconImage(icon, index); });
}

void CIconBytes::LoadIconImage(const CFileIcon& icon, Long index) {
  const Long bits = icon.ImageBitCount(index);
  CDib32 surface;
  if (!surface.Create(icon.ImageWidth(index), icon.ImageHeight(index))) return;
  const Long width = bits == 32 ? surface.Width() : PaddedWidth(surface.Width());
  if (bits == 32) {
    surface.Clear(kMagenta);
    icon.DrawImage(surface.hDC(), index, false, 0, 0, 0, 0, SRCCOPY);
  } else {
    DrawMasked(icon, index, surface);
  }
  StoreBits(SizeIndex(surface.Height()), DepthIndex(bits), bits, 0, 0, width, surface.Height(),
            surface.hDC());
}

void CIconBytes::LoadPng(std::u16string_view path) {
  IgnoreErrors([&] {
    CPngDecoder decoder;
    decoder.LoadFromFile(path);
    const Long height = decoder.Height();
    if (height != decoder.Width())
      return Complain(u"This image is not supported. PNG images must have equal width and height.",
                      u"Corvane PNG Decoder");
    auto surface = std::make_unique<CDib32>();
    surface->TakeBitmap(decoder.DetachBitmap());
    if (NormalisedSize(height) != height) surface = surface->ResampleArea(NormalisedSize(height));
    if (!surface || surface->hDC() == nullptr) return;
    const Long width = PaddedWidth(surface->Width());
    StoreBits(SizeIndex(width), kAlphaDepthIndex, 32, 0, 0, width, surface->Height(), surface->hDC());
  });
}

void CIconBytes::LoadFromPictureObject(const PictureRef& picture, bool fuzzy) {
  IgnoreErrors([&] {
    const SIZE himetric = PictureSize(picture);
    const SIZE size = {PixelsOfHiMetric(himetric.cx), PixelsOfHiMetric(himetric.cy)};
    const bool small = IsSmall(size);
    if (size.cx == kRefusedWidth) return;
    if (size.cx != size.cy && !small)
      return Complain(u"This image is not supported. Images must have equal width and height.",
                      u"Corvane Image Renderer");
    // Alpha never reaches the entry, so a surface without it is enough: one, and three bytes a pixel.
    auto surface = std::make_unique<CDib24>();
    if (!surface->Create(small ? 16 : size.cx, small ? 16 : size.cy)) return;
    surface->Clear(KeyColour);
    marklet::RenderPicture(picture, surface->hDC());
    fuzzy ? surface->KeyOutCornerFuzzy() : surface->KeyOutCorner();
    if (!small) surface = surface->ResizeKeyed(NormalisedSize(size.cx), NormalisedSize(size.cx), KeyColour);
    if (!surface) return;
    const Long height = surface->Height();
    StoreBits(SizeIndex(height), kPictureDepthIndex, kPictureBits, 0, 0, PaddedWidth(height), height,
              surface->hDC());
  });
}

}  // namespace marklet
