#include "file_format.h"

#include <algorithm>
#include <set>

#include "base/byte_reader.h"
#include "base/crc32.h"

namespace designer {
namespace {

constexpr std::uint8_t kMagic[] = {'M', 'A', 'R', 'K', 'F', 'O', 'R', 'M'};
constexpr std::uint32_t kVersion = 1;
constexpr std::size_t kChecksumSize = 4;

class Writer {
 public:
  void Bytes(std::span<const std::uint8_t> bytes) { all.insert(all.end(), bytes.begin(), bytes.end()); }
  void Number(std::uint32_t number) {
    for (int shift = 0; shift < 32; shift += 8) all.push_back(static_cast<std::uint8_t>(number >> shift));
  }
  void Signed(int number) { Number(static_cast<std::uint32_t>(number)); }
  void Size(std::size_t size) { Number(static_cast<std::uint32_t>(size)); }

  std::vector<std::uint8_t> all;
};

void Write(Writer& to, const SavedControl& control) {
  to.Bytes(control.class_id);
  to.Size(control.name.size());
  for (const char16_t unit : control.name)
    to.Bytes(std::array{static_cast<std::uint8_t>(unit), static_cast<std::uint8_t>(unit >> 8)});
  for (const int number : {control.place.left, control.place.top, control.place.width, control.place.height})
    to.Signed(number);
  to.Size(control.state.size());
  to.Bytes(control.state);
}

bool IsPlace(int value) { return value >= -kFarthest && value <= kFarthest; }
bool IsSize(int value) { return value >= 0 && value <= kFarthest; }

// False: this can't be a control.
bool Read(marklet::ByteReader& from, SavedControl& control) {
  std::ranges::copy(from.Take(control.class_id.size()), control.class_id.begin());
  const std::uint32_t length = from.U32();
  if (length == 0 || length > kLongestName) return false;
  for (std::uint32_t i = 0; i < length; ++i) control.name += static_cast<char16_t>(from.U16());
  for (int* number : {&control.place.left, &control.place.top, &control.place.width, &control.place.height})
    *number = from.I32();
  const auto state = from.Take(from.U32());
  control.state.assign(state.begin(), state.end());
  return !from.Overran() && IsPlace(control.place.left) && IsPlace(control.place.top) &&
         IsSize(control.place.width) && IsSize(control.place.height);
}

std::variant<SavedForm, FileFault> ReadForm(marklet::ByteReader from) {
  SavedForm form;
  form.width = from.I32();
  form.height = from.I32();
  if (!IsSize(form.width) || !IsSize(form.height)) return FileFault::Damaged;
  const std::uint32_t count = from.U32();
  if (count > kMostControls) return FileFault::Damaged;
  std::set<std::u16string> names;
  for (std::uint32_t i = 0; i < count; ++i) {
    SavedControl control;
    if (!Read(from, control) || !names.insert(control.name).second) return FileFault::Damaged;
    form.controls.push_back(std::move(control));
  }
  if (from.Left() != 0 || from.Overran()) return FileFault::Damaged;
  return form;
}

}  // namespace

const wchar_t* Describe(FileFault fault) {
  switch (fault) {
    case FileFault::NoForm:
      return L"This file isn't a form.";
    case FileFault::Newer:
      return L"This form was saved by a newer version of this program.";
    case FileFault::Damaged:
      return L"This file is damaged.";
  }
  return L"";
}

std::vector<std::uint8_t> Encode(const SavedForm& form) {
  Writer to;
  to.Bytes(kMagic);
  to.Number(kVersion);
  to.Signed(form.width);
  to.Signed(form.height);
  to.Size(form.controls.size());
  for (const SavedControl& control : form.controls) Write(to, control);
  to.Number(marklet::Crc32(to.all));
  return std::move(to.all);
}

std::variant<SavedForm, FileFault> Decode(std::span<const std::uint8_t> bytes) {
  marklet::ByteReader from(bytes);
  if (!std::ranges::equal(from.Take(std::size(kMagic)), kMagic)) return FileFault::NoForm;
  const std::uint32_t version = from.U32();
  if (version > kVersion) return FileFault::Newer;
  if (version != kVersion || from.Left() < kChecksumSize) return FileFault::Damaged;
  const auto checked = bytes.first(bytes.size() - kChecksumSize);
  if (marklet::Crc32(checked) != marklet::PaddedBytes(bytes).U32(checked.size())) return FileFault::Damaged;
  constexpr std::size_t kHead = sizeof kMagic + sizeof kVersion;
  return ReadForm(marklet::ByteReader(checked.subspan(kHead)));
}

}  // namespace designer
