#include <png.h>

#include <cstdio>
#include <fstream>

#include "render/picture.h"
#include "render/png_writer.h"
#include "support/compare_pictures.h"

namespace marklet::testing {
namespace {

// Empty when libpng can't read the file.
Picture Read(const std::string& file) {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  if (!png_image_begin_read_from_file(&image, file.c_str())) return {};
  image.format = PNG_FORMAT_RGB;
  Picture picture{static_cast<Long>(image.width), static_cast<Long>(image.height), {}};
  picture.rgb.resize(PNG_IMAGE_SIZE(image));
  if (!png_image_finish_read(&image, nullptr, picture.rgb.data(), 0, nullptr)) return {};
  return picture;
}

// Pale where the pictures agree, red where they don't. Returns how many pixels differ.
int MarkDifferences(const Picture& expected, const Picture& actual, Picture& marked) {
  marked = expected;
  int count = 0;
  for (std::size_t i = 0; i < expected.rgb.size(); i += 3) {
    const bool same = std::equal(&expected.rgb[i], &expected.rgb[i] + 3, &actual.rgb[i]);
    count += !same;
    for (std::size_t k = 0; k < 3; ++k)
      marked.rgb[i + k] = static_cast<std::uint8_t>(same ? 192 + expected.rgb[i + k] / 4 : 0);
    if (!same) marked.rgb[i] = 255;
  }
  return count;
}

}  // namespace

std::string ComparePictures(const std::string& expected, const std::string& actual,
                            const std::string& difference) {
  const Picture wanted = Read(expected), got = Read(actual);
  if (wanted.rgb.empty()) return "no picture at " + expected;
  if (got.rgb.empty()) return "no picture at " + actual;
  if (wanted.width != got.width || wanted.height != got.height)
    return std::to_string(got.width) + "x" + std::to_string(got.height) + " instead of " +
           std::to_string(wanted.width) + "x" + std::to_string(wanted.height);
  Picture marked;
  const int count = MarkDifferences(wanted, got, marked);
  if (count == 0) return {};
  const auto bytes = EncodePng(marked, 3780);
  std::ofstream(difference, std::ios::binary)
      .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  return std::to_string(count) + " pixels differ: see " + difference;
}

bool FontsArePinned() { return true; }

}  // namespace marklet::testing
