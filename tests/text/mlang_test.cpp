// MLang over an object of our own: which calls it makes, what becomes of their answers.
#include "text/mlang.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace marklet {
namespace {

using namespace std::string_literals;
using Lines = std::vector<std::string>;

constexpr Long kFailure = static_cast<Long>(0x80004005), kNo = 1;

// What the object was asked, and what it is to answer.
struct Stage {
  Lines calls;
  std::map<std::string, Long> answers;  // by name; 0 where there is none
  std::size_t records = 2;              // of each enumeration
  std::string material;                 // of the last detection
  std::int32_t detected = 2;
  std::string converted = "bytes";  // by every conversion
  bool gives_nothing = false;

  Long Answer(const std::string& name, const std::string& arguments = "") {
    calls.push_back(name + "(" + arguments + ")");
    const auto found = answers.find(name);
    return found == answers.end() ? 0 : found->second;
  }
};

template <typename... Numbers>
std::string Joined(Numbers... numbers) {
  std::string text;
  ((text += (text.empty() ? "" : ",") + std::to_string(numbers)), ...);
  return text;
}

std::string Bytes(std::u16string_view text) { return std::string(text.begin(), text.end()); }

template <std::size_t kSize>
void Put(char16_t (&units)[kSize], std::u16string_view text) {
  std::fill(std::begin(units), std::end(units), u'#');
  std::copy_n(text.begin(), std::min(text.size(), kSize), units);
  if (text.size() < kSize) units[text.size()] = 0;  // and rubbish after it
}

void Fill(tagMIMECPINFO& info) {
  info.dwFlags = 1;
  info.uiCodePage = 2;
  info.uiFamilyCodePage = 3;
  info.bGDICharset = 4;
  Put(info.wszDescription, u"description");
  Put(info.wszWebCharset, u"web");
  Put(info.wszHeaderCharset, u"header");
  Put(info.wszBodyCharset, u"body");
  Put(info.wszFixedWidthFont, u"fixed");
  Put(info.wszProportionalFont, u"proportional");
}
void Fill(tagRFC1766INFO& info) {
  info.lcid = 1033;
  Put(info.wszRfc1766, u"en-usx");  // without a NUL at its end
  Put(info.wszLocaleName, u"");
}
void Fill(tagSCRIPTINFO& info) {
  info.ScriptId = 7;
  info.uiCodePage = 1256;
  Put(info.wszDescription, u"Arabic");
  Put(info.wszFixedWidthFont, u"fixed");
  Put(info.wszProportionalFont, u"proportional");
}

template <typename Record>
class StagedEnumerator final : public MultiLanguageEnumerator<Record> {
 public:
  explicit StagedEnumerator(Stage& stage) : stage_(stage) {}
  ~StagedEnumerator() override { stage_.calls.push_back("enumerator released"); }
  Long Next(Record& record, std::uint32_t& fetched) override {
    const Long answer = stage_.Answer("Next");
    if (answer < 0) return answer;
    fetched = given_ < stage_.records ? 1 : 0;
    if (fetched == 0) return kNo;
    ++given_;
    Fill(record);
    return answer;
  }

 private:
  Stage& stage_;
  std::size_t given_ = 0;
};

class StagedConversion final : public ConvertCharsetObject {
 public:
  explicit StagedConversion(Stage& stage) : stage_(stage) {}
  ~StagedConversion() override { stage_.calls.push_back("conversion released"); }
  Long GetSourceCodePage(std::uint32_t& code_page) override {
    code_page = 1250;
    return stage_.Answer("GetSourceCodePage");
  }
  Long GetDestinationCodePage(std::uint32_t& code_page) override {
    code_page = 1251;
    return stage_.Answer("GetDestinationCodePage");
  }
  Long GetProperty(std::uint32_t& property) override {
    property = 9;
    return stage_.Answer("GetProperty");
  }
  Long DoConversion(const char* source, std::uint32_t& source_size, char* destination,
                    std::uint32_t& size) override {
    return Give("DoConversion", std::string(source, source_size), destination, size);
  }
  Long DoConversionToUnicode(const char* source, std::uint32_t& source_size, char16_t* destination,
                             std::uint32_t& size) override {
    return Give("DoConversionToUnicode", std::string(source, source_size), destination, size);
  }
  Long DoConversionFromUnicode(const char16_t* source, std::uint32_t& source_size, char* destination,
                               std::uint32_t& size) override {
    return Give("DoConversionFromUnicode", Bytes({source, source_size}), destination, size);
  }

 private:
  template <typename Unit>
  Long Give(const std::string& name, const std::string& source, Unit* destination, std::uint32_t& size) {
    const std::string way = destination == nullptr ? "size" : std::to_string(size);
    const Long answer = stage_.Answer(name, source + "," + way);
    if (destination == nullptr) {
      size = static_cast<std::uint32_t>(stage_.converted.size());
      return answer;
    }
    const bool filled = stage_.answers.count(name + " fills less") == 0;
    if (filled) std::copy_n(stage_.converted.begin(), size, destination);
    return stage_.answers.count(name + " second") != 0 ? kFailure : answer;
  }
  Stage& stage_;
};

class StagedObject final : public MultiLanguageObject {
 public:
  explicit StagedObject(Stage& stage) : stage_(stage) {}
  ~StagedObject() override { stage_.calls.push_back("released"); }

  Long GetNumberOfCodePageInfo(std::uint32_t& count) override {
    count = 70;
    return stage_.Answer("GetNumberOfCodePageInfo");
  }
  Long GetCodePageInfo(std::uint32_t code_page, std::uint16_t language, tagMIMECPINFO& info) override {
    Fill(info);
    return stage_.Answer("GetCodePageInfo", Joined(code_page, language));
  }
  Long GetFamilyCodePage(std::uint32_t code_page, std::uint32_t& family) override {
    family = 1251;
    return stage_.Answer("GetFamilyCodePage", Joined(code_page));
  }
  Long EnumCodePages(std::uint32_t flags, std::uint16_t language,
                     std::unique_ptr<MultiLanguageEnumerator<tagMIMECPINFO>>& enumerator) override {
    return Enumerate("EnumCodePages", Joined(flags, language), enumerator);
  }
  Long GetCharsetInfo(std::u16string_view charset, tagMIMECSETINFO& info) override {
    info.uiCodePage = 20866;
    info.uiInternetEncoding = 20867;
    Put(info.wszCharset, u"koi8-r");
    return stage_.Answer("GetCharsetInfo", Bytes(charset));
  }
  Long IsConvertible(std::uint32_t source, std::uint32_t destination) override {
    return stage_.Answer("IsConvertible", Joined(source, destination));
  }
  Long GetRfc1766FromLcid(std::uint32_t locale, std::u16string& name) override {
    name = u"ar-sa";
    return stage_.Answer("GetRfc1766FromLcid", Joined(locale));
  }
  Long GetLcidFromRfc1766(std::uint32_t& locale, std::u16string_view name) override {
    locale = 1025;
    return stage_.Answer("GetLcidFromRfc1766", Bytes(name));
  }
  Long EnumRfc1766(std::uint16_t language,
                   std::unique_ptr<MultiLanguageEnumerator<tagRFC1766INFO>>& enumerator) override {
    return Enumerate("EnumRfc1766", Joined(language), enumerator);
  }
  Long GetRfc1766Info(std::uint32_t locale, std::uint16_t language, tagRFC1766INFO& info) override {
    Fill(info);
    return stage_.Answer("GetRfc1766Info", Joined(locale, language));
  }
  Long CreateConvertCharset(std::uint32_t source, std::uint32_t destination, std::uint32_t properties,
                            std::unique_ptr<ConvertCharsetObject>& object) override {
    if (!stage_.gives_nothing) object = std::make_unique<StagedConversion>(stage_);
    return stage_.Answer("CreateConvertCharset", Joined(source, destination, properties));
  }
  Long DetectInputCodepage(std::uint32_t flags, std::uint32_t default_code_page, const char* source,
                           std::int32_t& source_size, tagDetectEncodingInfo* results,
                           std::int32_t& scores) override {
    stage_.material.assign(source, static_cast<std::size_t>(source_size));
    const std::string arguments = Joined(flags, default_code_page, source_size, scores);
    for (std::int32_t i = 0; i < std::min(stage_.detected, scores); ++i)
      results[i] = {static_cast<std::uint32_t>(i), 1251, 90, 80};
    scores = stage_.detected;
    return stage_.Answer("DetectInputCodepage", arguments);
  }
  Long SetMimeDBSource(std::uint32_t source) override {
    return stage_.Answer("SetMimeDBSource", Joined(source));
  }
  Long GetNumberOfScripts(std::uint32_t& count) override {
    count = 40;
    return stage_.Answer("GetNumberOfScripts");
  }
  Long EnumScripts(std::uint32_t flags, std::uint16_t language,
                   std::unique_ptr<MultiLanguageEnumerator<tagSCRIPTINFO>>& enumerator) override {
    return Enumerate("EnumScripts", Joined(flags, language), enumerator);
  }
  Long GetCharCodePages(char16_t ch, std::uint32_t& code_pages) override {
    code_pages = 0x10;
    return stage_.Answer("GetCharCodePages", Joined(static_cast<unsigned>(ch)));
  }
  Long GetStrCodePages(std::u16string_view text, std::uint32_t priority, std::uint32_t& code_pages,
                       Long& count) override {
    code_pages = 0x20;
    count = 3;
    return stage_.Answer("GetStrCodePages", Bytes(text) + "," + Joined(priority));
  }
  Long CodePageToCodePages(std::uint32_t code_page, std::uint32_t& code_pages) override {
    code_pages = 0x40;
    return stage_.Answer("CodePageToCodePages", Joined(code_page));
  }
  Long CodePagesToCodePage(std::uint32_t code_pages, std::uint32_t default_code_page,
                           std::uint32_t& code_page) override {
    code_page = 1253;
    return stage_.Answer("CodePagesToCodePage", Joined(code_pages, default_code_page));
  }
  Long GetFontCodePages(HDC, HFONT, std::uint32_t& code_pages) override {
    code_pages = 0x80;
    return stage_.Answer("GetFontCodePages");
  }
  Long MapFont(HDC, std::uint32_t code_pages, HFONT source, HFONT& font) override {
    font = source;
    return stage_.Answer("MapFont", Joined(code_pages));
  }
  Long ReleaseFont(HFONT) override { return stage_.Answer("ReleaseFont"); }
  Long ResetFontMapping() override { return stage_.Answer("ResetFontMapping"); }

 private:
  template <typename Record>
  Long Enumerate(const std::string& name, const std::string& arguments,
                 std::unique_ptr<MultiLanguageEnumerator<Record>>& enumerator) {
    if (!stage_.gives_nothing) enumerator = std::make_unique<StagedEnumerator<Record>>(stage_);
    return stage_.Answer(name, arguments);
  }
  Stage& stage_;
};

class MLangTest : public testing::Test {
 protected:
  template <typename Operation>
  void ExpectRaised(const std::string& name, Operation operation) {
    stage_.answers = {{name, kFailure}};
    try {
      operation();
      ADD_FAILURE() << name << " raised nothing";
    } catch (const MultiLanguageError& error) {
      EXPECT_EQ(error.Code(), kFailure) << name;
    }
    stage_.answers.clear();
  }

  Stage stage_;
  MLang mlang_{std::make_unique<StagedObject>(stage_)};
  // Any address: the object of these tests doesn't look behind it.
  HFONT font_ = reinterpret_cast<HFONT>(&stage_);
};

TEST_F(MLangTest, PassesNumbersAndNamesThrough) {
  EXPECT_EQ(mlang_.GetNumberOfCodePageInfo(), 70u);
  EXPECT_EQ(mlang_.GetNumberOfScripts(), 40u);
  EXPECT_EQ(mlang_.GetFamilyCodePage(20866), 1251u);
  EXPECT_EQ(mlang_.GetLcidFromRfc1766(u"ar-sa"), 1025u);
  EXPECT_EQ(mlang_.GetRfc1766FromLcid(1025), u"ar-sa");
  mlang_.SetMimeDBSource(2);
  EXPECT_EQ(mlang_.GetCharCodePages(u'A'), 0x10u);
  EXPECT_EQ(mlang_.GetStrCodePages(u"abc", 5).code_pages, 0x20u);
  EXPECT_EQ(mlang_.GetStrCodePages(u"abc", 5).count, 3);
  EXPECT_EQ(mlang_.CodePageToCodePages(1250), 0x40u);
  EXPECT_EQ(mlang_.CodePagesToCodePage(0x40, 1252), 1253u);
  EXPECT_EQ(mlang_.GetFontCodePages(nullptr, font_), 0x80u);
  EXPECT_EQ(mlang_.MapFont(nullptr, 0x40, font_), font_);
  mlang_.ReleaseFont(font_);
  EXPECT_EQ(stage_.calls,
            (Lines{"GetNumberOfCodePageInfo()", "GetNumberOfScripts()", "GetFamilyCodePage(20866)",
                   "GetLcidFromRfc1766(ar-sa)", "GetRfc1766FromLcid(1025)", "SetMimeDBSource(2)",
                   "GetCharCodePages(65)", "GetStrCodePages(abc,5)", "GetStrCodePages(abc,5)",
                   "CodePageToCodePages(1250)", "CodePagesToCodePage(64,1252)", "GetFontCodePages()",
                   "MapFont(64)", "ReleaseFont()"}));
}

TEST_F(MLangTest, RecordsHaveTheirTextsUpToTheFirstNull) {
  const MIMECPINFO info = mlang_.GetCodePageInfo(1252, 1033);
  EXPECT_EQ(info.dwFlags, 1u);
  EXPECT_EQ(info.uiCodePage, 2u);
  EXPECT_EQ(info.uiFamilyCodePage, 3u);
  EXPECT_EQ(info.bGDICharset, 4u);
  EXPECT_EQ(info.wszDescription, u"description");
  EXPECT_EQ(info.wszWebCharset, u"web");
  EXPECT_EQ(info.wszHeaderCharset, u"header");
  EXPECT_EQ(info.wszBodyCharset, u"body");
  EXPECT_EQ(info.wszFixedWidthFont, u"fixed");
  EXPECT_EQ(info.wszProportionalFont, u"proportional");

  const RFC1766INFO locale = mlang_.GetRfc1766Info(1033, 9);
  EXPECT_EQ(locale.lcid, 1033u);
  EXPECT_EQ(locale.wszRfc1766, u"en-usx") << "all of it where it has no NUL";
  EXPECT_EQ(locale.wszLocaleName, u"");

  const MIMECSETINFO charset = mlang_.GetCharsetInfo(u"koi8-r");
  EXPECT_EQ(charset.uiCodePage, 20866u);
  EXPECT_EQ(charset.uiInternetEncoding, 20867u);
  EXPECT_EQ(charset.wszCharset, u"koi8-r");
  EXPECT_EQ(stage_.calls,
            (Lines{"GetCodePageInfo(1252,1033)", "GetRfc1766Info(1033,9)", "GetCharsetInfo(koi8-r)"}));
}

TEST_F(MLangTest, EnumerationsAskForOneRecordAtATimeUntilThereIsNone) {
  const std::vector<ScriptInfo> scripts = mlang_.EnumScripts(3, 1033);
  ASSERT_EQ(scripts.size(), 2u);
  EXPECT_EQ(scripts[1].ScriptId, 7);
  EXPECT_EQ(scripts[1].uiCodePage, 1256u);
  EXPECT_EQ(scripts[1].wszDescription, u"Arabic");
  EXPECT_EQ(scripts[1].wszFixedWidthFont, u"fixed");
  EXPECT_EQ(scripts[1].wszProportionalFont, u"proportional");
  EXPECT_EQ(stage_.calls,
            (Lines{"EnumScripts(3,1033)", "Next()", "Next()", "Next()", "enumerator released"}));
  EXPECT_EQ(mlang_.EnumRfc1766(9).size(), 2u);
  EXPECT_EQ(mlang_.EnumCodePages(1, 9).size(), 2u);
  stage_.records = 0;
  EXPECT_TRUE(mlang_.EnumCodePages(1, 9).empty());
  stage_.gives_nothing = true;
  EXPECT_TRUE(mlang_.EnumCodePages(1, 9).empty());
  EXPECT_TRUE(mlang_.EnumRfc1766(9).empty());
  EXPECT_TRUE(mlang_.EnumScripts(1, 9).empty());
}

TEST_F(MLangTest, AnythingThatFailsIsRaisedWithThePlatformsResult) {
  ExpectRaised("GetNumberOfCodePageInfo", [&] { mlang_.GetNumberOfCodePageInfo(); });
  ExpectRaised("GetNumberOfScripts", [&] { mlang_.GetNumberOfScripts(); });
  ExpectRaised("GetFamilyCodePage", [&] { mlang_.GetFamilyCodePage(1); });
  ExpectRaised("GetLcidFromRfc1766", [&] { mlang_.GetLcidFromRfc1766(u"x"); });
  ExpectRaised("GetRfc1766FromLcid", [&] { mlang_.GetRfc1766FromLcid(1); });
  ExpectRaised("SetMimeDBSource", [&] { mlang_.SetMimeDBSource(1); });
  ExpectRaised("GetCharCodePages", [&] { mlang_.GetCharCodePages(u'x'); });
  ExpectRaised("GetStrCodePages", [&] { mlang_.GetStrCodePages(u"x", 0); });
  ExpectRaised("CodePageToCodePages", [&] { mlang_.CodePageToCodePages(1); });
  ExpectRaised("CodePagesToCodePage", [&] { mlang_.CodePagesToCodePage(1, 1); });
  ExpectRaised("GetFontCodePages", [&] { mlang_.GetFontCodePages(nullptr, font_); });
  ExpectRaised("MapFont", [&] { mlang_.MapFont(nullptr, 1, font_); });
  ExpectRaised("ReleaseFont", [&] { mlang_.ReleaseFont(font_); });
  ExpectRaised("GetCodePageInfo", [&] { mlang_.GetCodePageInfo(1, 1); });
  ExpectRaised("GetRfc1766Info", [&] { mlang_.GetRfc1766Info(1, 1); });
  ExpectRaised("GetCharsetInfo", [&] { mlang_.GetCharsetInfo(u"x"); });
  ExpectRaised("EnumScripts", [&] { mlang_.EnumScripts(1, 1); });
  ExpectRaised("EnumRfc1766", [&] { mlang_.EnumRfc1766(1); });
  ExpectRaised("EnumCodePages", [&] { mlang_.EnumCodePages(1, 1); });
  ExpectRaised("Next", [&] { mlang_.EnumScripts(1, 1); });
  ExpectRaised("Next", [&] { mlang_.EnumRfc1766(1); });
  ExpectRaised("Next", [&] { mlang_.EnumCodePages(1, 1); });
  ExpectRaised("DetectInputCodepage", [&] { mlang_.DetectInputCodepage(u"x"); });
  ExpectRaised("CreateConvertCharset", [&] { mlang_.CreateConvertCharset(1, 1, 1); });
  EXPECT_EQ(std::count(stage_.calls.begin(), stage_.calls.end(), "enumerator released"), 6);
}

TEST_F(MLangTest, AnswersOfSuccessThatAreNotZeroAreNoFailures) {
  stage_.answers = {{"GetFamilyCodePage", kNo}, {"EnumScripts", kNo}, {"DetectInputCodepage", kNo}};
  EXPECT_EQ(mlang_.GetFamilyCodePage(20866), 1251u);
  EXPECT_EQ(mlang_.EnumScripts(1, 1).size(), 2u);
  EXPECT_EQ(mlang_.DetectInputCodepage(u"x").size(), 2u);
}

TEST_F(MLangTest, IsConvertibleUnlessTheAnswerIsNoOrAbove) {
  EXPECT_EQ(mlang_.IsConvertible(1250, 1251), -1);
  stage_.answers["IsConvertible"] = kNo;
  EXPECT_EQ(mlang_.IsConvertible(1250, 1251), 0);
  stage_.answers["IsConvertible"] = 2;
  EXPECT_EQ(mlang_.IsConvertible(1250, 1251), 0);
  stage_.answers["IsConvertible"] = kFailure;
  EXPECT_EQ(mlang_.IsConvertible(1250, 1251), -1) << "a failure is below that too, and isn't raised";
  EXPECT_EQ(stage_.calls.front(), "IsConvertible(1250,1251)");
}

// ---- Detection ----

TEST_F(MLangTest, AShortTextIsDetectedByFourCopies) {
  const std::u16string text = u"abc";
  mlang_.DetectInputCodepage(text);
  EXPECT_EQ(stage_.calls, Lines{"DetectInputCodepage(4,0,24,100)"});
  EXPECT_EQ(stage_.material, "a\0b\0c\0a\0b\0c\0a\0b\0c\0a\0b\0c\0"s);
  EXPECT_EQ(text, u"abc");
}

TEST_F(MLangTest, TwentyCharactersAreEnough) {
  mlang_.DetectInputCodepage(std::u16string(19, u'x'));
  mlang_.DetectInputCodepage(std::u16string(20, u'x'));
  mlang_.DetectInputCodepage(u"");
  EXPECT_EQ(stage_.calls, (Lines{"DetectInputCodepage(4,0,152,100)", "DetectInputCodepage(4,0,40,100)",
                                 "DetectInputCodepage(4,0,0,100)"}));
}

TEST_F(MLangTest, EachDetectedEncodingIsARecord) {
  const std::vector<DetectEncodingInfo> found = mlang_.DetectInputCodepage(u"abc");
  ASSERT_EQ(found.size(), 2u);
  EXPECT_EQ(found[1].nCodePage, 1251u);
  EXPECT_EQ(found[1].nConfidence, 80);
  EXPECT_EQ(found[1].nDocPercent, 90);
  EXPECT_EQ(found[1].nLangID, 1u);
}

TEST_F(MLangTest, ANumberOfResultsThatCannotBeIsHeldToTheRoom) {
  for (const std::int32_t count : {101, 0x7FFFFFFF}) {
    stage_.detected = count;
    EXPECT_EQ(mlang_.DetectInputCodepage(u"abc").size(), 100u);
  }
  stage_.detected = -1;
  EXPECT_TRUE(mlang_.DetectInputCodepage(u"abc").empty());
}

// ---- Conversion ----

class ConvertCharsetTest : public MLangTest {
 protected:
  ConvertCharsetTest() { stage_.calls.clear(); }
  std::unique_ptr<ConvertCharset> conversion_ = mlang_.CreateConvertCharset(1250, 1251, 3);
};

TEST_F(ConvertCharsetTest, TellsItsCodePagesAndProperty) {
  EXPECT_EQ(conversion_->GetSourceCodePage(), 1250u);
  EXPECT_EQ(conversion_->GetDestinationCodePage(), 1251u);
  EXPECT_EQ(conversion_->GetProperty(), 9u);
}

TEST_F(ConvertCharsetTest, IsNothingWhereThePlatformGivesNothing) {
  stage_.gives_nothing = true;
  stage_.answers["CreateConvertCharset"] = kNo;
  EXPECT_EQ(mlang_.CreateConvertCharset(1250, 1251, 3), nullptr);
  EXPECT_EQ(stage_.calls.back(), "CreateConvertCharset(1250,1251,3)");
}

TEST_F(ConvertCharsetTest, ASecondAttachmentRaisesError383AndTheFirstStays) {
  Stage other;
  try {
    conversion_->Attach(std::make_unique<StagedConversion>(other));
    ADD_FAILURE() << "attached twice";
  } catch (const MultiLanguageError& error) {
    EXPECT_EQ(error.Code(), 383);
  }
  EXPECT_EQ(other.calls, Lines{"conversion released"});
  EXPECT_EQ(conversion_->GetSourceCodePage(), 1250u);
}

TEST_F(ConvertCharsetTest, AsksForTheSizeAndThenForAsMuch) {
  EXPECT_EQ(conversion_->DoConversionToUnicode("in"), u"bytes");
  EXPECT_EQ(conversion_->DoConversionFromUnicode(u"on"), "bytes");
  EXPECT_EQ(stage_.calls, (Lines{"DoConversionToUnicode(in,size)", "DoConversionToUnicode(in,5)",
                                 "DoConversionFromUnicode(on,size)", "DoConversionFromUnicode(on,5)"}));
}

TEST_F(ConvertCharsetTest, TextAndBytesAreTheWholeBuffer) {
  stage_.converted = "a\0b"s;
  EXPECT_EQ(conversion_->DoConversionToUnicode("in"), u"a\0b"s);
  EXPECT_EQ(conversion_->DoConversionFromUnicode(u"in"), "a\0b"s);
  stage_.answers["DoConversionFromUnicode fills less"] = 0;
  EXPECT_EQ(conversion_->DoConversionFromUnicode(u"in"), "\0\0\0"s) << "it comes filled with NUL";
}

TEST_F(ConvertCharsetTest, BetweenBytesTheResultIsPackedAndEndsAtTheFirstNull) {
  stage_.converted = "abcd";
  EXPECT_EQ(conversion_->DoConversion("in"), u"\u6261\u6463");
  EXPECT_EQ(stage_.calls, (Lines{"DoConversion(in,size)", "DoConversion(in,4)"}));
  stage_.converted = "ab\0\0cd"s;
  EXPECT_EQ(conversion_->DoConversion("in"), u"\u6261");
  stage_.converted = "a\0bc"s;
  EXPECT_EQ(conversion_->DoConversion("in"), u"a\u6362") << "one NUL byte is no NUL";
}

TEST_F(ConvertCharsetTest, AnOddLastByteIsLost) {
  stage_.converted = "abc";
  EXPECT_EQ(conversion_->DoConversion("in"), u"\u6261");
  stage_.converted = "a";
  EXPECT_EQ(conversion_->DoConversion("in"), u"");
}

TEST_F(ConvertCharsetTest, NothingConvertsToNothing) {
  stage_.converted.clear();
  EXPECT_EQ(conversion_->DoConversion(""), u"");
  EXPECT_EQ(conversion_->DoConversionToUnicode(""), u"");
  EXPECT_EQ(conversion_->DoConversionFromUnicode(u""), "");
}

TEST_F(ConvertCharsetTest, EitherCallThatFailsIsRaised) {
  for (const char* suffix : {"", " second"}) {
    for (const std::string name : {"DoConversion", "DoConversionToUnicode", "DoConversionFromUnicode"}) {
      stage_.answers = {{name + suffix, kFailure}};
      EXPECT_THROW(
          {
            conversion_->DoConversion("in");
            conversion_->DoConversionToUnicode("in");
            conversion_->DoConversionFromUnicode(u"in");
          },
          MultiLanguageError)
          << name << suffix;
    }
  }
  ExpectRaised("GetSourceCodePage", [&] { conversion_->GetSourceCodePage(); });
  ExpectRaised("GetDestinationCodePage", [&] { conversion_->GetDestinationCodePage(); });
  ExpectRaised("GetProperty", [&] { conversion_->GetProperty(); });
}

TEST_F(ConvertCharsetTest, WithoutAnObjectEverythingFails) {
  const ConvertCharset empty;
  EXPECT_THROW(empty.GetProperty(), MultiLanguageError);
  EXPECT_THROW(empty.DoConversion("in"), MultiLanguageError);
}

// ---- The end ----

TEST(MLangEnd, ResetsTheFontMappingBeforeTheRelease) {
  Stage stage;
  { const MLang mlang(std::make_unique<StagedObject>(stage)); }
  EXPECT_EQ(stage.calls, (Lines{"ResetFontMapping()", "released"}));
  stage = {};
  stage.answers["ResetFontMapping"] = kFailure;
  { const MLang mlang(std::make_unique<StagedObject>(stage)); }
  EXPECT_EQ(stage.calls, (Lines{"ResetFontMapping()", "released"})) << "whether that works or not";
}

}  // namespace
}  // namespace marklet
