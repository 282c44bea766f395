// What Windows' script processor does and Wine's doesn't yet. Under Wine the headless platform's tests of
// analyses (StretchALineToItsWidth, UnderlineTheCharacterAfterAnAmpersand) are the proof.
#include <string_view>

#include "platform/test_picture.h"
#include "platform/uniscribe.h"
#include "platform/win32/system_function.h"

namespace marklet {
namespace {

constexpr std::uint32_t kFlags = SSA_TAB | SSA_CLIP | SSA_FALLBACK | SSA_BREAK | SSA_GLYPHS;

class ScriptProcessor : public testing::Test {
 protected:
  ScriptProcessor() {
    LOGFONTW record;
    record.lfHeight = -16;
    record.lfFaceName = u"DejaVu Sans";
    picture_.UseFont(record);
  }
  Long WidthOf(std::u16string_view text, std::uint32_t flags, Long width) const {
    const SCRIPT_STRING_ANALYSIS analysis =
        ScriptStringAnalyse(picture_.Context(), text, flags, width, {}, {}, {});
    const SIZE* const size = ScriptString_pSize(analysis);
    const Long result = size != nullptr ? size->cx : -1;
    ScriptStringFree(analysis);
    return result;
  }

  TestPicture picture_{200, 60};
};

TEST_F(ScriptProcessor, StretchesALineToItsWidth) {
  const Long natural = WidthOf(u"one two", kFlags, 150), fitted = WidthOf(u"one two", kFlags | SSA_FIT, 150);
  if (win32::IsWine() && fitted == natural) GTEST_SKIP() << "Wine's script processor knows no SSA_FIT";
  EXPECT_EQ(fitted, 150);
}

TEST_F(ScriptProcessor, ShowsNoMarkOfAHotKey) {
  const Long plain = WidthOf(u"one", kFlags, 150), marked = WidthOf(u"o&ne", kFlags | SSA_HOTKEY, 150);
  if (win32::IsWine() && marked == WidthOf(u"o&ne", kFlags, 150))
    GTEST_SKIP() << "Wine's script processor knows no SSA_HOTKEY";
  EXPECT_EQ(marked, plain);
}

// Under Wine it is left out, since it may end the program.
TEST_F(ScriptProcessor, ShowsAMarkWithNothingToStandOnWhereItCan) {
  for (const std::u16string_view mark : {u"\u05B0", u"\u064B"}) {
    picture_.Fill(0xFF);
    const SCRIPT_STRING_ANALYSIS analysis =
        ScriptStringAnalyse(picture_.Context(), mark, kFlags, 150, {}, {}, {});
    EXPECT_TRUE(ScriptStringOut(analysis, 20, 10, 0, nullptr, 0, 0, false));
    ScriptStringFree(analysis);
    EXPECT_EQ(InkOf(picture_, 0xFFFFFF) == RECT{}, win32::IsWine());
  }
}

}  // namespace
}  // namespace marklet
