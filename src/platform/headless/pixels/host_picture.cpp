#include "platform/host_picture.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <new>
#include <span>
#include <utility>
#include <vector>

// gdk-pixbuf's own headers.
#include <gdk-pixbuf/gdk-pixbuf.h>

#include "base/rounding.h"
#include "platform/file.h"
#include "platform/gdi.h"
#include "platform/headless/pixels/device_context.h"
#include "platform/headless/pixels/icon.h"
#include "platform/headless/recorder/hook.h"
#include "platform/icon.h"
#include "platform/shared/picture_header.h"
#include "platform/shared/unrecorded.h"
#include "platform/text.h"

namespace marklet {

namespace {

struct Unref {
  void operator()(void* object) const { g_object_unref(object); }
};
using PixelsRef = std::unique_ptr<GdkPixbuf, Unref>;

}  // namespace

struct HostPicture {
  HostPicture(PixelsRef its_pixels, Long pixels_per_inch, bool comes_from_icon)
      : pixels(std::move(its_pixels)), resolution(pixels_per_inch), is_icon(comes_from_icon) {}
  ~HostPicture() {
    const UnrecordedScope unrecorded;
    bitmap.reset();
  }
  HostPicture(const HostPicture&) = delete;
  HostPicture& operator=(const HostPicture&) = delete;

  PixelsRef pixels;
  Long resolution;  // of the screen at the time of loading
  bool is_icon;
  mutable ObjectRef bitmap;  // made when it is asked for
};

namespace {

using headless::Operation;
using headless::Refused;

// A loader of the one kind alone: left to itself it would look for others too.
const char* LoaderName(PictureKind kind) {
  switch (kind) {
    case PictureKind::kBmp:
      return "bmp";
    case PictureKind::kGif:
      return "gif";
    case PictureKind::kJpeg:
      return "jpeg";
    case PictureKind::kCursor:
      return "ico";
  }
  return "";
}

// In which pieces to give a GIF to its loader, which for each block moves what it hasn't read of the piece,
// and for each piece goes over all pixels. Half of its work is either at this length.
std::size_t GifPiece(std::int64_t pixels) {
  constexpr double kPerSide = 160;
  constexpr std::size_t kLeast = 4096;
  return std::max(kLeast, static_cast<std::size_t>(kPerSide * std::sqrt(static_cast<double>(pixels))));
}

bool Write(GdkPixbufLoader* loader, std::span<const std::uint8_t> file, std::size_t piece) {
  for (; !file.empty(); file = file.subspan(std::min(piece, file.size())))
    if (gdk_pixbuf_loader_write(loader, file.data(), std::min(piece, file.size()), nullptr) == 0)
      return false;
  return true;
}

// Null when the loader can make nothing of the file.
PixelsRef Decode(PictureKind kind, std::span<const std::uint8_t> file, std::size_t piece) {
  const std::unique_ptr<GdkPixbufLoader, Unref> loader(
      gdk_pixbuf_loader_new_with_type(LoaderName(kind), nullptr));
  if (loader == nullptr) return nullptr;
  const bool written = Write(loader.get(), file, piece);
  const bool closed = gdk_pixbuf_loader_close(loader.get(), nullptr) != 0;
  if (!written || !closed) return nullptr;
  GdkPixbuf* pixels = gdk_pixbuf_loader_get_pixbuf(loader.get());
  const bool usable = pixels != nullptr && gdk_pixbuf_get_bits_per_sample(pixels) == 8;
  return PixelsRef(usable ? GDK_PIXBUF(g_object_ref(pixels)) : nullptr);
}

PictureRef Wrap(PixelsRef pixels, bool is_icon) {
  const UnrecordedScope unrecorded;
  return std::make_shared<HostPicture>(std::move(pixels), PixelsPerInch(nullptr), is_icon);
}

PictureRef Load(std::u16string_view path) {
  std::vector<std::uint8_t> file;
  if (!ReadWholeFile(path, file, HasPictureSignature)) return nullptr;
  const auto kind = CheckPictureFile(file);
  if (!kind) return nullptr;
  std::size_t piece = file.size();
  if (*kind == PictureKind::kGif) {
    const std::int64_t claimed = KeepFirstFrame(file);
    if (claimed == 0) return nullptr;
    piece = GifPiece(claimed);
  }
  PixelsRef pixels = Decode(*kind, file, piece);
  if (pixels == nullptr) return nullptr;
  return Wrap(std::move(pixels), *kind == PictureKind::kCursor);
}

// A copy of the icon's pixels; null without memory.
PixelsRef PixelsOf(const IconHandle& icon) {
  PixelsRef pixels(gdk_pixbuf_new(GDK_COLORSPACE_RGB, 1, 8, icon.width, icon.height));
  if (pixels == nullptr) return nullptr;
  const std::ptrdiff_t row = std::ptrdiff_t{icon.width} * 4;
  for (int y = 0; y < icon.height; ++y)
    std::copy_n(icon.pixels.data() + y * row, row,
                gdk_pixbuf_get_pixels(pixels.get()) +
                    static_cast<std::ptrdiff_t>(y) * gdk_pixbuf_get_rowstride(pixels.get()));
  return pixels;
}

ObjectRef BitmapOf(const GdkPixbuf* from) {
  const UnrecordedScope unrecorded;
  std::uint8_t* bits = nullptr;
  const int width = gdk_pixbuf_get_width(from), height = gdk_pixbuf_get_height(from);
  ObjectRef bitmap(CreateDIBSection(nullptr, width, height, 24, bits));
  if (bitmap == nullptr) return nullptr;
  const headless::Surface& to = headless::AsBitmap(bitmap.get())->surface;
  for (int y = 0; y < height; ++y) {
    const std::uint8_t* in =
        gdk_pixbuf_read_pixels(from) + static_cast<std::ptrdiff_t>(y) * gdk_pixbuf_get_rowstride(from);
    std::uint8_t* out = to.At(0, y);
    for (int x = 0; x < width; ++x, in += gdk_pixbuf_get_n_channels(from), out += 3)
      out[0] = in[2], out[1] = in[1], out[2] = in[0];
  }
  return bitmap;
}

Long HiMetric(int pixels, Long pixels_per_inch) { return RoundHalfEven(pixels * 2540.0 / pixels_per_inch); }

// `from` is red, green, blue, and alpha if it has four bytes.
void DrawPixel(std::uint8_t* to, int to_bytes, const std::uint8_t* from, int from_bytes) {
  const unsigned alpha = from_bytes == 4 ? from[3] : 255;
  if (alpha == 0) return;
  for (int channel = 0; channel < 3; ++channel) {
    const unsigned mixed = from[2 - channel] * alpha + to[channel] * (255 - alpha);
    to[channel] = static_cast<std::uint8_t>((mixed + 127) / 255);
  }
  if (to_bytes == 4) to[3] = 0;
}

}  // namespace

PictureRef LoadPicture(std::u16string_view path) {
  if (Refused(Operation::kLoadPicture, path)) return nullptr;
  try {
    return Load(path);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

SIZE PictureSize(const PictureRef& picture) {
  if (picture == nullptr) return {};
  return {HiMetric(gdk_pixbuf_get_width(picture->pixels.get()), picture->resolution),
          HiMetric(gdk_pixbuf_get_height(picture->pixels.get()), picture->resolution)};
}

bool RenderPicture(const PictureRef& picture, HDC dc) {
  if (Refused(Operation::kRenderPicture, dc)) return false;
  if (picture == nullptr || dc == nullptr || dc->surface.bits == nullptr) return false;
  const headless::Surface& to = dc->surface;
  const GdkPixbuf* from = picture->pixels.get();
  const int from_bytes = gdk_pixbuf_get_n_channels(from);
  const int width = std::min(to.width, gdk_pixbuf_get_width(from));
  const int height = std::min(to.height, gdk_pixbuf_get_height(from));
  for (int y = 0; y < height; ++y) {
    const std::uint8_t* in =
        gdk_pixbuf_read_pixels(from) + static_cast<std::ptrdiff_t>(y) * gdk_pixbuf_get_rowstride(from);
    std::uint8_t* out = to.At(0, y);
    for (int x = 0; x < width; ++x, in += from_bytes, out += to.bytes_per_pixel)
      DrawPixel(out, to.bytes_per_pixel, in, from_bytes);
  }
  return true;
}

HBITMAP PictureHandle(const PictureRef& picture) {
  if (Refused(Operation::kPictureHandle) || picture == nullptr || picture->is_icon) return nullptr;
  if (picture->bitmap == nullptr) picture->bitmap = BitmapOf(picture->pixels.get());
  return picture->bitmap.get();
}

PictureRef OleCreatePictureIndirect(IconRef icon) {
  if (Refused(Operation::kOleCreatePictureIndirect) || icon == nullptr) return nullptr;
  try {
    PixelsRef pixels = PixelsOf(*icon);
    return pixels == nullptr ? nullptr : Wrap(std::move(pixels), true);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

}  // namespace marklet
