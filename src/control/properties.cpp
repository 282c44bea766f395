#include "control/properties.h"

#include "control/property_table.h"

namespace marklet {

std::span<const PropertyRow> Properties() { return property_table::kRows; }
std::span<const PropertyRow> HiddenProperties() { return property_table::kHiddenRows; }
const MethodRow& LoadIconImageFromFileRow() { return property_table::kLoadIconImageFromFile; }

const PropertyRow* FindProperty(std::string_view name) {
  for (const PropertyRow& row : property_table::kRows)
    if (SamePropertyName(row.name, name)) return &row;
  return nullptr;
}

}  // namespace marklet
