// MLang over the system's own object, held against the C library's code pages.
#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <optional>
#include <set>
#include <string>

#include "markup/canvas.h"
#include "platform/code_page_samples.h"
#include "platform/win32/sdk_ole.h"
#include "text/mlang.h"

namespace marklet {
namespace {

constexpr std::uint32_t kUnicode = 1200;

class MLangOfTheSystem : public testing::Test {
 protected:
  MLangOfTheSystem() { CoInitialize(nullptr); }
  ~MLangOfTheSystem() override {
    mlang_.reset();
    CoUninitialize();
  }
  void SetUp() override { mlang_ = std::make_unique<MLang>(); }

  std::unique_ptr<MLang> mlang_;
};

std::string Unpacked(std::u16string_view units) {
  std::string bytes(units.size() * sizeof(char16_t), '\0');
  std::memcpy(bytes.data(), units.data(), bytes.size());
  return bytes;
}

// The answer, or nothing where the system's object lacks the operation. Wine's conversions have neither
// GetProperty nor DoConversion, from bytes to bytes.
template <typename Operation>
auto IfThere(Operation operation) -> std::optional<decltype(operation())> {
  constexpr Long kNotImplemented = static_cast<Long>(0x80004001);
  try {
    return operation();
  } catch (const MultiLanguageError& error) {
    EXPECT_EQ(error.Code(), kNotImplemented);
    return std::nullopt;
  }
}

TEST_F(MLangOfTheSystem, ConvertsTwentyCodePagesToUnicodeAndBack) {
  for (const CodePageSample& sample : kCodePageSamples) {
    SCOPED_TRACE(sample.code_page);
    const auto to = mlang_->CreateConvertCharset(sample.code_page, kUnicode, 0);
    const auto from = mlang_->CreateConvertCharset(kUnicode, sample.code_page, 0);
    ASSERT_TRUE(to && from);
    EXPECT_EQ(to->DoConversionToUnicode(sample.bytes), sample.text);
    EXPECT_EQ(from->DoConversionFromUnicode(sample.text), sample.bytes);
    EXPECT_EQ(from->DoConversionFromUnicode(to->DoConversionToUnicode(sample.bytes)), sample.bytes);
  }
}

TEST_F(MLangOfTheSystem, AConversionTellsWhatItIs) {
  const auto to = mlang_->CreateConvertCharset(1251, kUnicode, 0);
  EXPECT_EQ(to->GetSourceCodePage(), 1251u);
  EXPECT_EQ(to->GetDestinationCodePage(), kUnicode);
  EXPECT_EQ(IfThere([&] { return to->GetProperty(); }).value_or(0), 0u);
}

// Each text goes straight where the system can, and by way of Unicode everywhere.
TEST_F(MLangOfTheSystem, ConvertsBetweenEachTwoOfTwentyCodePages) {
  for (const CodePageSample& source : kCodePageSamples) {
    const auto to = mlang_->CreateConvertCharset(source.code_page, kUnicode, 0);
    for (const CodePageSample& destination : kCodePageSamples) {
      SCOPED_TRACE(std::to_string(source.code_page) + " to " + std::to_string(destination.code_page));
      const auto from = mlang_->CreateConvertCharset(kUnicode, destination.code_page, 0);
      const auto straight = mlang_->CreateConvertCharset(source.code_page, destination.code_page, 0);
      ASSERT_TRUE(to && from && straight);
      const auto expect = [&](std::string_view bytes, std::string_view expected) {
        EXPECT_EQ(from->DoConversionFromUnicode(to->DoConversionToUnicode(bytes)), expected);
        const auto packed = IfThere([&] { return straight->DoConversion(bytes); });
        if (packed && expected.size() % 2 == 0) {
          EXPECT_EQ(Unpacked(*packed), expected);
        }
      };
      expect("Total 12", "Total 12");
      if (source.text == destination.text) expect(source.bytes, destination.bytes);
    }
  }
}

TEST_F(MLangOfTheSystem, ConvertsPackedUnicodeToo) {
  const auto to = mlang_->CreateConvertCharset(1251, kUnicode, 0);
  const std::u16string expected = u"\u041F\u0440\u0438";
  EXPECT_EQ(IfThere([&] { return to->DoConversion("\xCF\xF0\xE8"); }).value_or(expected), expected);
}

TEST_F(MLangOfTheSystem, TellsOfCodePagesAndCharsets) {
  EXPECT_EQ(mlang_->GetFamilyCodePage(20866), 1251u);
  EXPECT_EQ(mlang_->GetCharsetInfo(u"koi8-r").uiInternetEncoding, 20866u);
  const MIMECPINFO info = mlang_->GetCodePageInfo(1251, 0x409);
  EXPECT_EQ(info.uiCodePage, 1251u);
  EXPECT_EQ(info.wszWebCharset, u"windows-1251");
  EXPECT_EQ(info.bGDICharset, 204);
  EXPECT_THROW(mlang_->GetCharsetInfo(u"no such charset"), MultiLanguageError);
  EXPECT_GT(mlang_->GetNumberOfCodePageInfo(), 20u);
  std::set<std::uint32_t> code_pages;
  for (const MIMECPINFO& one : mlang_->EnumCodePages(0, 0x409)) code_pages.insert(one.uiCodePage);
  for (const std::uint32_t code_page : {1250u, 1251u, 932u, 20866u}) EXPECT_TRUE(code_pages.count(code_page));
}

TEST_F(MLangOfTheSystem, TellsOfLocalesAndScripts) {
  EXPECT_EQ(mlang_->GetLcidFromRfc1766(u"ar-sa"), 1025u);
  EXPECT_EQ(mlang_->GetRfc1766FromLcid(1025), u"ar-sa");
  EXPECT_EQ(mlang_->GetRfc1766Info(1033, 0x409).wszRfc1766, u"en-us");
  EXPECT_GT(mlang_->EnumRfc1766(0x409).size(), 20u);
  EXPECT_GT(mlang_->GetNumberOfScripts(), 10u);
  EXPECT_GT(mlang_->EnumScripts(1, 0x409).size(), 10u);
}

TEST_F(MLangOfTheSystem, TellsWhatCanBeConverted) {
  EXPECT_EQ(mlang_->IsConvertible(1251, kUnicode), -1);
  EXPECT_EQ(mlang_->IsConvertible(4242, kUnicode), 0);
}

TEST_F(MLangOfTheSystem, MapsFontsForCodePages) {
  const Canvas canvas(10, 10);
  const std::uint32_t cyrillic = mlang_->CodePageToCodePages(1251);
  EXPECT_NE(cyrillic, 0u);
  EXPECT_EQ(mlang_->CodePagesToCodePage(cyrillic, 0), 1251u);
  EXPECT_NE(mlang_->GetCharCodePages(u'\u0416') & cyrillic, 0u);
  const MLang::StrCodePages latin = mlang_->GetStrCodePages(u"abc", 0);
  EXPECT_NE(latin.code_pages, 0u);
  EXPECT_EQ(latin.count, 3);
  const StdFont font;
  EXPECT_NE(mlang_->GetFontCodePages(canvas.dc(), font.hFont()), 0u);
  const HFONT mapped = mlang_->MapFont(canvas.dc(), cyrillic, font.hFont());
  EXPECT_NE(mapped, nullptr);
  mlang_->ReleaseFont(mapped);
}

}  // namespace
}  // namespace marklet
