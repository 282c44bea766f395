// The pointer shape over the control.
#pragma once

#include "activex/com/com.h"
#include "host/user_control.h"

namespace marklet::activex {

// Shows the shape with the host's number, or `icon` for the custom one (99). False for the default shape, an
// unknown number and an icon that is none.
bool SetPointer(Long number, const HostObjectRef& icon);

}  // namespace marklet::activex
