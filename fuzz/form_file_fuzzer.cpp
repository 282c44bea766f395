// Any bytes as a file of the form designer.
#include <algorithm>
#include <cstdint>
#include <set>
#include <variant>
#include <vector>

#include "base/crc32.h"
#include "examples/designer/file_format.h"
#include "fuzz/fuzzers.h"
#include "fuzz/require.h"

namespace marklet {
namespace {

using Bytes = std::vector<std::uint8_t>;

void AppendNumber(Bytes& to, std::uint32_t number) {
  for (int shift = 0; shift < 32; shift += 8) to.push_back(static_cast<std::uint8_t>(number >> shift));
}

// What every form begins with, and the sum that makes it one: without them hardly an input would be read on.
Bytes Dressed(std::span<const std::uint8_t> rest) {
  Bytes file = {'M', 'A', 'R', 'K', 'F', 'O', 'R', 'M'};
  AppendNumber(file, 1);
  file.insert(file.end(), rest.begin(), rest.end());
  AppendNumber(file, Crc32(file));
  return file;
}

bool IsWithin(int value, int least) { return value >= least && value <= designer::kFarthest; }

void CheckControl(const designer::SavedControl& control) {
  Require(!control.name.empty() && control.name.size() <= designer::kLongestName,
          "a name has no name's length");
  const designer::Place& place = control.place;
  Require(IsWithin(place.left, -designer::kFarthest) && IsWithin(place.top, -designer::kFarthest) &&
              IsWithin(place.width, 0) && IsWithin(place.height, 0),
          "a control lies where none may");
}

// A form is what its bytes say, all of them.
void CheckForm(const designer::SavedForm& form, const Bytes& file) {
  Require(IsWithin(form.width, 0) && IsWithin(form.height, 0), "a form has a size that none may have");
  Require(form.controls.size() <= designer::kMostControls, "a form has too many controls");
  std::set<std::u16string> names;
  for (const designer::SavedControl& control : form.controls) {
    CheckControl(control);
    Require(names.insert(control.name).second, "two controls have one name");
  }
  Require(designer::Encode(form) == file, "a form that was read is saved as another");
}

void Check(const Bytes& file) {
  const auto read = designer::Decode(file);
  if (const auto* form = std::get_if<designer::SavedForm>(&read)) CheckForm(*form, file);
}

}  // namespace

void FuzzFormFile(std::span<const std::uint8_t> input) {
  Check({input.begin(), input.end()});
  Check(Dressed(input));
}

}  // namespace marklet
