#include "bitmaps/alpha_rows.h"

#include <array>

#include "platform/rounding.h"

namespace marklet {
namespace {

// A pixel's alpha once the constant has its share.
std::array<std::uint8_t, 256> Weights(std::uint8_t constant) {
  std::array<std::uint8_t, 256> weights{};
  const auto factor = static_cast<float>(constant / 255.0);
  for (std::size_t alpha = 0; alpha < weights.size(); ++alpha) {
    weights[alpha] = static_cast<std::uint8_t>(RoundHalfEven(static_cast<double>(alpha) * double{factor}));
  }
  return weights;
}

}  // namespace

void BlendPixels(const std::uint8_t* source, std::uint8_t* destination, std::ptrdiff_t count,
                 std::uint8_t constant) {
  const auto weights = Weights(constant);
  for (std::ptrdiff_t i = 0; i < count; ++i, source += 4, destination += 4) {
    const int a = weights[source[3]];
    for (int c = 0; c < 3; ++c) {
      destination[c] = static_cast<std::uint8_t>((destination[c] * (255 - a) + source[c] * a + 127) / 255);
    }
  }
}

void PremultiplyPixels(std::uint8_t* pixels, std::ptrdiff_t count) {
  for (std::ptrdiff_t i = 0; i < count; ++i, pixels += 4) {
    for (int c = 0; c < 3; ++c) pixels[c] = static_cast<std::uint8_t>(pixels[c] * pixels[3] / 255);
  }
}

void SetAlphaOfPixels(std::uint8_t* pixels, std::ptrdiff_t count, std::uint8_t alpha) {
  for (std::ptrdiff_t i = 0; i < count; ++i, pixels += 4) {
    for (int c = 0; c < 3; ++c) pixels[c] = static_cast<std::uint8_t>(pixels[c] * alpha / 255);
    pixels[3] = alpha;
  }
}

void GreyPixels(std::uint8_t* pixels, std::ptrdiff_t count, bool spare_key) {
  for (std::ptrdiff_t i = 0; i < count; ++i, pixels += 4) {
    const bool is_key =
        pixels[0] == BlueOf(KeyColour) && pixels[1] == GreenOf(KeyColour) && pixels[2] == RedOf(KeyColour);
    if (spare_key && is_key) continue;
    // Thirds are never halfway between integers.
    pixels[0] = pixels[1] = pixels[2] =
        static_cast<std::uint8_t>((pixels[0] + pixels[1] + pixels[2] + 1) / 3);
  }
}

}  // namespace marklet
