// The property table, against the automation surface written out by hand.
#include "control/properties.h"

#include <gtest/gtest.h>

#include <iterator>
#include <set>
#include <string>

namespace marklet {
namespace {

struct Expected {
  const char* name;
  long long dispid;
  ValueType type;
  const char* enumeration;
  const char* slots;  // g get, p put, r putref
  bool browsable;
  const char* help;
};

const Expected kSlots[] = {
    {"AutoSize", 0x6803006C, ValueType::Boolean, "", "gp", true,
     "Determines whether a control is automatically resized to display its entire contents."},
    {"BackColor", -501, ValueType::Colour, "", "gp", true,
     "Returns/sets the background color used to display text and graphics in an object."},
    {"BackStyle", -502, ValueType::Choice, "BackStyle", "gp", true,
     "Indicates whether a control is transparent or opaque."},
    {"Appearance", -520, ValueType::Choice, "AppearanceConstants", "gp", true,
     "Returns/sets whether or not an object is painted at runtime with 3-D effects."},
    {"BorderStyle", -504, ValueType::Choice, "BorderConstants", "gp", true,
     "Returns/sets the border style for an object."},
    {"Caption", -518, ValueType::Text, "", "gp", true,
     "Returns/sets the text displayed in an object's title bar or below an object's icon."},
    {"Font", -512, ValueType::Font, "", "gpr", true, "Returns a Font object."},
    {"FontBold", 0x6803006B, ValueType::Boolean, "", "gp", false, ""},
    {"FontItalic", 0x6803006A, ValueType::Boolean, "", "gp", false, ""},
    {"FontStrikethru", 0x68030069, ValueType::Boolean, "", "gp", false, ""},
    {"FontUnderline", 0x68030068, ValueType::Boolean, "", "gp", false, ""},
    {"FontName", 0x68030067, ValueType::Text, "", "gp", false, ""},
    {"FontSize", 0x68030066, ValueType::Number, "", "gp", false, ""},
    {"ForeColor", -513, ValueType::Colour, "", "gp", true,
     "Returns/sets the foreground color used to display text and graphics in an object."},
    {"EffectColor", 0x68030065, ValueType::Colour, "", "gp", true, ""},
    {"ImageKey", 0x68030064, ValueType::Text, "", "gp", true,
     "Returns/sets a unique value representing the key of the image to use."},
    {"ImageKeyhover", 0x68030063, ValueType::Text, "", "gp", true,
     "Returns/sets a unique value representing the key of the image to use when the mouse hovers over the "
     "control."},
    {"UseMnemonic", 0x68030060, ValueType::Boolean, "", "gp", true,
     "Returns/sets a value that specifies whether an & in a control's Caption property defines an access "
     "key."},
    {"UniToolTipText", 0x6803005F, ValueType::Text, "", "gp", true,
     "Returns/sets the Unicode text displayed when the mouse is paused over the control."},
    {"TextEffect", 0x6803005C, ValueType::Choice, "TextEffects", "gp", true, ""},
    {"Enabled", -514, ValueType::Boolean, "", "gp", true,
     "Returns/sets a value that determines whether an object can respond to user-generated events."},
    {"WordWrap", 0x6803005B, ValueType::Boolean, "", "gp", true,
     "Returns/sets a value that determines whether a control will wrap long lines of text to fit in the "
     "control."},
    {"ImageAlignment", 0x6803005A, ValueType::Choice, "HorizontalAlignment", "gp", true,
     "Returns/sets the alignment of the control's image."},
    {"ImageSize", 0x68030059, ValueType::Choice, "ImageSizes", "gp", true,
     "Returns/sets the size of the image when rendered in the control."},
    {"hwnd", 0x68030058, ValueType::Number, "", "g", false, ""},
    {"MouseIcon", 0x68030057, ValueType::Picture, "", "gr", true, ""},
    {"MousePointer", 0x68030056, ValueType::MousePointer, "", "gp", true, ""},
};

std::string SlotsOf(const PropertyRow& row) {
  std::string result = "g";
  if (row.attributes & kPut) result += 'p';
  if (row.attributes & kPutRef) result += 'r';
  return result;
}

TEST(PropertyTable, RowsStandInTheOrderOfTheSlots) {
  const auto rows = Properties();
  ASSERT_EQ(rows.size(), std::size(kSlots));
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const Expected& expected = kSlots[i];
    SCOPED_TRACE(expected.name);
    EXPECT_EQ(rows[i].name, expected.name);
    EXPECT_EQ(rows[i].dispid, expected.dispid);
    EXPECT_EQ(rows[i].type, expected.type);
    EXPECT_EQ(rows[i].enumeration ? rows[i].enumeration->name : "", expected.enumeration);
    EXPECT_EQ(SlotsOf(rows[i]), expected.slots);
    EXPECT_EQ(!(rows[i].attributes & kNotBrowsable), expected.browsable);
    EXPECT_EQ(!!(rows[i].attributes & kUiDefault), rows[i].name == "Caption");
    EXPECT_EQ(rows[i].help, expected.help);
    EXPECT_NE(rows[i].get, nullptr);
    EXPECT_EQ(rows[i].store == nullptr, rows[i].name == "hwnd") << "only the window is read only";
  }
}

TEST(PropertyTable, IdentifiersAreUnique) {
  std::set<Long> seen;
  for (const auto& rows : {Properties(), HiddenProperties()})
    for (const PropertyRow& row : rows) EXPECT_TRUE(seen.insert(row.dispid).second) << row.name;
}

TEST(PropertyTable, OnlyTwoMembersHaveADescriptionThatTheTypeLibraryLacks) {
  for (const PropertyRow& row : Properties()) {
    std::string_view expected;
    if (row.name == "EffectColor") expected = "Returns/sets the color used to display special effects.";
    if (row.name == "TextEffect")
      expected = "Returns/sets the type of effect to be applied to a control's text.";
    EXPECT_EQ(row.description, expected) << row.name;
  }
}

TEST(PropertyTable, BrowsingCategories) {
  const std::pair<std::string_view, std::string_view> expected[] = {{"AutoSize", ";Behavior"},
                                                                    {"BackColor", ";Appearance"},
                                                                    {"Font", ";Font"},
                                                                    {"ImageKey", ";Image"},
                                                                    {"Caption", "prpTextEdit;Appearance"},
                                                                    {"UniToolTipText", "prpTextEdit;Misc"}};
  for (const PropertyRow& row : Properties()) {
    std::string_view category;
    for (const auto& [name, text] : expected)
      if (row.name == name) category = text;
    EXPECT_EQ(row.category, category) << row.name;
  }
}

TEST(PropertyTable, FourPropertiesAreNotPublic) {
  const std::pair<std::string_view, Long> expected[] = {{"Padding", 0x68030062},
                                                        {"RightToLeft", 0x68030061},
                                                        {"Alignment", 0x6803005E},
                                                        {"VerticalAlignment", 0x6803005D}};
  const auto rows = HiddenProperties();
  ASSERT_EQ(rows.size(), 4u);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    EXPECT_EQ(rows[i].name, expected[i].first);
    EXPECT_EQ(rows[i].dispid, expected[i].second);
    EXPECT_EQ(FindProperty(rows[i].name), nullptr);
  }
}

TEST(PropertyTable, FoundByNameInAnyCase) {
  ASSERT_NE(FindProperty("caption"), nullptr);
  EXPECT_EQ(FindProperty("caption")->name, "Caption");
  EXPECT_EQ(FindProperty("UNITOOLTIPTEXT")->name, "UniToolTipText");
  EXPECT_EQ(FindProperty("hWnd")->name, "hwnd");
  EXPECT_EQ(FindProperty("Captio"), nullptr);
  EXPECT_EQ(FindProperty("Captions"), nullptr);
  EXPECT_EQ(FindProperty(""), nullptr);
}

TEST(PropertyTable, OneMethodWithTwoTexts) {
  const MethodRow& row = LoadIconImageFromFileRow();
  EXPECT_EQ(row.name, "LoadIconImageFromFile");
  EXPECT_EQ(row.dispid, 0x6003008D);
  ASSERT_EQ(row.arguments.size(), 2u);
  EXPECT_EQ(row.arguments[0].name, "sfile");
  EXPECT_EQ(row.arguments[1].name, "sKey");
  EXPECT_EQ(row.arguments[0].type, ArgumentType::String);
  EXPECT_EQ(row.arguments[1].type, ArgumentType::String);
}

}  // namespace
}  // namespace marklet
