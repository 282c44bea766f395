// Reading and writing the pixels of a CDib32 one by one, for oracles that follow the definitions.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <vector>

#include "bitmaps/cdib32.h"
#include "bitmaps/pixels.h"

namespace marklet {

using Pixel = std::array<std::uint8_t, 4>;  // blue, green, red, alpha

// `row` counts from the bottom line of the picture.
inline std::uint8_t* PixelAt(const CDib32& surface, Long x, Long row) {
  return surface.Bits() + static_cast<std::ptrdiff_t>(row) * surface.BytesPerScanLine() +
         std::ptrdiff_t{x} * 4;
}
inline Pixel PixelOf(const CDib32& surface, Long x, Long row) {
  Pixel pixel;
  std::memcpy(pixel.data(), PixelAt(surface, x, row), pixel.size());
  return pixel;
}
inline void PutPixel(const CDib32& surface, Long x, Long row, const Pixel& pixel) {
  std::memcpy(PixelAt(surface, x, row), pixel.data(), pixel.size());
}

// All pixels, row by row from the bottom.
using Pixels = std::vector<Pixel>;
inline Pixels PixelsOf(const CDib32& surface) {
  GdiFlush();
  Pixels pixels;
  for (Long row = 0; row < surface.Height(); ++row) {
    for (Long x = 0; x < surface.Width(); ++x) pixels.push_back(PixelOf(surface, x, row));
  }
  return pixels;
}

inline std::unique_ptr<CDib32> AlphaSurface(Long width, Long height) {
  auto surface = std::make_unique<CDib32>();
  EXPECT_TRUE(surface->Create(width, height)) << width << " by " << height;
  return surface;
}

inline void PutPixels(const CDib32& surface, const Pixels& pixels) {
  GdiFlush();
  for (Long row = 0; row < surface.Height(); ++row) {
    for (Long x = 0; x < surface.Width(); ++x) {
      PutPixel(surface, x, row,
               pixels.at(static_cast<std::size_t>(row) * static_cast<std::size_t>(surface.Width()) +
                         static_cast<std::size_t>(x)));
    }
  }
}

inline std::unique_ptr<CDib32> AlphaSurface(Long width, Long height, const Pixel& pixel) {
  auto surface = AlphaSurface(width, height);
  PutPixels(*surface, Pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), pixel));
  return surface;
}

constexpr Pixel kKeyPixel{253, 3, 254, 0};

// Noise as pictures have it: runs that are clear or opaque between pixels of any alpha, the key's colour now
// and then, clear pixels with a colour of their own among them.
inline Pixel RandomPixel(Random& random, Long kind) {
  const auto byte = [&random] { return static_cast<std::uint8_t>(random()); };
  Pixel pixel{byte(), byte(), byte(), byte()};
  if (Between(random, 0, 9) == 0) pixel = kKeyPixel;
  if (kind == 1) pixel[3] = 0;
  if (kind == 2) pixel[3] = 255;
  return pixel;
}

inline void FillWithAlphaNoise(const CDib32& surface, Random& random) {
  GdiFlush();
  Long kind = 0, left = 0;
  for (Long row = 0; row < surface.Height(); ++row) {
    for (Long x = 0; x < surface.Width(); ++x, --left) {
      if (left <= 0) {
        kind = Between(random, 0, 2);
        left = Between(random, 1, 40);
      }
      PutPixel(surface, x, row, RandomPixel(random, kind));
    }
  }
}

inline std::unique_ptr<CDib32> AlphaNoise(Long width, Long height, Random& random) {
  auto surface = AlphaSurface(width, height);
  FillWithAlphaNoise(*surface, random);
  return surface;
}

}  // namespace marklet
