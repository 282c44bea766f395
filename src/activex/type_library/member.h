// The tables of the system in the shape that a type library takes: types, members, interfaces.
#pragma once

#include <string_view>
#include <vector>

#include "control/library.h"
#include "control/properties.h"

namespace marklet::type_library {

// The type of an argument or result.
struct TypeName {
  enum class Kind {
    Automation,   // a VARTYPE
    Enumerated,   // an enumeration of this library, by its GUID
    StdOleClass,  // a pointer to a dispatch interface of the standard library, by its GUID
    StdOleAlias,  // an alias of the standard library, by its GUID
  };
  Kind kind = Kind::Automation;
  unsigned short vartype = 0;
  std::string_view guid;
};

struct Parameter {
  std::string_view name;
  TypeName type;
};

enum class Invoke { Method, Get, Put, PutRef };

struct Member {
  std::string_view name;
  Long dispid = 0;
  Invoke invoke = Invoke::Method;
  std::vector<Parameter> parameters;  // by value, but of an event by reference; without the result
  TypeName result;                    // VT_EMPTY: none
  std::string_view help;
  bool browsable = true;
  bool ui_default = false;
};

// The slots of `_Marklet` after those of IDispatch: get, put, putref of every property, then the method.
std::vector<Member> DispatchMembers();
// The events of `__Marklet`.
std::vector<Member> EventMembers();
// The slots of `_ISupportsAlphaImage` after those of IDispatch.
std::vector<Member> ImageOwnerMembers();

}  // namespace marklet::type_library
