#include "png_peers.h"

#include <benchmark/benchmark.h>
#include <libdeflate.h>
#include <lodepng.h>
#include <png.h>
#include <spng.h>
#include <stb/stb_image.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>

namespace marklet::bench {
namespace {

using File = std::span<const std::uint8_t>;

struct Free {
  void operator()(std::uint8_t* memory) const { std::free(memory); }
};
using Pixels = std::unique_ptr<std::uint8_t[], Free>;

Pixels MakePixels(std::size_t bytes) { return Pixels(static_cast<std::uint8_t*>(std::malloc(bytes))); }

bool DecodeBySpng(File file, int flags, spng_crc_action crc_action) {
  spng_ctx* const context = spng_ctx_new(flags);
  spng_set_crc_action(context, crc_action, crc_action);
  spng_set_png_buffer(context, file.data(), file.size());
  std::size_t bytes = 0;
  spng_decoded_image_size(context, SPNG_FMT_RGBA8, &bytes);
  const Pixels pixels = MakePixels(bytes);
  const bool decoded = spng_decode_image(context, pixels.get(), bytes, SPNG_FMT_RGBA8, 0) == 0;
  benchmark::DoNotOptimize(pixels.get());
  spng_ctx_free(context);
  return decoded;
}

bool Spng(File file) { return DecodeBySpng(file, SPNG_CTX_IGNORE_ADLER32, SPNG_CRC_USE); }
bool SpngWithChecks(File file) { return DecodeBySpng(file, 0, SPNG_CRC_ERROR); }

void ReadFromMemory(png_structp png, png_bytep data, std::size_t length) {
  auto& rest = *static_cast<File*>(png_get_io_ptr(png));
  std::memcpy(data, rest.data(), length);
  rest = rest.subspan(length);
}

bool Libpng(File file) {
  png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  png_set_crc_action(png, PNG_CRC_QUIET_USE, PNG_CRC_QUIET_USE);
  png_set_option(png, PNG_IGNORE_ADLER32, PNG_OPTION_ON);
  png_set_read_fn(png, &file, ReadFromMemory);
  png_read_info(png, info);
  png_set_bgr(png);
  png_set_filler(png, 255, PNG_FILLER_AFTER);
  png_set_interlace_handling(png);
  png_read_update_info(png, info);
  const std::size_t height = png_get_image_height(png, info), stride = png_get_rowbytes(png, info);
  const Pixels pixels = MakePixels(height * stride);
  std::vector<png_bytep> rows;
  rows.reserve(height);
  for (std::size_t y = 0; y < height; ++y) rows.push_back(pixels.get() + y * stride);
  png_read_image(png, rows.data());
  benchmark::DoNotOptimize(pixels.get());
  png_destroy_read_struct(&png, &info, nullptr);
  return height > 0;
}

bool StbImage(File file) {
  int width, height, channels;
  const Pixels pixels(
      stbi_load_from_memory(file.data(), static_cast<int>(file.size()), &width, &height, &channels, 4));
  benchmark::DoNotOptimize(pixels.get());
  return pixels != nullptr;
}

bool Lodepng(File file) {
  LodePNGState state;
  lodepng_state_init(&state);
  state.decoder.ignore_crc = 1;
  state.decoder.zlibsettings.ignore_adler32 = 1;
  state.info_raw.colortype = LCT_RGBA;
  unsigned char* memory = nullptr;
  unsigned width, height;
  const bool decoded = lodepng_decode(&memory, &width, &height, &state, file.data(), file.size()) == 0;
  const Pixels pixels(memory);
  benchmark::DoNotOptimize(pixels.get());
  lodepng_state_cleanup(&state);
  return decoded;
}

constexpr PngPeer kPeers[] = {{"libspng", Spng},
                              {"libspng with checks", SpngWithChecks},
                              {"libpng", Libpng},
                              {"stb_image", StbImage},
                              {"lodepng", Lodepng}};

std::uint32_t BigEndian(const std::uint8_t* bytes) {
  return std::uint32_t{bytes[0]} << 24 | std::uint32_t{bytes[1]} << 16 | std::uint32_t{bytes[2]} << 8 |
         bytes[3];
}

}  // namespace

std::span<const PngPeer> PngPeers() { return kPeers; }

// Of a sound file, such as these are.
std::vector<std::uint8_t> StreamOf(File file) {
  constexpr std::size_t kSignature = 8, kHead = 8, kCrc = 4;
  std::vector<std::uint8_t> stream;
  for (std::size_t position = kSignature; position < file.size();) {
    const std::uint32_t length = BigEndian(&file[position]);
    const File payload = file.subspan(position + kHead, length);
    if (std::memcmp(&file[position + 4], "IDAT", 4) == 0)
      stream.insert(stream.end(), payload.begin(), payload.end());
    position += kHead + length + kCrc;
  }
  return stream;
}

bool InflateWithLibdeflate(std::span<const std::uint8_t> stream, std::span<std::uint8_t> memory) {
  static libdeflate_decompressor* const decompressor = libdeflate_alloc_decompressor();
  constexpr std::size_t kZlibHeader = 2;
  std::size_t inflated = 0;
  return libdeflate_deflate_decompress(decompressor, stream.data() + kZlibHeader, stream.size() - kZlibHeader,
                                       memory.data(), memory.size(), &inflated) == LIBDEFLATE_SUCCESS;
}

}  // namespace marklet::bench
