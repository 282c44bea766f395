#include "platform/host_picture.h"

#include <algorithm>
#include <cstdint>
#include <new>
#include <span>
#include <vector>

// gdk-pixbuf's own headers.
#include <gdk-pixbuf/gdk-pixbuf.h>

#include "platform/file.h"
#include "platform/headless/device_context.h"
#include "platform/headless/recording.h"
#include "platform/picture_header.h"
#include "platform/rounding.h"
#include "platform/text.h"
#include "platform/unrecorded.h"

namespace marklet {

struct HostPicture {
  explicit HostPicture(GdkPixbuf* its_pixels, Long pixels_per_inch)
      : pixels(its_pixels), resolution(pixels_per_inch) {}
  ~HostPicture() { g_object_unref(pixels); }
  HostPicture(const HostPicture&) = delete;
  HostPicture& operator=(const HostPicture&) = delete;

  GdkPixbuf* pixels;
  Long resolution;  // of the screen at the time of loading
};

namespace {

using headless::Operation;
using headless::Refused;

struct Unref {
  void operator()(GdkPixbufLoader* loader) const { g_object_unref(loader); }
};

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

// The caller owns the result; null when the loader can make nothing of the file.
GdkPixbuf* Decode(PictureKind kind, std::span<const std::uint8_t> file) {
  const std::unique_ptr<GdkPixbufLoader, Unref> loader(
      gdk_pixbuf_loader_new_with_type(LoaderName(kind), nullptr));
  if (loader == nullptr) return nullptr;
  const bool written = gdk_pixbuf_loader_write(loader.get(), file.data(), file.size(), nullptr) != 0;
  const bool closed = gdk_pixbuf_loader_close(loader.get(), nullptr) != 0;
  if (!written || !closed) return nullptr;
  GdkPixbuf* pixels = gdk_pixbuf_loader_get_pixbuf(loader.get());
  const bool usable = pixels != nullptr && gdk_pixbuf_get_bits_per_sample(pixels) == 8;
  return usable ? GDK_PIXBUF(g_object_ref(pixels)) : nullptr;
}

PictureRef Load(std::u16string_view path) {
  std::vector<std::uint8_t> file;
  if (!ReadWholeFile(path, file)) return nullptr;
  const auto kind = CheckPictureFile(file);
  if (!kind) return nullptr;
  if (*kind == PictureKind::kGif) KeepFirstFrame(file);
  GdkPixbuf* pixels = Decode(*kind, file);
  if (pixels == nullptr) return nullptr;
  const UnrecordedScope unrecorded;
  return std::make_shared<HostPicture>(pixels, PixelsPerInch(nullptr));
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
  return {HiMetric(gdk_pixbuf_get_width(picture->pixels), picture->resolution),
          HiMetric(gdk_pixbuf_get_height(picture->pixels), picture->resolution)};
}

bool RenderPicture(const PictureRef& picture, HDC dc) {
  if (Refused(Operation::kRenderPicture, dc)) return false;
  if (picture == nullptr || dc == nullptr || dc->surface.bits == nullptr) return false;
  const headless::Surface& to = dc->surface;
  const GdkPixbuf* from = picture->pixels;
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

}  // namespace marklet
