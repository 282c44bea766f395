// The value of a colour tag, and the private copy of a font.
#include "markup/font_colour_tags.h"

#include <gtest/gtest.h>

#include <string>

#include "markup/markup_caption.h"
#include "platform/system.h"

namespace marklet {
namespace {

TEST(ColorTag, ReadsRedGreenBlueInThatOrder) {
  struct Row {
    const char16_t* value;
    COLORREF colour;
  };
  const Row rows[] = {
      {u"FF8000", MakeRgb(0xFF, 0x80, 0x00)},
      {u"ff8000", MakeRgb(0xFF, 0x80, 0x00)},
      {u"12aB9f", MakeRgb(0x12, 0xAB, 0x9F)},
      {u"GGGGGG", 0},
      {u"#12345", MakeRgb(0x12, 0x34, 0x5)},  // a "#" costs a digit
      {u"######", 0},
      {u"1#2#34", MakeRgb(0x12, 0x34, 0)},
      {u"1G2G3G", MakeRgb(1, 2, 3)},  // read up to the first character that is no digit
      {u"G1G2G3", 0},
      {u" 1 2 3", 0},
      {u"1 2 3 ", MakeRgb(1, 2, 3)},
      {u"12>", MakeRgb(0x12, 0, 0)},
      {u">", 0},
      {u"", 0},
      {u"+1-1&1", 0},
      {u"FF80", MakeRgb(0xFF, 0x80, 0)},
      {u"FF800", MakeRgb(0xFF, 0x80, 0)},
      {u"01020304", MakeRgb(1, 2, 3)},
      {u"\uFF11\uFF11\uFF11\uFF11\uFF11\uFF11", 0},  // fullwidth digits are no digits
  };
  for (const Row& row : rows) {
    EXPECT_EQ(ParseColorTag(row.value), row.colour) << testing::PrintToString(std::u16string(row.value));
  }
}

TEST(ColorTag, ReadsEveryPairInEitherCase) {
  const std::u16string lower = u"0123456789abcdef", upper = u"0123456789ABCDEF";
  for (unsigned code = 0; code < 256; ++code) {
    for (const std::u16string& digits : {lower, upper}) {
      const std::u16string pair = {digits[code / 16], digits[code % 16]};
      EXPECT_EQ(ParseColorTag(pair + u"0000"), MakeRgb(code, 0, 0));
      EXPECT_EQ(ParseColorTag(u"00" + pair + u"00"), MakeRgb(0, code, 0));
      EXPECT_EQ(ParseColorTag(u"0000" + pair), MakeRgb(0, 0, code));
    }
  }
}

TEST(FontClone, OfNothingIsNothing) { EXPECT_EQ(CloneFont(nullptr), nullptr); }

TEST(FontClone, HasAllEightProperties) {
  const auto source = std::make_shared<StdFont>();
  source->PutName(u"Courier New");
  source->PutSize(11.25);
  source->PutWeight(300);
  source->PutItalic(true);
  source->PutUnderline(true);
  source->PutStrikethrough(true);
  source->PutCharset(161);
  const FontRef clone = CloneFont(source);
  ASSERT_NE(clone, nullptr);
  EXPECT_EQ(clone->Name(), u"Courier New");
  EXPECT_EQ(clone->Size(), 11.25);
  EXPECT_EQ(clone->Weight(), 300);
  EXPECT_FALSE(clone->Bold());
  EXPECT_TRUE(clone->Italic());
  EXPECT_TRUE(clone->Underline());
  EXPECT_TRUE(clone->Strikethrough());
  EXPECT_EQ(clone->Charset(), 161);
}

TEST(FontClone, KeepsAnUnusualBoldWeight) {
  const auto source = std::make_shared<StdFont>();
  source->PutWeight(900);
  EXPECT_EQ(CloneFont(source)->Weight(), 900);
}

TEST(FontClone, SharesNothingWithItsSource) {
  const auto source = std::make_shared<StdFont>();
  const FontRef clone = CloneFont(source);
  clone->PutName(u"Arial");
  clone->PutBold(true);
  EXPECT_EQ(source->Name(), u"Tahoma");
  EXPECT_FALSE(source->Bold());
}

TEST(BlendColors, MixesEachChannelByItsWeight) {
  EXPECT_EQ(BlendColors(MakeRgb(255, 255, 255), 0, 92), MakeRgb(92, 92, 92));
  EXPECT_EQ(BlendColors(0, MakeRgb(255, 255, 255), 92), MakeRgb(163, 163, 163));
  EXPECT_EQ(BlendColors(MakeRgb(100, 0, 10), MakeRgb(0, 100, 20), 92), MakeRgb(36, 64, 16));
  EXPECT_EQ(BlendColors(MakeRgb(1, 2, 3), MakeRgb(4, 5, 6), 255), MakeRgb(1, 2, 3));
  EXPECT_EQ(BlendColors(MakeRgb(1, 2, 3), MakeRgb(4, 5, 6), 0), MakeRgb(4, 5, 6));
}

TEST(BlendColors, RoundsToNearestWhereTruncatingWouldLose) {
  // 163/255 and 92/255 of the same colour: the sum is the colour itself.
  for (unsigned level = 0; level < 256; ++level) {
    EXPECT_EQ(BlendColors(MakeRgb(level, level, level), MakeRgb(level, level, level), 92),
              MakeRgb(level, level, level));
  }
}

TEST(BlendColors, TranslatesSystemColours) {
  Configuration().system_colours[15] = MakeRgb(255, 0, 0);
  EXPECT_EQ(BlendColors(0x8000000F, 0, 92), MakeRgb(92, 0, 0));
  EXPECT_EQ(BlendColors(0, 0x8000000F, 92), MakeRgb(163, 0, 0));
  Configuration().system_colours.clear();
}

}  // namespace
}  // namespace marklet
