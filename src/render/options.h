// The command line of marklet-render.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/types.h"

namespace marklet {

// Properties in the order in which they are set, as name and text.
using PropertyTexts = std::vector<std::pair<std::string, std::string>>;

// What a control is given beside its properties.
struct Surroundings {
  std::vector<std::pair<std::string, std::string>> images;  // key and file name, in UTF-8
  bool hover = false;                                       // the pointer is on it
  std::string behind = {};  // a colour or a picture's file name; empty: nothing
};

struct Options {
  bool help = false, version = false, reference = false, log = false, hover = false;
  double scale = 1;
  std::optional<SIZE> size;  // in 96ths of an inch
  std::string output;        // file names are UTF-8
  std::string caption_file;
  std::string sheet;
  std::string behind;  // a colour or a file name
  PropertyTexts properties;
  std::vector<std::pair<std::string, std::string>> images;
};

// Throws RenderError for what can't be understood.
Options ParseOptions(const std::vector<std::string>& arguments);

// What --help prints.
std::string HelpText();

// The size of a control that is given none, in 96ths of an inch.
constexpr SIZE kUsualSize = {200, 40};
// Sizes that a picture of one control may have, in 96ths of an inch.
constexpr Long kMostUnits = 4096;
// Reads WIDTHxHEIGHT, or throws.
SIZE ParseSizeOption(const std::string& text);

}  // namespace marklet
