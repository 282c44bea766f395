// The platform's multi-language object: code pages, charsets, locale names, scripts, and fonts for
// characters.
//
// Each method is the platform's of that name and answers its result code, negative on failure; what it fills
// in counts only when that isn't negative. Records have the platform's layout; their texts end at a NUL or at
// their end. Only Windows has the object.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/types.h"

namespace marklet {

struct tagMIMECPINFO {
  std::uint32_t dwFlags, uiCodePage, uiFamilyCodePage;
  char16_t wszDescription[64], wszWebCharset[50], wszHeaderCharset[50], wszBodyCharset[50];
  char16_t wszFixedWidthFont[32], wszProportionalFont[32];
  std::uint8_t bGDICharset;
};

struct tagMIMECSETINFO {
  std::uint32_t uiCodePage, uiInternetEncoding;
  char16_t wszCharset[50];
};

struct tagRFC1766INFO {
  std::uint32_t lcid;
  char16_t wszRfc1766[6], wszLocaleName[32];
};

struct tagSCRIPTINFO {
  std::uint8_t ScriptId;
  std::uint32_t uiCodePage;
  char16_t wszDescription[48], wszFixedWidthFont[32], wszProportionalFont[32];
};

struct tagDetectEncodingInfo {
  std::uint32_t nLangID, nCodePage;
  std::int32_t nDocPercent, nConfidence;
};
static_assert(sizeof(tagDetectEncodingInfo) == 16);

template <typename Record>
class MultiLanguageEnumerator {
 public:
  virtual ~MultiLanguageEnumerator() = default;
  // Asks for one record; `fetched` is how many there were, 0 at the end.
  virtual Long Next(Record& record, std::uint32_t& fetched) = 0;
};

// IMLangConvertCharset. Sizes are in bytes for bytes and in units for text: on the way in what there is, on
// the way out what was used. Without a destination only its size is told.
class ConvertCharsetObject {
 public:
  virtual ~ConvertCharsetObject() = default;
  virtual Long GetSourceCodePage(std::uint32_t& code_page) = 0;
  virtual Long GetDestinationCodePage(std::uint32_t& code_page) = 0;
  virtual Long GetProperty(std::uint32_t& property) = 0;
  virtual Long DoConversion(const char* source, std::uint32_t& source_size, char* destination,
                            std::uint32_t& destination_size) = 0;
  virtual Long DoConversionToUnicode(const char* source, std::uint32_t& source_size, char16_t* destination,
                                     std::uint32_t& destination_size) = 0;
  virtual Long DoConversionFromUnicode(const char16_t* source, std::uint32_t& source_size, char* destination,
                                       std::uint32_t& destination_size) = 0;
};

// IMultiLanguage2, IMLangFontLink and IMLangCodePages of one object. Out-pointers may stay empty on success.
// Has several implementations: the platform's, and those of tests.
class MultiLanguageObject {
 public:
  virtual ~MultiLanguageObject() = default;

  virtual Long GetNumberOfCodePageInfo(std::uint32_t& count) = 0;
  virtual Long GetCodePageInfo(std::uint32_t code_page, std::uint16_t language, tagMIMECPINFO& info) = 0;
  virtual Long GetFamilyCodePage(std::uint32_t code_page, std::uint32_t& family) = 0;
  virtual Long EnumCodePages(std::uint32_t flags, std::uint16_t language,
                             std::unique_ptr<MultiLanguageEnumerator<tagMIMECPINFO>>& enumerator) = 0;
  virtual Long GetCharsetInfo(std::u16string_view charset, tagMIMECSETINFO& info) = 0;
  virtual Long IsConvertible(std::uint32_t source, std::uint32_t destination) = 0;
  virtual Long GetRfc1766FromLcid(std::uint32_t locale, std::u16string& name) = 0;
  virtual Long GetLcidFromRfc1766(std::uint32_t& locale, std::u16string_view name) = 0;
  virtual Long EnumRfc1766(std::uint16_t language,
                           std::unique_ptr<MultiLanguageEnumerator<tagRFC1766INFO>>& enumerator) = 0;
  virtual Long GetRfc1766Info(std::uint32_t locale, std::uint16_t language, tagRFC1766INFO& info) = 0;
  virtual Long CreateConvertCharset(std::uint32_t source, std::uint32_t destination, std::uint32_t properties,
                                    std::unique_ptr<ConvertCharsetObject>& object) = 0;
  // `scores` is the room for results on the way in and their number on the way out.
  virtual Long DetectInputCodepage(std::uint32_t flags, std::uint32_t default_code_page, const char* source,
                                   std::int32_t& source_size, tagDetectEncodingInfo* results,
                                   std::int32_t& scores) = 0;
  virtual Long SetMimeDBSource(std::uint32_t source) = 0;
  virtual Long GetNumberOfScripts(std::uint32_t& count) = 0;
  virtual Long EnumScripts(std::uint32_t flags, std::uint16_t language,
                           std::unique_ptr<MultiLanguageEnumerator<tagSCRIPTINFO>>& enumerator) = 0;

  virtual Long GetCharCodePages(char16_t ch, std::uint32_t& code_pages) = 0;
  virtual Long GetStrCodePages(std::u16string_view text, std::uint32_t priority, std::uint32_t& code_pages,
                               Long& count) = 0;
  virtual Long CodePageToCodePages(std::uint32_t code_page, std::uint32_t& code_pages) = 0;
  virtual Long CodePagesToCodePage(std::uint32_t code_pages, std::uint32_t default_code_page,
                                   std::uint32_t& code_page) = 0;
  virtual Long GetFontCodePages(HDC dc, HFONT font, std::uint32_t& code_pages) = 0;
  virtual Long MapFont(HDC dc, std::uint32_t code_pages, HFONT source, HFONT& font) = 0;
  virtual Long ReleaseFont(HFONT font) = 0;
  virtual Long ResetFontMapping() = 0;
};

// The platform's own. Without one (always on the headless platform) `object` stays as it was and the answer
// is a failure. On Windows the thread must have been prepared for objects, and the object stays on it.
Long CreateMultiLanguage(std::unique_ptr<MultiLanguageObject>& object);

}  // namespace marklet
