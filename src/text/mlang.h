// MLang: code pages, charsets, locale names, scripts, the encoding of a text and fonts for characters, by the
// platform's multi-language object. The control's paint doesn't use it.
//
// Where the platform fails, MultiLanguageError is thrown.
#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/multi_language.h"
#include "platform/types.h"

namespace marklet {

class MultiLanguageError : public std::runtime_error {
 public:
  explicit MultiLanguageError(Long code);
  Long Code() const { return code_; }  // the platform's result, or the number of an error of our own

 private:
  Long code_;
};

struct MIMECPINFO {
  std::uint32_t dwFlags = 0, uiCodePage = 0, uiFamilyCodePage = 0;
  std::uint8_t bGDICharset = 0;
  std::u16string wszDescription, wszWebCharset, wszHeaderCharset, wszBodyCharset, wszFixedWidthFont,
      wszProportionalFont;
};

struct RFC1766INFO {
  std::uint32_t lcid = 0;
  std::u16string wszRfc1766, wszLocaleName;
};

struct MIMECSETINFO {
  std::uint32_t uiCodePage = 0, uiInternetEncoding = 0;
  std::u16string wszCharset;
};

struct DetectEncodingInfo {
  std::uint32_t nCodePage = 0;
  std::int32_t nConfidence = 0, nDocPercent = 0;
  std::uint32_t nLangID = 0;
};

struct ScriptInfo {
  std::uint8_t ScriptId = 0;
  std::uint32_t uiCodePage = 0;
  std::u16string wszDescription, wszFixedWidthFont, wszProportionalFont;
};

// A conversion between two code pages. Without a platform object every operation fails.
class ConvertCharset {
 public:
  // Once: another one raises error 383.
  void Attach(std::unique_ptr<ConvertCharsetObject> object);

  std::uint32_t GetSourceCodePage() const;
  std::uint32_t GetDestinationCodePage() const;
  std::uint32_t GetProperty() const;
  // The bytes of the result, two a unit, up to the first unit that is NUL. An odd last byte is lost.
  std::u16string DoConversion(std::string_view bytes) const;
  std::u16string DoConversionToUnicode(std::string_view bytes) const;
  std::string DoConversionFromUnicode(std::u16string_view text) const;

 private:
  ConvertCharsetObject& Object() const;
  std::unique_ptr<ConvertCharsetObject> object_;
};

class MLang {
 public:
  MLang();                                                      // over the platform's object
  explicit MLang(std::unique_ptr<MultiLanguageObject> object);  // never null
  ~MLang();
  MLang(const MLang&) = delete;
  MLang& operator=(const MLang&) = delete;

  struct StrCodePages {
    std::uint32_t code_pages;
    Long count;  // of the units from the first on that share them
  };

  // What the text's own bytes look like, the likeliest encodings as the platform orders them.
  std::vector<DetectEncodingInfo> DetectInputCodepage(std::u16string_view text) const;
  // Null where the platform has no such conversion.
  std::unique_ptr<ConvertCharset> CreateConvertCharset(std::uint32_t source, std::uint32_t destination,
                                                       std::uint32_t properties) const;
  void SetMimeDBSource(std::uint32_t source) const;
  std::uint32_t GetNumberOfScripts() const;
  std::vector<ScriptInfo> EnumScripts(std::uint32_t flags, std::uint16_t language) const;
  std::vector<RFC1766INFO> EnumRfc1766(std::uint16_t language) const;
  std::uint32_t GetNumberOfCodePageInfo() const;
  std::vector<MIMECPINFO> EnumCodePages(std::uint32_t flags, std::uint16_t language) const;
  MIMECPINFO GetCodePageInfo(std::uint32_t code_page, std::uint16_t language) const;
  std::uint32_t GetLcidFromRfc1766(std::u16string_view name) const;
  std::u16string GetRfc1766FromLcid(std::uint32_t locale) const;
  RFC1766INFO GetRfc1766Info(std::uint32_t locale, std::uint16_t language) const;
  std::uint32_t GetFamilyCodePage(std::uint32_t code_page) const;
  MIMECSETINFO GetCharsetInfo(std::u16string_view charset) const;
  // -1 or 0. A call that fails answers -1 too: only "no" itself counts as no.
  Long IsConvertible(std::uint32_t source, std::uint32_t destination) const;
  HFONT MapFont(HDC dc, std::uint32_t code_pages, HFONT source) const;
  void ReleaseFont(HFONT font) const;
  std::uint32_t GetFontCodePages(HDC dc, HFONT font) const;
  std::uint32_t GetCharCodePages(char16_t ch) const;
  StrCodePages GetStrCodePages(std::u16string_view text, std::uint32_t priority) const;
  std::uint32_t CodePagesToCodePage(std::uint32_t code_pages, std::uint32_t default_code_page) const;
  std::uint32_t CodePageToCodePages(std::uint32_t code_page) const;

 private:
  std::unique_ptr<MultiLanguageObject> object_;
};

}  // namespace marklet
