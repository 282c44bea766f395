#include "render/property_text.h"

#include <algorithm>
#include <limits>

#include "render/render_error.h"
#include "render/text.h"

namespace marklet {
namespace {

[[noreturn]] void Refuse(const PropertyRow& row, std::string_view text, std::string_view wanted) {
  throw RenderError(std::string(row.name) + " can't be " + Quoted(text) + ": " + std::string(wanted));
}

Value ParseBoolean(const PropertyRow& row, std::string_view text) {
  for (const std::string_view yes : {"true", "1", "-1"})
    if (SameWord(text, yes)) return true;
  for (const std::string_view no : {"false", "0"})
    if (SameWord(text, no)) return false;
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
    const bool all_hexadecimal = std::all_of(digits.begin(), digits.end(), [](unsigned char ch) {
      return (ch >= '0' && ch <= '9') || (ch >= 'a' && ch <= 'f') || (ch >= 'A' && ch <= 'F');
    });
    if (all_hexadecimal) {
      const auto rgb = static_cast<std::uint32_t>(*ParseNumber("0x" + std::string(digits)));
      return static_cast<Long>(MakeRgb(rgb >> 16, rgb >> 8, rgb));
    }
  }
  const auto number = ParseLong(text);
  if (!number) Refuse(row, text, "a colour is #RRGGBB or a number such as 255 or 0x8000000F");
  return *number;
}

// Names first: some start with a digit.
Value ParseChoice(const PropertyRow& row, std::string_view text) {
  std::string names;
  for (const EnumMember& member : row.enumeration->members) {
    if (SameWord(member.name, text)) return member.value;
    names += (names.empty() ? "" : ", ") + std::string(member.name);
  }
  const auto number = ParseNumber(text);
  const bool fits =
      number && *number >= std::numeric_limits<Long>::min() && *number <= std::numeric_limits<Long>::max();
  if (!fits) Refuse(row, text, "it is a number or one of " + names);
  return static_cast<Long>(*number);
}

Value ParseText(const PropertyRow&, std::string_view text) { return FromUtf8(text); }

struct Parser {
  ValueType type;
  Value (*parse)(const PropertyRow&, std::string_view);
};
constexpr Parser kParsers[] = {
    {ValueType::Boolean, ParseBoolean}, {ValueType::Number, ParseLongOrRefuse},
    {ValueType::Colour, ParseColour},   {ValueType::Choice, ParseChoice},
    {ValueType::Text, ParseText},       {ValueType::MousePointer, ParseLongOrRefuse},
};

const Parser* ParserOf(ValueType type) {
  const auto found = std::find_if(std::begin(kParsers), std::end(kParsers),
                                  [type](const Parser& parser) { return parser.type == type; });
  return found == std::end(kParsers) ? nullptr : found;
}

}  // namespace

NamedProperty FindNamedProperty(std::string_view name) {
  NamedProperty result{FindProperty(name), false};
  for (const PropertyRow& row : HiddenProperties())
    if (SameWord(row.name, name)) result = {&row, true};
  if (result.row == nullptr) throw RenderError("there is no property " + Quoted(name));
  if (result.row->store == nullptr) throw RenderError(std::string(result.row->name) + " can only be read");
  if (result.row->type == ValueType::Font)
    throw RenderError("Font is given by its members: FontName, FontSize, FontBold and so on");
  if (ParserOf(result.row->type) == nullptr)
    throw RenderError(std::string(result.row->name) + " can't be given as text");
  return result;
}

Value ParseValue(const PropertyRow& row, std::string_view text) {
  const Parser* parser = ParserOf(row.type);
  if (parser == nullptr) throw RenderError(std::string(row.name) + " can't be given as text");
  return parser->parse(row, text);
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
