// Texts compared without regard to case, by Unicode's simple folding.
#include <glib.h>

#include <memory>
#include <string>

#include "platform/headless/text/utf.h"
#include "platform/system.h"

namespace marklet {
namespace {

using headless::NextCodePoint;

struct Free {
  void operator()(void* memory) const { g_free(memory); }
};

// The library's own folding, which may give several characters for one.
std::u32string FullFold(char32_t c) {
  char utf8[6];
  const int bytes = g_unichar_to_utf8(c, utf8);
  const std::unique_ptr<char, Free> folded(g_utf8_casefold(utf8, bytes));
  glong count = 0;
  const std::unique_ptr<gunichar, Free> result(g_utf8_to_ucs4_fast(folded.get(), -1, &count));
  return {result.get(), result.get() + count};
}

// One character for one: a letter whose folding is several goes with its lower case where that has the same.
char32_t Fold(char32_t c) {
  if (c < 0x80) return c >= U'A' && c <= U'Z' ? c + 32 : c;
  if (headless::IsSurrogate(c)) return c;
  const std::u32string full = FullFold(c);
  if (full.size() == 1) return full[0];
  const char32_t lower = g_unichar_tolower(c);
  return lower != c && FullFold(lower) == full ? lower : c;
}

}  // namespace

int CompareStringOrdinal(std::u16string_view a, std::u16string_view b) {
  std::size_t in_a = 0, in_b = 0;
  while (in_a < a.size() && in_b < b.size()) {
    const char32_t x = NextCodePoint(a, in_a), y = NextCodePoint(b, in_b);
    if (x == y) continue;
    const char32_t folded_x = Fold(x), folded_y = Fold(y);
    if (folded_x != folded_y) return folded_x < folded_y ? -1 : 1;
  }
  return static_cast<int>(in_a < a.size()) - static_cast<int>(in_b < b.size());
}

}  // namespace marklet
