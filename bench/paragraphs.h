// The paragraphs that are wrapped and drawn, on every platform.
#pragma once

#include <string>

#include "platform/system.h"

namespace marklet::bench {

constexpr int kColumn = 600, kVisible = 400;  // pixels: the width of a paragraph, and how much of it shows
constexpr std::size_t kParagraphLengths[] = {1'000, 50'000};

struct Paragraph {
  const char* name;
  const char* words;  // UTF-8, over and over
  bool justified, rtl;
};
inline constexpr Paragraph kParagraphs[] = {
    {"justified", "Lines that are stretched until both of their edges are straight ", true, false},
    {"arabic",
     "\u0645\u0631\u062D\u0628\u0627 \u0628\u0627\u0644\u0639\u0627\u0644\u0645 \u0643\u0644\u0647 ", false,
     true},
    {"justified-hebrew", "\u05E9\u05DC\u05D5\u05DD \u05E2\u05D5\u05DC\u05DD \u05D2\u05D3\u05D5\u05DC ", true,
     true},
};

inline std::u16string TextOf(const Paragraph& paragraph, std::size_t length) {
  const std::u16string words = MultiByteToWideChar(CP_UTF8, paragraph.words);
  std::u16string text;
  while (text.size() < length) text += words;
  text.resize(length);
  return text;
}

}  // namespace marklet::bench
