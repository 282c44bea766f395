#include "text/string_helpers.h"

#include <gtest/gtest.h>

#include <string>

namespace marklet {
namespace {

using namespace std::string_view_literals;

// What characters bytes stand for is what code page 1252 says.
struct Repair {
  const char* what;
  std::u16string_view stored, repaired;
};

constexpr Repair kRepairs[] = {
    {"e acute", u"Caf\u00C3\u00A9", u"Caf\u00E9"},
    {"euro sign", u"\u00E2\u201A\u00AC 5", u"\u20AC 5"},
    {"Greek", u"\u00CE\u00A9\u00CE\u00BC", u"\u03A9\u03BC"},
    {"outside the basic plane", u"\u00F0\u0178\u02DC\u20AC", u"\xD83D\xDE00"},
    {"among tags", u"<b>\u00C3\u00BC</b>&x", u"<b>\u00FC</b>&x"},
    {"around a NUL", u"\u00C3\u00A9\0\u00C3\u00A9"sv, u"\u00E9\0\u00E9"sv},
};

constexpr Repair kLeftAlone[] = {
    {"nothing", u"", u""},
    {"ASCII", u"Save &As\r\n<b>x</b>\t~", u"Save &As\r\n<b>x</b>\t~"},
    {"Latin-1 text", u"Caf\u00E9", u"Caf\u00E9"},
    {"Greek text", u"\u03A9\u03BC", u"\u03A9\u03BC"},
    {"Chinese text", u"\u4E2D\u6587", u"\u4E2D\u6587"},
    {"Hebrew text", u"\u05E9\u05DC\u05D5\u05DD", u"\u05E9\u05DC\u05D5\u05DD"},
    {"text and bytes mixed", u"\u4E2D\u00C3\u00A9", u"\u4E2D\u00C3\u00A9"},
    {"a sequence cut short", u"ab\u00C3", u"ab\u00C3"},
    {"a lone trail byte", u"\u00A9 2020", u"\u00A9 2020"},
    {"an overlong sequence", u"\u00C0\u20AC", u"\u00C0\u20AC"},
    {"a surrogate in bytes", u"\u00ED\u00A0\u20AC", u"\u00ED\u00A0\u20AC"},
    {"a lone high surrogate", u"a\xD83Dz", u"a\xD83Dz"},
    {"a lone low surrogate", u"\xDE00", u"\xDE00"},
    {"a pair the wrong way round", u"\xDE00\xD83D", u"\xDE00\xD83D"},
};

TEST(DecodeUtf8IfEncoded, RepairsBytesThatCameAsCharacters) {
  for (const Repair& repair : kRepairs) {
    SCOPED_TRACE(repair.what);
    EXPECT_TRUE(IsUtf8Encoded(repair.stored));
    EXPECT_EQ(Utf8Decode(repair.stored), repair.repaired);
    EXPECT_EQ(Utf8Encode(repair.repaired), repair.stored);
    EXPECT_EQ(DecodeUtf8IfEncoded(repair.stored), repair.repaired);
  }
}

TEST(DecodeUtf8IfEncoded, LeavesTextThatDoesNotSurviveTheRoundTrip) {
  for (const Repair& text : kLeftAlone) {
    SCOPED_TRACE(text.what);
    EXPECT_EQ(DecodeUtf8IfEncoded(text.stored), text.repaired);
  }
}

TEST(DecodeUtf8IfEncoded, PureAsciiCountsAsEncodedAndKeepsItsValue) {
  std::u16string ascii;
  for (char16_t unit = 0; unit < 128; ++unit) ascii += unit;
  EXPECT_TRUE(IsUtf8Encoded(ascii));
  EXPECT_EQ(DecodeUtf8IfEncoded(ascii), ascii);
}

TEST(DecodeUtf8IfEncoded, UndoesOneEncodingOfTwo) {
  const std::u16string once = Utf8Encode(u"\u00E9");
  EXPECT_EQ(DecodeUtf8IfEncoded(Utf8Encode(once)), once);
}

TEST(DecodeUtf8IfEncoded, EmptyTextsConvertToEmpty) {
  EXPECT_EQ(Utf8Decode(u""), u"");
  EXPECT_EQ(Utf8Encode(u""), u"");
  EXPECT_TRUE(IsUtf8Encoded(u""));
}

TEST(DecodeUtf8IfEncoded, EveryCharacterSurvivesWhenEncoded) {
  for (char32_t code = 1; code <= 0x10FFFF; code += code < 0x900 ? 1 : 0x61) {
    if (code >= 0xD800 && code <= 0xDFFF) continue;
    std::u16string text;
    if (code < 0x10000) {
      text = static_cast<char16_t>(code);
    } else {
      text += static_cast<char16_t>(0xD7C0 + (code >> 10));
      text += static_cast<char16_t>(0xDC00 + (code & 0x3FF));
    }
    ASSERT_EQ(DecodeUtf8IfEncoded(Utf8Encode(text)), text) << std::hex << static_cast<unsigned>(code);
  }
}

TEST(SlowDecodeUtf8IfEncoded, TakesAMegabyte) {
  const std::u16string encoded = Utf8Encode(std::u16string(1 << 20, u'\u00E9'));
  EXPECT_EQ(DecodeUtf8IfEncoded(encoded), std::u16string(1 << 20, u'\u00E9'));
}

TEST(IsUnicodeText, ReadsUnitsAsSigned) {
  EXPECT_FALSE(IsUnicodeText(u""));
  EXPECT_FALSE(IsUnicodeText(u"Save &As~\x7F"));
  EXPECT_FALSE(IsUnicodeText(u"a\0b"sv));
  EXPECT_TRUE(IsUnicodeText(u"a\u0080"));
  EXPECT_TRUE(IsUnicodeText(u"Caf\u00E9"));
  EXPECT_TRUE(IsUnicodeText(u"\u7FFF"));
  EXPECT_FALSE(IsUnicodeText(u"\x8000"));
  EXPECT_FALSE(IsUnicodeText(u"\xFFFF"));
  EXPECT_FALSE(IsUnicodeText(u"\xAC00\xD83D\xDE00")) << "nothing but units of 0x8000 and above";
  EXPECT_TRUE(IsUnicodeText(u"\xAC00\u00E9"));
}

TEST(IsBasicLatinRange, EndsBelow591) {
  EXPECT_TRUE(IsBasicLatinRange(u""));
  EXPECT_TRUE(IsBasicLatinRange(u"abc\u00E9\u024E"));
  EXPECT_FALSE(IsBasicLatinRange(u"abc\u024F"));
  EXPECT_FALSE(IsBasicLatinRange(u"\u7FFF"));
  EXPECT_TRUE(IsBasicLatinRange(u"\x8000\xFFFF"));
}

// On a machine whose code page is Windows-1252.
TEST(AnsiCode, IsTheCodeInTheSystemCodePage) {
  EXPECT_EQ(AnsiCode(u'\0'), 0u);
  EXPECT_EQ(AnsiCode(u'\r'), 13u);
  EXPECT_EQ(AnsiCode(u'A'), 65u);
  EXPECT_EQ(AnsiCode(u'\u007F'), 127u);
  EXPECT_EQ(AnsiCode(u'\u00E9'), 0xE9u);
  EXPECT_EQ(AnsiCode(u'\u20AC'), 0x80u);
}

TEST(AnsiCode, OfACharacterThatTheCodePageLacksIsThatOfItsReplacement) {
  for (const char16_t ch : {u'\u4E2D', u'\u05D0', char16_t{0xD800}, char16_t{0xFFFF}})
    EXPECT_EQ(AnsiCode(ch), static_cast<unsigned>('?')) << static_cast<unsigned>(ch);
}

TEST(FindAccessKey, IsTheCharacterAfterTheFirstMark) {
  EXPECT_EQ(FindAccessKey(u"Save &As"), u"A");
  EXPECT_EQ(FindAccessKey(u"Save &as"), u"a");
  EXPECT_EQ(FindAccessKey(u"&One &Two"), u"O");
  EXPECT_EQ(FindAccessKey(u"& x"), u" ");
  EXPECT_EQ(FindAccessKey(u"&\u00E9"), u"\u00E9");
  EXPECT_EQ(FindAccessKey(u"&\xD83D\xDE00"), u"\xD83D");
  EXPECT_EQ(FindAccessKey(u"&\xFFFE"), u"\xFFFE");
  EXPECT_EQ(FindAccessKey(u"&\0"sv), u"\0"sv);
}

TEST(FindAccessKey, IsEmptyWithoutACharacterAfterAMark) {
  EXPECT_EQ(FindAccessKey(u""), u"");
  EXPECT_EQ(FindAccessKey(u"Save"), u"");
  EXPECT_EQ(FindAccessKey(u"&"), u"");
  EXPECT_EQ(FindAccessKey(u"A&"), u"");
}

TEST(FindAccessKey, OfADoubledMarkIsTheMark) { EXPECT_EQ(FindAccessKey(u"a && b"), u"&"); }

TEST(FindAccessKey, EndsAtTheOneCharacterThatCannotBeAKey) {
  EXPECT_EQ(FindAccessKey(u"&\xFFFF"), u"");
  EXPECT_EQ(FindAccessKey(u"&\xFFFF &x"), u"");
}

TEST(FindAccessKey, AnyOtherUnitIsAKey) {
  for (unsigned unit = 0; unit < 0xFFFF; ++unit) {
    const char16_t text[] = {u'&', static_cast<char16_t>(unit)};
    ASSERT_EQ(FindAccessKey({text, 2}), std::u16string(1, static_cast<char16_t>(unit)));
  }
}

TEST(FindAccessKey, LooksBeyondThe32767thCharacter) {
  EXPECT_EQ(FindAccessKey(std::u16string(100000, u'x') + u"&Key"), u"K");
  EXPECT_EQ(FindAccessKey(std::u16string(100000, u'x') + u"&"), u"");
}

TEST(TrimAtNull, EndsAtTheFirstNull) {
  EXPECT_EQ(TrimAtNull(u"abc\0def\0"sv), u"abc");
  EXPECT_EQ(TrimAtNull(u"abc"), u"abc");
  EXPECT_EQ(TrimAtNull(u"\0abc"sv), u"");
  EXPECT_EQ(TrimAtNull(u""), u"");
}

}  // namespace
}  // namespace marklet
