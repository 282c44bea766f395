// Square PNG files by what is to be seen.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "png/png_files.h"

namespace marklet::pictures {

// 0xAARRGGBB from the top left; alpha is dropped when the file has none.
inline png::test::Bytes Png(int size, const std::function<std::uint32_t(int, int)>& pixel,
                            bool with_alpha = true, int height = 0) {
  if (height == 0) height = size;
  png::test::Bytes rows;
  for (int y = 0; y < height; ++y) {
    rows.push_back(0);
    for (int x = 0; x < size; ++x) {
      const std::uint32_t colour = pixel(x, y);
      for (const int shift : {16, 8, 0}) rows.push_back(static_cast<std::uint8_t>(colour >> shift));
      if (with_alpha) rows.push_back(static_cast<std::uint8_t>(colour >> 24));
    }
  }
  png::test::Header header;
  header.width = static_cast<std::uint32_t>(size);
  header.height = static_cast<std::uint32_t>(height);
  header.color_type = with_alpha ? 6 : 2;
  return png::test::File(header, png::test::StoredZlib(rows));
}

}  // namespace marklet::pictures
