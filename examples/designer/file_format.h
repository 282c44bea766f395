// A form as a file holds it. All numbers are little-endian; texts are UTF-16 without an end mark.
//
//   8 bytes   "MARKFORM"
//   u32       version: 1
//   u32 u32   width and height of the form's inside, in twips
//   u32       how many controls follow, the lowest first; of each
//     16 bytes  its class, as a GUID lies in memory
//     u32       units of its name, and these
//     i32 (4)   left, top, width and height in twips
//     u32       bytes that it saved (IPersistStreamInit), and these
//   u32       CRC-32 of all bytes before
//
// Nothing follows. Names are there, and differ.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "place.h"

namespace designer {

// What a form may have. Places lie between -kFarthest and kFarthest, sizes between 0 and that.
constexpr std::size_t kMostControls = 1000, kLongestName = 64;
constexpr int kFarthest = 1 << 20;
constexpr std::size_t kLargestFile = std::size_t{256} << 20;

struct SavedControl {
  std::array<std::uint8_t, 16> class_id{};
  std::u16string name;
  Place place;  // in twips
  std::vector<std::uint8_t> state;
  bool operator==(const SavedControl&) const = default;
};

struct SavedForm {
  int width = 0, height = 0;  // in twips
  std::vector<SavedControl> controls;
  bool operator==(const SavedForm&) const = default;
};

enum class FileFault {
  NoForm,   // something else
  Newer,    // of a version that this program doesn't know
  Damaged,  // changed or cut off since it was written, or written by nobody
};
// For the user.
const wchar_t* Describe(FileFault fault);

std::vector<std::uint8_t> Encode(const SavedForm& form);

// Takes no more memory than the bytes themselves do.
std::variant<SavedForm, FileFault> Decode(std::span<const std::uint8_t> bytes);

}  // namespace designer
