// Written PNG files and zlib streams, read back by libpng and zlib.
#include <gtest/gtest.h>
#include <png.h>
#include <zlib.h>

#include <random>

#include "render/deflate.h"
#include "render/png_writer.h"
#include "support/heap_watch.h"

namespace marklet {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes Inflate(const Bytes& stream, std::size_t size) {
  Bytes result(size + 16);
  uLongf length = static_cast<uLongf>(result.size());
  const int answer = uncompress(result.data(), &length, stream.data(), static_cast<uLong>(stream.size()));
  EXPECT_EQ(answer, Z_OK);
  result.resize(length);
  return result;
}

Bytes Noise(std::size_t size, unsigned values, unsigned seed) {
  std::mt19937 random(seed);
  Bytes result(size);
  for (std::uint8_t& byte : result) byte = static_cast<std::uint8_t>(random() % values);
  return result;
}

TEST(ZlibCompress, StreamsReadBack) {
  for (const std::size_t size : {0u, 1u, 2u, 3u, 4u, 257u, 258u, 259u, 260u, 1000u, 32768u, 32769u, 200000u})
    for (const unsigned values : {1u, 2u, 4u, 256u}) {
      const Bytes bytes = Noise(size, values, static_cast<unsigned>(size));
      EXPECT_EQ(Inflate(ZlibCompress(bytes), size), bytes) << size << " of " << values;
    }
}

TEST(ZlibCompress, EveryByteEveryLengthAndEveryReachReadBack) {
  Bytes bytes;
  for (int value = 0; value < 256; ++value) bytes.push_back(static_cast<std::uint8_t>(value));
  for (std::size_t length = 3; length <= 300; ++length) {
    bytes.insert(bytes.end(), length, static_cast<std::uint8_t>(length));
    bytes.push_back(static_cast<std::uint8_t>(~length));
  }
  const Bytes phrase = Noise(40, 256, 1);
  for (const std::size_t reach : {1u, 5u, 100u, 1000u, 8191u, 16384u, 24600u, 32700u, 32768u, 40000u}) {
    bytes.insert(bytes.end(), phrase.begin(), phrase.end());
    const Bytes between = Noise(reach, 256, static_cast<unsigned>(reach));
    bytes.insert(bytes.end(), between.begin(), between.end());
  }
  EXPECT_EQ(Inflate(ZlibCompress(bytes), bytes.size()), bytes);
}

using ZlibMemory = HeapTest;

TEST_F(ZlibMemory, DoesNotGrowWithTheBytes) {
  const Bytes bytes(500000, 7);
  EXPECT_LT(PeakOfHeap([&] { ZlibCompress(bytes); }), 600000u);
}

TEST(ZlibCompress, RepetitionIsMadeSmall) { EXPECT_LT(ZlibCompress(Bytes(100000, 7)).size(), 1200u); }

Picture Decode(const Bytes& file) {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  EXPECT_TRUE(png_image_begin_read_from_memory(&image, file.data(), file.size())) << image.message;
  EXPECT_EQ(image.format, unsigned{PNG_FORMAT_RGB});
  Picture picture{static_cast<Long>(image.width), static_cast<Long>(image.height), {}};
  picture.rgb.resize(PNG_IMAGE_SIZE(image));
  EXPECT_TRUE(png_image_finish_read(&image, nullptr, picture.rgb.data(), 0, nullptr)) << image.message;
  EXPECT_EQ(image.warning_or_error, 0u) << image.message;
  return picture;
}

Picture Plain(Long width, Long height, std::uint8_t value) {
  return {width, height,
          Bytes(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 3, value)};
}

TEST(EncodePng, PicturesOfManySizesReadBack) {
  for (const Long width : {1, 2, 3, 17, 300})
    for (const Long height : {1, 2, 60}) {
      Picture picture = Plain(width, height, 0);
      picture.rgb = Noise(picture.rgb.size(), 256, static_cast<unsigned>(width));
      EXPECT_EQ(Decode(EncodePng(picture, 3780)), picture) << width << "x" << height;
    }
}

// Gradients bring out every filter: flat rows, columns, diagonals.
TEST(EncodePng, EveryFilterReadsBack) {
  Picture picture = Plain(64, 320, 0);
  auto byte = picture.rgb.begin();
  for (int y = 0; y < 320; ++y)
    for (int x = 0; x < 64; ++x) {
      const int forms[] = {x * y * 37 + x * x * 11, x * 4, y * 3, (x + y) * 2, x * x / 16 + y * y / 16};
      for (int k = 0; k < 3; ++k) *byte++ = static_cast<std::uint8_t>(forms[y / 64] + k);
    }
  const Bytes file = EncodePng(picture, 3780);
  EXPECT_EQ(Decode(file), picture);
  EXPECT_LT(file.size(), picture.rgb.size() / 3);
}

TEST(EncodePng, CarriesTheDensity) {
  const Bytes file = EncodePng(Plain(4, 4, 9), 7559);
  png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  struct Source {
    const Bytes& bytes;
    std::size_t at;
  } source{file, 0};
  png_set_read_fn(png, &source, [](png_structp reader, png_bytep to, png_size_t count) {
    auto& from = *static_cast<Source*>(png_get_io_ptr(reader));
    std::copy_n(from.bytes.begin() + static_cast<std::ptrdiff_t>(from.at), count, to);
    from.at += count;
  });
  png_read_info(png, info);
  EXPECT_EQ(png_get_x_pixels_per_meter(png, info), 7559u);
  EXPECT_EQ(png_get_y_pixels_per_meter(png, info), 7559u);
  png_destroy_read_struct(&png, &info, nullptr);
}

TEST(EncodePng, SamePixelsSameBytes) {
  const Picture picture = Plain(30, 20, 77);
  EXPECT_EQ(EncodePng(picture, 3780), EncodePng(picture, 3780));
}

}  // namespace
}  // namespace marklet
