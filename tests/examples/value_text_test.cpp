// Values as the form designer's property grid shows and takes them.
#include "examples/designer/value_text.h"

#include <gtest/gtest.h>

namespace designer {
namespace {

TEST(ValueText, OfNumbersIsWhole) {
  EXPECT_EQ(12, ParseNumber(L" 12 "));
  EXPECT_EQ(-2147483647 - 1, ParseNumber(L"-2147483648"));
  EXPECT_EQ(2147483647, ParseNumber(L"2147483647"));
  for (const wchar_t* text :
       {L"", L"-", L"1.5", L"1 2", L"x", L"2147483648", L"-2147483649", L"99999999999999999999"})
    EXPECT_FALSE(ParseNumber(text)) << std::string(text, text + std::char_traits<wchar_t>::length(text));
}

TEST(ValueText, OfBooleansIsAWord) {
  EXPECT_EQ(L"True", TruthText(true));
  EXPECT_EQ(true, ParseTruth(L" tRUE"));
  EXPECT_EQ(false, ParseTruth(L"False"));
  EXPECT_FALSE(ParseTruth(L"1"));
}

TEST(ValueText, OfEnumerationsIsAName) {
  const Choice choices[] = {{L"Left Justify", 0}, {L"Center", 2}};
  EXPECT_EQ(L"Center", ChoiceText(choices, 2));
  EXPECT_EQ(L"7", ChoiceText(choices, 7));
  EXPECT_EQ(2, ParseChoice(choices, L"center"));
  EXPECT_EQ(7, ParseChoice(choices, L"7"));
  EXPECT_FALSE(ParseChoice(choices, L"Middle"));
}

TEST(ValueText, OfColoursIsRedGreenBlueOrASystemsName) {
  EXPECT_EQ(L"#FF8001", ColourText(0x0180FF));
  EXPECT_EQ(L"Button face", ColourText(0x8000000F));
  EXPECT_EQ(L"&H800000FF", ColourText(0x800000FF));
  EXPECT_EQ(0x0180FFu, ParseColour(L"#ff8001"));
  EXPECT_EQ(0x8000000Fu, ParseColour(L"button FACE "));
  EXPECT_EQ(0x800000FFu, ParseColour(L"&H800000FF&"));
  for (const wchar_t* text : {L"", L"#", L"#12345", L"#1234567", L"#12345G", L"red", L"&H", L"&H1FFFFFFFF"})
    EXPECT_FALSE(ParseColour(text));
}

TEST(ValueText, OfEverySystemColourIsTakenBack) {
  std::uint32_t number = 0x80000000;
  for (const std::wstring& name : SystemColourNames()) {
    EXPECT_EQ(name, ColourText(number));
    EXPECT_EQ(number++, ParseColour(name));
  }
}

TEST(ValueText, OfFontsIsTheirNameSizeAndStyle) {
  EXPECT_EQ(L"Tahoma, 8.25, bold, underline", FontText({L"Tahoma", 825, true, false, true, false}));
  EXPECT_EQ(L"Arial, 9", FontText({L"Arial", 900}));
  EXPECT_EQ(L"Arial, 9.5", FontText({L"Arial", 950}));
  EXPECT_EQ(L"Arial, 9.05", FontText({L"Arial", 905}));
  EXPECT_EQ((FontValue{L"MS Sans Serif", 825, false, true, false, true}),
            ParseFont(L" MS Sans Serif ,8.25, Strikethrough,ITALIC"));
  for (const wchar_t* text : {L"", L"Arial", L"Arial,", L", 9", L"Arial, 0", L"Arial, -1", L"Arial, 1001",
                              L"Arial, 9, fat", L"Arial, 9,", L"9, Arial"})
    EXPECT_FALSE(ParseFont(text));
}

}  // namespace
}  // namespace designer
