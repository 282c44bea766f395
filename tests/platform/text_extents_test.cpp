// Widths and heights of text, whatever the font looks like.
#include <limits>

#include "platform/system.h"
#include "platform/test_picture.h"

namespace marklet {
namespace {

constexpr Long kMax = std::numeric_limits<Long>::max();

class TextExtents : public testing::Test {
 protected:
  TextExtents() { UseHeight(-13); }
  void UseHeight(Long height) {
    LOGFONTW record;
    record.lfHeight = height;
    record.lfFaceName = u"Tahoma";
    picture_.UseFont(record);
  }
  Long WidthOf(std::u16string_view text) const { return picture_.Extent(text).cx; }

  TestPicture picture_{64, 32};
};

TEST_F(TextExtents, AreTheSumsOfTheirCharacters) {
  const std::u16string_view text = u"The quick brown fox, 0123456789 (AVAToTe)!";
  Long sum = 0;
  for (std::size_t i = 0; i < text.size(); ++i) sum += WidthOf(text.substr(i, 1));
  EXPECT_EQ(WidthOf(text), sum);
}

TEST_F(TextExtents, HaveOneHeightWhateverTheText) {
  const Long height = picture_.Extent(u"x").cy;
  EXPECT_GT(height, 13 * 3 / 4);
  for (const std::u16string_view text : {u"gjpqy", u"\u00C5", u"\u4E2D", u"a longer text"})
    EXPECT_EQ(picture_.Extent(text).cy, height);
}

TEST_F(TextExtents, OfNothingAreNothing) {
  SIZE size = {7, 7};
  ASSERT_TRUE(GetTextExtentPoint32W(picture_.Context(), {}, size));
  EXPECT_EQ(size, (SIZE{0, 0}));
  size = {7, 7};
  ASSERT_TRUE(GetTextExtentPoint32A(picture_.Context(), {}, 0, size));
  EXPECT_EQ(size, (SIZE{0, 0}));
}

TEST_F(TextExtents, OfAFaceNameEndAtItsNul) {
  const SIZE tahoma = picture_.Extent(u"Total");
  LOGFONTW record;
  record.lfHeight = -13;
  record.lfFaceName = std::u16string(u"Tahoma\0 Bold", 12);
  picture_.UseFont(record);
  EXPECT_EQ(picture_.Extent(u"Total"), tahoma);
}

TEST_F(TextExtents, TakeAmpersandsAndLineEndsForCharacters) {
  EXPECT_GT(WidthOf(u"a&b"), WidthOf(u"ab"));
  EXPECT_EQ(WidthOf(u"a&&b"), WidthOf(u"a&b") + WidthOf(u"&"));
  EXPECT_GE(WidthOf(u"a\r\nb"), WidthOf(u"ab"));
}

TEST_F(TextExtents, GrowWithTheFont) {
  const SIZE small = picture_.Extent(u"Total");
  UseHeight(-26);
  const SIZE large = picture_.Extent(u"Total");
  EXPECT_NEAR(large.cx, 2 * small.cx, 6);
  EXPECT_NEAR(large.cy, 2 * small.cy, 3);
}

TEST_F(TextExtents, OfACellHeightHaveThatHeight) {
  for (const Long height : {10, 16, 24, 40}) {
    UseHeight(height);
    EXPECT_NEAR(picture_.Extent(u"x").cy, height, 1) << height;
  }
}

TEST_F(TextExtents, OfAFontWithoutAHeightAreLegible) {
  UseHeight(0);
  EXPECT_GE(picture_.Extent(u"x").cy, 8);
  EXPECT_LE(picture_.Extent(u"x").cy, 32);
}

TEST_F(TextExtents, OfBytesAreThoseOfTheirCharacters) {
  SIZE size;
  ASSERT_TRUE(GetTextExtentPoint32A(picture_.Context(), "Caf\xE9", 4, size));
  EXPECT_EQ(size, picture_.Extent(u"Caf\u00E9"));
}

TEST_F(TextExtents, OfBytesEndAtTheCountOrTheText) {
  SIZE size;
  ASSERT_TRUE(GetTextExtentPoint32A(picture_.Context(), "Total", 2, size));
  EXPECT_EQ(size, picture_.Extent(u"To"));
  ASSERT_TRUE(GetTextExtentPoint32A(picture_.Context(), "Total", kMax, size));
  EXPECT_EQ(size, picture_.Extent(u"Total"));
  ASSERT_TRUE(GetTextExtentPoint32A(picture_.Context(), "Total", -1, size));
  EXPECT_EQ(size, (SIZE{0, 0}));
}

TEST_F(TextExtents, OfACharacterAreItsThreeSpacings) {
  for (unsigned code = 0x21; code < 0x7F; ++code) {
    ABC widths;
    ASSERT_TRUE(GetCharABCWidthsA(picture_.Context(), code, widths));
    const char16_t character = static_cast<char16_t>(code);
    EXPECT_EQ(widths.abcA + static_cast<Long>(widths.abcB) + widths.abcC, WidthOf({&character, 1})) << code;
    EXPECT_GE(widths.abcB, 1u);
  }
}

TEST_F(TextExtents, OfABlankHaveABlackBoxOfOnePixel) {
  ABC widths;
  ASSERT_TRUE(GetCharABCWidthsA(picture_.Context(), ' ', widths));
  EXPECT_EQ(widths.abcA, 0);
  EXPECT_EQ(widths.abcB, 1u);
  EXPECT_EQ(widths.abcC, WidthOf(u" ") - 1);
}

// Within two pixels: a font may have bitmaps of its own for small sizes, which are narrower than its
// outlines.
TEST_F(TextExtents, SpacingsTellWhereTheInkLies) {
  picture_.Fill(0xFF);
  SetBkMode(picture_.Context(), TRANSPARENT);
  for (const char letter : {'H', 'l', 'W'}) {
    picture_.Fill(0xFF);
    const auto character = static_cast<char16_t>(letter);
    TextOutW(picture_.Context(), 10, 5, {&character, 1});
    const RECT ink = InkOf(picture_, 0xFFFFFF);
    ABC widths;
    ASSERT_TRUE(GetCharABCWidthsA(picture_.Context(), static_cast<unsigned>(letter), widths));
    EXPECT_NEAR(ink.left, 10 + widths.abcA, 2) << letter;
    EXPECT_NEAR(ink.right, 10 + widths.abcA + static_cast<Long>(widths.abcB), 2) << letter;
  }
}

TEST_F(TextExtents, BelongToTheFontThatIsSelected) {
  const Long regular = WidthOf(u"Totally wide");
  LOGFONTW record;
  record.lfHeight = -13;
  record.lfWeight = 700;
  record.lfFaceName = u"Tahoma";
  const HFONT bold = CreateFontIndirectW(record);
  const HGDIOBJ former = SelectObject(picture_.Context(), bold);
  EXPECT_GT(WidthOf(u"Totally wide"), regular);
  SelectObject(picture_.Context(), former);
  EXPECT_EQ(WidthOf(u"Totally wide"), regular);
  DeleteObject(bold);
}

TEST_F(TextExtents, DontDependOnUnderlineAndStrikeOut) {
  const SIZE plain = picture_.Extent(u"Total");
  LOGFONTW record;
  record.lfHeight = -13;
  record.lfFaceName = u"Tahoma";
  record.lfUnderline = record.lfStrikeOut = true;
  picture_.UseFont(record);
  EXPECT_EQ(picture_.Extent(u"Total"), plain);
}

}  // namespace
}  // namespace marklet
