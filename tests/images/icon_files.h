// Icon files, made byte by byte from what is to be seen.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace marklet::icons {

using Bytes = std::vector<std::uint8_t>;

inline void Put(Bytes& to, std::uint32_t value, int bytes) {
  for (int i = 0; i < bytes; ++i) to.push_back(static_cast<std::uint8_t>(value >> 8 * i));
}

// One image. Pixels count from the top left.
struct Image {
  int width = 16, height = 16, bits = 32;
  std::vector<std::uint32_t> palette{};            // 0xRRGGBB
  std::function<std::uint32_t(int, int)> pixel{};  // an index, 0xRRGGBB, or with 32 bits 0xAARRGGBB
  std::function<bool(int, int)> transparent{};     // no mask bit is set without it
  std::optional<std::uint32_t> colours_used{};     // in the header; the entries written are the palette's
  std::optional<int> directory_width{}, directory_height{};
  std::uint32_t planes = 1, header_size = 40, compression = 0;
};

namespace detail {

// Rows of `bits` a pixel, the leftmost in the high bits, bottom row first, each of whole groups of 32 bits.
inline void PutRows(Bytes& to, int width, int height, int bits,
                    const std::function<std::uint32_t(int, int)>& pixel) {
  for (int y = height; y-- > 0;) {
    const std::size_t start = to.size();
    if (bits >= 8) {
      for (int x = 0; x < width; ++x) Put(to, pixel ? pixel(x, y) : 0, bits / 8);
    } else {
      for (int x = 0; x < width; x += 8 / bits) {
        std::uint32_t byte = 0;
        for (int i = 0; i < 8 / bits; ++i)
          byte = byte << bits | (x + i < width && pixel ? pixel(x + i, y) : 0);
        Put(to, byte, 1);
      }
    }
    while ((to.size() - start) % 4 != 0) to.push_back(0);
  }
}

}  // namespace detail

// Header, palette, colour rows, mask rows.
inline Bytes DibOf(const Image& image) {
  Bytes dib;
  Put(dib, image.header_size, 4);
  Put(dib, static_cast<std::uint32_t>(image.width), 4);
  Put(dib, static_cast<std::uint32_t>(image.height * 2), 4);
  Put(dib, image.planes, 2);
  Put(dib, static_cast<std::uint32_t>(image.bits), 2);
  Put(dib, image.compression, 4);
  for (int unused = 0; unused < 3; ++unused) Put(dib, 0, 4);
  Put(dib, image.colours_used.value_or(0), 4);
  Put(dib, 0, 4);
  for (const std::uint32_t colour : image.palette) Put(dib, colour, 4);
  detail::PutRows(dib, image.width, image.height, image.bits, image.pixel);
  detail::PutRows(dib, image.width, image.height, 1, [&image](int x, int y) {
    return static_cast<std::uint32_t>(image.transparent && image.transparent(x, y) ? 1 : 0);
  });
  return dib;
}

// A file's parts, for files that lie.
struct Entry {
  int width = 16, height = 16;
  Bytes data{};
  std::optional<std::uint32_t> size{}, offset{};
};

inline Bytes FileOf(const std::vector<Entry>& entries, int type = 1, std::optional<int> count = {},
                    int reserved = 0) {
  Bytes file;
  Put(file, static_cast<std::uint32_t>(reserved), 2);
  Put(file, static_cast<std::uint32_t>(type), 2);
  Put(file, static_cast<std::uint32_t>(count.value_or(static_cast<int>(entries.size()))), 2);
  std::size_t offset = 6 + 16 * entries.size();
  for (const Entry& entry : entries) {
    file.push_back(static_cast<std::uint8_t>(entry.width));
    file.push_back(static_cast<std::uint8_t>(entry.height));
    Put(file, 0, 2);
    Put(file, 1, 2);
    Put(file, 77, 2);  // a bit count that nobody may look at
    Put(file, entry.size.value_or(static_cast<std::uint32_t>(entry.data.size())), 4);
    Put(file, entry.offset.value_or(static_cast<std::uint32_t>(offset)), 4);
    offset += entry.data.size();
  }
  for (const Entry& entry : entries) file.insert(file.end(), entry.data.begin(), entry.data.end());
  return file;
}

inline Entry EntryOf(const Image& image) {
  return {image.directory_width.value_or(image.width), image.directory_height.value_or(image.height),
          DibOf(image)};
}

inline Bytes FileOf(const std::vector<Image>& images, int type = 1) {
  std::vector<Entry> entries;
  entries.reserve(images.size());
  for (const Image& image : images) entries.push_back(EntryOf(image));
  return FileOf(entries, type);
}

}  // namespace marklet::icons
