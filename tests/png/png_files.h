// PNG files, deflate streams and random numbers for tests, made without any library.
#pragma once

#include <cstdint>
#include <random>
#include <string_view>
#include <vector>

#include "platform/gdi.h"
#include "png/cpng_decoder.h"

namespace marklet::png::test {

using Bytes = std::vector<std::uint8_t>;

inline void Append(Bytes& to, const Bytes& more) { to.insert(to.end(), more.begin(), more.end()); }

inline Bytes BigEndian(std::uint32_t value) {
  return {static_cast<std::uint8_t>(value >> 24), static_cast<std::uint8_t>(value >> 16),
          static_cast<std::uint8_t>(value >> 8), static_cast<std::uint8_t>(value)};
}

inline Bytes Signature() { return {0x89, 0x50, 0x4E, 0x47, 0x0D, 0x0A, 0x1A, 0x0A}; }

inline std::uint32_t Crc(const Bytes& bytes) {
  std::uint32_t crc = 0xFFFFFFFF;
  for (const std::uint8_t byte : bytes) {
    crc ^= byte;
    for (int bit = 0; bit < 8; ++bit) crc = crc >> 1 ^ (crc & 1 ? 0xEDB88320 : 0);
  }
  return ~crc;
}

inline Bytes ChunkOfLength(std::uint32_t length, std::string_view type, const Bytes& payload) {
  Bytes checked(type.begin(), type.end());
  Append(checked, payload);
  Bytes chunk = BigEndian(length);
  Append(chunk, checked);
  Append(chunk, BigEndian(Crc(checked)));
  return chunk;
}

inline Bytes Chunk(std::string_view type, const Bytes& payload = {}) {
  return ChunkOfLength(static_cast<std::uint32_t>(payload.size()), type, payload);
}

struct Header {
  std::uint32_t width = 1, height = 1;
  std::uint8_t depth = 8, color_type = 6, interlace = 0, compression = 0, filter = 0;

  Bytes Payload() const {
    Bytes payload = BigEndian(width);
    Append(payload, BigEndian(height));
    Append(payload, {depth, color_type, compression, filter, interlace});
    return payload;
  }
  std::size_t BitsPerPixel() const {
    const std::size_t samples = color_type == 2 ? 3 : color_type == 4 ? 2 : color_type == 6 ? 4 : 1;
    return depth * samples;
  }
  std::size_t RowBytes() const { return (width * BitsPerPixel() + 7) / 8; }
};

// A file of these chunks.
inline Bytes FileOf(const std::vector<Bytes>& parts) {
  Bytes file = Signature();
  for (const Bytes& part : parts) Append(file, part);
  return file;
}

// A deflate stream of stored blocks, after a zlib header and before a checksum that nobody reads.
inline Bytes StoredZlib(const Bytes& data) {
  Bytes stream = {0x78, 0x01};
  std::size_t position = 0;
  do {
    const std::size_t count = std::min<std::size_t>(65535, data.size() - position);
    const bool last = position + count == data.size();
    const auto low = static_cast<std::uint8_t>(count), high = static_cast<std::uint8_t>(count >> 8);
    Append(stream, {static_cast<std::uint8_t>(last ? 1 : 0), low, high, static_cast<std::uint8_t>(~low),
                    static_cast<std::uint8_t>(~high)});
    stream.insert(stream.end(), data.begin() + static_cast<std::ptrdiff_t>(position),
                  data.begin() + static_cast<std::ptrdiff_t>(position + count));
    position += count;
  } while (position < data.size());
  Append(stream, {0, 0, 0, 0});
  return stream;
}

// A whole file around a zlib stream.
inline Bytes File(const Header& header, const Bytes& zlib_stream, const Bytes& chunks_before_idat = {}) {
  Bytes file = Signature();
  Append(file, Chunk("IHDR", header.Payload()));
  Append(file, chunks_before_idat);
  Append(file, Chunk("IDAT", zlib_stream));
  Append(file, Chunk("IEND"));
  return file;
}

// Bits in the order of a deflate stream.
class BitWriter {
 public:
  // A number, lowest bit first.
  BitWriter& Put(std::uint32_t value, int count) {
    for (int bit = 0; bit < count; ++bit) PutBit(value >> bit & 1);
    return *this;
  }
  // A code, highest bit first.
  BitWriter& Code(std::uint32_t code, int length) {
    for (int bit = length; bit-- > 0;) PutBit(code >> bit & 1);
    return *this;
  }
  // A literal or length symbol of the fixed code.
  BitWriter& Fixed(unsigned symbol) {
    if (symbol < 144) return Code(0x30 + symbol, 8);
    if (symbol < 256) return Code(0x190 + symbol - 144, 9);
    if (symbol < 280) return Code(symbol - 256, 7);
    return Code(0xC0 + symbol - 280, 8);
  }
  BitWriter& ToByte() {
    used_ = 8;
    return *this;
  }
  BitWriter& Byte(unsigned byte) { return Put(byte, 8); }
  const Bytes& bytes() const { return bytes_; }

 private:
  void PutBit(std::uint32_t bit) {
    if (used_ == 8) {
      bytes_.push_back(0);
      used_ = 0;
    }
    bytes_.back() = static_cast<std::uint8_t>(bytes_.back() | bit << used_++);
  }
  Bytes bytes_;
  int used_ = 8;
};

// The same numbers on every platform.
class Random {
 public:
  explicit Random(std::uint32_t seed) : engine_(seed) {}
  std::uint32_t Below(std::uint32_t bound) { return static_cast<std::uint32_t>(engine_()) % bound; }
  std::uint8_t Byte() { return static_cast<std::uint8_t>(engine_() >> 8); }
  Bytes Some(std::size_t count) {
    Bytes bytes(count);
    for (std::uint8_t& byte : bytes) byte = Byte();
    return bytes;
  }

 private:
  std::mt19937 engine_;
};

// The pixels of a decoder's bitmap: blue, green, red, alpha, bottom row first. Empty without a bitmap.
inline Bytes PixelsOfBitmap(const CPngDecoder& decoder) {
  if (!decoder.BitmapHandle()) return {};
  const HDC dc = CreateCompatibleDC(nullptr);
  const HGDIOBJ former = SelectObject(dc, decoder.BitmapHandle());
  PixelView view;
  Bytes pixels;
  if (PixelsOf(dc, view) && view.bits_per_pixel == 32 && view.stride == view.width * 4)
    pixels.assign(view.bits, view.bits + static_cast<std::ptrdiff_t>(view.stride) * view.height);
  SelectObject(dc, former);
  DeleteDC(dc);
  return pixels;
}

inline Bytes Decoded(Bytes file) {
  CPngDecoder decoder;
  decoder.LoadFromMemory(file);
  return PixelsOfBitmap(decoder);
}

}  // namespace marklet::png::test
