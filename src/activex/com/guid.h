// GUIDs from the registry form in which the tables hold them.
#pragma once

#include <string_view>

#include "activex/com/com.h"
#include "base/ascii.h"
#include "control/library.h"

namespace marklet::activex {

namespace detail {
constexpr unsigned long Hex(std::string_view digits) {
  unsigned long value = 0;
  for (const char c : digits) {
    if (HexDigit(c) < 0) throw "not a GUID";  // never caught: it stops the compiler
    value = value * 16 + static_cast<unsigned>(HexDigit(c));
  }
  return value;
}
}  // namespace detail

// "{8F6B874C-6DE0-4902-A016-DBCDD8F272C1}"
constexpr GUID ParseGuid(std::string_view text) {
  if (text.size() != 38) throw "not a GUID";
  GUID guid = {};
  guid.Data1 = detail::Hex(text.substr(1, 8));
  guid.Data2 = static_cast<unsigned short>(detail::Hex(text.substr(10, 4)));
  guid.Data3 = static_cast<unsigned short>(detail::Hex(text.substr(15, 4)));
  for (unsigned i = 0; i < 8; ++i) {
    const unsigned at = 20 + 2 * i + (i >= 2 ? 1 : 0);
    guid.Data4[i] = static_cast<unsigned char>(detail::Hex(text.substr(at, 2)));
  }
  return guid;
}

inline constexpr GUID kLibraryGuid = ParseGuid(library::kGuid);
inline constexpr GUID kDispatchGuid = ParseGuid(library::kDispatch.guid);
inline constexpr GUID kClassGuid = ParseGuid(library::kClass.guid);
inline constexpr GUID kImageOwnerGuid = ParseGuid(library::kImageOwner.guid);
inline constexpr GUID kImagePageGuid = ParseGuid(library::kImagePageClass.guid);
inline constexpr GUID kEventsGuid = ParseGuid(library::kEvents.guid);

}  // namespace marklet::activex
