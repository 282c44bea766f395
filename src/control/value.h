// The value of a property on its way between a host and the control.
#pragma once

#include <string>
#include <variant>

#include "host/user_control.h"
#include "platform/shared/std_font.h"
#include "platform/types.h"

namespace marklet {

// Enumerations and colours travel as Long. monostate is a value that could not be had or converted.
using Value = std::variant<std::monostate, bool, Long, std::u16string, FontRef, HostObjectRef>;

}  // namespace marklet
