// The property table: one row a property, in the order of the interface's slots. Setters, getters, change
// announcements, the type library, dispatch and the reference page are read off it.
#pragma once

#include <span>
#include <string_view>

#include "control/library.h"
#include "control/value.h"

namespace marklet {

class Marklet;

enum class ValueType {
  Boolean,       // bool
  Number,        // Long
  Colour,        // Long, an OLE colour
  Choice,        // Long, of the row's enumeration; any number is taken as given
  Text,          // std::u16string
  Font,          // FontRef
  Picture,       // HostObjectRef
  MousePointer,  // Long, of the host's own constants
};

// What a row may be asked for.
enum PropertyAttribute : unsigned {
  kPut = 1,           // has a put slot
  kPutRef = 2,        // has a putref slot
  kNotBrowsable = 4,  // left out of property lists
  kUiDefault = 8,     // the one that a designer shows first
};

// What follows the storing of a value, in this order; the announcement is always last.
enum SetterStep : unsigned {
  kColourFlag = 1,  // UpdateColorFlag
  kSize = 2,        // RecomputeAutoSize, when AutoSize is true
  kRedraw = 4,      // RedrawNow
};

struct PropertyRow {
  std::string_view name;
  Long dispid;
  ValueType type;
  const Enumeration* enumeration;  // of a Choice, else null
  unsigned attributes;             // PropertyAttribute
  unsigned steps;                  // SetterStep
  std::string_view announced;      // the name passed to PropertyChanged; empty: not announced
  std::string_view help;           // the type library's help string
  std::string_view description;    // the member's own description, where the type library has none
  std::string_view category;       // "page;category" of designers
  Value (*get)(Marklet&);
  void (*store)(Marklet&, const Value&);  // called with a value of the row's type; null when read only
};

std::span<const PropertyRow> Properties();
// By name, without regard to case; null when there is none.
const PropertyRow* FindProperty(std::string_view name);

// The one method of the dispatch interface.
struct MethodRow {
  std::string_view name;
  Long dispid;
  std::span<const Argument> arguments;
};
const MethodRow& LoadIconImageFromFileRow();

}  // namespace marklet
