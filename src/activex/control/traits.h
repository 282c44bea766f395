// The traits by which containers judge the control before they have one, and the verbs that they list: asked
// of the object, and registered by the server.
#pragma once

#include <string_view>

#include "activex/com/com.h"

namespace marklet::activex {

// With its name in a manifest.
struct Trait {
  DWORD bit;
  std::string_view name;
};
// The mnemonic of a label takes the user to the control after it.
inline constexpr Trait kTraits[] = {
    {OLEMISC_RECOMPOSEONRESIZE, "recomposeonresize"},
    {OLEMISC_CANTLINKINSIDE, "cantlinkinside"},
    {OLEMISC_INSIDEOUT, "insideout"},
    {OLEMISC_ACTIVATEWHENVISIBLE, "activatewhenvisible"},
    {OLEMISC_ACTSLIKELABEL, "actslikelabel"},
    {OLEMISC_SETCLIENTSITEFIRST, "setclientsitefirst"},
};

// All traits, as IOleObject reports them.
constexpr DWORD MiscStatus() {
  DWORD status = 0;
  for (const Trait& trait : kTraits) status |= trait.bit;
  return status;
}
inline constexpr DWORD kMiscStatus = MiscStatus();

// What a container can ask the control to do, in the order and with the names in which menus list it. The
// verbs that the system gives a number below zero aren't listed.
struct Verb {
  LONG number;
  std::string_view name;
  DWORD menu_flags;
  DWORD attributes;
};
inline constexpr LONG kPropertiesVerb = 1;
// Begins a drag with what the host gives: for code, so that it stands in no list and on no menu, and far from
// the numbers that menus count on to.
inline constexpr LONG kDragVerb = 100;
inline constexpr Verb kVerbs[] = {
    {kPropertiesVerb, "&Properties...", MF_STRING, OLEVERBATTRIB_ONCONTAINERMENU},
};

}  // namespace marklet::activex
