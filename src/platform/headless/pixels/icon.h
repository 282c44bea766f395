// What stands behind an icon's handle.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/types.h"

namespace marklet {

struct IconHandle {
  int width = 0, height = 0;
  std::vector<std::uint8_t> pixels;  // red, green, blue, alpha, from the top line down
};

}  // namespace marklet
