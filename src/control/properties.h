// The property table: one row a property, in the order of the interface's slots. Setters, getters, change
// announcements, the type library, dispatch, saved forms and the reference page are read off it.
#pragma once

#include <span>
#include <string_view>

#include "control/library.h"
#include "control/value.h"
#include "host/property_bag.h"

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

// What follows the storing of a value, in this order. The announcement comes between the last two.
enum SetterStep : unsigned {
  kColourFlag = 1,    // UpdateColorFlag
  kHostColour = 2,    // the host's BackColor takes the control's
  kSize = 4,          // RecomputeAutoSize, when AutoSize is true
  kRedraw = 8,        // RedrawNow
  kRaiseChange = 16,  // the event Change
};

// How a property stands in a saved form.
struct SavedAs {
  std::string_view key;  // empty: not saved
  BagType type = BagType::I4;
  BagValue (*fallback)(Marklet&) = nullptr;  // what a bag may leave out, and what a missing key means
  // The bare field, without a setter's steps and without what a getter shows in its place.
  Value (*get)(Marklet&) = nullptr;
  void (*store)(Marklet&, const Value&) = nullptr;  // null: a load goes through the setter
};

struct PropertyRow {
  std::string_view name;
  Long dispid = 0;
  ValueType type = ValueType::Number;
  const Enumeration* enumeration = nullptr;  // of a Choice, else null
  unsigned attributes = kPut;                // PropertyAttribute
  unsigned steps = 0;                        // SetterStep
  std::string_view announced = {};           // the name passed to PropertyChanged; empty: not announced
  std::string_view help = {};                // the type library's help string
  std::string_view description = {};         // the member's own, where the type library has none
  std::string_view category = {};            // "page;category" of designers
  Value (*get)(Marklet&) = nullptr;
  // The storing itself, with what belongs to it before the steps. Called with a value of the row's type; null
  // when read only.
  void (*store)(Marklet&, const Value&) = nullptr;
  SavedAs saved = {};
};

std::span<const PropertyRow> Properties();
// By name, without regard to case; null when there is none.
const PropertyRow* FindProperty(std::string_view name);
// The row that is saved under a key, hidden ones included; null when there is none.
const PropertyRow* FindSaved(std::string_view key);

// Four more that no host can reach: their values come from saved forms alone. Their identifiers stay
// unassigned in the type library.
std::span<const PropertyRow> HiddenProperties();

// Whether a value has the type that a row's store takes.
bool HoldsType(const Value& value, ValueType type);

// The one method of the dispatch interface.
struct MethodRow {
  std::string_view name;
  Long dispid;
  std::span<const Argument> arguments;
};
const MethodRow& LoadIconImageFromFileRow();

}  // namespace marklet
