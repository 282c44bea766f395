// The cutting rules written down a second time, as plainly as they can be said: positions from 1, a copied
// string for every look, a list walked for every character. The tests hold the real tokenizer against it.
#pragma once

#include <string>
#include <vector>

namespace marklet::naive {

// `count` code units from the 1-based `position`, fewer or none where the text ends.
inline std::u16string Mid(const std::u16string& text, std::size_t position, std::size_t count = 1) {
  return position > text.size() ? std::u16string() : text.substr(position - 1, count);
}

inline std::size_t InStr(std::size_t start, const std::u16string& text, const std::u16string& what) {
  for (std::size_t position = start; position + what.size() <= text.size() + 1; ++position) {
    if (Mid(text, position, what.size()) == what) return position;
  }
  return 0;
}

inline bool IsBreakCharacter(char16_t unit, bool shaping) {
  const long code = unit;
  if (unit == u' ' || unit == u'-' || unit == u'\t') return true;
  for (const long listed :
       {0x0A,   0x0C,   0x0D,   0x7C,   0x85,   0xAD,   0xB4,   0x2C8,  0x2CC,  0x58A,   0xF0B,   0x1361,
        0x1680, 0x17D5, 0x2000, 0x2001, 0x2002, 0x2003, 0x2004, 0x2005, 0x2006, 0x2008,  0x2009,  0x200A,
        0x200B, 0x2010, 0x2012, 0x2013, 0x2014, 0x2027, 0x2028, 0x2029, 0x205F, 0x10100, 0x10102, 0x1039F}) {
    if (code == listed) return true;
  }
  if (shaping) return false;
  const long ranges[][2] = {{0x0E00, 0x0EFF},
                            {0x1000, 0x109F},
                            {0x1100, 0x11FF},
                            {0x1780, 0x17FF},
                            {0x2E80, 0x2FFF},
                            {0x3000, 0x3000},
                            {0x3130, 0x318F},
                            {0x3400, 0x4DBF},
                            {0x4300, 0x9FAF},
                            {0xA000, 0xA48F},
                            {0xA490, 0xA4CF},
                            {0xF900, 0xFAFF},
                            // Written with the signed values that a code unit no longer has by now.
                            {0xAC00 - 0x10000, 0xD7AF - 0x10000},
                            {0xFF10 - 0x10000, 0xFF19 - 0x10000},
                            {0x20000, 0x2A6DC},
                            {0x2F800, 0x2FA1D}};
  for (const auto& range : ranges) {
    if (code >= range[0] && code <= range[1]) return true;
  }
  return false;
}

// What the tag rules take at i, empty when the "<" there is text.
inline std::u16string TagAt(const std::u16string& text, std::size_t i) {
  const std::size_t L = text.size();
  if (i + 5 <= L && Mid(text, i, 3) == u"<f=") {
    const std::size_t close = InStr(i, text, u">");
    if (close > i) return Mid(text, i, close - i + 1);
  }
  if (i + 2 <= L) {
    if (Mid(text, i + 2) == u">") return Mid(text, i, 3);
    if (i + 3 <= L && Mid(text, i + 3) == u">" && Mid(text, i + 1) == u"/") return Mid(text, i, 4);
    if (i + 4 <= L) {
      if (Mid(text, i + 4) == u">") return Mid(text, i, 5);
      if (Mid(text, i + 5) == u">") {
        if (Mid(text, i + 1) == u"/") return Mid(text, i, 6);
      } else if (i + 9 < L && Mid(text, i + 9) == u">" && Mid(text, i, 3) == u"<c=") {
        return Mid(text, i, 10);
      }
    }
  }
  return {};
}

inline std::vector<std::u16string> TokenizeMarkup(const std::u16string& text, bool shaping) {
  std::vector<std::u16string> tokens;
  std::u16string word;
  const auto flush = [&] {
    if (!word.empty()) tokens.push_back(word);
    word.clear();
  };
  for (std::size_t i = 1; i <= text.size();) {
    const std::u16string ch = Mid(text, i);
    if (IsBreakCharacter(ch[0], shaping)) {
      if (shaping) {
        tokens.push_back(word + ch);
        word.clear();
      } else if (!word.empty()) {
        tokens.push_back(word);
        word = ch;
      } else {
        tokens.push_back(ch);
      }
      i += 1;
      continue;
    }
    const std::u16string tag = ch == u"<" ? TagAt(text, i) : std::u16string();
    if (tag.empty()) {
      word += ch;
      i += 1;
    } else {
      flush();
      tokens.push_back(tag);
      i += tag.size();
    }
  }
  flush();
  return tokens;
}

inline bool HasMarkup(const std::u16string& text) {
  for (const char16_t* opener : {u"<b>", u"<i>", u"<u>", u"<s>", u"<c", u"<f", u"<p>", u"<.>", u"<br>"}) {
    if (InStr(1, text, opener) != 0) return true;
  }
  return false;
}

}  // namespace marklet::naive
