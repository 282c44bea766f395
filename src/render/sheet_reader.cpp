#include "render/sheet_reader.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "base/ascii.h"
#include "render/render_error.h"
#include "render/text.h"

namespace marklet {
namespace {

using Json = nlohmann::ordered_json;  // properties are set in the order in which they stand

// Runs one handler for each member of an object.
template <class Target>
struct Member {
  std::string_view name;
  void (*read)(Target&, const Json&);
};
template <class Target, std::size_t N>
void ReadMembers(const Json& object, const Member<Target> (&members)[N], Target& target) {
  if (!object.is_object()) throw RenderError("an object in {} is expected");
  for (const auto& [name, value] : object.items()) {
    const auto same = [&name = name](const Member<Target>& member) { return member.name == name; };
    const auto found = std::find_if(std::begin(members), std::end(members), same);
    if (found == std::end(members)) throw RenderError(Quoted(name) + " means nothing here");
    found->read(target, value);
  }
}

std::string ReadText(const Json& value) {
  if (!value.is_string()) throw RenderError(Quoted(value.dump()) + " is no text");
  return value.get<std::string>();
}

template <Long Least, Long Most>
Long ReadLength(const Json& value) {
  const bool whole = value.is_number_integer();
  if (!whole || value < Least || value > Most)
    throw RenderError(Quoted(value.dump()) + " is no number from " + std::to_string(Least) + " to " +
                      std::to_string(Most));
  return value.get<Long>();
}

// The same spellings as on the command line.
std::string ReadValue(const Json& value) {
  if (value.is_string()) return value.get<std::string>();
  if (value.is_boolean()) return value.get<bool>() ? "true" : "false";
  if (value.is_number_integer()) return value.dump();
  throw RenderError(Quoted(value.dump()) + " is no text, whole number or Boolean");
}

bool ReadSwitch(const Json& value) {
  if (!value.is_boolean()) throw RenderError(Quoted(value.dump()) + " is neither true nor false");
  return value.get<bool>();
}

PropertyTexts ReadImages(const Json& value) {
  if (!value.is_object()) throw RenderError("images are an object in {}");
  PropertyTexts result;
  for (const auto& [key, file] : value.items()) result.emplace_back(key, ReadText(file));
  return result;
}

PropertyTexts ReadProperties(const Json& value) {
  if (!value.is_object()) throw RenderError("properties are an object in {}");
  PropertyTexts result;
  for (const auto& [name, text] : value.items()) result.emplace_back(name, ReadValue(text));
  return result;
}

constexpr Member<SheetItem> kItemMembers[] = {
    {"heading", [](SheetItem& item, const Json& value) { item.heading = ReadText(value); }},
    {"title", [](SheetItem& item, const Json& value) { item.title = ReadText(value); }},
    {"size", [](SheetItem& item, const Json& value) { item.size = ParseSizeOption(ReadText(value)); }},
    {"span", [](SheetItem& item, const Json& value) { item.span = ReadLength<1, 20>(value); }},
    {"properties", [](SheetItem& item, const Json& value) { item.properties = ReadProperties(value); }},
    {"hover", [](SheetItem& item, const Json& value) { item.surroundings.hover = ReadSwitch(value); }},
};

struct SheetParts {
  SheetDescription sheet;
  PropertyTexts properties;
  PropertyTexts images;  // keys and files
};

void ReadItems(SheetParts& parts, const Json& value) {
  if (!value.is_array()) throw RenderError("items are a list in []");
  for (const Json& element : value) {
    SheetItem item;
    try {
      ReadMembers(element, kItemMembers, item);
    } catch (const RenderError& error) {
      throw RenderError("item " + std::to_string(parts.sheet.items.size() + 1) + ": " + error.what());
    }
    parts.sheet.items.push_back(std::move(item));
  }
}

constexpr Member<SheetParts> kSheetMembers[] = {
    {"columns", [](SheetParts& parts, const Json& v) { parts.sheet.columns = ReadLength<1, 20>(v); }},
    {"margin", [](SheetParts& parts, const Json& v) { parts.sheet.margin = ReadLength<0, 500>(v); }},
    {"gap", [](SheetParts& parts, const Json& v) { parts.sheet.gap = ReadLength<0, 500>(v); }},
    {"background", [](SheetParts& parts, const Json& v) { parts.sheet.background = ReadText(v); }},
    {"properties", [](SheetParts& parts, const Json& v) { parts.properties = ReadProperties(v); }},
    {"images", [](SheetParts& parts, const Json& v) { parts.images = ReadImages(v); }},
    {"items", ReadItems},
};

Json Parse(std::string_view json) {
  try {
    return Json::parse(json);
  } catch (const Json::parse_error& error) {
    throw RenderError("the sheet is no JSON at byte " + std::to_string(error.byte));
  }
}

bool NamesAnImage(const PropertyTexts& properties) {
  return std::any_of(properties.begin(), properties.end(), [](const auto& property) {
    return SameWithoutCase(property.first, "ImageKey") || SameWithoutCase(property.first, "ImageKeyhover");
  });
}

}  // namespace

SheetDescription ReadSheet(std::string_view json) {
  SheetParts parts;
  ReadMembers(Parse(json), kSheetMembers, parts);
  if (parts.sheet.items.empty()) throw RenderError("the sheet has no items");
  for (SheetItem& item : parts.sheet.items) {
    PropertyTexts all = parts.properties;
    all.insert(all.end(), item.properties.begin(), item.properties.end());
    item.properties = std::move(all);
    if (NamesAnImage(item.properties)) item.surroundings.images = parts.images;
    item.span = std::min(item.span, parts.sheet.columns);
  }
  return parts.sheet;
}

}  // namespace marklet
