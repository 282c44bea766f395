#include "render/property_text.h"

#include <algorithm>
#include <charconv>
#include <limits>

#include "base/ascii.h"
#include "render/render_error.h"
#include "render/text.h"

namespace marklet {
namespace {

[[noreturn]] void Refuse(const PropertyRow& row, std::string_view text, std::string_view wanted) {
  throw RenderError(std::string(row.name) + " can't be " + Quoted(text) + ": " + std::string(wanted));
}

Value ParseBoolean(const PropertyRow& row, std::string_view text) {
  for (const std::string_view yes : {"true", "1", "-1"})
    if (SameWithoutCase(text, yes)) return true;
  for (const std::string_view no : {"false", "0"})
    if (SameWithoutCase(text, no)) return false;
  Refuse(row, text, "it is true or false");
}

// Numbers of 32 bits, signed or unsigned: colours are written either way.
std::optional<Long> ParseLong(std::string_view text) {
  const auto number = ParseNumber(text);
  if (!number || *number < std::numeric_limits<Long>::min() ||
      *number > std::numeric_limits<std::uint32_t>::max())
    return std::nullopt;
  return static_cast<Long>(static_cast<std::uint32_t>(*number));
}

Value ParseLongOrRefuse(const PropertyRow& row, std::string_view text) {
  const auto number = ParseNumber(text);
  const bool fits =
      number && *number >= std::numeric_limits<Long>::min() && *number <= std::numeric_limits<Long>::max();
  if (!fits) Refuse(row, text, "it is a whole number");
  return static_cast<Long>(*number);
}

Value ParseColour(const PropertyRow& row, std::string_view text) {
  if (text.starts_with('#') && text.size() == 7) {
    const auto digits = text.substr(1);
    if (std::all_of(digits.begin(), digits.end(), [](char ch) { return HexDigit(ch) >= 0; })) {
      const auto rgb = static_cast<std::uint32_t>(*ParseNumber("0x" + std::string(digits)));
      return static_cast<Long>(MakeRgb(rgb >> 16, rgb >> 8, rgb));
    }
  }
  const auto number = ParseLong(text);
  if (!number) Refuse(row, text, "a colour is #RRGGBB or a number such as 255 or 0x8000000F");
  return *number;
}

std::string NamesOf(const Enumeration& enumeration) {
  std::string names;
  for (const EnumMember& member : enumeration.members) {
    if (!names.empty()) names += ", ";
    names += member.name;
  }
  return names;
}

// Names first: some start with a digit.
Value ParseChoice(const PropertyRow& row, std::string_view text) {
  for (const EnumMember& member : row.enumeration->members)
    if (SameWithoutCase(member.name, text)) return member.value;
  const auto number = ParseNumber(text);
  const bool fits =
      number && *number >= std::numeric_limits<Long>::min() && *number <= std::numeric_limits<Long>::max();
  if (!fits) Refuse(row, text, "it is a number or one of " + NamesOf(*row.enumeration));
  return static_cast<Long>(*number);
}

std::string_view Trimmed(std::string_view text) {
  while (text.starts_with(' ')) text.remove_prefix(1);
  while (text.ends_with(' ')) text.remove_suffix(1);
  return text;
}

// Takes what stands in front of the first of the delimiters off the text.
std::string_view Take(std::string_view& text, std::string_view delimiters) {
  const std::size_t end = std::min(text.find_first_of(delimiters), text.size());
  const std::string_view taken = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return Trimmed(taken);
}

struct FontStyle {
  std::string_view name;
  void (StdFont::*put)(bool);
};
constexpr FontStyle kFontStyles[] = {{"bold", &StdFont::PutBold},
                                     {"italic", &StdFont::PutItalic},
                                     {"underline", &StdFont::PutUnderline},
                                     {"strikeout", &StdFont::PutStrikethrough}};

bool PutStyles(StdFont& font, std::string_view words) {
  while (!words.empty()) {
    const std::string_view word = Take(words, " ,");
    if (word.empty()) continue;
    const auto* const style =
        std::find_if(std::begin(kFontStyles), std::end(kFontStyles),
                     [word](const FontStyle& known) { return SameWithoutCase(known.name, word); });
    if (style == std::end(kFontStyles)) return false;
    (font.*style->put)(true);
  }
  return true;
}

// Sizes may have fractions here, which FontSize has not.
Value ParseFont(const PropertyRow& row, std::string_view text) {
  const auto font = std::make_shared<StdFont>();
  std::string_view rest = text;
  const std::string_view name = Take(rest, ",");
  const bool with_size = !rest.empty();
  const std::string_view size = Take(rest, ",");
  double points = font->Size();
  const auto [end, error] = std::from_chars(size.data(), size.data() + size.size(), points);
  const bool sized = !with_size || (error == std::errc() && end == size.data() + size.size() && points > 0);
  if (name.empty() || !sized || !PutStyles(*font, rest))
    Refuse(row, text, "it is NAME, SIZE in points and any of bold, italic, underline and strikeout");
  font->PutName(FromUtf8(name));
  font->PutSize(points);
  return font;
}

Value ParseText(const PropertyRow&, std::string_view text) { return FromUtf8(text); }

using Parser = Value(const PropertyRow&, std::string_view);

// Null for what can't be given as text.
Parser* ParserOf(ValueType type) {
  switch (type) {
    case ValueType::Boolean:
      return ParseBoolean;
    case ValueType::Number:
    case ValueType::MousePointer:
      return ParseLongOrRefuse;
    case ValueType::Colour:
      return ParseColour;
    case ValueType::Choice:
      return ParseChoice;
    case ValueType::Text:
      return ParseText;
    case ValueType::Font:
      return ParseFont;
    case ValueType::Picture:
      break;
  }
  return nullptr;
}

}  // namespace

NamedProperty FindNamedProperty(std::string_view name) {
  NamedProperty result{FindProperty(name), false};
  for (const PropertyRow& row : HiddenProperties())
    if (SameWithoutCase(row.name, name)) result = {&row, true};
  if (result.row == nullptr) throw RenderError("there is no property " + Quoted(name));
  if (result.row->store == nullptr) throw RenderError(std::string(result.row->name) + " can only be read");
  if (ParserOf(result.row->type) == nullptr)
    throw RenderError(std::string(result.row->name) + " can't be given as text");
  return result;
}

Value ParseValue(const PropertyRow& row, std::string_view text) {
  Parser* const parse = ParserOf(row.type);
  if (parse == nullptr) throw RenderError(std::string(row.name) + " can't be given as text");
  return parse(row, text);
}

void AssignProperty(Marklet& control, std::string_view name, std::string_view text) {
  const NamedProperty property = FindNamedProperty(name);
  const Value value = ParseValue(*property.row, text);
  if (property.hidden)
    property.row->store(control, value);
  else
    control.Set(*property.row, value);
}

}  // namespace marklet
