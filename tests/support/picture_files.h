// BMP, GIF and JPG files, made byte by byte.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace marklet::pictures {

using Bytes = std::vector<std::uint8_t>;
using Colour = std::function<std::uint32_t(int x, int y)>;  // 0xRRGGBB, from the top left

inline void Put(Bytes& to, std::uint32_t value, int bytes) {
  for (int i = 0; i < bytes; ++i) to.push_back(static_cast<std::uint8_t>(value >> 8 * i));
}

inline void PutText(Bytes& to, const char* text) {
  while (*text != '\0') to.push_back(static_cast<std::uint8_t>(*text++));
}

// 24 bits, bottom-up, nothing compressed.
inline Bytes Bmp(int width, int height, const Colour& colour) {
  const std::uint32_t stride = (static_cast<std::uint32_t>(width) * 3 + 3) / 4 * 4;
  const std::uint32_t size = 54 + stride * static_cast<std::uint32_t>(height);
  Bytes file;
  PutText(file, "BM");
  for (const std::uint32_t value : {size, 0u, 54u, 40u}) Put(file, value, 4);
  Put(file, static_cast<std::uint32_t>(width), 4);
  Put(file, static_cast<std::uint32_t>(height), 4);
  Put(file, 1, 2);
  Put(file, 24, 2);
  for (int i = 0; i < 6; ++i) Put(file, 0, 4);
  for (int y = height; y-- > 0;) {
    for (int x = 0; x < width; ++x) Put(file, colour(x, y), 3);
    while ((file.size() - 54) % 4 != 0) file.push_back(0);
  }
  return file;
}

// Codes of growing bytes, lowest bit first.
class LowBits {
 public:
  void Put(unsigned value, int count) {
    for (int i = 0; i < count; ++i, ++used_) {
      if (used_ % 8 == 0) bytes_.push_back(0);
      bytes_.back() = static_cast<std::uint8_t>(bytes_.back() | (value >> i & 1) << used_ % 8);
    }
  }
  const Bytes& Get() const { return bytes_; }

 private:
  Bytes bytes_;
  int used_ = 0;
};

// One frame of 128 colours. Its table never grows: it is cleared after every hundred pixels.
inline void PutGifFrame(Bytes& file, int width, int height, const std::function<unsigned(int, int)>& index) {
  file.push_back(0x2C);
  Put(file, 0, 4);
  Put(file, static_cast<std::uint32_t>(width), 2);
  Put(file, static_cast<std::uint32_t>(height), 2);
  file.push_back(0);
  file.push_back(7);
  LowBits codes;
  for (int i = 0; i < width * height; ++i) {
    if (i % 100 == 0) codes.Put(128, 8);
    codes.Put(index(i % width, i / width), 8);
  }
  codes.Put(129, 8);
  const Bytes& bytes = codes.Get();
  for (std::size_t at = 0; at < bytes.size(); at += 255) {
    const std::size_t count = std::min<std::size_t>(255, bytes.size() - at);
    file.push_back(static_cast<std::uint8_t>(count));
    for (std::size_t i = 0; i < count; ++i) file.push_back(bytes[at + i]);
  }
  file.push_back(0);
}

inline Bytes Gif(int width, int height, const std::vector<std::uint32_t>& palette,
                 const std::function<unsigned(int, int)>& index, std::optional<unsigned> transparent = {},
                 int frames = 1) {
  Bytes file;
  PutText(file, "GIF89a");
  Put(file, static_cast<std::uint32_t>(width), 2);
  Put(file, static_cast<std::uint32_t>(height), 2);
  for (const int byte : {0xF6, 0, 0}) file.push_back(static_cast<std::uint8_t>(byte));
  for (std::size_t i = 0; i < 128; ++i) {
    const std::uint32_t colour = i < palette.size() ? palette[i] : 0;
    for (const int shift : {16, 8, 0}) file.push_back(static_cast<std::uint8_t>(colour >> shift));
  }
  for (int frame = 0; frame < frames; ++frame) {
    if (transparent)
      for (const unsigned byte : {0x21u, 0xF9u, 4u, 1u, 0u, 0u, *transparent, 0u})
        file.push_back(static_cast<std::uint8_t>(byte));
    PutGifFrame(file, width, height, [&](int x, int y) {
      return frame == 0 ? index(x, y) : static_cast<unsigned>(palette.size()) - 1;
    });
  }
  file.push_back(0x3B);
  return file;
}

// Grey squares of 8 by 8 pixels, each of one value, which comes back exactly.
class JpegBits {
 public:
  explicit JpegBits(Bytes& file) : file_(file) {}
  void Put(unsigned value, int count) {
    while (count-- > 0) {
      byte_ = byte_ << 1 | (value >> count & 1);
      if (++used_ == 8) Flush();
    }
  }
  void End() {
    while (used_ != 0) Put(1, 1);
  }

 private:
  void Flush() {
    file_.push_back(static_cast<std::uint8_t>(byte_));
    if (byte_ == 0xFF) file_.push_back(0);
    byte_ = 0;
    used_ = 0;
  }
  Bytes& file_;
  unsigned byte_ = 0;
  int used_ = 0;
};

inline Bytes Jpeg(int width, int height, const std::function<int(int column, int row)>& grey) {
  Bytes file = {0xFF, 0xD8, 0xFF, 0xE0, 0, 16, 'J', 'F', 'I', 'F', 0, 1, 1, 0, 0, 1, 0, 1, 0, 0};
  const auto segment = [&file](unsigned marker, const Bytes& payload) {
    const std::size_t length = payload.size() + 2;
    for (const std::size_t byte : {std::size_t{0xFF}, std::size_t{marker}, length >> 8, length & 255})
      file.push_back(static_cast<std::uint8_t>(byte));
    file.insert(file.end(), payload.begin(), payload.end());
  };
  Bytes quantisers(65, 1);
  quantisers[0] = 0;
  segment(0xDB, quantisers);
  const auto high = [](int value) { return static_cast<std::uint8_t>(value >> 8); };
  const auto low = [](int value) { return static_cast<std::uint8_t>(value); };
  segment(0xC0, {8, high(height), low(height), high(width), low(width), 1, 1, 0x11, 0});
  // Twelve codes of four bits, one for each number of bits of a difference; one code of one bit for "no
  // more".
  segment(0xC4,
          {0x00, 0, 0, 0, 12, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11});
  segment(0xC4, {0x10, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
  segment(0xDA, {1, 1, 0x00, 0, 63, 0});
  JpegBits bits(file);
  int former = 0;
  for (int row = 0; row < (height + 7) / 8; ++row)
    for (int column = 0; column < (width + 7) / 8; ++column) {
      const int value = 8 * (grey(column, row) - 128), difference = value - former;
      former = value;
      int size = 0;
      for (int rest = difference < 0 ? -difference : difference; rest > 0; rest >>= 1) ++size;
      bits.Put(static_cast<unsigned>(size), 4);
      bits.Put(static_cast<unsigned>(difference < 0 ? difference + (1 << size) - 1 : difference), size);
      bits.Put(0, 1);
    }
  bits.End();
  file.push_back(0xFF);
  file.push_back(0xD9);
  return file;
}

}  // namespace marklet::pictures
