// The code pages: UTF-8, and Windows-1252 as the system's own; all others are the C library's.
#include <iconv.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string>
#include <utility>

#include "platform/headless/text/utf.h"
#include "platform/system.h"

namespace marklet {
namespace {

constexpr std::uint32_t kWindows1252 = 1252;

// The bytes 0x80 to 0x9F; every other byte is the character of the same number. Bytes that the code page
// leaves free stand for the control character of their number.
constexpr std::array<char16_t, 32> kHighControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,  // 80
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,  // 88
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  // 90
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,  // 98
};

char16_t CharacterOf(char byte) {
  const auto value = static_cast<unsigned char>(byte);
  return value >= 0x80 && value < 0xA0 ? kHighControls[value - 0x80u] : value;
}

char ByteOf(char16_t c) {
  if (c < 0x80 || (c >= 0xA0 && c < 0x100)) return static_cast<char>(c);
  const auto found = std::find(kHighControls.begin(), kHighControls.end(), c);
  return found != kHighControls.end() ? static_cast<char>(0x80 + (found - kHighControls.begin())) : '?';
}

bool IsSystemCodePage(std::uint32_t code_page) { return code_page == CP_ACP || code_page == kWindows1252; }

// What the C library calls a code page; a name that it doesn't know is refused by iconv_open.
std::string NameOf(std::uint32_t code_page) {
  constexpr std::pair<std::uint32_t, const char*> kNames[] = {
      {20866, "KOI8-R"},      {20932, "EUC-JP"}, {21866, "KOI8-U"}, {50220, "ISO-2022-JP"},
      {50225, "ISO-2022-KR"}, {51936, "EUC-CN"}, {51949, "EUC-KR"}, {54936, "GB18030"}};
  for (const auto& [number, name] : kNames)
    if (number == code_page) return name;
  constexpr std::uint32_t kBeforeLatin1 = 28590, kLastLatin = 28606;
  if (code_page > kBeforeLatin1 && code_page <= kLastLatin)
    return "ISO-8859-" + std::to_string(code_page - kBeforeLatin1);
  return "CP" + std::to_string(code_page);
}

constexpr char kUtf16[] = "UTF-16LE";

class Conversion {
 public:
  Conversion(const std::string& to, const std::string& from) : state_(iconv_open(to.c_str(), from.c_str())) {}
  ~Conversion() {
    if (Exists()) iconv_close(state_);
  }
  Conversion(const Conversion&) = delete;
  Conversion& operator=(const Conversion&) = delete;
  // NOLINTNEXTLINE(performance-no-int-to-ptr): -1 is iconv_open's own way to say no
  bool Exists() const { return state_ != reinterpret_cast<iconv_t>(-1); }

  // Each `unit` bytes that can't be told become `replacement`.
  std::string Run(std::string_view source, std::string_view replacement, std::size_t unit) {
    std::string result;
    if (!Exists()) return result;
    auto* from = const_cast<char*>(source.data());  // iconv doesn't write to it
    std::size_t left = source.size();
    while (!Step(&from, &left, result)) {
      result += replacement;
      const std::size_t skipped = std::min(left, unit);
      from += skipped;
      left -= skipped;
    }
    Step(nullptr, nullptr, result);
    return result;
  }

 private:
  // Converts to the end, or up to what can't be told: then false. Without a source, what was held back.
  bool Step(char** from, std::size_t* left, std::string& result) {
    for (;;) {
      char piece[512];
      char* to = piece;
      std::size_t room = sizeof piece;
      const bool done = iconv(state_, from, left, &to, &room) != static_cast<std::size_t>(-1);
      const int error = errno;
      result.append(piece, to);
      if (done || from == nullptr) return true;
      if (error != E2BIG) return false;
    }
  }

  iconv_t state_;
};

std::string ToOtherCodePage(std::uint32_t code_page, std::u16string_view text) {
  const std::string_view units(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t));
  return Conversion(NameOf(code_page), kUtf16).Run(units, "?", sizeof(char16_t));
}

std::u16string FromOtherCodePage(std::uint32_t code_page, std::string_view bytes) {
  constexpr std::string_view kReplacement = "\xFD\xFF";  // U+FFFD
  const std::string units = Conversion(kUtf16, NameOf(code_page)).Run(bytes, kReplacement, 1);
  std::u16string text(units.size() / sizeof(char16_t), u'\0');
  std::copy_n(units.data(), text.size() * sizeof(char16_t), reinterpret_cast<char*>(text.data()));
  return text;
}

}  // namespace

std::string WideCharToMultiByte(std::uint32_t code_page, std::u16string_view text) {
  if (code_page == CP_UTF8) return headless::ToUtf8(text);
  if (!IsSystemCodePage(code_page)) return ToOtherCodePage(code_page, text);
  std::string bytes(text.size(), '\0');
  std::transform(text.begin(), text.end(), bytes.begin(), ByteOf);
  return bytes;
}

std::u16string MultiByteToWideChar(std::uint32_t code_page, std::string_view bytes) {
  if (code_page == CP_UTF8) return headless::FromUtf8(bytes);
  if (!IsSystemCodePage(code_page)) return FromOtherCodePage(code_page, bytes);
  std::u16string text(bytes.size(), u'\0');
  std::transform(bytes.begin(), bytes.end(), text.begin(), CharacterOf);
  return text;
}

}  // namespace marklet
