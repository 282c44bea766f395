#include <fstream>
#include <iterator>

#include "support/compare_pictures.h"

namespace marklet::testing {
namespace {

std::string Read(const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

}  // namespace

// The writer gives the same bytes for the same pixels.
std::string ComparePictures(const std::string& expected, const std::string& actual, const std::string&) {
  const std::string wanted = Read(expected);
  if (wanted.empty()) return "no picture at " + expected;
  return wanted == Read(actual) ? std::string() : "the files differ: see " + actual;
}

bool FontsArePinned() { return false; }

}  // namespace marklet::testing
