// Why something wasn't done, in words for the user. Thrown.
#pragma once

#include <string>

namespace designer {

struct Refusal {
  std::wstring text;
};

}  // namespace designer
