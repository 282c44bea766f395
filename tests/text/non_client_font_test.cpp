#include "text/non_client_font.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "markup/canvas.h"
#include "text/system_fixture.h"

namespace marklet {
namespace {

using namespace std::string_literals;

LOGFONTA Record(const char* name, Long height, Long weight) {
  LOGFONTA record{};
  record.lfHeight = height;
  record.lfWeight = weight;
  std::strncpy(record.lfFaceName, name, sizeof record.lfFaceName - 1);
  return record;
}

std::u16string Padded(std::u16string name) {
  name.resize(32);
  return name;
}

class NonClientFont : public SystemTest {
 protected:
  NonClientFont() {
    NONCLIENTMETRICSA metrics{};
    metrics.cbSize = 340;
    metrics.iBorderWidth = 1;
    metrics.iScrollWidth = 2;
    metrics.iScrollHeight = 3;
    metrics.iCaptionWidth = 4;
    metrics.iCaptionHeight = 5;
    metrics.lfCaptionFont = Record("Caption", -11, 700);
    metrics.iSmCaptionWidth = 6;
    metrics.iSmCaptionHeight = 7;
    metrics.lfSmCaptionFont = Record("Small", -12, 400);
    metrics.iMenuWidth = 8;
    metrics.iMenuHeight = 9;
    metrics.lfMenuFont = Record("Menu", -13, 400);
    metrics.lfStatusFont = Record("Status", -14, 400);
    metrics.lfMessageFont = Record("Message", -15, 400);
    ConfiguredNonClient() = {metrics, Record("Icon", -16, 400)};
    Configuration().pixels_per_inch = 96;
  }
  ~NonClientFont() override { ConfiguredNonClient() = {}; }

  StdFont Made(const LOGFONTA& record) const {
    StdFont font;
    CNonClientFont::MakeStdFont(record, canvas_.dc(), font);
    return font;
  }

  Canvas canvas_{10, 10};
};

TEST_F(NonClientFont, TellsTheMeasuresOfItsRecord) {
  const CNonClientFont font;
  EXPECT_EQ(font.BorderWidth(), 1);
  EXPECT_EQ(font.ScrollWidth(), 2);
  EXPECT_EQ(font.ScrollHeight(), 3);
  EXPECT_EQ(font.CaptionWIdth(), 4);
  EXPECT_EQ(font.CaptionHeight(), 5);
  EXPECT_EQ(font.SMCaptionWIdth(), 6);
  EXPECT_EQ(font.SMCaptionHeight(), 7);
  EXPECT_EQ(font.MenuWidth(), 8);
  EXPECT_EQ(font.MenuHeight(), 9);
}

TEST_F(NonClientFont, GivesTheSixFontsByNumber) {
  const CNonClientFont fonts;
  const std::u16string names[] = {u"Icon", u"Caption", u"Small", u"Menu", u"Status", u"Message"};
  const double sizes[] = {12, 8.25, 9, 9.75, 10.5, 11.25};
  for (Long which = 1; which <= 6; ++which) {
    const FontRef font = fonts.Font(canvas_.dc(), which);
    ASSERT_TRUE(font);
    EXPECT_EQ(font->Name(), Padded(names[which - 1])) << "all of the 32 bytes, as they stand";
    EXPECT_EQ(font->Size(), sizes[which - 1]) << which;
    EXPECT_EQ(font->Bold(), which == 2);
    EXPECT_NE(font->hFont(), nullptr);
  }
}

TEST_F(NonClientFont, GivesNothingForAnyOtherNumber) {
  const CNonClientFont fonts;
  for (const Long which : {0, 7, -1, 100}) {
    EXPECT_EQ(fonts.Font(canvas_.dc(), which), nullptr) << which;
    const CNonClientFont::FontRecord record = fonts.LogFont(which), zero{};
    EXPECT_EQ(std::memcmp(&record, &zero, sizeof record), 0);
  }
}

TEST_F(NonClientFont, LogFontIsTheRecordAndTheFourBytesAfterIt) {
  const CNonClientFont fonts;
  const auto name = [&](Long which) { return std::string(fonts.LogFont(which).font.lfFaceName); };
  const auto following = [&](Long which) {
    Long value;
    std::memcpy(&value, fonts.LogFont(which).following, sizeof value);
    return value;
  };
  EXPECT_EQ(name(1), "Icon");
  EXPECT_EQ(name(2), "Caption");
  EXPECT_EQ(name(6), "Message");
  EXPECT_EQ(following(1), 0);
  EXPECT_EQ(following(2), 6) << "the width of a small caption";
  EXPECT_EQ(following(3), 8) << "the width of a menu";
  EXPECT_EQ(following(4), -14) << "the height of the status font";
  EXPECT_EQ(following(5), -15) << "the height of the message font";
  EXPECT_EQ(following(6), -16) << "the height of the icon titles' font";
}

TEST_F(NonClientFont, ANegativeHeightIsInPixels) {
  EXPECT_EQ(Made(Record("x", -13, 400)).Size(), 9.75);
  EXPECT_EQ(Made(Record("x", 0, 400)).Size(), 0);
  Configuration().pixels_per_inch = 144;
  EXPECT_EQ(Made(Record("x", -13, 400)).Size(), 6.5);
}

TEST_F(NonClientFont, APositiveHeightIsTakenForPoints) {
  EXPECT_EQ(Made(Record("x", 1, 400)).Size(), 1);
  EXPECT_EQ(Made(Record("x", 13, 400)).Size(), 13);
}

TEST_F(NonClientFont, AWeightOf401IsBoldAnd400IsNot) {
  EXPECT_FALSE(Made(Record("x", -13, 400)).Bold());
  EXPECT_TRUE(Made(Record("x", -13, 401)).Bold());
  EXPECT_EQ(Made(Record("x", -13, 401)).Weight(), 700);
  EXPECT_FALSE(Made(Record("x", -13, 0)).Bold());
}

TEST_F(NonClientFont, StylesAreAnyByteButZero) {
  LOGFONTA record = Record("x", -13, 400);
  EXPECT_FALSE(Made(record).Italic() || Made(record).Underline() || Made(record).Strikethrough());
  record.lfItalic = 255;
  record.lfUnderline = 1;
  record.lfStrikeOut = 2;
  record.lfCharSet = 178;
  const StdFont font = Made(record);
  EXPECT_TRUE(font.Italic() && font.Underline() && font.Strikethrough());
  EXPECT_EQ(font.Charset(), 178);
}

TEST_F(NonClientFont, AFaceNameWithoutAnEndIsTakenWhole) {
  LOGFONTA record = Record("", -13, 400);
  std::memset(record.lfFaceName, 'x', sizeof record.lfFaceName);
  EXPECT_EQ(Made(record).Name(), std::u16string(32, u'x'));
  record = Record("Caf\xE9", -13, 400);
  record.lfFaceName[10] = 'z';
  std::u16string name = Padded(u"Caf\u00E9");
  name[10] = u'z';
  EXPECT_EQ(Made(record).Name(), name);
}

TEST_F(NonClientFont, ReadsAnewWhenAsked) {
  CNonClientFont fonts;
  ConfiguredNonClient().metrics->iMenuWidth = 80;
  EXPECT_EQ(fonts.MenuWidth(), 8);
  EXPECT_TRUE(fonts.GetMetrics());
  EXPECT_EQ(fonts.MenuWidth(), 80);
}

TEST_F(NonClientFont, TheSystemsQuestionsAreHeldToTheirSizes) {
  NONCLIENTMETRICSA metrics{};
  metrics.cbSize = 340;
  LOGFONTA font{};
  EXPECT_TRUE(SystemParametersInfoA(41, 340, &metrics, 0));
  EXPECT_TRUE(SystemParametersInfoA(31, 60, &font, 0));
  EXPECT_FALSE(SystemParametersInfoA(41, 341, &metrics, 0));
  EXPECT_FALSE(SystemParametersInfoA(31, 92, &font, 0));
  EXPECT_FALSE(SystemParametersInfoA(31, 60, nullptr, 0));
  EXPECT_FALSE(SystemParametersInfoA(42, 0, &metrics, 0));
}

}  // namespace
}  // namespace marklet
