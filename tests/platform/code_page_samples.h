// Words in twenty code pages. The bytes are those of the C library's iconv, which is neither of our
// platforms' own code: printf '%s' WORD | iconv -t CPNUMBER | od -t x1
#pragma once

#include <cstdint>
#include <string_view>

namespace marklet {

struct CodePageSample {
  std::uint32_t code_page;
  std::u16string_view text;
  std::string_view bytes;
};

constexpr CodePageSample kCodePageSamples[] = {
    {437, u"Gr\u00FC\u00DFe \u00F1",
     "Gr\x81\xE1"
     "e \xA4"},
    {850, u"Gr\u00FC\u00DFe \u00F5",
     "Gr\x81\xE1"
     "e \xE4"},
    {852, u"\u017Dlu\u0165 \u0151s", "\xA6lu\x9C \x8Bs"},
    {866, u"\u041F\u0440\u0438\u0432\u0435\u0442", "\x8F\xE0\xA8\xA2\xA5\xE2"},
    {874, u"\u0E2A\u0E27\u0E31\u0E2A\u0E14\u0E35", "\xCA\xC7\xD1\xCA\xB4\xD5"},
    {932, u"\u65E5\u672C\u8A9E\uFF71", "\x93\xFA\x96{\x8C\xEA\xB1"},
    {936, u"\u4E2D\u6587\u5B57", "\xD6\xD0\xCE\xC4\xD7\xD6"},
    {949, u"\uD55C\uAD6D\uC5B4", "\xC7\xD1\xB1\xB9\xBE\xEE"},
    {950, u"\u4E2D\u6587\u5B57", "\xA4\xA4\xA4\xE5\xA6r"},
    {1250, u"\u017Dlu\u0165 \u0151s", "\x8Elu\x9D \xF5s"},
    {1251, u"\u041F\u0440\u0438\u0432\u0435\u0442", "\xCF\xF0\xE8\xE2\xE5\xF2"},
    {1252, u"Caf\u00E9 \u20AC", "Caf\xE9 \x80"},
    {1253, u"\u03A9\u03BC\u03AD\u03B3\u03B1", "\xD9\xEC\xDD\xE3\xE1"},
    {1254, u"I\u015F\u0131k \u011F", "I\xFE\xFDk \xF0"},
    {1255, u"\u05E9\u05DC\u05D5\u05DD", "\xF9\xEC\xE5\xED"},
    {1256, u"\u0645\u0631\u062D\u0628\u0627", "\xE3\xD1\xCD\xC8\xC7"},
    {1257, u"\u0104\u017Euol \u0161", "\xC0\xFEuol \xF0"},
    {1258, u"\u0110\u00F4ng\u20AB", "\xD0\xF4ng\xFE"},
    {20866, u"\u041F\u0440\u0438\u0432\u0435\u0442", "\xF0\xD2\xC9\xD7\xC5\xD4"},
    {28592, u"\u017Dlu\u0165 \u0151s", "\xAElu\xBB \xF5s"},
};

}  // namespace marklet
