// The property table: one row a property, in the order of the interface's slots. Setters, getters, change
// announcements, the type library, dispatch, saved forms and the reference page are read off it. The rows
// themselves stand in control/property_table.h, with what is checked of them when they are compiled.
#pragma once

#include <algorithm>
#include <cstddef>
#include <span>
#include <string_view>

#include "base/ascii.h"
#include "control/library.h"
#include "control/value.h"
#include "host/property_bag.h"

namespace marklet {

class Marklet;

// What a row may be asked for.
enum PropertyAttribute : unsigned {
  kPut = 1,            // has a put slot
  kPutRef = 2,         // has a putref slot
  kNotBrowsable = 4,   // left out of property lists
  kUiDefault = 8,      // the one that a designer shows first
  kNotAnnounced = 16,  // a change of it is no news to the host
  kNotSaved = 32,      // left out of saved forms
};

// What follows the storing of a value, in this order. The announcement comes between the last two.
enum SetterStep : unsigned {
  kColourFlag = 1,    // UpdateColorFlag
  kHostColour = 2,    // the host's BackColor takes the control's
  kSize = 4,          // RecomputeAutoSize, when AutoSize is true
  kRedraw = 8,        // RedrawNow
  kRaiseChange = 16,  // the event Change
};

// A pointer to a function or an enumeration that a row may leave out. A build with sanitizers can't compare
// an address with null when it compiles, so whether one is there stands beside it.
template <class Target>
class Given {
 public:
  constexpr Given() = default;
  // NOLINTBEGIN(google-explicit-constructor): in a row it is written as the pointer
  constexpr Given(Target* target) : target_(target), there_(true) {}
  constexpr Given(std::nullptr_t) {}
  constexpr operator Target*() const { return target_; }
  // NOLINTEND(google-explicit-constructor)
  constexpr Target* operator->() const { return target_; }
  consteval bool IsThere() const { return there_; }

 private:
  Target* target_ = nullptr;
  bool there_ = false;
};

using Fallback = BagValue(Marklet&);
using Getter = Value(Marklet&);
using Store = void(Marklet&, const Value&);

// How a property stands in a saved form.
struct SavedAs {
  std::string_view key;  // empty: not saved
  BagType type;
  // The default: what a bag may leave out, what a missing key means, and what a newly placed control has.
  Given<Fallback> fallback;
  // The bare field, without a setter's steps and without what a getter shows in its place.
  Given<Getter> get;
  Given<Store> store;  // null: a load goes through the setter
  bool written = true;
};

// What has no default here must stand in every row.
struct PropertyRow {
  std::string_view name;
  Long dispid;
  ValueType type;
  Given<const Enumeration> enumeration = {};  // of a Choice, else null
  unsigned attributes = kPut;                 // PropertyAttribute
  unsigned steps = 0;                         // SetterStep
  std::string_view announced = {};            // the name passed to PropertyChanged
  std::string_view help = {};                 // the type library's help string
  std::string_view description = {};          // the member's own, where the type library has none
  std::string_view note = {};                 // the reference page's own, where there is neither
  std::string_view category = {};             // "page;category" of designers
  Given<Getter> get;
  // The storing itself, with what belongs to it before the steps. Called with a value of the row's type; null
  // when read only.
  Given<Store> store = {};
  SavedAs saved = {};
};

std::span<const PropertyRow> Properties();
// By name, without regard to case; null when there is none.
const PropertyRow* FindProperty(std::string_view name);
// Whether two names are one, without regard to case.
constexpr bool SamePropertyName(std::string_view a, std::string_view b) { return SameWithoutCase(a, b); }

// Four more that no host can reach: their values come from saved forms alone. Their identifiers stay
// unassigned in the type library.
std::span<const PropertyRow> HiddenProperties();

// The one method of the dispatch interface.
struct MethodRow {
  std::string_view name;
  Long dispid;
  std::span<const Argument> arguments;
};
const MethodRow& LoadIconImageFromFileRow();

}  // namespace marklet
