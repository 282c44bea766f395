#include "render/reference.h"

#include <array>
#include <cstdio>

#include "control/library.h"
#include "control/marklet.h"
#include "control/properties.h"
#include "markup/tags.h"
#include "platform/system.h"
#include "render/memory_host.h"

namespace marklet {
namespace {

std::string Hexadecimal(Long number) {
  std::array<char, 16> text;
  std::snprintf(text.data(), text.size(), "0x%08X", static_cast<unsigned>(number));
  return text.data();
}

// Stock identifiers are known by their negative numbers, the others by their hexadecimal ones.
std::string DispidText(Long dispid) {
  return dispid > 0x10000 ? Hexadecimal(dispid) : std::to_string(dispid);
}

std::string Code(std::string_view name) { return "`" + std::string(name) + "`"; }

std::string TypeText(const PropertyRow& row) {
  switch (row.type) {
    case ValueType::Boolean:
      return "Boolean";
    case ValueType::Number:
    case ValueType::MousePointer:
      return "Long";
    case ValueType::Colour:
      return "OLE_COLOR";
    case ValueType::Choice:
      return Code(row.enumeration->name);
    case ValueType::Text:
      return "String";
    case ValueType::Font:
      return "Font";
    case ValueType::Picture:
      return "Picture";
  }
  return {};
}

std::string_view TypeText(ArgumentType type) {
  switch (type) {
    case ArgumentType::I2:
      return "Integer";
    case ArgumentType::I4:
      return "Long";
    case ArgumentType::R4:
      return "Single";
    case ArgumentType::Boolean:
      return "Boolean";
    case ArgumentType::String:
      return "String";
    case ArgumentType::DataObject:
      return "DataObject";
  }
  return {};
}

std::string AccessText(const PropertyRow& row) {
  std::string text = "get";
  if (row.attributes & kPut) text += ", put";
  if (row.attributes & kPutRef) text += ", putref";
  if (row.attributes & kNotBrowsable) text += "; not browsable";
  return text;
}

std::string NumberText(const PropertyRow& row, Long number) {
  if (row.type == ValueType::Colour) return Hexadecimal(number);
  if (row.enumeration)
    for (const EnumMember& member : row.enumeration->members)
      if (member.value == number) return Code(member.name);
  return std::to_string(number);
}

std::string FontText(const StdFont& font) {
  std::array<char, 16> size;
  std::snprintf(size.data(), size.size(), "%g", font.Size());
  return WideCharToMultiByte(CP_UTF8, font.Name()) + " " + size.data();
}

// What a property of a control reads; nothing for one without a value, as the window of a control that has
// none.
std::string ValueText(Marklet& control, const PropertyRow& row) {
  const Value value = control.Get(row);
  if (row.store == nullptr) return {};
  if (const auto* flag = std::get_if<bool>(&value)) return *flag ? "True" : "False";
  if (const auto* number = std::get_if<Long>(&value)) return NumberText(row, *number);
  if (const auto* text = std::get_if<std::u16string>(&value))
    return "\"" + WideCharToMultiByte(CP_UTF8, *text) + "\"";
  const auto* font = std::get_if<FontRef>(&value);
  return font ? FontText(**font) : "none";
}

std::string PropertyLine(Marklet& placed, const PropertyRow& row) {
  const std::string_view help = !row.help.empty()          ? row.help
                                : !row.description.empty() ? row.description
                                                           : row.note;
  const std::string announced = row.announced.empty() ? "nothing" : Code(row.announced);
  return "| " + Code(row.name) + " | " + DispidText(row.dispid) + " | " + TypeText(row) + " | " +
         ValueText(placed, row) + " | " + AccessText(row) + " | " + announced + " | " + std::string(help) +
         " |\n";
}

std::string ArgumentsText(std::span<const Argument> arguments) {
  std::string text, gap;
  for (const Argument& argument : arguments) {
    text += gap + Code(argument.name) + " As " + std::string(TypeText(argument.type));
    gap = ", ";
  }
  return text.empty() ? "none" : text;
}

std::string MemberLine(std::string_view name, Long dispid, std::span<const Argument> arguments) {
  return "| " + Code(name) + " | " + DispidText(dispid) + " | " + ArgumentsText(arguments) + " |\n";
}

std::string EnumerationLine(const Enumeration& enumeration) {
  std::string members, gap;
  for (const EnumMember& member : enumeration.members) {
    members += gap + Code(member.name) + " = " + std::to_string(member.value);
    gap = ", ";
  }
  return "| " + Code(enumeration.name) + " | " + members + " |\n";
}

std::string TagLine(const TagRow& row) {
  const std::string opener = WideCharToMultiByte(CP_UTF8, row.opener);
  std::string forms = Code(opener);
  if (row.close != nullptr)
    forms += " " + Code("</" + opener.substr(1, opener.find_first_of("=>") - 1) + ">");
  return "| " + forms + " | " + (row.marks ? "yes" : "no") + " | " + std::string(row.meaning) + " |\n";
}

}  // namespace

std::string ReferenceText() {
  MemoryHost host(1, 1, 96);
  Marklet placed(host, host);
  placed.InitProperties();
  std::string text =
      "# Reference\n\nThis page is written by `marklet-render --reference` from the control's own tables.\n\n"
      "## Properties\n\n"
      "The column Initial is what a newly placed control has. `BackColor`, `ForeColor`, the font and the "
      "caption come from\nthe host's ambient properties; without them they are as they stand here.\n\n"
      "A host that watches for changes hears the name in the column Announced, misspelled ones included.\n\n"
      "The object that `Font` gives is live: what is set on it is set on the control's font. A font that is "
      "assigned is\ncopied.\n\n"
      "| Property | DISPID | Type | Initial | Access | Announced | Meaning "
      "|\n|---|---|---|---|---|---|---|\n";
  for (const PropertyRow& row : Properties()) text += PropertyLine(placed, row);
  text += "\n## Method\n\n| Method | DISPID | Arguments |\n|---|---|---|\n";
  const MethodRow& method = LoadIconImageFromFileRow();
  text += MemberLine(method.name, method.dispid, method.arguments);
  text +=
      "\n## Events\n\nEvery argument is passed by reference.\n\n| Event | DISPID | Arguments "
      "|\n|---|---|---|\n";
  for (const EventRow& event : Events()) text += MemberLine(event.name, event.dispid, event.arguments);
  text +=
      "\n## Enumerations\n\nNo property checks its number: one that isn't a member is kept and reads "
      "back.\n\n"
      "| Enumeration | Members |\n|---|---|\n";
  for (const Enumeration* enumeration : Enumerations()) text += EnumerationLine(*enumeration);
  text +=
      "\n## Tags\n\nA caption that holds none of those with a yes is plain text, other tags in it "
      "included.\n\n"
      "| Tag | Makes markup | Meaning |\n|---|---|---|\n";
  for (const TagRow& row : Tags()) text += TagLine(row);
  return text;
}

}  // namespace marklet
