#include "render/options.h"

#include <algorithm>
#include <charconv>

#include "control/properties.h"
#include "render/property_text.h"
#include "render/render_error.h"
#include "render/text.h"

namespace marklet {
namespace {

double ParseScale(const std::string& text) {
  double scale = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), scale);
  const bool number = error == std::errc() && end == text.data() + text.size();
  if (number && scale >= 1 && scale <= 2) return scale;
  if (number && scale >= 96 && scale <= 192) return scale / 96;
  throw RenderError("--scale can't be " + Quoted(text) +
                    ": it is a number from 1 to 2, or from 96 to 192 dots per inch");
}

struct Switch {
  std::string_view name;
  bool Options::*field;
};
constexpr Switch kSwitches[] = {{"--help", &Options::help},
                                {"--version", &Options::version},
                                {"--reference", &Options::reference},
                                {"--log", &Options::log},
                                {"--hover", &Options::hover}};

void AddImage(Options& options, const std::string& value) {
  const std::size_t equals = value.find('=');
  if (equals == std::string::npos)
    throw RenderError("--image can't be " + Quoted(value) + ": it is KEY=FILE");
  options.images.emplace_back(value.substr(0, equals), value.substr(equals + 1));
}

struct Setting {
  std::string_view name;
  void (*set)(Options&, const std::string&);
};
constexpr Setting kSettings[] = {
    {"-o", [](Options& options, const std::string& value) { options.output = value; }},
    {"--size", [](Options& options, const std::string& value) { options.size = ParseSizeOption(value); }},
    {"--scale", [](Options& options, const std::string& value) { options.scale = ParseScale(value); }},
    {"--caption-file", [](Options& options, const std::string& value) { options.caption_file = value; }},
    {"--sheet", [](Options& options, const std::string& value) { options.sheet = value; }},
    {"--image", AddImage},
    {"--behind", [](Options& options, const std::string& value) { options.behind = value; }},
};

template <class Row, std::size_t N>
const Row* FindOption(const Row (&rows)[N], std::string_view name) {
  for (const Row& row : rows)
    if (row.name == name) return &row;
  return nullptr;
}

void AddProperty(Options& options, const std::string& argument) {
  const std::size_t equals = argument.find('=');
  if (equals == std::string::npos)
    throw RenderError("don't know what to do with " + Quoted(argument) + ": properties read Name=Value");
  options.properties.emplace_back(argument.substr(0, equals), argument.substr(equals + 1));
}

void Check(const Options& options) {
  if (options.help || options.version || options.reference) return;
  if (options.output.empty()) throw RenderError("no output file given: -o FILE.png");
  if (options.sheet.empty()) return;
  if (!options.properties.empty() || !options.caption_file.empty())
    throw RenderError("a sheet has its own properties: give none beside --sheet");
  if (options.size) throw RenderError("a sheet has its own sizes: give no --size beside --sheet");
  if (!options.images.empty() || options.hover)
    throw RenderError("a sheet has its own images: give no --image and no --hover beside --sheet");
  if (!options.behind.empty())
    throw RenderError("a sheet's background lies behind its controls: give no --behind beside --sheet");
}

}  // namespace

SIZE ParseSizeOption(const std::string& text) {
  const auto size = ParseSize(text);
  if (!size || size->cx < 1 || size->cy < 1 || size->cx > kMostUnits || size->cy > kMostUnits)
    throw RenderError("a size can't be " + Quoted(text) + ": it is WIDTHxHEIGHT, each from 1 to " +
                      std::to_string(kMostUnits));
  return *size;
}

Options ParseOptions(const std::vector<std::string>& arguments) {
  Options options;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    if (const Switch* found = FindOption(kSwitches, argument)) {
      options.*found->field = true;
    } else if (const Setting* setting = FindOption(kSettings, argument)) {
      if (i + 1 == arguments.size()) throw RenderError(argument + " needs a value behind it");
      setting->set(options, arguments[++i]);
    } else if (argument.starts_with('-')) {
      throw RenderError("there is no option " + Quoted(argument));
    } else {
      AddProperty(options, argument);
    }
  }
  Check(options);
  return options;
}

namespace {

std::string PropertyLine(const PropertyRow& row) {
  static constexpr std::pair<ValueType, std::string_view> kKinds[] = {
      {ValueType::Boolean, "true or false"}, {ValueType::Number, "a whole number"},
      {ValueType::Colour, "a colour"},       {ValueType::Text, "a text"},
      {ValueType::MousePointer, "a number"}, {ValueType::Font, "NAME, SIZE, bold italic underline strikeout"},
  };
  std::string line = "  " + std::string(row.name);
  line.resize(std::max<std::size_t>(line.size() + 1, 20), ' ');
  if (row.type == ValueType::Choice) {
    std::string_view gap;
    for (const EnumMember& member : row.enumeration->members) {
      line += std::string(gap) + std::string(member.name);
      gap = ", ";
    }
  }
  for (const auto& [type, words] : kKinds)
    if (type == row.type) line += words;
  return line + "\n";
}

std::string PropertyLines() {
  std::string lines;
  for (const auto& rows : {Properties(), HiddenProperties()})
    for (const PropertyRow& row : rows) {
      if (row.store != nullptr && row.type != ValueType::Picture) lines += PropertyLine(row);
    }
  return lines;
}

}  // namespace

std::string HelpText() {
  return "Draws captions as the Marklet control shows them, and writes a PNG.\n"
         "\n"
         "  marklet-render Name=Value ... [--size WIDTHxHEIGHT] -o FILE.png\n"
         "  marklet-render --sheet FILE.json -o FILE.png\n"
         "\n"
         "  -o FILE              the picture to write\n"
         "  --size 200x40        the control's size, in 96ths of an inch\n"
         "  --scale 1            1 to 2, or the dots per inch of a screen instead: 96 to 192\n"
         "  --caption-file FILE  the caption, as UTF-8\n"
         "  --image KEY=FILE     an image for ImageKey and ImageKeyhover: PNG, ICO, BMP, GIF, JPG or CUR, "
         "square\n"
         "  --behind FILE        the picture that a transparent control stands on, from its corner: PNG, "
         "BMP, "
         "GIF, JPG\n"
         "  --behind COLOUR      a colour instead. Without either such a control's picture has alpha: what "
         "it "
         "doesn't\n"
         "                       cover is transparent\n"
         "  --hover              as it looks with the pointer on it\n"
         "  --sheet FILE         several controls on one sheet, described in JSON\n"
         "  --log                prints the platform calls of the painting\n"
         "  --reference          prints the properties, events and enumerations as Markdown\n"
         "  --help, --version\n"
         "\n"
         "Properties are set in the order given, their names and the members of their enumerations read in "
         "any\n"
         "case. A colour is #RRGGBB or an OLE colour such as 0x8000000F.\n"
         "\n" +
         PropertyLines();
}

}  // namespace marklet
