// The code pages: UTF-8, and Windows-1252 as the system's own.
#include <algorithm>
#include <array>

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

}  // namespace

std::string WideCharToMultiByte(std::uint32_t code_page, std::u16string_view text) {
  if (code_page == CP_UTF8) return headless::ToUtf8(text);
  if (!IsSystemCodePage(code_page)) return {};
  std::string bytes(text.size(), '\0');
  std::transform(text.begin(), text.end(), bytes.begin(), ByteOf);
  return bytes;
}

std::u16string MultiByteToWideChar(std::uint32_t code_page, std::string_view bytes) {
  if (code_page == CP_UTF8) return headless::FromUtf8(bytes);
  if (!IsSystemCodePage(code_page)) return {};
  std::u16string text(bytes.size(), u'\0');
  std::transform(bytes.begin(), bytes.end(), text.begin(), CharacterOf);
  return text;
}

}  // namespace marklet
