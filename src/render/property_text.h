// Properties by name and text, as they stand on a command line or in a sheet.
#pragma once

#include <string>
#include <string_view>

#include "control/marklet.h"
#include "control/properties.h"

namespace marklet {

// A property that a picture can be given: the public ones, and the four that only saved forms hold.
struct NamedProperty {
  const PropertyRow* row = nullptr;
  bool hidden = false;
};
// By name, without regard to case. Throws RenderError for an unknown name and for what can't be given as
// text.
NamedProperty FindNamedProperty(std::string_view name);

// Reads a text as a row's value: true, false, 0, 1 and -1 for Booleans; decimal and 0x numbers; #RRGGBB as
// well for colours; the members of an enumeration by name, in any case; a font as "Tahoma, 8.25, bold
// italic", of which all but the name may be left out. Texts are UTF-8. Throws RenderError.
Value ParseValue(const PropertyRow& row, std::string_view text);

// Sets a public property through its setter, and a hidden one directly.
void AssignProperty(Marklet& control, std::string_view name, std::string_view text);

}  // namespace marklet
