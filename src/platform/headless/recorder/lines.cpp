#include "platform/headless/recorder/lines.h"

#include <cstdio>

#include "platform/headless/recorder/operations.h"
#include "platform/headless/text/utf.h"
#include "platform/system.h"

namespace marklet::headless {
namespace {

std::string Printed(const char* format, unsigned value) {
  char buffer[16];
  std::snprintf(buffer, sizeof buffer, format, value);
  return buffer;
}

std::string Hexadecimal(std::int64_t value) { return Printed("0x%X", static_cast<unsigned>(value)); }

// A value that is no RGB colour, as a failed translation gives, keeps its eight digits.
std::string Colour(std::int64_t value) {
  const auto colour = static_cast<COLORREF>(value);
  if (colour > 0xFFFFFF) return Hexadecimal(value);
  return Printed("#%06X", RedOf(colour) << 16 | GreenOf(colour) << 8 | BlueOf(colour));
}

bool IsControl(char32_t c) { return c < 0x20 || (c >= 0x7F && c < 0xA0); }

std::string Quoted(std::u16string_view text) {
  std::string line = "\"";
  for (std::size_t i = 0; i < text.size();) {
    const char32_t c = NextCodePoint(text, i);
    if (IsControl(c) || IsSurrogate(c))
      line += Printed("\\u%04X", static_cast<unsigned>(c));
    else
      AppendUtf8(line, c);
  }
  return line + '"';
}

std::string Rectangle(const Word::Rect& rect) {
  return "[" + std::to_string(rect.left) + "," + std::to_string(rect.top) + "," + std::to_string(rect.right) +
         "," + std::to_string(rect.bottom) + "]";
}

std::string FontText(const Description& font) {
  std::string style;
  if (font.italic) style += 'i';
  if (font.underline) style += 'u';
  if (font.strikeout) style += 'k';
  return "font(" + Quoted(font.name) + "," + std::to_string(font.height) + "," + std::to_string(font.detail) +
         ",\"" + style + "\")";
}

std::string ObjectText(const Description& object) {
  switch (object.kind) {
    case Description::Kind::kNull:
      return "null";
    case Description::Kind::kBitmap:
      return "bitmap(" + std::to_string(object.width) + "x" + std::to_string(object.height) + "x" +
             std::to_string(object.detail) + ")";
    case Description::Kind::kBrush:
      return "brush(" + Colour(object.colour) + ")";
    case Description::Kind::kPen:
      return "pen(" + Colour(object.colour) + ")";
    case Description::Kind::kFont:
      return FontText(object);
    case Description::Kind::kAnalysis:
      return "analysis(" + Quoted(object.name) + ")";
  }
  return {};
}

std::string ArgumentText(const Recording& recording, const RecordedCall& call, char form, const Word& word) {
  switch (form) {
    case 'd':
      return std::to_string(word.number);
    case 'x':
      return Hexadecimal(word.number);
    case 'c':
      return Colour(word.number);
    case 'o':
    case 'a':
      return ObjectText(recording.descriptions[word.handle.description]);
    case 'r':
      return call.null_rect ? "null" : Rectangle(word.rect);
    case 't':
      return Quoted(std::u16string_view(recording.texts).substr(word.piece.offset, word.piece.length));
    default:  // 'b'
      return Quoted(MultiByteToWideChar(
          CP_ACP, std::string_view(recording.bytes).substr(word.piece.offset, word.piece.length)));
  }
}

}  // namespace

std::string LineOf(const Recording& recording, const RecordedCall& call) {
  const OperationRow& row = RowOf(call.operation);
  std::string arguments;
  for (std::size_t i = 0; i < row.form.size(); ++i) {
    if (row.form[i] == '-') continue;
    if (!arguments.empty()) arguments += ',';
    arguments += ArgumentText(recording, call, row.form[i], recording.words[call.first_word + i]);
  }
  return std::string(row.name) + "(" + arguments + ")";
}

}  // namespace marklet::headless
