// What a control tells designers of its properties.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <string>
#include <vector>

#include "value_text.h"

namespace designer {

enum class Kind {
  Text,
  Number,
  Truth,
  Choice,  // of an enumeration
  Colour,
  Font,
  Other,  // an object: it is only shown that there is one
};

struct Property {
  DISPID id = 0;
  std::wstring name, help;
  std::wstring group;  // empty: the control names none
  Kind kind = Kind::Other;
  bool can_set = false;
  bool by_reference = false;    // it is set as an object
  bool has_page = false;        // of the control's own
  std::vector<Choice> choices;  // of an enumeration
};

// From the type library, without those that it hides; groups as the control names them. Empty where the
// control describes nothing.
std::vector<Property> PropertiesOf(IDispatch& control);

}  // namespace designer
