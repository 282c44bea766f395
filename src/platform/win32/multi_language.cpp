#include "platform/multi_language.h"

#include <memory>
#include <string>
#include <utility>

#include "platform/win32/handles.h"
#include "platform/win32/sdk_ole.h"
// mlang.h needs the headers above first.
#include <mlang.h>

namespace marklet {
namespace {

using Microsoft::WRL::ComPtr;
using win32::Native;
using win32::NativeAs;
using win32::Wrap;

constexpr CLSID kMultiLanguageClass = {
    0x275C23E2, 0x3747, 0x11D0, {0x9F, 0xEA, 0x00, 0xAA, 0x00, 0x3F, 0x86, 0x46}};
constexpr IID kMultiLanguage2 = {
    0xDCCFC164, 0x2B38, 0x11D2, {0xB7, 0xEC, 0x00, 0xC0, 0x4F, 0x8F, 0x5D, 0x9A}};
constexpr IID kFontLink = {0x359F3441, 0xBD4A, 0x11D0, {0xB1, 0x88, 0x00, 0xAA, 0x00, 0x38, 0xC9, 0x69}};

static_assert(sizeof(tagMIMECPINFO) == sizeof(::MIMECPINFO));
static_assert(sizeof(tagMIMECSETINFO) == sizeof(::MIMECSETINFO));
static_assert(sizeof(tagRFC1766INFO) == sizeof(::RFC1766INFO));
static_assert(sizeof(tagSCRIPTINFO) == sizeof(::SCRIPTINFO));
static_assert(sizeof(tagDetectEncodingInfo) == sizeof(::DetectEncodingInfo));

// Records and numbers, which have the platform's layout.
template <typename To, typename From>
To* As(From* from) {
  static_assert(sizeof(To) == sizeof(From));
  return reinterpret_cast<To*>(from);
}

struct StringDeleter {
  void operator()(OLECHAR* text) const { SysFreeString(text); }
};
using OwnedString = std::unique_ptr<OLECHAR, StringDeleter>;

OwnedString BstrOf(std::u16string_view text) {
  return OwnedString(SysAllocStringLen(Native(text.data()), static_cast<UINT>(text.size())));
}

template <typename Record, typename NativeRecord, typename NativeEnumerator>
class Enumerator final : public MultiLanguageEnumerator<Record> {
 public:
  explicit Enumerator(ComPtr<NativeEnumerator> native) : native_(std::move(native)) {}
  Long Next(Record& record, std::uint32_t& fetched) override {
    ULONG count = 0;
    const HRESULT result = native_->Next(1, As<NativeRecord>(&record), &count);
    fetched = count;
    return result;
  }

 private:
  ComPtr<NativeEnumerator> native_;
};

// Passes on what the platform made, if it made something.
template <typename Own, typename Interface, typename Face>
Long Given(HRESULT result, ComPtr<Interface> made, std::unique_ptr<Face>& own) {
  if (SUCCEEDED(result) && made) own = std::make_unique<Own>(std::move(made));
  return result;
}

class Converter final : public ConvertCharsetObject {
 public:
  explicit Converter(ComPtr<IMLangConvertCharset> native) : native_(std::move(native)) {}

  Long GetSourceCodePage(std::uint32_t& code_page) override {
    return native_->GetSourceCodePage(As<UINT>(&code_page));
  }
  Long GetDestinationCodePage(std::uint32_t& code_page) override {
    return native_->GetDestinationCodePage(As<UINT>(&code_page));
  }
  Long GetProperty(std::uint32_t& property) override { return native_->GetProperty(As<DWORD>(&property)); }
  // The platform doesn't write to its sources.
  Long DoConversion(const char* source, std::uint32_t& source_size, char* destination,
                    std::uint32_t& destination_size) override {
    return native_->DoConversion(As<BYTE>(const_cast<char*>(source)), As<UINT>(&source_size),
                                 As<BYTE>(destination), As<UINT>(&destination_size));
  }
  Long DoConversionToUnicode(const char* source, std::uint32_t& source_size, char16_t* destination,
                             std::uint32_t& destination_size) override {
    return native_->DoConversionToUnicode(const_cast<char*>(source), As<UINT>(&source_size),
                                          As<WCHAR>(destination), As<UINT>(&destination_size));
  }
  Long DoConversionFromUnicode(const char16_t* source, std::uint32_t& source_size, char* destination,
                               std::uint32_t& destination_size) override {
    return native_->DoConversionFromUnicode(As<WCHAR>(const_cast<char16_t*>(source)), As<UINT>(&source_size),
                                            destination, As<UINT>(&destination_size));
  }

 private:
  ComPtr<IMLangConvertCharset> native_;
};

class Object final : public MultiLanguageObject {
 public:
  Object(ComPtr<IMultiLanguage2> languages, ComPtr<IMLangFontLink> fonts)
      : languages_(std::move(languages)), fonts_(std::move(fonts)) {}

  Long GetNumberOfCodePageInfo(std::uint32_t& count) override {
    return languages_->GetNumberOfCodePageInfo(As<UINT>(&count));
  }
  Long GetCodePageInfo(std::uint32_t code_page, std::uint16_t language, tagMIMECPINFO& info) override {
    return languages_->GetCodePageInfo(code_page, language, As<::MIMECPINFO>(&info));
  }
  Long GetFamilyCodePage(std::uint32_t code_page, std::uint32_t& family) override {
    return languages_->GetFamilyCodePage(code_page, As<UINT>(&family));
  }
  Long EnumCodePages(std::uint32_t flags, std::uint16_t language,
                     std::unique_ptr<MultiLanguageEnumerator<tagMIMECPINFO>>& enumerator) override {
    ComPtr<IEnumCodePage> made;
    const HRESULT result = languages_->EnumCodePages(flags, language, &made);
    return Given<Enumerator<tagMIMECPINFO, ::MIMECPINFO, IEnumCodePage>>(result, made, enumerator);
  }
  Long GetCharsetInfo(std::u16string_view charset, tagMIMECSETINFO& info) override {
    return languages_->GetCharsetInfo(BstrOf(charset).get(), As<::MIMECSETINFO>(&info));
  }
  Long IsConvertible(std::uint32_t source, std::uint32_t destination) override {
    return languages_->IsConvertible(source, destination);
  }
  Long GetRfc1766FromLcid(std::uint32_t locale, std::u16string& name) override {
    BSTR text = nullptr;
    const HRESULT result = languages_->GetRfc1766FromLcid(locale, &text);
    const OwnedString owned(text);
    if (SUCCEEDED(result)) name.assign(Wrap(text), SysStringLen(text));
    return result;
  }
  Long GetLcidFromRfc1766(std::uint32_t& locale, std::u16string_view name) override {
    return languages_->GetLcidFromRfc1766(As<LCID>(&locale), BstrOf(name).get());
  }
  Long EnumRfc1766(std::uint16_t language,
                   std::unique_ptr<MultiLanguageEnumerator<tagRFC1766INFO>>& enumerator) override {
    ComPtr<IEnumRfc1766> made;
    const HRESULT result = languages_->EnumRfc1766(language, &made);
    return Given<Enumerator<tagRFC1766INFO, ::RFC1766INFO, IEnumRfc1766>>(result, made, enumerator);
  }
  Long GetRfc1766Info(std::uint32_t locale, std::uint16_t language, tagRFC1766INFO& info) override {
    return languages_->GetRfc1766Info(locale, language, As<::RFC1766INFO>(&info));
  }
  Long CreateConvertCharset(std::uint32_t source, std::uint32_t destination, std::uint32_t properties,
                            std::unique_ptr<ConvertCharsetObject>& object) override {
    ComPtr<IMLangConvertCharset> made;
    const HRESULT result = languages_->CreateConvertCharset(source, destination, properties, &made);
    return Given<Converter>(result, made, object);
  }
  Long DetectInputCodepage(std::uint32_t flags, std::uint32_t default_code_page, const char* source,
                           std::int32_t& source_size, tagDetectEncodingInfo* results,
                           std::int32_t& scores) override {
    return languages_->DetectInputCodepage(flags, default_code_page, const_cast<char*>(source), &source_size,
                                           As<::DetectEncodingInfo>(results), &scores);
  }
  Long SetMimeDBSource(std::uint32_t source) override {
    return languages_->SetMimeDBSource(static_cast<MIMECONTF>(source));
  }
  Long GetNumberOfScripts(std::uint32_t& count) override {
    return languages_->GetNumberOfScripts(As<UINT>(&count));
  }
  Long EnumScripts(std::uint32_t flags, std::uint16_t language,
                   std::unique_ptr<MultiLanguageEnumerator<tagSCRIPTINFO>>& enumerator) override {
    ComPtr<IEnumScript> made;
    const HRESULT result = languages_->EnumScripts(flags, language, &made);
    return Given<Enumerator<tagSCRIPTINFO, ::SCRIPTINFO, IEnumScript>>(result, made, enumerator);
  }

  Long GetCharCodePages(char16_t ch, std::uint32_t& code_pages) override {
    return fonts_->GetCharCodePages(static_cast<WCHAR>(ch), As<DWORD>(&code_pages));
  }
  Long GetStrCodePages(std::u16string_view text, std::uint32_t priority, std::uint32_t& code_pages,
                       Long& count) override {
    return fonts_->GetStrCodePages(Native(text.data()), static_cast<LONG>(text.size()), priority,
                                   As<DWORD>(&code_pages), As<LONG>(&count));
  }
  Long CodePageToCodePages(std::uint32_t code_page, std::uint32_t& code_pages) override {
    return fonts_->CodePageToCodePages(code_page, As<DWORD>(&code_pages));
  }
  Long CodePagesToCodePage(std::uint32_t code_pages, std::uint32_t default_code_page,
                           std::uint32_t& code_page) override {
    return fonts_->CodePagesToCodePage(code_pages, default_code_page, As<UINT>(&code_page));
  }
  Long GetFontCodePages(HDC dc, HFONT font, std::uint32_t& code_pages) override {
    return fonts_->GetFontCodePages(Native(dc), NativeAs<::HFONT>(font), As<DWORD>(&code_pages));
  }
  Long MapFont(HDC dc, std::uint32_t code_pages, HFONT source, HFONT& font) override {
    ::HFONT mapped = nullptr;
    const HRESULT result = fonts_->MapFont(Native(dc), code_pages, NativeAs<::HFONT>(source), &mapped);
    if (SUCCEEDED(result)) font = Wrap(static_cast<::HGDIOBJ>(mapped));
    return result;
  }
  Long ReleaseFont(HFONT font) override { return fonts_->ReleaseFont(NativeAs<::HFONT>(font)); }
  Long ResetFontMapping() override { return fonts_->ResetFontMapping(); }

 private:
  ComPtr<IMultiLanguage2> languages_;
  ComPtr<IMLangFontLink> fonts_;
};

}  // namespace

Long CreateMultiLanguage(std::unique_ptr<MultiLanguageObject>& object) {
  ComPtr<IMultiLanguage2> languages;
  HRESULT result =
      CoCreateInstance(kMultiLanguageClass, nullptr, CLSCTX_INPROC_SERVER, kMultiLanguage2, &languages);
  if (FAILED(result)) return result;
  ComPtr<IMLangFontLink> fonts;
  result = languages->QueryInterface(kFontLink, &fonts);
  if (SUCCEEDED(result)) object = std::make_unique<Object>(std::move(languages), std::move(fonts));
  return result;
}

}  // namespace marklet
