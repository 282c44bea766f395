#include "render/property_text.h"

#include <gtest/gtest.h>

#include "render/render_error.h"
#include "support/fake_host.h"

namespace marklet {
namespace {

using testing::PlacedControl;

Value Parse(const char* name, std::string_view text) {
  return ParseValue(*FindNamedProperty(name).row, text);
}

std::string Refusal(const char* name, std::string_view text) {
  try {
    Parse(name, text);
  } catch (const RenderError& error) {
    return error.what();
  }
  return "taken";
}

TEST(PropertyText, Booleans) {
  for (const char* yes : {"true", "True", "TRUE", "1", "-1"}) EXPECT_EQ(Parse("AutoSize", yes), Value(true));
  for (const char* no : {"false", "False", "0"}) EXPECT_EQ(Parse("autosize", no), Value(false));
  for (const char* bad : {"", "2", "yes", "tru", " true"})
    EXPECT_NE(Refusal("AutoSize", bad), "taken") << bad;
}

TEST(PropertyText, Colours) {
  EXPECT_EQ(Parse("BackColor", "#C08040"), Value(Long{0x004080C0}));
  EXPECT_EQ(Parse("BackColor", "#c08040"), Value(Long{0x004080C0}));
  EXPECT_EQ(Parse("ForeColor", "255"), Value(Long{255}));
  EXPECT_EQ(Parse("ForeColor", "0x8000000F"), Value(static_cast<Long>(0x8000000F)));
  EXPECT_EQ(Parse("ForeColor", "-2147483633"), Value(static_cast<Long>(0x8000000F)));
  EXPECT_EQ(Parse("ForeColor", "2147483663"), Value(static_cast<Long>(0x8000000F)));
  EXPECT_EQ(Parse("EffectColor", "-1"), Value(Long{-1}));
  for (const char* bad : {"", "#", "#12345", "#1234567", "#GGGGGG", "# 1234", "#-12345", "red", "0x", "1.5",
                          "4294967296", "-2147483649", "99999999999999999999", "0x-5", "--5", "+5"})
    EXPECT_NE(Refusal("BackColor", bad), "taken") << bad;
}

TEST(PropertyText, NumbersAndMembersOfEnumerations) {
  EXPECT_EQ(Parse("TextEffect", "effectStroke"), Value(Long{1}));
  EXPECT_EQ(Parse("TextEffect", "EFFECTHOLLOW"), Value(Long{5}));
  EXPECT_EQ(Parse("TextEffect", "4"), Value(Long{4}));
  EXPECT_EQ(Parse("TextEffect", "99"), Value(Long{99})) << "no enumeration is checked";
  EXPECT_EQ(Parse("Appearance", "3d"), Value(Long{1}));
  EXPECT_EQ(Parse("ImageSize", "16x16"), Value(Long{0}));
  EXPECT_EQ(Parse("ImageAlignment", "left justify"), Value(Long{0}));
  EXPECT_EQ(Parse("BorderStyle", "Fixed Single"), Value(Long{1}));
  EXPECT_EQ(Parse("BackStyle", "OPAQUE"), Value(Long{1}));
  EXPECT_EQ(Parse("FontSize", "12"), Value(Long{12}));
  EXPECT_EQ(Parse("MousePointer", "-3"), Value(Long{-3}));
  for (const char* bad : {"", "effect", "Left", "1 ", "2147483648", "3.0"})
    EXPECT_NE(Refusal("TextEffect", bad), "taken") << bad;
  for (const char* bad : {"", "12pt", "8.25", "2147483648"})
    EXPECT_NE(Refusal("FontSize", bad), "taken") << bad;
}

TEST(PropertyText, TextsAreUtf8) {
  EXPECT_EQ(Parse("Caption", "\xCE\xA9 x"), Value(std::u16string(u"\u03A9 x")));
  EXPECT_EQ(Parse("Caption", ""), Value(std::u16string()));
  EXPECT_EQ(Parse("FontName", "Times New Roman"), Value(std::u16string(u"Times New Roman")));
}

TEST(PropertyText, Fonts) {
  const auto font = std::get<FontRef>(Parse("Font", "Times New Roman, 8.25, bold Italic strikeout"));
  EXPECT_EQ(font->Name(), u"Times New Roman");
  EXPECT_EQ(font->Size(), 8.25);
  EXPECT_TRUE(font->Bold());
  EXPECT_TRUE(font->Italic());
  EXPECT_FALSE(font->Underline());
  EXPECT_TRUE(font->Strikethrough());
  const auto underlined = std::get<FontRef>(Parse("font", " \xCE\xA9 ,12,,underline,"));
  EXPECT_EQ(underlined->Name(), u"\u03A9");
  EXPECT_EQ(underlined->Size(), 12);
  EXPECT_TRUE(underlined->Underline());
  EXPECT_FALSE(underlined->Bold());
  const auto named = std::get<FontRef>(Parse("Font", "Arial"));
  EXPECT_EQ(named->Name(), u"Arial");
  EXPECT_EQ(named->Size(), 8.25);
  for (const char* bad : {"", ",", ", 12", "Arial, x", "Arial, 0", "Arial, -8", "Arial, 12pt", "Arial, nan",
                          "Arial, bold", "Arial, 12, wide", "Arial, 1 2"})
    EXPECT_NE(Refusal("Font", bad), "taken") << bad;
}

TEST(PropertyText, AFontGoesThroughItsSetter) {
  PlacedControl hosted;
  AssignProperty(hosted.control, "Font", "Arial, 9.5, bold");
  EXPECT_EQ(hosted.host.Font()->Name(), u"Arial");
  EXPECT_EQ(hosted.host.Font()->Size(), 9.5);
  EXPECT_EQ(hosted.host.Font()->Weight(), 700);
}

TEST(PropertyText, MessagesNameThePropertyAndTheText) {
  EXPECT_EQ(Refusal("fontsize", "big"), "FontSize can't be \"big\": it is a whole number");
  EXPECT_EQ(Refusal("TextEffect", "glow"),
            "TextEffect can't be \"glow\": it is a number or one of effectNone, effectStroke, effectShadow, "
            "effectEmboss, effectEngrave, effectHollow");
  EXPECT_EQ(Refusal("AutoSize", "a\nb"), "AutoSize can't be \"a\\x0Ab\": it is true or false");
  EXPECT_EQ(Refusal("AutoSize", std::string(59, 'a') + "\xE4\xB8\xAD"),
            "AutoSize can't be \"" + std::string(59, 'a') + "...\": it is true or false")
      << "no character is cut in two";
}

TEST(PropertyText, WhatCannotBeGiven) {
  for (const char* name : {"", "Colour", "hwnd", "MouseIcon", "Caption "})
    EXPECT_THROW(FindNamedProperty(name), RenderError) << name;
}

TEST(PropertyText, EveryOtherPropertyCanBeGiven) {
  for (const PropertyRow& row : Properties()) {
    if (row.name == "hwnd" || row.name == "MouseIcon") continue;
    EXPECT_EQ(FindNamedProperty(row.name).row, &row);
  }
}

TEST(PropertyText, HiddenPropertiesAreStoredPastTheirSetters) {
  PlacedControl hosted;
  AssignProperty(hosted.control, "Padding", "4");
  AssignProperty(hosted.control, "righttoleft", "true");
  AssignProperty(hosted.control, "Alignment", "Justified");
  AssignProperty(hosted.control, "VerticalAlignment", "Bottom");
  EXPECT_TRUE(hosted.host.log.empty());
  EXPECT_EQ(hosted.State().Padding, 4);
  EXPECT_TRUE(hosted.State().RightToLeft);
  EXPECT_EQ(hosted.State().Alignment, 3);
  EXPECT_EQ(hosted.State().VerticalAlignment, 3);
}

TEST(PropertyText, PublicPropertiesGoThroughTheirSetters) {
  PlacedControl hosted;
  AssignProperty(hosted.control, "caption", "x");
  EXPECT_EQ(hosted.host.log.back(), "Change");
}

}  // namespace
}  // namespace marklet
