// The automation surface as a page of Markdown.
#pragma once

#include <string>

namespace marklet {

// What --reference prints: properties, the method, events and enumerations, all read off the control's own
// tables.
std::string ReferenceText();

}  // namespace marklet
