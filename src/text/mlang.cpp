#include "text/mlang.h"

#include <algorithm>
#include <utility>

#include "text/string_helpers.h"

namespace marklet {
namespace {

constexpr Long kNo = 1;                                          // S_FALSE
constexpr Long kInvalidPointer = static_cast<Long>(0x80004003);  // E_POINTER
constexpr Long kSetNotSupported = 383;

void Check(Long result) {
  if (result < 0) throw MultiLanguageError(result);
}

template <std::size_t kSize>
std::u16string TextOf(const char16_t (&units)[kSize]) {
  return std::u16string(TrimAtNull({units, kSize}));
}

MIMECPINFO RecordOf(const tagMIMECPINFO& info) {
  return {info.dwFlags,
          info.uiCodePage,
          info.uiFamilyCodePage,
          info.bGDICharset,
          TextOf(info.wszDescription),
          TextOf(info.wszWebCharset),
          TextOf(info.wszHeaderCharset),
          TextOf(info.wszBodyCharset),
          TextOf(info.wszFixedWidthFont),
          TextOf(info.wszProportionalFont)};
}

RFC1766INFO RecordOf(const tagRFC1766INFO& info) {
  return {info.lcid, TextOf(info.wszRfc1766), TextOf(info.wszLocaleName)};
}

ScriptInfo RecordOf(const tagSCRIPTINFO& info) {
  return {info.ScriptId, info.uiCodePage, TextOf(info.wszDescription), TextOf(info.wszFixedWidthFont),
          TextOf(info.wszProportionalFont)};
}

DetectEncodingInfo RecordOf(const tagDetectEncodingInfo& info) {
  return {info.nCodePage, info.nConfidence, info.nDocPercent, info.nLangID};
}

// All that is left in an enumerator, one at a time.
template <typename Record>
auto Collected(const std::unique_ptr<MultiLanguageEnumerator<Record>>& enumerator) {
  std::vector<decltype(RecordOf(std::declval<Record>()))> records;
  while (enumerator) {
    Record record{};
    std::uint32_t fetched = 0;
    Check(enumerator->Next(record, fetched));
    if (fetched == 0) break;
    records.push_back(RecordOf(record));
  }
  return records;
}

// `call` takes a destination and its size. Asked for the size first, then for as much, which it may leave
// unfilled.
template <typename Text, typename Call>
Text Converted(Call call) {
  std::uint32_t size = 0;
  Check(call(nullptr, size));
  Text result(size, 0);
  if (size != 0) Check(call(result.data(), size));
  return result;
}

}  // namespace

MultiLanguageError::MultiLanguageError(Long code)
    : std::runtime_error("the multi-language object answered " + std::to_string(code)), code_(code) {}

void ConvertCharset::Attach(std::unique_ptr<ConvertCharsetObject> object) {
  if (object_) throw MultiLanguageError(kSetNotSupported);
  object_ = std::move(object);
}

ConvertCharsetObject& ConvertCharset::Object() const {
  if (!object_) throw MultiLanguageError(kInvalidPointer);
  return *object_;
}

std::uint32_t ConvertCharset::GetSourceCodePage() const {
  std::uint32_t code_page = 0;
  Check(Object().GetSourceCodePage(code_page));
  return code_page;
}

std::uint32_t ConvertCharset::GetDestinationCodePage() const {
  std::uint32_t code_page = 0;
  Check(Object().GetDestinationCodePage(code_page));
  return code_page;
}

std::uint32_t ConvertCharset::GetProperty() const {
  std::uint32_t property = 0;
  Check(Object().GetProperty(property));
  return property;
}

std::u16string ConvertCharset::DoConversion(std::string_view bytes) const {
  const auto converted = Converted<std::string>([&](char* destination, std::uint32_t& size) {
    auto source_size = static_cast<std::uint32_t>(bytes.size());
    return Object().DoConversion(bytes.data(), source_size, destination, size);
  });
  std::u16string units(converted.size() / sizeof(char16_t), u'\0');
  std::copy_n(converted.data(), units.size() * sizeof(char16_t), reinterpret_cast<char*>(units.data()));
  return std::u16string(TrimAtNull(units));
}

std::u16string ConvertCharset::DoConversionToUnicode(std::string_view bytes) const {
  return Converted<std::u16string>([&](char16_t* destination, std::uint32_t& size) {
    auto source_size = static_cast<std::uint32_t>(bytes.size());
    return Object().DoConversionToUnicode(bytes.data(), source_size, destination, size);
  });
}

std::string ConvertCharset::DoConversionFromUnicode(std::u16string_view text) const {
  return Converted<std::string>([&](char* destination, std::uint32_t& size) {
    auto source_size = static_cast<std::uint32_t>(text.size());
    return Object().DoConversionFromUnicode(text.data(), source_size, destination, size);
  });
}

MLang::MLang() { Check(CreateMultiLanguage(object_)); }

MLang::MLang(std::unique_ptr<MultiLanguageObject> object) : object_(std::move(object)) {}

// Fonts that were mapped and never given back go with the mapping.
MLang::~MLang() { object_->ResetFontMapping(); }

std::vector<DetectEncodingInfo> MLang::DetectInputCodepage(std::u16string_view text) const {
  constexpr std::size_t kTooShort = 20;  // for the detector to tell anything
  constexpr std::uint32_t kFlags = 4;
  constexpr std::int32_t kRoom = 100;
  std::u16string material(text);
  if (text.size() < kTooShort)
    for (int copies = 1; copies < 4; ++copies) material += text;
  std::vector<tagDetectEncodingInfo> results(kRoom);
  auto size = static_cast<std::int32_t>(material.size() * sizeof(char16_t));
  std::int32_t count = kRoom;
  Check(object_->DetectInputCodepage(kFlags, 0, reinterpret_cast<const char*>(material.data()), size,
                                     results.data(), count));
  results.resize(static_cast<std::size_t>(std::clamp(count, 0, kRoom)));
  std::vector<DetectEncodingInfo> records(results.size());
  std::transform(results.begin(), results.end(), records.begin(),
                 [](const tagDetectEncodingInfo& result) { return RecordOf(result); });
  return records;
}

std::unique_ptr<ConvertCharset> MLang::CreateConvertCharset(std::uint32_t source, std::uint32_t destination,
                                                            std::uint32_t properties) const {
  std::unique_ptr<ConvertCharsetObject> object;
  Check(object_->CreateConvertCharset(source, destination, properties, object));
  if (!object) return nullptr;
  auto conversion = std::make_unique<ConvertCharset>();
  conversion->Attach(std::move(object));
  return conversion;
}

void MLang::SetMimeDBSource(std::uint32_t source) const { Check(object_->SetMimeDBSource(source)); }

std::uint32_t MLang::GetNumberOfScripts() const {
  std::uint32_t count = 0;
  Check(object_->GetNumberOfScripts(count));
  return count;
}

std::vector<ScriptInfo> MLang::EnumScripts(std::uint32_t flags, std::uint16_t language) const {
  std::unique_ptr<MultiLanguageEnumerator<tagSCRIPTINFO>> enumerator;
  Check(object_->EnumScripts(flags, language, enumerator));
  return Collected(enumerator);
}

std::vector<RFC1766INFO> MLang::EnumRfc1766(std::uint16_t language) const {
  std::unique_ptr<MultiLanguageEnumerator<tagRFC1766INFO>> enumerator;
  Check(object_->EnumRfc1766(language, enumerator));
  return Collected(enumerator);
}

std::uint32_t MLang::GetNumberOfCodePageInfo() const {
  std::uint32_t count = 0;
  Check(object_->GetNumberOfCodePageInfo(count));
  return count;
}

std::vector<MIMECPINFO> MLang::EnumCodePages(std::uint32_t flags, std::uint16_t language) const {
  std::unique_ptr<MultiLanguageEnumerator<tagMIMECPINFO>> enumerator;
  Check(object_->EnumCodePages(flags, language, enumerator));
  return Collected(enumerator);
}

MIMECPINFO MLang::GetCodePageInfo(std::uint32_t code_page, std::uint16_t language) const {
  tagMIMECPINFO info{};
  Check(object_->GetCodePageInfo(code_page, language, info));
  return RecordOf(info);
}

std::uint32_t MLang::GetLcidFromRfc1766(std::u16string_view name) const {
  std::uint32_t locale = 0;
  Check(object_->GetLcidFromRfc1766(locale, name));
  return locale;
}

std::u16string MLang::GetRfc1766FromLcid(std::uint32_t locale) const {
  std::u16string name;
  Check(object_->GetRfc1766FromLcid(locale, name));
  return name;
}

RFC1766INFO MLang::GetRfc1766Info(std::uint32_t locale, std::uint16_t language) const {
  tagRFC1766INFO info{};
  Check(object_->GetRfc1766Info(locale, language, info));
  return RecordOf(info);
}

std::uint32_t MLang::GetFamilyCodePage(std::uint32_t code_page) const {
  std::uint32_t family = 0;
  Check(object_->GetFamilyCodePage(code_page, family));
  return family;
}

MIMECSETINFO MLang::GetCharsetInfo(std::u16string_view charset) const {
  tagMIMECSETINFO info{};
  Check(object_->GetCharsetInfo(charset, info));
  return {info.uiCodePage, info.uiInternetEncoding, TextOf(info.wszCharset)};
}

Long MLang::IsConvertible(std::uint32_t source, std::uint32_t destination) const {
  return object_->IsConvertible(source, destination) >= kNo ? 0 : -1;
}

HFONT MLang::MapFont(HDC dc, std::uint32_t code_pages, HFONT source) const {
  HFONT font = nullptr;
  Check(object_->MapFont(dc, code_pages, source, font));
  return font;
}

void MLang::ReleaseFont(HFONT font) const { Check(object_->ReleaseFont(font)); }

std::uint32_t MLang::GetFontCodePages(HDC dc, HFONT font) const {
  std::uint32_t code_pages = 0;
  Check(object_->GetFontCodePages(dc, font, code_pages));
  return code_pages;
}

std::uint32_t MLang::GetCharCodePages(char16_t ch) const {
  std::uint32_t code_pages = 0;
  Check(object_->GetCharCodePages(ch, code_pages));
  return code_pages;
}

MLang::StrCodePages MLang::GetStrCodePages(std::u16string_view text, std::uint32_t priority) const {
  StrCodePages answer{};
  Check(object_->GetStrCodePages(text, priority, answer.code_pages, answer.count));
  return answer;
}

std::uint32_t MLang::CodePagesToCodePage(std::uint32_t code_pages, std::uint32_t default_code_page) const {
  std::uint32_t code_page = 0;
  Check(object_->CodePagesToCodePage(code_pages, default_code_page, code_page));
  return code_page;
}

std::uint32_t MLang::CodePageToCodePages(std::uint32_t code_page) const {
  std::uint32_t code_pages = 0;
  Check(object_->CodePageToCodePages(code_page, code_pages));
  return code_pages;
}

}  // namespace marklet
