#include "platform/headless/text/missing_characters.h"

#include <map>

#include "platform/headless/text/utf.h"

namespace marklet::headless {
namespace {

constexpr int kBlockBits = 7;

bool CanBeInAFont(char32_t c) {
  return c != 0 && !IsSurrogate(c) && (c & 0xFFFE) != 0xFFFE && (c < 0xFDD0 || c > 0xFDEF);
}

// By block.
std::map<char32_t, char32_t>& Missing() {
  thread_local std::map<char32_t, char32_t> missing;
  return missing;
}

}  // namespace

void NoteMissing(char32_t c) {
  if (CanBeInAFont(c)) Missing().try_emplace(c >> kBlockBits, c);
}

std::vector<char32_t> TakeMissing() {
  std::vector<char32_t> characters;
  for (const auto& [block, first] : Missing()) characters.push_back(first);
  Missing().clear();
  return characters;
}

}  // namespace marklet::headless
