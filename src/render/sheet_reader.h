// The description of a sheet, read from JSON.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "render/options.h"

namespace marklet {

// Lengths are in 96ths of an inch.
struct SheetItem {
  std::string heading;  // not empty: a heading, and nothing else of the item counts
  std::string title;
  SIZE size = kUsualSize;
  Long span = 1;  // columns
  PropertyTexts properties;
  Surroundings surroundings;  // all of the sheet's images for an item that names one
};

struct SheetDescription {
  Long columns = 3, margin = 24, gap = 16;
  std::string background = "#FFFFFF";
  std::vector<SheetItem> items;
};

// Throws RenderError, also for names that mean nothing in a sheet.
SheetDescription ReadSheet(std::string_view json);

}  // namespace marklet
