// The colour schemes that are known by name.
#pragma once

#include <span>
#include <string_view>

#include "platform/types.h"

namespace marklet {

// The slots of a scheme are made for a desktop of these system colours.
struct Scheme {
  std::u16string_view name;
  COLORREF window, button_face, highlight;
  // From slot 0 on, in plain colours and in menu style. None for a scheme whose colours are computed.
  std::span<const COLORREF> plain = {}, menu_style = {};
};

// By its name in capitals, exactly; null for another name.
const Scheme* SchemeNamed(std::u16string_view name);
// The slots of every scheme that has none of its own, computed ones still missing.
std::span<const COLORREF> DefaultSlots();

}  // namespace marklet
