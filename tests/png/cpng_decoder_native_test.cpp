// Pictures that libpng wrote and reads, with the stated differences: no picture for gray and palette files,
// the high byte of 16-bit samples, the lost last byte.
#include <gtest/gtest.h>
#include <png.h>
#include <zlib.h>

#include <cstring>
#include <memory>

#include "png/palettes.h"
#include "png/png_files.h"
#include "support/processor_forms.h"

namespace marklet::png::test {
namespace {

struct Picture {
  png_uint_32 width, height;
  int depth, type, interlace;
  int level, strategy, filters;
  std::size_t idat_bytes;  // in one chunk

  std::size_t Samples() const {
    if (type == PNG_COLOR_TYPE_GRAY) return 1;
    return type == PNG_COLOR_TYPE_RGB ? 3 : type == PNG_COLOR_TYPE_GRAY_ALPHA ? 2 : 4;
  }
  std::size_t RowBytes() const { return width * Samples() * static_cast<std::size_t>(depth) / 8; }
};

void Write(png_structp png, png_bytep data, std::size_t length) {
  auto& file = *static_cast<Bytes*>(png_get_io_ptr(png));
  file.insert(file.end(), data, data + length);
}

Bytes WrittenByLibpng(const Picture& picture, const Bytes& samples) {
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  Bytes file;
  png_set_write_fn(png, &file, Write, nullptr);
  png_set_IHDR(png, info, picture.width, picture.height, picture.depth, picture.type, picture.interlace,
               PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  png_set_compression_level(png, picture.level);
  png_set_compression_strategy(png, picture.strategy);
  png_set_compression_buffer_size(png, picture.idat_bytes);
  png_set_filter(png, 0, picture.filters);
  std::vector<png_bytep> rows;
  for (std::size_t y = 0; y < picture.height; ++y)
    rows.push_back(const_cast<png_bytep>(samples.data() + y * picture.RowBytes()));
  png_set_rows(png, info, rows.data());
  png_write_png(png, info, PNG_TRANSFORM_IDENTITY, nullptr);
  png_destroy_write_struct(&png, &info);
  return file;
}

// Blue, green, red, alpha; bottom row first.
Bytes ReadByLibpng(const Bytes& file) {
  png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  struct Source {
    const Bytes& file;
    std::size_t position;
  } source{file, 0};
  png_set_read_fn(png, &source, [](png_structp reader, png_bytep data, std::size_t length) {
    auto& from = *static_cast<Source*>(png_get_io_ptr(reader));
    std::memcpy(data, from.file.data() + from.position, length);
    from.position += length;
  });
  png_read_info(png, info);
  if (png_get_bit_depth(png, info) == 16) png_set_strip_16(png);
  png_set_gray_to_rgb(png);
  png_set_bgr(png);
  png_set_filler(png, 255, PNG_FILLER_AFTER);
  png_set_interlace_handling(png);
  png_read_update_info(png, info);
  const std::size_t height = png_get_image_height(png, info), stride = png_get_rowbytes(png, info);
  Bytes pixels(height * stride);
  std::vector<png_bytep> rows;
  for (std::size_t y = 0; y < height; ++y) rows.push_back(pixels.data() + (height - 1 - y) * stride);
  png_read_image(png, rows.data());
  png_destroy_read_struct(&png, &info, nullptr);
  return pixels;
}

// From noise to flat areas.
Bytes RandomSamples(Random& random, const Picture& picture) {
  Bytes samples(picture.RowBytes() * picture.height);
  const std::uint32_t roughness = random.Below(4);
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const std::size_t pixel = picture.Samples() * (picture.depth == 16 ? 2 : 1);
    const int near = i >= pixel ? samples[i - pixel] : 0;
    const int above = i >= picture.RowBytes() ? samples[i - picture.RowBytes()] : 0;
    switch (roughness) {
      case 0:
        samples[i] = random.Byte();
        break;
      case 1:
        samples[i] = static_cast<std::uint8_t>((near + above) / 2 + static_cast<int>(random.Below(9)));
        break;
      case 2:
        samples[i] = static_cast<std::uint8_t>(random.Below(20) == 0 ? random.Byte() : near);
        break;
      default:
        samples[i] = static_cast<std::uint8_t>(i / pixel % 13 * 3 + i % pixel);
    }
  }
  return samples;
}

void ExpectSameAsLibpng(Random& random, const Picture& picture) {
  SCOPED_TRACE(testing::Message() << picture.width << 'x' << picture.height << " depth " << picture.depth
                                  << " type " << picture.type << " interlace " << picture.interlace);
  const Bytes file = WrittenByLibpng(picture, RandomSamples(random, picture));
  Bytes expected = ReadByLibpng(file);
  if (picture.type != PNG_COLOR_TYPE_RGB) expected.back() = 0;
  if (picture.type == PNG_COLOR_TYPE_RGB && picture.width % 4 == 0) expected[picture.width * 4 - 2] = 0;
  ASSERT_EQ(Decoded(file), expected);
}

constexpr int kStrategies[] = {Z_DEFAULT_STRATEGY, Z_FILTERED, Z_HUFFMAN_ONLY, Z_RLE, Z_FIXED};
constexpr int kFilters[] = {PNG_FILTER_NONE, PNG_FILTER_SUB,   PNG_FILTER_UP,
                            PNG_FILTER_AVG,  PNG_FILTER_PAETH, PNG_ALL_FILTERS};

class CPngDecoderNative : public ProcessorFormTest {};
using SlowCPngDecoderNative = CPngDecoderNative;

MARKLET_FOR_PROCESSOR_FORMS(CPngDecoderNative);
MARKLET_FOR_PROCESSOR_FORMS(SlowCPngDecoderNative);

TEST_P(SlowCPngDecoderNative, PicturesOfEverySizeTypeDepthFilterAndInterlace) {
  Random random(31);
  for (const int type : {PNG_COLOR_TYPE_RGB, PNG_COLOR_TYPE_RGB_ALPHA, PNG_COLOR_TYPE_GRAY_ALPHA})
    for (const int depth : {8, 16})
      for (const int interlace : {PNG_INTERLACE_NONE, PNG_INTERLACE_ADAM7})
        for (const int filters : kFilters)
          for (png_uint_32 size = 1; size <= 70; ++size) {
            const Picture picture{size,
                                  1 + random.Below(70),
                                  depth,
                                  type,
                                  interlace,
                                  static_cast<int>(random.Below(10)),
                                  kStrategies[random.Below(5)],
                                  filters,
                                  6 + random.Below(9000)};
            ExpectSameAsLibpng(random, picture);
            if (HasFatalFailure()) return;
          }
}

// Nobody gets them, but what is pending is theirs: rows close together, whatever a bitmap's rows need.
TEST_P(CPngDecoderNative, GrayPicturesOf16BitsKeepTheirHighBytes) {
  Random random(33);
  for (const int interlace : {PNG_INTERLACE_NONE, PNG_INTERLACE_ADAM7})
    for (const int filters : kFilters)
      for (png_uint_32 size = 1; size <= 20; ++size) {
        const Picture picture{
            size, 1 + random.Below(20), 16, PNG_COLOR_TYPE_GRAY, interlace, 6, Z_DEFAULT_STRATEGY, filters,
            8192};
        const Bytes samples = RandomSamples(random, picture);
        Mod().PendingBitmap = {};
        EXPECT_TRUE(Decoded(WrittenByLibpng(picture, samples)).empty());
        Bytes expected;
        for (std::size_t i = 0; i < samples.size(); i += 2) expected.push_back(samples[i]);
        expected.resize(std::size_t{picture.width + 3} / 4 * 4 * picture.height);
        ASSERT_EQ(Mod().PendingBitmap.bits, expected) << size << " interlace " << interlace;
      }
}

TEST_P(SlowCPngDecoderNative, LargePictures) {
  Random random(32);
  for (const int type : {PNG_COLOR_TYPE_RGB, PNG_COLOR_TYPE_RGB_ALPHA})
    for (const int depth : {8, 16})
      for (const int interlace : {PNG_INTERLACE_NONE, PNG_INTERLACE_ADAM7})
        for (int round = 0; round < 3; ++round) {
          ExpectSameAsLibpng(random, {200 + random.Below(300), 200 + random.Below(300), depth, type,
                                      interlace, 1 + static_cast<int>(random.Below(9)),
                                      kStrategies[random.Below(4)], kFilters[random.Below(6)], 8192});
          if (HasFatalFailure()) return;
        }
}

}  // namespace
}  // namespace marklet::png::test
