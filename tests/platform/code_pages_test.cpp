// Text to bytes and back.
#include <gtest/gtest.h>

#include <string>

#include "platform/code_page_samples.h"
#include "platform/system.h"

namespace marklet {
namespace {

using namespace std::string_literals;

std::string Utf8(std::u16string_view text) { return WideCharToMultiByte(CP_UTF8, text); }
std::u16string FromUtf8(std::string_view bytes) { return MultiByteToWideChar(CP_UTF8, bytes); }

TEST(Utf8, TakesOneToFourBytesACharacter) {
  EXPECT_EQ(Utf8(u"a"), "a");
  EXPECT_EQ(Utf8(u"\u007F\u0080\u07FF\u0800\uFFFD"), "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBD");
  EXPECT_EQ(Utf8(u"\U00010000\U0010FFFF"), "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF");
}

TEST(Utf8, ReplacesLoneSurrogates) {
  EXPECT_EQ(Utf8(u"a\xD800z"), "a\xEF\xBF\xBDz");
  EXPECT_EQ(Utf8(u"\xDC00\xD800"), "\xEF\xBF\xBD\xEF\xBF\xBD");
  EXPECT_EQ(Utf8(u"\xD800"), "\xEF\xBF\xBD");
}

TEST(Utf8, KeepsNuls) {
  EXPECT_EQ(Utf8(u"a\0b"s), "a\0b"s);
  EXPECT_EQ(FromUtf8("a\0b"s), u"a\0b"s);
}

TEST(Utf8, OfNothingIsNothing) {
  EXPECT_EQ(Utf8(u""), "");
  EXPECT_EQ(FromUtf8(""), u"");
}

TEST(Utf8, ReadsWhatItWrites) {
  std::u16string text;
  for (char32_t c = 0; c <= 0x10FFFF; c += c < 0x3000 ? 1 : 97) {
    if (c >= 0xD800 && c <= 0xDFFF) continue;
    if (c >= 0x10000) text += static_cast<char16_t>(0xD7C0 + (c >> 10));
    text += static_cast<char16_t>(c >= 0x10000 ? 0xDC00 + (c & 0x3FF) : c);
  }
  EXPECT_EQ(FromUtf8(Utf8(text)), text);
}

struct Broken {
  const char* bytes;
  const char16_t* text;
};
class BrokenUtf8 : public testing::TestWithParam<Broken> {};

TEST_P(BrokenUtf8, ReadsAsReplacements) { EXPECT_EQ(FromUtf8(GetParam().bytes), GetParam().text); }

INSTANTIATE_TEST_SUITE_P(Pieces, BrokenUtf8,
                         testing::Values(Broken{"\x80", u"\uFFFD"},        // nothing to continue
                                         Broken{"\xC3", u"\uFFFD"},        // ends too early
                                         Broken{"\xC3z", u"\uFFFDz"},      // continued by something else
                                         Broken{"\xE2\x82z", u"\uFFFDz"},  // the same, a byte later
                                         Broken{"\xFFz", u"\uFFFDz"},      // never part of a character
                                         Broken{"\xF5\x80\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"}
                                         // past the last character
                                         ));

class NotShortest : public testing::TestWithParam<const char*> {};

TEST_P(NotShortest, IsNeverReadAsACharacter) {
  for (const char16_t c : FromUtf8(GetParam())) EXPECT_EQ(c, 0xFFFD);
}

// A longer form than needed, a surrogate, one more than the last character.
INSTANTIATE_TEST_SUITE_P(Forms, NotShortest,
                         testing::Values("\xC0\xAF", "\xE0\x80\xAF", "\xF0\x80\x80\xAF", "\xED\xA0\x80",
                                         "\xF4\x90\x80\x80"));

// The machine's own code page, Windows-1252 on the machines that run this.
TEST(SystemCodePage, HoldsAsciiAndLatinLetters) {
  EXPECT_EQ(WideCharToMultiByte(CP_ACP, u"Caf\u00E9"), "Caf\xE9");
  EXPECT_EQ(MultiByteToWideChar(CP_ACP, "Caf\xE9"), u"Caf\u00E9");
}

TEST(SystemCodePage, HoldsItsOwnCharactersFrom80To9F) {
  // As published for the code page.
  const std::u16string text =
      u"\u20AC\u201A\u0192\u201E\u2026\u2020\u2021\u02C6\u2030\u0160\u2039\u0152\u017D"
      u"\u2018\u2019\u201C\u201D\u2022\u2013\u2014\u02DC\u2122\u0161\u203A\u0153\u017E\u0178";
  const std::string bytes =
      "\x80\x82\x83\x84\x85\x86\x87\x88\x89\x8A\x8B\x8C\x8E"
      "\x91\x92\x93\x94\x95\x96\x97\x98\x99\x9A\x9B\x9C\x9E\x9F";
  EXPECT_EQ(WideCharToMultiByte(CP_ACP, text), bytes);
  EXPECT_EQ(MultiByteToWideChar(CP_ACP, bytes), text);
}

TEST(SystemCodePage, GivesEveryByteBack) {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
  EXPECT_EQ(WideCharToMultiByte(CP_ACP, MultiByteToWideChar(CP_ACP, bytes)), bytes);
}

TEST(SystemCodePage, PutsAQuestionMarkForWhatItLacks) {
  EXPECT_EQ(WideCharToMultiByte(CP_ACP, u"a\u4E2D\u05D0z"), "a??z");
  EXPECT_EQ(WideCharToMultiByte(CP_ACP, u"\U0001F600"), "??");
}

TEST(CodePages, Windows1252IsThereByItsNumber) {
  EXPECT_EQ(WideCharToMultiByte(1252, u"Caf\u00E9 \u20AC \u0416"), "Caf\xE9 \x80 ?");
  EXPECT_EQ(MultiByteToWideChar(1252, "Caf\xE9 \x80"), u"Caf\u00E9 \u20AC");
}

TEST(CodePages, AreThoseOfTheWorldsScripts) {
  for (const CodePageSample& sample : kCodePageSamples) {
    EXPECT_EQ(WideCharToMultiByte(sample.code_page, sample.text), sample.bytes) << sample.code_page;
    EXPECT_EQ(MultiByteToWideChar(sample.code_page, sample.bytes), sample.text) << sample.code_page;
  }
}

TEST(CodePages, OfAnyScriptPutAQuestionMarkForWhatTheyLack) {
  EXPECT_EQ(WideCharToMultiByte(1251, u"a\u4E2Dz"), "a?z");
  EXPECT_EQ(WideCharToMultiByte(1251, u"\U0001F600"), "??");
  EXPECT_EQ(WideCharToMultiByte(932, u"a\xD800z"), "a?z");
}

TEST(CodePages, TakeLongTextsAndNuls) {
  const std::u16string text = std::u16string(3000, u'\u65E5') + u'\0' + u'x';
  const std::string bytes = WideCharToMultiByte(932, text);
  EXPECT_EQ(bytes.size(), 6002u);
  EXPECT_EQ(MultiByteToWideChar(932, bytes), text);
  EXPECT_EQ(WideCharToMultiByte(932, u""), "");
  EXPECT_EQ(MultiByteToWideChar(932, ""), u"");
}

TEST(CodePages, ThatArentThereGiveNothing) {
  constexpr std::uint32_t kNoCodePage = 4242;
  EXPECT_EQ(WideCharToMultiByte(kNoCodePage, u"a"), "");
  EXPECT_EQ(MultiByteToWideChar(kNoCodePage, "a"), u"");
}

}  // namespace
}  // namespace marklet
