// Reading and writing a surface's pixels one by one, for oracles that follow the definitions.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <random>
#include <vector>

#include "bitmaps/cdib24.h"

namespace marklet {

// Blue, green, red. `row` counts from the bottom line of the picture.
inline std::uint8_t* PixelAt(const CDib24& surface, Long x, Long row) {
  return surface.Bits() + static_cast<std::ptrdiff_t>(row) * surface.BytesPerScanLine() +
         std::ptrdiff_t{x} * 3;
}

inline COLORREF ColourAt(const CDib24& surface, Long x, Long row) {
  const std::uint8_t* pixel = PixelAt(surface, x, row);
  return MakeRgb(pixel[2], pixel[1], pixel[0]);
}

inline void PutColour(const CDib24& surface, Long x, Long row, COLORREF colour) {
  std::uint8_t* pixel = PixelAt(surface, x, row);
  pixel[0] = static_cast<std::uint8_t>(BlueOf(colour));
  pixel[1] = static_cast<std::uint8_t>(GreenOf(colour));
  pixel[2] = static_cast<std::uint8_t>(RedOf(colour));
}

// All colours, row by row from the bottom, without the padding.
inline std::vector<COLORREF> Colours(const CDib24& surface) {
  GdiFlush();
  std::vector<COLORREF> colours;
  for (Long row = 0; row < surface.Height(); ++row) {
    for (Long x = 0; x < surface.Width(); ++x) colours.push_back(ColourAt(surface, x, row));
  }
  return colours;
}

using Random = std::mt19937;

inline Long Between(Random& random, Long low, Long high) {
  return std::uniform_int_distribution<Long>(low, high)(random);
}

// Noise in which a third of the pixels has `key` and a third comes from a few colours that lie close to it.
inline COLORREF RandomColour(Random& random, COLORREF key) {
  switch (Between(random, 0, 2)) {
    case 0:
      return key;
    case 1:
      return MakeRgb(RedOf(key) + static_cast<unsigned>(Between(random, -1, 1)),
                     GreenOf(key) + static_cast<unsigned>(Between(random, -1, 1)),
                     BlueOf(key) + static_cast<unsigned>(Between(random, -1, 1)));
    default:
      return static_cast<COLORREF>(Between(random, 0, 0xFFFFFF));
  }
}

inline void FillWithNoise(const CDib24& surface, Random& random, COLORREF key) {
  GdiFlush();
  for (Long row = 0; row < surface.Height(); ++row) {
    for (Long x = 0; x < surface.Width(); ++x) PutColour(surface, x, row, RandomColour(random, key));
  }
}

// Real tests fail on a surface that can't be made; there is always memory for the sizes they use.
inline std::unique_ptr<CDib24> Surface(Long width, Long height) {
  auto surface = std::make_unique<CDib24>();
  EXPECT_TRUE(surface->Create(width, height)) << width << " by " << height;
  return surface;
}

inline std::unique_ptr<CDib24> Surface(Long width, Long height, COLORREF colour) {
  auto surface = Surface(width, height);
  surface->Clear(colour);
  GdiFlush();
  return surface;
}

}  // namespace marklet
