// The list of complex characters against the script processor that it was taken from.
#include <gtest/gtest.h>

#include "platform/shared/complex_characters.h"
#include "platform/uniscribe.h"

namespace marklet {
namespace {

TEST(ComplexCharacters, AreThoseOfTheScriptProcessor) {
  for (std::uint32_t unit = 0; unit <= 0xFFFF; ++unit) {
    const auto c = static_cast<char16_t>(unit);
    ASSERT_EQ(ScriptIsComplex({&c, 1}, SIC_COMPLEX) == S_OK, IsComplexUnit(c)) << std::hex << unit;
  }
}

}  // namespace
}  // namespace marklet
