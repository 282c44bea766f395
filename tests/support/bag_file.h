// A property bag as a text file. Each line has a name, a type and a value, in the order of writing:
//
//   Padding I4 7
//   AutoSize BOOL True
//   ImageKey BSTR "\u03A9 hover"             code units beyond ASCII as \uXXXX
//   Caption BYTES 0:4 41004200                lower bound and number of elements of each dimension, then the
//                                             bytes, the first dimension's next to each other
//   Font OBJ "Tahoma" size 82500 weight 400 italic 0 underline 0 strikethrough 0 charset 0
//                                             the size in ten-thousandths of a point
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <variant>
#include <vector>

#include "base/byte_array.h"

namespace marklet::testing {

struct FontInFile {
  std::u16string name;
  std::int32_t size = 0, weight = 0;
  bool italic = false, underline = false, strikethrough = false;
  std::uint8_t charset = 0;
  friend bool operator==(const FontInFile&, const FontInFile&) = default;
};

struct BagFileEntry {
  std::string name;
  std::variant<std::int32_t, bool, std::u16string, ByteArray, FontInFile> value;
};

// A line that can't be read throws.
std::vector<BagFileEntry> ReadBagFile(const std::filesystem::path& path);

}  // namespace marklet::testing
