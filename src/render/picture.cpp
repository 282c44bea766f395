#include "render/picture.h"

#include <algorithm>
#include <array>
#include <cstdlib>

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

namespace {

using Pixel = std::array<int, 3>;

// Straight colours that stand for `on_black`, which is them times alpha.
Pixel StraightOf(const Pixel& on_black, int alpha) {
  Pixel result{};
  for (std::size_t i = 0; alpha > 0 && i < result.size(); ++i)
    result[i] = std::min(255, (on_black[i] * 255 + alpha / 2) / alpha);
  return result;
}

int Composed(int colour, int behind, int alpha) {
  return (colour * alpha + behind * (255 - alpha) + 127) / 255;
}

// How far the pixel is from both pictures.
int Error(const Pixel& colour, int alpha, const Pixel& on_black, const Pixel& on_white) {
  int sum = 0;
  for (std::size_t i = 0; i < colour.size(); ++i)
    sum += std::abs(Composed(colour[i], 0, alpha) - on_black[i]) +
           std::abs(Composed(colour[i], 255, alpha) - on_white[i]);
  return sum;
}

// Each channel tells the alpha; rounding makes them differ by a step, and the one that shows both best holds.
int AlphaOf(const Pixel& on_black, const Pixel& on_white) {
  int best = 0, least = -1;
  for (std::size_t i = 0; i < on_black.size(); ++i) {
    const int alpha = std::clamp(255 - (on_white[i] - on_black[i]), 0, 255);
    const int error = Error(StraightOf(on_black, alpha), alpha, on_black, on_white);
    if (least >= 0 && error >= least) continue;
    least = error;
    best = alpha;
  }
  return best;
}

}  // namespace

Picture WithAlpha(const Picture& on_black, const Picture& on_white) {
  Picture result = on_black;
  result.alpha.resize(result.rgb.size() / 3);
  for (std::size_t at = 0; at < result.alpha.size(); ++at) {
    Pixel black{}, white{};
    std::copy_n(on_black.rgb.begin() + static_cast<std::ptrdiff_t>(at * 3), 3, black.begin());
    std::copy_n(on_white.rgb.begin() + static_cast<std::ptrdiff_t>(at * 3), 3, white.begin());
    const int alpha = AlphaOf(black, white);
    const Pixel colour = StraightOf(black, alpha);
    for (std::size_t i = 0; i < colour.size(); ++i)
      result.rgb[at * 3 + i] = static_cast<std::uint8_t>(colour[i]);
    result.alpha[at] = static_cast<std::uint8_t>(alpha);
  }
  return result;
}

}  // namespace marklet
