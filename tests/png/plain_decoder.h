// A PNG file decoded the slow way, step by step, from its bytes to the pixels that a bitmap must hold.
#pragma once

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include "png/plain_inflate.h"

namespace marklet::png::plain {

struct Picture {
  int width = 0, height = 0;
  Bytes pixels;  // blue, green, red, alpha; bottom row first
};

// Throws Unsettled where no result is right or wrong.
class Decoder {
 public:
  // None where the file must yield no pixels.
  std::optional<Picture> Decode(const Bytes& file) {
    if (!Walk(file) || idat_.size() <= 2 || width <= 0 || height <= 0) return std::nullopt;
    return Convert();
  }

  int width = 0, height = 0, bit_depth = 0, color_type = 0, compression = 0, interlace = 0;
  std::string text;

 private:
  // ---- chunks ----

  bool Walk(const Bytes& file) {
    const Bytes signature = {0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A};
    if (file.size() < 8 || Bytes(file.begin(), file.begin() + 8) != signature) return false;
    std::size_t position = 8;
    Bytes buffer;
    const auto read = [&](std::uint8_t* to, std::size_t count) {
      for (; count > 0 && position < file.size(); --count) *to++ = file[position++];
    };
    for (;;) {
      std::uint8_t head[8] = {};
      read(head, 8);
      const int length = Big(head);
      const std::string type(reinterpret_cast<char*>(head + 4), 4);
      if (static_cast<std::int64_t>(position) + 1 + length > static_cast<std::int64_t>(file.size()))
        return false;
      if (length > 0) buffer.resize(static_cast<std::size_t>(length));
      read(buffer.data(), buffer.size());
      std::uint8_t crc[4];
      read(crc, 4);
      if (type == "IHDR") {
        if (buffer.size() < 13) throw Unsettled();
        width = Big(buffer.data());
        height = Big(buffer.data() + 4);
        bit_depth = buffer[8];
        color_type = buffer[9];
        compression = buffer[10];
        interlace = buffer[12];
      }
      if (type == "IDAT") idat_.insert(idat_.end(), buffer.begin(), buffer.end());
      if (type == "tEXt") text.append(buffer.begin(), buffer.end()).push_back('\0');
      if (type == "zTXt") CompressedText(buffer);
      if (type == "IEND") return true;
    }
  }
  static int Big(const std::uint8_t* bytes) {
    std::uint32_t value = 0;
    for (int i = 0; i < 4; ++i) value = value << 8 | bytes[i];
    return static_cast<std::int32_t>(value);
  }
  // Matters only in that one object inflates it all.
  void CompressedText(const Bytes& payload) {
    std::size_t start = 0;
    while (start < payload.size() && payload[start] != 0) ++start;
    start += 4;
    std::size_t end = start;
    while (end < payload.size() && payload[end] != 0) ++end;
    if (start >= end) return;
    const Bytes slice(payload.begin() + static_cast<std::ptrdiff_t>(start),
                      payload.begin() + static_cast<std::ptrdiff_t>(end));
    inflate_.Run(slice, 12 * static_cast<std::int64_t>(slice.size() - 1));
  }

  // ---- scanlines ----

  std::int64_t BitsPerPixel() const {
    switch (color_type) {
      case 0:
      case 3:
        return bit_depth;
      case 2:
        return std::int64_t{bit_depth} * 3;
      case 4:
        return std::int64_t{bit_depth} * 2;
      case 6:
        return std::int64_t{bit_depth} * 4;
      default:
        return 0;
    }
  }
  std::int64_t RowBytes() const { return (width * BitsPerPixel() + 7) / 8 + 1; }

  static std::uint8_t At(const Bytes& bytes, std::int64_t index) {
    if (index < 0 || index >= static_cast<std::int64_t>(bytes.size())) throw Unsettled();
    return bytes[static_cast<std::size_t>(index)];
  }

  void Unfilter(Bytes& row, const Bytes& previous, int filter) const {
    const std::size_t distance = BitsPerPixel() < 8 ? 1 : static_cast<std::size_t>(BitsPerPixel() / 8);
    for (std::size_t x = 0; x < row.size(); ++x) {
      const int a = x < distance ? 0 : row[x - distance], b = previous[x];
      const int c = x < distance ? 0 : previous[x - distance];
      const int p = a + b - c;
      const int pa = std::abs(p - a), pb = std::abs(p - b), pc = std::abs(p - c);
      const int paeth = pa <= pb && pa <= pc ? a : pb <= pc ? b : c;
      const int predicted[] = {0, a, b, (a + b) / 2, paeth};
      if (filter < 5) row[x] = static_cast<std::uint8_t>(row[x] + predicted[filter]);
    }
  }

  Bytes Rows(const Bytes& data) const {
    Bytes result;
    const std::int64_t row_bytes = RowBytes() - 1;
    if (static_cast<std::int64_t>(data.size()) < (row_bytes + 1) * height) throw Unsettled();
    Bytes previous(static_cast<std::size_t>(row_bytes));
    for (std::int64_t y = 0; y < height; ++y) {
      Bytes row;
      for (std::int64_t x = 0; x < row_bytes; ++x) row.push_back(At(data, y * (row_bytes + 1) + 1 + x));
      Unfilter(row, previous, At(data, y * (row_bytes + 1)));
      result.insert(result.end(), row.begin(), row.end());
      previous = row;
    }
    return result;
  }

  // The passes as columns and start rows counted from 1.
  Bytes Deinterlace(const Bytes& data) const {
    struct Pass {
      std::string columns, rows;
    };
    static const Pass kPasses[] = {{"1", "1"},     {"5", "1"},       {"15", "5"},         {"37", "15"},
                                   {"1357", "37"}, {"2468", "1357"}, {"12345678", "2468"}};
    const auto pitch = static_cast<std::size_t>(BitsPerPixel() / 8);
    Bytes image(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * pitch);
    std::int64_t position = 0;
    for (const Pass& pass : kPasses) {
      std::vector<std::size_t> columns;
      for (int x = 0; x < width; ++x)
        if (pass.columns.find(static_cast<char>('1' + x % 8)) != std::string::npos)
          columns.push_back(static_cast<std::size_t>(x));
      if (columns.empty()) continue;
      Bytes previous(columns.size() * pitch);
      for (int y = 0; y < height; ++y) {
        if (pass.rows.find(static_cast<char>('1' + y % 8)) == std::string::npos) continue;
        const int filter = At(data, position++);
        Bytes row;
        while (row.size() < previous.size()) row.push_back(At(data, position++));
        Unfilter(row, previous, filter);
        for (std::size_t i = 0; i < columns.size(); ++i)
          for (std::size_t c = 0; c < pitch; ++c)
            image[(static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + columns[i]) * pitch + c] =
                row[i * pitch + c];
        previous = row;
      }
    }
    return image;
  }

  // ---- pixels ----

  std::optional<Picture> Convert() {
    const bool known =
        (color_type == 2 || color_type == 4 || color_type == 6) && (bit_depth == 8 || bit_depth == 16);
    const bool raw =
        (color_type == 2 || color_type == 4 || color_type == 6) && (bit_depth == 24 || bit_depth == 32);
    if (!known && !raw) return std::nullopt;
    // No numbers that a 32-bit integer can't hold.
    const std::int64_t rows = RowBytes() * height;
    if (rows > 0x7FFF0000 || std::int64_t{width} * height > 0x1FFF0000) throw Unsettled();
    const std::int64_t size = interlace == 0 ? rows : interlace == 1 ? rows + height : 0;
    Bytes data(idat_.begin() + 2, idat_.end());
    if (compression == 0) data = inflate_.Run(data, size).data;
    if (interlace == 0) data = Rows(data);
    if (interlace == 1) data = Deinterlace(data);
    if (known && bit_depth == 16) {
      Bytes high;
      for (std::size_t i = 0; i < data.size(); i += 2) high.push_back(data[i]);
      data = high;
    }
    return Picture{width, height, raw ? Raw(data) : Pixels(data)};
  }

  Bytes Pixels(const Bytes& data) const {
    Bytes pixels;
    const std::int64_t samples = color_type == 2 ? 3 : color_type == 4 ? 2 : 4;
    for (std::int64_t y = height - 1; y >= 0; --y)
      for (std::int64_t x = 0; x < width; ++x) {
        const std::int64_t i = (y * width + x) * samples;
        const bool gray = color_type == 4;
        pixels.push_back(At(data, gray ? i : i + 2));
        pixels.push_back(At(data, gray ? i : i + 1));
        pixels.push_back(At(data, i));
        pixels.push_back(color_type == 2 ? 255 : At(data, gray ? i + 1 : i + 3));
      }
    if (color_type != 2) pixels.back() = 0;
    // The bottom right pixel's red is the last byte of the 24-bit rows, if none ends in padding.
    if (color_type == 2 && width * 3 % 4 == 0) pixels[static_cast<std::size_t>(width) * 4 - 2] = 0;
    return pixels;
  }

  // A bitmap of the depth that the header says, of the bytes as they come.
  Bytes Raw(Bytes data) const {
    Bytes pixels;
    const std::int64_t stride = (std::int64_t{bit_depth} * width + 31) / 32 * 4;
    if (data.empty()) throw Unsettled();
    data.back() = 0;
    if (bit_depth == 32) {
      for (std::int64_t i = 0; i < stride * height; ++i) pixels.push_back(At(data, i));
      return pixels;
    }
    At(data, stride * height - 1);
    for (std::int64_t y = height - 1; y >= 0; --y)
      for (std::int64_t x = 0; x < width; ++x) {
        for (std::int64_t c = 0; c < 3; ++c) pixels.push_back(At(data, y * stride + 3 * x + c));
        pixels.push_back(255);
      }
    return pixels;
  }

  Bytes idat_;
  Inflate inflate_;
};

}  // namespace marklet::png::plain
