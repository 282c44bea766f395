// The pointer over the control: its shape and its buttons.
#pragma once

#include <cstdint>

#include "activex/com/com.h"
#include "host/user_control.h"

namespace marklet::activex {

// Shows the shape with the host's number, or `icon` for the custom one (99). False for the default shape, an
// unknown number and an icon that is none.
bool SetPointer(Long number, const HostObjectRef& icon);

// The buttons among the keys that a message or a drag tells are down, as events have them.
std::int16_t ButtonsOf(WPARAM keys);

}  // namespace marklet::activex
