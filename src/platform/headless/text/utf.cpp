#include "platform/headless/text/utf.h"

namespace marklet::headless {
namespace {

char Byte(char32_t value) { return static_cast<char>(static_cast<unsigned char>(value)); }

// What a lead byte promises: how many bytes follow, its own bits, and the range of the first that follows,
// which is narrowed where overlong forms, surrogates and values past the last code point would begin.
struct Lead {
  int following;
  unsigned bits, low, high;
};

Lead LeadOf(unsigned byte) {
  if (byte < 0x80) return {0, byte, 0, 0};
  if (byte >= 0xC2 && byte <= 0xDF) return {1, byte & 0x1F, 0x80, 0xBF};
  if (byte >= 0xE0 && byte <= 0xEF)
    return {2, byte & 0x0F, byte == 0xE0 ? 0xA0u : 0x80u, byte == 0xED ? 0x9Fu : 0xBFu};
  if (byte >= 0xF0 && byte <= 0xF4)
    return {3, byte & 0x07, byte == 0xF0 ? 0x90u : 0x80u, byte == 0xF4 ? 0x8Fu : 0xBFu};
  return {-1, 0, 0, 0};
}

char32_t NextFromUtf8(std::string_view bytes, std::size_t& position) {
  Lead lead = LeadOf(static_cast<unsigned char>(bytes[position++]));
  if (lead.following < 0) return kReplacementCharacter;
  char32_t value = lead.bits;
  for (; lead.following > 0; --lead.following) {
    const unsigned next = position < bytes.size() ? static_cast<unsigned char>(bytes[position]) : 0;
    if (next < lead.low || next > lead.high) return kReplacementCharacter;
    value = value << 6 | (next & 0x3F);
    lead.low = 0x80;
    lead.high = 0xBF;
    ++position;
  }
  return value;
}

}  // namespace

void AppendUtf8(std::string& bytes, char32_t c) {
  if (c < 0x80) {
    bytes += Byte(c);
  } else if (c < 0x800) {
    bytes += Byte(0xC0 | c >> 6);
    bytes += Byte(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    bytes += Byte(0xE0 | c >> 12);
    bytes += Byte(0x80 | (c >> 6 & 0x3F));
    bytes += Byte(0x80 | (c & 0x3F));
  } else {
    bytes += Byte(0xF0 | c >> 18);
    bytes += Byte(0x80 | (c >> 12 & 0x3F));
    bytes += Byte(0x80 | (c >> 6 & 0x3F));
    bytes += Byte(0x80 | (c & 0x3F));
  }
}

void AppendUtf16(std::u16string& text, char32_t c) {
  if (c < 0x10000) {
    text += static_cast<char16_t>(c);
    return;
  }
  text += static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
  text += static_cast<char16_t>(0xDC00 + (c & 0x3FF));
}

std::string ToUtf8(std::u16string_view text) {
  std::string bytes;
  bytes.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    const char32_t c = NextCodePoint(text, i);
    AppendUtf8(bytes, IsSurrogate(c) ? kReplacementCharacter : c);
  }
  return bytes;
}

std::u16string FromUtf8(std::string_view bytes) {
  std::u16string text;
  text.reserve(bytes.size());
  for (std::size_t i = 0; i < bytes.size();) AppendUtf16(text, NextFromUtf8(bytes, i));
  return text;
}

}  // namespace marklet::headless
