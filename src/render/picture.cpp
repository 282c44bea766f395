#include "render/picture.h"

namespace marklet {

std::span<const std::uint8_t> Picture::Row(Long y) const {
  const std::size_t bytes = static_cast<std::size_t>(width) * 3;
  return std::span(rgb).subspan(static_cast<std::size_t>(y) * bytes, bytes);
}

Picture PictureOf(const CDib24& surface) {
  PixelView view;
  if (!PixelsOf(surface.hDC(), view)) return {};
  Picture result{view.width, view.height, {}};
  result.rgb.reserve(static_cast<std::size_t>(view.width) * static_cast<std::size_t>(view.height) * 3);
  for (Long y = view.height - 1; y >= 0; --y) {
    const std::uint8_t* pixel = view.Row(y);
    for (Long x = 0; x < view.width; ++x, pixel += 3)
      result.rgb.insert(result.rgb.end(), {pixel[2], pixel[1], pixel[0]});
  }
  return result;
}

}  // namespace marklet
