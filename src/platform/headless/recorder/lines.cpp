// Recorded calls as lines of text.
#include <array>
#include <cstdio>

#include "platform/headless/recorder/recording_state.h"
#include "platform/headless/text/utf.h"
#include "platform/system.h"

namespace marklet::headless {
namespace {

// The form of a line, a letter for each argument: "-" left out, "d" decimal, "x" hexadecimal, "c" colour, "o"
// object or font record, "r" rectangle, "t" text, "b" text in bytes.
struct Form {
  std::string_view name, arguments;
};

constexpr std::array<Form, static_cast<std::size_t>(Operation::kCount)> kForms = {{
    {"CreateCompatibleDC", "-"},
    {"DeleteDC", "-"},
    {"CreateDIBSection", "-ddd"},
    {"SelectObject", "-o"},
    {"DeleteObject", "o"},
    {"BitBlt", "-dddd-ddx"},
    {"AlphaBlend", "-dddd-dddddd"},
    {"CreateSolidBrush", "c"},
    {"FillRect", "-ro"},
    {"CreatePen", "dc"},
    {"MoveToEx", "-dd"},
    {"LineTo", "-dd"},
    {"DrawFocusRect", "-r"},
    {"DrawEdge", "-rxx"},
    {"PixelsOf", "-"},
    {"GetObjectA", "o"},
    {"CreateFontIndirectW", "o"},
    {"PixelsPerInch", "-"},
    {"SetTextColor", "-c"},
    {"GetTextColor", "-"},
    {"SetBkColor", "-c"},
    {"SetBkMode", "-d"},
    {"SetTextAlign", "-x"},
    {"GetTextExtentPoint32W", "-t"},
    {"GetTextExtentPoint32A", "-bd"},
    {"GetCharABCWidthsA", "-d"},
    {"DrawTextW", "-trx"},
    {"DrawTextA", "-brx"},
    {"TextOutW", "-ddt"},
    {"ExtTextOutW", "-ddxrt"},
    {"GetSysColor", "d"},
    {"ScriptIsComplex", "tx"},
    {"LoadPicture", "t"},
    {"RenderPicture", "-"},
    {"MessageBoxW", "ttx"},
    {"SetStretchBltMode", "-d"},
    {"StretchBlt", "-dddd-ddddx"},
    {"PictureHandle", ""},
    {"CreateIconIndirect", "oo"},
    {"DestroyIcon", ""},
    {"OleCreatePictureIndirect", ""},
    {"RegOpenKeyExA", "xb"},
    {"RegQueryValueExA", "bd"},
    {"RegCloseKey", ""},
}};

const Form& FormOf(Operation operation) { return kForms[static_cast<std::size_t>(operation)]; }

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

std::string_view NameOf(Operation operation) { return FormOf(operation).name; }

std::optional<Operation> OperationNamed(std::string_view name) {
  for (std::size_t i = 0; i < kForms.size(); ++i)
    if (kForms[i].name == name) return static_cast<Operation>(i);
  return std::nullopt;
}

std::string LineOf(const Recording& recording, const RecordedCall& call) {
  const Form& form = FormOf(call.operation);
  std::string arguments;
  for (std::size_t i = 0; i < form.arguments.size(); ++i) {
    if (form.arguments[i] == '-') continue;
    if (!arguments.empty()) arguments += ',';
    arguments += ArgumentText(recording, call, form.arguments[i], recording.words[call.first_word + i]);
  }
  return std::string(form.name) + "(" + arguments + ")";
}

}  // namespace marklet::headless
