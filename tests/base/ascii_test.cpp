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

}  // namespace
}  // namespace marklet
