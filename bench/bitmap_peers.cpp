#include "bitmap_peers.h"

#include <libyuv.h>
#include <pixman.h>

#include <QImage>
#include <QPainter>
#include <cstdlib>
#include <memory>

#define STB_IMAGE_RESIZE_IMPLEMENTATION
#define STB_IMAGE_RESIZE_STATIC
#include <stb/stb_image_resize.h>

namespace marklet::bench {
namespace {

struct Release {
  void operator()(pixman_image_t* image) const { pixman_image_unref(image); }
};
using PixmanImage = std::shared_ptr<pixman_image_t>;

PixmanImage PixmanOf(const PixelBlock& block, bool alpha) {
  const auto format = block.depth == Depth::k24 ? PIXMAN_r8g8b8 : alpha ? PIXMAN_a8r8g8b8 : PIXMAN_x8r8g8b8;
  return {pixman_image_create_bits_no_clear(format, block.width, block.height,
                                            reinterpret_cast<std::uint32_t*>(block.bits), block.stride),
          Release{}};
}

Work DrawByQt(const PixelBlock& source, const PixelBlock& target) {
  const auto format = target.depth == Depth::k24 ? QImage::Format_BGR888 : QImage::Format_RGB32;
  auto image = std::make_shared<QImage>(source.bits, source.width, source.height, source.stride,
                                        QImage::Format_ARGB32_Premultiplied);
  auto canvas = std::make_shared<QImage>(target.bits, target.width, target.height, target.stride, format);
  auto painter = std::make_shared<QPainter>(canvas.get());
  return [image, canvas, painter] { painter->drawImage(0, 0, *image); };
}

Work DrawByPixman(const PixelBlock& source, const PixelBlock& target) {
  const PixmanImage image = PixmanOf(source, true), canvas = PixmanOf(target, false);
  return [image, canvas, source] {
    pixman_image_composite32(PIXMAN_OP_OVER, image.get(), nullptr, canvas.get(), 0, 0, 0, 0, 0, 0,
                             source.width, source.height);
  };
}

template <libyuv::FilterMode kFilter>
Work ScaleByLibyuv(const PixelBlock& source, const PixelBlock& target) {
  return [=] {
    libyuv::ARGBScale(source.bits, source.stride, source.width, source.height, target.bits, target.stride,
                      target.width, target.height, kFilter);
  };
}

// Takes the source in the target's coordinates.
Work ScaleByPixman(const PixelBlock& source, const PixelBlock& target, pixman_filter_t filter, bool box) {
  const PixmanImage image = PixmanOf(source, true);
  const auto step = static_cast<pixman_fixed_t>(65536.0 * source.width / target.width);
  pixman_transform_t transform;
  pixman_transform_init_scale(&transform, step, step);
  pixman_image_set_transform(image.get(), &transform);
  pixman_image_set_repeat(image.get(), PIXMAN_REPEAT_PAD);
  if (box) {
    int count = 0;
    pixman_fixed_t* values = pixman_filter_create_separable_convolution(
        &count, step, step, PIXMAN_KERNEL_BOX, PIXMAN_KERNEL_BOX, PIXMAN_KERNEL_BOX, PIXMAN_KERNEL_BOX, 4, 4);
    pixman_image_set_filter(image.get(), filter, values, count);
    std::free(values);
  } else {
    pixman_image_set_filter(image.get(), filter, nullptr, 0);
  }
  const PixmanImage canvas = PixmanOf(target, true);
  return [image, canvas, target] {
    pixman_image_composite32(PIXMAN_OP_SRC, image.get(), nullptr, canvas.get(), 0, 0, 0, 0, 0, 0,
                             target.width, target.height);
  };
}
Work NearestByPixman(const PixelBlock& source, const PixelBlock& target) {
  return ScaleByPixman(source, target, PIXMAN_FILTER_NEAREST, false);
}
Work BilinearByPixman(const PixelBlock& source, const PixelBlock& target) {
  return ScaleByPixman(source, target, PIXMAN_FILTER_BILINEAR, false);
}
Work BoxByPixman(const PixelBlock& source, const PixelBlock& target) {
  return ScaleByPixman(source, target, PIXMAN_FILTER_SEPARABLE_CONVOLUTION, true);
}

template <stbir_filter kFilter>
Work ScaleByStb(const PixelBlock& source, const PixelBlock& target) {
  return [=] {
    stbir_resize_uint8_generic(source.bits, source.width, source.height, source.stride, target.bits,
                               target.width, target.height, target.stride, 4, 3, 0, STBIR_EDGE_CLAMP, kFilter,
                               STBIR_COLORSPACE_LINEAR, nullptr);
  };
}

}  // namespace

const std::vector<Compositor>& Compositors() {
  static const std::vector<Compositor> all = {{"Qt's drawImage", true, DrawByQt},
                                              {"pixman's OVER", false, DrawByPixman}};
  return all;
}

const std::vector<Resizer>& Resizers() {
  static const std::vector<Resizer> all = {
      {"ResampleNearest", "libyuv", 1, false, ScaleByLibyuv<libyuv::kFilterNone>},
      {"ResampleNearest", "pixman", 0, false, NearestByPixman},
      {"ResampleArea", "pixman's box", 0.5, true, BoxByPixman},
      {"ResampleArea", "libyuv's box", 0, false, ScaleByLibyuv<libyuv::kFilterBox>},
      {"ResampleArea", "stb_image_resize's box", 0, false, ScaleByStb<STBIR_FILTER_BOX>},
      {"ResizeKeyed", "pixman's bilinear", 4, false, BilinearByPixman},
      {"ResizeKeyed", "libyuv's bilinear", 0, false, ScaleByLibyuv<libyuv::kFilterBilinear>},
      {"ResizeKeyed", "stb_image_resize's triangle", 0, false, ScaleByStb<STBIR_FILTER_TRIANGLE>},
  };
  return all;
}

}  // namespace marklet::bench
