#include "base/ascii.h"

#include <gtest/gtest.h>

namespace marklet {
namespace {

TEST(Ascii, OnlyCapitalsOfItHaveALowerCase) {
  EXPECT_EQ(AsciiLower('A'), 'a');
  EXPECT_EQ(AsciiLower('Z'), 'z');
  EXPECT_EQ(AsciiLower('@'), '@');
  EXPECT_EQ(AsciiLower('['), '[');
  EXPECT_EQ(AsciiLower('a'), 'a');
  EXPECT_EQ(AsciiLower('\xC4'), '\xC4');
  EXPECT_EQ(AsciiLower(u'Q'), u'q');
  EXPECT_EQ(AsciiLower(u'\u00C4'), u'\u00C4');
}

TEST(Ascii, ComparesTextsWithoutRegardToCase) {
  EXPECT_TRUE(SameWithoutCase("Usp10.DLL", "uSP10.dll"));
  EXPECT_TRUE(SameWithoutCase(u"MS Shell Dlg", u"ms shell dlg"));
  EXPECT_FALSE(SameWithoutCase("ab", "abc"));
  EXPECT_FALSE(SameWithoutCase("[", "{"));
  EXPECT_FALSE(SameWithoutCase(u"\u00C4", u"\u00E4"));
  EXPECT_TRUE(SameWithoutCase("", ""));
}

TEST(HexDigit, HasAValueInEitherCase) {
  EXPECT_EQ(HexDigit('0'), 0);
  EXPECT_EQ(HexDigit('9'), 9);
  EXPECT_EQ(HexDigit('A'), 10);
  EXPECT_EQ(HexDigit('f'), 15);
  EXPECT_EQ(HexDigit(u'F'), 15);
  EXPECT_EQ(HexDigit(u'a'), 10);
}

TEST(HexDigit, IsNegativeForWhatIsNone) {
  for (const char ch : {'/', ':', '@', 'G', '`', 'g', '\0', '\xE4'}) EXPECT_LT(HexDigit(ch), 0) << ch;
  for (const char16_t ch : {u'\uFF11', u'\u0661', u'\x0130', u'\xFFFF'}) EXPECT_LT(HexDigit(ch), 0);
}

}  // namespace
}  // namespace marklet
