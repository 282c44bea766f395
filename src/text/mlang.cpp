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

// What `call` puts in place of a value of zeros.
template <typename Value, typename Call>
Value Answer(Call call) {
  Value value{};
  Check(call(value));
  return value;
}

// All that the enumerator has which `call` gives, one at a time.
template <typename Record, typename Call>
auto Collected(Call call) {
  const auto enumerator = Answer<std::unique_ptr<MultiLanguageEnumerator<Record>>>(call);
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
  auto size = Answer<std::uint32_t>([&](auto& needed) { return call(nullptr, needed); });
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
  return Answer<std::uint32_t>([&](auto& code_page) { return Object().GetSourceCodePage(code_page); });
}

std::uint32_t ConvertCharset::GetDestinationCodePage() const {
  return Answer<std::uint32_t>([&](auto& code_page) { return Object().GetDestinationCodePage(code_page); });
}

std::uint32_t ConvertCharset::GetProperty() const {
  return Answer<std::uint32_t>([&](auto& property) { return Object().GetProperty(property); });
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
  auto object = Answer<std::unique_ptr<ConvertCharsetObject>>(
      [&](auto& created) { return object_->CreateConvertCharset(source, destination, properties, created); });
  if (!object) return nullptr;
  auto conversion = std::make_unique<ConvertCharset>();
  conversion->Attach(std::move(object));
  return conversion;
}

void MLang::SetMimeDBSource(std::uint32_t source) const { Check(object_->SetMimeDBSource(source)); }

std::uint32_t MLang::GetNumberOfScripts() const {
  return Answer<std::uint32_t>([&](auto& count) { return object_->GetNumberOfScripts(count); });
}

std::vector<ScriptInfo> MLang::EnumScripts(std::uint32_t flags, std::uint16_t language) const {
  return Collected<tagSCRIPTINFO>(
      [&](auto& enumerator) { return object_->EnumScripts(flags, language, enumerator); });
}

std::vector<RFC1766INFO> MLang::EnumRfc1766(std::uint16_t language) const {
  return Collected<tagRFC1766INFO>(
      [&](auto& enumerator) { return object_->EnumRfc1766(language, enumerator); });
}

std::uint32_t MLang::GetNumberOfCodePageInfo() const {
  return Answer<std::uint32_t>([&](auto& count) { return object_->GetNumberOfCodePageInfo(count); });
}

std::vector<MIMECPINFO> MLang::EnumCodePages(std::uint32_t flags, std::uint16_t language) const {
  return Collected<tagMIMECPINFO>(
      [&](auto& enumerator) { return object_->EnumCodePages(flags, language, enumerator); });
}

MIMECPINFO MLang::GetCodePageInfo(std::uint32_t code_page, std::uint16_t language) const {
  return RecordOf(
      Answer<tagMIMECPINFO>([&](auto& info) { return object_->GetCodePageInfo(code_page, language, info); }));
}

std::uint32_t MLang::GetLcidFromRfc1766(std::u16string_view name) const {
  return Answer<std::uint32_t>([&](auto& locale) { return object_->GetLcidFromRfc1766(locale, name); });
}

std::u16string MLang::GetRfc1766FromLcid(std::uint32_t locale) const {
  return Answer<std::u16string>([&](auto& name) { return object_->GetRfc1766FromLcid(locale, name); });
}

RFC1766INFO MLang::GetRfc1766Info(std::uint32_t locale, std::uint16_t language) const {
  return RecordOf(
      Answer<tagRFC1766INFO>([&](auto& info) { return object_->GetRfc1766Info(locale, language, info); }));
}

std::uint32_t MLang::GetFamilyCodePage(std::uint32_t code_page) const {
  return Answer<std::uint32_t>([&](auto& family) { return object_->GetFamilyCodePage(code_page, family); });
}

MIMECSETINFO MLang::GetCharsetInfo(std::u16string_view charset) const {
  const auto info =
      Answer<tagMIMECSETINFO>([&](auto& record) { return object_->GetCharsetInfo(charset, record); });
  return {info.uiCodePage, info.uiInternetEncoding, TextOf(info.wszCharset)};
}

Long MLang::IsConvertible(std::uint32_t source, std::uint32_t destination) const {
  return object_->IsConvertible(source, destination) >= kNo ? 0 : -1;
}

HFONT MLang::MapFont(HDC dc, std::uint32_t code_pages, HFONT source) const {
  return Answer<HFONT>([&](auto& font) { return object_->MapFont(dc, code_pages, source, font); });
}

void MLang::ReleaseFont(HFONT font) const { Check(object_->ReleaseFont(font)); }

std::uint32_t MLang::GetFontCodePages(HDC dc, HFONT font) const {
  return Answer<std::uint32_t>(
      [&](auto& code_pages) { return object_->GetFontCodePages(dc, font, code_pages); });
}

std::uint32_t MLang::GetCharCodePages(char16_t ch) const {
  return Answer<std::uint32_t>([&](auto& code_pages) { return object_->GetCharCodePages(ch, code_pages); });
}

MLang::StrCodePages MLang::GetStrCodePages(std::u16string_view text, std::uint32_t priority) const {
  return Answer<StrCodePages>(
      [&](auto& pages) { return object_->GetStrCodePages(text, priority, pages.code_pages, pages.count); });
}

std::uint32_t MLang::CodePagesToCodePage(std::uint32_t code_pages, std::uint32_t default_code_page) const {
  return Answer<std::uint32_t>([&](auto& code_page) {
    return object_->CodePagesToCodePage(code_pages, default_code_page, code_page);
  });
}

std::uint32_t MLang::CodePageToCodePages(std::uint32_t code_page) const {
  return Answer<std::uint32_t>(
      [&](auto& code_pages) { return object_->CodePageToCodePages(code_page, code_pages); });
}

}  // namespace marklet
