// The table of line breaks beside the platform's own.
#include "platform/shared/line_breaks.h"

#include <gtest/gtest.h>

#include <ios>
#include <string_view>

#include "platform/win32/sdk.h"

namespace marklet {
namespace {

bool PlatformBreaksBetween(char16_t before, char16_t after) {
  SCRIPT_ANALYSIS analysis{};
  analysis.eScript = SCRIPT_UNDEFINED;
  SCRIPT_LOGATTR places[2]{};
  const wchar_t text[] = {static_cast<wchar_t>(before), static_cast<wchar_t>(after)};
  EXPECT_EQ(ScriptBreak(text, 2, &analysis, places), 0);
  return places[1].fSoftBreak;
}

constexpr std::u16string_view kCharacters =
    u" !\"#$%&'()*+,-./"
    u"0123456789:;<=>?@AZ[\\]^_`az{|}~\t\v\u00A0\u00A1\u00A3\u00A5\u00A9\u00AB\u00AD\u00B0\u00B1"
    u"\u00BB\u00BF\u00E9\u05D0\u0627\u0E2A\u2002\u200B\u2010\u2011\u2013\u2014\u2018\u2019\u201C\u201D\u2022"
    u"\u2026"
    u"\u2028\u202F\u2060\u20AC\u2122\u3000\u3001\u3002\u3005\u3008\u300C\u300D\u3041\u3042\u30A1\u30AB\u30FB"
    u"\u30FC"
    u"\u4E2D\uAC00\uFF01\uFF08\uFF09\uFF0C\uFF1A\uFF21\uFF66\uFFFD\xD83D\xDE00";

TEST(LineBreaks, AreThoseOfThePlatform) {
  for (const char16_t before : kCharacters)
    for (const char16_t after : kCharacters)
      EXPECT_EQ(MayBreakBetween(before, after), PlatformBreaksBetween(before, after))
          << std::hex << static_cast<unsigned>(before) << " " << static_cast<unsigned>(after);
}

}  // namespace
}  // namespace marklet
